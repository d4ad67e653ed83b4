// Rules and calendars of other test suites, with what they come to. Rows that their suites read
// otherwise than RFC 5545, or that it leaves open, are counted and reported.
#include "tests/freedesktop/calendars/store/store_fixture.h"

#include <algorithm>
#include <iostream>
#include <iterator>
#include <optional>
#include <set>
#include <sstream>

namespace quorvel::freedesktop {
namespace {

std::vector<std::string> fieldsOf(const std::string& line, char separator) {
    std::vector<std::string> fields;
    std::istringstream rest(line);
    for (std::string field; std::getline(rest, field, separator);) {
        fields.push_back(field);
    }
    return fields;
}

class RecurrenceCorpusTest : public StoreFixture {
protected:
    static std::string corpusFile(const std::string& name) {
        const char* const corpus = std::getenv("QUORVEL_CORPUS");
        return corpus == nullptr ? std::string() : std::string(corpus) + "/" + name;
    }

    // The rows below the heading; empty where there is no such table.
    static std::vector<std::vector<std::string>> rowsOf(const std::string& table) {
        std::vector<std::vector<std::string>> rows;
        std::ifstream file(corpusFile(table));
        std::string line;
        std::getline(file, line);
        while (std::getline(file, line)) {
            rows.push_back(fieldsOf(line, '\t'));
        }
        return rows;
    }

    void useZone(const std::string& name) {
        zone = namedTimeZone(name);
        ASSERT_TRUE(zone) << name;
        stores.setTimeZone(zone);
    }

    static constexpr double longestSearch = 3 * 365 * 86400.0; // less than the store searches
};

class RuleTable : public RecurrenceCorpusTest {
protected:
    enum Column {
        source,
        name,
        licence,
        kind,
        tzid,
        start,
        rules,
        from,
        to,
        complete,
        size,
        list,
        file,
        verdict
    };

    static std::string label(const std::vector<std::string>& row) {
        return row[source] + ", " + row[name] + ": " + row[start] + " " + row[rules];
    }

    // The start's parameters and value; a zone's name where there is one.
    static std::string startLine(const std::vector<std::string>& row) {
        if (row[kind] == "date") {
            return "DTSTART;VALUE=DATE:" + row[start];
        }
        return row[kind] == "zone" ? "DTSTART;TZID=" + row[tzid] + ":" + row[start]
                                   : "DTSTART:" + row[start];
    }

    // As the table writes them, separated by commas.
    std::string startsOf(const std::vector<std::string>& row) {
        useZone("UTC"); // floating times then meet no clock change
        useText(eventText("UID:row|SUMMARY:row|" + startLine(row) + "|" + row[rules]));
        const auto store = stores.makeEventStore();
        const platform::NSDate end = date(row[to]);
        std::set<platform::NSDate> starts;
        for (platform::NSDate begin = date(row[from]); begin <= end;
             begin = begin.dateByAddingTimeInterval(longestSearch)) {
            const platform::NSDate searched =
                std::min(end, begin.dateByAddingTimeInterval(longestSearch));
            for (const auto& event :
                 store->eventsMatchingPredicate({begin, searched, store->calendars()})) {
                starts.insert(event->startDate);
            }
        }
        std::string result;
        for (const platform::NSDate instant : starts) {
            const std::string text = localTimeText(instant);
            result += result.empty() ? "" : ",";
            result += row[kind] == "date" ? text.substr(0, 8) : text;
            result += row[kind] == "zone" || row[kind] == "utc" ? "Z" : "";
        }
        return result;
    }
};

TEST_F(RuleTable, RulesComeToWhatTheirSuitesExpect) {
    const auto rows = rowsOf("recur.dev.tsv");
    if (rows.empty()) {
        GTEST_SKIP() << "QUORVEL_CORPUS names no folder with recur.dev.tsv";
    }
    std::size_t plain = 0;
    std::size_t others = 0;
    std::size_t otherwise = 0;
    for (const auto& row : rows) {
        ASSERT_GT(row.size(), verdict);
        const std::string found = startsOf(row);
        if (row[verdict] == "ok") {
            ++plain;
            EXPECT_EQ(found, row[list]) << label(row);
            continue;
        }
        ++others;
        if (found != row[list]) {
            ++otherwise;
            std::cout << row[verdict] << ", " << label(row) << "\n  the suite: " << row[list]
                      << "\n  here:      " << found << "\n";
        }
    }
    EXPECT_GT(plain, 0U);
    std::cout << plain << " plain rows; of " << others << " others " << otherwise
              << " come to something else here\n";
    RecordProperty("plain", static_cast<int>(plain));
    RecordProperty("others", static_cast<int>(others));
    RecordProperty("otherwise", static_cast<int>(otherwise));
}

class CountTable : public RecurrenceCorpusTest {
protected:
    enum Column { file, from, to, count, test };

    static std::string contentOf(const std::string& path) {
        std::ifstream stream(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    // The table's windows are wall-clock times of the calendar's own zone.
    static std::string zoneOf(const std::string& text) {
        for (const std::string word : {"X-WR-TIMEZONE:", "DTSTART;TZID="}) {
            const std::size_t at = text.find(word);
            if (at != std::string::npos) {
                const std::size_t begin = at + word.size();
                return text.substr(begin, text.find_first_of(":\r\n", begin) - begin);
            }
        }
        return "UTC";
    }

    // "2018-01-01T00:00:00" as an iCalendar writes it.
    static std::string compact(std::string time) {
        time.erase(
            std::remove_if(time.begin(), time.end(), [](char c) { return c == '-' || c == ':'; }),
            time.end());
        return time;
    }

    // The table's windows end before their last instant, unless they are one.
    static bool isCounted(const platform::EKEvent& event, platform::NSDate begin,
                          platform::NSDate end) {
        if (begin == end) {
            return event.startDate <= begin;
        }
        return event.startDate < end;
    }

    std::size_t countIn(platform::EKEventStore& store, platform::NSDate begin,
                        platform::NSDate end) {
        std::set<std::pair<std::string, platform::NSDate>> counted;
        for (platform::NSDate first = begin; first <= end;
             first = first.dateByAddingTimeInterval(longestSearch)) {
            const platform::NSDate last =
                std::min(end, first.dateByAddingTimeInterval(longestSearch));
            for (const auto& event :
                 store.eventsMatchingPredicate({first, last, store.calendars()})) {
                if (isCounted(*event, begin, end)) {
                    counted.emplace(event->persistentEvent.eventIdentifier, event->startDate);
                }
            }
        }
        return counted.size();
    }
};

TEST_F(CountTable, WindowsHoldAsManyAsTheirSuitesExpect) {
    const auto rows = rowsOf("counts.dev.tsv");
    if (rows.empty()) {
        GTEST_SKIP() << "QUORVEL_CORPUS names no folder with counts.dev.tsv";
    }
    for (const auto& row : rows) {
        ASSERT_GT(row.size(), test);
        const std::string path = corpusFile(row[file]);
        useZone(zoneOf(contentOf(path)));
        stores.setSources({CalendarSource::at(path)});
        const auto store = stores.makeEventStore();
        const std::size_t found = countIn(*store, date(compact(row[from])), date(compact(row[to])));
        EXPECT_EQ(found, std::stoul(row[count])) << row[file] << " " << row[from] << " " << row[to];
    }
}

} // namespace
} // namespace quorvel::freedesktop
