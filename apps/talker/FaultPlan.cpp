#include "talker/FaultPlan.h"

#include <cstring>

#include "common/parseNumber.h"
#include "talker/AafFrame.h"

namespace talker {

namespace {

std::string optionName(Fault fault) {
    return std::string("--") + faultOptions[static_cast<std::size_t>(fault)].name;
}

} // namespace

FrameFormat FrameFaults::apply(FrameFormat format) const {
    format.channels = (*this)[Fault::Channels].value_or(format.channels);
    if (const auto code = (*this)[Fault::Format]) {
        format.sample = *common::find(common::aafFormats, &common::AafFormat::code, *code);
    }
    format.rate = (*this)[Fault::Rate].value_or(format.rate);
    return format;
}

void FaultPlan::add(Fault fault, const std::string &text) {
    constexpr std::uint64_t lastFrame = 1'000'000'000'000;
    const std::string name = optionName(fault);
    const std::size_t colon = text.find(':');
    const bool needsValue = std::strchr(faultOptions[static_cast<std::size_t>(fault)].value, ':') != nullptr;
    if (needsValue != (colon != std::string::npos)) {
        throw common::Refusal(name + ": '" + text + "' is not of the form " + (needsValue ? "FRAME:VALUE" : "FRAME"));
    }

    const auto frame = common::parseNumber<std::uint64_t>(text.substr(0, colon), name + ", frame", 0, lastFrame);
    std::optional<unsigned> &value = faults[frame][fault];
    if (value) {
        throw common::Refusal(name + ": given twice for frame " + std::to_string(frame));
    }
    const std::string valueText = needsValue ? text.substr(colon + 1) : "";
    switch (fault) {
    case Fault::Channels:
        value = common::parseNumber<unsigned>(valueText, name + ", channels", 1, FrameFormat::maxChannels);
        break;
    case Fault::Format:
        value = FrameFormat::parseFormat(valueText, name + ", format").code;
        break;
    case Fault::Rate:
        value = FrameFormat::parseRate(valueText, name + ", rate");
        break;
    case Fault::Truncate:
        value = common::parseNumber<unsigned>(valueText, name + ", bytes", AafFrame::ethernetHeaderSize,
                                              VlanTag::size + AafFrame::headerSize + FrameFormat::maxDataLength - 1);
        break;
    case Fault::Length:
        value = common::parseNumber<unsigned>(valueText, name + ", bytes", 0, FrameFormat::maxDataLength);
        break;
    default:
        value = 0;
    }
}

void FaultPlan::check(FrameFormat format, bool tagged) const {
    for (const auto &[frame, ofFrame] : faults) {
        format = ofFrame.apply(format);
        const std::size_t size = AafFrame::sizeOf(format, tagged);
        if (ofFrame[Fault::Truncate].value_or(0) >= size) {
            throw common::Refusal(optionName(Fault::Truncate) + ": frame " + std::to_string(frame) + " has only " +
                                  std::to_string(size) + " bytes");
        }
        if (ofFrame[Fault::NonFinite] && format.sample.code != floatCode) {
            throw common::Refusal(optionName(Fault::NonFinite) + ": frame " + std::to_string(frame) + " has " +
                                  std::string(format.sample.name) + ", which has no such samples");
        }
    }
}

const FrameFaults &FaultPlan::at(std::uint64_t frame) const {
    static const FrameFaults none;
    const auto found = faults.find(frame);
    return found == faults.end() ? none : found->second;
}

FrameFormat FaultPlan::largest(FrameFormat format) const {
    FrameFormat result = format;
    for (const auto &[frame, ofFrame] : faults) {
        format = ofFrame.apply(format);
        if (format.dataLength() > result.dataLength()) {
            result = format;
        }
    }
    return result;
}

} // namespace talker
