// No text from a calendar, a file name, the settings, the command line or the environment can
// control the terminal or forge a line: tests every output with every kind of such text.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "tests/app/command_fixture.h"

namespace quorvel::app {
namespace {

namespace fs = std::filesystem;

struct HostileText {
    const char* name;
    std::string text;
};

void PrintTo(const HostileText& hostile, std::ostream* stream) {
    *stream << hostile.name;
}

// Texts with line ends contain a word that must not begin a line.
std::vector<HostileText> hostileTexts() {
    return {{"Escape", "a\x1b[2J\x1b]0;title\x07z"},
            {"Backspace", "abc\b\b\bz"},
            {"Delete", "a\x7fz"},
            {"C1AsUtf8", "a\xC2\x9B"
                         "31m\xC2\x90z"},
            {"C1AsByte", "a\x9B"
                         "31m\xFFz"},
            {"Newline", "a\nFORGED"},
            {"CarriageReturn", "a\rFORGED"},
            {"VerticalTab", "a\vFORGED"},
            {"FormFeed", "a\fFORGED"},
            {"NextLine", "a\xC2\x85"
                         "FORGED"},
            {"LineSeparator", "a\u2028FORGED"},
            {"ParagraphSeparator", "a\u2029FORGED"},
            {"Override", "a\u202Etxet\u202Cz"},
            {"Embedding", "a\u202Btxet\u202Az\u202D"},
            {"Isolate", "a\u2066b\u2067c\u2068d\u2069z"}};
}

// Control characters, line ends and changes of the writing direction, in UTF-8.
std::vector<std::string> forbiddenCharacters() {
    std::vector<std::string> forbidden{"\u2028", "\u2029", "\u202A", "\u202B", "\u202C", "\u202D",
                                       "\u202E", "\u2066", "\u2067", "\u2068", "\u2069", "\x7f"};
    for (char control = 0; control < 0x20; ++control) {
        if (control != '\n') {
            forbidden.emplace_back(1, control);
        }
    }
    for (int control = 0x80; control < 0xA0; ++control) {
        forbidden.push_back({'\xC2', static_cast<char>(control)});
    }
    return forbidden;
}

bool isUtf8(const std::string& text) {
    try {
        return !Json(text).dump().empty();
    } catch (const Json::type_error&) {
        return false;
    }
}

// For the messages of failed tests, which a terminal prints too.
std::string escaped(const std::string& text) {
    constexpr std::size_t longest = 1000; // bytes
    return Json(text.substr(0, longest)).dump(-1, ' ', true, Json::error_handler_t::replace);
}

void expectHarmless(const std::string& text, std::string_view what) {
    EXPECT_TRUE(isUtf8(text)) << what << ": " << escaped(text);
    for (const std::string& character : forbiddenCharacters()) {
        EXPECT_EQ(text.find(character), std::string::npos) << what << ": " << escaped(text);
    }
    EXPECT_FALSE(text.starts_with("FORGED")) << what << ": " << escaped(text);
    EXPECT_EQ(text.find("\nFORGED"), std::string::npos) << what << ": " << escaped(text);
}

// A JSON document escapes control characters and contains all others unchanged.
void expectHarmlessDocument(const std::string& text, std::string_view what) {
    EXPECT_TRUE(isUtf8(text)) << what;
    EXPECT_FALSE(Json::parse(text, nullptr, false).is_discarded()) << what << ": " << escaped(text);
    for (const std::string& character : forbiddenCharacters()) {
        if (character.size() < 3) {
            EXPECT_EQ(text.find(character), std::string::npos) << what << ": " << escaped(text);
        }
    }
}

std::string textOfFile(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

// A value of type TEXT, with newlines as "\\n".
std::string calendarText(const std::string& text) {
    std::string value;
    for (const char character : text) {
        value += character == '\n' ? "\\n" : std::string(1, character);
    }
    return value;
}

class HostileTextTest : public CommandTest, public testing::WithParamInterface<HostileText> {
protected:
    static constexpr const char* times = "DTSTART:20260310T120000Z\r\nDTEND:20260310T130000Z";

    static const std::string& hostile() { return GetParam().text; }

    bool isFileName() const { return hostile().find('/') == std::string::npos; }

    // Puts the text into the calendar's name and colour, into properties of an event, and into
    // values that cause problem reports.
    void writeHostileCalendar(const std::string& name) const {
        const std::string text = calendarText(hostile());
        write("calendars/" + name + ".ics",
              "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nX-WR-CALNAME:" + text +
                  "\r\nX-APPLE-CALENDAR-COLOR:" + text + "\r\n" +
                  event("uid" + text, "title" + text, times, "place" + text) +
                  event("date" + text, "b", "DTSTART:" + text) +
                  event("rule" + text, "c", std::string(times) + "\r\nRRULE:FREQ=" + text) +
                  event("zone" + text, "d", "DTSTART;TZID=" + text + ":20260310T140000") + "line" +
                  text + "\r\nEND:VCALENDAR\r\n");
    }

    void expectHarmlessRun(const std::vector<std::string>& arguments) const {
        const RunResult result = runHere(arguments);
        const std::string what = arguments.front() + ' ' + arguments.back();
        EXPECT_NE(result.status, -1) << what;
        expectHarmless(result.output, what);
        expectHarmless(result.errors, what);
    }

    // Expects an error message of one line that begins with the program's name.
    void expectHarmlessError(const std::vector<std::string>& arguments,
                             const std::string& program = "quorvel") const {
        const RunResult result = runHere(arguments);
        const std::string what = arguments.front() + ' ' + arguments[arguments.size() - 2];
        EXPECT_GT(result.status, 0) << what;
        EXPECT_EQ(result.output, "") << what;
        EXPECT_TRUE(result.errors.starts_with(program + ": "))
            << what << ": " << escaped(result.errors);
        EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1)
            << what << ": " << escaped(result.errors);
        expectHarmless(result.errors, what);
    }
};

TEST_P(HostileTextTest, InACalendar) {
    writeHostileCalendar("Work");
    writeSettings("<key>displayLocation</key><true/>");
    const RunResult agenda = runHere({"agenda"});
    EXPECT_NE(agenda.output.find("title"), std::string::npos) << escaped(agenda.errors);
    EXPECT_NE(agenda.output.find("place"), std::string::npos) << escaped(agenda.errors);
    EXPECT_NE(agenda.errors.find("quorvel: "), std::string::npos);
    expectHarmless(agenda.output, "agenda");
    expectHarmless(agenda.errors, "agenda's errors");
    const RunResult calendars = runHere({"calendars"});
    EXPECT_EQ(std::ranges::count(calendars.output, '\n'), 2) << escaped(calendars.output);
    expectHarmless(calendars.output, "calendars");
    expectHarmless(calendars.errors, "errors of calendars");
    expectHarmlessRun({"snapshot", "-o", path("x.png").string()});
}

TEST_P(HostileTextTest, InAFileName) {
    ASSERT_TRUE(isFileName());
    const std::string name = "file" + hostile();
    writeHostileCalendar(name);
    write("calendars/other" + hostile() + ".ics", "garbage");
    const RunResult calendars = runHere({"calendars"});
    EXPECT_NE(calendars.output.find("file"), std::string::npos) << escaped(calendars.errors);
    expectHarmless(calendars.output, "calendars");
    EXPECT_NE(calendars.errors.find("other"), std::string::npos) << escaped(calendars.errors);
    expectHarmless(calendars.errors, "errors of calendars");
    expectHarmlessRun({"agenda", "--calendars", path("calendars/" + name + ".ics").string()});
    expectHarmlessRun({"calendars", "--calendars", path("calendars/" + name + ".ics").string()});
    fs::create_directory(path("folder" + hostile()));
    write("folder" + hostile() + "/a.ics", "garbage");
    expectHarmlessRun({"calendars", "--calendars", path("folder" + hostile()).string()});
}

TEST_P(HostileTextTest, InADocument) {
    writeHostileCalendar("Work");
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"agenda", "--json"},
          {"calendars", "--json"},
          {"inspect", "--do", "present"},
          {"inspect", "--do", "preferences:" + hostile()}}) {
        const RunResult result = runHere(arguments);
        EXPECT_EQ(result.status, 0) << arguments.front();
        expectHarmlessDocument(result.output, arguments.front());
        expectHarmless(result.errors, arguments.front());
    }
    if (isUtf8(hostile()) && hostile().find('\r') == std::string::npos) {
        const Json rows = runHere({"agenda", "--json"}).json();
        EXPECT_TRUE(std::ranges::any_of(rows, [](const Json& row) {
            return row.at("title") ==
                   "title" + hostile(); // the document contains the text unchanged
        })) << escaped(rows.dump());
    }
}

TEST_P(HostileTextTest, OnTheCommandLine) {
    writeCalendar("Work", event("good", "Good", times));
    const std::string picture = path("x.png").string();
    for (const char* option :
         {"--timezone", "--locale", "--font", "--now", "--controller", "--calendars", "--bundle",
          "--width", "--calendar-wait", "--foundation-version"}) {
        expectHarmlessError({"agenda", option, hostile()});
    }
    expectHarmlessError({"agenda", "--log", path("missing").string() + "/" + hostile()});
    expectHarmlessError({"snapshot", "-o", hostile()});
    expectHarmlessError({"snapshot", "-o", path("missing/" + hostile() + ".png").string()});
    expectHarmlessError({"snapshot", "-o", picture, "--background", hostile()});
    expectHarmlessError({"snapshot", "-o", picture, "--scale", hostile()});
    for (const char* step : {"", "now:", "calendars:", "pull:", "layout:1,", "drag:", "tap:1,"}) {
        expectHarmlessError({"inspect", "--do", step + hostile()});
    }
    expectHarmlessError({"inspect", "--" + hostile(), "x"});
    expectHarmlessError({"agenda", "--json=" + hostile(), "x"});
    expectHarmlessError({hostile(), "--json"});
    expectHarmlessError({"agenda", hostile(), "--json"});
    expectHarmlessError({"show", "--timezone", hostile()});
}

TEST_P(HostileTextTest, InTheLog) {
    writeHostileCalendar("Work");
    if (isUtf8(hostile()) && std::ranges::none_of(hostile(), [](char character) {
            return static_cast<unsigned char>(character) < 0x20 && character != '\n' &&
                   character != '\r';
        })) { // XML allows no other control characters
        writeSelection({"identifier" + hostile()});
    } else {
        write("preferences/org.quorvel.quorvel.calendars.plist",
              "(\"identifier" + hostile() + "\")");
    }
    writeSettings("<key>onlySelectedCalendars</key><false/><key>iconFile</key><string>/none" +
                  std::string("</string>"));
    const fs::path log = path("log");
    const RunResult result = runHere({"agenda", "--verbose", "--log", log.string()});
    expectHarmless(result.errors, "--verbose");
    expectHarmless(textOfFile(log), "--log");
    std::string unreadable = "pre" + hostile();
    write(unreadable + "/org.quorvel.quorvelprefs.plist", "<plist><dict><ke");
    const RunResult truncated = runHere(
        {"agenda", "--verbose", "--log", log.string(), "--preferences", path(unreadable).string()});
    EXPECT_NE(truncated.errors.find("org.quorvel.quorvelprefs.plist"), std::string::npos);
    expectHarmless(truncated.errors, "--verbose");
    // Each message is one line that begins with its time.
    const std::string lines = textOfFile(log);
    EXPECT_FALSE(lines.empty());
    expectHarmless(lines, "--log");
    for (std::size_t start = 0; start < lines.size(); start = lines.find('\n', start) + 1) {
        EXPECT_EQ(lines.substr(start, 2), "20") << escaped(lines);
    }
}

TEST_P(HostileTextTest, InTheSettings) {
    std::string quoted;
    for (const char c : hostile()) {
        quoted += std::string(c == '"' || c == '\\' ? "\\" : "") + c;
    }
    write("preferences/org.quorvel.quorvelprefs.plist",
          "{ customLaunchAppBundleID = \"" + quoted + "\"; iconFile = \"/none" + quoted +
              "\"; \"key" + quoted + "\" = 1; onlySelectedCalendars = NO; }");
    write("preferences/org.quorvel.quorvel.calendars.plist", "(\"id" + quoted + "\")");
    expectHarmlessRun({"settings"});
    expectHarmlessRun({"settings", "customLaunchAppBundleID"});
    expectHarmlessRun({"settings", "--check"});
    expectHarmlessRun({"settings", "calendars"});
    expectHarmlessDocument(runHere({"settings", "--json"}).output, "settings --json");
    expectHarmlessError({"settings", hostile() + "x"});
    expectHarmlessError({"settings", "textSize", hostile() + "x"});
    expectHarmlessError({"settings", "textSize", "1", hostile() + "x"});
    expectHarmlessError({"settings", "--reset", hostile() + "x"});
    expectHarmlessError({"settings", "calendars", "--choose", hostile() + "x"});
}

TEST_P(HostileTextTest, InABundle) {
    const std::string folder = path("Other" + hostile() + ".bundle").string();
    const auto expectBundleError = [&](const std::string& executable) {
        write("Other" + hostile() + ".bundle/Info.plist", "{CFBundleExecutable = \"" + executable +
                                                              "\"; NSPrincipalClass = \"X" +
                                                              hostile() + "\";}");
        expectHarmlessError({"agenda", "--bundle", folder});
    };
    expectBundleError("a" + hostile());
    expectBundleError("../a" + hostile());
    write("Other" + hostile() + ".bundle/Other.so", "no shared object");
    expectBundleError("Other.so");
}

TEST_P(HostileTextTest, InTheEnvironment) {
    writeCalendar("Work", event("good", "Good", times));
    for (const char* name :
         {"LANG", "LC_ALL", "LC_TIME", "TZ", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME",
          "DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR", "GSETTINGS_BACKEND", "GIO_USE_VFS"}) {
        const auto before = m_environment;
        m_environment[name] = "/" + hostile();
        if (std::string_view(name) == "GSETTINGS_BACKEND" ||
            std::string_view(name) == "GIO_USE_VFS") {
            m_environment["DBUS_SESSION_BUS_ADDRESS"] = "disabled:";
        }
        const RunResult result = run({"agenda", "--verbose", "--log", path("log").string()});
        expectHarmless(result.output, name);
        expectHarmless(result.errors, name);
        m_environment = before;
    }
}

TEST_P(HostileTextTest, InAMessageOfALibrary) {
    // The toolkit reports a missing module before it opens a display.
    m_environment["GTK_MODULES"] = "module" + hostile();
    const RunResult result = runHere({"show"});
    EXPECT_GT(result.status, 0);
    EXPECT_NE(result.errors.find("module"), std::string::npos) << escaped(result.errors);
    expectHarmless(result.errors, "show");
}

TEST_P(HostileTextTest, InALink) {
    for (const std::string& link :
         {hostile(), "x-apple-calevent://" + hostile(), "fantastical2://show?date=" + hostile()}) {
        const RunResult result = runProgram(QUORVEL_OPEN_PROGRAM, {link});
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1) << escaped(result.errors);
        expectHarmless(result.errors, "quorvel-open");
    }
}

// The application is installed but cannot be started, as its interpreter is missing.
TEST_P(HostileTextTest, InTheNameOfAnApplication) {
    const fs::path program = write("program" + hostile(), "#!/none\n");
    fs::permissions(program, fs::perms::owner_all);
    write("home/applications/org.gnome.Evolution.desktop",
          "[Desktop Entry]\nType=Application\nName=Evolution\nExec=\"" +
              calendarText(program.string()) + "\" %U\n");
    m_environment["XDG_DATA_HOME"] = path("home").string();
    m_environment["XDG_DATA_DIRS"] = path("home").string();
    m_environment["DBUS_SESSION_BUS_ADDRESS"] = "disabled:";
    const RunResult result =
        runProgram(QUORVEL_OPEN_PROGRAM, {"fantastical2://show?date=2026-3-10"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1) << escaped(result.errors);
    expectHarmless(result.errors, "quorvel-open");
}

INSTANTIATE_TEST_SUITE_P(Texts, HostileTextTest, testing::ValuesIn(hostileTexts()),
                         [](const auto& instance) { return instance.param.name; });

class HarmlessTextTest : public CommandTest {};

// Direction marks and joiners do not reorder other text; languages and emoji need them.
TEST_F(HarmlessTextTest, IsUnchanged) {
    const std::vector<std::string> titles{
        "\u05E4\u05D2\u05D9\u05E9\u05D4\u200F (A\u200E)",      // with marks of direction
        "\u0645\u06CC\u200C\u062E\u0648\u0627\u0647\u0645",    // Persian, with a non-joiner
        "\u061C\u0645\u0648\u0639\u062F",                      // an Arabic letter mark
        "\U0001F468\u200D\U0001F469\u200D\U0001F467\uFE0F",    // a family
        "\U0001F3F4\U000E0067\U000E0062\U000E0065\U000E007F"}; // a flag of tags
    for (const std::string& title : titles) {
        writeCalendar("Work", event("1", title, "DTSTART:20260310T120000Z"));
        EXPECT_EQ(runHere({"agenda"}).output, "12:00  " + title + "\n");
        EXPECT_EQ(runHere({"agenda", "--json"}).json().at(0).at("title"), title);
    }
}

} // namespace
} // namespace quorvel::app
