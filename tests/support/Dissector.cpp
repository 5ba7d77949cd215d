#include "support/Dissector.h"

#include <stdexcept>

#include "support/CaptureWriter.h"
#include "support/Program.h"

namespace support {

Dissector::Dissector(const std::vector<std::vector<std::uint8_t>> &frames)
    : path(folder.filePath(QStringLiteral("frames.pcap")).toStdString()) {
    CaptureWriter writer(path);
    for (const auto &frame : frames) {
        writer.add(frame);
    }
}

std::string Dissector::fields(const std::vector<std::string> &names, const std::string &occurrence) const {
    std::vector<std::string> arguments = {"-T", "fields", "-E", "separator=/s", "-E", "occurrence=" + occurrence};
    for (const std::string &name : names) {
        arguments.insert(arguments.end(), {"-e", name});
    }
    return run(arguments);
}

std::string Dissector::complaints() const {
    return run({"-Y", "_ws.expert or _ws.malformed"});
}

std::string Dissector::run(const std::vector<std::string> &arguments) const {
    std::vector<std::string> all = {"-r", path};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const Program::Result result = Program("tshark", all).wait();
    if (result.exitStatus != 0) {
        throw std::runtime_error("tshark: " + result.err);
    }
    return result.out;
}

} // namespace support
