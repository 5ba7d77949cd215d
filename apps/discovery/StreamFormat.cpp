#include "discovery/StreamFormat.h"

#include <array>
#include <tuple>

namespace discovery {

namespace {

constexpr std::uint8_t aes3 = 5; // of the formats of AAF

/// What else IEEE 1722 defines.
struct NamedSubtype {
    std::uint8_t subtype;
    const char *name;
};
constexpr std::array<NamedSubtype, 9> namedSubtypes{{{0x01, "MIDI and control events"},
                                                     {0x03, "compressed video"},
                                                     {0x05, "timed control messages"},
                                                     {0x06, "SDI video"},
                                                     {0x07, "raw video"},
                                                     {0x6e, "encrypted stream"},
                                                     {0x6f, "vendor's stream"},
                                                     {0x7f, "experimental stream"},
                                                     {0x82, "untimed control messages"}}};

std::string nameOfIec61883(std::uint8_t code) {
    switch (code) {
    case 0x10:
        return "IEC 61883-6";
    case 0x20:
        return "IEC 61883-4";
    case 0x00:
        return "IEC 61883-2";
    default:
        return "IEC 61883";
    }
}

auto tied(const StreamFormat &format) {
    return std::tie(format.kind, format.subtype, format.code, format.bitDepth, format.rate, format.channels,
                    format.sparseTimestamps);
}

} // namespace

const common::AafFormat *StreamFormat::samples() const {
    return kind == Kind::aaf ? common::find(common::aafFormats, &common::AafFormat::code, code) : nullptr;
}

std::string StreamFormat::name() const {
    switch (kind) {
    case Kind::aaf:
        if (const auto *known = samples()) {
            return "AAF " + std::string(known->name);
        }
        return code == aes3 ? "AAF AES3" : "AAF format " + std::to_string(code);
    case Kind::iec61883:
        return nameOfIec61883(code);
    case Kind::clockReference:
        return "CRF clock";
    case Kind::other:
        break;
    }
    const auto *known = common::find(namedSubtypes, &NamedSubtype::subtype, subtype);
    return known != nullptr ? known->name : "subtype " + std::to_string(subtype);
}

bool StreamFormat::operator==(const StreamFormat &other) const {
    return tied(*this) == tied(other);
}

} // namespace discovery
