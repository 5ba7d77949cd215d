#pragma once

#include <mutex>

#include "core/data/ChannelData.h"
#include "process/SampleProcessorBase.h"
#include "process/averaging/MovingAverage.h"
#include "process/fft/IppFft.h"

namespace process {

class ProcessorConfigBase;
class SpectrumConfig;

/**
 * Delivers the power spectrum of the newest block as long as the FFT, through a Hann window: x is the index of a bin, y
 * its power, for the bins below half the FFT size. A sine on a bin shows a third of its squared amplitude there. The
 * name of a result is "DummyChannel".
 *
 * Threads: as its base; a changed order is taken over on the processor's thread, between two calculations. The mutex
 * keeps the two apart before there is such a thread, and is taken before those of the transform and the averager. The
 * averager stays on the owner thread and is destroyed with the processor on its own: retire() cuts it off before.
 */
class SpectrumProcessor : public SampleProcessorBase {
    Q_OBJECT

public:
    /// @param config, @param audioBuffer not owned; have to outlive the processor's last calculation
    SpectrumProcessor(const std::string &name, SpectrumConfig &config, avb::AvbAudioBuffer &audioBuffer,
                      QObject *parent);
    ~SpectrumProcessor() override;

    /// Owned by the caller. @throws exceptions::InstanceNotConvertable
    static Processor *createInstance(const std::string &name, ProcessorConfigBase &config,
                                     avb::AvbAudioBuffer &audioBuffer);

    std::string toString() const override;
    void retire() override;

private Q_SLOTS:
    void calculate(const std::string &clockName = "InternalClock", std::size_t sampleAmount = 0) override;

protected Q_SLOTS:
    void sampleAmountChanged(const std::string &changedParameter) override;
    void fftOrderChanged(const std::string &changedParameter);

private:
    void deliverSpectrum();

    fft::IppFft fft;
    std::vector<float> samples;  ///< the latest block, windowed
    unsigned int resultSize = 0; ///< bins of a result; 0 while there can be none
    sonvex::ChannelData channelData;
    averaging::MovingAverage averager;
    SpectrumConfig *spectrumConfig;
    std::mutex mutex;
};

} // namespace process
