#include <atomic>
#include <chrono>
#include <future>
#include <thread>

#include <QSemaphore>

#include <gtest/gtest.h>

#include "core/messages/StatusMessage.h"
#include "pcapplus/PcapPacketReceiverBase.h"
#include "pcapplus/PcapPacketSniffer.h"
#include "support/Adapters.h"
#include "support/Frames.h"
#include "support/LogRecorder.h"
#include "support/NetworkNamespace.h"
#include "support/waitFor.h"

namespace {

using support::adapter;
using support::waitFor;

constexpr char avtp[] = "ether proto 0x22f0";

/// Counts frames; may be told to hold the capture inside one.
class CountingReceiver : public pcapplus::PcapPacketReceiverBase {
public:
    ~CountingReceiver() override { pcapplus::PacketHandlerSlot::instance().set(pcapplus::dummyPacketHandler); }
    void receivePacket(u_char *, const pcap_pkthdr *header, const u_char *) override {
        lastLength = header->len;
        if (++frames == holdAt) {
            gate.acquire();
        }
    }
    std::string getReceiverName() const override { return "Counter (" + std::to_string(bound) + ")"; }
    void onDeviceBound(int number) override { bound = number; }
    std::string toString() const override { return {}; }

    std::atomic<int> frames{0};
    std::atomic<unsigned> lastLength{0};
    int holdAt = -1;
    QSemaphore gate;
    int bound = -1;
};

struct Sniffer : pcapplus::PcapPacketSniffer {
    explicit Sniffer(const pcapplus::PcapDeviceInfo &device) : PcapPacketSniffer(device, 65536, 1, 1, nullptr) {
        connect(this, &PcapPacketSniffer::message, [this](const sonvex::BaseMessage &message) {
            const auto &status = dynamic_cast<const sonvex::StatusMessage &>(message);
            messages.push_back(status.getMessageType() + " " + status.getMessage());
        });
    }
    bool filter(const std::string &text) { return setFilter(text, 1, 0xFFFFFFFF); }
    ~Sniffer() override { disconnect(); } // what the base reports while it goes has no list any more
    std::vector<std::string> messages;
};

/// A sniffer of AVTP frames, and what it captures.
struct Capture {
    explicit Capture(const pcapplus::PcapDeviceInfo &device) : sniffer(device) {
        sniffer.filter(avtp);
        sniffer.registerPacketReceiver(receiver);
    }
    CountingReceiver receiver;
    Sniffer sniffer;
};

void sendFrames(talker::RawSocket &socket, int amount = 1) {
    for (int i = 0; i < amount; ++i) {
        support::send(socket, support::makeFrame("020000000001", 0, 2, 6, [](unsigned, unsigned) { return 5; }));
    }
}

/// Sends until a frame arrives: the first ones may come before the loop listens.
bool arrives(talker::RawSocket &socket, const CountingReceiver &receiver) {
    const int before = receiver.frames;
    return waitFor([&] {
        sendFrames(socket);
        return receiver.frames > before;
    });
}

std::string name(const pcapplus::PcapDeviceInfo &device) {
    return "PcapPacketSniffer (eth" + std::to_string(device.getSystemDeviceNumber()) + ")";
}

TEST(PacketSniffer, startsAndStopsAsOftenAsWantedAndReportsIt) {
    const auto lo = adapter("lo");
    talker::RawSocket socket("lo");
    CountingReceiver receiver;
    const support::LogRecorder log;
    {
        Sniffer sniffer(lo);
        EXPECT_TRUE(sniffer.filter(avtp));
        sniffer.registerPacketReceiver(receiver);
        sniffer.stop();
        for (int run = 1; run <= 3; ++run) {
            sniffer.start();
            sniffer.start();
            EXPECT_TRUE(sniffer.isRunning());
            EXPECT_TRUE(arrives(socket, receiver));
            sniffer.stop();
            EXPECT_FALSE(sniffer.isRunning());
            sniffer.waitForCaptureEnd();
        }
        EXPECT_EQ(receiver.lastLength, 62U);
        const std::string number = std::to_string(lo.getSystemDeviceNumber());
        EXPECT_EQ(sniffer.toString(),
                  name(lo) + " configured on device: " + number + "\nBound to packet receiver: Counter (" + number +
                      ")\nFilter set: ether proto 0x22f0\nRunning: 0\nAdapter details:\n\t" + lo.toString());
        std::vector<std::string> expected{"INFORMATION Filter 'ether proto 0x22f0' enabled",
                                          "INFORMATION Registered: Counter (" + number + ")",
                                          "WARNING Sniffer not listening, cannot be stopped!"};
        for (int run = 1; run <= 3; ++run) {
            expected.insert(expected.end(),
                            {"INFORMATION Start listening", "WARNING Sniffer already listening, cannot be started!",
                             "INFORMATION Stop listening"});
        }
        EXPECT_EQ(sniffer.messages, expected);
    }
    const std::string item = " \"" + name(lo) + "\" ";
    EXPECT_EQ(log.count("D pcapplus::RunPcapEventLoop::run" + item + "PCAP listener active"), 3);
    EXPECT_EQ(log.count("D pcapplus::RunPcapEventLoop::run" + item + "PCAP listener INACTIVE"), 3);
    EXPECT_EQ(log.count("D pcapplus::RunPcapEventLoop::~RunPcapEventLoop" + item + "Released!"), 3);
    EXPECT_EQ(
        log.count("D pcapplus::PcapPacketSniffer::configure" + item + "\"Successfully configured adapter number "), 1);
    EXPECT_EQ(log.lines().back(),
              "D pcapplus::PcapPacketSniffer::~PcapPacketSniffer" + item + "Release PCAP and free memory");
    EXPECT_EQ(*(log.lines().end() - 2),
              "W pcapplus::PcapPacketSniffer::stop" + item + "\"Sniffer not listening, cannot be stopped!\"");
}

TEST(PacketSniffer, reportsAnInvalidDeviceAndDoesNothingWithIt) {
    const support::LogRecorder log;
    Sniffer sniffer(pcapplus::PcapDeviceInfo(-1, "lo", "d"));
    const std::string item = " \"PcapPacketSniffer (eth-1)\" ";
    EXPECT_EQ(log.lines(), std::vector<std::string>{"D pcapplus::PcapPacketSniffer::configure" + item +
                                                    "Passed device info object is invalid! Cannot configure device  "
                                                    "number:  -1"});
    sniffer.start();
    EXPECT_FALSE(sniffer.filter("udp"));
    EXPECT_FALSE(sniffer.isRunning());
    const std::string report = "WARNING Sniffer not configured properly! Please set a valid configuration!";
    EXPECT_EQ(sniffer.messages, (std::vector<std::string>{report, report}));
    const std::string ending = "\nNicSniffer initialized but not configured properly!";
    const std::string dump = sniffer.toString();
    EXPECT_EQ(dump.substr(dump.size() - ending.size()), ending);
}

TEST(PacketSniffer, givesTheReasonThatLibpcapGivesForAnAdapterItCannotOpen) {
    support::makeVethPair("down0", "down1");
    support::setInterfaceUp("down0", false);
    for (const auto &device : {adapter("down0"), support::missingAdapter()}) {
        char error[PCAP_ERRBUF_SIZE] = "";
        ASSERT_EQ(pcap_open_live(device.getSystemDeviceName().c_str(), 65536, 1, 1, error), nullptr);
        const support::LogRecorder log;
        const Sniffer sniffer(device);
        EXPECT_EQ(log.lines(), std::vector<std::string>{"D pcapplus::PcapPacketSniffer::configure \"" + name(device) +
                                                        "\" \"Unable to open the adapter number " +
                                                        std::to_string(device.getSystemDeviceNumber()) +
                                                        ". Error message: " + error + "\""});
    }
    support::removeInterface("down0");
    const support::LogRecorder log;
    const Sniffer onAny(adapter("any")); // its frames have a header of another kind
    EXPECT_EQ(log.count(". Error message: any: no Ethernet adapter\""), 1);
}

TEST(PacketSniffer, keepsTheFilterThatWorkedAndChangesItWhileItRuns) {
    talker::RawSocket socket("lo");
    CountingReceiver receiver;
    Sniffer sniffer(adapter("lo"));
    sniffer.registerPacketReceiver(receiver);
    EXPECT_FALSE(sniffer.filter("no such filter"));
    EXPECT_EQ(sniffer.messages.back(), "INFORMATION Filter 'no such filter': Unable to compile! Check the syntax");
    EXPECT_NE(sniffer.toString().find("\nFilter set: None\n"), std::string::npos);
    sniffer.start();
    EXPECT_TRUE(arrives(socket, receiver)); // unfiltered
    EXPECT_TRUE(sniffer.filter(avtp));
    EXPECT_TRUE(arrives(socket, receiver));
    EXPECT_FALSE(sniffer.filter("(("));
    EXPECT_NE(sniffer.toString().find("\nFilter set: ether proto 0x22f0\n"), std::string::npos);
    EXPECT_TRUE(arrives(socket, receiver));
    EXPECT_TRUE(sniffer.filter("udp"));
    const int before = receiver.frames;
    sendFrames(socket, 100);
    EXPECT_TRUE(sniffer.filter(avtp)); // behind all that the last filter refused
    EXPECT_TRUE(arrives(socket, receiver));
    EXPECT_LT(receiver.frames, before + 100);
    EXPECT_TRUE(sniffer.isRunning());
}

TEST(PacketSniffer, losesNothingWhileItsReceiverStalls) {
    using std::chrono::milliseconds;
    constexpr milliseconds stall{25};        // the ring that libpcap makes by default holds 7 ms
    constexpr milliseconds longestStall{90}; // beyond this, the machine's own hiccup would be to blame for a loss
    talker::RawSocket socket("lo");
    for (bool measured = false; !measured;) {
        Capture capture(adapter("lo"));
        capture.receiver.holdAt = 1;
        capture.sniffer.start();
        int sent = 0;
        const auto begin = std::chrono::steady_clock::now();
        while (std::chrono::steady_clock::now() - begin < stall) {
            sendFrames(socket);
            ++sent;
        }
        ASSERT_TRUE(waitFor([&] { return capture.receiver.frames == 1; }));
        capture.receiver.gate.release();
        measured = std::chrono::steady_clock::now() - begin < longestStall;
        if (measured) {
            EXPECT_TRUE(waitFor([&] { return capture.receiver.frames >= sent; }))
                << capture.receiver.frames << " of " << sent;
            EXPECT_EQ(capture.receiver.frames, sent);
        }
    }
}

TEST(PacketSniffer, beginsWithTheFramesFromItsStartOn) {
    talker::RawSocket socket("lo");
    Capture capture(adapter("lo"));
    for (int run = 0; run < 3; ++run) {
        sendFrames(socket, 1000); // the open adapter gathers them
        capture.receiver.frames = 0;
        capture.sniffer.start();
        sendFrames(socket, 100);
        EXPECT_TRUE(waitFor([&] { return capture.receiver.frames >= 100; }));
        EXPECT_EQ(capture.receiver.frames, 100);
        capture.sniffer.stop();
        capture.sniffer.waitForCaptureEnd();
    }
}

TEST(PacketSniffer, handsAllFramesToTheReceiverRegisteredLast) {
    support::makeVethPair("near0", "far0");
    talker::RawSocket loopback("lo");
    talker::RawSocket veth("far0");
    Capture first(adapter("lo"));
    first.sniffer.start();
    Capture second(adapter("near0"));
    const int before = first.receiver.frames;
    second.sniffer.start();
    EXPECT_TRUE(arrives(loopback, second.receiver));
    EXPECT_TRUE(arrives(veth, second.receiver));
    EXPECT_EQ(first.receiver.frames, before);
    support::removeInterface("near0");
}

TEST(PacketSniffer, startsAndStopsAThousandTimes) {
    talker::RawSocket socket("lo");
    Capture capture(adapter("lo"));
    for (int run = 0; run < 1000; ++run) { // the loop of a start may not have begun when the stop comes
        capture.sniffer.start();
        capture.sniffer.stop();
    }
    for (int run = 0; run < 3; ++run) {
        capture.sniffer.start();
        EXPECT_TRUE(arrives(socket, capture.receiver));
        capture.sniffer.release(); // the adapter, until the next start
        EXPECT_FALSE(capture.sniffer.isRunning());
    }
}

TEST(PacketHandlerSlot, letsReadersInTogetherAndAWriteWaitForThem) {
    pcapplus::PacketHandlerSlot &slot = pcapplus::PacketHandlerSlot::instance();
    QSemaphore inside;
    QSemaphore gate;
    slot.set([&](u_char *, const pcap_pkthdr *, const u_char *) {
        inside.release();
        gate.acquire();
    });
    std::thread readers[] = {std::thread([] { pcapplus::forwardCapturedPacket(nullptr, nullptr, nullptr); }),
                             std::thread([] { pcapplus::forwardCapturedPacket(nullptr, nullptr, nullptr); })};
    EXPECT_TRUE(inside.tryAcquire(2, 20000)); // both at the same time
    auto write = std::async(std::launch::async, [&] { slot.set(pcapplus::dummyPacketHandler); });
    EXPECT_EQ(write.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    gate.release(2);
    EXPECT_EQ(write.wait_for(std::chrono::seconds(20)), std::future_status::ready);
    for (std::thread &reader : readers) {
        reader.join();
    }
    const support::LogRecorder log;
    pcapplus::forwardCapturedPacket(nullptr, nullptr, nullptr);
    EXPECT_EQ(log.count("W dummyPacketHandler"), 1);
}

} // namespace
