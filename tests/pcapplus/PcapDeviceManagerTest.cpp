#include <optional>

#include <dlfcn.h>
#include <pcap/pcap.h>

#include <gtest/gtest.h>

#include <sonvex/exceptions.h>

#include "pcapplus/PcapDeviceManager.h"
#include "support/LogRecorder.h"
#include "support/NetworkNamespace.h"
#include "support/refusalOf.h"

namespace {

using Lines = std::vector<std::string>;
using pcapplus::PcapDeviceInfo;
using pcapplus::PcapDeviceManager;

/// The answer of the next scans instead of the system's adapters: an empty list or a failure.
std::optional<int> scriptedScan;

} // namespace

/// Stands before the capture library's own: no system has no adapters, or a scan that fails on demand.
extern "C" int pcap_findalldevs(pcap_if_t **devices, char *error) {
    if (scriptedScan) {
        *devices = nullptr;
        std::string("no rights").copy(error, PCAP_ERRBUF_SIZE - 1);
        return *scriptedScan;
    }
    static const auto real = reinterpret_cast<decltype(&pcap_findalldevs)>(dlsym(RTLD_NEXT, "pcap_findalldevs"));
    return real(devices, error);
}

namespace {

const std::string scanContext = "pcapplus::PcapDeviceManager::scanDevices ";

TEST(PcapDeviceInfo, printsThreeLinesAndKnowsWhatIsMissingByExactValues) {
    EXPECT_EQ(PcapDeviceInfo(-1, "eth0", "an adapter").toString(),
              "System device number: -1\n\tSystem device name: eth0\n\tSystem device description: an adapter\n");
    EXPECT_FALSE(PcapDeviceInfo(-1, "", "").isValid());
    EXPECT_TRUE(PcapDeviceInfo(0, "", "").isValid());
    for (const char *description : {"", "not available", "Not available "}) {
        EXPECT_FALSE(PcapDeviceInfo(1, "eth0", description).hasNoDescription()) << description;
    }
}

TEST(PcapDeviceManager, numbersTheAdaptersInTheOrderOfTheCaptureLibrary) {
    PcapDeviceManager manager;
    const std::string before = manager.toString();
    support::makeVethPair("scan0", "scan1");
    EXPECT_EQ(manager.toString(), before) << "until the next scan";
    const support::LogRecorder log;
    EXPECT_FALSE(manager.scanDevices());
    std::string dump = "DeviceManager: \n";
    pcap_if_t *first = nullptr;
    char error[PCAP_ERRBUF_SIZE] = "";
    ASSERT_EQ(pcap_findalldevs(&first, error), 0) << error;
    int number = 0;
    for (const pcap_if_t *device = first; device != nullptr; device = device->next) {
        ++number;
        const PcapDeviceInfo &info = manager.getDeviceInfo(static_cast<unsigned int>(number));
        EXPECT_EQ(info.getSystemDeviceNumber(), number);
        EXPECT_EQ(info.getSystemDeviceName(), device->name);
        EXPECT_EQ(info.getSystemDeviceDescription(), device->description ? device->description : "Not available");
        EXPECT_EQ(info.hasNoDescription(), device->description == nullptr) << device->name;
        dump += info.toString() + "\n";
    }
    pcap_freealldevs(first);
    support::removeInterface("scan0");
    EXPECT_EQ(manager.getDeviceCount(), static_cast<unsigned int>(number));
    EXPECT_EQ(manager.toString(), dump);
    EXPECT_EQ(log.lines(),
              Lines{"D " + scanContext + "Number of available Ethernet devices:  " + std::to_string(number)});
    EXPECT_NE(dump.find("name: scan0\n\tSystem device description: Not available"), std::string::npos);
}

TEST(PcapDeviceManager, refusesAnIndexOutsideItsList) {
    PcapDeviceManager manager;
    const unsigned int count = manager.getDeviceCount();
    for (const unsigned int index : {count + 1, ~0U, 0U}) {
        const std::string text = "Requested index number is not available: " + std::to_string(index) +
                                 ". The index number is out of range! Please pass a number between 1 and " +
                                 std::to_string(count);
        const std::string context = "W pcapplus::PcapDeviceManager::getDeviceInfo ";
        Lines expected = {context + "\"" + text + "\""};
        if (index == 0) {
            expected.insert(expected.begin(), context + "Please enter a valid index! Device info indexing starts at "
                                                        "number: 1");
        }
        const support::LogRecorder log;
        EXPECT_EQ(support::refusalOf<exceptions::ResourceNotAvailable>([&] { manager.getDeviceInfo(index); }).what(),
                  text);
        EXPECT_EQ(log.lines(), expected);
    }
}

TEST(PcapDeviceManager, listsNothingAfterAnEmptyOrAFailedScan) {
    support::LogRecorder log;
    PcapDeviceManager manager;
    EXPECT_EQ(log.lines().front(), "D pcapplus::PcapDeviceManager::PcapDeviceManager Initialized");
    for (const bool failed : {false, true}) {
        manager.scanDevices();
        log.clear();
        scriptedScan = failed ? -1 : 0;
        EXPECT_EQ(manager.scanDevices(), !failed);
        scriptedScan.reset();
        EXPECT_EQ(log.lines(), Lines{failed ? "W " + scanContext + "Device scan cannot be performed:  \"no rights\""
                                            : "D " + scanContext +
                                                  "No interfaces found! Make sure WinPcap is installed correctly!."});
        EXPECT_EQ(manager.toString(), "DeviceManager: \n");
        EXPECT_THROW(manager.getDeviceInfo(1), exceptions::ResourceNotAvailable);
    }
}

} // namespace
