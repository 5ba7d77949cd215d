#pragma once

#include <mutex>
#include <string>
#include <vector>

#include <QString>
#include <QtGlobal>

#include "analyser/AnalyserOptions.h"
#include "analyser/LineWriter.h"

namespace analyser {

/**
 * Takes every line that goes through Qt's message logger, and passes it on where the user wants to see it. Any thread
 * may log, and none waits for who reads the lines.
 */
class LibraryLog {
public:
    /// The one that is fed by Qt. It is never destroyed, because the library logs until it is unloaded.
    static LibraryLog &shared();
    /// Makes Qt feed the shared log. Safe to call before any constructor of the process has run.
    static void install();

    /// Until this call lines are kept. @throws common::Refusal if the file can't be opened
    void configure(const LogOptions &options);
    void take(QtMsgType type, const QString &line);

    /// The system's reason why the log file can't be written any more; empty while all is well.
    std::string failure() const;

private:
    void pass(const std::string &line);

    mutable std::mutex linesMutex; // guards all below
    bool configured = false;
    std::vector<std::string> kept;
    LineWriter errorOutput;
    LineWriter file;
};

} // namespace analyser
