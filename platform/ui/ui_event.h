// The touches that one message reports.
#pragma once

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "platform/ui/ui_touch.h"

namespace quorvel::platform {

class UIEvent {
public:
    explicit UIEvent(UITouchSet touches)
        : m_touches(std::move(touches)) {}
    virtual ~UIEvent() = default;
    UIEvent(const UIEvent&) = delete;
    UIEvent& operator=(const UIEvent&) = delete;

    const UITouchSet& allTouches() const { return m_touches; }

private:
    UITouchSet m_touches;
};

// The event that the platform creates from its low-level record.
class UITouchesEvent : public UIEvent {
public:
    UITouchesEvent(std::span<const std::byte> record, UITouchSet touches)
        : UIEvent(std::move(touches))
        , m_record(record.begin(), record.end()) {}

    // The unchanged bytes of the record.
    std::span<const std::byte> record() const { return m_record; }

private:
    std::vector<std::byte> m_record;
};

} // namespace quorvel::platform
