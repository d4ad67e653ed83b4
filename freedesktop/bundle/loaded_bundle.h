// A widget bundle: a folder with an Info.plist, a shared object and resources.
#pragma once

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/bundle.h"
#include "platform/ui_color.h"

namespace quorvel::platform {
class BBWeeAppController;
class _SBUIWidgetViewController; // NOLINT(bugprone-reserved-identifier): declared elsewhere
class KeyValueCoding;
class Screen;
class UIView;
struct CGColor;
struct Platform;
struct WidgetBundle;
} // namespace quorvel::platform

namespace quorvel::freedesktop {

// Why a bundle cannot be used, as "what is wrong: what to do".
class BundleError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The bundle is all right, but has no such controller.
class UnknownClassError : public BundleError {
public:
    using BundleError::BundleError;
};

// The shared object stays in the process for good: unloading it would pull the code from under
// every object that it has made.
class LoadedBundle final : public platform::NSBundle {
public:
    // `screen` outlives the bundle. Throws BundleError.
    LoadedBundle(const std::string& path, const platform::Screen& screen);

    std::string bundlePath() const override { return m_path; }
    // A plain file name inside the bundle. Of "name.type", "name@2x.type" and "name@3x.type" the
    // one for the screen's scale, else the next larger, else the largest that there is.
    std::optional<std::string> pathForResource(std::string_view name,
                                               std::string_view type) const override;

    const std::string& identifier() const { return m_identifier; } // may be empty
    const std::string& principalClass() const { return m_principalClass; }
    std::vector<std::string_view> controllerClassNames() const;
    bool hasClass(std::string_view className) const;
    // Throws UnknownClassError. `platform` outlives the controller.
    std::shared_ptr<platform::_SBUIWidgetViewController>
    makeController(std::string_view className, const platform::Platform& platform) const;
    // A controller for older hosts; null where the bundle has no such class of that kind.
    std::shared_ptr<platform::BBWeeAppController>
    makeWeeAppController(std::string_view className, const platform::Platform& platform) const;
    const platform::KeyValueCoding& processWideValues() const;
    // The bundle's conversions of colours, as platform/widget_bundle.h describes them.
    platform::UIColor colorFromHexString(std::optional<std::string_view> text) const;
    std::optional<std::string> hexStringForColor(const platform::UIView& view,
                                                 const platform::CGColor& color) const;

private:
    void readInformation();
    void loadExecutable();

    std::string m_path;
    const platform::Screen& m_screen;
    std::string m_identifier;
    std::string m_executable;
    std::string m_principalClass;
    const platform::WidgetBundle* m_bundle = nullptr;
};

} // namespace quorvel::freedesktop
