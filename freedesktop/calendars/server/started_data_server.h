// The calendar server, found and its library loaded while the program does everything else that it
// does when it starts.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "freedesktop/calendars/server/data_server.h"
#include "freedesktop/calendars/server/sources_search.h"

namespace quorvel::freedesktop::eds {

// Belongs to the thread that made it. A thread of its own looks for the server; the two share what
// the mutex guards.
class StartedDataServer final : public DataServer {
public:
    // Starts at once. `module`: the file that wraps the server's library. The search is not null.
    StartedDataServer(std::string module, std::unique_ptr<SourcesSearch> search);
    ~StartedDataServer() override;

    // Where there was no server the last time, it is looked for again.
    ServerResult<CalendarList> calendars(Deadline deadline) override;
    std::vector<CalendarEvents> events(const std::vector<std::string>& calendars,
                                       SearchedRange range, Deadline deadline) override;
    void setChangedHandler(std::function<void()> onChanged) override;

private:
    using StartResult = ServerResult<std::unique_ptr<DataServer>>; // never null

    void begin();
    void end(StartResult result);
    static StartResult start(const std::string& module, SourcesSearch& search);
    DataServer* server() const { return m_result ? m_result->get() : nullptr; }

    std::string m_module;
    std::unique_ptr<SourcesSearch> m_search; // never null
    std::mutex m_mutex;                      // guards the members below, except the thread
    std::condition_variable m_ended;
    bool m_isRunning = false;
    bool m_isAwaited = true; // false: a call has given up waiting, so that its answer is late
    StartResult m_result{ServerFailure()};
    std::function<void()> m_onChanged;
    std::thread m_thread;
};

} // namespace quorvel::freedesktop::eds
