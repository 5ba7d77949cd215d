#include "analyser/LibraryLog.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

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

} // namespace

LibraryLog &LibraryLog::shared() {
    static auto &log = *new LibraryLog; // NOLINT(bugprone-unhandled-exception-at-new)
    return log;
}

void LibraryLog::install() {
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &line) {
        shared().take(type, line);
        if (type == QtFatalMsg) {
            common::complain(line.toStdString());
        }
    });
}

void LibraryLog::configure(const LogOptions &options) {
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

void LibraryLog::take(QtMsgType type, const QString &line) {
    const std::lock_guard lock(linesMutex);
    if (configured && !errorOutput.isOpen() && !file.isOpen()) {
        return;
    }
    const QString time = QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs);
    const std::string entry = time.toStdString() + ' ' + levelName(type) + ' ' + line.toStdString() + '\n';
    if (configured) {
        pass(entry);
    } else {
        kept.push_back(entry);
    }
}

void LibraryLog::pass(const std::string &line) {
    errorOutput.write(line);
    file.write(line);
}

std::string LibraryLog::failure() const {
    const std::lock_guard lock(linesMutex);
    return file.getFailure();
}

} // namespace analyser
