// The background thread's side of BackgroundCalendarStores: asks the stores that wait.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "freedesktop/calendars/store/background_exchange.h"
#include "freedesktop/calendars/store/live_calendar_stores.h"

namespace quorvel::freedesktop::calendars {

// Belongs to the background thread, which shares the exchange alone with others.
class BackgroundWorker {
public:
    using MakeStores = std::function<std::unique_ptr<LiveCalendarStores>()>;
    using ProblemHandler = std::function<void(const std::string& what)>;

    // None of them is null. The problems are those of this class; the stores report their own.
    BackgroundWorker(std::shared_ptr<BackgroundExchange> exchange, MakeStores makeStores,
                     ProblemHandler onProblem);
    BackgroundWorker(const BackgroundWorker&) = delete;
    BackgroundWorker& operator=(const BackgroundWorker&) = delete;
    ~BackgroundWorker();

    // Makes the stores, and answers until the exchange is closed. What the stores throw is a
    // problem; they are asked again with the next request.
    void run();

private:
    using Result = std::shared_ptr<const BackgroundResult>; // never null

    void makeStores();
    Result answerOrReport(const BackgroundExchange::Request& request);
    Result answer(const BackgroundExchange::Request& request);
    void applySettings(const BackgroundExchange::Request& request);
    void own(const Result& result);
    void reportNews(const BackgroundResult& result) const;

    std::shared_ptr<BackgroundExchange> m_exchange;
    MakeStores m_makeStores;
    ProblemHandler m_onProblem;
    std::unique_ptr<LiveCalendarStores> m_stores; // null: they could not be made
    std::shared_ptr<const TimeZone> m_userZone;   // that the stores use; null: not set yet
    // Those that anybody still uses. The last reference is here, so that large ones are freed on
    // this thread.
    std::vector<Result> m_results;
};

} // namespace quorvel::freedesktop::calendars
