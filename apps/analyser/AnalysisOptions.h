#pragma once

#include <optional>
#include <string>
#include <vector>

namespace analyser {

constexpr double sampleRate = 48000.0;

struct StreamOptions {
    /// 12 lower-case hexadecimal digits.
    std::string mac;
    unsigned channels = 2;
    /// In one packet.
    unsigned samplesPerChannel = 6;
};

struct ClockOptions {
    bool internal = false;
    /// Milliseconds of the internal clock, samples of the external one.
    unsigned period = 480;

    /// For the eye, with the unit.
    std::string toString() const;
    double seconds() const;
};

struct AveragingOptions {
    bool inCycles = true;
    /// Cycles or milliseconds.
    unsigned window = 0;

    /// As on the command line.
    std::string toString() const;
};

enum class AnalysisKind { waveform, spectrum, levels };

struct AnalysisOptions {
    AnalysisKind kind = AnalysisKind::waveform;
    /// From 0.
    unsigned channel = 0;
    /// The stream's address.
    std::string mac;
    /// Samples of one result.
    unsigned amount = 0;
    /// Of a spectrum: the amount is 2 to the power of it.
    unsigned order = 0;
    /// Of a spectrum, over time.
    std::optional<AveragingOptions> averaging;
    /// Levels can't do without the external one.
    ClockOptions clock;

    /// "waveform", "spectrum" or "levels".
    std::string type() const;
    /// Of a spectrum, in Hz.
    double binWidth() const { return sampleRate / amount; }
    /// Of the clock, from one result to the next.
    unsigned cyclesPerResult() const;
};

/// What all analyses of the command line share.
struct AnalysisFrame {
    const std::vector<StreamOptions> &streams;
    ClockOptions clock;
};

/**
 * Reads the values of --waveform, --spectrum and --levels.
 * @return in the order of the kinds
 * @throws common::Refusal for values that can't be followed, and for none at all
 */
std::vector<AnalysisOptions> parseAnalyses(const std::vector<std::string> &waveforms,
                                           const std::vector<std::string> &spectra,
                                           const std::vector<std::string> &levels, const AnalysisFrame &frame);

/// What the analyses can't do with these settings though they run, in sentences without a stop; "" if nothing.
std::string describeLimits(const std::vector<AnalysisOptions> &analyses, unsigned bufferSize);

} // namespace analyser
