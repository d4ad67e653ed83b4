// Hides what the events are about while the session is locked.
#pragma once

#include <functional>
#include <memory>

#include "base/translatable_text.h"
#include "platform/calendar_store.h"

namespace quorvel::phosh {

// The title of every event that is hidden, in English; it has no location.
inline constexpr const char* hiddenTitle = translatable("Busy");

// Passes on other stores. Belongs to the thread that uses those.
class PrivateCalendarStores final : public platform::CalendarStores {
public:
    // `stores` outlives this object and the event stores that it makes. `showsDetails` is called at
    // each search, on the thread that searches.
    PrivateCalendarStores(platform::CalendarStores& stores, std::function<bool()> showsDetails);

    std::unique_ptr<platform::EKEventStore> makeEventStore() override;

private:
    platform::CalendarStores& m_stores;
    std::function<bool()> m_showsDetails;
};

} // namespace quorvel::phosh
