// Stores with bounded waits: calendars that cannot be read in time show later.
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>
#include <thread>

#include "freedesktop/io/file_version.h"
#include "tests/freedesktop/calendars/store/store_fixture.h"

namespace quorvel::freedesktop {
namespace {

using Clock = std::chrono::steady_clock;

// A reader asks for the time before it reads a file, and waits there while the gate is closed.
class Gate {
public:
    void close() {
        const std::lock_guard lock(m_mutex);
        m_isOpen = false;
    }
    void open() {
        const std::lock_guard lock(m_mutex);
        m_isOpen = true;
        m_opened.notify_all();
    }
    void pass() {
        std::unique_lock lock(m_mutex);
        m_opened.wait(lock, [this] { return m_isOpen; });
        ++m_passed;
    }
    int passed() {
        const std::lock_guard lock(m_mutex);
        return m_passed;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_opened;
    bool m_isOpen = true;
    int m_passed = 0;
};

class BoundedWaits : public StoreFixture {
protected:
    void SetUp() override {
        StoreFixture::SetUp();
        writeTitle("first");
        own.setSources({CalendarSource::at(folder / "a.ics")});
        own.setWaits({0.1, 0.03});
        own.setFileClock([this] {
            gate.pass();
            return fileClock();
        });
        own.setChangedHandler([this] { ++changes; });
    }

    void writeTitle(const std::string& title) const {
        write("a.ics", calendarText("X-WR-CALNAME:Name\r\n" +
                                    eventText("UID:1|DTSTART:20260310T100000Z|SUMMARY:" + title)));
    }

    // What a presentation shows now: calendars and titles.
    std::string present() {
        const auto before = Clock::now();
        const auto store = own.makeEventStore();
        const auto calendars = store->calendars();
        std::string text;
        for (const auto& calendar : calendars) {
            text += calendar->title + ":";
        }
        for (const auto& event :
             store->eventsMatchingPredicate({date("20260310"), date("20260312"), calendars})) {
            text += " " + event->title.value_or("-");
        }
        lastTime = Clock::now() - before;
        return text;
    }

    bool isChangeReported() const {
        for (int i = 0; i < 500 && changes == 0; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        return changes > 0;
    }

    // These outlive the stores, whose worker thread uses them.
    Gate gate;
    std::atomic<int> changes = 0;
    Clock::duration lastTime{};
    FileCalendarStores own{zone, {}};
};

TEST_F(BoundedWaits, ReadInTimeShowsAtOnce) {
    EXPECT_EQ(present(), "Name: first");
    EXPECT_EQ(present(), "Name: first");
    EXPECT_EQ(changes, 0);
    EXPECT_FALSE(own.isLate());
    EXPECT_TRUE(own.anyReadable());
    EXPECT_TRUE(own.anyCalendar());
}

TEST_F(BoundedWaits, ReadTooLateShowsLater) {
    gate.close();
    EXPECT_EQ(present(), "");
    EXPECT_GE(lastTime, std::chrono::milliseconds(90));
    EXPECT_LT(lastTime, std::chrono::milliseconds(400));
    EXPECT_TRUE(own.isLate());
    // It is not known yet that there are none.
    EXPECT_TRUE(own.anyReadable());
    EXPECT_TRUE(own.anyCalendar());
    EXPECT_EQ(present(), "");
    EXPECT_LT(lastTime, std::chrono::milliseconds(300));
    gate.open();
    EXPECT_TRUE(isChangeReported());
    EXPECT_EQ(present(), "Name: first");
}

// Even the events are found before the change is reported.
TEST_F(BoundedWaits, ReportedChangesAreAvailable) {
    gate.close();
    present();
    gate.open();
    EXPECT_TRUE(isChangeReported());
    own.setWaits({10, 10});
    EXPECT_EQ(present(), "Name: first");
    EXPECT_LT(lastTime, std::chrono::seconds(1));
}

TEST_F(BoundedWaits, BegunEarlyIsUsedOnce) {
    own.setWaits({10, 10});
    own.beginReading();
    EXPECT_EQ(present(), "Name: first");
    EXPECT_EQ(gate.passed(), 1);
    writeTitle("other");
    EXPECT_EQ(present(), "Name: other");
    EXPECT_GT(gate.passed(), 1);
}

TEST_F(BoundedWaits, BeginningDoesNotWait) {
    gate.close();
    own.beginReading();
    EXPECT_EQ(present(), "");
    EXPECT_LT(lastTime, std::chrono::milliseconds(400));
    gate.open();
    EXPECT_TRUE(isChangeReported());
    EXPECT_EQ(present(), "Name: first");
}

TEST_F(BoundedWaits, NewSourcesAreRead) {
    write("b.ics", calendarText("X-WR-CALNAME:Second\r\n"));
    own.setWaits({10, 10});
    own.beginReading();
    own.setSources({CalendarSource::at(folder / "b.ics")});
    EXPECT_EQ(present(), "Second:");
}

TEST_F(BoundedWaits, OldEventsShowUntilNewOnesAreRead) {
    EXPECT_EQ(present(), "Name: first");
    writeTitle("other");
    gate.close();
    EXPECT_EQ(present(), "Name: first");
    EXPECT_LT(lastTime, std::chrono::milliseconds(300));
    gate.open();
    EXPECT_TRUE(isChangeReported());
    EXPECT_EQ(present(), "Name: other");
}

TEST_F(BoundedWaits, ZoneMayChangeMeanwhile) {
    gate.close();
    present();
    own.setTimeZone(namedTimeZone("Asia/Tokyo"));
    gate.open();
    EXPECT_TRUE(isChangeReported());
    EXPECT_EQ(present(), "Name: first");
}

TEST_F(BoundedWaits, NothingIsReportedAfterTheEnd) {
    gate.close();
    auto these = std::make_unique<FileCalendarStores>(zone, CalendarProblemHandler());
    std::atomic<int> changesOfThese = 0;
    these->setSources({CalendarSource::at(folder / "a.ics")});
    these->setWaits({0.01, 0.01});
    these->setFileClock([this] {
        gate.pass();
        return fileClock();
    });
    these->setChangedHandler([&changesOfThese] { ++changesOfThese; });
    these->makeEventStore();
    these->setChangedHandler(nullptr);
    auto end = std::async(std::launch::async, [&these] { these.reset(); });
    gate.open();
    end.get();
    EXPECT_EQ(changesOfThese, 0);
}

TEST_F(BoundedWaits, TheEndCancelsReading) {
    std::string text = "BEGIN:VCALENDAR\r\n";
    for (int i = 0; i < 20000; ++i) {
        text += eventText("UID:" + std::to_string(i) +
                          "|DTSTART:20260310|DESCRIPTION:" + std::string(300, 'x'));
    }
    for (int i = 0; i < 12; ++i) {
        write("many/" + std::to_string(i) + ".ics", text);
    }
    std::chrono::duration<double> whole{};
    {
        FileCalendarStores these(zone, {});
        these.setSources({CalendarSource::at(folder / "many")});
        const auto before = Clock::now();
        these.makeEventStore();
        whole = Clock::now() - before;
    }
    const auto before = Clock::now();
    {
        FileCalendarStores these(zone, {});
        these.setSources({CalendarSource::at(folder / "many")});
        these.setWaits({0.01, 0.01});
        these.makeEventStore();
    }
    EXPECT_LT(std::chrono::duration<double>(Clock::now() - before).count(), whole.count() / 2);
}

} // namespace
} // namespace quorvel::freedesktop
