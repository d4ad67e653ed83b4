#include "freedesktop/calendars/store/event_order.h"

#include <tuple>

namespace quorvel::freedesktop {

bool comesBefore(const std::shared_ptr<const platform::EKEvent>& a,
                 const std::shared_ptr<const platform::EKEvent>& b) {
    if (a->startDate != b->startDate) {
        return a->startDate < b->startDate;
    }
    if (a->isAllDay != b->isAllDay) {
        return a->isAllDay;
    }
    return std::tie(a->title, a->persistentEvent.eventIdentifier) <
           std::tie(b->title, b->persistentEvent.eventIdentifier);
}

} // namespace quorvel::freedesktop
