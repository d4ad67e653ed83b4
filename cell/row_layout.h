// The frames of the title, the date and the location in a row: the arithmetic alone.
#pragma once

#include "platform/geometry.h"

namespace quorvel {

// All in points.
struct RowMeasures {
    platform::CGSize title;
    platform::CGSize date;
    platform::CGSize location;
    platform::CGFloat width = 0; // of the row's content
    bool rightAlignedDate = false;
};

struct RowFrames {
    platform::CGRect title;
    platform::CGRect date;
    platform::CGRect location;
    // The row's own measure of its height; the table asks the agenda view for the real one.
    platform::CGFloat heightWithoutLocation = 0;
    platform::CGFloat heightWithLocation = 0;
};

// No width is held at zero: in a narrow row a label's width becomes negative.
RowFrames layOutRow(const RowMeasures& measures);

} // namespace quorvel
