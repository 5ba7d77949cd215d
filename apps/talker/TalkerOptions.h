#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include <QStringList>

#include "common/MacAddress.h"
#include "common/StreamId.h"
#include "talker/ChannelSignals.h"
#include "talker/FaultPlan.h"
#include "talker/ReplayOptions.h"
#include "talker/VlanTag.h"

namespace talker {

/// What the command line asks for where streams are to be sent.
struct TalkerOptions {
    std::string device;
    std::optional<common::MacAddress> source; ///< none: the adapter's own address
    common::MacAddress destination;
    std::optional<common::StreamId> streamId; ///< none: the source with the unique ID 0
    std::optional<VlanTag> tag;
    unsigned streams;   ///< IDs and destinations count up from those above
    FrameFormat format; ///< at the start
    ChannelSignals signals;
    std::optional<std::uint64_t> frames; ///< none: until a signal ends the process
    FaultPlan faults;                    ///< of the first stream
};

/// What --help or --version prints, or what is to be sent.
using Command = std::variant<std::string, TalkerOptions, ReplayOptions>;

/// @param arguments the program's name first
/// @throws common::Refusal for everything that is wrong without a look at the adapter
Command parseCommandLine(const QStringList &arguments);

} // namespace talker
