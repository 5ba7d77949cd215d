#include "support/Dissector.h"

#include <stdexcept>

#include <pcap/pcap.h>

#include "support/Program.h"

namespace support {

Dissector::Dissector(const std::vector<std::vector<std::uint8_t>> &frames)
    : path(folder.filePath(QStringLiteral("frames.pcap")).toStdString()) {
    pcap_t *handle = pcap_open_dead(DLT_EN10MB, 65535);
    pcap_dumper_t *dumper = pcap_dump_open(handle, path.c_str());
    if (dumper == nullptr) {
        throw std::runtime_error(pcap_geterr(handle));
    }
    for (const auto &frame : frames) {
        const auto size = static_cast<bpf_u_int32>(frame.size());
        const pcap_pkthdr header = {{}, size, size};
        pcap_dump(reinterpret_cast<u_char *>(dumper), &header, frame.data());
    }
    pcap_dump_close(dumper);
    pcap_close(handle);
}

std::string Dissector::fields(const std::vector<std::string> &names) const {
    std::vector<std::string> arguments = {"-T", "fields", "-E", "separator=/s"};
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
