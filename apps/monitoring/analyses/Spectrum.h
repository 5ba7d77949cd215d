#pragma once

#include <optional>

#include "monitoring/analyses/AnalysisKind.h"

namespace monitoring {

/// The power spectrum of a channel's newest samples.
class Spectrum : public Analysis {
public:
    /// Over time.
    struct Averaging {
        bool inCycles = true;
        unsigned window = 0; ///< cycles or milliseconds

        unsigned cycles(const ClockSettings &clock, unsigned sampleRate) const;
        /// As on the command line.
        std::string toString() const;
    };

    static const AnalysisKind description;

    /// Of 2 to the power of @p order samples.
    Spectrum(Channel channel, unsigned order, std::optional<Averaging> averaging, ClockSettings clock);

    /// In Hz.
    double binWidth() const { return static_cast<double>(channel().sampleRate) / amount(); }

    const AnalysisKind &kind() const override { return description; }
    std::string unit() const override;
    std::vector<Setting> settings() const override;
    std::uint64_t extent() const override;
    std::string bufferRefusal(unsigned bufferSize) const override;
    std::vector<std::string> limits(unsigned bufferSize) const override;
    sonvex::iprocess::IProcessorConfigBase &configure() const override;
    void configureProcessor(sonvex::iprocess::IProcessorConfigBase &config) const override;
    std::unique_ptr<Meter> makeMeter(double window) const override;

private:
    unsigned fftOrder;
    std::optional<Averaging> averaging;
};

} // namespace monitoring
