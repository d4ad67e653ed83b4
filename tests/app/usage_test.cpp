// The error messages and exit statuses for wrong usage and for files that cannot be read or
// written.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/app/command_fixture.h"

namespace quorvel::app {
namespace {

namespace fs = std::filesystem;

class UsageTest : public CommandTest {
protected:
    void expectError(const RunResult& result, int status, const std::string& part) const {
        EXPECT_EQ(result.status, status) << result.errors;
        EXPECT_EQ(result.output, "");
        EXPECT_TRUE(result.errors.starts_with("quorvel: ")) << result.errors;
        EXPECT_NE(result.errors.find(part), std::string::npos) << result.errors;
        EXPECT_EQ(std::ranges::count(result.errors, '\n'), 1) << result.errors;
    }
};

TEST_F(UsageTest, EveryWrongArgumentEndsWithTwoAndOneLine) {
    expectError(runHere({"agenda", "--wrong"}), 2, "'--wrong'");
    expectError(run({}), 2, "no command");
    expectError(run({"shown"}), 2, "'shown'");
    expectError(runHere({"agenda", "--timezone", "Mars/Olympus"}), 2, "'Mars/Olympus'");
    expectError(runHere({"agenda", "--timezone", "../../etc/passwd"}), 2, "time zone");
    expectError(runHere({"agenda", "--locale", "xx_YY"}), 2, "'xx_YY'");
    expectError(runHere({"agenda", "--controller", "NSObject"}), 2,
                "QuorvelViewControllerNewToday");
    expectError(runHere({"agenda", "--now", "soon"}), 2, "'soon'");
    expectError(runHere({"agenda", "--font", "No Such Font"}), 2, "'No Such Font'");
    expectError(runHere({"agenda", "--calendars", path("missing").string()}), 2, "missing");
    expectError(runHere({"agenda", "--calendars", ""}), 2, "calendars");
    expectError(runHere({"agenda", "--width", "0"}), 2, "width");
    expectError(runHere({"snapshot"}), 2, "-o");
    expectError(runHere({"snapshot", "-o", path("x.gif").string()}), 2, "x.gif");
    expectError(runHere({"snapshot", "-o", path("x.png").string(), "--background", "mud"}), 2,
                "'mud'");
    expectError(runHere({"snapshot", "-o", path("x.png").string(), "--scale", "1e9"}), 2, "scale");
    expectError(runHere({"snapshot", "-o", path("x.png").string(), "--appearance", "Light"}), 2,
                "unknown appearance 'Light': give light, dark or high-contrast");
    EXPECT_FALSE(fs::exists(path("x.png")));
}

TEST_F(UsageTest, TheOptionsOfALayerAreCheckedBeforeAnythingOpens) {
    const auto expectLayerError = [&](std::vector<std::string> options, const std::string& part) {
        options.insert(options.begin(), "show");
        expectError(runHere(options), 2, part);
    };
    expectLayerError({"--layer", "middle"},
                     "unknown layer 'middle': give background, bottom, top or overlay");
    expectLayerError({"--layer", ""}, "unknown layer ''");
    expectLayerError({"--layer", "top", "--anchor", "top,up"}, "unknown edge 'up'");
    expectLayerError({"--layer", "top", "--anchor", ""}, "unknown edge ''");
    for (const std::string margin : {"-1", "1.5", "10001", "4 ", "99999999999999999999"}) {
        expectLayerError({"--layer", "top", "--margin=" + margin},
                         "a margin cannot be '" + margin + "'");
    }
    for (const std::string margins : {"1,2", "1,2,3", "1,2,3,4,5"}) {
        expectLayerError({"--layer", "top", "--margin", margins}, "neither one nor four");
    }
    expectLayerError({"--layer", "top", "--decorated"}, "a layer has no title bar");
    expectLayerError({"--anchor", "top"}, "--anchor is for layers: choose one with --layer");
    expectLayerError({"--margin", "4"}, "--margin is for layers");
    expectLayerError({"--output", "DP-1"}, "--output is for layers");
}

TEST_F(UsageTest, ASourceWithoutItsColonIsSuggestedWithIt) {
    expectError(runHere({"agenda", "--calendars", "eds"}), 2,
                "the calendars 'eds' cannot be read (there is no such file or folder): write "
                "'eds:' for those of Evolution Data Server\n");
    expectError(runHere({"agenda", "--calendars", "edt"}), 2,
                "there is no such file or folder): name a .ics file or a folder of them\n");
}

TEST_F(UsageTest, StepsAreCheckedBeforeAnythingRuns) {
    for (const char* step : {"pull:0", "pull:-1:90", "tap:1", "drag:1,1", "drag:1,1:nan,0",
                             "unload", "full-view", "placeholder", "layout:1", "jump", ""}) {
        expectError(runHere({"inspect", "--do", "present", "--do", step}), 2, "step");
    }
    expectError(runHere({"inspect", "--do", "calendars:" + path("missing").string()}), 2,
                "missing");
}

TEST_F(UsageTest, ReportsWhatIsWrongWithABundle) {
    const auto bundle = path("Other.bundle");
    const auto information = [&](const std::string& executable) {
        write("Other.bundle/Info.plist",
              propertyList("<dict><key>CFBundleExecutable</key><string>" + executable +
                           "</string><key>NSPrincipalClass</key><string>X</string></dict>"));
    };
    const auto expectBundleError = [&](const std::string& part) {
        expectError(runHere({"agenda", "--bundle", bundle.string()}), 1, part);
    };
    expectBundleError("does not exist");
    fs::create_directory(bundle);
    expectBundleError("has no Info.plist");
    write("Other.bundle/Info.plist", "<plist><dict><key>");
    expectBundleError("cannot be read");
    information("");
    expectBundleError("names no executable");
    information("../libm.so.6");
    expectBundleError("outside itself");
    information("Other.so");
    expectBundleError("lacks its executable");
    write("Other.bundle/Other.so", "no shared object\nat all");
    expectBundleError("cannot be loaded");
}

TEST_F(UsageTest, ReportsABundleWithoutAPrincipalClass) {
    const auto executable = fs::path(QUORVEL_PROGRAM).parent_path() / "Quorvel.bundle/Quorvel.so";
    write("Other.bundle/Info.plist",
          propertyList("<dict><key>CFBundleExecutable</key><string>Quorvel.so</string></dict>"));
    fs::copy_file(executable, path("Other.bundle/Quorvel.so"));
    const std::string bundle = path("Other.bundle").string();
    expectError(runHere({"agenda", "--bundle", bundle}), 1,
                "the bundle '" + bundle +
                    "' names no principal class: name a folder such as Quorvel.bundle");
    expectError(runHere({"agenda", "--bundle", bundle, "--controller", "NSObject"}), 2,
                "the bundle has no controller 'NSObject': it has QuorvelViewController");
}

TEST_F(UsageTest, AnArgumentCannotControlTheTerminal) {
    const RunResult result = runHere({"agenda", "--timezone", "\x1b[31m\nred"});
    expectError(result, 2, "red");
    EXPECT_EQ(result.errors.find('\x1b'), std::string::npos);
}

TEST_F(UsageTest, UnwritablePlacesEndWithOne) {
    expectError(runHere({"snapshot", "-o", path("no/such/x.png").string()}), 1,
                "there is no folder '" + path("no/such").string() +
                    "': make it, or name another file with -o\n");
    expectError(runHere({"snapshot", "-o", "nodir/x.png"}), 1, "there is no folder 'nodir'");
    write("file", "");
    expectError(runHere({"snapshot", "-o", path("file/x.png").string()}), 1,
                "'" + path("file").string() + "' is no folder: name another file with -o\n");
    fs::create_directory(path("folder.png"));
    expectError(runHere({"snapshot", "-o", path("folder.png").string()}), 1,
                "folder.png\": Is a directory: name another file with -o\n");
    expectError(runHere({"agenda", "--log", path("no/such/log").string()}), 1, "log");
    const RunResult full = runInto("/dev/full", {"--help"});
    EXPECT_EQ(full.status, 1);
    EXPECT_NE(full.errors.find("No space left"), std::string::npos) << full.errors;
}

TEST_F(UsageTest, NoCalendarsAtAllIsNotAnEmptyAgenda) {
    const RunResult none = run({"agenda", "--json"});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.json(), Json::array());
    EXPECT_NE(none.errors.find("--sample"), std::string::npos);
    EXPECT_EQ(runHere({"agenda"}).status, 1); // an empty folder
    EXPECT_EQ(runHere({"inspect"}).status, 0);
}

TEST_F(UsageTest, HelpAndVersionGoToStandardOutput) {
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"--help"},
                                               {"agenda", "--help"},
                                               {"snapshot", "-h"},
                                               {"calendars", "--help"},
                                               {"inspect", "--help"},
                                               {"help"},
                                               {"--version"},
                                               {"-V"}}) {
        const RunResult result = run(arguments);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.errors, "");
        EXPECT_FALSE(result.output.empty());
    }
    EXPECT_EQ(run({"help"}).output, run({"--help"}).output);
    EXPECT_EQ(run({"help", "inspect"}).output, run({"inspect", "--help"}).output);
    const std::string steps = run({"inspect", "--help"}).output;
    for (const char* step :
         {"present ", "dismiss ", "size ", "layout:W,H ", "scroll:Y ", "pull:ROW:DX ",
          "drag:X,Y:DX,DY ", "tap:X,Y ", "full-view ", "placeholder ", "unload ",
          "preferences:DIR ", "calendars:SOURCE ", "now:INSTANT "}) {
        EXPECT_NE(steps.find("  " + std::string(step)), std::string::npos) << step;
    }
}

} // namespace
} // namespace quorvel::app
