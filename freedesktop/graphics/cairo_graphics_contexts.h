// New pictures to paint into.
#pragma once

#include <memory>

#include "freedesktop/text/text_lines.h"
#include "platform/graphics_context.h"
#include "platform/screen.h"

namespace quorvel::freedesktop {

// A picture is at most 16,384 pixels to a side and 64 million altogether; an opaque one is black at
// first. A fraction of a pixel is a whole one more.
class CairoGraphicsContexts final : public platform::GraphicsContexts {
public:
    // The screen outlives this object.
    CairoGraphicsContexts(const platform::Screen& screen, std::shared_ptr<TextLines> lines);

    std::unique_ptr<platform::ImageContext> beginImageContext(platform::CGSize size, bool opaque,
                                                              platform::CGFloat scale) override;

private:
    const platform::Screen& m_screen;
    std::shared_ptr<TextLines> m_lines;
};

} // namespace quorvel::freedesktop
