#include "agenda/color_codes.h"

namespace quorvel {

using platform::UIColor;

UIColor colorForCode(std::int64_t code) {
    switch (code) {
    case 0:
        return UIColor::redColor();
    case 1:
        return UIColor::blackColor();
    case 2:
        return UIColor::grayColor();
    case 4:
        return UIColor::greenColor();
    case 5:
        return UIColor::blueColor();
    case 6:
        return UIColor::yellowColor();
    case 7:
        return UIColor::orangeColor();
    case 8:
        return UIColor::purpleColor();
    case 9:
        return UIColor::brownColor();
    default:
        return UIColor::whiteColor();
    }
}

} // namespace quorvel
