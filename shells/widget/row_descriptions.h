// The rows as words and instants, for screen readers and for the clock that presents the widget
// again when a row changes.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/ns_date.h"

namespace quorvel::shells {

class HostedWidget;

struct RowDescription {
    std::string name; // "Lunch, Café Sol, Thu, 12:30": title, location where shown, caption
    std::optional<platform::NSDate> start;
    std::optional<platform::NSDate> end;
    bool isAllDay = false;
    bool hasAction = false; // it has a link, and the swipe action has an effect
};

// One for each row, in their order, visible or not.
std::vector<RowDescription> describeRows(HostedWidget& widget);

} // namespace quorvel::shells
