// The calendar server once it has been looked for, and its library loaded, beside everything else
// that a program does when it starts.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "freedesktop/calendars/server/data_server.h"
#include "freedesktop/calendars/server/sources_service.h"

namespace quorvel::freedesktop::eds {

// For one thread, as every DataServer; its own thread searches and shares with it what the mutex
// guards.
class StartedDataServer final : public DataServer {
public:
    // Begins at once. `module`: the file that wraps the server's library.
    explicit StartedDataServer(std::string module);
    ~StartedDataServer() override;

    // Where there was no server the last time it is looked for again.
    CalendarList calendars(Deadline deadline) override;
    std::vector<CalendarEvents> events(const std::vector<std::string>& calendars,
                                       SearchedRange range, Deadline deadline) override;
    void setChangedHandler(std::function<void()> onChanged) override;

private:
    struct Result {
        std::unique_ptr<DataServer> server; // null: `outcome` and `problem` say why
        Outcome outcome = Outcome::answered;
        std::string problem;
    };

    void begin();
    void end(Result result);
    static Result start(const std::string& module, SearchEnd& searchEnd);

    std::string m_module;
    SearchEnd m_searchEnd;
    std::mutex m_mutex; // guards the members that follow, but for the thread
    std::condition_variable m_ended;
    bool m_isRunning = false;
    bool m_isAwaited = true; // false: whoever waited has gone on without
    Result m_result;
    std::function<void()> m_changed;
    std::thread m_thread;
};

} // namespace quorvel::freedesktop::eds
