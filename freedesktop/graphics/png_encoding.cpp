#include "freedesktop/graphics/png_encoding.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <utility>

#include <png.h>

namespace quorvel::freedesktop {

namespace {

constexpr png_uint_32 pixelFormat =
    std::endian::native == std::endian::little ? PNG_FORMAT_BGRA : PNG_FORMAT_ARGB;

// cairo multiplies each colour by the opacity, a PNG does not.
std::uint32_t withoutOpacity(std::uint32_t pixel) {
    const std::uint32_t opacity = pixel >> 24U;
    if (opacity == 0) {
        return 0;
    }
    const auto colour = [&](unsigned shift) {
        const std::uint32_t value = ((pixel >> shift & 0xFFU) * 255 + opacity / 2) / opacity;
        return (value & 0xFFU) << shift;
    };
    return opacity << 24U | colour(16) | colour(8) | colour(0);
}

void divideByOpacity(unsigned char* line, int width) {
    auto* const pixels = reinterpret_cast<std::uint32_t*>(line); // cairo aligns its lines
    for (int x = 0; x < width; ++x) {
        if (pixels[x] < 0xFF000000U) {
            pixels[x] = withoutOpacity(pixels[x]);
        }
    }
}

// What was written to the file so far.
class MemoryFile {
public:
    MemoryFile()
        : m_file(::open_memstream(&m_bytes, &m_size)) {}
    ~MemoryFile() {
        close();
        std::free(m_bytes); // NOLINT(cppcoreguidelines-no-malloc): the C library's own
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::FILE* get() const { return m_file; } // null: not enough memory
    // Absent: not enough memory.
    std::optional<std::string> contents() {
        return close() ? std::optional<std::string>({m_bytes, m_size}) : std::nullopt;
    }

private:
    bool close() {
        std::FILE* const file = std::exchange(m_file, nullptr);
        return file != nullptr && std::fclose(file) == 0;
    }

    char* m_bytes = nullptr;
    std::size_t m_size = 0;
    std::FILE* m_file;
};

constexpr const char* notEnoughMemory = "out of memory";

} // namespace

Result<std::string> pngOf(cairo_surface_t* image) {
    cairo_surface_flush(image);
    unsigned char* const data = cairo_image_surface_get_data(image);
    const int width = cairo_image_surface_get_width(image);
    const int height = cairo_image_surface_get_height(image);
    const int stride = cairo_image_surface_get_stride(image);
    for (int y = 0; y < height; ++y) {
        divideByOpacity(data + static_cast<std::ptrdiff_t>(y) * stride, width);
    }
    MemoryFile file;
    if (file.get() == nullptr) {
        return Error{notEnoughMemory, {}, {}};
    }
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(width);
    png.height = static_cast<png_uint_32>(height);
    png.format = pixelFormat;
    png.flags = PNG_IMAGE_FLAG_FAST;
    if (png_image_write_to_stdio(&png, file.get(), 0, data, stride, nullptr) == 0) {
        return Error{png.message, {}, {}};
    }
    auto contents = file.contents();
    if (!contents) {
        return Error{notEnoughMemory, {}, {}};
    }
    return *std::move(contents);
}

} // namespace quorvel::freedesktop
