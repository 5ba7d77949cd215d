#include "pcapplus/PcapDeviceManager.h"

#include <memory>

#include <pcap/pcap.h>

#include <sonvex/exceptions.h>

#include "core/logging/Log.h"

namespace pcapplus {

PcapDeviceManager::PcapDeviceManager() {
    logging::debug("pcapplus::PcapDeviceManager::PcapDeviceManager", "Initialized");
    PcapDeviceManager::scanDevices();
}

bool PcapDeviceManager::scanDevices() {
    static constexpr char context[] = "pcapplus::PcapDeviceManager::scanDevices";
    devices.clear();
    pcap_if_t *first = nullptr;
    char error[PCAP_ERRBUF_SIZE] = "";
    if (pcap_findalldevs(&first, error) == -1) {
        logging::warning(context, "Device scan cannot be performed: ", std::string(error));
        return false;
    }
    const std::unique_ptr<pcap_if_t, decltype(&pcap_freealldevs)> list(first, pcap_freealldevs);
    int number = 0;
    for (const pcap_if_t *device = first; device != nullptr; device = device->next) {
        const char *description = device->description != nullptr ? device->description : PcapDeviceInfo::noDescription;
        devices.emplace_back(++number, device->name, description);
    }
    if (devices.empty()) {
        logging::debug(context, "No interfaces found! Make sure WinPcap is installed correctly!.");
        return true;
    }
    logging::debug(context, "Number of available Ethernet devices: ", number);
    return false;
}

unsigned int PcapDeviceManager::getDeviceCount() const {
    return static_cast<unsigned int>(devices.size());
}

PcapDeviceInfo &PcapDeviceManager::getDeviceInfo(unsigned int index) {
    static constexpr char context[] = "pcapplus::PcapDeviceManager::getDeviceInfo";
    if (index == 0) {
        logging::warning(context, "Please enter a valid index! Device info indexing starts at number: 1");
    }
    const unsigned int position = index - 1; // index 0 wraps, and so fails the range test
    if (position < devices.size()) {
        return devices[position];
    }
    const std::string text = "Requested index number is not available: " + std::to_string(index) +
                             ". The index number is out of range! Please pass a number between 1 and " +
                             std::to_string(devices.size());
    logging::refuse<exceptions::ResourceNotAvailable>(context, text);
}

std::string PcapDeviceManager::toString() const {
    std::string text = "DeviceManager: \n";
    for (const PcapDeviceInfo &device : devices) {
        text += device.toString() + "\n";
    }
    return text;
}

} // namespace pcapplus
