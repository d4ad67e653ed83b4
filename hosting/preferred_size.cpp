#include "hosting/preferred_size.h"

#include "agenda/row_height.h"

namespace quorvel {

using platform::CGFloat;

PreferredHeight preferredHeight(CGFloat totalHeight, CGFloat maxHeight, bool limitMaxHeight) {
    if (totalHeight == notYetMeasured) {
        totalHeight = maxHeight;
    } else if (totalHeight == heightWithoutRows) {
        totalHeight = notYetMeasured;
    }
    const bool limited = !(totalHeight < maxHeight) && limitMaxHeight;
    return {limited ? maxHeight : totalHeight, totalHeight};
}

} // namespace quorvel
