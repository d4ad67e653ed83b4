#include "hosting/preferred_size.h"

namespace quorvel {

using platform::CGFloat;

PreferredHeight preferredHeight(CGFloat totalHeight, CGFloat maxHeight, bool limitMaxHeight) {
    if (totalHeight == notYetMeasured) {
        totalHeight = maxHeight;
    } else if (totalHeight == noRows) {
        totalHeight = 0;
    }
    const bool limited = !(totalHeight < maxHeight) && limitMaxHeight;
    return {limited ? maxHeight : totalHeight, totalHeight};
}

} // namespace quorvel
