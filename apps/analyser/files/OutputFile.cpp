#include "analyser/files/OutputFile.h"

#include <utility>

#include <QDateTime>

#include "analyser/output/Output.h"

namespace analyser {

OutputFile::OutputFile(std::shared_ptr<Output> newOutput, const monitoring::SessionSettings &newSettings)
    : settings(newSettings), output(std::move(newOutput)) {}

OutputFile::~OutputFile() = default;

void OutputFile::write(const std::string &text) {
    output->write(text);
}

std::string OutputFile::timeText(std::chrono::system_clock::time_point time) {
    const auto sinceEpoch = std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch());
    return QDateTime::fromMSecsSinceEpoch(sinceEpoch.count(), Qt::UTC).toString(Qt::ISODateWithMs).toStdString();
}

} // namespace analyser
