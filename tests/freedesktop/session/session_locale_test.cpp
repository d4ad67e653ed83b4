#include "freedesktop/session/session_locale.h"

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

TEST(SessionLocale, IsTheEnvironmentsUntilSomethingChanges) {
    EXPECT_EQ(localeOf({"", "", "fr_FR.UTF-8", "", {}}), "fr_FR");
    EXPECT_EQ(localeOf({"", "it_IT.UTF-8", "fr_FR.UTF-8", "", {}}), "it_IT");
    EXPECT_EQ(localeOf({}), "en_US_POSIX");
}

TEST(SessionLocale, TheRegionGoesBeforeTheSystemAndThatBeforeTheEnvironment) {
    SessionLocale session{"", "it_IT.UTF-8", "fr_FR.UTF-8", "", {}};
    session.system = {"LANG=de_DE.UTF-8"};
    EXPECT_EQ(localeOf(session), "de_DE");
    session.system = {"LANG=de_DE.UTF-8", "LC_TIME=en_GB.UTF-8"};
    EXPECT_EQ(localeOf(session), "en_GB");
    session.region = "ja_JP.UTF-8";
    EXPECT_EQ(localeOf(session), "ja_JP");
    session.lcAll = "C.UTF-8";
    EXPECT_EQ(localeOf(session), "en_US_POSIX") << "who sets LC_ALL wants nothing else";
}

TEST(SessionLocale, SkipsUnknownLocales) {
    SessionLocale session{"xx_NOWHERE", "it_IT.UTF-8", "", "Middle-earth", {}};
    EXPECT_EQ(localeOf(session), "it_IT");
    session.system = {"", "=", "LC_TIME", "LC_TIME_X=fr_FR", "LC_TIME=zz_ZZ", "LANG=de_DE"};
    EXPECT_EQ(localeOf(session), "de_DE");
    session.system.emplace();
    EXPECT_EQ(localeOf(session), "en_US_POSIX") << "the system has none any longer";
}

} // namespace
} // namespace quorvel::freedesktop
