#include "freedesktop/launch/exec_line.h"

#include <array>

#include <gmock/gmock.h>

namespace quorvel::freedesktop {
namespace {

using testing::ElementsAre;
using testing::Optional;

const EntryFacts facts{"My Calendar", "a-icon", "/usr/share/a b.desktop"};
const std::string hostile = "x-apple-calevent://a/';$(touch x)`y` --help\n%u\"";

std::optional<std::vector<std::string>> withLink(const char* line) {
    return argumentsOf(line, facts, std::array{hostile});
}

std::optional<std::vector<std::string>> withoutLink(const char* line) {
    return argumentsOf(line, facts, {});
}

TEST(ExecLineTest, PutsTheLinkInAsOneArgument) {
    EXPECT_THAT(withLink("app %u"), Optional(ElementsAre("app", hostile)));
    EXPECT_THAT(withLink("app -a %U @@"), Optional(ElementsAre("app", "-a", hostile, "@@")));
    EXPECT_THAT(withLink("app \"%u\""), Optional(ElementsAre("app", hostile)));
    EXPECT_THAT(withLink("app --open=%u"), Optional(ElementsAre("app", "--open=" + hostile)));
}

TEST(ExecLineTest, PutsSeveralLinksInWhereTheLineTakesThem) {
    const std::array<std::string, 2> links{"a:1", "b:2"};
    EXPECT_THAT(argumentsOf("app -x %U @@", facts, links),
                Optional(ElementsAre("app", "-x", "a:1", "b:2", "@@")));
    EXPECT_THAT(argumentsOf("app %u", facts, links), Optional(ElementsAre("app", "a:1")));
    EXPECT_THAT(argumentsOf("app --open=%U", facts, links),
                Optional(ElementsAre("app", "--open=a:1")));
}

TEST(ExecLineTest, LeavesOutWhatStandsForNothing) {
    EXPECT_THAT(withoutLink("app %u x"), Optional(ElementsAre("app", "x")));
    EXPECT_THAT(withoutLink("app --open=%u x"), Optional(ElementsAre("app", "x")));
    EXPECT_THAT(withLink("app %f %F %d %D %n %N %v %m %z"), Optional(ElementsAre("app")));
    EXPECT_THAT(argumentsOf("app %i", {}, {}), Optional(ElementsAre("app")));
}

TEST(ExecLineTest, RemovesTheLinkFromOtherWords) {
    EXPECT_THAT(withLink("sh -c \"app %u\""), Optional(ElementsAre("sh", "-c", "app ")));
    EXPECT_THAT(withLink("sh -c app;%U"), Optional(ElementsAre("sh", "-c", "app;")));
    EXPECT_THAT(withLink("sh -c \"app --open=%u\""),
                Optional(ElementsAre("sh", "-c", "app --open=")));
    EXPECT_THAT(withLink("app --open=a%u"), Optional(ElementsAre("app", "--open=a")));
}

TEST(ExecLineTest, PreservesTheWordsOfALine) {
    EXPECT_THAT(withoutLink("/usr/bin/flatpak run --branch=stable --command=gnome-calendar "
                            "--file-forwarding org.gnome.Calendar @@u %U @@"),
                Optional(ElementsAre("/usr/bin/flatpak", "run", "--branch=stable",
                                     "--command=gnome-calendar", "--file-forwarding",
                                     "org.gnome.Calendar", "@@u", "@@")));
    EXPECT_THAT(withoutLink("env \"A=b c\" 'x' y\\ z \"\" $HOME"),
                Optional(ElementsAre("env", "A=b c", "x", "y z", "", "$HOME")));
}

TEST(ExecLineTest, FillsInTheValuesOfTheEntry) {
    EXPECT_THAT(withoutLink("app %i %c %k 100%% [%c]"),
                Optional(ElementsAre("app", "--icon", "a-icon", "My Calendar",
                                     "/usr/share/a b.desktop", "100%", "[My Calendar]")));
    EXPECT_THAT(withoutLink("app 5%"), Optional(ElementsAre("app", "5%")));
}

TEST(ExecLineTest, IsAbsentWhereThereIsNoProgram) {
    for (const char* line : {"", "   ", "\"\" x", "'unclosed", "%u", "%U x", "%f"}) {
        EXPECT_EQ(withLink(line), std::nullopt) << line;
    }
}

} // namespace
} // namespace quorvel::freedesktop
