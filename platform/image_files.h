// Pictures read from files.
#pragma once

#include <memory>
#include <string_view>

#include "platform/ui_image.h"

namespace quorvel::platform {

class ImageFiles {
public:
    virtual ~ImageFiles() = default;
    // Null for a file that is missing or cannot be decoded. "@2x" or "@3x" before the name's
    // extension gives the scale.
    virtual std::shared_ptr<const UIImage> imageWithContentsOfFile(std::string_view path) = 0;
};

} // namespace quorvel::platform
