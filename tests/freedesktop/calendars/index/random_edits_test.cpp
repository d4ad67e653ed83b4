// Whatever happens to the files, the index and the zone, stores with an index show the same as
// stores without one, to the byte: those that are made for one presentation, and those that live
// on.
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "freedesktop/io/file_version.h"
#include "tests/freedesktop/calendars/store/store_fixture.h"

namespace quorvel::freedesktop {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t hour = 3'600'000'000'000; // nanoseconds

// Whether there is a regular file; a broken link is none.
bool isFile(const fs::path& path) {
    std::error_code ignored;
    return fs::is_regular_file(path, ignored);
}

// The stores of one process, and all that they say.
class Viewer {
public:
    Viewer(const std::shared_ptr<const TimeZone>& zone, std::vector<CalendarSource> sources,
           const std::string& indexFolder, std::int64_t clockAhead)
        : m_stores(zone, [this](const CalendarProblem& problem) {
            m_problems << problem.file << ":" << problem.line << ": " << problem.what.english()
                       << "\n";
        }) {
        m_stores.setSources(std::move(sources));
        m_stores.setFileClock([clockAhead] { return fileClock() + clockAhead; });
        if (!indexFolder.empty()) {
            m_stores.setIndex(indexFolder,
                              [this](const std::string& what) { m_indexProblems += what; });
        }
    }

    void setTimeZone(const std::shared_ptr<const TimeZone>& zone) { m_stores.setTimeZone(zone); }

    std::string show(platform::NSDate from, double length) {
        std::ostringstream text;
        const auto store = m_stores.makeEventStore();
        const auto calendars = store->calendars();
        for (const auto& calendar : calendars) {
            text << calendar->calendarIdentifier << "|" << calendar->title << "|"
                 << calendar->CGColor->red << "," << calendar->CGColor->green << ","
                 << calendar->CGColor->blue << "\n";
        }
        for (const auto& event : store->eventsMatchingPredicate(
                 {from, from.dateByAddingTimeInterval(length), calendars})) {
            text << event->persistentEvent.eventIdentifier << "|" << event->title.value_or("-")
                 << "|" << event->location.value_or("-") << "|"
                 << static_cast<std::int64_t>(event->startDate.timeIntervalSinceReferenceDate)
                 << "|" << static_cast<std::int64_t>(event->endDate.timeIntervalSinceReferenceDate)
                 << "|" << event->isAllDay << "|" << event->calendar->title << "\n";
        }
        text << m_stores.anyReadable() << m_stores.anyCalendar() << "\n" << m_problems.str();
        return text.str();
    }
    const std::string& indexProblems() const { return m_indexProblems; }

private:
    std::ostringstream m_problems;
    std::string m_indexProblems;
    FileCalendarStores m_stores;
};

// A folder of calendars of every form, and what people and programs do to it.
class Edits {
public:
    Edits(fs::path folder, unsigned seed)
        : m_folder(std::move(folder))
        , m_random(seed) {
        for (int i = 0; i < 6; ++i) {
            edit();
        }
    }

    unsigned below(unsigned bound) { return static_cast<unsigned>(m_random() % bound); }

    std::string edit() {
        static const std::vector<std::pair<const char*, void (Edits::*)()>> edits{
            {"write", &Edits::writeFile},
            {"write", &Edits::writeFile},
            {"same size", &Edits::changeLetter},
            {"same size", &Edits::changeLetter},
            {"swap", &Edits::swapFiles},
            {"touch", &Edits::touch},
            {"touch back", &Edits::touchBack},
            {"rename", &Edits::rename},
            {"remove", &Edits::remove},
            {"replace", &Edits::replace},
            {"metadata", &Edits::writeMetadata},
            {"cut", &Edits::cut},
            {"link", &Edits::link},
            {"override", &Edits::writeOverride},
            {"nothing", &Edits::nothing}};
        const auto& [name, edit] = edits[below(static_cast<unsigned>(edits.size()))];
        (this->*edit)();
        return name;
    }

private:
    fs::path place() {
        static const std::vector<std::string> places{"a.ics",      "b.ics",        "work/1.ics",
                                                     "work/2.ics", "work/3.ics",   "home/x.ics",
                                                     "home/y.ics", "deep/er/z.ics"};
        const fs::path path = m_folder / places[below(static_cast<unsigned>(places.size()))];
        fs::create_directories(path.parent_path());
        return path;
    }
    // One that is there, if any.
    fs::path file() {
        std::vector<fs::path> files;
        for (const auto& entry : fs::recursive_directory_iterator(m_folder)) {
            if (isFile(entry.path()) && entry.path().extension() == ".ics") {
                files.push_back(entry.path());
            }
        }
        std::sort(files.begin(), files.end());
        return files.empty() ? place() : files[below(static_cast<unsigned>(files.size()))];
    }

    std::string day() { return "202603" + std::to_string(10 + below(19)); }

    std::string event() {
        const std::string uid = "event" + std::to_string(below(12));
        std::string text = "UID:" + uid + "|SUMMARY:Title " + static_cast<char>('a' + below(26));
        switch (below(7)) {
        case 0:
            text += "|DTSTART;VALUE=DATE:" + day();
            break;
        case 1:
            text += "|DTSTART:" + day() + "T090000|DURATION:PT1H";
            break;
        case 2:
            text += "|DTSTART;TZID=America/New_York:" + day() + "T090000";
            break;
        case 3:
            text += "|DTSTART;TZID=Known Nowhere:" + day() + "T090000";
            break;
        case 4:
            text += "|DTSTART:garbage";
            break;
        case 5:
            text += "|DTSTART:" + day() + "T220000Z|LOCATION:Room\\, 2";
            break;
        default:
            text +=
                "|DTSTART:20260301T100000Z|RRULE:FREQ=DAILY;COUNT=" + std::to_string(5 + below(30));
            text += below(2) == 0 ? "|EXDATE:20260312T100000Z,nonsense" : "";
            text += below(4) == 0 ? "|RRULE:FREQ=SOMETIMES" : "";
            break;
        }
        return eventText(text + "|SEQUENCE:" + std::to_string(below(4)));
    }

    static void put(const fs::path& path, const std::string& text) {
        std::ofstream(path, std::ios::binary) << text;
    }
    static std::string get(const fs::path& path) {
        std::ostringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        return text.str();
    }

    std::string calendar() {
        std::string text;
        if (below(3) == 0) {
            text += "X-WR-CALNAME:Name " + std::to_string(below(3)) + "\r\n";
        }
        if (below(4) == 0) {
            text += "X-APPLE-CALENDAR-COLOR:#00" + std::to_string(10 + below(80)) + "FF\r\n";
        }
        if (below(3) == 0) {
            text += "BEGIN:VTIMEZONE\r\nTZID:Known Nowhere\r\nBEGIN:STANDARD\r\n"
                    "DTSTART:19700101T000000\r\nTZOFFSETFROM:+0500\r\nTZOFFSETTO:+0500\r\n"
                    "END:STANDARD\r\nEND:VTIMEZONE\r\n";
        }
        for (unsigned i = below(5) + 1; i > 0; --i) {
            text += event();
        }
        return calendarText(text);
    }

    void writeFile() { put(place(), calendar()); }
    void writeOverride() {
        put(place(), calendarText(eventText("UID:event" + std::to_string(below(12)) +
                                            "|SUMMARY:moved|RECURRENCE-ID:20260314T100000Z|"
                                            "DTSTART:20260314T120000Z")));
    }
    void changeLetter() {
        const fs::path path = file();
        std::string text = get(path);
        const std::size_t title = text.find("Title ");
        if (title != std::string::npos) {
            text[title + 6] = static_cast<char>('a' + below(26));
        }
        put(path, text);
    }
    void swapFiles() {
        const fs::path first = file();
        const fs::path second = file();
        if (first != second && isFile(first) && isFile(second)) {
            fs::rename(first, m_folder / "between");
            fs::rename(second, first);
            fs::rename(m_folder / "between", second);
        }
    }
    void setTimes(const fs::path& path, std::int64_t seconds) {
        const timespec times[2] = {{seconds, 0}, {seconds, 0}};
        utimensat(AT_FDCWD, path.c_str(), times, 0);
    }
    void touch() { utimensat(AT_FDCWD, file().c_str(), nullptr, 0); }
    void touchBack() {
        const fs::path path = file();
        changeLetter();
        setTimes(path, 1'700'000'000);
    }
    void rename() {
        const fs::path from = file();
        if (isFile(from)) {
            fs::rename(from, place());
        }
    }
    void remove() { fs::remove(file()); }
    void replace() {
        const fs::path path = file();
        const std::string text = isFile(path) ? get(path) : calendar();
        put(m_folder / "new", below(2) == 0 ? text : calendar());
        setTimes(m_folder / "new", 1'700'000'000);
        fs::rename(m_folder / "new", path);
    }
    void writeMetadata() {
        const fs::path folder = place().parent_path();
        put(folder / (below(2) == 0 ? "color" : "displayname"),
            below(2) == 0 ? "#ff0000" : "Name " + std::to_string(below(9)));
    }
    void cut() {
        const fs::path path = file();
        if (isFile(path)) {
            fs::resize_file(path, fs::file_size(path) / 2);
        }
    }
    void link() {
        const fs::path path = place();
        fs::remove(path);
        fs::create_symlink(file(), path);
    }
    void nothing() {}

    fs::path m_folder;
    std::mt19937 m_random;
};

class RandomEdits : public ::testing::TestWithParam<unsigned> {
protected:
    RandomEdits() {
        std::string pattern = fs::temp_directory_path() / "quorvel-edits-XXXXXX";
        folder = mkdtemp(pattern.data());
        fs::create_directory(folder / "calendars");
    }
    ~RandomEdits() override { fs::remove_all(folder); }

    std::vector<CalendarSource> sources() const {
        return {CalendarSource::at(folder / "calendars"),
                CalendarSource::at(folder / "calendars/b.ics")};
    }
    std::string index() const { return folder / "index"; }

    // Random bytes over what is there, or nothing of it left.
    void hurtIndex(Edits& edits) const {
        const fs::path path = folder / "index/calendars.sqlite";
        if (!fs::exists(path)) {
            return;
        }
        if (edits.below(4) == 0) {
            fs::remove_all(folder / "index");
            return;
        }
        if (edits.below(4) == 0) {
            fs::resize_file(path, edits.below(static_cast<unsigned>(fs::file_size(path)) + 1));
            return;
        }
        std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
        for (int i = 0; i < 40; ++i) {
            file.seekp(edits.below(static_cast<unsigned>(fs::file_size(path))));
            file.put(static_cast<char>(edits.below(256)));
        }
    }

    // The clock of the viewers runs ahead by so much: by an hour no file is too fresh to be
    // trusted.
    void compare(std::int64_t clockAhead, std::chrono::milliseconds pause, int steps,
                 bool isIndexHurt) {
        Edits edits(folder / "calendars", GetParam());
        const std::vector<std::shared_ptr<const TimeZone>> zones{namedTimeZone("Europe/Berlin"),
                                                                 namedTimeZone("Asia/Tokyo")};
        Viewer livingWith(zones[0], sources(), index(), clockAhead);
        Viewer livingWithout(zones[0], sources(), "", clockAhead);
        for (int step = 0; step < steps; ++step) {
            std::this_thread::sleep_for(pause);
            const std::string edit = edits.edit();
            SCOPED_TRACE("step " + std::to_string(step) + ": " + edit);
            if (isIndexHurt && edits.below(3) == 0) {
                hurtIndex(edits);
            }
            const int day = 9 + static_cast<int>(edits.below(20));
            const double length = 86400.0 * (1 + edits.below(9));
            for (int round = 0; round < 8; ++round) {
                const auto& zone = zones[round % 2 == 0 ? 0 : 1];
                const auto from =
                    dateOf(*utcTimeZone(), {2026, 3, day + round / 4, 10 + round / 2, 0, 0});
                ASSERT_EQ(Viewer(zone, sources(), index(), clockAhead).show(from, length),
                          Viewer(zone, sources(), "", clockAhead).show(from, length))
                    << "round " << round;
                livingWith.setTimeZone(zone);
                livingWithout.setTimeZone(zone);
                ASSERT_EQ(livingWith.show(from, length), livingWithout.show(from, length))
                    << "round " << round << " of those that live";
            }
        }
        if (!isIndexHurt) {
            EXPECT_EQ(livingWith.indexProblems(), "");
        }
    }

    fs::path folder;
};

TEST_P(RandomEdits, ShowTheSameWhenTimesTellThemApart) {
    compare(hour, std::chrono::milliseconds(12), 25, false);
}

TEST_P(RandomEdits, ShowTheSameWithinOneTickOfTheClock) {
    compare(0, std::chrono::milliseconds(0), 25, false);
}

TEST_P(RandomEdits, ShowTheSameOverAHurtIndex) {
    compare(hour, std::chrono::milliseconds(12), 25, true);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomEdits, ::testing::Values(1U, 2U, 3U, 4U));

class SameTick : public RandomEdits {};

// The size stays, and for most of them the times do.
TEST_P(SameTick, ChangeOfOneLetterShows) {
    const fs::path path = folder / "calendars/a.ics";
    const auto from = dateOf(*utcTimeZone(), {2026, 3, 9, 10, 0, 0});
    Viewer living(utcTimeZone(), sources(), index(), 0);
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        std::ofstream(path, std::ios::binary) << calendarText(
            eventText(std::string("UID:1|DTSTART:20260310T100000Z|SUMMARY:Title ") + letter));
        const std::string title = std::string("|Title ") + letter + "|";
        EXPECT_NE(living.show(from, 86400 * 3.0).find(title), std::string::npos) << letter;
        EXPECT_NE(Viewer(utcTimeZone(), sources(), index(), 0).show(from, 86400 * 3.0).find(title),
                  std::string::npos)
            << letter;
    }
}

INSTANTIATE_TEST_SUITE_P(Once, SameTick, ::testing::Values(1U));

} // namespace
} // namespace quorvel::freedesktop
