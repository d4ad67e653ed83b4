#include "shells/widget/cut_texts.h"

#include <gmock/gmock.h>

#include "platform/ui/ui_window.h"
#include "shells/headless/recording_host.h"
#include "shells/widget/hosted_widget.h"
#include "tests/shells/widget/shell_fixture.h"

namespace quorvel::shells {
namespace {

using namespace platform;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class CutTextsTest : public ShellFixture {
protected:
    std::vector<std::string> cut(const std::string& title, std::size_t row = 0) {
        memory.calendarStores.addEvent(event(title, at(0, 12, 30)));
        HostedWidget widget(bundle, notificationController, memory.platform(), host, *window);
        widget.view();
        widget.present();
        widget.resizeView({320, 400});
        window->layoutIfNeeded();
        return cutTexts(widget, row, memory.textMeasurer);
    }

    headless::RecordingHost host;
    std::shared_ptr<UIWindow> window =
        std::make_shared<UIWindow>(CGRectMake(0, 0, 320, 480), memory.screen);
};

TEST_F(CutTextsTest, AShortTitleIsShownAsAWhole) {
    EXPECT_THAT(cut("Lunch"), IsEmpty());
}

TEST_F(CutTextsTest, ALongTitleIsCut) {
    const std::string title = "Lunch with everybody who was ever invited to one, at the long table";
    EXPECT_THAT(cut(title), ElementsAre(title));
}

TEST_F(CutTextsTest, AHugeTitleIsBounded) {
    std::string title;
    for (int i = 0; i < 300000; ++i) {
        title += "é";
    }
    const std::vector<std::string> texts = cut(title);
    ASSERT_THAT(texts, SizeIs(1));
    EXPECT_EQ(texts[0].size(), 400 + std::string("…").size());
    EXPECT_EQ(texts[0].substr(0, 4), "éé");
}

TEST_F(CutTextsTest, ARowThatDoesNotExistHasNone) {
    EXPECT_THAT(cut("Lunch", 7), IsEmpty());
}

} // namespace
} // namespace quorvel::shells
