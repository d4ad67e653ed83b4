// Calendars from elsewhere: each is read without harm and in time, and a narrow search finds in it
// what a wide one does.
#include "tests/freedesktop/calendars/store/store_fixture.h"

#include <algorithm>
#include <chrono>

namespace quorvel::freedesktop {
namespace {

using Clock = std::chrono::steady_clock;

class CorpusTest : public StoreFixture {
protected:
    static std::vector<std::string> files() {
        std::vector<std::string> paths;
        const char* const corpus = std::getenv("QUORVEL_CORPUS");
        if (corpus == nullptr) {
            return paths;
        }
        for (const auto& entry : std::filesystem::recursive_directory_iterator(corpus)) {
            const std::string path = entry.path();
            if (entry.is_regular_file() && path.find("/ics-") != std::string::npos) {
                paths.push_back(path);
            }
        }
        std::sort(paths.begin(), paths.end());
        return paths;
    }

    std::vector<std::string> identifiers(platform::EKEventStore& store, platform::NSDate from,
                                         platform::NSDate to) {
        std::vector<std::string> result;
        for (const auto& event : store.eventsMatchingPredicate({from, to, store.calendars()})) {
            result.push_back(event->persistentEvent.eventIdentifier);
        }
        return result;
    }

    void compareSearches(platform::EKEventStore& store, const std::string& path) {
        const platform::NSDate from = date("20180101");
        const platform::NSDate to = date("20210101");
        const auto wide = store.eventsMatchingPredicate({from, to, store.calendars()});
        for (int day = 0; day < 3 * 365; day += 61) {
            const platform::NSDate begin = from.dateByAddingTimeInterval(day * 86400.0);
            const platform::NSDate end = begin.dateByAddingTimeInterval(3 * 86400.0);
            std::vector<std::string> expected;
            for (const auto& event : wide) {
                if ((event->endDate > begin || event->startDate == begin) &&
                    event->startDate <= end) {
                    expected.push_back(event->persistentEvent.eventIdentifier);
                }
            }
            EXPECT_EQ(identifiers(store, begin, end), expected) << path << " day " << day;
        }
    }
};

TEST_F(CorpusTest, IsReadInTime) {
    const auto paths = files();
    if (paths.empty()) {
        GTEST_SKIP() << "QUORVEL_CORPUS names no folder of calendars";
    }
    std::size_t found = 0;
    for (const std::string& path : paths) {
        const auto before = Clock::now();
        stores.setSources({CalendarSource::at(path)});
        const auto store = stores.makeEventStore();
        for (const char* from : {"19970101", "20050101", "20120101", "20180101", "20240101"}) {
            found +=
                identifiers(*store, date(from), date(from).dateByAddingTimeInterval(1e8)).size();
        }
        const std::chrono::duration<double> taken = Clock::now() - before;
        EXPECT_LT(taken.count(), 5.0) << path; // five searches of three years
    }
    EXPECT_GT(found, 1000U);
    RecordProperty("files", static_cast<int>(paths.size()));
}

TEST_F(CorpusTest, NarrowSearchesAgreeWithAWideOne) {
    const auto paths = files();
    if (paths.empty()) {
        GTEST_SKIP() << "QUORVEL_CORPUS names no folder of calendars";
    }
    for (const std::string& path : paths) {
        problems.clear();
        stores.setSources({CalendarSource::at(path)});
        const auto store = stores.makeEventStore();
        // A rule that is cut short ends elsewhere in another window.
        if (store->eventsMatchingPredicate({date("20180101"), date("20210101"), store->calendars()})
                    .size() < 5000 &&
            problems.find("recurrence rule") == std::string::npos) {
            compareSearches(*store, path);
        }
    }
}

} // namespace
} // namespace quorvel::freedesktop
