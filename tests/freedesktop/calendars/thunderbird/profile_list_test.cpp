// Which profiles Thunderbird starts with.
#include "freedesktop/calendars/thunderbird/profile_list.h"

#include <gtest/gtest.h>

namespace quorvel::freedesktop::thunderbird {
namespace {

using Folders = std::vector<std::string>;

TEST(ProfileList, ThatOfTheInstallationGoesBeforeTheOldDefault) {
    EXPECT_EQ(
        usedProfiles("[Profile1]\r\nName=default\r\nIsRelative=1\r\nPath=a.default\r\n"
                     "Default=1\r\n\r\n"
                     "[InstallFDC34C9F024745EB]\r\nDefault=b.default-esr\r\nLocked=1\r\n\r\n"
                     "[Profile0]\r\nName=default-esr\r\nIsRelative=1\r\nPath=b.default-esr\r\n"
                     "\r\n[General]\r\nStartWithLastProfile=1\r\n",
                     "/home/me/.thunderbird"),
        Folders{"/home/me/.thunderbird/b.default-esr"});
}

TEST(ProfileList, EachInstallationHasItsOwn) {
    EXPECT_EQ(usedProfiles("[InstallA]\nDefault=a\n[InstallB]\nDefault=/else/b\n"
                           "[InstallC]\nDefault=a\n",
                           "/t"),
              (Folders{"/t/a", "/else/b"}));
}

TEST(ProfileList, WithoutInstallationsTheDefaultCounts) {
    EXPECT_EQ(usedProfiles("[Profile0]\nPath=one\n[Profile1]\nPath=two\nDefault=1\n", "/t"),
              Folders{"/t/two"});
    EXPECT_EQ(usedProfiles("[Profile0]\nPath=one\n[Profile1]\nPath=two\n", "/t"),
              Folders{"/t/one"});
    EXPECT_EQ(usedProfiles("[Profile0]\nIsRelative=0\nPath=/far/one", "/t"), Folders{"/far/one"});
}

TEST(ProfileList, AnythingElseNamesNone) {
    for (const char* list :
         {"", "\n\n", "Default=a\n", "[Install\nDefault=a",
          "[InstallA]\nDefault=", "[Profile0]\nName=x\n", "[]\n=\n==\n[", "\xFF\xFE["}) {
        EXPECT_EQ(usedProfiles(list, "/t"), Folders{}) << list;
    }
    std::string many;
    for (int index = 0; index < 1000; ++index) {
        many += "[Install" + std::to_string(index) + "]\nDefault=p" + std::to_string(index) + "\n";
    }
    EXPECT_EQ(usedProfiles(many, "/t").size(), 20U);
}

} // namespace
} // namespace quorvel::freedesktop::thunderbird
