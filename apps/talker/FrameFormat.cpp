#include "talker/FrameFormat.h"

#include "common/Refusal.h"

namespace talker {

namespace {

[[noreturn]] void refuse(const std::string &what, const std::string &text, const std::string &known) {
    throw common::Refusal(what + ": '" + text + "' is none of" + known);
}

} // namespace

common::AafFormat FrameFormat::parseFormat(const std::string &name, const std::string &what) {
    std::string known;
    for (const common::AafFormat &format : common::aafFormats) {
        if (format.name == name) {
            return format;
        }
        known += (known.empty() ? " " : ", ") + std::string(format.name);
    }
    refuse(what, name, known);
}

unsigned FrameFormat::parseRate(const std::string &hertz, const std::string &what) {
    std::string known;
    for (const common::AafRate &rate : common::aafRates) {
        if (std::to_string(rate.hertz) == hertz) {
            return rate.hertz;
        }
        known += (known.empty() ? " " : ", ") + std::to_string(rate.hertz);
    }
    refuse(what, hertz, known);
}

} // namespace talker
