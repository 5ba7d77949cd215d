#include <algorithm>
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

Lines names(PcapDeviceManager &manager) {
    Lines all;
    for (unsigned int index = 1; index <= manager.getDeviceCount(); ++index) {
        all.push_back(manager.getDeviceInfo(index).getSystemDeviceName());
    }
    return all;
}

/// Expects the refusal of @p index in a list of @p count, behind the warnings that come before its own.
void expectRefusal(PcapDeviceManager &manager, unsigned int index, unsigned int count, Lines warnings = {}) {
    const std::string text = "Requested index number is not available: " + std::to_string(index) +
                             ". The index number is out of range! Please pass a number between 1 and " +
                             std::to_string(count);
    const support::LogRecorder log;
    EXPECT_EQ(support::refusalOf<exceptions::ResourceNotAvailable>([&] { manager.getDeviceInfo(index); }).what(), text);
    warnings.push_back("W pcapplus::PcapDeviceManager::getDeviceInfo \"" + text + "\"");
    EXPECT_EQ(log.lines(), warnings);
}

TEST(PcapDeviceInfo, printsThreeLinesAndKnowsWhatIsMissingByExactValues) {
    EXPECT_EQ(PcapDeviceInfo(-1, "eth0", "an adapter").toString(),
              "System device number: -1\n\tSystem device name: eth0\n\tSystem device description: an adapter\n");
    EXPECT_FALSE(PcapDeviceInfo(-1, "", "").isValid());
    EXPECT_TRUE(PcapDeviceInfo(0, "", "").isValid());
    EXPECT_TRUE(PcapDeviceInfo(1, "eth0", "Not available").hasNoDescription());
    for (const char *description : {"", "Not availabl", "not available", "Not available ", "Not availabla"}) {
        EXPECT_FALSE(PcapDeviceInfo(1, "eth0", description).hasNoDescription()) << description;
    }
}

TEST(PcapDeviceManager, scansAtConstruction) {
    const support::LogRecorder log;
    const PcapDeviceManager manager;
    EXPECT_GE(manager.getDeviceCount(), 1U);
    EXPECT_EQ(log.lines(), (Lines{"D pcapplus::PcapDeviceManager::PcapDeviceManager Initialized",
                                  "D " + scanContext + "Number of available Ethernet devices:  " +
                                      std::to_string(manager.getDeviceCount())}));
}

TEST(PcapDeviceManager, numbersTheAdaptersInTheOrderOfTheCaptureLibrary) {
    support::makeVethPair("scan0", "scan1");
    PcapDeviceManager manager;
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
    const Lines all = names(manager);
    EXPECT_EQ(std::count(all.begin(), all.end(), "scan0"), 1) << "the list holds an adapter without a description";
}

TEST(PcapDeviceManager, keepsItsListUntilTheNextScan) {
    PcapDeviceManager manager;
    const Lines before = names(manager);
    support::makeVethPair("scan0", "scan1");
    EXPECT_EQ(names(manager), before);
    EXPECT_FALSE(manager.scanDevices());
    const Lines with = names(manager);
    const std::string dump = manager.toString();
    EXPECT_EQ(with.size(), before.size() + 2);
    EXPECT_FALSE(manager.scanDevices());
    EXPECT_EQ(manager.toString(), dump);
    support::removeInterface("scan0");
    EXPECT_EQ(names(manager), with);
    manager.scanDevices();
    EXPECT_EQ(names(manager), before);
}

TEST(PcapDeviceManager, refusesAnIndexOutsideItsList) {
    PcapDeviceManager manager;
    const unsigned int count = manager.getDeviceCount();
    EXPECT_EQ(manager.getDeviceInfo(count).getSystemDeviceNumber(), static_cast<int>(count));
    expectRefusal(manager, count + 1, count);
    expectRefusal(manager, ~0U, count);
    expectRefusal(manager, 0, count,
                  {"W pcapplus::PcapDeviceManager::getDeviceInfo Please enter a valid index! Device info indexing "
                   "starts at number: 1"});
}

TEST(PcapDeviceManager, listsNothingAfterAnEmptyOrAFailedScan) {
    PcapDeviceManager manager;
    for (const bool failed : {false, true}) {
        manager.scanDevices();
        const support::LogRecorder log;
        scriptedScan = failed ? -1 : 0;
        EXPECT_EQ(manager.scanDevices(), !failed);
        scriptedScan.reset();
        EXPECT_EQ(log.lines(), Lines{failed ? "W " + scanContext + "Device scan cannot be performed:  \"no rights\""
                                            : "D " + scanContext +
                                                  "No interfaces found! Make sure WinPcap is installed correctly!."});
        EXPECT_EQ(manager.toString(), "DeviceManager: \n");
        expectRefusal(manager, 1, 0);
    }
}

} // namespace
