#include "pcapplus/PcapPacketSniffer.h"

#include <cerrno>
#include <exception>
#include <mutex>
#include <utility>

#include <net/if.h>

#include <pcap/pcap.h>

#include "core/logging/Log.h"
#include "core/messages/MessageTexts.h"
#include "core/messages/StatusMessage.h"
#include "pcapplus/CaptureRun.h"
#include "pcapplus/PcapPacketReceiverBase.h"

namespace pcapplus {

using sonvex::messagetexts::information;
using sonvex::messagetexts::warning;

namespace {

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
                                     int timeoutMilliseconds, QObject *parent,
                                     std::shared_ptr<facts::AdapterFacts> adapterFacts)
    : QObject(parent), facts(std::move(adapterFacts)),
      snifferName("PcapPacketSniffer (eth" + std::to_string(deviceInfo.getSystemDeviceNumber()) + ")"),
      deviceInfo(deviceInfo) {
    facts->begin();
    configure(deviceInfo, snapLength, promiscuous, timeoutMilliseconds);
}

PcapPacketSniffer::~PcapPacketSniffer() {
    PacketHandlerSlot::instance().set(dummyPacketHandler);
    stop();
    waitForCaptureEnd();
    if (opened) {
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
    release();
    deviceInfo = device;
    settings = {snapLength, promiscuous, timeoutMilliseconds};
    std::string error;
    adapterIndex = if_nametoindex(deviceInfo.getSystemDeviceName().c_str());
    adapter = openAdapter(deviceInfo.getSystemDeviceName(), settings, error);
    configured = adapter != nullptr;
    facts->startFailed(configured ? "" : error);
    opened = opened || configured;
    const std::string text = configured ? "Successfully configured adapter number " + number
                                        : "Unable to open the adapter number " + number + ". Error message: " + error;
    logging::debug(context, snifferName, text);
    report(information, text);
    return configured;
}

bool PcapPacketSniffer::isConfigured() {
    if (!configured) {
        warn("pcapplus::PcapPacketSniffer::isConfigured",
             "Sniffer not configured properly! Please set a valid configuration!");
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
    static constexpr char context[] = "pcapplus::PcapPacketSniffer::setFilter";
    if (!isConfigured()) {
        return false;
    }
    std::string text = "Filter '" + expression + "'";
    FilterProgram program(adapter.get(), expression, optimise, netmask);
    if (!program.isCompiled()) {
        filterEnabled = false;
        text += ": Unable to compile! Check the syntax";
    } else {
        auto newFilter = std::make_unique<Filter>(Filter{expression, optimise, netmask}); // before anything pauses
        // A capture reads the filter program that pcap_setfilter replaces, so it pauses; the kernel keeps its frames.
        if (running) {
            captureRun->breakLoop();
        }
        waitForCaptureEnd();
        const bool pauses = running && !captureRun->hasFailed();
        filterEnabled = pcap_setfilter(adapter.get(), program.get()) >= 0;
        if (filterEnabled) {
            filterExpression = expression;
            filter = std::move(newFilter);
            text += " enabled";
        } else {
            text += std::string(": cannot be set! Error message: ") + pcap_geterr(adapter.get());
        }
        if (pauses) {
            running = launch(GatheredFrames::Deliver);
        }
    }
    logging::debug(context, snifferName, text);
    report(information, text);
    return filterEnabled;
}

void PcapPacketSniffer::requireFilter(const std::string &expression, int optimise, std::uint32_t netmask) {
    if (!setFilter(expression, optimise, netmask)) {
        warn("pcapplus::PcapPacketSniffer::requireFilter",
             "The filter '" + expression + "' is refused! All frames are captured");
    }
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
        warn(context, "Sniffer already listening, cannot be started!");
        return;
    }
    waitForCaptureEnd(); // after which it is certain whether the last one has failed
    if (isAdapterLost()) {
        reopenAdapter();
    }
    if (!isConfigured()) {
        return;
    }
    const std::string text = "Start listening";
    logging::debug(context, snifferName, text);
    const auto started = statusOf(information, text); // nothing may fail once the capture runs
    running = launch(GatheredFrames::Skip);
    if (running) {
        Q_EMIT message(started);
    }
}

void PcapPacketSniffer::stop() {
    static constexpr char context[] = "pcapplus::PcapPacketSniffer::stop";
    if (!running) {
        warn(context, "Sniffer not listening, cannot be stopped!");
        return;
    }
    running = false;
    captureRun->breakLoop();
    facts->captureStopped();
    facts->countDropsWith({});
    const std::string text = "Stop listening";
    logging::debug(context, snifferName, text);
    report(information, text);
}

void PcapPacketSniffer::waitForCaptureEnd() {
    if (captureRun) {
        captureRun->wait();
    }
}

void PcapPacketSniffer::release() {
    if (running) {
        stop();
    }
    closeAdapter();
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

void PcapPacketSniffer::warn(const char *context, const std::string &text) {
    logging::warning(context, snifferName, text);
    report(warning, text);
}

void PcapPacketSniffer::report(const char *type, const std::string &text) {
    Q_EMIT message(statusOf(type, text));
}

sonvex::StatusMessage PcapPacketSniffer::statusOf(const char *type, const std::string &text) const {
    return {snifferName, type, "PcapPacketSniffer", text};
}

void PcapPacketSniffer::closeAdapter() {
    facts->countDropsWith({});
    captureRun.reset();
    adapter.reset();
}

bool PcapPacketSniffer::isAdapterLost() const {
    if (!opened || adapter == nullptr || (captureRun && captureRun->hasFailed())) {
        return opened;
    }
    const unsigned int index = if_nametoindex(deviceInfo.getSystemDeviceName().c_str());
    return index != adapterIndex && (index != 0 || errno == ENODEV); // the question itself may fail
}

void PcapPacketSniffer::reopenAdapter() {
    if (configure(PcapDeviceInfo(deviceInfo), settings.snapLength, settings.promiscuous,
                  settings.timeoutMilliseconds) &&
        filter) {
        const Filter earlier = *filter;
        requireFilter(earlier.expression, earlier.optimise, earlier.netmask);
    }
}

bool PcapPacketSniffer::launch(GatheredFrames gathered) {
    captureRun.reset();
    facts->captureStarted(); // before the capture can say that it has failed
    try {
        captureRun = std::make_unique<CaptureRun>(snifferName, adapter.get(), gathered, facts);
    } catch (const std::exception &refusal) {
        facts->captureStopped();
        facts->startFailed(refusal.what());
        warn("pcapplus::PcapPacketSniffer::launch",
             std::string("The system refused a thread for the capture! Error message: ") + refusal.what());
        return false;
    }
    if (gathered == GatheredFrames::Skip) { // or the counting goes on
        facts->countDropsWith([handle = adapter.get(), drops = std::uint32_t{0}]() mutable {
            pcap_stat statistics{};
            drops = pcap_stats(handle, &statistics) == 0 ? statistics.ps_drop : drops;
            return drops;
        });
    }
    return true;
}

} // namespace pcapplus
