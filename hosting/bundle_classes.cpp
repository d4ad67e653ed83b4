#include "hosting/bundle_classes.h"

#include "agenda/quorvel_view.h"
#include "drawing/color_from_hex_string.h"
#include "hosting/process_wide_values.h"
#include "hosting/quorvel_view_controller.h"
#include "hosting/quorvel_view_controller_new.h"
#include "hosting/quorvel_view_controller_new_today.h"

namespace quorvel {

using namespace platform;

namespace {

std::vector<std::string_view> controllerClassNames() {
    return {QuorvelViewControllerNew::className(), QuorvelViewControllerNewToday::className(),
            QuorvelViewController::className()};
}

std::shared_ptr<_SBUIWidgetViewController> makeController(std::string_view className,
                                                          const Platform& platform) {
    if (className == QuorvelViewControllerNew::className()) {
        return std::make_shared<QuorvelViewControllerNew>(platform);
    }
    if (className == QuorvelViewControllerNewToday::className()) {
        return std::make_shared<QuorvelViewControllerNewToday>(platform);
    }
    return nullptr;
}

std::shared_ptr<BBWeeAppController> makeWeeAppController(std::string_view className,
                                                         const Platform& platform) {
    return className == QuorvelViewController::className()
               ? std::make_shared<QuorvelViewController>(platform)
               : nullptr;
}

const KeyValueCoding& processWideValues() {
    static const ProcessWideValues values;
    return values;
}

std::optional<std::string> hexStringForColor(const UIView& view, const CGColor& color) {
    const auto* agenda = dynamic_cast<const QuorvelView*>(&view);
    return agenda != nullptr ? std::optional(agenda->hexStringForColor(color)) : std::nullopt;
}

} // namespace

const WidgetBundle& widgetBundle() {
    static constexpr WidgetBundle bundle{widgetBundleInterfaceVersion,
                                         controllerClassNames,
                                         makeController,
                                         makeWeeAppController,
                                         processWideValues,
                                         colorFromHexString,
                                         hexStringForColor};
    return bundle;
}

} // namespace quorvel
