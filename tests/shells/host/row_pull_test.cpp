#include "shells/host/row_pull.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "platform/memory/recording_context.h"
#include "platform/ui/ui_scroll_view.h"
#include "tests/shells/host/host_fixture.h"

namespace quorvel::shells {
namespace {

using namespace platform;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

std::vector<std::string> painted(const RowPull& pull) {
    memory::RecordingContext context;
    paintPull(context, pull, UIColor{0.1, 0.2, 0.3, 1});
    return context.operations;
}

TEST(RowPullTest, IsFirmBeyondEightyPoints) {
    EXPECT_FALSE(isFirm({CGRectMake(0, 0, 320, 44), 80, {}}));
    EXPECT_TRUE(isFirm({CGRectMake(0, 0, 320, 44), 80.5, {}}));
}

TEST(RowPullTest, PaintsWhatTheContentHasLeft) {
    const RowPull pull{CGRectMake(0, 44, 320, 44), 60, UIColor{1, 0, 0, 1}};
    EXPECT_THAT(painted(pull), Contains("setFillColor 1 0 0 0.35"));
    EXPECT_THAT(painted(pull), Contains("fillRect 2 46 54 40"));
    EXPECT_THAT(painted(pull), Contains("drawText \"Open\" 14 0.1 0.2 0.3 1 14 46 320 40"));
}

TEST(RowPullTest, TakesTheFullColourWhenItIsFirm) {
    const RowPull pull{CGRectMake(0, 0, 320, 44), 100, UIColor{1, 0, 0, 1}};
    EXPECT_THAT(painted(pull), Contains("setFillColor 1 0 0 1"));
}

TEST(RowPullTest, ItsTextContrastsWithABrightColour) {
    RowPull pull{CGRectMake(0, 0, 320, 44), 100, UIColor::yellowColor()};
    EXPECT_THAT(painted(pull), Contains(StartsWith("drawText \"Open\" 14 0 0 0 1")));
    pull.color = UIColor::blueColor();
    EXPECT_THAT(painted(pull), Contains(StartsWith("drawText \"Open\" 14 1 1 1 1")));
    pull.distance = 60; // pale on the backdrop
    EXPECT_THAT(painted(pull), Contains(StartsWith("drawText \"Open\" 14 0.1 0.2 0.3 1")));
}

TEST(RowPullTest, PaintsNothingForAShortPullOrAFlatRow) {
    EXPECT_THAT(painted({CGRectMake(0, 0, 320, 44), 5, {}}), IsEmpty());
    EXPECT_THAT(painted({CGRectMake(0, 0, 320, 3), 100, {}}), IsEmpty());
}

class PulledRowsTest : public HostFixture {
protected:
    void send(UITouchPhase phase, CGFloat x, CGFloat y) {
        time += 0.02;
        host->sendFinger({1, phase, {x, y}, time});
    }
    std::unique_ptr<AgendaHost> host;
};

TEST_F(PulledRowsTest, ARowBelowTheFingerIsPulled) {
    addEvents(2);
    host = makeShownHost();
    EXPECT_THAT(host->rows().pulls(), IsEmpty());
    const CGRect row = host->rows().rowFrame(1);
    send(UITouchPhase::began, 20, row.origin.y + 10);
    send(UITouchPhase::moved, 100, row.origin.y + 10);
    ASSERT_EQ(host->rows().pulls().size(), 1U);
    EXPECT_EQ(host->rows().pulls()[0].frame, row);
    EXPECT_GT(host->rows().pulls()[0].distance, 20);
    EXPECT_EQ(observer.firmPulls, 0);
    send(UITouchPhase::moved, 300, row.origin.y + 10);
    send(UITouchPhase::moved, 301, row.origin.y + 10);
    EXPECT_EQ(observer.firmPulls, 1);
    send(UITouchPhase::moved, 60, row.origin.y + 10);
    send(UITouchPhase::moved, 300, row.origin.y + 10);
    EXPECT_EQ(observer.firmPulls, 2);
    send(UITouchPhase::ended, 300, row.origin.y + 10);
    EXPECT_THAT(takeOpened(), ElementsAre(linkOfRow(1)));
    EXPECT_EQ(host->rows().pulls().size(), 1U) << "the row springs back";
    host->advance(time + 10);
    EXPECT_THAT(host->rows().pulls(), IsEmpty());
    EXPECT_EQ(observer.firmPulls, 2);
}

TEST_F(PulledRowsTest, ARowWithoutAnEffectIsNotPulled) {
    EKEvent unlinked = event("unlinked", at(0, 11));
    unlinked.persistentEvent.eventIdentifier = "home:not a link";
    memory.calendarStores.addEvent(unlinked);
    host = makeShownHost();
    send(UITouchPhase::began, 20, 10);
    send(UITouchPhase::moved, 300, 10);
    EXPECT_THAT(host->rows().pulls(), IsEmpty());
    EXPECT_EQ(observer.firmPulls, 0);
}

} // namespace
} // namespace quorvel::shells
