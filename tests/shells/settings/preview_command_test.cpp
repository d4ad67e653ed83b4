// The command that draws the preview, and the reason of its failure.
#include "shells/settings/preview_command.h"

#include <gmock/gmock.h>

namespace quorvel::settings_pages {
namespace {

using testing::ElementsAre;
using testing::Not;

TEST(PreviewCommand, HasTheSettingsAndTheAppearance) {
    PreviewCommand command;
    command.program = "/bin/quorvel";
    command.preferencesFolder = "/a folder";
    command.isDark = true;
    command.scale = 2;
    command.textScale = 1.25;
    command.picture = "/tmp/x.png";
    EXPECT_THAT(argumentsOf(command),
                ElementsAre("/bin/quorvel", "snapshot", "-o", "/tmp/x.png", "--preferences",
                            "/a folder", "--appearance", "dark", "--scale", "2", "--text-scale",
                            "1.25", "--width", "320"));
}

TEST(PreviewCommand, DrawsTheSampleOnRequest) {
    PreviewCommand command;
    EXPECT_THAT(argumentsOf(command), Not(testing::Contains("--sample")));
    command.isSample = true;
    EXPECT_THAT(argumentsOf(command), testing::Contains("--sample"));
}

TEST(PreviewCommand, BoundsTheTextScale) {
    PreviewCommand command;
    command.textScale = 9;
    EXPECT_EQ(argumentsOf(command).at(11), "3");
    command.textScale = 0.1;
    EXPECT_EQ(argumentsOf(command).at(11), "0.5");
}

TEST(FailureReason, IsTheLastLineWithoutTheProgramsName) {
    EXPECT_EQ(failureReason("quorvel: first\nquorvel: there are no calendars\n"),
              "there are no calendars");
    EXPECT_EQ(failureReason("another text"), "another text");
    EXPECT_EQ(failureReason(""), "the program ended without a reason");
    EXPECT_EQ(failureReason("\n\n"), "the program ended without a reason");
}

} // namespace
} // namespace quorvel::settings_pages
