// One gathered event: what a row of the agenda is built from.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/key_value_coding.h"
#include "platform/ns_date.h"
#include "platform/ns_url.h"
#include "platform/ui_color.h"

namespace quorvel {

// A new record has everything absent, and is not all-day. Built on one thread, then only read.
class EKEventQRV : public platform::KeyValueCoding {
public:
    static constexpr std::string_view className() { return "EKEventQRV"; }

    const std::optional<platform::NSDate>& endDate() const { return m_endDate; }
    void setEndDate(std::optional<platform::NSDate> date) { m_endDate = date; }
    const std::optional<platform::NSDate>& startDate() const { return m_startDate; }
    void setStartDate(std::optional<platform::NSDate> date) { m_startDate = date; }
    bool isAllDay() const { return m_allDay; }
    void setAllDay(bool allDay) { m_allDay = allDay; }
    // Opens the occurrence in the stock calendar application.
    const std::optional<platform::NSURL>& URL() const { return m_URL; }
    void setURL(std::optional<platform::NSURL> url) { m_URL = std::move(url); }
    const std::optional<std::string>& location() const { return m_location; }
    void setLocation(std::optional<std::string> location) { m_location = std::move(location); }
    const std::optional<std::string>& title() const { return m_title; }
    void setTitle(std::optional<std::string> title) { m_title = std::move(title); }
    const std::optional<platform::UIColor>& calendarColor() const { return m_calendarColor; }
    void setCalendarColor(const std::optional<platform::UIColor>& color) {
        m_calendarColor = color;
    }

    std::vector<std::string_view> keys() const override;
    platform::KeyValue valueForKey(std::string_view key) const override;

private:
    std::optional<platform::NSDate> m_endDate;
    std::optional<platform::NSDate> m_startDate;
    bool m_allDay = false;
    std::optional<platform::NSURL> m_URL;
    std::optional<std::string> m_location;
    std::optional<std::string> m_title;
    std::optional<platform::UIColor> m_calendarColor;
};

} // namespace quorvel
