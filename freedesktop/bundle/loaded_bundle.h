// A widget bundle: a folder with an Info.plist, a shared object and resources.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
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

// The shared object is never unloaded, because objects of the process use its code.
class LoadedBundle final : public platform::NSBundle {
public:
    // Loads the bundle in that folder. `screen` must outlive the bundle, which is not null.
    static Result<std::shared_ptr<const LoadedBundle>> load(const std::string& path,
                                                            const platform::Screen& screen);

    std::string bundlePath() const override { return m_path; }
    // The path of "name.type", "name@2x.type" or "name@3x.type", a plain file name in the bundle:
    // the one for the screen's scale, else the next larger one, else the largest.
    std::optional<std::string> pathForResource(std::string_view name,
                                               std::string_view type) const override;

    // Either may be empty.
    const std::string& identifier() const { return m_information.identifier; }
    const std::string& principalClass() const { return m_information.principalClass; }
    std::vector<std::string_view> controllerClassNames() const;
    bool hasClass(std::string_view className) const;
    // Fails if the bundle has no such class. `platform` must outlive the controller, which is not
    // null.
    Result<std::shared_ptr<platform::_SBUIWidgetViewController>>
    makeController(std::string_view className, const platform::Platform& platform) const;
    // A controller for older hosts; null if the bundle has no such class.
    std::shared_ptr<platform::BBWeeAppController>
    makeWeeAppController(std::string_view className, const platform::Platform& platform) const;
    const platform::KeyValueCoding& processWideValues() const;
    // The bundle's colour conversions, described in platform/widget_bundle.h.
    platform::UIColor colorFromHexString(std::optional<std::string_view> text) const;
    std::optional<std::string> hexStringForColor(const platform::UIView& view,
                                                 const platform::CGColor& color) const;

private:
    // The texts of Info.plist; a missing one is empty.
    struct Information {
        std::string identifier;
        std::string executable;
        std::string principalClass;
    };

    LoadedBundle(std::string path, const platform::Screen& screen, Information information,
                 const platform::WidgetBundle& bundle);
    static Result<Information> readInformation(const std::string& path);
    static Result<const platform::WidgetBundle*> loadExecutable(const std::string& path,
                                                                const std::string& executable);

    std::string m_path;
    const platform::Screen& m_screen;
    Information m_information;
    const platform::WidgetBundle& m_bundle;
};

} // namespace quorvel::freedesktop
