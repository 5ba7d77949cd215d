#include "analyser/DeviceList.h"

#include <algorithm>
#include <string>

#include <sonvex/INetworkDeviceManager.h>

#include "analyser/output/Output.h"
#include "common/Text.h"
#include "common/oneLine.h"

namespace analyser {

namespace {

std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(width, text.size()), ' ');
    return text + "  ";
}

} // namespace

void listDevices(Format format, Output &output) {
    auto &manager = sonvex::INetworkDeviceManager::createInstance();
    std::size_t nameWidth = std::string("NAME").size();
    for (unsigned i = 1; i <= manager.getDeviceCount(); ++i) {
        nameWidth = std::max(nameWidth, manager.getDeviceInfo(i).getSystemDeviceName().size());
    }
    if (format == Format::text) {
        output.write(padded("NUMBER", 0) + padded("NAME", nameWidth) + "DESCRIPTION\n");
    }
    for (unsigned i = 1; i <= manager.getDeviceCount(); ++i) {
        const auto &device = manager.getDeviceInfo(i);
        const std::string number = std::to_string(device.getSystemDeviceNumber());
        const std::string name = device.getSystemDeviceName();
        const std::string description = device.getSystemDeviceDescription();
        if (format == Format::json) {
            output.write("{\"number\":" + number + ",\"name\":" + text::quoted(name) +
                         ",\"description\":" + text::quoted(description) + "}\n");
        } else {
            output.write(padded(number, 6) + padded(name, nameWidth) + common::oneLine(description) + '\n');
        }
    }
}

} // namespace analyser
