#include "process/SpectrumProcessor.h"

#include <numeric>
#include <utility>

#include "avb/AvbAudioBuffer.h"
#include "core/data/ChangeNotices.h"
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

void SpectrumProcessor::end() {
    SampleProcessorBase::end();
    averager.retire();
}

void SpectrumProcessor::calculate(const std::string & /*clockName*/, std::size_t /*sampleAmount*/) {
    const std::lock_guard<std::mutex> lock(mutex);
    if (!isProcessingActive()) {
        return;
    }
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
    const std::lock_guard<std::mutex> lock(mutex);
    // The size follows from the order: read by itself, it could already be that of the next one.
    const unsigned int order = spectrumConfig->getFftOrder();
    if (changedParameter != sonvex::notices::fftOrderChanged || order == 0) {
        return;
    }
    const bool isReady = fft.setFftOrder(order);
    if (isReady && !fft.isWindowingActive()) {
        fft.setWindowing(true); // two samples can't have a window, and blocks after them shall not stay without
    }
    // No block is longer than the buffer, so an absurd order costs no memory here.
    const std::size_t size = std::size_t{1} << order;
    resultSize = size <= audioBuffer->getSize() ? static_cast<unsigned int>(size / 2) : 0;
    std::vector<double> bins(resultSize);
    std::iota(bins.begin(), bins.end(), 0.0);
    channelData.getVectorData().setX(std::move(bins));
}

} // namespace process
