// The user's choice between the 12-hour and the 24-hour format.
#pragma once

namespace quorvel::freedesktop {

enum class ClockFormat { ofLocale, twelveHours, twentyFourHours };

} // namespace quorvel::freedesktop
