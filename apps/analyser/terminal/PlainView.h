#pragma once

#include <map>
#include <memory>

#include "analyser/terminal/Panel.h"
#include "monitoring/Listener.h"
#include "monitoring/SessionSettings.h"

namespace analyser {

class Output;

/// The live view where the output is no terminal: a line per analysis and second.
class PlainView : public monitoring::Listener {
public:
    PlainView(std::shared_ptr<Output> newOutput, const monitoring::SessionSettings &newSettings);
    ~PlainView() override;

    void result(const monitoring::Result &result) override;
    void message(const monitoring::Message &message) override;
    void status(const monitoring::Status &status) override;
    void end(const monitoring::Status &status) override;

private:
    const std::shared_ptr<Output> output;
    std::map<const monitoring::Analysis *, MeterPanel> panels;
};

} // namespace analyser
