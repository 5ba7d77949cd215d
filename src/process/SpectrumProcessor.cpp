#include "process/SpectrumProcessor.h"

#include <numeric>
#include <utility>

#include "avb/AvbAudioBuffer.h"
#include "core/data/ChangeNotices.h"
#include "core/logging/HeldLines.h"
#include "core/logging/Log.h"
#include "process/configuration/SpectrumConfig.h"

namespace process {

SpectrumProcessor::SpectrumProcessor(const std::string &name, SpectrumConfig &config, avb::AvbAudioBuffer &audioBuffer,
                                     QObject *parent)
    : SampleProcessorBase(name, config, audioBuffer, parent), fft(name + "_FFT"),
      averager(name + "_Averager", &config, audioBuffer.getBufferConfiguration(), nullptr), spectrumConfig(&config) {
    connect(&config, SIGNAL(configurationChanged(std::string)), this, SLOT(fftOrderChanged(std::string)));
    fft.setWindowing(true);
    config.publishConfiguration();
    logging::debug("process::SpectrumProcessor::SpectrumProcessor", getName(), "Initialized");
}

SpectrumProcessor::~SpectrumProcessor() = default;

Processor *SpectrumProcessor::createInstance(const std::string &name, ProcessorConfigBase &config,
                                             avb::AvbAudioBuffer &audioBuffer) {
    return new SpectrumProcessor(name, SpectrumConfig::convert(config), audioBuffer, nullptr);
}

std::string SpectrumProcessor::toString() const {
    return SampleProcessorBase::toString() + "\n" + fft.toString();
}

void SpectrumProcessor::retire() {
    SampleProcessorBase::retire();
    averager.retire();
}

void SpectrumProcessor::calculate(const std::string & /*clockName*/, std::size_t /*sampleAmount*/) {
    const logging::HeldLines lines;
    const std::lock_guard<std::mutex> lock(mutex);
    if (isProcessingActive()) {
        withMemory("process::SpectrumProcessor::calculate", [this] { deliverSpectrum(); });
    }
}

void SpectrumProcessor::deliverSpectrum() {
    samples = fetchConfiguredSamples(std::move(samples));
    if (!fft.calculate(samples) || resultSize == 0) {
        return;
    }
    sonvex::VectorData &result = channelData.getVectorData();
    std::vector<double> powers = result.takeY();
    powers.resize(resultSize);
    if (!fft.getFftResultsPowerSpectrum(powers, spectrumConfig->getPowerScaleFactor())) {
        return;
    }
    if (averager.isActive()) {
        powers = averager.calculate(std::move(powers));
    }
    result.setY(std::move(powers));
    Q_EMIT newProcessData(channelData);
}

void SpectrumProcessor::sampleAmountChanged(const std::string & /*changedParameter*/) {
    // The order of the transform decides on sizes here.
    logging::debug("process::SpectrumProcessor::sampleAmountChanged", getName(),
                   "Processed amount of samples: ", config->getSampleAmount());
}

void SpectrumProcessor::fftOrderChanged(const std::string &changedParameter) {
    const logging::HeldLines lines;
    const std::lock_guard<std::mutex> lock(mutex);
    // The size follows from the order: read by itself, it could already be that of the next one.
    const unsigned int order = spectrumConfig->getFftOrder();
    if (changedParameter != sonvex::notices::fftOrderChanged || order == 0) {
        return;
    }
    if (fft.setFftOrder(order) && !fft.isWindowingActive()) {
        fft.setWindowing(true); // two samples can't have a window, and blocks after them shall not stay without
    }
    // No block is longer than the buffer: an order beyond it has no results, and none without a transform.
    const std::size_t size = std::size_t{1} << order;
    resultSize = 0;
    if (!fft.isReady() || size > audioBuffer->getSize()) {
        return;
    }
    withMemory("process::SpectrumProcessor::fftOrderChanged", [&] {
        std::vector<double> bins(size / 2);
        std::iota(bins.begin(), bins.end(), 0.0);
        channelData.getVectorData().setX(std::move(bins));
        resultSize = static_cast<unsigned int>(size / 2);
    });
}

} // namespace process
