// A controller of a bundle and its view, in the way in which every shell uses them. The view is
// part of the shell's own tree of views.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/geometry.h"
#include "platform/ns_url.h"

namespace quorvel::platform {
class BBWeeAppController;
class KeyValueCoding;
class SBUIWidgetHost;
class UIScrollView;
class UITableView;
class UIView;
class _SBUIWidgetViewController; // NOLINT(bugprone-reserved-identifier): declared elsewhere
struct Platform;
} // namespace quorvel::platform

namespace quorvel::freedesktop {
class LoadedBundle;
} // namespace quorvel::freedesktop

namespace quorvel::shells {

class HostedWidget {
public:
    // All arguments but the name outlive the widget. `controllerName` is a class of the bundle;
    // empty: the bundle's principal class. `container` is a window or in one.
    HostedWidget(const freedesktop::LoadedBundle& bundle, std::string_view controllerName,
                 const platform::Platform& platform, platform::SBUIWidgetHost& host,
                 platform::UIView& container);
    ~HostedWidget(); // removes the view from the container
    HostedWidget(const HostedWidget&) = delete;
    HostedWidget& operator=(const HostedWidget&) = delete;

    const std::string& controllerName() const { return m_controllerName; }
    // A controller for older hosts, which has other operations.
    bool isLegacy() const { return m_legacyController != nullptr; }
    const platform::KeyValueCoding& controller() const;
    const platform::KeyValueCoding& processWideValues() const;

    // The controller's view, in the container; created at first use.
    platform::UIView& view();
    bool hasView() const { return m_view != nullptr; }
    // The list of events; null where the view shows none, or there is no view.
    platform::UITableView* table() const;
    // The view's records, one for each row.
    std::vector<std::shared_ptr<const platform::KeyValueCoding>> items();

    void present(); // legacy: viewWillAppear, viewDidAppear
    void dismiss(); // legacy: viewWillDisappear, viewDidDisappear
    // legacy: the view's current width (0 without a view) and viewHeight
    platform::CGSize preferredViewSize();
    // Places the view at the container's origin.
    void resizeView(platform::CGSize size);

    // Operations of legacy controllers; without effect on others.
    void loadFullView();
    void loadPlaceholderView();
    void unloadView();
    // Reports a tap in the view's coordinates; the controller itself delivers the touch. Returns
    // the link that the host is to open; absent: none.
    std::optional<platform::NSURL> launchURLForTapLocation(const platform::CGPoint& point);

    // Scrolls the list, and the scroll views around it, so that the row is visible. False where the
    // row does not exist.
    bool scrollToRow(std::size_t row);
    // The row's own scroll view; null where the row is not visible or does not exist.
    std::shared_ptr<platform::UIScrollView> rowScrollView(std::size_t row) const;
    // Drags the row's content `distance` points to the right and lifts the finger, after scrolling
    // to the row where it has no cell. False where the row does not exist or cannot be dragged.
    // `time`: seconds of the window's frame clock.
    bool pullRow(std::size_t row, platform::CGFloat distance, double time);

private:
    void showView(const std::shared_ptr<platform::UIView>& view);

    const freedesktop::LoadedBundle& m_bundle;
    std::string m_controllerName;
    platform::UIView& m_container;
    std::shared_ptr<platform::_SBUIWidgetViewController> m_controller; // one of these two is null
    std::shared_ptr<platform::BBWeeAppController> m_legacyController;
    std::shared_ptr<platform::UIView> m_view; // in the container; null before its first use
};

} // namespace quorvel::shells
