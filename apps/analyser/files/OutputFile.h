#pragma once

#include <memory>
#include <string>

#include "monitoring/Listener.h"
#include "monitoring/SessionSettings.h"

namespace analyser {

class Output;

/// What listeners that write data have in common.
class OutputFile : public monitoring::Listener {
public:
    OutputFile(std::shared_ptr<Output> newOutput, const monitoring::SessionSettings &newSettings);
    ~OutputFile() override;

protected:
    void write(const std::string &text);
    /// In UTC, for those who read the output later.
    static std::string timeText(std::chrono::system_clock::time_point time);

    const monitoring::SessionSettings &settings;

private:
    const std::shared_ptr<Output> output;
};

} // namespace analyser
