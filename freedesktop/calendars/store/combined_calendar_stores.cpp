#include "freedesktop/calendars/store/combined_calendar_stores.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "freedesktop/calendars/store/event_order.h"

namespace quorvel::freedesktop {

using platform::EKCalendars;
using platform::EKEventPredicate;
using platform::EKEvents;
using platform::EKEventStore;

namespace {

struct Part {
    std::unique_ptr<EKEventStore> store; // never null
    EKCalendars calendars;               // those of its calendars that are used
};

const platform::EKCalendar* calendarIn(const EKCalendars& calendars, std::string_view identifier) {
    const auto found = std::find_if(calendars.begin(), calendars.end(), [&](const auto& calendar) {
        return calendar && calendar->calendarIdentifier == identifier;
    });
    return found != calendars.end() ? found->get() : nullptr;
}

class CombinedStore final : public EKEventStore {
public:
    explicit CombinedStore(std::vector<std::unique_ptr<EKEventStore>> stores) {
        std::set<std::string> known;
        for (auto& store : stores) {
            EKCalendars calendars;
            for (auto& calendar : store->calendars()) {
                if (known.insert(calendar->calendarIdentifier).second) {
                    calendars.push_back(std::move(calendar));
                }
            }
            m_parts.push_back({std::move(store), std::move(calendars)});
        }
    }

    EKCalendars calendars() override {
        EKCalendars result;
        for (const Part& part : m_parts) {
            result.insert(result.end(), part.calendars.begin(), part.calendars.end());
        }
        return result;
    }

    std::shared_ptr<const platform::EKCalendar>
    calendarWithIdentifier(std::string_view id) override {
        for (const Part& part : m_parts) {
            if (calendarIn(part.calendars, id) != nullptr) {
                return part.store->calendarWithIdentifier(id);
            }
        }
        return nullptr;
    }

    // Each store is asked for its own calendars only.
    EKEvents eventsMatchingPredicate(const EKEventPredicate& predicate) override {
        EKEvents result;
        for (const Part& part : m_parts) {
            EKEventPredicate asked{predicate.startDate, predicate.endDate, {}};
            std::copy_if(predicate.calendars.begin(), predicate.calendars.end(),
                         std::back_inserter(asked.calendars), [&](const auto& calendar) {
                             return calendar && calendarIn(part.calendars,
                                                           calendar->calendarIdentifier) != nullptr;
                         });
            if (!asked.calendars.empty()) {
                EKEvents events = part.store->eventsMatchingPredicate(asked);
                const auto middle = static_cast<EKEvents::difference_type>(result.size());
                std::move(events.begin(), events.end(), std::back_inserter(result));
                std::inplace_merge(result.begin(), result.begin() + middle, result.end(),
                                   comesBefore);
            }
        }
        return result;
    }

private:
    std::vector<Part> m_parts;
};

} // namespace

void CombinedCalendarStores::setStores(std::vector<platform::CalendarStores*> stores) {
    m_stores = std::move(stores);
}

std::unique_ptr<EKEventStore> CombinedCalendarStores::makeEventStore() {
    std::vector<std::unique_ptr<EKEventStore>> stores;
    for (platform::CalendarStores* const one : m_stores) {
        stores.push_back(one->makeEventStore());
    }
    if (stores.size() == 1) {
        return std::move(stores.front());
    }
    return std::make_unique<CombinedStore>(std::move(stores));
}

} // namespace quorvel::freedesktop
