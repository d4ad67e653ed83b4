// A host of the real bundle on a platform in memory, with counts of its notifications.
#pragma once

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/ui/ui_table_view.h"
#include "shells/host/agenda_host.h"
#include "tests/shells/widget/shell_fixture.h"

namespace quorvel::shells {

class RecordingObserver : public AgendaObserver {
public:
    void onAppearanceChanged() override { ++appearances; }
    void onWantedSizeChanged() override { ++sizes; }
    void onRowsChanged() override { ++presentations; }
    void onFocusMoved() override { ++focusMoves; }
    void onFingerDownChanged() override { ++fingers; }
    void onPullBecameFirm() override { ++firmPulls; }

    int appearances = 0;
    int sizes = 0;
    int presentations = 0;
    int focusMoves = 0;
    int fingers = 0;
    int firmPulls = 0;
};

class HostFixture : public ShellFixture {
protected:
    std::unique_ptr<AgendaHost> makeHost(const std::string& controller) {
        AgendaHostOptions options;
        options.controllerName = controller;
        options.width = width;
        options.calendarState = [this] { return calendarState; };
        options.frameTime = [this] { return time; };
        auto host = std::make_unique<AgendaHost>(bundle, memory.platform(), std::move(options));
        host->setObserver(&observer);
        return host;
    }
    // Presented, in an area of its wanted size.
    std::unique_ptr<AgendaHost>
    makeShownHost(const std::string& controller = notificationController) {
        auto host = makeHost(controller);
        host->present();
        host->setAreaSize(host->wantedSize());
        return host;
    }

    // All views of that kind in the host's window, from back to front.
    template <class Kind>
    static std::vector<std::shared_ptr<Kind>> viewsOf(AgendaHost& host) {
        std::vector<std::shared_ptr<Kind>> found;
        std::vector<std::shared_ptr<platform::UIView>> remaining{host.window().shared_from_this()};
        while (!remaining.empty()) {
            const auto view = remaining.back();
            remaining.pop_back();
            if (auto kind = std::dynamic_pointer_cast<Kind>(view)) {
                found.push_back(kind);
            }
            remaining.insert(remaining.end(), view->subviews().rbegin(), view->subviews().rend());
        }
        return found;
    }
    static platform::UITableView& tableOf(AgendaHost& host) {
        return *viewsOf<platform::UITableView>(host).at(0);
    }
    // The view that fills the window.
    static platform::UIScrollView& scrollerOf(AgendaHost& host) {
        return *viewsOf<platform::UIScrollView>(host).at(0);
    }
    static platform::CGFloat heightOfRows(AgendaHost& host) {
        platform::CGFloat height = 0;
        for (const platform::CGFloat row : tableOf(host).rowHeights()) {
            height += row;
        }
        return height;
    }

    std::optional<platform::CGFloat> width;
    CalendarState calendarState;
    double time = 100; // seconds, of the frame clock
    RecordingObserver observer;
};

} // namespace quorvel::shells
