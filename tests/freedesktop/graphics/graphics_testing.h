// What the tests of painting share: a screen, contexts over it, and a look at single pixels.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include <cairo.h>
#include <gtest/gtest.h>

#include "freedesktop/graphics/cairo_graphics_contexts.h"
#include "freedesktop/graphics/cairo_pixels.h"

namespace quorvel::freedesktop {

class FixedScreen final : public platform::Screen {
public:
    explicit FixedScreen(platform::CGFloat scale)
        : m_scale(scale) {}
    platform::CGFloat scale() const override { return m_scale; }

private:
    platform::CGFloat m_scale;
};

inline std::shared_ptr<TextLines> sharedLines() {
    static const auto lines = std::make_shared<TextLines>();
    return lines;
}

inline std::unique_ptr<platform::ImageContext> begin(double width, double height, double scale = 1,
                                                     bool opaque = false) {
    const FixedScreen screen(2);
    return CairoGraphicsContexts(screen, sharedLines())
        .beginImageContext({width, height}, opaque, scale);
}

inline const CairoPixels& pixelsOf(const platform::UIImage& image) {
    return dynamic_cast<const CairoPixels&>(*image.pixels());
}

// 0xAARRGGBB, premultiplied.
inline std::uint32_t pixel(const platform::UIImage& image, int x, int y) {
    cairo_surface_t* surface = pixelsOf(image).surface();
    const unsigned char* row =
        cairo_image_surface_get_data(surface) + y * cairo_image_surface_get_stride(surface);
    return reinterpret_cast<const std::uint32_t*>(row)[x];
}

inline std::uint32_t pixel(platform::ImageContext& context, int x, int y) {
    return pixel(*context.image(), x, y);
}

inline int alphaOf(std::uint32_t pixelValue) {
    return static_cast<int>(pixelValue >> 24);
}

inline std::string contentsOfFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void writeFile(const std::filesystem::path& path, const std::string& contents) {
    std::ofstream(path, std::ios::binary) << contents;
}

// A folder of its own for each test, empty at first and gone afterwards.
class FolderTest : public testing::Test {
protected:
    FolderTest() {
        std::string name = (std::filesystem::temp_directory_path() / "quorvel-XXXXXX").string();
        m_folder = ::mkdtemp(name.data());
    }
    ~FolderTest() override { std::filesystem::remove_all(m_folder); }

    std::string inFolder(const std::string& name) const { return (m_folder / name).string(); }
    std::size_t fileCount() const {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(m_folder),
                                                      std::filesystem::directory_iterator()));
    }

private:
    std::filesystem::path m_folder;
};

} // namespace quorvel::freedesktop
