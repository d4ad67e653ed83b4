// A file that two threads parse is the same as one that one thread parses.
#include "freedesktop/calendars/files/file_tail.h"

#include <thread>

#include "freedesktop/io/regular_file.h"
#include "tests/freedesktop/calendars/store/store_fixture.h"

namespace quorvel::freedesktop::calendars {
namespace {

class FileTailTest : public StoreFixture {
protected:
    std::string path() const { return folder / "a.ics"; }
    void writeEvents(int count, const std::string& end = "END:VCALENDAR\r\n") const {
        std::string text = "BEGIN:VCALENDAR\r\n";
        for (int i = 0; i < count; ++i) {
            text += eventText(
                "UID:" + std::to_string(i) +
                "|DTSTART;TZID=Europe/Berlin:20260310T100000|DESCRIPTION:" + std::string(300, 'x'));
        }
        write("a.ics", text + end);
    }
    icalendar::IcsFile read(FileTail* tail, std::int64_t ahead = 10'000'000'000) const {
        CalendarFile file;
        ReadContext context = m_context;
        context.fileClock = [ahead] { return fileClock() + ahead; };
        readCalendarFile(file, path(), FileKind::calendar, context, tail);
        return file.calendar() ? file.calendar()->ics : icalendar::IcsFile();
    }
    FileVersion version() const { return RegularFile::open(path())->version(); }

    ReadContext m_context{[](std::string_view) { return true; }, fileClock};
};

TEST_F(FileTailTest, ParsesTheSecondHalf) {
    writeEvents(6000, "");
    const icalendar::IcsFile whole = read(nullptr);
    ASSERT_EQ(whole.events.size(), 6000U);
    EXPECT_EQ(whole.problems.size(), 1U);
    FileTail tail(path(), m_context);
    tail.parse();
    EXPECT_TRUE(read(&tail) == whole);
    EXPECT_EQ(tail.take(version()), nullptr); // it was used
}

TEST_F(FileTailTest, IsParsedWhileTheOtherThreadReads) {
    writeEvents(6000);
    const icalendar::IcsFile whole = read(nullptr);
    for (int i = 0; i < 20; ++i) {
        FileTail tail(path(), m_context);
        std::thread other([&tail] { tail.parse(); });
        const icalendar::IcsFile file = read(&tail);
        other.join();
        ASSERT_TRUE(file == whole);
    }
}

TEST_F(FileTailTest, OfAnotherVersionIsNotUsed) {
    writeEvents(6000);
    FileTail tail(path(), m_context);
    tail.parse();
    writeEvents(7000);
    EXPECT_EQ(read(&tail).events.size(), 7000U);
}

TEST_F(FileTailTest, OfAFileThatMayHaveToBeComparedLaterIsNotUsed) {
    writeEvents(6000);
    FileTail tail(path(), m_context);
    tail.parse();
    EXPECT_EQ(read(&tail, 0).events.size(), 6000U);
    EXPECT_NE(tail.take(version()), nullptr);
}

TEST_F(FileTailTest, ComesTooLateForAThreadThatIsBehindTheMiddle) {
    writeEvents(6000);
    FileTail tail(path(), m_context);
    EXPECT_EQ(read(&tail).events.size(), 6000U);
    tail.parse();
    EXPECT_EQ(tail.take(version()), nullptr);
}

TEST_F(FileTailTest, OfASmallFileOrOneWithoutEventsIsNone) {
    writeEvents(100);
    FileTail small(path(), m_context);
    small.parse();
    EXPECT_EQ(small.take(version()), nullptr);
    write("a.ics", std::string(3'000'000, 'x'));
    FileTail other(path(), m_context);
    other.parse();
    EXPECT_EQ(other.take(version()), nullptr);
    FileTail missing(folder / "missing.ics", m_context);
    missing.parse();
    EXPECT_EQ(missing.take({}), nullptr);
}

} // namespace
} // namespace quorvel::freedesktop::calendars
