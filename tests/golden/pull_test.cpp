// Draws a row that a finger pulls, less and more than its effect needs, as the hosts paint it.
#include "tests/golden/golden_picture.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "freedesktop/bundle/loaded_bundle.h"
#include "freedesktop/dates/instant_text.h"
#include "freedesktop/freedesktop_platform.h"
#include "freedesktop/graphics/snapshot.h"
#include "freedesktop/rendering/linked_rendering.h"
#include "shells/host/agenda_host.h"
#include "shells/host/row_pull.h"
#include "shells/widget/appearance.h"

namespace quorvel::golden {
namespace {

using platform::CGFloat;
using platform::UITouchPhase;
using shells::AppearanceKind;

struct PullPicture {
    std::string name;
    AppearanceKind appearance;
    CGFloat scale;
    CGFloat way; // points of the finger
};

std::vector<PullPicture> pullPictures() {
    return {{"pulled-short.dark@1x.png", AppearanceKind::dark, 1, 90},
            {"pulled-far.dark@2x.png", AppearanceKind::dark, 2, 250},
            {"pulled-short.light@3x.png", AppearanceKind::light, 3, 90},
            {"pulled-far.light@1.5x.png", AppearanceKind::light, 1.5, 250},
            {"pulled-far.high-contrast@1x.png", AppearanceKind::highContrastDark, 1, 250}};
}

freedesktop::FreedesktopOptions options(CGFloat scale) {
    freedesktop::FreedesktopOptions options;
    options.timeZone = freedesktop::namedTimeZone("Europe/Berlin");
    options.locale = "en_US";
    options.fontFamily = "Inter";
    options.makeRendering = freedesktop::makeLinkedRendering;
    options.dataFolder = QUORVEL_DATA;
    options.preferencesFolder = std::string(GOLDEN_FOLDER) + "/preferences/dots";
    options.calendars = {
        freedesktop::CalendarSource::at(std::string(GOLDEN_FOLDER) + "/calendars/home.ics")};
    options.now = freedesktop::parseInstant("2026-03-10T10:00:00+01:00", *options.timeZone);
    options.scale = scale;
    return options;
}

class PulledRow : public testing::TestWithParam<PullPicture> {
protected:
    PulledRow()
        : m_platform(options(GetParam().scale))
        , m_bundle(m_platform.loadBundle(QUORVEL_BUNDLE).value()) {
        shells::AgendaHostOptions hostOptions;
        hostOptions.width = 320;
        hostOptions.calendarState = [] { return shells::CalendarState(); };
        hostOptions.frameTime = [] { return 0.0; };
        hostOptions.appearance = shells::standardAppearance(GetParam().appearance);
        m_host.emplace(*m_bundle, m_platform.platform(), std::move(hostOptions));
        m_host->present();
        m_host->setAreaSize(m_host->wantedSize());
    }
    void pull(CGFloat way) {
        constexpr CGFloat y = 15; // in the first row
        m_host->sendFinger({1, UITouchPhase::began, {40, y}, 0});
        for (const CGFloat part : {0.2, 0.5, 1.0}) {
            m_host->sendFinger({1, UITouchPhase::moved, {40 + way * part, y}, part});
        }
    }
    void draw() {
        freedesktop::Snapshot snapshot;
        snapshot.size = m_host->wantedSize();
        snapshot.scale = GetParam().scale;
        snapshot.backdrop = m_host->appearance().backdrop;
        snapshot.paint = [this](platform::GraphicsContext& context) {
            for (const shells::RowPull& pulled : m_host->rows().pulls()) {
                shells::paintPull(context, pulled, m_host->appearance().title);
            }
            m_host->window().render(context);
        };
        ASSERT_TRUE(freedesktop::writeSnapshot(drawnPicture(GetParam().name), snapshot,
                                               m_platform.rendering().textLines()));
    }

    freedesktop::FreedesktopPlatform m_platform;
    std::shared_ptr<const freedesktop::LoadedBundle> m_bundle;
    std::optional<shells::AgendaHost> m_host;
};

TEST_P(PulledRow, LooksAsItDid) {
    pull(GetParam().way);
    const auto pulls = m_host->rows().pulls();
    ASSERT_EQ(pulls.size(), 1U);
    EXPECT_EQ(shells::isFirm(pulls[0]), GetParam().way > 200);
    draw();
    expectGolden(GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(Pictures, PulledRow, testing::ValuesIn(pullPictures()),
                         [](const auto& test) { return testName(test.param.name); });

} // namespace
} // namespace quorvel::golden
