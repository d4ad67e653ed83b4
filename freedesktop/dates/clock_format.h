// The user's own choice between the clocks of 12 and of 24 hours.
#pragma once

namespace quorvel::freedesktop {

enum class ClockFormat { ofLocale, twelveHours, twentyFourHours };

} // namespace quorvel::freedesktop
