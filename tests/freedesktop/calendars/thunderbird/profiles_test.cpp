// Where Thunderbird's profiles are found.
#include "freedesktop/calendars/thunderbird/profiles.h"

#include <cstdlib>

#include "tests/freedesktop/calendars/thunderbird/profile_fixture.h"

namespace quorvel::freedesktop::thunderbird {
namespace {

class ProfilesTest : public StoreFixture {
protected:
    void SetUp() override {
        StoreFixture::SetUp();
        m_home = std::getenv("HOME") != nullptr ? std::getenv("HOME") : "";
        setenv("HOME", folder.c_str(), 1);
    }
    void TearDown() override {
        setenv("HOME", m_home.c_str(), 1);
        StoreFixture::TearDown();
    }
    // A list of one profile in that folder at home, and its preferences, changed that many seconds
    // ago.
    void makeProfile(const std::string& place, int age) const {
        write(place + "/profiles.ini", "[InstallX]\nDefault=p.default\n");
        write(place + "/p.default/prefs.js", "");
        const auto preferences = folder / place / "p.default/prefs.js";
        std::filesystem::last_write_time(
            preferences, std::filesystem::last_write_time(preferences) - std::chrono::seconds(age));
    }
    std::vector<std::string> found(const std::string& name = "thunderbird:") const {
        std::vector<std::string> result;
        for (const std::string& profile : profilesOf(CalendarSource::at(name))) {
            result.push_back(profile.starts_with(folder.string())
                                 ? profile.substr(folder.string().size() + 1)
                                 : profile);
        }
        return result;
    }

private:
    std::string m_home;
};

using Folders = std::vector<std::string>;

TEST_F(ProfilesTest, AreFoundInEveryPackagesPlaceTheMostRecentlyUsedFirst) {
    EXPECT_EQ(found(), Folders{});
    makeProfile(".thunderbird", 300);
    makeProfile(".var/app/org.mozilla.Thunderbird/.thunderbird", 100);
    makeProfile("snap/thunderbird/common/.thunderbird", 200);
    EXPECT_EQ(found(), (Folders{".var/app/org.mozilla.Thunderbird/.thunderbird/p.default",
                                "snap/thunderbird/common/.thunderbird/p.default",
                                ".thunderbird/p.default"}));
}

TEST_F(ProfilesTest, AListedProfileThatDoesNotExistIsNone) {
    write(".thunderbird/profiles.ini", "[InstallX]\nDefault=p.default\n");
    EXPECT_EQ(found(), Folders{});
}

TEST_F(ProfilesTest, ASourceMayNameOne) {
    EXPECT_EQ(found("thunderbird:/some/where"), Folders{"/some/where"});
    EXPECT_EQ(found("thunderbird:~/p"), Folders{"p"});
}

TEST_F(ProfilesTest, AMissingProfileIsNamed) {
    const auto problem = [](const std::string& name) {
        const auto check = checkProfiles(CalendarSource::at(name));
        return check ? "none" : check.error().english();
    };
    EXPECT_EQ(problem("thunderbird:"), "Thunderbird has no profile here");
    EXPECT_EQ(problem("thunderbird:" + folder.string()),
              "there is no file prefs.js in that folder");
    makeProfile(".thunderbird", 0);
    EXPECT_EQ(problem("thunderbird:"), "none");
    EXPECT_EQ(problem("thunderbird:~/.thunderbird/p.default"), "none");
}

TEST_F(ProfilesTest, OfTwoCopiesOfACalendarTheMoreRecentlyUsedCounts) {
    for (const std::string place : {".thunderbird", "snap/thunderbird/common/.thunderbird"}) {
        makeProfile(place, place.starts_with("snap") ? 0 : 100);
        const std::string profile = (folder / place / "p.default").string();
        const auto preferences = std::filesystem::path(profile) / "prefs.js";
        const auto time = std::filesystem::last_write_time(preferences);
        std::ofstream(preferences) << "user_pref(\"calendar.registry.home.name\", \"" << place
                                   << "\");\nuser_pref(\"calendar.registry.home.type\","
                                      " \"storage\");\n";
        std::filesystem::last_write_time(preferences, time);
    }
    stores.setSources({CalendarSource::at("thunderbird:")});
    EXPECT_EQ(titles(), "snap/thunderbird/common/.thunderbird");
}

TEST_F(ProfilesTest, WatchesWhatChangesAndNotWhatSqliteSharesBetweenProcesses) {
    makeProfile(".thunderbird", 0);
    std::string watched;
    for (const ProfileFolder& one : foldersToWatch(CalendarSource::at("thunderbird:"))) {
        watched += one.path.substr(folder.string().size() + 1) + ":";
        for (const char* name :
             {"profiles.ini", "prefs.js", "prefs-1.js", "local.sqlite", "local.sqlite-wal",
              "local.sqlite-shm", "cache.sqlite", "cache.sqlite-journal", "deleted.sqlite"}) {
            watched += one.matters(name) ? " " + std::string(name) : "";
        }
        watched += "\n";
    }
    EXPECT_EQ(watched, ".thunderbird: profiles.ini\n"
                       ".var/app/org.mozilla.Thunderbird/.thunderbird: profiles.ini\n"
                       "snap/thunderbird/common/.thunderbird: profiles.ini\n"
                       ".thunderbird/p.default/calendar-data: local.sqlite local.sqlite-wal"
                       " cache.sqlite cache.sqlite-journal\n"
                       ".thunderbird/p.default: prefs.js\n");
}

} // namespace
} // namespace quorvel::freedesktop::thunderbird
