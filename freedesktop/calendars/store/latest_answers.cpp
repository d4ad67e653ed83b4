#include "freedesktop/calendars/store/latest_answers.h"

#include <utility>

namespace quorvel::freedesktop::calendars {

void LatestAnswers::setSnapshot(std::shared_ptr<const StoreSnapshot> snapshot) {
    const std::lock_guard lock(m_mutex);
    m_snapshot = std::move(snapshot);
}

void LatestAnswers::setResult(const SearchRequest& request,
                              std::shared_ptr<const SearchResult> result) {
    const std::lock_guard lock(m_mutex);
    m_request = request;
    m_result = std::move(result);
}

std::shared_ptr<const StoreSnapshot> LatestAnswers::snapshot() const {
    const std::lock_guard lock(m_mutex);
    return m_snapshot;
}

std::shared_ptr<const SearchResult> LatestAnswers::resultFor(const SearchRequest& request) const {
    const std::lock_guard lock(m_mutex);
    if (!m_request || !m_result) {
        return nullptr;
    }
    SearchRequest answered = *m_request;
    if (!m_result->isNarrow) {
        answered.narrow = request.narrow; // it does not matter to the result
    }
    return answered == request ? m_result : nullptr;
}

std::shared_ptr<const SearchResult>
LatestAnswers::resultInWindow(const icalendar::Window& window) const {
    const std::lock_guard lock(m_mutex);
    return m_request && m_request->window == window ? m_result : nullptr;
}

} // namespace quorvel::freedesktop::calendars
