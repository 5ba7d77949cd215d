#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <QStringList>

#include "talker/ChannelSignals.h"
#include "talker/FaultPlan.h"
#include "talker/MacAddress.h"

namespace talker {

/// What the command line asks for.
struct TalkerOptions {
    std::string device;
    std::optional<MacAddress> source; ///< none: the adapter's own address
    MacAddress destination;
    unsigned channels;
    unsigned samplesPerPacket;
    ChannelSignals signals;
    std::optional<std::uint64_t> frames; ///< none: until a signal ends the process
    FaultPlan faults;

    /// @param arguments the program's name first
    /// @throws Refusal for everything that is wrong without a look at the adapter; prints and exits if help is asked
    /// for
    static TalkerOptions parse(const QStringList &arguments);
};

} // namespace talker
