#pragma once

#include <cstdint>
#include <future>
#include <string>

#include <QObject>

#include "core/data/StringOverloadBase.h"
#include "core/messages/BaseMessage.h"
#include "pcapplus/PcapDeviceInfo.h"

struct pcap;

namespace pcapplus {

class PcapPacketReceiverBase;
class RunPcapEventLoop;
enum class GatheredFrames;

/**
 * Opens one adapter and captures from it on a thread of the global pool.
 *
 * Threads: all operations belong on the host's thread, which alone touches the fields; the capture loop knows only the
 * adapter's handle, and libpcap's pcap_breakloop ends it from here. stop() does not wait for the loop, start() after
 * stop(), waitForCaptureEnd() and the destructor do.
 *
 * A capture still running when Qt's application object goes is stopped then, as that object waits for the pool.
 */
class PcapPacketSniffer : public QObject, public StringOverloadBase {
    Q_OBJECT

public:
    /// Opens the adapter; see configure().
    PcapPacketSniffer(const PcapDeviceInfo &deviceInfo, int snapLength, int promiscuous, int timeoutMilliseconds,
                      QObject *parent);
    /// Empties the process-wide packet handler slot, ends the capture and closes the adapter.
    ~PcapPacketSniffer() override;

    /// @return whether the adapter is open; the log has the reason if not
    bool configure(const PcapDeviceInfo &deviceInfo, int snapLength, int promiscuous, int timeoutMilliseconds);
    bool isConfigured();
    bool isRunning() const;
    PcapDeviceInfo getDeviceInfoCopy() const;
    /// Sets a capture filter, on a running capture too. A failure leaves the earlier filter in place.
    bool setFilter(const std::string &expression, int optimise, std::uint32_t netmask);
    /// Makes @p receiver the process's one target of captured frames. Has to outlive its stay there.
    void registerPacketReceiver(PcapPacketReceiverBase &receiver);
    /// Returns once no capture loop of this sniffer is left. For a running capture, call stop() first.
    void waitForCaptureEnd();

    std::string toString() const override;

public Q_SLOTS:
    void start();
    void stop();

Q_SIGNALS:
    /// A status text.
    void message(const sonvex::BaseMessage &message);

private:
    void report(const char *type, const std::string &text);
    void closeAdapter();
    void launchLoop(GatheredFrames gathered);
    void breakLoop();

    std::string snifferName;
    PcapDeviceInfo deviceInfo;
    bool configured = false;
    bool running = false;
    bool filterEnabled = false;
    std::string filterExpression = "None";
    std::string receiverName = "None";
    pcap *pcapHandle = nullptr;
    RunPcapEventLoop *eventLoop = nullptr; ///< the latest; owned by the pool
    std::future<void> loopEnd;             ///< ready when the latest loop's task is gone
};

} // namespace pcapplus
