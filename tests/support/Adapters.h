#pragma once

#include <string>
#include <vector>

#include "pcapplus/PcapDeviceInfo.h"
#include "talker/RawSocket.h"

namespace support {

/// An adapter of the test's own network, as the library lists it.
pcapplus::PcapDeviceInfo adapter(const std::string &name);

/// An adapter that the system does not have.
pcapplus::PcapDeviceInfo missingAdapter();

void send(talker::RawSocket &socket, const std::vector<std::uint8_t> &frame);

} // namespace support
