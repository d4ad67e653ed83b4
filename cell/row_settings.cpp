#include "cell/row_settings.h"

namespace quorvel::settings {

std::optional<platform::UIColor> textColor;
std::optional<platform::UIColor> subtitleTextColor;
std::optional<platform::UIColor> dateTextColor;

std::int64_t textSize = 0;
std::int64_t subtitleTextSize = 0;
std::int64_t dateTextSize = 0;

bool titleColorSameAsCalendarColor = false;
bool rightAlignedDate = false;

platform::CGFloat cellWithoutSubtitleHeight = 0;
platform::CGFloat cellWithSubtitleHeight = 0;

} // namespace quorvel::settings
