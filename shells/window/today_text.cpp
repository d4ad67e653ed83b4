#include "shells/window/today_text.h"

#include "platform/clock.h"
#include "platform/date_services.h"
#include "platform/platform.h"

namespace quorvel::window {

using platform::NSDateFormatter;
using platform::NSDateFormatterStyle;

std::string todayText(const platform::Platform& platform) {
    NSDateFormatter formatter;
    formatter.dateFormat = platform.dateServices.dateFormatFromTemplate("EEEEMMMMd");
    if (!formatter.dateFormat) {
        formatter.dateStyle = NSDateFormatterStyle::shortStyle;
    }
    return platform.dateServices.stringFromDate(formatter, platform.clock.now());
}

} // namespace quorvel::window
