// Evolution Data Server in plain values, so that the rest of the program knows nothing of its
// library, and loads it only where there is a server.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace quorvel::freedesktop::eds {

using Deadline = std::chrono::steady_clock::time_point;

enum class Outcome {
    answered,
    failed,
    silent, // not until the deadline
    absent  // there is no server, and none can be started
};

struct ServerCalendar {
    std::string identifier; // the server's own
    std::string title;
    std::string colour;     // as the server writes it; may be empty
    bool isSelected = true; // the desktop's calendar application shows it
    bool operator==(const ServerCalendar&) const = default;
};

struct CalendarList {
    Outcome outcome = Outcome::silent;
    std::vector<ServerCalendar> calendars; // those that are enabled, sorted by title
    std::string problem;                   // where it failed, or is absent
};

// Both ends in seconds since 1970.
struct SearchedRange {
    std::int64_t from = 0;
    std::int64_t to = 0;
};

struct CalendarEvents {
    std::string calendar; // its identifier
    Outcome outcome = Outcome::silent;
    // An iCalendar: at least every event that can have to do with the range, with all its
    // exceptions, and the zones that have no common name. Null where there is no answer; the same
    // object again where nothing has changed and the calendar is followed.
    std::shared_ptr<const std::string> text;
    std::string problem; // where it failed
};

// For one thread. No call takes longer than its deadline; what comes later is remembered, or asked
// for anew.
class DataServer {
public:
    virtual ~DataServer() = default;

    virtual CalendarList calendars(Deadline deadline) = 0;
    // One entry a calendar, in the order of the identifiers.
    virtual std::vector<CalendarEvents> events(const std::vector<std::string>& calendars,
                                               SearchedRange range, Deadline deadline) = 0;
    // From here on tells, from any thread, that the calendars or their events are others than they
    // were, that a server has died, and that an answer that was not waited for is there now. Null:
    // no longer. Changes are heard of while the process's main loop runs.
    virtual void setChangedHandler(std::function<void()> onChanged) = 0;
};

// What the module exports; the caller owns the result. The name is that of the service which knows
// the calendars. Null where there is not enough of something.
using MakeDataServer = DataServer* (*)(const char* sourcesService);
inline constexpr const char* makeDataServerSymbol = "quorvelMakeDataServer";

} // namespace quorvel::freedesktop::eds
