// The hash must never change: identifiers of calendars are made of it.
#include "base/stable_hash.h"

#include <gtest/gtest.h>

namespace quorvel {
namespace {

TEST(StableHash, GivesThePublishedValues) {
    // Of FNV-1a with 64 bits.
    EXPECT_EQ(stableHash(""), 0xcbf29ce484222325U);
    EXPECT_EQ(stableHash("a"), 0xaf63dc4c8601ec8cU);
    EXPECT_EQ(stableHash("foobar"), 0x85944171f73967e8U);
}

TEST(StableHash, WritesTheLowestDigits) {
    EXPECT_EQ(hexDigits(0xABCDEF, 4), "cdef");
    EXPECT_EQ(hexDigits(0xF, 4), "000f");
}

} // namespace
} // namespace quorvel
