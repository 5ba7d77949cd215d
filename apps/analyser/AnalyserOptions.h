#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <QStringList>

#include "common/AafFormat.h"
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

/// A stream as the command line names it. What it leaves out, its frames say.
struct StreamRequest {
    /// Of the source address or of the ID.
    std::string key;
    std::optional<unsigned> channels;
    std::optional<unsigned> samplesPerChannel;
    const common::AafFormat *format = nullptr;
    std::optional<unsigned> sampleRate;

    /// Whether it can be followed without its frames: a rate left out behind all the rest is 48 kHz, as the command
    /// streams writes it.
    bool isComplete() const { return channels && samplesPerChannel && format != nullptr; }
};

struct MonitorOptions {
    /// All but the streams, the analyses and the buffer, which wait for what is heard.
    monitoring::SessionSettings session;
    /// Empty for all that are heard.
    std::vector<StreamRequest> streams;
    /// The values of each kind's option; empty for an overview.
    std::map<std::string, std::vector<std::string>> analyses;
    std::optional<unsigned> bufferSize;
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

/// The session of the options with these streams. @throws common::Refusal for analyses that they don't allow
monitoring::SessionSettings settingsFor(const MonitorOptions &options, std::vector<monitoring::StreamSettings> streams);

} // namespace analyser
