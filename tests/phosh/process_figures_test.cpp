#include "tests/phosh/process_figures.h"

#include <fcntl.h>
#include <sys/inotify.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

namespace quorvel::phosh {
namespace {

TEST(ProcessFigures, CountDescriptorsAndFileWatches) {
    const ProcessFigures before = figuresOf(getpid());
    const int watches = inotify_init1(IN_CLOEXEC);
    ASSERT_GE(inotify_add_watch(watches, "/tmp", IN_CREATE), 0);
    ASSERT_GE(inotify_add_watch(watches, "/usr", IN_CREATE), 0);
    const ProcessFigures during = figuresOf(getpid());
    close(watches);
    EXPECT_EQ(during.descriptors, before.descriptors + 1);
    EXPECT_EQ(during.fileWatches, before.fileWatches + 2);
    EXPECT_EQ(figuresOf(getpid()).descriptors, before.descriptors);
}

TEST(ProcessFigures, CountThreads) {
    const int before = figuresOf(getpid()).threads;
    int during = 0;
    std::thread([&] { during = figuresOf(getpid()).threads; }).join();
    EXPECT_EQ(during, before + 1);
}

TEST(ProcessFigures, MeasureTheMemoryThatIsWritten) {
    constexpr std::size_t megabytes = 32;
    const long before = figuresOf(getpid()).privateDirtyKilobytes;
    const std::vector<char> memory(megabytes << 20U, 1);
    const long grown = figuresOf(getpid()).privateDirtyKilobytes - before;
    EXPECT_EQ(memory.back(), 1);
    EXPECT_GT(grown, 31 * 1024);
    EXPECT_LT(grown, 40 * 1024);
}

TEST(ProcessFigures, AreZeroForAProcessThatHasEnded) {
    const ProcessFigures figures = figuresOf(1 << 22U);
    EXPECT_EQ(figures.threads, 0);
    EXPECT_EQ(figures.privateDirtyKilobytes, 0);
}

} // namespace
} // namespace quorvel::phosh
