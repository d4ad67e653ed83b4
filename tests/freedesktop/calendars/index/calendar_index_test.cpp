// What is stored is found byte for byte or not at all, and no obstacle remains.
#include "freedesktop/calendars/index/calendar_index.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "freedesktop/calendars/sqlite/sqlite.h"

namespace quorvel::freedesktop::calendars {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

class CalendarIndexTest : public ::testing::Test {
protected:
    CalendarIndexTest() {
        std::string pattern = fs::temp_directory_path() / "quorvel-index-XXXXXX";
        top = mkdtemp(pattern.data());
    }
    ~CalendarIndexTest() override {
        std::error_code ignored;
        fs::remove_all(top, ignored);
    }

    std::string folder() const { return top / "cache/quorvel"; }
    std::string path() const { return folder() + "/calendars.sqlite"; }
    CalendarIndex::ProblemHandler problemHandler() {
        return [this](const std::string& what) { reported += what + "\n"; };
    }
    std::unique_ptr<CalendarIndex> open(std::uint64_t version = 1) {
        return std::make_unique<CalendarIndex>(folder(), version, problemHandler());
    }
    static IndexEntry entry(IndexKind kind, std::uint64_t key, std::string content) {
        return {kind, {key, 7}, [content = std::move(content)] { return content; }};
    }
    static std::optional<std::string> find(CalendarIndex& index, IndexKind kind,
                                           std::uint64_t key) {
        return index.beginReading().find(kind, {key, 7});
    }
    // In an object of its own, as another process would.
    std::optional<std::string> findFile(std::uint64_t key) {
        return find(*open(), IndexKind::file, key);
    }
    void storeOne() { open()->store({entry(IndexKind::file, 1, "one")}); }

    std::string bytes() const {
        std::ostringstream text;
        text << std::ifstream(path(), std::ios::binary).rdbuf();
        return text.str();
    }
    void setBytes(const std::string& text) const {
        std::ofstream(path(), std::ios::binary) << text;
    }

    fs::path top;
    std::string reported;
};

TEST_F(CalendarIndexTest, FindsWhatWasStored) {
    EXPECT_EQ(findFile(1), std::nullopt);
    EXPECT_FALSE(fs::exists(folder()));
    const std::string large(3U << 20U, 'x');
    const std::string binary("a\0b\xFF", 4);
    open()->store({entry(IndexKind::file, 1, "one"), entry(IndexKind::snapshot, 1, binary),
                   entry(IndexKind::search, 1, ""), entry(IndexKind::file, 2, large)});
    const auto index = open();
    EXPECT_EQ(find(*index, IndexKind::file, 1), "one");
    EXPECT_EQ(find(*index, IndexKind::snapshot, 1), binary);
    EXPECT_EQ(find(*index, IndexKind::search, 1), "");
    EXPECT_EQ(find(*index, IndexKind::file, 2), large);
    EXPECT_EQ(find(*index, IndexKind::file, 3), std::nullopt);
    index->store({entry(IndexKind::file, 1, "other")});
    EXPECT_EQ(find(*index, IndexKind::file, 1), "other");
    EXPECT_EQ(reported, "");
}

TEST_F(CalendarIndexTest, DistinguishesKeysThatShareARow) {
    storeOne();
    const auto index = open();
    EXPECT_EQ(index->beginReading().find(IndexKind::file, {1, 8}), std::nullopt);
}

TEST_F(CalendarIndexTest, IsForItsUserAlone) {
    storeOne();
    EXPECT_EQ(fs::status(folder()).permissions(), fs::perms::owner_all);
}

TEST_F(CalendarIndexTest, StoresTheLatestSearchesOnly) {
    const auto index = open();
    for (std::uint64_t key = 0; key < 60; ++key) {
        index->store({entry(IndexKind::search, key, "s"), entry(IndexKind::snapshot, key, "t"),
                      entry(IndexKind::file, key, "f")});
    }
    SqliteDatabase database(path(), SQLITE_OPEN_READONLY);
    EXPECT_EQ(database.number("SELECT count(*) FROM search"), 24);
    EXPECT_EQ(database.number("SELECT count(*) FROM snapshot"), 8);
    EXPECT_EQ(database.number("SELECT count(*) FROM file"), 60);
    EXPECT_EQ(find(*index, IndexKind::search, 59), "s");
}

TEST_F(CalendarIndexTest, OfAnotherVersionIsRebuiltAndReportedOnce) {
    storeOne();
    const auto newer = open(2);
    EXPECT_EQ(find(*newer, IndexKind::file, 1), std::nullopt);
    EXPECT_EQ(find(*newer, IndexKind::file, 1), std::nullopt);
    EXPECT_EQ(reported,
              "the index of the calendars, '" + path() +
                  "', was written by another version of the program, and will be rebuilt\n");
    newer->store({entry(IndexKind::file, 1, "two")});
    EXPECT_EQ(find(*open(2), IndexKind::file, 1), "two");
}

TEST_F(CalendarIndexTest, DamagedContentIsNeverFound) {
    open()->store({entry(IndexKind::file, 1, std::string(1000, 'a') + "needle")});
    std::string damaged = bytes();
    const std::size_t needle = damaged.find("needle");
    ASSERT_NE(needle, std::string::npos);
    damaged[needle] = 'N';
    setBytes(damaged);
    EXPECT_EQ(findFile(1), std::nullopt);
    EXPECT_EQ(reported,
              "the index of the calendars, '" + path() + "', is damaged, and will be rebuilt\n");
}

TEST_F(CalendarIndexTest, DamagedAnywhereIsRebuilt) {
    storeOne();
    const std::string whole = bytes();
    std::vector<std::string> damaged{"no database at all", std::string(100000, '\xA5'),
                                     whole.substr(0, 50), whole.substr(0, whole.size() / 2),
                                     whole.substr(0, whole.size() - 1)};
    for (std::size_t at = 0; at < whole.size(); at += 97) {
        damaged.push_back(whole);
        damaged.back().replace(at, std::min<std::size_t>(64, whole.size() - at),
                               std::min<std::size_t>(64, whole.size() - at), '\x5A');
    }
    for (const std::string& text : damaged) {
        setBytes(text);
        const auto index = open();
        const auto found = find(*index, IndexKind::file, 1);
        EXPECT_TRUE(!found || found == "one");
        index->store({entry(IndexKind::file, 1, "one")});
        // Some damage is noticed only by writing; then the next store() repairs it.
        if (find(*index, IndexKind::file, 1) != "one") {
            index->store({entry(IndexKind::file, 1, "one")});
        }
        EXPECT_EQ(find(*index, IndexKind::file, 1), "one") << text.size();
    }
}

TEST_F(CalendarIndexTest, ThatCannotBeUsedIsReportedOnce) {
    fs::create_directories(top / "cache");
    std::ofstream(folder()) << "a file where the folder should be";
    const auto index = open();
    index->store({entry(IndexKind::file, 1, "one")});
    index->store({entry(IndexKind::file, 1, "one")});
    EXPECT_EQ(find(*index, IndexKind::file, 1), std::nullopt);
    EXPECT_EQ(reported, "the index of the calendars, '" + path() +
                            "', cannot be used: " + std::string("Not a directory") + "\n");
}

TEST_F(CalendarIndexTest, OpensNothingButAFile) {
    fs::create_directories(folder());
    ASSERT_EQ(mkfifo(path().c_str(), 0600), 0);
    const auto index = open();
    EXPECT_EQ(find(*index, IndexKind::file, 1), std::nullopt);
    index->store({entry(IndexKind::file, 1, "one")});
    EXPECT_TRUE(fs::is_fifo(path()));
    fs::remove(path());
    std::ofstream(top / "elsewhere") << "";
    fs::create_symlink(top / "elsewhere", path());
    index->store({entry(IndexKind::file, 1, "one")});
    EXPECT_EQ(fs::file_size(top / "elsewhere"), 0U);
}

TEST_F(CalendarIndexTest, MayLieBehindALink) {
    fs::create_directories(top / "elsewhere");
    fs::create_directory_symlink(top / "elsewhere", top / "cache");
    storeOne();
    EXPECT_EQ(findFile(1), "one");
    EXPECT_EQ(reported, "");
}

TEST_F(CalendarIndexTest, DeletedMeanwhileIsRebuilt) {
    const auto index = open();
    index->store({entry(IndexKind::file, 1, "one")});
    fs::remove_all(top / "cache");
    EXPECT_EQ(find(*index, IndexKind::file, 1), std::nullopt);
    index->store({entry(IndexKind::file, 1, "one")});
    EXPECT_EQ(find(*index, IndexKind::file, 1), "one");
    setBytes("damaged");
    EXPECT_EQ(find(*index, IndexKind::file, 1), std::nullopt);
    fs::remove_all(top / "cache");
    index->store({entry(IndexKind::file, 1, "one")});
    EXPECT_EQ(find(*index, IndexKind::file, 1), "one");
}

// How often this process has the file open.
std::size_t openFiles(const std::string& path) {
    std::size_t count = 0;
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        std::error_code ignored;
        count += fs::read_symlink(entry, ignored) == path ? 1 : 0;
    }
    return count;
}

TEST_F(CalendarIndexTest, StaysOpenWithoutALock) {
    storeOne();
    const auto index = open();
    EXPECT_EQ(openFiles(path()), 0U);
    EXPECT_EQ(find(*index, IndexKind::file, 1), "one");
    EXPECT_EQ(openFiles(path()), 1U);
    SqliteDatabase other(path(), SQLITE_OPEN_READWRITE);
    other.run("BEGIN EXCLUSIVE");
    EXPECT_FALSE(other.hasFailed());
    EXPECT_EQ(find(*index, IndexKind::file, 1), std::nullopt) << "locked";
    other.run("ROLLBACK");
    EXPECT_EQ(find(*index, IndexKind::file, 1), "one");
    EXPECT_EQ(find(*index, IndexKind::file, 1), "one");
    index->store({entry(IndexKind::file, 1, "two")});
    EXPECT_EQ(find(*index, IndexKind::file, 1), "two");
    EXPECT_EQ(openFiles(path()), 2U) << "one is of the other connection";
    EXPECT_EQ(reported, "");
}

TEST_F(CalendarIndexTest, MayHaveSeveralTransactionsAtOnce) {
    storeOne();
    const auto index = open();
    {
        auto outer = index->beginReading();
        EXPECT_EQ(outer.find(IndexKind::file, {1, 7}), "one");
        auto inner = index->beginReading();
        EXPECT_EQ(inner.find(IndexKind::file, {1, 7}), "one");
        EXPECT_EQ(outer.find(IndexKind::file, {1, 7}), "one");
        EXPECT_EQ(openFiles(path()), 2U);
    }
    EXPECT_EQ(openFiles(path()), 1U);
    EXPECT_EQ(find(*index, IndexKind::file, 1), "one");
    EXPECT_EQ(reported, "");
}

TEST_F(CalendarIndexTest, WrittenMeanwhileIsReadAnew) {
    storeOne();
    const auto index = open();
    EXPECT_EQ(find(*index, IndexKind::file, 1), "one");
    open()->store({entry(IndexKind::file, 1, "two"), entry(IndexKind::search, 1, "new")});
    EXPECT_EQ(find(*index, IndexKind::file, 1), "two");
    EXPECT_EQ(find(*index, IndexKind::search, 1), "new");
    open(2)->store({entry(IndexKind::file, 1, "of another version")});
    EXPECT_EQ(find(*index, IndexKind::file, 1), std::nullopt);
    storeOne();
    EXPECT_EQ(find(*index, IndexKind::file, 1), "one");
}

TEST_F(CalendarIndexTest, ReplacedMeanwhileIsOpenedAnew) {
    storeOne();
    fs::copy_file(path(), top / "first");
    open()->store({entry(IndexKind::file, 1, "two")});
    const auto index = open();
    EXPECT_EQ(find(*index, IndexKind::file, 1), "two");
    fs::rename(top / "first", path());
    EXPECT_EQ(find(*index, IndexKind::file, 1), "one");
    EXPECT_EQ(openFiles(path()), 1U);
    fs::remove(path());
    fs::create_directory(path());
    EXPECT_EQ(find(*index, IndexKind::file, 1), std::nullopt);
    EXPECT_NE(reported.find("it is not a regular file"), std::string::npos);
}

TEST_F(CalendarIndexTest, DamagedMeanwhileIsRebuilt) {
    storeOne();
    const auto index = open();
    EXPECT_EQ(find(*index, IndexKind::file, 1), "one");
    std::string damaged = bytes();
    for (std::size_t place = damaged.find("one") - 8; place < damaged.size(); ++place) {
        damaged[place] = static_cast<char>(damaged[place] ^ 1);
    }
    setBytes(damaged);
    EXPECT_EQ(find(*index, IndexKind::file, 1), std::nullopt);
    setBytes("damaged");
    EXPECT_EQ(find(*index, IndexKind::file, 1), std::nullopt);
    index->store({entry(IndexKind::file, 1, "two")});
    EXPECT_EQ(find(*index, IndexKind::file, 1), "two");
}

TEST_F(CalendarIndexTest, LockedByAnotherProcessIsNotWaitedForLong) {
    storeOne();
    SqliteDatabase holder(path(), SQLITE_OPEN_READWRITE);
    holder.run("BEGIN EXCLUSIVE");
    const auto index = open();
    const auto before = Clock::now();
    EXPECT_EQ(find(*index, IndexKind::file, 1), std::nullopt);
    EXPECT_LT(Clock::now() - before, std::chrono::milliseconds(50));
    index->store({entry(IndexKind::file, 1, "two")});
    EXPECT_LT(Clock::now() - before, std::chrono::milliseconds(300));
    holder.run("ROLLBACK");
    EXPECT_EQ(find(*index, IndexKind::file, 1), "one");
    EXPECT_EQ(reported, "");
}

} // namespace
} // namespace quorvel::freedesktop::calendars
