// What marks a row: a picture file, a dot in the calendar's colour, or nothing.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/geometry.h"
#include "platform/platform.h"
#include "platform/ui_image.h"

namespace quorvel {

// The stock calendar application's icon, the one picture that gets rounded corners.
inline constexpr std::string_view defaultIconFile = "/Applications/MobileCal.app/icon-about@2x.png";

enum class RowIconKind { none, dot, picture };

// An unset setting counts as a picture.
RowIconKind rowIconKind(const std::optional<std::string>& iconFile);

// In points; only meaningful for a dot.
platform::CGFloat dotDiameter(const std::optional<std::string>& iconFile);

// The picture for the rows: read anew for a file (null where it cannot be read), else the previous
// one.
std::shared_ptr<const platform::UIImage>
loadRowIcon(const std::string& iconFile, const platform::Platform& platform,
            const std::shared_ptr<const platform::UIImage>& previousIcon);

} // namespace quorvel
