#include "app/refresh/received_calendar.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

namespace quorvel::app {
namespace {

namespace fs = std::filesystem;

std::string startError(std::string_view start) {
    const auto checked = checkStart(start);
    return checked ? "" : checked.error().what.english();
}

TEST(ReceivedCalendar, StartShowsWhetherItIsACalendar) {
    EXPECT_EQ(startError("BEGIN:VCALENDAR\r\nVERSION:2.0\r\n"), "");
    EXPECT_EQ(startError("\xEF\xBB\xBF"
                         "begin:vcalendar\n"),
              "");
    EXPECT_EQ(startError(""), "the server sends nothing");
    EXPECT_EQ(startError(" \r\n "), "the server sends nothing");
    EXPECT_EQ(startError("\n<!DOCTYPE html><title>Sign in</title>"),
              "the server sends a web page instead of a calendar");
    EXPECT_EQ(startError("{\"events\": []}"), "what the server sends is no calendar");
    EXPECT_EQ(startError("BEGIN:VCARD\r\n"), "what the server sends is no calendar");
}

TEST(ReceivedCalendar, EndIsFoundInAnyCaseAndEncoding) {
    using namespace std::string_view_literals;
    EXPECT_TRUE(hasCalendarEnd("END:VEVENT\r\nEND:VCALENDAR\r\n"));
    EXPECT_TRUE(hasCalendarEnd("end:vcalendar"));
    EXPECT_TRUE(hasCalendarEnd("E\0N\0D\0:\0V\0C\0A\0L\0E\0N\0D\0A\0R\0\r\0\n\0"sv));
    EXPECT_FALSE(hasCalendarEnd("END:VEVENT\r\nEND:VCAL"));
    EXPECT_FALSE(hasCalendarEnd(""));
}

class ReceivedCalendarFile : public ::testing::Test {
protected:
    void SetUp() override {
        std::string pattern = fs::temp_directory_path() / "quorvel-received-XXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder = pattern;
    }
    void TearDown() override { fs::remove_all(folder); }

    std::string file() const { return folder / "download"; }
    fs::path folder;
};

TEST_F(ReceivedCalendarFile, IsWrittenInPieces) {
    std::ofstream(file()) << "what was left over";
    auto calendar = ReceivedCalendar::create(file());
    ASSERT_TRUE(calendar);
    for (const char* const piece :
         {"BEGIN:VCAL", "", "ENDAR\r\nX-WR-CALNAME:Te\\,am\r\nEND", ":VCALENDAR\r\n"}) {
        ASSERT_TRUE(calendar->receive(piece));
    }
    ASSERT_TRUE(calendar->finish());
    EXPECT_EQ(calendar->calendarName(), "Te,am");
    std::ostringstream content;
    content << std::ifstream(file()).rdbuf();
    EXPECT_EQ(content.str(), "BEGIN:VCALENDAR\r\nX-WR-CALNAME:Te\\,am\r\nEND:VCALENDAR\r\n");
    EXPECT_EQ(calendar->size(), content.str().size());
}

TEST_F(ReceivedCalendarFile, BreaksOffWithoutAnEnd) {
    auto calendar = ReceivedCalendar::create(file());
    ASSERT_TRUE(calendar);
    ASSERT_TRUE(calendar->receive("BEGIN:VCALENDAR\r\nEND:VCALENDAR\r\n"));
    ASSERT_TRUE(calendar->receive(std::string(5000, ' ')));
    const auto finished = calendar->finish();
    ASSERT_FALSE(finished);
    EXPECT_EQ(finished.error().what.english(), "the calendar breaks off before its end");
}

TEST_F(ReceivedCalendarFile, IsNeverWrittenThroughALink) {
    std::ofstream(folder / "target") << "untouched";
    fs::create_symlink(folder / "target", file());
    auto calendar = ReceivedCalendar::create(file());
    ASSERT_TRUE(calendar);
    ASSERT_TRUE(calendar->receive("x"));
    EXPECT_EQ(fs::file_size(folder / "target"), 9U);
    EXPECT_FALSE(fs::is_symlink(file()));
}

TEST_F(ReceivedCalendarFile, MissingFolderIsNamed) {
    const auto calendar = ReceivedCalendar::create(folder / "none/download");
    ASSERT_FALSE(calendar);
    EXPECT_EQ(calendar.error().what.english(),
              "the file '" + (folder / "none/download").string() +
                  "' cannot be written (No such file or directory)");
}

} // namespace
} // namespace quorvel::app
