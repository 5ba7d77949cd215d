#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <QStringList>

#include "monitoring/SessionSettings.h"

namespace analyser {

enum class Format { live, json, csv, text };

struct LogOptions {
    bool verbose = false;
    /// Empty for none.
    std::string file;
};

/// Where results go.
struct OutputOptions {
    Format format = Format::live;
    /// A file; empty for the standard output.
    std::string file;
    /// What happens while its reader takes nothing: the session waits, rather than to leave results out.
    bool waits = false;
};

struct MonitorOptions {
    monitoring::SessionSettings session;
    /// Endless without.
    std::optional<double> seconds;
    /// The first one is what the user looks at.
    std::vector<OutputOptions> outputs;
    LogOptions log;
};

struct DevicesOptions {
    Format format = Format::text;
    LogOptions log;
};

struct StreamsOptions {
    std::string device;
    std::chrono::milliseconds duration{};
    Format format = Format::text;
    LogOptions log;
};

/// What --help or --version prints.
struct ShownText {
    std::string text;
};

using Command = std::variant<ShownText, DevicesOptions, StreamsOptions, MonitorOptions>;

/// @param arguments with the program's name first
/// @throws common::Refusal for a command line that can't be followed
Command parseCommandLine(const QStringList &arguments);

} // namespace analyser
