#include "agenda/ek_event_qrv.h"

#include "cell/key_values.h"

namespace quorvel {

using platform::KeyValue;

std::vector<std::string_view> EKEventQRV::keys() const {
    return {"title", "location", "URL", "isAllDay", "startDate", "endDate", "calendarColor"};
}

KeyValue EKEventQRV::valueForKey(std::string_view key) const {
    if (key == "title") {
        return keyValueOf(m_title);
    }
    if (key == "location") {
        return keyValueOf(m_location);
    }
    if (key == "URL") {
        return keyValueOf(m_URL);
    }
    if (key == "isAllDay") {
        return m_allDay;
    }
    if (key == "startDate") {
        return keyValueOf(m_startDate);
    }
    if (key == "endDate") {
        return keyValueOf(m_endDate);
    }
    if (key == "calendarColor") {
        return keyValueOf(m_calendarColor);
    }
    return {};
}

} // namespace quorvel
