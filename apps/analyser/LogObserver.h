#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <QString>
#include <QtGlobal>

#include "analyser/AnalyserOptions.h"
#include "analyser/LineWriter.h"

namespace analyser {

/// Frames of a stream whose samples were not taken, by reason.
struct RefusedFrames {
    std::uint64_t channelAmount = 0;
    std::uint64_t dataLength = 0;
};

/// What the library tells in its log only.
struct LogFacts {
    /// Gaps in the sequence numbers, over all streams.
    std::uint64_t packetsMissed = 0;
    /// By the stream's address.
    std::map<std::string, RefusedFrames> refused;
    /// Captures that have come to an end, for whatever reason.
    unsigned capturesEnded = 0;
    /// The system's reason why an adapter could not be opened; empty if none failed.
    std::string openError;
};

/**
 * Reads every line that goes through Qt's message logger: counts what the host wants to know, and passes the lines on
 * where the user wants to see them. Any thread may log, and none waits for who reads the lines.
 */
class LogObserver {
public:
    /// The one that is fed by Qt. It is never destroyed, because the library logs until it is unloaded.
    static LogObserver &shared();
    /// Makes Qt feed the shared observer. Safe to call before any constructor of the process has run.
    static void install();

    /// Until this call lines are kept. @throws common::Refusal if the file can't be opened
    void configure(const LogOptions &options);
    void observe(QtMsgType type, const QString &line);

    LogFacts facts() const;
    /// The system's reason why the log file can't be written any more; empty while all is well.
    std::string failure() const;

private:
    void count(const std::string &line);
    void pass(const std::string &line);

    mutable std::mutex factsMutex; // guards the next two; never held while a line is written
    LogFacts known;
    std::thread::id threadOfChannelLine;
    mutable std::mutex linesMutex; // guards all below
    bool configured = false;
    std::vector<std::string> kept;
    LineWriter errorOutput;
    LineWriter file;
};

} // namespace analyser
