// The widget on a real platform: it presents while it is shown, and nothing of it runs afterwards.
#include "shells/gtk/agenda_widget.h"

#include <memory>
#include <optional>

#include <gmock/gmock.h>

#include "freedesktop/bundle/loaded_bundle.h"
#include "freedesktop/freedesktop_platform.h"
#include "freedesktop/rendering/linked_rendering.h"
#include "shells/gtk/key_command.h"
#include "tests/freedesktop/session/session_testing.h"

namespace quorvel::gtk {
namespace {

using namespace testing_session;
using testing::IsEmpty;

class RecordingSurroundings final : public AgendaWidgetObserver {
public:
    void onWantedSizeChanged() override { ++sizes; }
    void onPresented() override { ++presentations; }
    void onPullBecameFirm() override {}
    void onFailure(std::exception_ptr) noexcept override { ++failures; }

    int sizes = 0;
    int presentations = 0;
    int failures = 0;
};

class AgendaWidgetTest : public testing::Test {
protected:
    AgendaWidgetTest() {
        std::filesystem::create_directories(folder / "Preferences");
        writeSettings(0);
        freedesktop::FreedesktopOptions options;
        options.timeZone = freedesktop::utcTimeZone();
        options.followsTimeZone = false;
        options.locale = "en_US";
        options.followsLocale = false;
        options.preferencesFolder = folder / "Preferences";
        options.clockRuns = true;
        options.logs = {log};
        options.makeRendering = freedesktop::makeLinkedRendering;
        platform.emplace(options);
        bundle = platform->loadBundle(QUORVEL_BUNDLE).value();
        shells::AgendaHostOptions hostOptions;
        hostOptions.calendarState = [] { return shells::CalendarState(); };
        hostOptions.frameTime = [] { return 0.0; };
        host = std::make_unique<shells::AgendaHost>(*bundle, platform->platform(), hostOptions);
        widget = std::make_unique<AgendaWidget>(surroundings);
    }

    // The bundle's controller logs a problem with this file at each presentation.
    void writeSettings(int number) const {
        replace(folder / "Preferences/org.quorvel.quorvelprefs.plist",
                "bplist00 garbage " + std::to_string(number));
    }

    TemporaryFolder folder;
    std::shared_ptr<RecordedLog> log = std::make_shared<RecordedLog>();
    std::optional<freedesktop::FreedesktopPlatform> platform;
    std::shared_ptr<const freedesktop::LoadedBundle> bundle;
    std::unique_ptr<shells::AgendaHost> host;
    RecordingSurroundings surroundings;
    std::unique_ptr<AgendaWidget> widget;
};

TEST_F(AgendaWidgetTest, WithoutContentItIsOnePointLarge) {
    widget->show();
    EXPECT_FALSE(widget->isShown());
    EXPECT_FALSE(widget->run(KeyCommand::present));
    EXPECT_EQ(widget->wantedSize(), (platform::CGSize{1, 1}));
}

TEST_F(AgendaWidgetTest, PresentsWhenItIsShownAndWhenItsFilesChange) {
    widget->setContent(*platform, *host);
    EXPECT_EQ(surroundings.presentations, 0);
    widget->show();
    EXPECT_EQ(surroundings.presentations, 1);
    EXPECT_EQ(surroundings.sizes, 1);
    writeSettings(1);
    EXPECT_TRUE(runUntil([&] { return surroundings.presentations == 2; }));
    EXPECT_TRUE(widget->run(KeyCommand::present));
    EXPECT_EQ(surroundings.presentations, 3);
    EXPECT_EQ(surroundings.failures, 0);
}

TEST_F(AgendaWidgetTest, PresentsNothingWhileItIsHidden) {
    widget->setContent(*platform, *host);
    writeSettings(1);
    runFor(0.3);
    EXPECT_EQ(surroundings.presentations, 0);
    widget->show();
    widget->hide();
    writeSettings(2);
    widget->present();
    runFor(0.3);
    EXPECT_EQ(surroundings.presentations, 1);
    EXPECT_EQ(wakeUpsDuring(0.3), 0);
    widget->show();
    EXPECT_EQ(surroundings.presentations, 2);
}

TEST_F(AgendaWidgetTest, NothingRunsAfterItsDestructionThoughTheAreaStays) {
    widget->setContent(*platform, *host);
    widget->show();
    GtkWidget* window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_container_add(GTK_CONTAINER(window), widget->widget());
    gtk_widget_show_all(window);
    runFor(0.2);
    log->clear();
    widget.reset();
    gtk_widget_queue_draw(window);
    writeSettings(1);
    runFor(0.4);
    EXPECT_THAT(log->lines(), IsEmpty());
    EXPECT_EQ(surroundings.presentations, 1);
    gtk_widget_destroy(window);
}

} // namespace
} // namespace quorvel::gtk
