#include "freedesktop/session/file_changes.h"

#include <chrono>

#include <gmock/gmock.h>

#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::freedesktop {
namespace {

using namespace testing_session;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
namespace fs = std::filesystem;

bool isText(std::string_view name) {
    return name.size() > 4 && name.substr(name.size() - 4) == ".txt";
}

class FileChangesTest : public testing::Test {
protected:
    void watch(const std::string& path, int depth = 0) { changes->watch({{path, depth, isText}}); }
    void forget() { // what has come already
        runFor(0.15);
        calls = 0;
    }
    bool isSeen() {
        const bool seen = runUntil([this] { return calls > 0; }, 2);
        forget();
        return seen;
    }
    bool isUnseen() {
        runFor(0.15);
        return calls == 0;
    }

    TemporaryFolder folder;
    RecordedLog log;
    int calls = 0;
    std::unique_ptr<FileChanges> changes = std::make_unique<FileChanges>(log, [this] { ++calls; });
};

TEST_F(FileChangesTest, AFileThatIsWrittenReplacedRemovedOrComesAgain) {
    const std::string file = folder / "a file";
    write(file, "1");
    watch(file);
    EXPECT_TRUE(isUnseen());
    write(file, "2");
    EXPECT_TRUE(isSeen()) << "written";
    replace(file, "3");
    EXPECT_TRUE(isSeen()) << "replaced";
    write(file, "4");
    EXPECT_TRUE(isSeen()) << "the new one is written";
    std::ofstream(file, std::ios::app) << "5" << std::flush;
    EXPECT_TRUE(isSeen()) << "appended to";
    fs::remove(file);
    EXPECT_TRUE(isSeen()) << "removed";
    write(file, "6");
    EXPECT_TRUE(isSeen()) << "new";
    fs::rename(file, file + "~");
    EXPECT_TRUE(isSeen()) << "renamed";
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(FileChangesTest, AFileThatStaysOpenIsSeenToGrow) {
    const std::string file = folder / "open.txt";
    std::ofstream stream(file);
    watch(file);
    stream << "1" << std::flush;
    EXPECT_TRUE(isSeen());
    changes->watch({{folder.path(), 0, isText}});
    stream << "2" << std::flush;
    EXPECT_TRUE(isSeen());
}

TEST_F(FileChangesTest, PermissionsAreSeen) {
    write(folder / "a.txt", "1");
    watch(folder / "a.txt");
    fs::permissions(folder / "a.txt", fs::perms::none);
    EXPECT_TRUE(isSeen());
    watch(folder.path());
    fs::permissions(folder / "a.txt", fs::perms::owner_all);
    EXPECT_TRUE(isSeen());
}

TEST_F(FileChangesTest, OtherFilesBesideItAreNotSeen) {
    write(folder / "mine", "1");
    watch(folder / "mine");
    write(folder / "other", "1");
    write(folder / "mine.txt", "1");
    fs::create_directory(folder / "mine.d");
    EXPECT_TRUE(isUnseen());
}

TEST_F(FileChangesTest, OfAFolderTheFilesThatMatterAreSeen) {
    watch(folder.path());
    write(folder / "a.txt", "1");
    EXPECT_TRUE(isSeen()) << "new";
    write(folder / "a.txt", "2");
    EXPECT_TRUE(isSeen()) << "written";
    replace(folder / "a.txt", "3");
    EXPECT_TRUE(isSeen()) << "replaced";
    fs::remove(folder / "a.txt");
    EXPECT_TRUE(isSeen()) << "removed";
}

TEST_F(FileChangesTest, OfAFolderNothingElseIsSeen) {
    fs::create_directory(folder / "below");
    watch(folder.path());
    write(folder / "a.tmp", "1");
    write(folder / ".a.txt", "1");
    write(folder / "below/a.txt", "1");
    fs::create_directory(folder / "below/more");
    std::ifstream(folder / "a.tmp").get();
    fs::remove(folder / "a.tmp");
    EXPECT_TRUE(isUnseen());
}

TEST_F(FileChangesTest, WithoutAFilterEveryFileMattersThatIsNotHidden) {
    changes->watch({{folder.path()}});
    write(folder / "a.tmp", "1");
    EXPECT_TRUE(isSeen());
    write(folder / ".a.tmp", "1");
    EXPECT_TRUE(isUnseen());
}

TEST_F(FileChangesTest, FoldersInAFolderAreWatchedDownToTheDepth) {
    fs::create_directories(folder / "one/two/three");
    watch(folder.path(), 2);
    write(folder / "one/two/a.txt", "1");
    EXPECT_TRUE(isSeen());
    write(folder / "one/two/three/a.txt", "1");
    EXPECT_TRUE(isUnseen());
    fs::create_directories(folder / "one/.two");
    write(folder / "one/.two/a.txt", "1");
    EXPECT_TRUE(isUnseen());
}

TEST_F(FileChangesTest, AFolderThatComesIsWatchedFromThenOn) {
    watch(folder.path(), 3);
    fs::create_directories(folder / "one/two");
    EXPECT_TRUE(isSeen());
    write(folder / "one/two/a.txt", "1");
    EXPECT_TRUE(isSeen());
    fs::rename(folder / "one/two", folder / "one/other");
    EXPECT_TRUE(isSeen());
    write(folder / "one/other/a.txt", "2");
    EXPECT_TRUE(isSeen());
    fs::remove_all(folder / "one");
    EXPECT_TRUE(isSeen());
    fs::create_directories(folder / "one/two");
    EXPECT_TRUE(isSeen());
    write(folder / "one/two/b.txt", "1");
    EXPECT_TRUE(isSeen());
}

TEST_F(FileChangesTest, WhatDoesNotExistIsSeenToComeUp) {
    const std::string file = folder / "one/two/three/a.txt";
    watch(file);
    fs::create_directory(folder / "other");
    EXPECT_TRUE(isUnseen());
    fs::create_directory(folder / "one");
    forget();
    fs::create_directories(folder / "one/two/three");
    forget();
    write(file, "1");
    EXPECT_TRUE(isSeen());
    write(file, "2");
    EXPECT_TRUE(isSeen());
    fs::remove_all(folder / "one");
    EXPECT_TRUE(isSeen());
    fs::create_directories(folder / "one/two/three");
    write(file, "3");
    EXPECT_TRUE(isSeen()) << "in one go";
}

TEST_F(FileChangesTest, AFolderThatDoesNotExistIsSeenToComeUp) {
    watch(folder / "one/two", 1);
    fs::create_directories(folder / "one/two/three");
    EXPECT_TRUE(isSeen());
    write(folder / "one/two/three/a.txt", "1");
    EXPECT_TRUE(isSeen());
}

TEST_F(FileChangesTest, AFolderThatIsReplacedIsWatchedInItsPlace) {
    fs::create_directory(folder / "now");
    fs::create_directory(folder / "next");
    watch(folder / "now");
    fs::rename(folder / "now", folder / "before");
    fs::rename(folder / "next", folder / "now");
    EXPECT_TRUE(isSeen());
    write(folder / "now/a.txt", "1");
    EXPECT_TRUE(isSeen());
    write(folder / "before/a.txt", "1");
    EXPECT_TRUE(isUnseen());
}

TEST_F(FileChangesTest, ALinkIsFollowedAndSeenToPointElsewhere) {
    fs::create_directory(folder / "dots");
    write(folder / "dots/v1", "1");
    write(folder / "dots/v2", "1");
    fs::create_symlink("dots/v1", folder / "a.txt");
    watch(folder / "a.txt");
    write(folder / "dots/v1", "2");
    EXPECT_TRUE(isSeen()) << "its file";
    replace(folder / "dots/v1", "3");
    EXPECT_TRUE(isSeen()) << "another file there";
    fs::create_symlink("dots/v2", folder / "new");
    fs::rename(folder / "new", folder / "a.txt");
    EXPECT_TRUE(isSeen()) << "another link";
    write(folder / "dots/v2", "2");
    EXPECT_TRUE(isSeen());
    write(folder / "dots/v1", "4");
    EXPECT_TRUE(isUnseen());
}

TEST_F(FileChangesTest, LinksInAFolderAreFollowed) {
    fs::create_directories(folder / "elsewhere/calendar");
    fs::create_directory(folder / "here");
    write(folder / "elsewhere/file", "1");
    fs::create_symlink(folder / "elsewhere/file", folder / "here/a.txt");
    watch(folder / "here", 1);
    write(folder / "elsewhere/file", "2");
    EXPECT_TRUE(isSeen());
    fs::create_symlink("../elsewhere/calendar", folder / "here/calendar");
    EXPECT_TRUE(isSeen()) << "a link that comes";
    write(folder / "elsewhere/calendar/b.txt", "1");
    EXPECT_TRUE(isSeen());
    fs::remove(folder / "here/calendar");
    EXPECT_TRUE(isSeen());
    write(folder / "elsewhere/calendar/b.txt", "2");
    EXPECT_TRUE(isUnseen());
}

TEST_F(FileChangesTest, ALinkOnTheWayIsSeenToPointElsewhere) {
    fs::create_directories(folder / "v1/calendars");
    fs::create_directories(folder / "v2/calendars");
    fs::create_directory_symlink("v1", folder / "current");
    watch(folder / "current/calendars");
    fs::create_directory_symlink("v2", folder / "new");
    fs::rename(folder / "new", folder / "current");
    EXPECT_TRUE(isSeen());
    write(folder / "v2/calendars/a.txt", "1");
    EXPECT_TRUE(isSeen());
}

TEST_F(FileChangesTest, ALinkToNothingIsSeenToComeUp) {
    fs::create_symlink("later/file", folder / "a.txt");
    watch(folder / "a.txt");
    fs::create_directory(folder / "later");
    forget();
    write(folder / "later/file", "1");
    EXPECT_TRUE(isSeen());
}

TEST_F(FileChangesTest, LinksInACircleHaveAnEnd) {
    fs::create_directory(folder / "a");
    fs::create_directory_symlink("..", folder / "a/up");
    fs::create_directory_symlink(".", folder / "a/self");
    fs::create_symlink("y.txt", folder / "x.txt");
    fs::create_symlink("x.txt", folder / "y.txt");
    watch(folder.path(), 16);
    write(folder / "a/a.txt", "1");
    EXPECT_TRUE(isSeen());
    watch(folder / "x.txt");
    fs::remove(folder / "x.txt");
    EXPECT_TRUE(isSeen());
}

TEST_F(FileChangesTest, PathsNeedNotBePlain) {
    fs::create_directories(folder / "one/two");
    const fs::path before = fs::current_path();
    fs::current_path(folder / "one");
    changes->watch({{"./two//../../a.txt"}, {"two/"}});
    fs::current_path(before);
    write(folder / "a.txt", "1");
    EXPECT_TRUE(isSeen());
    write(folder / "one/two/b", "1");
    EXPECT_TRUE(isSeen());
    changes->watch({{""}, {"/proc/self/nothing/there"}, {std::string("a\0b", 3)}});
    EXPECT_TRUE(isUnseen());
    changes->watch({{"/"}});
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(FileChangesTest, OtherPathsTakeThePlaceOfTheFirst) {
    fs::create_directory(folder / "one");
    fs::create_directory(folder / "two");
    watch(folder / "one");
    watch(folder / "two");
    write(folder / "one/a.txt", "1");
    EXPECT_TRUE(isUnseen());
    write(folder / "two/a.txt", "1");
    EXPECT_TRUE(isSeen());
}

TEST_F(FileChangesTest, ReportsABurstTenTimesPerSecond) {
    watch(folder.path());
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    while (std::chrono::steady_clock::now() < end) {
        write(folder / "a.txt", "1");
        runFor(0);
    }
    EXPECT_GE(calls, 2);
    EXPECT_LE(calls, 11);
}

TEST_F(FileChangesTest, DoesNotCallAfterItsDestruction) {
    watch(folder.path());
    write(folder / "a.txt", "1");
    ASSERT_TRUE(runUntil([this] { return calls == 1; }));
    write(folder / "a.txt", "2");
    changes.reset();
    runFor(0.25);
    EXPECT_EQ(calls, 1);
}

TEST_F(FileChangesTest, WatchingDoesNotWakeTheProcess) {
    changes->watch({{folder.path()}, {folder / "missing/file"}});
    write(folder / "a.txt", "1");
    EXPECT_TRUE(isSeen());
    EXPECT_EQ(wakeUpsDuring(0.5), 0);
}

TEST_F(FileChangesTest, WithoutWatchesLeftItLogsOnceAndContinues) {
    fs::create_directories(folder / "a/b/c");
    Kernel::instance().watchesLeft = 1;
    watch(folder.path(), 5);
    Kernel::instance().watchesLeft = -1;
    EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("max_user_watches")));
    write(folder / "a.txt", "1");
    EXPECT_TRUE(isSeen());
    fs::create_directory(folder / "d");
    EXPECT_TRUE(isSeen());
    write(folder / "a/b/c/a.txt", "1");
    EXPECT_TRUE(isSeen()) << "there are watches again";
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(FileChangesTest, TooManyFoldersAreLoggedOnce) {
    for (int i = 0; i < 20; ++i) {
        fs::create_directory(folder / std::to_string(i));
    }
    changes = std::make_unique<FileChanges>(
        log, [this] { ++calls; }, 10);
    watch(folder.path(), 2);
    EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("too much to watch")));
    write(folder / "a.txt", "1");
    EXPECT_TRUE(isSeen());
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(FileChangesTest, NoticesThatAFileBecomesReadable) {
    fs::create_directory(folder / "locked");
    Kernel::instance().unwatchable = folder / "locked";
    watch(folder / "locked");
    EXPECT_THAT(log.lines(), ElementsAre(HasSubstr("cannot watch " + (folder / "locked"))));
    Kernel::instance().unwatchable.clear();
    fs::permissions(folder / "locked", fs::perms::owner_all);
    EXPECT_TRUE(isSeen());
    write(folder / "locked/a.txt", "1");
    EXPECT_TRUE(isSeen());
}

} // namespace
} // namespace quorvel::freedesktop
