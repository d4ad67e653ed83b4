// When a file counts as unchanged, and how a file is read that changes meanwhile.
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
    void scan(CalendarFile& file) const {
        struct stat status {};
        ASSERT_EQ(stat(path().c_str(), &status), 0);
        file.listed = versionOf(status);
    }
    void readAt(CalendarFile& file, std::int64_t ahead) const {
        readCalendarFile(
            file, path(), FileKind::calendar,
            {[](std::string_view) { return true; }, [ahead] { return fileClock() + ahead; }});
    }
    static std::string errorOf(const CalendarFile& file) {
        return file.parsed->content ? "none" : file.parsed->content.error().message().english();
    }
    static std::string titleOf(const CalendarFile& file) {
        const icalendar::IcsFile& ics = file.calendar()->ics;
        return std::string(ics.slice(*ics.events.at(0).title));
    }
};

TEST_F(CalendarFileTest, IsCurrentOnceItWasReadWhenSettled) {
    writeTitle("a");
    CalendarFile file;
    scan(file);
    EXPECT_FALSE(file.isCurrent());
    readAt(file, 0);
    EXPECT_FALSE(file.isCurrent());
    readAt(file, 10 * second);
    EXPECT_TRUE(file.isCurrent());
    std::this_thread::sleep_for(std::chrono::milliseconds(12));
    writeTitle("a");
    scan(file);
    EXPECT_FALSE(file.isCurrent());
}

// As after a change within one tick of a coarse clock.
TEST_F(CalendarFileTest, OtherBytesUnderTheSameVersionAreRead) {
    writeTitle("a");
    CalendarFile file;
    scan(file);
    readAt(file, 0);
    EXPECT_EQ(titleOf(file), "a");
    const auto before = file.calendar();
    readAt(file, 0);
    EXPECT_EQ(file.calendar(), before);
    writeTitle("b");
    scan(file);
    file.parsed->version = *file.listed;
    readAt(file, 0);
    EXPECT_EQ(titleOf(file), "b");
}

TEST_F(CalendarFileTest, ErrorsAreRemembered) {
    CalendarFile file;
    readAt(file, 0);
    EXPECT_EQ(errorOf(file), FileError::ofSystem(ENOENT).message());
    EXPECT_FALSE(file.parsed->content.error().isLasting());
    std::filesystem::create_directory(path());
    readAt(file, 0);
    EXPECT_EQ(errorOf(file), FileError::ofSystem(EINVAL).message());
    std::filesystem::remove(path());
    writeTitle("a");
    std::filesystem::resize_file(path(), (std::uintmax_t{2} << 30U) + 1); // takes no room
    scan(file);
    readAt(file, 10 * second);
    EXPECT_EQ(errorOf(file), FileError::ofSystem(EFBIG).message());
    EXPECT_TRUE(file.parsed->content.error().isLasting());
    EXPECT_EQ(file.calendar(), nullptr);
}

TEST_F(CalendarFileTest, WithoutRoomIsLeftOut) {
    std::string text = "BEGIN:VCALENDAR\r\n";
    for (int i = 0; i < 1000; ++i) {
        text += eventText("UID:" + std::to_string(i) + "|DTSTART:20260310");
    }
    write("a.ics", text + "END:VCALENDAR\r\n");
    const auto readWith = [this](std::size_t mostBytes) {
        CalendarFile file;
        scan(file);
        readCalendarFile(file, path(), FileKind::calendar,
                         {[](std::string_view) { return true; },
                          [] { return fileClock() + 10 * second; }, nullptr, mostBytes});
        return file;
    };
    EXPECT_EQ(readWith(1000000).calendar()->ics.events.size(), 1000U);
    const CalendarFile file = readWith(20000);
    EXPECT_EQ(file.calendar(), nullptr);
    EXPECT_EQ(errorOf(file), "it is left out: there are more events than fit into memory");
    EXPECT_TRUE(file.parsed->content.error().isLasting());
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
        scan(file);
        readAt(file, 10 * second);
        writesMeanwhile = writes - before;
    }
    isDone = true;
    writer.join();
    ASSERT_NE(file.calendar(), nullptr);
    EXPECT_GE(file.calendar()->ics.events.size(), 20000U);
    EXPECT_FALSE(file.parsed->isSettled);
}

} // namespace
} // namespace quorvel::freedesktop::calendars
