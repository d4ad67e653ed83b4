// Evolution Data Server in plain values. The rest of the program knows nothing of its library,
// which is loaded only where there is a server.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/result.h"
#include "base/translatable_text.h"

namespace quorvel::freedesktop::eds {

using Deadline = std::chrono::steady_clock::time_point;

// Why there is no answer.
struct ServerFailure {
    enum class Kind {
        failed,
        silent, // there was no answer until the deadline
        absent  // there is no server, and none can be started
    };
    Kind kind = Kind::silent;
    TranslatableText problem; // for the user; empty where the server is silent
};

template <class Value>
using ServerResult = Result<Value, ServerFailure>;

struct ServerCalendar {
    std::string identifier; // the server's own
    std::string title;
    std::string colour;     // as the server writes it; may be empty
    bool isSelected = true; // the desktop's calendar application shows it
    bool operator==(const ServerCalendar&) const = default;
};

// Those that are enabled, sorted by title.
using CalendarList = std::vector<ServerCalendar>;

// Both ends in seconds since 1970.
struct SearchedRange {
    std::int64_t from = 0;
    std::int64_t to = 0;
};

struct CalendarEvents {
    std::string calendar; // its identifier
    // An iCalendar with at least every event that may occur in the range, all their exceptions, and
    // the time zones that have no common name; never null. The same object as in
    // the answer before while nothing has changed, if there is a changed handler.
    ServerResult<std::shared_ptr<const std::string>> text{ServerFailure()};
};

// Belongs to the thread that made it. No call takes longer than its deadline; an answer that comes
// later is used by the next call.
class DataServer {
public:
    virtual ~DataServer() = default;

    virtual ServerResult<CalendarList> calendars(Deadline deadline) = 0;
    // One entry for each calendar, in the order of the identifiers.
    virtual std::vector<CalendarEvents> events(const std::vector<std::string>& calendars,
                                               SearchedRange range, Deadline deadline) = 0;
    // Called on any thread when the calendars or their events have changed, when a server has died,
    // and when a late answer has come. Null: no handler. Changes are noticed while the process's
    // main loop runs.
    virtual void setChangedHandler(std::function<void()> onChanged) = 0;
};

// The function that the module exports; the caller owns the result. The argument is the bus name of
// the service that knows the calendars. Null where the system lacks memory or threads.
using MakeDataServer = DataServer* (*)(const char* sourcesService);
inline constexpr const char* makeDataServerSymbol = "quorvelMakeDataServer";

} // namespace quorvel::freedesktop::eds
