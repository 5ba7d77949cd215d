#include "support/Adapters.h"

#include <stdexcept>

#include "pcapplus/PcapDeviceManager.h"

namespace support {

pcapplus::PcapDeviceInfo adapter(const std::string &name) {
    pcapplus::PcapDeviceManager manager;
    for (unsigned index = 1; index <= manager.getDeviceCount(); ++index) {
        if (manager.getDeviceInfo(index).getSystemDeviceName() == name) {
            return manager.getDeviceInfo(index);
        }
    }
    throw std::runtime_error("no adapter " + name);
}

pcapplus::PcapDeviceInfo missingAdapter() {
    return {99, "missing0", "A missing adapter"};
}

void send(talker::RawSocket &socket, const std::vector<std::uint8_t> &frame) {
    socket.send(frame.data(), frame.size());
}

} // namespace support
