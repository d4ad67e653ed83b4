// Contents that differ, be it only by where one text ends, have different hashes.
#include "base/content_hash.h"

#include <gtest/gtest.h>

namespace quorvel {
namespace {

std::uint64_t hashOf(std::string_view first, std::string_view second) {
    ContentHash hash;
    hash.add(first);
    hash.add(second);
    return hash.value();
}

TEST(ContentHash, IsTheSameForTheSameContent) {
    EXPECT_EQ(hashOf("a calendar's name", "its colour"), hashOf("a calendar's name", "its colour"));
}

TEST(ContentHash, DistinguishesWhereATextEnds) {
    EXPECT_NE(hashOf("ab", "c"), hashOf("a", "bc"));
    EXPECT_NE(hashOf("", "abc"), hashOf("abc", ""));
}

TEST(ContentHash, TakesEveryByteIn) {
    EXPECT_NE(hashOf("12345678", ""), hashOf("12345679", ""));
    EXPECT_NE(hashOf("123456789", ""), hashOf("123456780", ""));
}

TEST(SignatureHash, JoinsTwoHashes) {
    SignatureHash one;
    SignatureHash other;
    EXPECT_EQ(one.value(), other.value());
    EXPECT_NE(one.value().first, one.value().second);
    one.add(7);
    EXPECT_NE(one.value(), other.value());
}

} // namespace
} // namespace quorvel
