#include "agenda/row_icon.h"

#include "drawing/rounded_image.h"
#include "platform/image_files.h"

namespace quorvel {

using namespace platform;

namespace {

constexpr std::string_view noIcon = "NONE";
constexpr std::string_view dotIcon = "DOT";
constexpr std::string_view largeDotIcon = "DOT_LARGE";
constexpr CGFloat smallDotDiameter = 30;
constexpr CGFloat largeDotDiameter = 50;
constexpr CGFloat iconRounding = 3;

} // namespace

RowIconKind rowIconKind(const std::optional<std::string>& iconFile) {
    if (iconFile == noIcon) {
        return RowIconKind::none;
    }
    return iconFile == dotIcon || iconFile == largeDotIcon ? RowIconKind::dot
                                                           : RowIconKind::picture;
}

CGFloat dotDiameter(const std::optional<std::string>& iconFile) {
    return iconFile == dotIcon ? smallDotDiameter : largeDotDiameter;
}

std::shared_ptr<const UIImage> loadRowIcon(const std::string& iconFile, const Platform& platform,
                                           const std::shared_ptr<const UIImage>& previousIcon) {
    if (rowIconKind(iconFile) != RowIconKind::picture) {
        return previousIcon;
    }
    auto picture = platform.imageFiles.imageWithContentsOfFile(iconFile);
    if (iconFile != defaultIconFile) {
        return picture;
    }
    return roundedRectImageFromImage(platform.graphicsContexts, platform.screen, picture,
                                     iconRounding);
}

} // namespace quorvel
