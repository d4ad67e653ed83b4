// A row's cell: made once with all its views, filled again for every event that it shows.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "agenda/ek_event_qrv.h"
#include "cell/qvl_ui_table_view_cell.h"
#include "platform/ui/ui_scroll_view.h"

namespace quorvel {

inline constexpr std::string_view rowReuseIdentifier = "Dynamic Cell";

// The delegate receives the row's drags. A row that is not draggable never takes a touch.
std::shared_ptr<QVL_UITableViewCell>
makeRowCell(platform::TextMeasurer& textMeasurer,
            const std::shared_ptr<platform::UIScrollViewDelegate>& delegate, bool draggable);

// Stores the row's number as the tag of the cell's scroll view, which scrolls only for an event
// with a link.
void showEvent(QVL_UITableViewCell& cell, const EKEventQRV& event, std::int64_t row);

// Leaves the text of an earlier event where there is no location to show.
void showLocation(QVL_UITableViewCell& cell, const std::optional<std::string>& location,
                  bool displayLocation);

} // namespace quorvel
