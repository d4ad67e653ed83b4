// The rows as texts and times: for screen readers, and to know when a row goes out of date.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/ns_date.h"
#include "platform/ui_color.h"

namespace quorvel::shells {

class HostedWidget;

struct RowDescription {
    std::string name; // title, location if shown, caption: "Lunch, Café Sol, Thu, 12:30"
    std::optional<platform::NSDate> start;
    std::optional<platform::NSDate> end;
    bool isAllDay = false;
    bool hasAction = false;                 // a pull of the row has an effect
    std::optional<platform::UIColor> color; // of the calendar
};

// One for each row, in order, whether it is visible or not.
std::vector<RowDescription> describeRows(HostedWidget& widget);

} // namespace quorvel::shells
