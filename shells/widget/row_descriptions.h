// The rows as names for screen readers, and as what a host has to know of them, such as when they
// go out of date.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/ns_date.h"
#include "platform/ui_color.h"

namespace quorvel::shells {

class HostedWidget;

struct RowDescription {
    std::optional<platform::NSDate> start;
    std::optional<platform::NSDate> end;
    bool isAllDay = false;
    bool hasAction = false;                 // a pull of the row has an effect
    std::optional<platform::UIColor> color; // of the calendar
};

// One for each row, in order, whether it is visible or not.
std::vector<RowDescription> describeRows(HostedWidget& widget);

// Title, location if shown, and caption of each row, in order: "Lunch, Café Sol, Thu, 12:30". The
// captions take longer than everything else about a row.
std::vector<std::string> nameRows(HostedWidget& widget);

} // namespace quorvel::shells
