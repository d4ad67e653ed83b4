// Draws the same agenda in five settings, four locales and two scales with the real command, and
// every state of a host in every appearance and at four scales. Compares them with pictures that a
// person has checked (tools/make-goldens draws them anew).

#include <cairo.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

extern char** environ;

namespace {

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;

constexpr const char* settings[] = {"default", "dots", "right-aligned", "calendar-colours",
                                    "large-text"};
constexpr const char* locales[] = {"en_US", "de_DE", "ja_JP", "ar_EG"};
constexpr int scales[] = {1, 2};

// A pixel differs when a component is off by more than this; glyph edges may.
constexpr int tolerance = 24;
constexpr double differingShare = 0.002;

std::string pictureName(const std::string& setting, const std::string& locale, int scale) {
    return setting + "." + locale + "@" + std::to_string(scale) + "x.png";
}

int run(std::vector<std::string> arguments) {
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    pid_t pid = 0;
    if (posix_spawn(&pid, pointers[0], nullptr, nullptr, pointers.data(), environ) != 0)
        return -1;
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

Surface readPicture(const std::string& path) {
    return {cairo_image_surface_create_from_png(path.c_str()), &cairo_surface_destroy};
}

bool pixelsDiffer(std::uint32_t a, std::uint32_t b) {
    for (int shift = 0; shift < 32; shift += 8) {
        const int left = static_cast<int>((a >> shift) & 0xFFU);
        const int right = static_cast<int>((b >> shift) & 0xFFU);
        if (std::abs(left - right) > tolerance)
            return true;
    }
    return false;
}

// The share of pixels that differ; 1 for pictures of different sizes or kinds.
double difference(cairo_surface_t* a, cairo_surface_t* b) {
    const int width = cairo_image_surface_get_width(a);
    const int height = cairo_image_surface_get_height(a);
    if (width != cairo_image_surface_get_width(b) || height != cairo_image_surface_get_height(b) ||
        cairo_image_surface_get_format(a) != cairo_image_surface_get_format(b))
        return 1;
    long differing = 0;
    for (int y = 0; y < height; ++y) {
        const auto row = [y](cairo_surface_t* surface) {
            return reinterpret_cast<const std::uint32_t*>(
                cairo_image_surface_get_data(surface) +
                static_cast<std::ptrdiff_t>(y) * cairo_image_surface_get_stride(surface));
        };
        for (int x = 0; x < width; ++x)
            differing += pixelsDiffer(row(a)[x], row(b)[x]) ? 1 : 0;
    }
    return static_cast<double>(differing) / (static_cast<double>(width) * height);
}

class Golden : public testing::TestWithParam<std::tuple<const char*, const char*, int>> {};

// Draws the picture into the build folder and compares it with the one in the sources.
void expectPicture(const std::string& name, std::vector<std::string> arguments, int status = 0) {
    const std::string folder = GOLDEN_FOLDER;
    const std::string drawn = (std::filesystem::path(GOLDEN_OUTPUT) / name).string();
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
    const Surface expected = readPicture(folder + "/pictures/" + name);
    const Surface actual = readPicture(drawn);
    ASSERT_EQ(cairo_surface_status(expected.get()), CAIRO_STATUS_SUCCESS) << name;
    ASSERT_EQ(cairo_surface_status(actual.get()), CAIRO_STATUS_SUCCESS) << name;
    EXPECT_LE(difference(expected.get(), actual.get()), differingShare)
        << name << ": compare the picture with the one drawn into the build folder";
}

// The parts of a picture's name, as the name of a test.
std::string testName(std::string name) {
    for (char& c : name) {
        if (isalnum(static_cast<unsigned char>(c)) == 0)
            c = '_';
    }
    return name;
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
std::vector<int> linesOf(cairo_surface_t* picture, double scale) {
    const auto column = static_cast<int>(315 * scale);
    const auto pixelAt = [&](int y) {
        return reinterpret_cast<const std::uint32_t*>(
            cairo_image_surface_get_data(picture) +
            static_cast<std::ptrdiff_t>(y) * cairo_image_surface_get_stride(picture))[column];
    };
    std::vector<int> lines;
    for (int y = 1; y < cairo_image_surface_get_height(picture); ++y) {
        if (pixelAt(y) != pixelAt(0))
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
        const Surface picture = readPicture(drawn);
        const std::vector<int> lines = linesOf(picture.get(), std::stod(scale));
        EXPECT_EQ(lines.size(), 8U) << "between nine rows, at " << scale;
        for (std::size_t i = 1; i < lines.size(); ++i)
            EXPECT_GT(lines[i], lines[i - 1] + 20) << "smeared at " << scale;
    }
}

} // namespace
