// Several stores of calendars behind one.
#pragma once

#include <memory>
#include <vector>

#include "platform/calendar_store.h"

namespace quorvel::freedesktop {

// The calendars of the first store come first. Where two have one of the same identifier, the first
// of them holds. Occurrences come in the order of one store.
class CombinedCalendarStores final : public platform::CalendarStores {
public:
    // Not owned, never null; they outlive this. Holds for the stores made from now on.
    void setStores(std::vector<platform::CalendarStores*> stores);

    std::unique_ptr<platform::EKEventStore> makeEventStore() override;

private:
    std::vector<platform::CalendarStores*> m_stores;
};

} // namespace quorvel::freedesktop
