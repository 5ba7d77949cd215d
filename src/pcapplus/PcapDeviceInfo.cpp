#include "pcapplus/PcapDeviceInfo.h"

#include <utility>

namespace pcapplus {

PcapDeviceInfo::PcapDeviceInfo(int number, std::string name, std::string description)
    : number(number), name(std::move(name)), description(std::move(description)) {}

int PcapDeviceInfo::getSystemDeviceNumber() const {
    return number;
}

std::string PcapDeviceInfo::getSystemDeviceName() const {
    return name;
}

std::string PcapDeviceInfo::getSystemDeviceDescription() const {
    return description;
}

bool PcapDeviceInfo::isValid() const {
    return number >= 0;
}

bool PcapDeviceInfo::hasNoDescription() const {
    return description == noDescription;
}

std::string PcapDeviceInfo::toString() const {
    return "System device number: " + std::to_string(number) + "\n\tSystem device name: " + name +
           "\n\tSystem device description: " + description + "\n";
}

} // namespace pcapplus
