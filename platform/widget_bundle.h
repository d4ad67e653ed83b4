// What a widget bundle's shared object gives the loader: its classes by name, and its functions.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ui_color.h"

namespace quorvel::platform {

class BBWeeAppController;
class KeyValueCoding;
class UIView;
class _SBUIWidgetViewController; // NOLINT(bugprone-reserved-identifier): declared elsewhere
struct CGColor;
struct Platform;

// Raised whenever anything that crosses the bundle's border changes its shape. Also the SOVERSION
// of the libraries that hosts link.
inline constexpr std::uint32_t widgetBundleInterfaceVersion = 4;

struct WidgetBundle {
    std::uint32_t interfaceVersion; // the first field in every version
    // The controllers of either kind.
    std::vector<std::string_view> (*controllerClassNames)();
    // Null for a name that is not a controller of that kind. `platform` outlives the controller.
    std::shared_ptr<_SBUIWidgetViewController> (*makeController)(std::string_view className,
                                                                 const Platform& platform);
    std::shared_ptr<BBWeeAppController> (*makeWeeAppController)(std::string_view className,
                                                                const Platform& platform);
    // The bundle's process-wide values, by name.
    const KeyValueCoding& (*processWideValues)();
    // The bundle's two conversions of colours. The text is UTF-8 and may be absent.
    UIColor (*colorFromHexString)(std::optional<std::string_view> text);
    // The agenda view's conversion, which logs its call and its result; absent where `view` is
    // not an agenda view.
    std::optional<std::string> (*hexStringForColor)(const UIView& view, const CGColor& color);
};

// The one symbol that the shared object exports: a function of this type and name.
using WidgetBundleEntry = const WidgetBundle* (*)();
inline constexpr const char* widgetBundleEntrySymbol = "quorvelWidgetBundle";

} // namespace quorvel::platform
