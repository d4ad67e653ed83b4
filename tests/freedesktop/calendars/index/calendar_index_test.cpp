// What is kept comes back byte for byte, or not at all; and nothing that stands in the way lasts.
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

#include "freedesktop/calendars/index/sqlite.h"

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
    CalendarIndex::Say sayInto() {
        return [this](const std::string& what) { said += what + "\n"; };
    }
    std::unique_ptr<CalendarIndex> open(std::uint64_t version = 1) {
        return std::make_unique<CalendarIndex>(folder(), version, sayInto());
    }
    static IndexEntry entry(IndexKind kind, std::uint64_t key, std::string content) {
        return {kind, {key, 7}, [content = std::move(content)] { return content; }};
    }
    static std::optional<std::string> find(CalendarIndex& index, IndexKind kind,
                                           std::uint64_t key) {
        return CalendarIndex::Reading(index).find(kind, {key, 7});
    }
    // In an object of its own, as another process would.
    std::optional<std::string> findFile(std::uint64_t key) {
        return find(*open(), IndexKind::file, key);
    }
    void keepOne() { open()->keep({entry(IndexKind::file, 1, "one")}); }

    std::string bytes() const {
        std::ostringstream text;
        text << std::ifstream(path(), std::ios::binary).rdbuf();
        return text.str();
    }
    void setBytes(const std::string& text) const {
        std::ofstream(path(), std::ios::binary) << text;
    }

    fs::path top;
    std::string said;
};

TEST_F(CalendarIndexTest, GivesBackWhatWasKept) {
    EXPECT_EQ(findFile(1), std::nullopt);
    EXPECT_FALSE(fs::exists(folder()));
    const std::string large(3U << 20U, 'x');
    const std::string binary("a\0b\xFF", 4);
    open()->keep({entry(IndexKind::file, 1, "one"), entry(IndexKind::snapshot, 1, binary),
                  entry(IndexKind::search, 1, ""), entry(IndexKind::file, 2, large)});
    const auto index = open();
    EXPECT_EQ(find(*index, IndexKind::file, 1), "one");
    EXPECT_EQ(find(*index, IndexKind::snapshot, 1), binary);
    EXPECT_EQ(find(*index, IndexKind::search, 1), "");
    EXPECT_EQ(find(*index, IndexKind::file, 2), large);
    EXPECT_EQ(find(*index, IndexKind::file, 3), std::nullopt);
    index->keep({entry(IndexKind::file, 1, "other")});
    EXPECT_EQ(find(*index, IndexKind::file, 1), "other");
    EXPECT_EQ(said, "");
}

TEST_F(CalendarIndexTest, TellsKeysApartThatShareARow) {
    keepOne();
    const auto index = open();
    EXPECT_EQ(CalendarIndex::Reading(*index).find(IndexKind::file, {1, 8}), std::nullopt);
}

TEST_F(CalendarIndexTest, IsForItsUserAlone) {
    keepOne();
    EXPECT_EQ(fs::status(folder()).permissions(), fs::perms::owner_all);
}

TEST_F(CalendarIndexTest, KeepsTheLatestSearchesOnly) {
    const auto index = open();
    for (std::uint64_t key = 0; key < 60; ++key) {
        index->keep({entry(IndexKind::search, key, "s"), entry(IndexKind::snapshot, key, "t"),
                     entry(IndexKind::file, key, "f")});
    }
    const SqliteDatabase database(path(), SQLITE_OPEN_READONLY);
    EXPECT_EQ(database.number("SELECT count(*) FROM search"), 24);
    EXPECT_EQ(database.number("SELECT count(*) FROM snapshot"), 8);
    EXPECT_EQ(database.number("SELECT count(*) FROM file"), 60);
    EXPECT_EQ(find(*index, IndexKind::search, 59), "s");
}

TEST_F(CalendarIndexTest, OfAnotherVersionIsMadeAnewAndSaysSoOnce) {
    keepOne();
    const auto newer = open(2);
    EXPECT_EQ(find(*newer, IndexKind::file, 1), std::nullopt);
    EXPECT_EQ(find(*newer, IndexKind::file, 1), std::nullopt);
    EXPECT_EQ(said, "the index of the calendars, '" + path() +
                        "', is of another version of the program, and is made anew\n");
    newer->keep({entry(IndexKind::file, 1, "two")});
    EXPECT_EQ(find(*open(2), IndexKind::file, 1), "two");
}

TEST_F(CalendarIndexTest, ChangedContentIsNeverTakenForWhole) {
    open()->keep({entry(IndexKind::file, 1, std::string(1000, 'a') + "needle")});
    std::string torn = bytes();
    const std::size_t needle = torn.find("needle");
    ASSERT_NE(needle, std::string::npos);
    torn[needle] = 'N';
    setBytes(torn);
    EXPECT_EQ(findFile(1), std::nullopt);
    EXPECT_EQ(said, "the index of the calendars, '" + path() + "', is torn, and is made anew\n");
}

TEST_F(CalendarIndexTest, TornAnywhereIsDoneWithoutAndMadeAnew) {
    keepOne();
    const std::string whole = bytes();
    std::vector<std::string> torn{"no database at all", std::string(100000, '\xA5'),
                                  whole.substr(0, 50), whole.substr(0, whole.size() / 2),
                                  whole.substr(0, whole.size() - 1)};
    for (std::size_t at = 0; at < whole.size(); at += 97) {
        torn.push_back(whole);
        torn.back().replace(at, std::min<std::size_t>(64, whole.size() - at),
                            std::min<std::size_t>(64, whole.size() - at), '\x5A');
    }
    for (const std::string& text : torn) {
        setBytes(text);
        const auto index = open();
        const auto found = find(*index, IndexKind::file, 1);
        EXPECT_TRUE(!found || found == "one");
        index->keep({entry(IndexKind::file, 1, "one")});
        // Some damage shows only when something is written; the next one mends it.
        if (find(*index, IndexKind::file, 1) != "one") {
            index->keep({entry(IndexKind::file, 1, "one")});
        }
        EXPECT_EQ(find(*index, IndexKind::file, 1), "one") << text.size();
    }
}

TEST_F(CalendarIndexTest, WhatCannotBeUsedIsDoneWithoutAndSaidOnce) {
    fs::create_directories(top / "cache");
    std::ofstream(folder()) << "a file where the folder should be";
    const auto index = open();
    index->keep({entry(IndexKind::file, 1, "one")});
    index->keep({entry(IndexKind::file, 1, "one")});
    EXPECT_EQ(find(*index, IndexKind::file, 1), std::nullopt);
    EXPECT_EQ(said, "the index of the calendars, '" + path() +
                        "', is done without: " + std::string("Not a directory") + "\n");
}

TEST_F(CalendarIndexTest, OpensNothingButAFile) {
    fs::create_directories(folder());
    ASSERT_EQ(mkfifo(path().c_str(), 0600), 0);
    const auto index = open();
    EXPECT_EQ(find(*index, IndexKind::file, 1), std::nullopt);
    index->keep({entry(IndexKind::file, 1, "one")});
    EXPECT_TRUE(fs::is_fifo(path()));
    fs::remove(path());
    std::ofstream(top / "elsewhere") << "";
    fs::create_symlink(top / "elsewhere", path());
    index->keep({entry(IndexKind::file, 1, "one")});
    EXPECT_EQ(fs::file_size(top / "elsewhere"), 0U);
}

TEST_F(CalendarIndexTest, MayLieBehindALink) {
    fs::create_directories(top / "elsewhere");
    fs::create_directory_symlink(top / "elsewhere", top / "cache");
    keepOne();
    EXPECT_EQ(findFile(1), "one");
    EXPECT_EQ(said, "");
}

TEST_F(CalendarIndexTest, DeletedMeanwhileIsMadeAnew) {
    const auto index = open();
    index->keep({entry(IndexKind::file, 1, "one")});
    fs::remove_all(top / "cache");
    EXPECT_EQ(find(*index, IndexKind::file, 1), std::nullopt);
    index->keep({entry(IndexKind::file, 1, "one")});
    EXPECT_EQ(find(*index, IndexKind::file, 1), "one");
    setBytes("torn");
    EXPECT_EQ(find(*index, IndexKind::file, 1), std::nullopt);
    fs::remove_all(top / "cache");
    index->keep({entry(IndexKind::file, 1, "one")});
    EXPECT_EQ(find(*index, IndexKind::file, 1), "one");
}

TEST_F(CalendarIndexTest, HeldByAnotherIsNotWaitedForLong) {
    keepOne();
    const SqliteDatabase holder(path(), SQLITE_OPEN_READWRITE);
    holder.run("BEGIN EXCLUSIVE");
    const auto index = open();
    const auto before = Clock::now();
    EXPECT_EQ(find(*index, IndexKind::file, 1), std::nullopt);
    EXPECT_LT(Clock::now() - before, std::chrono::milliseconds(50));
    index->keep({entry(IndexKind::file, 1, "two")});
    EXPECT_LT(Clock::now() - before, std::chrono::milliseconds(300));
    holder.run("ROLLBACK");
    EXPECT_EQ(find(*index, IndexKind::file, 1), "one");
    EXPECT_EQ(said, "");
}

} // namespace
} // namespace quorvel::freedesktop::calendars
