// Draws the same agenda in five settings, four locales and two scales with the real command, and
// compares it with pictures that a person has checked (tools/make-goldens draws them anew).

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

TEST_P(Golden, LooksAsItDid) {
    const auto [setting, locale, scale] = GetParam();
    const std::string name = pictureName(setting, locale, scale);
    const std::string drawn = (std::filesystem::path(GOLDEN_OUTPUT) / name).string();
    const std::string folder = GOLDEN_FOLDER;
    ASSERT_EQ(run({QUORVEL_COMMAND, "snapshot", "--calendars", folder + "/calendars",
                   "--preferences", folder + "/preferences/" + setting, "--now",
                   "2026-03-10T10:00:00+01:00", "--timezone", "Europe/Berlin", "--locale", locale,
                   "--font", "Inter", "--scale", std::to_string(scale), "-o", drawn}),
              0);
    const Surface expected = readPicture(folder + "/pictures/" + name);
    const Surface actual = readPicture(drawn);
    ASSERT_EQ(cairo_surface_status(expected.get()), CAIRO_STATUS_SUCCESS) << name;
    ASSERT_EQ(cairo_surface_status(actual.get()), CAIRO_STATUS_SUCCESS) << name;
    EXPECT_LE(difference(expected.get(), actual.get()), differingShare)
        << name << ": compare the picture with the one drawn into the build folder";
}

INSTANTIATE_TEST_SUITE_P(Pictures, Golden,
                         testing::Combine(testing::ValuesIn(settings), testing::ValuesIn(locales),
                                          testing::ValuesIn(scales)),
                         [](const auto& test) {
                             std::string name =
                                 pictureName(std::get<0>(test.param), std::get<1>(test.param),
                                             std::get<2>(test.param));
                             for (char& c : name)
                                 if (!isalnum(static_cast<unsigned char>(c)))
                                     c = '_';
                             return name;
                         });

} // namespace
