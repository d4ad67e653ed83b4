// The handler of the links, as the desktop starts it.
#include <gmock/gmock.h>
#include <unistd.h>

#include "tests/freedesktop/launch/quorvel_open_fixture.h"

namespace quorvel::freedesktop {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

std::string symlinkToQuorvelOpen() {
    static const std::filesystem::path link =
        std::filesystem::temp_directory_path() / ("links-" + std::to_string(getpid()));
    static const struct Removal {
        ~Removal() {
            std::error_code ignored;
            std::filesystem::remove(link, ignored);
        }
    } removal;
    std::error_code existing;
    std::filesystem::create_symlink(QUORVEL_OPEN, link, existing);
    return link.string();
}

TEST_F(QuorvelOpenTest, OpensEvolutionAtTheDayOfAnUnknownEvent) {
    install("org.gnome.Evolution", "%U");
    EXPECT_EQ(quorvelOpen({eventLink}).status, 0);
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("calendar:///?startdate=20140307T174500Z")));
}

TEST_F(QuorvelOpenTest, PrefersTheUsersChoice) {
    install("org.gnome.Evolution", "evolution %U");
    install("other", "other %U", "MimeType=text/calendar;");
    associate("text/calendar", "other");
    EXPECT_EQ(quorvelOpen({dayLink}).status, 0);
    EXPECT_THAT(started(1),
                ElementsAre(ElementsAre("evolution", "calendar:///?startdate=20140307T120000Z")));
    std::filesystem::remove(folder() / "applications/org.gnome.Evolution.desktop");
    std::filesystem::remove(record());
    EXPECT_EQ(quorvelOpen({dayLink}).status, 0);
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("other")));
}

TEST_F(QuorvelOpenTest, OpensGnomeCalendarAtTheDay) {
    install("org.gnome.Calendar", "calendar %U");
    EXPECT_EQ(quorvelOpen({eventLink}).status, 0);
    EXPECT_EQ(quorvelOpen({dayLink}).status, 0);
    const std::vector<std::string> arguments{"calendar", "--date", "03/07/14"};
    EXPECT_THAT(started(2), ElementsAre(arguments, arguments));
}

TEST_F(QuorvelOpenTest, PreservesTheWordsOfACommandLine) {
    install("org.gnome.Calendar", "run --command=gnome-calendar \"--env=A=b c\" "
                                  "org.gnome.Calendar @@u %U @@");
    EXPECT_EQ(quorvelOpen({dayLink}).status, 0);
    EXPECT_THAT(started(1),
                ElementsAre(ElementsAre("run", "--command=gnome-calendar", "--env=A=b c",
                                        "org.gnome.Calendar", "@@u", "@@", "--date", "03/07/14")));
}

TEST_F(QuorvelOpenTest, PassesItsTokenOnToAProgram) {
    install("org.gnome.Evolution", "$XDG_ACTIVATION_TOKEN $DESKTOP_STARTUP_ID");
    EXPECT_EQ(quorvelOpen({dayLink}, {{"XDG_ACTIVATION_TOKEN", "t"}}).status, 0);
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("t", "t")));
    EXPECT_EQ(quorvelOpen({dayLink}, {{"DESKTOP_STARTUP_ID", std::string(5000, 'x')}}).status, 0);
    EXPECT_THAT(started(2), ElementsAre(testing::_, ElementsAre("unset", "unset")));
}

TEST_F(QuorvelOpenTest, StartsTheProgramInTheFolderOfItsEntry) {
    const std::filesystem::path place = folder() / "place";
    std::filesystem::create_directories(place);
    write(folder() / "applications/org.gnome.Calendar.desktop",
          "[Desktop Entry]\nType=Application\nName=Calendar\nPath=" + place.string() +
              "\nExec=" RECORDER " here 0 calendar %U\n");
    EXPECT_EQ(quorvelOpen({dayLink}).status, 0);
    started(0);
    for (int i = 0; i < 500 && !std::filesystem::exists(place / "here"); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_TRUE(std::filesystem::exists(place / "here"));
}

TEST_F(QuorvelOpenTest, ReportsAnApplicationThatCannotBeStarted) {
    for (const char* name : {"org.gnome.Calendar", "org.gnome.Evolution"}) {
        write(folder() / "applications" / (std::string(name) + ".desktop"),
              "[Desktop Entry]\nType=Application\nName=x\nPath=/nonexistent/folder\nExec=" RECORDER
              " %U\n");
        const Outcome outcome = quorvelOpen({dayLink});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_THAT(outcome.errors,
                    StartsWith("quorvel-open: the application " + std::string(name) +
                               ".desktop could not be started ("));
        std::filesystem::remove(folder() / "applications" / (std::string(name) + ".desktop"));
    }
}

// What follows would start itself over and over.
TEST_F(QuorvelOpenTest, IsNoCalendarApplicationItself) {
    for (const char* name : {"org.quorvel.Open", "my-links", "org.gnome.Calendar"}) {
        for (const std::string& exec :
             {std::string(QUORVEL_OPEN), std::string("env A=b " QUORVEL_OPEN),
              std::string("sh -c 'exec " QUORVEL_OPEN " \"$1\"' sh"), symlinkToQuorvelOpen()}) {
            write(folder() / "applications" / (std::string(name) + ".desktop"),
                  "[Desktop Entry]\nType=Application\nName=x\nExec=" + exec +
                      " %u\nMimeType=text/calendar;\n");
            associate("text/calendar", name);
            const Outcome outcome = quorvelOpen({eventLink});
            EXPECT_EQ(outcome.status, 1) << name << ' ' << exec;
            EXPECT_THAT(outcome.errors, HasSubstr("there is no calendar application"));
        }
        std::filesystem::remove(folder() / "applications" / (std::string(name) + ".desktop"));
    }
}

TEST_F(QuorvelOpenTest, PassesItselfOverForAnother) {
    write(folder() / "applications/my-links.desktop",
          "[Desktop Entry]\nType=Application\nName=x\nExec=" QUORVEL_OPEN
          " %u\nMimeType=text/calendar;\n");
    install("other", "other %U", "MimeType=text/calendar;");
    write(folder() / "mimeapps.list", "[Default Applications]\ntext/calendar=my-links.desktop\n"
                                      "[Added Associations]\ntext/calendar=other.desktop\n");
    EXPECT_EQ(quorvelOpen({eventLink}).status, 0);
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("other")));
}

TEST_F(QuorvelOpenTest, ReportsThatThereIsNoCalendarApplication) {
    const Outcome outcome = quorvelOpen({eventLink});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.errors, "quorvel-open: there is no calendar application: install Evolution "
                              "or GNOME Calendar\n");
}

TEST_F(QuorvelOpenTest, ATextEditorIsNoCalendarApplication) {
    install("editor", "editor %U", "MimeType=text/plain;text/calendar;");
    write(folder() / "mimeapps.list", "[Default Applications]\ntext/plain=editor.desktop\n"
                                      "text/calendar=editor.desktop\n");
    EXPECT_EQ(quorvelOpen({eventLink}).status, 1);
    EXPECT_THAT(startedMeanwhile(), IsEmpty());
}

TEST_F(QuorvelOpenTest, AHostileLinkStaysOneArgumentOrIsRefused) {
    install("org.gnome.Evolution", "evolution %U");
    const std::string uids[] = {"a'b", "a;touch x", "$(touch x)", "`touch x`", "a\nb",
                                "a b", "\"a\"",     "%0A%20%00",  "../../etc", "--help",
                                "%u",  "a&b|c>d",   "*?[a]",      "\xFF\xFE",  "\\"};
    for (const std::string& uid : uids) {
        const Outcome outcome =
            quorvelOpen({"x-apple-calevent://office/" + uid + "?o=415907100.0"});
        if (outcome.status == 0) {
            EXPECT_THAT(started(1), ElementsAre(ElementsAre(
                                        "evolution", "calendar:///?startdate=20140307T174500Z")))
                << uid;
        } else {
            EXPECT_EQ(outcome.status, 2) << uid;
            EXPECT_THAT(outcome.errors, HasSubstr("it holds characters that no link may hold"));
            EXPECT_THAT(startedMeanwhile(), IsEmpty());
        }
        std::filesystem::remove(record());
    }
    for (const std::string& link :
         {"x-apple-calevent://office/" + std::string(100000, 'x') + "?o=1.0",
          std::string("file:///etc/passwd"), std::string("calendar:///?startdate=20140307T174500Z"),
          std::string("X-APPLE-CALEVENT://office/42?o=1.0"),
          std::string("x-apple-calevent:office/42?o=1.0")}) {
        EXPECT_EQ(quorvelOpen({link}).status, 2) << link.substr(0, 40);
    }
    EXPECT_THAT(startedMeanwhile(), IsEmpty());
}

TEST_F(QuorvelOpenTest, RefusesWrongUsage) {
    install("org.gnome.Evolution", "%U");
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{},
                                               {eventLink, eventLink},
                                               {"--nonsense"},
                                               {"http://example.org/"},
                                               {"x-apple-calevent://a"},
                                               {"fantastical2://show?date=2014-2-30"},
                                               {""}}) {
        const Outcome outcome = quorvelOpen(arguments);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_THAT(outcome.errors, HasSubstr("quorvel-open: "));
        EXPECT_THAT(outcome.errors, HasSubstr("see 'quorvel-open --help'"));
    }
    EXPECT_THAT(startedMeanwhile(), IsEmpty());
}

TEST_F(QuorvelOpenTest, ExplainsItself) {
    EXPECT_THAT(quorvelOpen({"--help"}).output, HasSubstr("Usage: quorvel-open LINK"));
    EXPECT_THAT(quorvelOpen({"--version"}).output, HasSubstr("quorvel-open "));
}

} // namespace
} // namespace quorvel::freedesktop
