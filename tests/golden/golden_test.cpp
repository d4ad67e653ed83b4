// Draws the same agenda in five settings, four locales and two scales with the real command, and
// every state of a host in every appearance and at four scales. Compares them with pictures that a
// person has checked (tools/make-goldens draws them anew).

#include "tests/golden/golden_picture.h"
#include "tests/golden/picture.h"

#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <tuple>
#include <vector>

extern char** environ;

namespace quorvel::golden {
namespace {

constexpr const char* settings[] = {"default", "dots", "right-aligned", "calendar-colours",
                                    "large-text"};
constexpr const char* locales[] = {"en_US", "de_DE", "ja_JP", "ar_EG"};
constexpr int scales[] = {1, 2};

std::string pictureName(const std::string& setting, const std::string& locale, int scale) {
    return setting + "." + locale + "@" + std::to_string(scale) + "x.png";
}

int run(std::vector<std::string> arguments) {
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    setenv("LOCPATH", QUORVEL_TEST_LOCALES, 1); // the host's line is in the chosen language
    pid_t pid = 0;
    if (posix_spawn(&pid, pointers[0], nullptr, nullptr, pointers.data(), environ) != 0)
        return -1;
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class Golden : public testing::TestWithParam<std::tuple<const char*, const char*, int>> {};

// Draws the picture into the build folder and compares it with the one in the sources.
void expectPicture(const std::string& name, std::vector<std::string> arguments, int status = 0) {
    const std::string drawn = drawnPicture(name);
    std::vector<std::string> command{QUORVEL_COMMAND,
                                     "snapshot",
                                     "--now",
                                     "2026-03-10T10:00:00+01:00",
                                     "--timezone",
                                     "Europe/Berlin",
                                     "--font",
                                     "Inter",
                                     "-o",
                                     drawn};
    command.insert(command.end(), arguments.begin(), arguments.end());
    ASSERT_EQ(run(command), status);
    expectGolden(name);
}

TEST_P(Golden, LooksAsItDid) {
    const auto [setting, locale, scale] = GetParam();
    const std::string folder = GOLDEN_FOLDER;
    expectPicture(pictureName(setting, locale, scale),
                  {"--calendars", folder + "/calendars", "--preferences",
                   folder + "/preferences/" + setting, "--locale", locale, "--scale",
                   std::to_string(scale)});
}

INSTANTIATE_TEST_SUITE_P(Pictures, Golden,
                         testing::Combine(testing::ValuesIn(settings), testing::ValuesIn(locales),
                                          testing::ValuesIn(scales)),
                         [](const auto& test) {
                             return testName(pictureName(std::get<0>(test.param),
                                                         std::get<1>(test.param),
                                                         std::get<2>(test.param)));
                         });

struct StatePicture {
    const char* name;
    std::vector<const char*> calendars; // below the folder of this test
    std::vector<std::string> options;
    const char* appearance;
    const char* scale;
    int status = 0;
};

// Rows in every appearance; the other states in one of them for each scale.
std::vector<StatePicture> statePictures() {
    const std::vector<const char*> rows{"calendars/home.ics"};
    const std::vector<const char*> unreadable{"calendars/home.ics", "states/unreadable"};
    const std::vector<std::string> english{"--locale", "en_US"};
    const std::vector<std::string> larger{"--locale", "en_US", "--text-scale", "1.5"};
    const std::vector<std::string> arabic{"--locale", "ar_EG"};
    const char* const stateScales[] = {"1", "1.5", "2", "3"};
    const char* const appearances[] = {"dark", "light", "high-contrast"};
    std::vector<StatePicture> pictures;
    for (std::size_t i = 0; i < std::size(stateScales); ++i) {
        const char* const scale = stateScales[i];
        for (const char* appearance : appearances)
            pictures.push_back({"rows", rows, english, appearance, scale});
        const auto appearanceAfter = [&](std::size_t offset) {
            return appearances[(i + offset) % std::size(appearances)];
        };
        pictures.push_back({"empty", {"states/empty"}, english, appearanceAfter(0), scale});
        pictures.push_back({"none", {"states/none"}, english, appearanceAfter(1), scale, 1});
        pictures.push_back({"unreadable", unreadable, english, appearanceAfter(2), scale});
        pictures.push_back({"larger-text", rows, larger, appearanceAfter(0), scale});
        pictures.push_back({"arabic", {"calendars/family.ics"}, arabic, appearanceAfter(1), scale});
        pictures.push_back({"arabic-empty", {"states/empty"}, arabic, appearanceAfter(2), scale});
    }
    return pictures;
}

std::string pictureName(const StatePicture& picture) {
    return std::string("state-") + picture.name + "." + picture.appearance + "@" + picture.scale +
           "x.png";
}

class GoldenState : public testing::TestWithParam<StatePicture> {};

TEST_P(GoldenState, LooksAsItDid) {
    const StatePicture& picture = GetParam();
    const std::string folder = GOLDEN_FOLDER;
    std::vector<std::string> arguments = picture.options;
    for (const char* calendars : picture.calendars) {
        arguments.insert(arguments.end(), {"--calendars", folder + "/" + calendars});
    }
    arguments.insert(arguments.end(),
                     {"--preferences", folder + "/preferences/states", "--appearance",
                      picture.appearance, "--scale", picture.scale});
    expectPicture(pictureName(picture), std::move(arguments), picture.status);
}

INSTANTIATE_TEST_SUITE_P(Pictures, GoldenState, testing::ValuesIn(statePictures()),
                         [](const auto& test) { return testName(pictureName(test.param)); });

// The rows of pixels that differ from the backdrop, five points from the right edge, where no text
// is.
std::vector<int> linesOf(const Picture& picture, double scale) {
    const auto column = static_cast<int>(315 * scale);
    std::vector<int> lines;
    for (int y = 1; y < picture.height; ++y) {
        if (picture.at(column, y) != picture.at(column, 0))
            lines.push_back(y);
    }
    return lines;
}

TEST(GoldenSeparators, AreSingleRowsOfPixelsAtEveryScale) {
    const std::string folder = GOLDEN_FOLDER;
    for (const char* scale : {"1", "1.25", "1.5", "2", "2.75", "3"}) {
        const std::string drawn =
            (std::filesystem::path(GOLDEN_OUTPUT).parent_path() / "separators.png").string();
        ASSERT_EQ(run({QUORVEL_COMMAND, "snapshot", "--calendars", folder + "/calendars",
                       "--preferences", folder + "/preferences/default", "--now",
                       "2026-03-10T10:00:00+01:00", "--timezone", "Europe/Berlin", "--locale",
                       "en_US", "--scale", scale, "-o", drawn}),
                  0);
        const auto picture = readPicture(drawn);
        ASSERT_TRUE(picture);
        const std::vector<int> lines = linesOf(*picture, std::stod(scale));
        EXPECT_EQ(lines.size(), 8U) << "between nine rows, at " << scale;
        for (std::size_t i = 1; i < lines.size(); ++i)
            EXPECT_GT(lines[i], lines[i - 1] + 20) << "smeared at " << scale;
    }
}

} // namespace
} // namespace quorvel::golden
