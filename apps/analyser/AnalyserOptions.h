#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <QStringList>

#include "analyser/AnalysisOptions.h"

namespace analyser {

enum class Format { live, json, csv, text };

struct LogOptions {
    bool verbose = false;
    /// Empty for none.
    std::string file;
};

struct MonitorOptions {
    std::string device;
    std::vector<StreamOptions> streams;
    std::vector<AnalysisOptions> analyses;
    ClockOptions clock;
    /// What 0 dB full scale is in dB SPL.
    std::optional<double> reference;
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
