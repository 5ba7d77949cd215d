#pragma once

namespace common {

/// What helps a user without the right to raw sockets. Not a capability of the program's file: the loader would no
/// longer look for the library next to it.
inline constexpr const char *rawSocketRemedy =
    "; it takes root or CAP_NET_RAW: put 'sudo' before the command, or, for that right alone, 'sudo setpriv "
    "--reuid=$(id -u) --regid=$(id -g) --init-groups --inh-caps=+net_raw --ambient-caps=+net_raw'";

} // namespace common
