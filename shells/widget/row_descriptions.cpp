#include "shells/widget/row_descriptions.h"

#include <utility>

#include "platform/ui/ui_view.h"
#include "shells/widget/hosted_widget.h"
#include "shells/widget/value_of.h"

namespace quorvel::shells {

using platform::NSDate;
using platform::NSURL;

namespace {

void appendPart(std::string& name, const std::optional<std::string>& part) {
    if (part && !part->empty()) {
        name += (name.empty() ? "" : ", ") + *part;
    }
}

} // namespace

std::vector<RowDescription> describeRows(HostedWidget& widget) {
    const bool hasActions = valueOf<bool>(widget.view(), "swipeActionHasEffect").value_or(false);
    std::vector<RowDescription> rows;
    for (const auto& item : widget.items()) {
        RowDescription row;
        row.start = valueOf<NSDate>(*item, "startDate");
        row.end = valueOf<NSDate>(*item, "endDate");
        row.isAllDay = valueOf<bool>(*item, "isAllDay").value_or(false);
        row.hasAction = hasActions && valueOf<NSURL>(*item, "URL").has_value();
        row.color = valueOf<platform::UIColor>(*item, "calendarColor");
        rows.push_back(row);
    }
    return rows;
}

std::vector<std::string> nameRows(HostedWidget& widget) {
    const platform::UIView& view =
        widget.view(); // first, as the view loads the settings when it is created
    const bool showsLocation =
        valueOf<bool>(widget.processWideValues(), "displayLocation").value_or(false);
    const auto captions =
        valueOf<std::vector<std::string>>(view, "captions").value_or(std::vector<std::string>{});
    std::vector<std::string> names;
    for (const auto& item : widget.items()) {
        std::string name;
        appendPart(name, valueOf<std::string>(*item, "title"));
        appendPart(name, showsLocation ? valueOf<std::string>(*item, "location") : std::nullopt);
        if (names.size() < captions.size()) {
            appendPart(name, captions[names.size()]);
        }
        names.push_back(std::move(name));
    }
    return names;
}

std::optional<RowContent> rowContent(HostedWidget& widget, std::size_t row) {
    const platform::UIView& view = widget.view();
    const auto captions =
        valueOf<std::vector<std::string>>(view, "captions").value_or(std::vector<std::string>{});
    const auto items = widget.items();
    if (row >= items.size()) {
        return std::nullopt;
    }
    const platform::KeyValueCoding& item = *items[row];
    return RowContent{valueOf<std::string>(item, "title").value_or(std::string()),
                      valueOf<std::string>(item, "location").value_or(std::string()),
                      row < captions.size() ? captions[row] : std::string(),
                      valueOf<NSURL>(item, "URL"), valueOf<NSDate>(item, "startDate")};
}

} // namespace quorvel::shells
