#include "cell/row_layout.h"

#include <algorithm>

#include "cell/row_metrics.h"

namespace quorvel {

using namespace platform;

namespace {

constexpr CGFloat iconGap = 14;
constexpr CGFloat labelInset = CGRectGetMaxX(rowIconFrame) + iconGap;
constexpr CGFloat rightMargin = 10;
constexpr CGFloat dateGap = 10;
constexpr CGFloat lineGap = 0;

} // namespace

RowFrames layOutRow(const RowMeasures& measures) {
    const CGSize& title = measures.title;
    const CGSize& date = measures.date;
    const CGSize& location = measures.location;

    // The bottoms of the title and the date meet on this line.
    const CGFloat baseline = std::max(title.height, date.height) + rowVerticalMargin;
    const CGFloat available = measures.width - labelInset - rightMargin;
    const CGFloat titleLimit = available - date.width - dateGap;
    const CGFloat titleWidth = title.width < titleLimit ? title.width : titleLimit;
    const CGFloat titleY = baseline - title.height;
    const CGFloat dateX = measures.rightAlignedDate ? measures.width - date.width - rightMargin
                                                    : labelInset + titleWidth + dateGap;
    // The location may run on under the date.
    const CGFloat locationWidth = available > location.width ? location.width : available;

    RowFrames frames;
    frames.title = CGRectMake(labelInset, titleY, titleWidth, title.height);
    frames.date = CGRectMake(dateX, baseline - date.height, date.width, date.height);
    frames.location =
        CGRectMake(labelInset, titleY + title.height + lineGap, locationWidth, location.height);
    frames.heightWithoutLocation = title.height + rowVerticalMargin + rowVerticalMargin;
    frames.heightWithLocation =
        title.height + rowVerticalMargin + lineGap + location.height + rowVerticalMargin;
    return frames;
}

} // namespace quorvel
