#include "freedesktop/network/address_scope.h"

#include <vector>

#include <arpa/inet.h>
#include <gtest/gtest.h>

namespace quorvel::freedesktop::network {
namespace {

bool isPublic(const char* text) {
    std::vector<std::uint8_t> bytes(16);
    if (inet_pton(AF_INET6, text, bytes.data()) != 1) {
        bytes.resize(4);
        EXPECT_EQ(inet_pton(AF_INET, text, bytes.data()), 1) << text;
    }
    return isPublicAddress(bytes);
}

TEST(AddressScope, AddressesOfTheInternetArePublic) {
    for (const char* const text :
         {"1.1.1.1", "9.255.255.255", "11.0.0.0", "100.63.255.255", "100.128.0.0", "126.0.0.1",
          "128.0.0.1", "172.15.255.255", "172.32.0.0", "192.167.1.1", "192.169.1.1", "198.17.0.1",
          "198.20.0.1", "223.255.255.255", "2a00::1", "2001:4860:4860::8888", "::ffff:1.1.1.1",
          "64:ff9b::101:101", "2002:101:101::1"}) {
        EXPECT_TRUE(isPublic(text)) << text;
    }
}

TEST(AddressScope, AddressesOfThisMachineAndItsNetworkAreNot) {
    for (const char* const text : {"0.0.0.0",
                                   "0.1.2.3",
                                   "10.0.0.1",
                                   "10.255.255.255",
                                   "100.64.0.1",
                                   "100.127.255.255",
                                   "127.0.0.1",
                                   "127.255.255.255",
                                   "169.254.169.254",
                                   "172.16.0.1",
                                   "172.31.255.255",
                                   "192.0.0.1",
                                   "192.0.2.1",
                                   "192.168.0.1",
                                   "198.18.0.1",
                                   "198.19.255.255",
                                   "203.0.113.9",
                                   "224.0.0.1",
                                   "255.255.255.255",
                                   "::",
                                   "::1",
                                   "fe80::1",
                                   "fc00::1",
                                   "fd12::1",
                                   "ff02::1",
                                   "2001:db8::1",
                                   "2001::1",
                                   "::ffff:127.0.0.1",
                                   "::ffff:10.0.0.1",
                                   "::127.0.0.1",
                                   "64:ff9b::a00:1",
                                   "2002:7f00:1::1",
                                   "2002:c0a8:101::1"}) {
        EXPECT_FALSE(isPublic(text)) << text;
    }
}

TEST(AddressScope, OtherLengthsAreNotPublic) {
    EXPECT_FALSE(isPublicAddress({}));
    EXPECT_FALSE(isPublicAddress(std::vector<std::uint8_t>(5, 1)));
}

} // namespace
} // namespace quorvel::freedesktop::network
