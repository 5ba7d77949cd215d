#pragma once

#include <atomic>

#include <sonvex/ISpectrumConfig.h>

#include "process/configuration/SampleProcessorConfig.h"

namespace process {

/**
 * Configuration of the spectrum processor. The sample amount always follows the FFT size.
 * Threads as for its base: set on the host's thread, read on processors' threads.
 */
class SpectrumConfig : public SampleProcessorConfig<sonvex::iprocess::ISpectrumConfig> {
    Q_OBJECT

public:
    static constexpr char typeName[] = "SpectrumProcessor";

    SpectrumConfig(std::string name, unsigned int sampleAmount, std::string processorType);
    SpectrumConfig(std::string name, unsigned int sampleAmount, unsigned int refreshRate, std::string processorType);

    /// @throws exceptions::InstanceNotConvertable
    static SpectrumConfig &convert(ProcessorConfigBase &config);

    /// Dropped with a warning.
    void setSampleAmount(unsigned int sampleAmount) override;
    unsigned int getFftOrder() const override;
    void setFftOrder(unsigned int order) override;
    unsigned int getFftSize() const override;
    void setFftSize(unsigned int size) override;
    void setMovingAverageActive(bool active) override;
    bool isMovingAverageActive() const override;
    void setMovingAverageWindowSize(unsigned int size) override;
    unsigned int getMovingAverageWindowSize() const override;
    void setMovingAverageWindowLength(unsigned int milliseconds) override;
    unsigned int getMovingAverageWindowLength() const override;
    std::string toString() const override;

    void publishConfiguration() override;
    /// The factor on every power value.
    virtual float getPowerScaleFactor() const;

private:
    static constexpr unsigned int defaultFftOrder = 14;
    static constexpr float powerScaleFactor = 5.334F;

    std::atomic<unsigned int> fftOrder{0};
    std::atomic<unsigned int> fftSize{0};
    std::atomic<bool> movingAverageActive{false};
    std::atomic<unsigned int> movingAverageWindowSize{16};      ///< in cycles
    std::atomic<unsigned int> movingAverageWindowLength{10000}; ///< in milliseconds
};

} // namespace process
