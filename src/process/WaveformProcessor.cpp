#include "process/WaveformProcessor.h"

#include <memory>
#include <numeric>
#include <utility>

#include "core/logging/Log.h"
#include "process/configuration/WaveformConfig.h"

namespace process {

WaveformProcessor::WaveformProcessor(const std::string &name, WaveformConfig &config, avb::AvbAudioBuffer &audioBuffer)
    : SampleProcessorBase(name, config, audioBuffer, nullptr), curve(getName(), sonvex::VectorData({}, {})) {}

WaveformProcessor::~WaveformProcessor() {
    logging::debug("process::WaveformProcessor::~WaveformProcessor", getName(), "Cleared!");
}

Processor *WaveformProcessor::createInstance(const std::string &name, ProcessorConfigBase &config,
                                             avb::AvbAudioBuffer &audioBuffer) {
    WaveformConfig &waveformConfig = WaveformConfig::convert(config);
    std::unique_ptr<WaveformProcessor> processor(new WaveformProcessor(name, waveformConfig, audioBuffer));
    waveformConfig.publishConfiguration();
    return processor.release();
}

std::string WaveformProcessor::toString() const {
    return SampleProcessorBase::toString() + "\n";
}

void WaveformProcessor::calculate(const std::string & /*clockName*/, std::size_t /*sampleAmount*/) {
    if (isProcessingActive()) {
        withMemory("process::WaveformProcessor::calculate", [this] { deliverCurve(); });
    }
}

void WaveformProcessor::deliverCurve() {
    samples = fetchConfiguredSamples(std::move(samples));
    sonvex::VectorData &values = curve.getVectorData();
    if (indexAmount != samples.size()) {
        std::vector<double> indices(samples.size());
        std::iota(indices.begin(), indices.end(), 0.0);
        values.setX(std::move(indices));
        indexAmount = samples.size();
    }
    std::vector<double> y = values.takeY();
    y.assign(samples.begin(), samples.end());
    values.setY(std::move(y));
    Q_EMIT newProcessData(curve);
}

} // namespace process
