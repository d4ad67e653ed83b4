// Creates images to draw into.
#pragma once

#include <memory>

#include "freedesktop/text/text_lines.h"
#include "platform/graphics_context.h"
#include "platform/screen.h"

namespace quorvel::freedesktop {

// An image has at most 16,384 pixels per side and 64 million in total. An opaque one is black at
// first. Its size in pixels is rounded up.
class CairoGraphicsContexts final : public platform::GraphicsContexts {
public:
    // The screen must outlive the object.
    CairoGraphicsContexts(const platform::Screen& screen, std::shared_ptr<TextLines> lines);

    std::unique_ptr<platform::ImageContext> beginImageContext(platform::CGSize size, bool opaque,
                                                              platform::CGFloat scale) override;

private:
    const platform::Screen& m_screen;
    std::shared_ptr<TextLines> m_lines;
};

} // namespace quorvel::freedesktop
