// The rows as names for screen readers, and as what a host has to know of them, such as when they
// go out of date.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/ns_date.h"
#include "platform/ns_url.h"
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

// The parts of one row, for a menu that copies and opens them.
struct RowContent {
    std::string title;
    std::string location; // also where the rows show none
    std::string caption;
    std::optional<platform::NSURL> link; // to the event
    std::optional<platform::NSDate> start;
};

// Absent where there is no such row.
std::optional<RowContent> rowContent(HostedWidget& widget, std::size_t row);

} // namespace quorvel::shells
