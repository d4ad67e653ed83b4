// Several stores of calendars that appear as one.
#pragma once

#include <memory>
#include <vector>

#include "platform/calendar_store.h"

namespace quorvel::freedesktop {

// The calendars come in the order of the stores. Of two calendars with the same identifier only the
// first is used. The events of all stores are sorted by comesBefore().
class CombinedCalendarStores final : public platform::CalendarStores {
public:
    // Not owned, never null; they outlive this. Applies to the stores made from now on.
    void setStores(std::vector<platform::CalendarStores*> stores);

    std::unique_ptr<platform::EKEventStore> makeEventStore() override;

private:
    std::vector<platform::CalendarStores*> m_stores;
};

} // namespace quorvel::freedesktop
