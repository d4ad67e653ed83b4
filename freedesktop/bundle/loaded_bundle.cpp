#include "freedesktop/bundle/loaded_bundle.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <dlfcn.h>
#include <filesystem>
#include <system_error>
#include <utility>
#include <variant>

#include "freedesktop/language/messages.h"
#include "freedesktop/preferences/property_list_file.h"
#include "platform/bb_wee_app_controller.h"
#include "platform/property_list.h"
#include "platform/sbui_widget_view_controller.h"
#include "platform/screen.h"
#include "platform/widget_bundle.h"

namespace quorvel::freedesktop {

using platform::_SBUIWidgetViewController;
using platform::KeyValueCoding;
using platform::NSBundle;
using platform::Platform;
using platform::PropertyListDictionary;
using platform::Screen;
using platform::WidgetBundle;

namespace {

namespace fs = std::filesystem;

constexpr std::string_view informationFile = "Info.plist";
Error failure(const std::string& what) {
    return {what, {}, translated("name a folder such as Quorvel.bundle with --bundle")};
}

Error unreadableInformation(const std::string& path, const std::string& reason) {
    return failure(filled(translated("the bundle '{1}' has an {2} that cannot be read ({3})"),
                          {path, informationFile, reason}));
}

Error noPrincipalClass(const std::string& path) {
    return failure(filled(translated("the bundle '{1}' names no principal class"), {path}));
}

Error otherVersion(const std::string& path, std::uint32_t version) {
    return failure(filled(
        translated("the bundle '{1}' was built for version {2} of the widget interface, and "
                   "this program has version {3}"),
        {path, std::to_string(version), std::to_string(platform::widgetBundleInterfaceVersion)}));
}

std::string textForKey(const PropertyListDictionary& dictionary, std::string_view key) {
    const platform::PropertyListValue* value = platform::objectForKey(dictionary, key);
    return value != nullptr ? platform::stringValue(*value).value_or("") : std::string();
}

// Whether the name cannot leave its folder.
bool isPlainFileName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find('/') == std::string_view::npos && name.find('\0') == std::string_view::npos;
}

bool isRegularFile(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

std::string commaSeparated(const std::vector<std::string_view>& names) {
    std::string text;
    for (const std::string_view name : names) {
        text += (text.empty() ? "" : ", ") + std::string(name);
    }
    return text;
}

// The scales in the order of preference: the screen's, the larger ones in ascending order, then the
// smaller ones in descending order.
std::array<int, 3> scalesByPreference(double screenScale) {
    const int wanted =
        std::clamp(static_cast<int>(std::ceil(std::clamp(screenScale, 1.0, 3.0))), 1, 3);
    std::array<int, 3> scales{1, 2, 3};
    std::ranges::sort(
        scales, {}, [wanted](int scale) { return scale >= wanted ? scale - wanted : 10 - scale; });
    return scales;
}

} // namespace

Result<std::shared_ptr<const LoadedBundle>> LoadedBundle::load(const std::string& path,
                                                               const Screen& screen) {
    auto information = readInformation(path);
    if (!information) {
        return information.error();
    }
    const auto bundle = loadExecutable(path, information->executable);
    if (!bundle) {
        return bundle.error();
    }
    return std::shared_ptr<const LoadedBundle>(
        new LoadedBundle(path, screen, std::move(information).value(), **bundle));
}

LoadedBundle::LoadedBundle(std::string path, const Screen& screen, Information information,
                           const WidgetBundle& bundle)
    : m_path(std::move(path))
    , m_screen(screen)
    , m_information(std::move(information))
    , m_bundle(bundle) {}

Result<LoadedBundle::Information> LoadedBundle::readInformation(const std::string& path) {
    std::error_code ignored;
    if (!fs::is_directory(path, ignored)) {
        return failure(filled(translated("the bundle '{1}' does not exist"), {path}));
    }
    const auto list = readPropertyListFile((fs::path(path) / informationFile).string());
    if (list && !list->has_value()) {
        return failure(filled(translated("the bundle '{1}' has no {2}"), {path, informationFile}));
    }
    const auto* texts = list ? std::get_if<PropertyListDictionary>(&(*list)->value) : nullptr;
    if (texts == nullptr) {
        return unreadableInformation(
            path, translated(list ? translatable("it holds no dictionary") : list.error().what));
    }
    return Information{textForKey(*texts, "CFBundleIdentifier"),
                       textForKey(*texts, "CFBundleExecutable"),
                       textForKey(*texts, "NSPrincipalClass")};
}

Result<const WidgetBundle*> LoadedBundle::loadExecutable(const std::string& path,
                                                         const std::string& executable) {
    if (executable.empty()) {
        return failure(filled(translated("the bundle '{1}' names no executable"), {path}));
    }
    if (!isPlainFileName(executable)) {
        return failure(
            filled(translated("the bundle '{1}' names an executable outside itself, '{2}'"),
                   {path, executable}));
    }
    // Absolute, because dlopen() searches the system's libraries for a name without a slash.
    std::error_code error;
    const fs::path file = fs::absolute(fs::path(path) / executable, error);
    if (error || !isRegularFile(file)) {
        return failure(
            filled(translated("the bundle '{1}' lacks its executable, '{2}'"), {path, executable}));
    }
    // The handle is never closed, so RTLD_NODELETE is not needed.
    void* handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char* reason = dlerror();
        return failure(filled(translated("the bundle '{1}' cannot be loaded ({2})"),
                              {path, reason != nullptr ? reason : translated("no reason given")}));
    }
    // POSIX guarantees that an object pointer can hold the function pointer from dlsym().
    const auto entry = reinterpret_cast<platform::WidgetBundleEntry>(
        dlsym(handle, platform::widgetBundleEntrySymbol));
    const WidgetBundle* bundle = entry != nullptr ? entry() : nullptr;
    if (bundle == nullptr) {
        return failure(filled(translated("the bundle '{1}' is not a widget bundle"), {path}));
    }
    if (bundle->interfaceVersion != platform::widgetBundleInterfaceVersion) {
        return otherVersion(path, bundle->interfaceVersion);
    }
    return bundle;
}

std::optional<std::string> LoadedBundle::pathForResource(std::string_view name,
                                                         std::string_view type) const {
    for (const int scale : scalesByPreference(m_screen.scale())) {
        std::string file(name);
        if (scale > 1) {
            file += "@" + std::to_string(scale) + "x";
        }
        if (!type.empty()) {
            file.append(".").append(type);
        }
        if (isPlainFileName(file) && isRegularFile(fs::path(m_path) / file)) {
            return (fs::path(m_path) / file).string();
        }
    }
    return std::nullopt;
}

std::vector<std::string_view> LoadedBundle::controllerClassNames() const {
    return m_bundle.controllerClassNames();
}

bool LoadedBundle::hasClass(std::string_view className) const {
    const std::vector<std::string_view> names = controllerClassNames();
    return std::ranges::find(names, className) != names.end();
}

Result<std::shared_ptr<_SBUIWidgetViewController>>
LoadedBundle::makeController(std::string_view className, const Platform& platform) const {
    if (className.empty()) {
        return noPrincipalClass(m_path);
    }
    auto controller = m_bundle.makeController(className, platform);
    if (!controller) {
        return Error{filled(translated("the bundle has no controller '{1}'"), {className}),
                     {},
                     filled(translated("it has {1}"), {commaSeparated(controllerClassNames())})};
    }
    return controller;
}

std::shared_ptr<platform::BBWeeAppController>
LoadedBundle::makeWeeAppController(std::string_view className, const Platform& platform) const {
    return m_bundle.makeWeeAppController(className, platform);
}

const KeyValueCoding& LoadedBundle::processWideValues() const {
    return m_bundle.processWideValues();
}

platform::UIColor LoadedBundle::colorFromHexString(std::optional<std::string_view> text) const {
    return m_bundle.colorFromHexString(text);
}

std::optional<std::string> LoadedBundle::hexStringForColor(const platform::UIView& view,
                                                           const platform::CGColor& color) const {
    return m_bundle.hexStringForColor(view, color);
}

} // namespace quorvel::freedesktop
