// When a file is taken to be what it was, and how one is read that changes meanwhile.
#include "freedesktop/calendars/files/calendar_file.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <thread>

#include <sys/stat.h>

#include "tests/freedesktop/calendars/store/store_fixture.h"

namespace quorvel::freedesktop::calendars {
namespace {

constexpr std::int64_t second = 1'000'000'000; // nanoseconds

class CalendarFileTest : public StoreFixture {
protected:
    std::string path() const { return folder / "a.ics"; }
    void writeTitle(const std::string& title) const {
        write("a.ics", calendarText(eventText("UID:1|DTSTART:20260310|SUMMARY:" + title)));
    }
    void look(CalendarFile& file) const {
        struct stat status {};
        ASSERT_EQ(stat(path().c_str(), &status), 0);
        file.seen = versionOf(status);
    }
    void readAt(CalendarFile& file, std::int64_t ahead) const {
        readCalendarFile(
            file, path(), FileKind::calendar,
            {[](std::string_view) { return true; }, [ahead] { return fileClock() + ahead; }});
    }
    static std::string titleOf(const CalendarFile& file) {
        const icalendar::IcsFile& ics = file.loaded->ics;
        return std::string(ics.slice(*ics.events.at(0).title));
    }
};

TEST_F(CalendarFileTest, IsCurrentOnceItWasReadWhenSettled) {
    writeTitle("a");
    CalendarFile file;
    look(file);
    EXPECT_FALSE(file.isCurrent());
    readAt(file, 0);
    EXPECT_FALSE(file.isCurrent());
    readAt(file, 10 * second);
    EXPECT_TRUE(file.isCurrent());
    std::this_thread::sleep_for(std::chrono::milliseconds(12));
    writeTitle("a");
    look(file);
    EXPECT_FALSE(file.isCurrent());
}

// As after a change within one tick of a coarse clock.
TEST_F(CalendarFileTest, OtherBytesUnderTheSameVersionAreRead) {
    writeTitle("a");
    CalendarFile file;
    look(file);
    readAt(file, 0);
    EXPECT_EQ(titleOf(file), "a");
    const auto before = file.loaded;
    readAt(file, 0);
    EXPECT_EQ(file.loaded, before);
    writeTitle("b");
    look(file);
    file.version = file.seen;
    readAt(file, 0);
    EXPECT_EQ(titleOf(file), "b");
}

TEST_F(CalendarFileTest, ErrorsAreKept) {
    CalendarFile file;
    readAt(file, 0);
    EXPECT_EQ(file.error, ENOENT);
    EXPECT_FALSE(file.isErrorLasting());
    std::filesystem::create_directory(path());
    readAt(file, 0);
    EXPECT_EQ(file.error, EINVAL);
    std::filesystem::remove(path());
    writeTitle("a");
    std::filesystem::resize_file(path(), (std::uintmax_t{2} << 30U) + 1); // takes no room
    look(file);
    readAt(file, 10 * second);
    EXPECT_EQ(file.error, EFBIG);
    EXPECT_TRUE(file.isErrorLasting());
    EXPECT_EQ(file.loaded, nullptr);
}

TEST_F(CalendarFileTest, WithoutRoomIsLeftOut) {
    std::string text = "BEGIN:VCALENDAR\r\n";
    for (int i = 0; i < 1000; ++i) {
        text += eventText("UID:" + std::to_string(i) + "|DTSTART:20260310");
    }
    write("a.ics", text + "END:VCALENDAR\r\n");
    const auto readWith = [this](std::size_t mostBytes) {
        CalendarFile file;
        look(file);
        readCalendarFile(file, path(), FileKind::calendar,
                         {[](std::string_view) { return true; },
                          [] { return fileClock() + 10 * second; }, nullptr, mostBytes});
        return file;
    };
    EXPECT_EQ(readWith(1000000).loaded->ics.events.size(), 1000U);
    const CalendarFile file = readWith(20000);
    EXPECT_EQ(file.loaded, nullptr);
    EXPECT_EQ(file.error, noRoom);
    EXPECT_TRUE(file.isErrorLasting());
    EXPECT_FALSE(file.isCurrent()); // there may be room the next time
}

TEST_F(CalendarFileTest, ThatGrowsMeanwhileIsReadUpToItsSizeAndOnceMoreLater) {
    std::string text = "BEGIN:VCALENDAR\r\n";
    for (int i = 0; i < 20000; ++i) {
        text += eventText("UID:" + std::to_string(i) +
                          "|DTSTART:20260310|DESCRIPTION:" + std::string(300, 'x'));
    }
    write("a.ics", text);
    std::atomic<bool> isDone = false;
    std::atomic<int> writes = 0;
    std::thread writer([&] {
        while (!isDone) {
            std::ofstream(path(), std::ios::binary | std::ios::app)
                << eventText("UID:more|DTSTART:20260310");
            ++writes;
        }
    });
    CalendarFile file;
    int writesMeanwhile = 0;
    // On a busy machine the writer may rest while the file is read.
    for (int attempt = 0; attempt < 100 && writesMeanwhile < 3; ++attempt) {
        const int before = writes;
        look(file);
        readAt(file, 10 * second);
        writesMeanwhile = writes - before;
    }
    isDone = true;
    writer.join();
    ASSERT_NE(file.loaded, nullptr);
    EXPECT_GE(file.loaded->ics.events.size(), 20000U);
    EXPECT_FALSE(file.isSettled);
}

} // namespace
} // namespace quorvel::freedesktop::calendars
