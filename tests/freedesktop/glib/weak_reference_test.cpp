#include "freedesktop/glib/weak_reference.h"

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

TEST(WeakReference, FindsTheObjectWhileItLives) {
    auto number = std::make_shared<int>(7);
    const std::weak_ptr<int> weak = number;
    const gpointer once = newWeakReference(weak);
    const gpointer often = newWeakReference(weak);
    EXPECT_EQ(takeWeakReference<int>(once), number);
    EXPECT_EQ(lockWeakReference<int>(often), number);
    number.reset();
    EXPECT_TRUE(weak.expired()) << "a reference does not own the object";
    EXPECT_EQ(lockWeakReference<int>(often), nullptr);
    freeWeakReference<int>(often);
}

} // namespace
} // namespace quorvel::freedesktop
