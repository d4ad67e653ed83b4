#include "freedesktop/graphics/png_encoding.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <endian.h>
#include <optional>
#include <utility>

#include <png.h>

namespace quorvel::freedesktop {

namespace {

constexpr std::uint32_t opaque = 0xFF;

std::uint32_t opacityOf(std::uint32_t pixel) {
    return pixel >> 24U;
}

// cairo multiplies each colour by the opacity, a PNG does not.
unsigned char colourOf(std::uint32_t pixel, unsigned shift) {
    const std::uint32_t colour = pixel >> shift & 0xFFU;
    const std::uint32_t opacity = opacityOf(pixel);
    if (opacity == 0) {
        return 0;
    }
    return static_cast<unsigned char>(
        opacity == opaque ? colour : (colour * opaque + opacity / 2) / opacity);
}

// An image in memory, line by line; cairo aligns its lines for pixels of 32 bits.
struct Pixels {
    unsigned char* data;
    int width;
    int height;
    int stride; // bytes

    unsigned char* line(int y) const { return data + static_cast<std::ptrdiff_t>(y) * stride; }
    static std::uint32_t at(const unsigned char* line, int x) {
        return reinterpret_cast<const std::uint32_t*>(line)[x];
    }
};

// Without a decision for each pixel, which takes longer than reading it.
bool isOpaque(const unsigned char* line, int width) {
    std::uint32_t common = ~std::uint32_t{0};
    for (int x = 0; x < width; ++x) {
        common &= Pixels::at(line, x);
    }
    return opacityOf(common) == opaque;
}

bool isOpaque(const Pixels& pixels) {
    for (int y = 0; y < pixels.height; ++y) {
        if (!isOpaque(pixels.line(y), pixels.width)) {
            return false;
        }
    }
    return true;
}

// To red, green and blue, from where the line began. Of the four bytes that a pixel is written as,
// the next one overwrites the last; none reaches behind the pixel that was read.
void convertOpaqueLine(unsigned char* line, int width) {
    unsigned char* place = line;
    for (int x = 0; x < width; ++x) {
        const std::uint32_t bytes = htobe32(Pixels::at(line, x) << 8U);
        std::memcpy(place, &bytes, sizeof bytes);
        place += 3;
    }
}

// To red, green, blue and opacity.
void convertLine(unsigned char* line, int width) {
    unsigned char* place = line;
    for (int x = 0; x < width; ++x) {
        const std::uint32_t pixel = Pixels::at(line, x);
        *place++ = colourOf(pixel, 16);
        *place++ = colourOf(pixel, 8);
        *place++ = colourOf(pixel, 0);
        *place++ = static_cast<unsigned char>(opacityOf(pixel));
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
    const Pixels pixels{cairo_image_surface_get_data(image), cairo_image_surface_get_width(image),
                        cairo_image_surface_get_height(image),
                        cairo_image_surface_get_stride(image)};
    const bool withOpacity = !isOpaque(pixels);
    const auto convert = withOpacity ? convertLine : convertOpaqueLine;
    for (int y = 0; y < pixels.height; ++y) {
        convert(pixels.line(y), pixels.width);
    }
    MemoryFile file;
    if (file.get() == nullptr) {
        return Error{notEnoughMemory, {}, {}};
    }
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    png.width = static_cast<png_uint_32>(pixels.width);
    png.height = static_cast<png_uint_32>(pixels.height);
    png.format = withOpacity ? PNG_FORMAT_RGBA : PNG_FORMAT_RGB;
    png.flags = PNG_IMAGE_FLAG_FAST;
    if (png_image_write_to_stdio(&png, file.get(), 0, pixels.data, pixels.stride, nullptr) == 0) {
        return Error{png.message, {}, {}};
    }
    auto contents = file.contents();
    if (!contents) {
        return Error{notEnoughMemory, {}, {}};
    }
    return *std::move(contents);
}

} // namespace quorvel::freedesktop
