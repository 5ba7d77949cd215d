#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <QObject>

#include "core/data/StringOverloadBase.h"
#include "core/facts/AdapterFacts.h"
#include "core/messages/StatusMessage.h"
#include "pcapplus/PcapDeviceInfo.h"
#include "pcapplus/openAdapter.h"

namespace pcapplus {

class CaptureRun;
class PcapPacketReceiverBase;
enum class GatheredFrames;

/**
 * Opens one adapter and captures from it on a thread of its own, the CaptureRun.
 *
 * Threads: all operations belong on the host's thread, which alone touches the fields; the capture's thread knows only
 * the adapter's handle. stop() does not wait for that thread; start() after stop(), release() and the destructor do.
 *
 * It runs from start() to stop(), also if its adapter fails meanwhile; the next start() opens the adapter anew then. A
 * start that the system gives no thread or no adapter for leaves it stopped, with a warning.
 */
class PcapPacketSniffer : public QObject, public StringOverloadBase {
    Q_OBJECT

public:
    /// Opens the adapter; see configure(). @param facts not null; the adapter's, from the start
    PcapPacketSniffer(const PcapDeviceInfo &deviceInfo, int snapLength, int promiscuous, int timeoutMilliseconds,
                      QObject *parent,
                      std::shared_ptr<facts::AdapterFacts> facts = std::make_shared<facts::AdapterFacts>());
    /// Empties the process-wide packet handler slot, ends the capture and closes the adapter.
    ~PcapPacketSniffer() override;

    /// @return whether the adapter is open; the log has the reason if not
    bool configure(const PcapDeviceInfo &deviceInfo, int snapLength, int promiscuous, int timeoutMilliseconds);
    bool isConfigured();
    bool isRunning() const;
    PcapDeviceInfo getDeviceInfoCopy() const;
    /// Sets a capture filter, on a running capture too. A failure leaves the earlier filter in place.
    bool setFilter(const std::string &expression, int optimise, std::uint32_t netmask);
    /// The same, with a warning if the capture has to do without.
    void requireFilter(const std::string &expression, int optimise, std::uint32_t netmask);
    /// Makes @p receiver the process's one target of captured frames. Has to outlive its stay there.
    void registerPacketReceiver(PcapPacketReceiverBase &receiver);
    /// Returns once no capture loop of this sniffer is left. For a running capture, call stop() first.
    void waitForCaptureEnd();
    /// Ends the capture, waits for that and closes the adapter, so that the kernel gathers no frames for it any more;
    /// a start() would open it anew.
    void release();

    std::string toString() const override;

public Q_SLOTS:
    void start();
    void stop();

Q_SIGNALS:
    /// A status text.
    void message(const sonvex::BaseMessage &message);

private:
    /// What setFilter() was given, for an adapter that is opened anew.
    struct Filter {
        std::string expression;
        int optimise;
        std::uint32_t netmask;
    };

    void warn(const char *context, const std::string &text);
    void report(const char *type, const std::string &text);
    sonvex::StatusMessage statusOf(const char *type, const std::string &text) const;
    void closeAdapter();
    /// Whether the adapter was open once and no capture can go on with that.
    bool isAdapterLost() const;
    void reopenAdapter();
    /// @return false, with a warning, if the system gives no thread
    bool launch(GatheredFrames gathered);

    std::shared_ptr<facts::AdapterFacts> facts;
    std::string snifferName;
    PcapDeviceInfo deviceInfo;
    AdapterSettings settings{};
    bool configured = false;
    bool running = false;
    bool filterEnabled = false;
    std::string filterExpression = "None";
    std::unique_ptr<Filter> filter; ///< the one that is set; null without
    std::string receiverName = "None";
    OpenAdapter adapter;                    ///< null while none is open
    bool opened = false;                    ///< at some time
    unsigned int adapterIndex = 0;          ///< the system's number of the adapter: not that of a later one of its name
    std::unique_ptr<CaptureRun> captureRun; ///< the latest
};

} // namespace pcapplus
