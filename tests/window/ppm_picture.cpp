#include "tests/window/ppm_picture.h"

#include <sstream>

namespace quorvel::window {

Picture ppmPicture(const std::string& content) {
    std::istringstream stream(content);
    std::string type;
    Picture picture;
    int maximum = 0;
    stream >> type >> picture.width >> picture.height >> maximum;
    stream.get();
    if (type != "P6" || maximum != 255 || picture.width <= 0 || picture.height <= 0) {
        return {};
    }
    const std::size_t count =
        static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
    const auto start = static_cast<std::size_t>(stream.tellg());
    if (content.size() < start + 3 * count) {
        return {};
    }
    picture.pixels.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        const auto part = [&](std::size_t index) {
            return static_cast<std::uint32_t>(
                static_cast<unsigned char>(content[start + 3 * i + index]));
        };
        picture.pixels.push_back(part(0) << 16U | part(1) << 8U | part(2));
    }
    return picture;
}

} // namespace quorvel::window
