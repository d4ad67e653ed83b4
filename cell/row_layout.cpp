#include "cell/row_layout.h"

#include <algorithm>

namespace quorvel {

using namespace platform;

namespace {

constexpr CGFloat iconInset = 13;
constexpr CGFloat iconWidth = 20;
constexpr CGFloat iconGap = 14;
constexpr CGFloat labelInset = iconInset + iconWidth + iconGap;
constexpr CGFloat verticalMargin = 13;
constexpr CGFloat rightMargin = 10;
constexpr CGFloat dateGap = 10;
constexpr CGFloat lineGap = 0;

} // namespace

RowFrames layOutRow(const RowMeasures& measures) {
    const CGSize& title = measures.title;
    const CGSize& date = measures.date;
    const CGSize& location = measures.location;

    // The bottoms of the title and the date meet on this line.
    const CGFloat baseline = std::max(title.height, date.height) + verticalMargin;
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
    frames.heightWithoutLocation = title.height + verticalMargin + verticalMargin;
    frames.heightWithLocation =
        title.height + verticalMargin + lineGap + location.height + verticalMargin;
    return frames;
}

} // namespace quorvel
