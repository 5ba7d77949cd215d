#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

#include <sonvex/sonvex.h>

#include "support/Churn.h"

namespace endurance {

/// What the library's log told so far, of all runs.
struct Told {
    static std::atomic<std::uint64_t> gaps;
    static std::atomic<std::uint64_t> refusals;
    static std::atomic<std::uint64_t> failures; ///< captures that ended by themselves
    static std::atomic<std::uint64_t> faults;   ///< lines of Qt's own that must not come

    /// Takes the process's log over.
    static void listen();
};

/// A measurement application of eight streams with six analyses each, on one adapter. One run per object.
class EnduranceHost {
public:
    static constexpr unsigned streamAmount = 8;

    static std::vector<std::string> macs();

    /// Adds everything and starts it.
    explicit EnduranceHost(const std::string &adapter);
    /// Ends the run.
    ~EnduranceHost();
    EnduranceHost(const EnduranceHost &) = delete;
    EnduranceHost &operator=(const EnduranceHost &) = delete;

    /// Runs the event loop until every analysis has delivered from now on. @return false if one does not in a minute
    bool awaitAll();
    /// Changes something that a host may change while it measures: processors go and come, orders, clocks, windows.
    void change();
    /// As when an adapter has failed: the host stops the capture and starts it again. @return whether it runs
    bool restartCapture();
    std::uint64_t results() const;

    /// Drops what the run before has left idle, as the next addition does.
    static void dropLastRun();

    /// Runs the event loop for so long.
    static void runFor(int milliseconds);

private:
    struct Analysis {
        sonvex::iprocess::ISampleProcessorConfigBase *config;
        sonvex::IProcessConfiguration *process;
        sonvex::ihandles::IProcessorHandle *handle;
    };

    void add(unsigned stream, unsigned char channel, sonvex::iprocess::ISampleProcessorConfigBase &config);

    support::Churn churn{support::Churn::Values::Delivering};
    sonvex::ihandles::INetworkReceiverHandle *capture = nullptr;
    std::vector<Analysis> analyses;
};

} // namespace endurance
