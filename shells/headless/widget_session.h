// One controller of a bundle, in a window, driven as a shell drives it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/geometry.h"
#include "platform/platform.h"
#include "shells/headless/recording_calendar_stores.h"
#include "shells/headless/recording_host.h"
#include "shells/headless/recording_log.h"

namespace quorvel::platform {
class _SBUIWidgetViewController; // NOLINT(bugprone-reserved-identifier): declared elsewhere
class KeyValueCoding;
class UITableView;
class UIView;
class UIWindow;
} // namespace quorvel::platform

namespace quorvel::freedesktop {
class LoadedBundle;
} // namespace quorvel::freedesktop

namespace quorvel::headless {

class WidgetSession {
public:
    // The bundle and the platform outlive the session. An empty name: the bundle's principal
    // class. Throws freedesktop::BundleError for a class that the bundle does not have.
    WidgetSession(const freedesktop::LoadedBundle& bundle, std::string_view controllerName,
                  const platform::Platform& platform);
    ~WidgetSession();
    WidgetSession(const WidgetSession&) = delete;
    WidgetSession& operator=(const WidgetSession&) = delete;

    // Makes the controller's view and puts it into a window of its size. Before anything else.
    void load();
    void present();
    void dismiss();
    platform::CGSize preferredViewSize();
    // Gives the view that size, in a window as large, and lays it out.
    void resizeView(platform::CGSize size);
    void layOut();

    const std::string& controllerName() const { return m_controllerName; }
    const platform::KeyValueCoding& controller() const;
    const platform::KeyValueCoding& processWideValues() const;
    platform::UIView& view() const;
    // The list of events; null where the view shows none.
    platform::UITableView* table() const;
    // The view's records, one a row.
    std::vector<std::shared_ptr<const platform::KeyValueCoding>> items() const;
    // What the widget's latest query of the calendars was; absent where it made none.
    const std::optional<RecordedQuery>& latestQuery() const { return m_stores.latestQuery(); }

    std::vector<HostMessage> takeHostMessages() { return m_host.takeMessages(); }
    std::vector<std::string> takeLogLines() { return m_log.takeLines(); }
    const platform::Platform& platform() const { return m_platform; }

private:
    const freedesktop::LoadedBundle& m_bundle;
    std::string m_controllerName;
    RecordingCalendarStores m_stores;
    RecordingLog m_log;
    RecordingHost m_host;
    platform::Platform m_platform; // the host's, with the two records in it
    std::shared_ptr<platform::UIWindow> m_window;
    std::shared_ptr<platform::_SBUIWidgetViewController> m_controller;
};

} // namespace quorvel::headless
