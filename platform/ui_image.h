// A picture: a size in points, a scale, and pixels in the form of the platform that made them.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

#include "platform/geometry.h"

namespace quorvel::platform {

// The pixels, in the form of the platform that made the picture. A graphics context paints the
// pixels of its own platform and ignores others.
class ImagePixels {
public:
    virtual ~ImagePixels() = default;
};

// Immutable and shared.
class UIImage {
public:
    UIImage(std::shared_ptr<const ImagePixels> pixels, CGSize size, CGFloat scale,
            std::optional<UIEdgeInsets> capInsets = std::nullopt)
        : m_pixels(std::move(pixels))
        , m_size(size)
        , m_scale(scale)
        , m_capInsets(capInsets) {}

    CGSize size() const { return m_size; }    // points
    CGFloat scale() const { return m_scale; } // pixels a point
    // Borders whose size stays the same when the picture is stretched, in points; absent: none.
    const std::optional<UIEdgeInsets>& capInsets() const { return m_capInsets; }
    const ImagePixels* pixels() const { return m_pixels.get(); }

    // The same picture, of which only the one point right of the left cap, and the one below the
    // top cap, are stretched. Caps are in points; on an axis with a cap of 0 all is stretched.
    std::shared_ptr<const UIImage>
    stretchableImageWithLeftCapWidth(std::int64_t leftCapWidth, std::int64_t topCapHeight) const;

private:
    std::shared_ptr<const ImagePixels> m_pixels;
    CGSize m_size;
    CGFloat m_scale;
    std::optional<UIEdgeInsets> m_capInsets;
};

} // namespace quorvel::platform
