#include "freedesktop/text/least_recently_used.h"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

using Memory = LeastRecentlyUsed<std::string, std::string_view, int, std::hash<std::string_view>>;

TEST(LeastRecentlyUsed, FindsWhatItRemembers) {
    Memory memory(2, 100);
    EXPECT_EQ(memory.find("a"), nullptr);
    EXPECT_EQ(memory.insert("a", 1, 1), 1);
    ASSERT_NE(memory.find("a"), nullptr);
    EXPECT_EQ(*memory.find("a"), 1);
}

TEST(LeastRecentlyUsed, EvictsTheLeastRecentlyUsedEntry) {
    Memory memory(2, 100);
    memory.insert("a", 1, 1);
    memory.insert("b", 2, 1);
    memory.find("a");
    memory.insert("c", 3, 1);
    EXPECT_NE(memory.find("a"), nullptr);
    EXPECT_EQ(memory.find("b"), nullptr);
    EXPECT_NE(memory.find("c"), nullptr);
    EXPECT_EQ(memory.count(), 2u);
}

TEST(LeastRecentlyUsed, HeavyEntriesPushOthersOut) {
    Memory memory(10, 100);
    memory.insert("a", 1, 40);
    memory.insert("b", 2, 40);
    memory.insert("c", 3, 60);
    EXPECT_EQ(memory.find("a"), nullptr);
    EXPECT_NE(memory.find("b"), nullptr);
    memory.insert("d", 4, 500);
    EXPECT_EQ(memory.count(), 1u);
    EXPECT_NE(memory.find("d"), nullptr);
    memory.insert("e", 5, 1);
    EXPECT_EQ(memory.count(), 1u);
}

} // namespace
} // namespace quorvel::freedesktop
