// A drawn picture as plain values, for the tests that compare pictures.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace quorvel::golden {

struct Picture {
    int width = 0;
    int height = 0;
    bool hasAlpha = false;
    std::vector<std::uint32_t> pixels; // 0xAARRGGBB, premultiplied; row by row

    std::uint32_t at(int x, int y) const { return pixels[index(x, y)]; }
    std::uint32_t& at(int x, int y) { return pixels[index(x, y)]; }

private:
    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    }
};

// Of a PNG; absent if it cannot be read.
std::optional<Picture> readPicture(const std::string& path);

} // namespace quorvel::golden
