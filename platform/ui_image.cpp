#include "platform/ui_image.h"

#include <algorithm>

namespace quorvel::platform {

namespace {

constexpr CGFloat stretchedLength = 1; // points

// The length of the cap at the other end.
CGFloat oppositeCap(CGFloat length, CGFloat cap) {
    return cap > 0 ? std::max(length - cap - stretchedLength, 0.0) : 0;
}

} // namespace

std::shared_ptr<const UIImage>
UIImage::stretchableImageWithLeftCapWidth(std::int64_t leftCapWidth,
                                          std::int64_t topCapHeight) const {
    const auto left = static_cast<CGFloat>(leftCapWidth);
    const auto top = static_cast<CGFloat>(topCapHeight);
    const UIEdgeInsets caps{top, left, oppositeCap(m_size.height, top),
                            oppositeCap(m_size.width, left)};
    return std::make_shared<const UIImage>(m_pixels, m_size, m_scale, caps);
}

} // namespace quorvel::platform
