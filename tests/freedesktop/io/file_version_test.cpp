#include "freedesktop/io/file_version.h"

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

constexpr std::int64_t second = 1'000'000'000; // nanoseconds

TEST(FileVersion, IsSettledTwoSecondsAfterItsTimes) {
    const FileVersion version{1, 1, 1, 100 * second, 50 * second};
    EXPECT_FALSE(isSettled(version, 101 * second));
    EXPECT_FALSE(isSettled(version, 102 * second));
    EXPECT_TRUE(isSettled(version, 102 * second + 1));
    EXPECT_FALSE(isSettled({1, 1, 1, 50 * second, 100 * second}, 102 * second));
    EXPECT_FALSE(isSettled({1, 1, 1, 200 * second, 50 * second}, 102 * second));
}

} // namespace
} // namespace quorvel::freedesktop
