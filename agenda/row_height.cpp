#include "agenda/row_height.h"

#include "cell/row_metrics.h"
#include "platform/text_measurer.h"

namespace quorvel {

using namespace platform;

namespace {

constexpr const char* measuringString = "AAAAAAAAAAA";

} // namespace

CGFloat lineHeight(TextMeasurer& textMeasurer, std::int64_t fontSize) {
    const UIFont font = UIFont::systemFontOfSize(static_cast<CGFloat>(fontSize));
    return textMeasurer.sizeWithFont(measuringString, font).height;
}

bool hasLocationLine(const std::optional<std::string>& location, bool displayLocation,
                     bool sameHeightRows) {
    const bool hasText = location && !location->empty();
    return displayLocation && (hasText || sameHeightRows);
}

CGFloat rowHeight(CGFloat titleLineHeight, CGFloat locationLineHeight, bool locationLine) {
    const CGFloat lines = locationLine ? titleLineHeight + locationLineHeight : titleLineHeight;
    return lines + rowVerticalMargin + rowVerticalMargin;
}

} // namespace quorvel
