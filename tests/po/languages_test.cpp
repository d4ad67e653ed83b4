// The programs in each language, as a user starts them.
#include <gmock/gmock.h>

#include <ostream>

#include "tests/app/command_fixture.h"

namespace quorvel::app {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

struct Language {
    const char* locale;
    const char* usage;          // the help begins so
    const char* help;           // a part of it
    const char* unknownCommand; // the error of `quorvel frob`
    const char* noLink;         // the error of `quorvel-open`
    const char* nothing;        // what `agenda` prints without events
    const char* twoMistakes;    // in the settings
};

void PrintTo(const Language& language, std::ostream* stream) {
    *stream << language.locale;
}

constexpr Language languages[] = {
    {"ar_EG", "الاستخدام: quorvel COMMAND", "خيارات كل الأوامر",
     "quorvel: أمر غير معروف «frob»: انظر «quorvel --help»\n",
     "quorvel-open: لا يوجد رابط: انظر «quorvel-open --help»\n", "لا توجد أحداث.\n",
     "في الإعدادات خطآن (2)"},
    {"de_DE", "Aufruf: quorvel COMMAND", "die Kalender auflisten",
     "quorvel: unbekannter Befehl „frob“: siehe „quorvel --help“\n",
     "quorvel-open: kein Link angegeben: siehe „quorvel-open --help“\n", "Keine Termine.\n",
     "2 Fehler sind in den Einstellungen"},
    {"es_ES", "Uso: quorvel COMMAND", "enumerar los calendarios",
     "quorvel: orden desconocida «frob»: véase «quorvel --help»\n",
     "quorvel-open: no hay ningún enlace: véase «quorvel-open --help»\n", "No hay eventos.\n",
     "hay 2 errores en los ajustes"},
    {"fr_FR", "Usage\u00A0: quorvel COMMAND", "lister les agendas",
     "quorvel: commande inconnue «\u00A0frob\u00A0»: voir «\u00A0quorvel --help\u00A0»\n",
     "quorvel-open: aucun lien: voir «\u00A0quorvel-open --help\u00A0»\n", "Aucun événement.\n",
     "2 erreurs se trouvent dans les réglages"},
    {"ja_JP", "使い方: quorvel COMMAND", "カレンダーを一覧表示する",
     "quorvel: 不明なコマンド「frob」です: 「quorvel --help」をご覧ください\n",
     "quorvel-open: リンクがありません: 「quorvel-open --help」をご覧ください\n",
     "予定はありません。\n", "設定に誤りが 2 個あります"},
};

class LanguagesTest : public CommandTest, public testing::WithParamInterface<Language> {
protected:
    LanguagesTest() {
        m_environment["LOCPATH"] = QUORVEL_TEST_LOCALES;
        m_environment["LANG"] = std::string(GetParam().locale) + ".UTF-8";
        // The system's newlocale() loses the folders of LOCPATH, which only tests set.
        const auto suppressions = write("leaks", "leak:argz_add_sep\n");
        m_environment["LSAN_OPTIONS"] += ":suppressions=" + suppressions.string();
        writeCalendar("home", "");
    }
};

TEST_P(LanguagesTest, HelpIsInTheUsersOne) {
    const RunResult help = run({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.output, StartsWith(GetParam().usage));
    EXPECT_THAT(help.output, HasSubstr(GetParam().help));
    EXPECT_THAT(run({"agenda", "--help"}).output, Not(HasSubstr("Options of all commands")));
}

TEST_P(LanguagesTest, ErrorsAreInTheUsersOne) {
    const RunResult unknown = run({"frob"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.errors, GetParam().unknownCommand);
    EXPECT_EQ(runProgram(QUORVEL_OPEN_PROGRAM, {}).errors, GetParam().noLink);
}

TEST_P(LanguagesTest, AnOptionChoosesAnother) {
    m_environment["LANG"] = "de_DE.UTF-8";
    m_environment["LANGUAGE"] = "fr:de";
    EXPECT_EQ(run({"frob", "--locale", GetParam().locale}).errors, GetParam().unknownCommand);
    EXPECT_EQ(run({std::string("--locale=") + GetParam().locale, "frob"}).errors,
              GetParam().unknownCommand);
    EXPECT_EQ(run({"frob", "--locale", "en_GB"}).errors,
              "quorvel: unknown command 'frob': see 'quorvel --help'\n");
}

TEST_P(LanguagesTest, APlainEnvironmentIsEnglish) {
    m_environment["LANG"] = "C";
    EXPECT_EQ(run({"frob"}).errors, "quorvel: unknown command 'frob': see 'quorvel --help'\n");
    EXPECT_THAT(run({"--help"}).output, StartsWith("Usage: quorvel COMMAND"));
}

TEST_P(LanguagesTest, AnEmptyAgendaIsInTheUsersOneAndItsJsonIsNot) {
    EXPECT_EQ(runHere({"agenda", "--locale", GetParam().locale}).output, GetParam().nothing);
    EXPECT_EQ(runHere({"agenda", "--json", "--locale", GetParam().locale}).json(), Json::array());
}

TEST_P(LanguagesTest, CountedThingsHaveTheirPlural) {
    writeSettings("<key>textSize</key><integer>999</integer>"
                  "<key>dateTextSize</key><integer>999</integer>");
    EXPECT_THAT(run({"settings", "--preferences", preferences()}).errors,
                HasSubstr(GetParam().twoMistakes));
}

// What is stored in the index is read by programs in other languages.
TEST_P(LanguagesTest, WhatIsWrongWithACalendarIsInTheLanguageOfTheReader) {
    write("calendars/home.ics", "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:1\r\nEND:VEVENT\r\n"
                                "END:VCALENDAR\r\n");
    const std::string english = "an event without DTSTART is left out";
    EXPECT_THAT(runHere({"agenda", "--locale", "en_US"}).errors, HasSubstr(english));
    const std::string here = runHere({"agenda", "--locale", GetParam().locale}).errors;
    EXPECT_THAT(here, HasSubstr("home.ics:2: "));
    EXPECT_THAT(here, Not(HasSubstr(english)));
    EXPECT_THAT(runHere({"agenda", "--locale", "en_US"}).errors, HasSubstr(english));
}

// Numbers of options and settings have a point in every language.
TEST_P(LanguagesTest, NumbersAreWrittenTheSameEverywhere) {
    EXPECT_EQ(runHere({"agenda", "--width", "320.5"}).status, 0);
    EXPECT_EQ(runHere({"agenda", "--width", "320,5"}).status, 2);
}

INSTANTIATE_TEST_SUITE_P(Each, LanguagesTest, testing::ValuesIn(languages),
                         [](const auto& language) { return std::string(language.param.locale); });

} // namespace
} // namespace quorvel::app
