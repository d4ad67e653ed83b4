// The handler of the links, as the desktop starts it.
#include <array>
#include <cstdio>

#include <gmock/gmock.h>
#include <sys/wait.h>

#include "tests/freedesktop/launch/launch_fixture.h"

namespace quorvel::freedesktop {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct Outcome {
    int status = 0;
    std::string output;
    std::string errors;
};

Outcome quorvelOpen(const std::vector<std::string>& arguments) {
    std::vector<const char*> argv{QUORVEL_OPEN};
    for (const std::string& argument : arguments) {
        argv.push_back(argument.c_str());
    }
    argv.push_back(nullptr);
    GSubprocess* process =
        g_subprocess_newv(argv.data(),
                          static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDOUT_PIPE |
                                                        G_SUBPROCESS_FLAGS_STDERR_PIPE),
                          nullptr);
    char* output = nullptr;
    char* errors = nullptr;
    g_subprocess_communicate_utf8(process, nullptr, nullptr, &output, &errors, nullptr);
    const Outcome outcome{g_subprocess_get_exit_status(process), output, errors};
    g_free(output);
    g_free(errors);
    g_object_unref(process);
    return outcome;
}

constexpr const char* eventLink = "x-apple-calevent://work/42?o=415907100.0";

class QuorvelOpenTest : public LaunchTest {};

TEST_F(QuorvelOpenTest, TellsEvolutionTheDayOfAnEventThatItDoesNotKnow) {
    install("org.gnome.Evolution", "%U");
    EXPECT_EQ(quorvelOpen({eventLink}).status, 0);
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("calendar:///?startdate=20140307T174500Z")));
}

TEST_F(QuorvelOpenTest, PrefersTheUsersChoice) {
    install("org.gnome.Evolution", "evolution %U");
    install("other", "other %U", "MimeType=text/calendar;");
    associate("text/calendar", "other");
    EXPECT_EQ(quorvelOpen({"fantastical2://show?date=2014-3-7"}).status, 0);
    EXPECT_THAT(started(1),
                ElementsAre(ElementsAre("evolution", "calendar:///?startdate=20140307T120000Z")));
    std::filesystem::remove(folder() / "applications/org.gnome.Evolution.desktop");
    std::filesystem::remove(record());
    EXPECT_EQ(quorvelOpen({"fantastical2://show?date=2014-3-7"}).status, 0);
    EXPECT_THAT(started(1), ElementsAre(ElementsAre("other")));
}

TEST_F(QuorvelOpenTest, SaysWhereThereIsNoCalendarApplication) {
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
