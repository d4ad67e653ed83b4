#include "freedesktop/network/address_scope.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace quorvel::freedesktop::network {

namespace {

using Bytes = std::span<const std::uint8_t>;

// The addresses that begin with these bits.
struct Range {
    std::array<std::uint8_t, 16> start;
    unsigned bits;
};

constexpr std::array<Range, 15> ipv4Ranges{{
    {{0}, 8},             // this network
    {{10}, 8},            // private
    {{100, 64}, 10},      // between a provider and its customers
    {{127}, 8},           // this machine
    {{169, 254}, 16},     // link-local
    {{172, 16}, 12},      // private
    {{192, 0, 0}, 24},    // of protocols
    {{192, 0, 2}, 24},    // for documentation
    {{192, 88, 99}, 24},  // relays of 6to4
    {{192, 168}, 16},     // private
    {{198, 18}, 15},      // for benchmarks
    {{198, 51, 100}, 24}, // for documentation
    {{203, 0, 113}, 24},  // for documentation
    {{224}, 4},           // groups
    {{240}, 4},           // reserved, and the broadcast
}};

// Public addresses of IPv6 begin with 001; these are the exceptions.
constexpr std::array<Range, 2> ipv6Ranges{{
    {{0x20, 0x01, 0x00}, 23},       // of protocols, such as tunnels
    {{0x20, 0x01, 0x0D, 0xB8}, 32}, // for documentation
}};
constexpr Range globalUnicast{{0x20}, 3};
constexpr Range ipv4Mapped{{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF}, 96};
constexpr Range ipv4Translated{{0x00, 0x64, 0xFF, 0x9B}, 96};
constexpr Range sixToFour{{0x20, 0x02}, 16};

bool isIn(const Range& range, Bytes address) {
    for (unsigned bit = 0; bit < range.bits; bit += 8) {
        const std::size_t index = bit / 8;
        const unsigned left = std::min(range.bits - bit, 8U);
        const unsigned mask = 0xFFU << (8 - left);
        if (((address[index] ^ range.start[index]) & mask) != 0) {
            return false;
        }
    }
    return true;
}

bool isPublicIpv4(Bytes address) {
    return std::ranges::none_of(ipv4Ranges,
                                [&](const Range& range) { return isIn(range, address); });
}

bool isPublicIpv6(Bytes address) {
    if (isIn(ipv4Mapped, address) || isIn(ipv4Translated, address)) {
        return isPublicIpv4(address.subspan(12));
    }
    if (isIn(sixToFour, address)) {
        return isPublicIpv4(address.subspan(2, 4));
    }
    return isIn(globalUnicast, address) &&
           std::ranges::none_of(ipv6Ranges,
                                [&](const Range& range) { return isIn(range, address); });
}

} // namespace

bool isPublicAddress(Bytes address) {
    return address.size() == 4 ? isPublicIpv4(address)
                               : address.size() == 16 && isPublicIpv6(address);
}

} // namespace quorvel::freedesktop::network
