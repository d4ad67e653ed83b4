// How much is read: of what has not changed nothing, and of what has only that.
#include <cstdint>
#include <fstream>
#include <string>

#include "freedesktop/calendars/index/engine_version.h"
#include "freedesktop/calendars/store/calendar_reader.h"
#include "freedesktop/io/file_version.h"
#include "tests/freedesktop/calendars/store/store_fixture.h"

namespace quorvel::freedesktop {
namespace {

class IndexedReading : public StoreFixture {
protected:
    static constexpr std::uint64_t fileSize = 2'000'000; // of each of five, nearly

    void SetUp() override {
        StoreFixture::SetUp();
        for (const char* name : {"a", "b", "c", "d", "e"}) {
            writeCalendar(name, "Title");
        }
    }

    void writeCalendar(const std::string& name, const std::string& title) const {
        std::string events;
        for (int i = 0; i < 40; ++i) {
            events += eventText("UID:" + name + std::to_string(i) + "|SUMMARY:" + title +
                                "|DTSTART:202603" + std::to_string(10 + i % 15) +
                                "T100000Z|DESCRIPTION:" + std::string(fileSize / 40, 'x'));
        }
        write("calendars/" + name + ".ics", calendarText(events));
    }

    // All bytes that this process has read so far.
    static std::uint64_t bytesRead() {
        std::ifstream file("/proc/self/io");
        std::string name;
        std::uint64_t count = 0;
        file >> name >> count;
        return count;
    }

    // With stores of its own, as another process would; times of files are trusted.
    std::uint64_t bytesToFind(std::string_view from, std::string_view to, std::size_t expected) {
        const std::uint64_t before = bytesRead();
        {
            FileCalendarStores own(zone, {});
            own.setSources({CalendarSource::at(folder / "calendars")});
            own.setIndex(folder / "index", [](const std::string& what) { ADD_FAILURE() << what; });
            own.setFileClock([] { return fileClock() + 3'600'000'000'000; });
            const auto store = own.makeEventStore();
            EXPECT_EQ(
                store->eventsMatchingPredicate({date(from), date(to), store->calendars()}).size(),
                expected);
        }
        return bytesRead() - before;
    }
};

TEST_F(IndexedReading, OfAnUnchangedStoreIsNone) {
    if (bytesRead() == 0) {
        GTEST_SKIP() << "this system does not count what a process reads";
    }
    EXPECT_GT(bytesToFind("20260310", "20260312", 30), 5 * fileSize);
    EXPECT_LT(bytesToFind("20260310", "20260312", 30), fileSize / 10);
    // Within the same weeks, and then beyond them: the events themselves are known as well.
    EXPECT_LT(bytesToFind("20260311", "20260312", 15), fileSize / 10);
    EXPECT_LT(bytesToFind("20260320", "20260323", 30), fileSize / 10);
}

TEST_F(IndexedReading, OfAChangedStoreIsWhatHasChanged) {
    if (bytesRead() == 0) {
        GTEST_SKIP() << "this system does not count what a process reads";
    }
    bytesToFind("20260310", "20260312", 30);
    writeCalendar("c", "Other");
    const std::uint64_t bytes = bytesToFind("20260310", "20260312", 30);
    EXPECT_GT(bytes, fileSize);
    EXPECT_LT(bytes, fileSize + fileSize / 10);
    std::filesystem::remove(folder / "calendars/d.ics");
    EXPECT_LT(bytesToFind("20260310", "20260312", 24), fileSize / 10);
}

TEST_F(IndexedReading, OfALiveHostIsDoneBeforeAnythingChanges) {
    if (bytesRead() == 0) {
        GTEST_SKIP() << "this system does not count what a process reads";
    }
    bytesToFind("20260310", "20260312", 30);
    calendars::CalendarReader reader;
    reader.setSources({CalendarSource::at(folder / "calendars")});
    reader.setIndex(std::make_unique<calendars::CalendarIndex>(
        folder / "index", calendars::engineVersion(), [](const std::string&) {}));
    reader.setFileClock([] { return fileClock() + 3'600'000'000'000; });
    const auto snapshot = reader.refresh();
    EXPECT_EQ(snapshot->calendars.size(), 5U);
    const std::uint64_t atFirst = bytesRead();
    reader.prepareForNextRequest();
    EXPECT_GT(bytesRead() - atFirst, 10000U) << "the calendars come from the index now";
    const std::uint64_t before = bytesRead();
    reader.prepareForNextRequest();
    EXPECT_EQ(reader.refresh(), snapshot);
    EXPECT_LT(bytesRead() - before, 1000U) << "but what the test itself reads";
}

} // namespace
} // namespace quorvel::freedesktop
