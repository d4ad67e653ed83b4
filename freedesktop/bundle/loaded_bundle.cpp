#include "freedesktop/bundle/loaded_bundle.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <dlfcn.h>
#include <filesystem>
#include <system_error>
#include <variant>

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
constexpr std::string_view remedy = "name a folder such as Quorvel.bundle with --bundle";

[[noreturn]] void throwError(const std::string& path, const std::string& what) {
    throw BundleError("the bundle '" + path + "' " + what + ": " + std::string(remedy));
}

std::string textForKey(const PropertyListDictionary& dictionary, std::string_view key) {
    const platform::PropertyListValue* value = platform::objectForKey(dictionary, key);
    return value != nullptr ? platform::stringValue(*value).value_or("") : std::string();
}

// A name that stays inside its folder.
bool isPlainFileName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find('/') == std::string_view::npos && name.find('\0') == std::string_view::npos;
}

bool isRegularFile(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

std::string quotedList(const std::vector<std::string_view>& names) {
    std::string text;
    for (const std::string_view name : names) {
        text += (text.empty() ? "" : ", ") + std::string(name);
    }
    return text;
}

// The scales in the order in which their pictures serve the screen: its own, the larger ones from
// below, then the smaller ones from above.
std::array<int, 3> scalesByPreference(double screenScale) {
    const int wanted =
        std::clamp(static_cast<int>(std::ceil(std::clamp(screenScale, 1.0, 3.0))), 1, 3);
    std::array<int, 3> scales{1, 2, 3};
    std::ranges::sort(
        scales, {}, [wanted](int scale) { return scale >= wanted ? scale - wanted : 10 - scale; });
    return scales;
}

} // namespace

LoadedBundle::LoadedBundle(const std::string& path, const Screen& screen)
    : m_path(path)
    , m_screen(screen) {
    readInformation();
    loadExecutable();
}

void LoadedBundle::readInformation() {
    std::error_code error;
    if (!fs::is_directory(m_path, error)) {
        throwError(m_path, "is not there");
    }
    const fs::path file = fs::path(m_path) / informationFile;
    const auto list = readPropertyListFile(file.string());
    if (list && !list->has_value()) {
        throwError(m_path, "has no " + std::string(informationFile));
    }
    const auto* information = list ? std::get_if<PropertyListDictionary>(&(*list)->value) : nullptr;
    if (information == nullptr) {
        throwError(m_path, "has an " + std::string(informationFile) + " that cannot be read (" +
                               (list ? "it holds no dictionary" : list.error().what) + ")");
    }
    m_identifier = textForKey(*information, "CFBundleIdentifier");
    m_executable = textForKey(*information, "CFBundleExecutable");
    m_principalClass = textForKey(*information, "NSPrincipalClass");
}

void LoadedBundle::loadExecutable() {
    if (m_executable.empty()) {
        throwError(m_path, "names no executable");
    }
    if (!isPlainFileName(m_executable)) {
        throwError(m_path, "names an executable outside itself, '" + m_executable + "'");
    }
    // Absolute, since a name without a slash would be looked for among the system's libraries.
    std::error_code error;
    const fs::path file = fs::absolute(fs::path(m_path) / m_executable, error);
    if (error || !isRegularFile(file)) {
        throwError(m_path, "lacks its executable, '" + m_executable + "'");
    }
    // No RTLD_NODELETE is needed, as the handle is dropped without being closed.
    void* handle = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle == nullptr) {
        const char* reason = dlerror();
        throwError(m_path,
                   std::string("cannot be loaded (") + (reason ? reason : "no reason given") + ")");
    }
    // POSIX promises that an object pointer holds what dlsym gives for a function.
    const auto entry = reinterpret_cast<platform::WidgetBundleEntry>(
        dlsym(handle, platform::widgetBundleEntrySymbol));
    const WidgetBundle* bundle = entry != nullptr ? entry() : nullptr;
    if (bundle == nullptr) {
        throwError(m_path, "is not a widget bundle");
    }
    if (bundle->interfaceVersion != platform::widgetBundleInterfaceVersion) {
        throwError(m_path, "was built for version " + std::to_string(bundle->interfaceVersion) +
                               " of the widget interface, and this program has version " +
                               std::to_string(platform::widgetBundleInterfaceVersion));
    }
    m_bundle = bundle;
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
    return m_bundle->controllerClassNames();
}

bool LoadedBundle::hasClass(std::string_view className) const {
    const std::vector<std::string_view> names = controllerClassNames();
    return std::ranges::find(names, className) != names.end();
}

std::shared_ptr<_SBUIWidgetViewController>
LoadedBundle::makeController(std::string_view className, const Platform& platform) const {
    if (className.empty()) {
        throwError(m_path, "names no principal class");
    }
    auto controller = m_bundle->makeController(className, platform);
    if (!controller) {
        throw UnknownClassError("the bundle has no controller '" + std::string(className) +
                                "': it has " + quotedList(controllerClassNames()));
    }
    return controller;
}

std::shared_ptr<platform::BBWeeAppController>
LoadedBundle::makeWeeAppController(std::string_view className, const Platform& platform) const {
    return m_bundle->makeWeeAppController(className, platform);
}

const KeyValueCoding& LoadedBundle::processWideValues() const {
    return m_bundle->processWideValues();
}

platform::UIColor LoadedBundle::colorFromHexString(std::optional<std::string_view> text) const {
    return m_bundle->colorFromHexString(text);
}

std::optional<std::string> LoadedBundle::hexStringForColor(const platform::UIView& view,
                                                           const platform::CGColor& color) const {
    return m_bundle->hexStringForColor(view, color);
}

} // namespace quorvel::freedesktop
