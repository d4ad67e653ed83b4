// The rows as words and instants, for those who cannot look: screen readers, and the clock that
// says when a row changes.
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
    bool hasAction = false; // it has a link, and the widget runs an action for a pull
};

// One a row, in their order, whether the row is in sight or not.
std::vector<RowDescription> describeRows(HostedWidget& widget);

} // namespace quorvel::shells
