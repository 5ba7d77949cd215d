#pragma once

#include <string>

namespace support {

/**
 * Moves this process and its children into a network of their own, with nothing in it but a loopback adapter that is
 * up: frames of a test stay there and meet none of the machine's. Works for root and for an unprivileged user, who is
 * root inside and has every right on that network only.
 *
 * Call it once, at the beginning of main, while the process has one thread. Ends the process with status 1 and a text
 * if the system forbids it, so that no test passes without a network.
 */
void enterNetworkNamespace();

/// Adds two connected adapters, both up, and returns when frames pass between them.
void makeVethPair(const std::string &name, const std::string &peer);

/// Removes an adapter, with its peer if it is one of a pair.
void removeInterface(const std::string &name);

/// Returns when the adapter has the state; a connection to its peer may take a moment more (see waitForLink).
void setInterfaceUp(const std::string &name, bool up);

/// Returns when the adapter sends frames on, which it tries with some of EtherType 0x88b5; throws after 10 s.
void waitForLink(const std::string &name);

} // namespace support
