// One program at a time changes a folder.
#include "freedesktop/io/folder_lock.h"

#include <atomic>
#include <thread>
#include <vector>

#include "tests/freedesktop/io/folder_testing.h"

namespace quorvel::freedesktop {
namespace {

using std::chrono::milliseconds;
constexpr milliseconds longWait(20'000);

class FolderLockTest : public FolderTest {};

TEST_F(FolderLockTest, IsHeldByOneAtATime) {
    auto first = FolderLock::take(inFolder(""), longWait);
    ASSERT_TRUE(first);
    EXPECT_FALSE(FolderLock::take(inFolder(""), milliseconds(0)));
    first.reset();
    EXPECT_TRUE(FolderLock::take(inFolder(""), milliseconds(0)));
    EXPECT_EQ(fileCount(), 0u);
}

TEST_F(FolderLockTest, WaitsForTheOthers) {
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 20; ++round) {
                const auto lock = FolderLock::take(inFolder(""), longWait);
                EXPECT_TRUE(lock);
                most = std::max<int>(most, ++inside);
                --inside;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(most, 1);
}

TEST_F(FolderLockTest, HoldsNobodyUpWithoutAFolder) {
    EXPECT_TRUE(FolderLock::take(inFolder("missing"), milliseconds(0)));
}

} // namespace
} // namespace quorvel::freedesktop
