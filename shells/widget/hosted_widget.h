// One controller of a bundle, of either kind, as every shell drives it. Its view is part of the
// shell's own tree of views.
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
    // All arguments outlive the widget, except the name; an empty one is the bundle's principal
    // class. `container` is in a window, or is one. Throws freedesktop::UnknownClassError for a
    // class that the bundle does not have.
    HostedWidget(const freedesktop::LoadedBundle& bundle, std::string_view controllerName,
                 const platform::Platform& platform, platform::SBUIWidgetHost& host,
                 platform::UIView& container);
    ~HostedWidget(); // the view leaves the container
    HostedWidget(const HostedWidget&) = delete;
    HostedWidget& operator=(const HostedWidget&) = delete;

    const std::string& controllerName() const { return m_controllerName; }
    // A controller for older hosts: no presenting, but three operations of its own.
    bool isLegacy() const { return m_legacyController != nullptr; }
    const platform::KeyValueCoding& controller() const;
    const platform::KeyValueCoding& processWideValues() const;

    // The controller's view, in the container; made at first use.
    platform::UIView& view();
    bool hasView() const { return m_view != nullptr; }
    // The list of events; null where the view shows none, or there is no view.
    platform::UITableView* table() const;
    // The view's records, one a row.
    std::vector<std::shared_ptr<const platform::KeyValueCoding>> items();

    void present(); // legacy: viewWillAppear, viewDidAppear
    void dismiss(); // legacy: viewWillDisappear, viewDidDisappear
    // legacy: the width that the view has (0 without one), by viewHeight
    platform::CGSize preferredViewSize();
    // Gives the view that size, at the container's origin.
    void resizeView(platform::CGSize size);

    // The legacy controller's own; nothing happens with the others.
    void loadFullView();
    void loadPlaceholderView();
    void unloadView();
    // A tap in the view's coordinates, as the legacy controller's host reports it: the controller
    // itself delivers the touch. The link that it wants opened; absent: none.
    std::optional<platform::NSURL> launchURLForTapLocation(const platform::CGPoint& point);

    // The row's own scroll view; null where the row is not visible or does not exist.
    std::shared_ptr<platform::UIScrollView> rowScrollView(std::size_t row) const;
    // Ends a drag of the row with its content `distance` points to the right; a row that is out of
    // the table's sight is brought into it for that. False where the row does not exist or cannot
    // be dragged. `time`: on the window's frame clock.
    bool pullRow(std::size_t row, platform::CGFloat distance, double time);

private:
    void showView(const std::shared_ptr<platform::UIView>& view);

    const freedesktop::LoadedBundle& m_bundle;
    std::string m_controllerName;
    platform::UIView& m_container;
    std::shared_ptr<platform::_SBUIWidgetViewController> m_controller; // one of the two is null
    std::shared_ptr<platform::BBWeeAppController> m_legacyController;
    std::shared_ptr<platform::UIView> m_view; // in the container; null before its first use
};

} // namespace quorvel::shells
