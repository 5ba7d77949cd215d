#pragma once

#include <string>
#include <vector>

#include "analyser/Progress.h"
#include "analyser/Session.h"

namespace analyser {

class Output;

/// One kind of output. Everything is called on the main thread.
class ResultSink {
public:
    explicit ResultSink(Output &newOutput);
    virtual ~ResultSink();
    ResultSink(const ResultSink &) = delete;
    ResultSink &operator=(const ResultSink &) = delete;

    /// Before the first result of any of the analyses.
    virtual void begin(const std::vector<Analysis> &) {}
    virtual void result(const Result &result) = 0;
    virtual void message(const sonvex::imessages::IBaseMessage &message) = 0;
    /// About once a second.
    virtual void progress(const Progress &) {}
    /// After the last result.
    virtual void summary(const Progress &progress) = 0;
    /// Whether this needs a terminal's screen for itself. The conditions in a Progress then show there; otherwise they
    /// are said on the error output.
    virtual bool needsScreen() const { return false; }
    virtual void enterScreen() {}
    /// Gives the terminal back as it was.
    virtual void leaveScreen() {}
    /// The window has another size.
    virtual void resized() {}

protected:
    /// Now, in UTC, for those who read the output later.
    static std::string timeText();

    Output &output;
};

/// The summary for the eye, one line each for the run and every analysis.
std::string summaryText(const Progress &progress, const std::string &linePrefix);

} // namespace analyser
