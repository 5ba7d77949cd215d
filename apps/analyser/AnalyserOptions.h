#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <QStringList>

namespace analyser {

enum class Format { live, json, csv, text };

struct LogOptions {
    bool verbose = false;
    /// Empty for none.
    std::string file;
};

struct StreamOptions {
    /// 12 lower-case hexadecimal digits.
    std::string mac;
    unsigned channels = 2;
    /// In one packet.
    unsigned samplesPerChannel = 6;
};

struct WaveformOptions {
    /// From 0.
    unsigned char channel = 0;
    /// Samples of one result.
    unsigned amount = 0;
    /// The stream's address.
    std::string mac;
};

struct ClockOptions {
    bool internal = false;
    /// Milliseconds of the internal clock, samples of the external one.
    unsigned period = 480;

    /// For the eye, with the unit.
    std::string toString() const;
};

struct MonitorOptions {
    std::string device;
    std::vector<StreamOptions> streams;
    std::vector<WaveformOptions> waveforms;
    ClockOptions clock;
    /// In samples.
    unsigned bufferSize = 0;
    /// Endless without.
    std::optional<double> seconds;
    Format format = Format::live;
    /// A file; empty for the standard output.
    std::string output;
    LogOptions log;
};

struct DevicesOptions {
    Format format = Format::text;
    LogOptions log;
};

/// What --help or --version prints.
struct ShownText {
    std::string text;
};

using Command = std::variant<ShownText, DevicesOptions, MonitorOptions>;

/// @param arguments with the program's name first
/// @throws common::Refusal for a command line that can't be followed
Command parseCommandLine(const QStringList &arguments);

} // namespace analyser
