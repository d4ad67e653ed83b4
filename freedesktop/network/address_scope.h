// Distinguishes addresses of the public internet from those of this machine and its network.
#pragma once

#include <cstdint>
#include <span>

namespace quorvel::freedesktop::network {

// The 4 bytes of an IPv4 address or the 16 of an IPv6 address. False for this machine, private and
// local networks, groups, reserved ranges, and IPv6 addresses that stand for such an IPv4 address.
bool isPublicAddress(std::span<const std::uint8_t> address);

} // namespace quorvel::freedesktop::network
