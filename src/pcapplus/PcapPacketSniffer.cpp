#include "pcapplus/PcapPacketSniffer.h"

#include <chrono>
#include <limits>
#include <mutex>
#include <set>

#include <QCoreApplication>
#include <QThreadPool>

#include <pcap/pcap.h>

#include "core/logging/Log.h"
#include "core/messages/MessageTexts.h"
#include "core/messages/StatusMessage.h"
#include "pcapplus/PcapPacketReceiverBase.h"
#include "pcapplus/RunPcapEventLoop.h"
#include "pcapplus/openAdapter.h"

namespace pcapplus {

using sonvex::messagetexts::information;
using sonvex::messagetexts::warning;

namespace {

/// The captures that Qt's application object would wait for without an end. Host's thread only; never destroyed.
std::set<PcapPacketSniffer *> &runningSniffers() {
    static auto &sniffers = *new std::set<PcapPacketSniffer *>;
    return sniffers;
}

bool stopsAtApplicationEnd = false;

void stopRunningSniffers() {
    stopsAtApplicationEnd = false; // Qt forgets its routines once they have run
    const std::set<PcapPacketSniffer *> sniffers = runningSniffers();
    for (PcapPacketSniffer *sniffer : sniffers) {
        sniffer->stop();
    }
}

void stopAtApplicationEnd(PcapPacketSniffer *sniffer) {
    runningSniffers().insert(sniffer);
    if (!stopsAtApplicationEnd) {
        qAddPostRoutine(stopRunningSniffers);
        stopsAtApplicationEnd = true;
    }
}

/// A compiled filter; compiling is not safe on two threads at a time.
class FilterProgram {
public:
    FilterProgram(pcap_t *handle, const std::string &expression, int optimise, std::uint32_t netmask) {
        static std::mutex compilation;
        const std::lock_guard<std::mutex> lock(compilation);
        compiled = pcap_compile(handle, &program, expression.c_str(), optimise, netmask) >= 0;
    }
    ~FilterProgram() {
        if (compiled) {
            pcap_freecode(&program);
        }
    }
    FilterProgram(const FilterProgram &) = delete;
    FilterProgram &operator=(const FilterProgram &) = delete;

    bool isCompiled() const { return compiled; }
    bpf_program *get() { return &program; }

private:
    bpf_program program{};
    bool compiled = false;
};

} // namespace

PcapPacketSniffer::PcapPacketSniffer(const PcapDeviceInfo &deviceInfo, int snapLength, int promiscuous,
                                     int timeoutMilliseconds, QObject *parent)
    : QObject(parent), snifferName("PcapPacketSniffer (eth" + std::to_string(deviceInfo.getSystemDeviceNumber()) + ")"),
      deviceInfo(deviceInfo) {
    configure(deviceInfo, snapLength, promiscuous, timeoutMilliseconds);
}

PcapPacketSniffer::~PcapPacketSniffer() {
    PacketHandlerSlot::instance().set(dummyPacketHandler);
    stop();
    if (configured) {
        waitForCaptureEnd();
        logging::debug("pcapplus::PcapPacketSniffer::~PcapPacketSniffer", snifferName, "Release PCAP and free memory");
    }
    closeAdapter();
}

bool PcapPacketSniffer::configure(const PcapDeviceInfo &device, int snapLength, int promiscuous,
                                  int timeoutMilliseconds) {
    static constexpr char context[] = "pcapplus::PcapPacketSniffer::configure";
    const std::string number = std::to_string(device.getSystemDeviceNumber());
    if (!device.isValid()) {
        configured = false;
        logging::debug(context, snifferName, "Passed device info object is invalid! Cannot configure device",
                       " number: ", device.getSystemDeviceNumber());
        return false;
    }
    if (running) {
        stop();
    }
    closeAdapter();
    deviceInfo = device;
    std::string error;
    pcapHandle = openAdapter(deviceInfo.getSystemDeviceName(), {snapLength, promiscuous, timeoutMilliseconds}, error);
    configured = pcapHandle != nullptr;
    const std::string text = configured ? "Successfully configured adapter number " + number
                                        : "Unable to open the adapter number " + number + ". Error message: " + error;
    logging::debug(context, snifferName, text);
    report(information, text);
    return configured;
}

bool PcapPacketSniffer::isConfigured() {
    if (!configured) {
        const std::string text = "Sniffer not configured properly! Please set a valid configuration!";
        logging::warning("pcapplus::PcapPacketSniffer::isConfigured", snifferName, text);
        report(warning, text);
    }
    return configured;
}

bool PcapPacketSniffer::isRunning() const {
    return running;
}

PcapDeviceInfo PcapPacketSniffer::getDeviceInfoCopy() const {
    return deviceInfo;
}

bool PcapPacketSniffer::setFilter(const std::string &expression, int optimise, std::uint32_t netmask) {
    if (!isConfigured()) {
        return false;
    }
    std::string text = "Filter '" + expression + "'";
    FilterProgram program(pcapHandle, expression, optimise, netmask);
    if (!program.isCompiled()) {
        filterEnabled = false;
        text += ": Unable to compile! Check the syntax";
    } else {
        // A capture reads the filter program that pcap_setfilter replaces, so it pauses; the kernel keeps its frames.
        if (running) {
            breakLoop();
        }
        waitForCaptureEnd();
        filterEnabled = pcap_setfilter(pcapHandle, program.get()) >= 0;
        if (filterEnabled) {
            filterExpression = expression;
            text += " enabled";
        } else {
            text += std::string(": cannot be set! Error message: ") + pcap_geterr(pcapHandle);
        }
        if (running) {
            launchLoop(GatheredFrames::Deliver);
        }
    }
    logging::debug("pcapplus::PcapPacketSniffer::setFilter", snifferName, text);
    report(information, text);
    return filterEnabled;
}

void PcapPacketSniffer::registerPacketReceiver(PcapPacketReceiverBase &receiver) {
    PacketHandlerSlot::instance().set(receiver.getPacketHandler());
    receiver.bindToDevice(deviceInfo.getSystemDeviceNumber());
    receiverName = receiver.getReceiverName();
    const std::string text = "Registered: " + receiverName;
    logging::debug("pcapplus::PcapPacketSniffer::registerPacketReceiver", snifferName, text);
    report(information, text);
}

void PcapPacketSniffer::start() {
    static constexpr char context[] = "pcapplus::PcapPacketSniffer::start";
    if (running) {
        const std::string text = "Sniffer already listening, cannot be started!";
        logging::warning(context, snifferName, text);
        report(warning, text);
        return;
    }
    if (!isConfigured()) {
        return;
    }
    const std::string text = "Start listening";
    logging::debug(context, snifferName, text);
    launchLoop(GatheredFrames::Skip);
    report(information, text);
    running = true;
    stopAtApplicationEnd(this);
}

void PcapPacketSniffer::stop() {
    static constexpr char context[] = "pcapplus::PcapPacketSniffer::stop";
    if (!running) {
        const std::string text = "Sniffer not listening, cannot be stopped!";
        logging::warning(context, snifferName, text);
        report(warning, text);
        return;
    }
    running = false;
    runningSniffers().erase(this);
    breakLoop();
    const std::string text = "Stop listening";
    logging::debug(context, snifferName, text);
    report(information, text);
}

std::string PcapPacketSniffer::toString() const {
    std::string text = snifferName + " configured on device: " + std::to_string(deviceInfo.getSystemDeviceNumber()) +
                       "\nBound to packet receiver: " + receiverName + "\nFilter set: " + filterExpression +
                       "\nRunning: " + (running ? "1" : "0") + "\nAdapter details:\n\t" + deviceInfo.toString();
    if (!configured) {
        text += "\nNicSniffer initialized but not configured properly!";
    }
    return text;
}

void PcapPacketSniffer::report(const char *type, const std::string &text) {
    Q_EMIT message(sonvex::StatusMessage(snifferName, type, "PcapPacketSniffer", text));
}

void PcapPacketSniffer::closeAdapter() {
    if (pcapHandle != nullptr) {
        waitForCaptureEnd();
        pcap_close(pcapHandle);
        pcapHandle = nullptr;
    }
}

void PcapPacketSniffer::launchLoop(GatheredFrames gathered) {
    waitForCaptureEnd();
    eventLoop = new RunPcapEventLoop(snifferName, pcapHandle, gathered);
    loopEnd = eventLoop->getEnd();
    // A capture runs for hours: it must neither wait behind the host's tasks in the pool nor hold one of its few slots.
    QThreadPool *pool = QThreadPool::globalInstance();
    if (!pool->tryStart(eventLoop)) {
        pool->start(eventLoop, std::numeric_limits<int>::max());
    }
    pool->releaseThread();
}

void PcapPacketSniffer::breakLoop() {
    // A break that no loop is left to see would end the next one: for a loop that has ended by itself, and for one that
    // still waits in the pool's queue, which is withdrawn.
    QThreadPool *pool = QThreadPool::globalInstance();
    if (!loopEnd.valid() || loopEnd.wait_for(std::chrono::seconds(0)) == std::future_status::ready) {
        return;
    }
    if (pool->tryTake(eventLoop)) {
        delete eventLoop;
        pool->reserveThread();
    } else {
        pcap_breakloop(pcapHandle);
    }
}

void PcapPacketSniffer::waitForCaptureEnd() {
    if (loopEnd.valid()) {
        loopEnd.wait();
        loopEnd = {};
    }
}

} // namespace pcapplus
