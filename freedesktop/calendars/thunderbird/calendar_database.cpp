#include "freedesktop/calendars/thunderbird/calendar_database.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <unordered_map>
#include <utility>

#include "base/translatable_text.h"
#include "freedesktop/calendars/sqlite/sqlite.h"
#include "freedesktop/calendars/thunderbird/calendar_parser.h"

namespace quorvel::freedesktop::thunderbird {
namespace {

using calendars::SqliteDatabase;
using calendars::SqliteStatement;
using Clock = std::chrono::steady_clock;

constexpr int stepsBetweenChecks = 20000;                     // of SQLite's machine
constexpr int longestRow = 64 << 20;                          // bytes
constexpr std::size_t mostRuleBytes = std::size_t{32} << 20U; // of one calendar
constexpr std::int64_t allDayFlag = 8;
constexpr std::int64_t recurrenceIdIsDateFlag = 512;
constexpr std::int64_t deletedOffline = 4; // in offline_journal
constexpr std::int64_t microseconds = 1'000'000;

constexpr const char* selectRules =
    "SELECT item_id, icalString FROM cal_recurrence WHERE cal_id = ?1";
constexpr const char* selectEvents =
    "SELECT e.id, e.title, p.value, e.ical_status, e.flags, e.event_start, e.event_start_tz,"
    " e.event_end, e.event_end_tz, e.recurrence_id, e.recurrence_id_tz"
    " FROM cal_events e LEFT JOIN cal_properties p ON p.cal_id = e.cal_id AND p.item_id = e.id"
    " AND p.recurrence_id IS e.recurrence_id AND p.key = 'LOCATION'"
    " WHERE e.cal_id = ?1 AND coalesce(e.offline_journal, 0) <> ?2";

// When reading has to end, whether or not everything was read.
class Deadline {
public:
    explicit Deadline(const DatabaseLimits& limits)
        : m_isCancelled(limits.isCancelled)
        , m_end(Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                   std::chrono::duration<double>(limits.longest))) {}
    bool isOver() const {
        return (m_isCancelled != nullptr && *m_isCancelled) || Clock::now() >= m_end;
    }

private:
    const std::atomic<bool>* m_isCancelled;
    Clock::time_point m_end;
};

int isOver(void* deadline) {
    return static_cast<const Deadline*>(deadline)->isOver() ? 1 : 0;
}

// A database may define views and triggers that run for ever, or call functions with effects.
void protect(SqliteDatabase& database, Deadline& deadline) {
    for (const auto& [option, value] : {std::pair{SQLITE_DBCONFIG_DEFENSIVE, true},
                                        std::pair{SQLITE_DBCONFIG_TRUSTED_SCHEMA, false},
                                        std::pair{SQLITE_DBCONFIG_ENABLE_TRIGGER, false},
                                        std::pair{SQLITE_DBCONFIG_ENABLE_VIEW, false}}) {
        database.set(option, value);
    }
    database.limit(SQLITE_LIMIT_LENGTH, longestRow);
    database.callBetweenSteps(stepsBetweenChecks, isOver, &deadline);
    database.run("PRAGMA cell_size_check = ON");
}

// As UTF-8; empty for what is no text.
std::string textOf(SqliteStatement& row, int column) {
    const int type = row.typeOf(column);
    return type == SQLITE_TEXT || type == SQLITE_BLOB ? std::string(row.text(column))
                                                      : std::string();
}

// Absent for what is no time. Times before 1970 were once stored as numbers above 2^63.
std::optional<std::int64_t> secondsOf(SqliteStatement& row, int column) {
    constexpr double tooLarge = 9.2233720368547758e18;
    if (row.typeOf(column) == SQLITE_INTEGER) {
        const std::int64_t time = row.number(column);
        const std::int64_t remainder = time % microseconds;
        return time / microseconds - (remainder < 0 ? 1 : 0);
    }
    if (row.typeOf(column) != SQLITE_FLOAT) {
        return std::nullopt;
    }
    double time = row.realNumber(column);
    if (time >= tooLarge) {
        time -= 2 * tooLarge;
    }
    return std::isfinite(time) && std::abs(time) < tooLarge
               ? std::optional(std::llround(time / static_cast<double>(microseconds)))
               : std::nullopt;
}

std::optional<StoredTime> timeOf(SqliteStatement& row, int column, int zoneColumn) {
    const std::optional<std::int64_t> seconds = secondsOf(row, column);
    return seconds ? std::optional(StoredTime{*seconds, textOf(row, zoneColumn)}) : std::nullopt;
}

EventRow eventOf(SqliteStatement& row) {
    const std::int64_t flags = row.number(4);
    EventRow event;
    event.id = textOf(row, 0);
    event.title = textOf(row, 1);
    event.location = textOf(row, 2);
    event.status = textOf(row, 3);
    event.start = timeOf(row, 5, 6);
    event.end = timeOf(row, 7, 8);
    event.recurrenceId = timeOf(row, 9, 10);
    event.isAllDay = (flags & allDayFlag) != 0;
    event.isRecurrenceIdDate = (flags & recurrenceIdIsDateFlag) != 0;
    return event;
}

// The rules of a calendar's events by the events' identifiers, one behind the other.
std::unordered_map<std::string, std::string> rulesOf(SqliteDatabase& database,
                                                     const std::string& calendar) {
    std::unordered_map<std::string, std::string> rules;
    std::size_t bytes = 0;
    SqliteStatement statement(database, selectRules);
    statement.bindText(1, calendar);
    while (bytes < mostRuleBytes && statement.next()) {
        const std::string rule = textOf(statement, 1) + "\r\n";
        bytes += rule.size();
        rules[textOf(statement, 0)] += rule;
    }
    return rules;
}

icalendar::IcsFile readCalendar(SqliteDatabase& database, const std::string& calendar,
                                const DatabaseLimits& limits, std::size_t mostBytes) {
    const auto rules = rulesOf(database, calendar);
    CalendarParser parser(limits.zoneIsKnown, mostBytes);
    SqliteStatement statement(database, selectEvents);
    statement.bindText(1, calendar).bind(2, deletedOffline);
    while (statement.next()) {
        EventRow event = eventOf(statement);
        const auto found = rules.find(event.id);
        if (found != rules.end()) {
            event.rules = found->second;
        }
        parser.add(event);
    }
    return parser.finish();
}

// Thunderbird makes the file before the tables.
bool hasTables(SqliteDatabase& database) {
    return database.number("SELECT count(*) FROM sqlite_master") > 0;
}

TranslatableText problemOf(const calendars::SqliteError& error) {
    switch (error.code) {
    case SQLITE_INTERRUPT:
        return translatable("reading it takes too long");
    case SQLITE_ERROR:
        return translatable("it is no calendar database of Thunderbird, or one of another version");
    default:
        return {translatable("it cannot be read: {1}"), {TranslatableText::verbatim(error.reason)}};
    }
}

} // namespace

Result<std::map<std::string, icalendar::IcsFile>, TranslatableText>
readCalendars(const std::string& path, const std::vector<std::string>& identifiers,
              const DatabaseLimits& limits) {
    Deadline deadline(limits); // outlives the database
    SqliteDatabase database(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX);
    if (database.isOpen()) {
        protect(database, deadline);
    }
    const bool isEmpty = database.isOpen() && !hasTables(database);
    std::map<std::string, icalendar::IcsFile> calendars;
    std::size_t bytes = 0;
    for (const std::string& identifier : identifiers) {
        if (database.hasFailed()) {
            break;
        }
        const std::size_t left = limits.mostBytes - std::min(bytes, limits.mostBytes);
        const auto added = calendars.emplace(
            identifier, isEmpty ? CalendarParser(limits.zoneIsKnown, left).finish()
                                : readCalendar(database, identifier, limits, left));
        bytes += added.first->second.sizeInMemory();
    }
    if (database.hasFailed()) {
        return problemOf(*database.error());
    }
    return calendars;
}

} // namespace quorvel::freedesktop::thunderbird
