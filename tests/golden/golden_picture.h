// Compares drawn pictures with those that a person has checked.
#pragma once

#include <cairo.h>
#include <gtest/gtest.h>

#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

namespace quorvel::golden {

using Surface = std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)>;

// Where a test draws the picture of that name.
inline std::string drawnPicture(const std::string& name) {
    return (std::filesystem::path(GOLDEN_OUTPUT) / name).string();
}

// A pixel differs when a component is off by more than this; glyph edges may.
inline constexpr int tolerance = 24;
inline constexpr double differingShare = 0.002;

inline Surface readPicture(const std::string& path) {
    return {cairo_image_surface_create_from_png(path.c_str()), &cairo_surface_destroy};
}

inline bool pixelsDiffer(std::uint32_t a, std::uint32_t b) {
    for (int shift = 0; shift < 32; shift += 8) {
        const int left = static_cast<int>((a >> shift) & 0xFFU);
        const int right = static_cast<int>((b >> shift) & 0xFFU);
        if (std::abs(left - right) > tolerance)
            return true;
    }
    return false;
}

// The share of pixels that differ; 1 for pictures of different sizes or kinds.
inline double difference(cairo_surface_t* a, cairo_surface_t* b) {
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

// The parts of a picture's name, as the name of a test.
inline std::string testName(std::string name) {
    for (char& c : name) {
        if (isalnum(static_cast<unsigned char>(c)) == 0)
            c = '_';
    }
    return name;
}

// Compares the drawn picture of that name with the one in the sources.
inline void expectGolden(const std::string& name) {
    const Surface expected = readPicture(std::string(GOLDEN_FOLDER) + "/pictures/" + name);
    const Surface actual = readPicture(drawnPicture(name));
    ASSERT_EQ(cairo_surface_status(expected.get()), CAIRO_STATUS_SUCCESS) << name;
    ASSERT_EQ(cairo_surface_status(actual.get()), CAIRO_STATUS_SUCCESS) << name;
    EXPECT_LE(difference(expected.get(), actual.get()), differingShare)
        << name << ": compare the picture with the one drawn into the build folder";
}

} // namespace quorvel::golden
