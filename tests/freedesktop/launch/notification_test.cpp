#include "freedesktop/launch/notification.h"

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

TEST(NotificationTest, MakesASentenceOfAProblem) {
    EXPECT_EQ(asSentence("no such thing: do that"), "No such thing: do that.");
    EXPECT_EQ(asSentence("Évolution"), "Évolution.");
    EXPECT_EQ(asSentence(""), ".");
}

} // namespace
} // namespace quorvel::freedesktop
