#include "process/WaveformProcessor.h"

#include <memory>

#include "core/logging/Log.h"
#include "process/configuration/WaveformConfig.h"

namespace process {

WaveformProcessor::WaveformProcessor(const std::string &name, WaveformConfig &config, avb::AvbAudioBuffer &audioBuffer)
    : SampleProcessorBase(name, config, audioBuffer, nullptr) {}

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
    if (!isProcessingActive()) {
        return;
    }
    const std::vector<float> samples = fetchConfiguredSamples();
    xValues.clear();
    for (std::size_t index = 0; index < samples.size(); ++index) {
        xValues.push_back(static_cast<double>(index));
    }
    yValues.assign(samples.begin(), samples.end());
    Q_EMIT newProcessData(sonvex::ChannelData(getName(), sonvex::VectorData(xValues, yValues)));
}

} // namespace process
