#include "freedesktop/text/fonts.h"

#include <gtest/gtest.h>

#include "freedesktop/text/text_lines.h"
#include "tests/freedesktop/session/session_testing.h"
#include "tests/freedesktop/session/settings_writer.h"

namespace quorvel::freedesktop {
namespace {

TEST(Fonts, KnowsWhatIsInstalled) {
    const std::string family = TextLines().systemFamily();
    EXPECT_TRUE(isFontInstalled(family));
    EXPECT_TRUE(isFontInstalled("sans-serif"));
    EXPECT_TRUE(isFontInstalled("MONOSPACE"));
}

TEST(Fonts, UpperAndLowerCaseDoNotMatter) {
    std::string family = TextLines().systemFamily();
    for (char& letter : family)
        letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    EXPECT_TRUE(isFontInstalled(family));
}

TEST(Fonts, KnowsWhatIsNot) {
    EXPECT_FALSE(isFontInstalled("No Such Family Of Letters"));
    EXPECT_FALSE(isFontInstalled(""));
    EXPECT_FALSE(isFontInstalled("\xFF\xFE"));
}

TEST(Fonts, TheRequestedFamilyIsTheSystemFont) {
    EXPECT_EQ(TextLines("DejaVu Serif").systemFamily(), "DejaVu Serif");
    EXPECT_EQ(TextLines("No Such Family").systemFamily(), "No Such Family");
    EXPECT_EQ(TextLines(std::string()).systemFamily(), TextLines().systemFamily());
}

TEST(Fonts, AChangeOfTheDesktopsFontIsSeenWhenTheFontsAreReloaded) {
    using namespace testing_session;
    const EnvironmentVariable session("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    SettingsWriter interface("org.gnome.desktop.interface");
    interface.set("font-name", "Noto Sans 11");
    TextLines lines;
    TextLines requested("Inter");
    ASSERT_EQ(lines.systemFamily(), "Noto Sans");
    const auto font = platform::UIFont::systemFontOfSize(14);
    const auto before = lines.size("Lunch", font);
    const auto requestedSize = requested.size("Lunch", font);
    interface.set("font-name", "Inter Bold 14");
    EXPECT_EQ(lines.size("Lunch", font), before);
    lines.reloadFonts();
    requested.reloadFonts();
    EXPECT_EQ(lines.systemFamily(), "Inter");
    EXPECT_EQ(lines.size("Lunch", font), requestedSize);
    interface.set("font-name", "No Such Family 11");
    lines.reloadFonts();
    EXPECT_EQ(lines.systemFamily(), "Inter") << "the first installed one";
    interface.set("font-name", "Noto Sans 11");
    requested.reloadFonts();
    EXPECT_EQ(requested.systemFamily(), "Inter");
}

} // namespace
} // namespace quorvel::freedesktop
