// A calendar database with the tables of Thunderbird, which a test fills.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include "freedesktop/calendars/sqlite/sqlite.h"

namespace quorvel::freedesktop::thunderbird {

inline constexpr const char* calendarTables =
    "CREATE TABLE cal_calendar_schema_version(version INTEGER);"
    "CREATE TABLE cal_events(cal_id TEXT, id TEXT, time_created INTEGER, last_modified INTEGER,"
    " title TEXT, priority INTEGER, privacy TEXT, ical_status TEXT, flags INTEGER,"
    " event_start INTEGER, event_end INTEGER, event_stamp INTEGER, event_start_tz TEXT,"
    " event_end_tz TEXT, recurrence_id INTEGER, recurrence_id_tz TEXT, alarm_last_ack INTEGER,"
    " offline_journal INTEGER);"
    "CREATE TABLE cal_recurrence(item_id TEXT, cal_id TEXT, icalString TEXT);"
    "CREATE TABLE cal_properties(item_id TEXT, key TEXT, value BLOB, recurrence_id INTEGER,"
    " recurrence_id_tz TEXT, cal_id TEXT);"
    "CREATE TABLE cal_todos(cal_id TEXT, id TEXT, title TEXT);";

// An open connection to a database of a profile.
class Database {
public:
    explicit Database(const std::filesystem::path& path)
        : m_database(path.string(), SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE) {
        m_database.run("PRAGMA synchronous = OFF"); // no test survives a power failure
    }

    Database& run(const std::string& text) {
        m_database.run(text.c_str());
        if (m_database.hasFailed()) {
            throw std::runtime_error(m_database.error()->reason + ": " + text);
        }
        return *this;
    }
    // The times are UTC, as in "2026-03-10 09:00"; an empty one is NULL.
    Database& addEvent(const std::string& calendar, const std::string& id, const std::string& title,
                       const std::string& start, const std::string& end,
                       const std::string& zone = "UTC", int flags = 0,
                       const std::string& recurrenceId = {}) {
        return run("INSERT INTO cal_events(cal_id, id, title, flags, event_start, event_start_tz,"
                   " event_end, event_end_tz, recurrence_id, recurrence_id_tz) VALUES('" +
                   calendar + "','" + id + "','" + title + "'," + std::to_string(flags) + "," +
                   time(start) + ",'" + zone + "'," + time(end) + ",'" + zone + "'," +
                   time(recurrenceId) + "," + (recurrenceId.empty() ? "NULL" : "'" + zone + "'") +
                   ")");
    }
    Database& addRule(const std::string& calendar, const std::string& id, const std::string& rule) {
        return run("INSERT INTO cal_recurrence VALUES('" + id + "','" + calendar + "','" + rule +
                   "')");
    }
    Database& addLocation(const std::string& calendar, const std::string& id,
                          const std::string& location, const std::string& recurrenceId = {}) {
        return run(
            "INSERT INTO cal_properties(item_id, cal_id, key, value, recurrence_id) VALUES('" + id +
            "','" + calendar + "','LOCATION',CAST('" + location + "' AS BLOB)," +
            time(recurrenceId) + ")");
    }

private:
    static std::string time(const std::string& text) {
        return text.empty() ? "NULL" : "strftime('%s','" + text + "') * 1000000";
    }

    calendars::SqliteDatabase m_database;
};

} // namespace quorvel::freedesktop::thunderbird
