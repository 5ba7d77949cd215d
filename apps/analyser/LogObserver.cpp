#include "analyser/LogObserver.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include <QDateTime>

#include "common/Refusal.h"
#include "common/complain.h"

namespace analyser {

namespace {

const char *levelName(QtMsgType type) {
    switch (type) {
    case QtDebugMsg:
        return "DEBUG";
    case QtInfoMsg:
        return "INFO";
    case QtWarningMsg:
        return "WARNING";
    case QtCriticalMsg:
        return "CRITICAL";
    case QtFatalMsg:
        break;
    }
    return "FATAL";
}

/// What follows @p marker in a line that begins with @p context.
std::optional<std::string_view> after(std::string_view line, std::string_view context, std::string_view marker) {
    if (line.substr(0, context.size()) != context) {
        return std::nullopt;
    }
    const auto position = line.find(marker, context.size());
    return position == std::string_view::npos ? std::nullopt : std::optional(line.substr(position + marker.size()));
}

/// The first text in double quotes.
std::string inQuotes(std::string_view text) {
    const auto begin = text.find('"');
    const auto end = begin == std::string_view::npos ? begin : text.find('"', begin + 1);
    return end == std::string_view::npos ? "" : std::string(text.substr(begin + 1, end - begin - 1));
}

/// Without the blanks and the quotes around it.
std::string bare(std::string_view text) {
    constexpr std::string_view wrapping = " \"";
    const auto begin = text.find_first_not_of(wrapping);
    const auto end = text.find_last_not_of(wrapping);
    return begin == std::string_view::npos ? "" : std::string(text.substr(begin, end - begin + 1));
}

} // namespace

LogObserver &LogObserver::shared() {
    static auto &observer = *new LogObserver; // NOLINT(bugprone-unhandled-exception-at-new)
    return observer;
}

void LogObserver::install() {
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &line) {
        shared().observe(type, line);
        if (type == QtFatalMsg) {
            common::complain(line.toStdString());
        }
    });
}

void LogObserver::configure(const LogOptions &options) {
    const std::lock_guard lock(linesMutex);
    if (!options.file.empty()) {
        file = LineWriter(
            common::FileDescriptor(::open(options.file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666)));
        if (!file.isOpen()) {
            throw common::Refusal("cannot write the log '" + options.file + "': " + std::strerror(errno));
        }
    }
    if (options.verbose) {
        errorOutput = LineWriter(common::FileDescriptor(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)));
    }
    configured = true;
    for (const auto &line : kept) {
        pass(line);
    }
    kept = {};
}

void LogObserver::observe(QtMsgType type, const QString &line) {
    const std::string text = line.toStdString();
    {
        const std::lock_guard lock(factsMutex);
        count(text);
    }
    const std::lock_guard lock(linesMutex);
    if (configured && !errorOutput.isOpen() && !file.isOpen()) {
        return;
    }
    const QString time = QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs);
    const std::string entry = time.toStdString() + ' ' + levelName(type) + ' ' + text + '\n';
    if (configured) {
        pass(entry);
    } else {
        kept.push_back(entry);
    }
}

void LogObserver::count(const std::string &line) {
    const auto thread = std::this_thread::get_id();
    const bool followsChannelLine = std::exchange(threadOfChannelLine, {}) == thread;
    if (const auto gaps = after(line, "avb::AvtpPacketReceiver::extractAvtpPacketData ", "Packets missed:")) {
        known.packetsMissed = std::strtoull(bare(*gaps).c_str(), nullptr, 10);
    } else if (const auto channels = after(line, "avb::AvtpPacketBoundaryChecker::checkChannelAmount", " ")) {
        if (channels->find("amount of AVTP packet channels is invalid") != std::string_view::npos) {
            ++known.refused[inQuotes(*channels)].channelAmount;
            threadOfChannelLine = thread;
        }
    } else if (const auto length = after(line, "avb::AvtpPacketReceiver::performPreDataExtractionChecks ",
                                         "Packet audio data won't be extracted for device:")) {
        // A frame of a wrong channel amount is usually blamed for its length too, which then says nothing.
        if (!followsChannelLine) {
            ++known.refused[inQuotes(*length)].dataLength;
        }
    } else if (after(line, "pcapplus::RunPcapEventLoop::run ", "PCAP listener INACTIVE")) {
        ++known.capturesEnded;
    } else if (const auto error = after(line, "pcapplus::PcapPacketSniffer::configure ", "Error message:")) {
        known.openError = bare(*error);
    }
}

void LogObserver::pass(const std::string &line) {
    errorOutput.write(line);
    file.write(line);
}

LogFacts LogObserver::facts() const {
    const std::lock_guard lock(factsMutex);
    return known;
}

std::string LogObserver::failure() const {
    const std::lock_guard lock(linesMutex);
    return file.getFailure();
}

} // namespace analyser
