// Pictures made of recorded operations instead of pixels.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/graphics_context.h"
#include "platform/screen.h"

namespace quorvel::platform::memory {

// The operations that painted a picture, as RecordingContext writes them.
class RecordedPixels : public ImagePixels {
public:
    RecordedPixels(std::vector<std::string> paintedOperations, bool isOpaque)
        : operations(std::move(paintedOperations))
        , opaque(isOpaque) {}

    std::vector<std::string> operations;
    bool opaque;
};

// A picture with nothing painted into it, as one read from a file would be.
std::shared_ptr<const UIImage> makeImage(CGSize size, CGFloat scale = 1,
                                         std::optional<UIEdgeInsets> capInsets = std::nullopt);

// Null for a picture of another platform.
const RecordedPixels* recordedPixels(const UIImage& image);

class MemoryGraphicsContexts : public GraphicsContexts {
public:
    // The screen outlives this object.
    explicit MemoryGraphicsContexts(const Screen& screen)
        : m_screen(screen) {}

    std::unique_ptr<ImageContext> beginImageContext(CGSize size, bool opaque,
                                                    CGFloat scale) override;

    CGFloat largestSideInPixels = 32767; // above it no context is made
    std::size_t contextsMade = 0;

private:
    const Screen& m_screen;
};

} // namespace quorvel::platform::memory
