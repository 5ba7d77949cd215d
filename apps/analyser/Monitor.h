#pragma once

#include <memory>
#include <set>
#include <string>

#include <QTimer>

#include "analyser/AdapterProbe.h"
#include "analyser/AnalyserOptions.h"
#include "analyser/Diagnosis.h"
#include "analyser/Output.h"
#include "analyser/Progress.h"
#include "analyser/Session.h"

namespace analyser {

class ResultSink;

/// The command monitor: joins the session, the output and the diagnosis, from the first frame to the summary.
class Monitor {
public:
    /// @throws common::Refusal if the options don't fit the machine
    explicit Monitor(const MonitorOptions &options);
    ~Monitor();
    Monitor(const Monitor &) = delete;
    Monitor &operator=(const Monitor &) = delete;

    /// Runs until the time is over or the user ends it. @return the exit status
    int run();

private:
    std::unique_ptr<ResultSink> makeSink();
    void tick();
    Progress measure();
    std::string conditions();
    bool isOverdue(const Analysis &analysis) const;

    const MonitorOptions &options;
    Session session;
    Output output;
    std::unique_ptr<ResultSink> sink;
    AdapterProbe probe;
    Diagnosis diagnosis;
    QTimer ticker;
    Progress latest;
    std::set<std::string> said; // keys of the conditions of the last tick
};

} // namespace analyser
