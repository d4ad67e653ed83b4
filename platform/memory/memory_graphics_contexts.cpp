#include "platform/memory/memory_graphics_contexts.h"

#include "platform/memory/recording_context.h"

namespace quorvel::platform::memory {

namespace {

class RecordingImageContext : public ImageContext {
public:
    RecordingImageContext(CGSize size, bool opaque, CGFloat scale)
        : m_size(size)
        , m_opaque(opaque)
        , m_scale(scale) {}

    GraphicsContext& context() override { return m_context; }

    std::shared_ptr<const UIImage> image() override {
        return std::make_shared<const UIImage>(
            std::make_shared<const RecordedPixels>(m_context.operations, m_opaque), m_size,
            m_scale);
    }

private:
    CGSize m_size;
    bool m_opaque;
    CGFloat m_scale;
    RecordingContext m_context;
};

} // namespace

std::shared_ptr<const UIImage> makeImage(CGSize size, CGFloat scale,
                                         std::optional<UIEdgeInsets> capInsets) {
    return std::make_shared<const UIImage>(
        std::make_shared<const RecordedPixels>(std::vector<std::string>(), false), size, scale,
        capInsets);
}

const RecordedPixels* recordedPixels(const UIImage& image) {
    return dynamic_cast<const RecordedPixels*>(image.pixels());
}

std::unique_ptr<ImageContext> MemoryGraphicsContexts::beginImageContext(CGSize size, bool opaque,
                                                                        CGFloat scale) {
    const CGFloat used = scale == 0 ? m_screen.scale() : scale;
    const auto fits = [&](CGFloat side) { // false for NaN too
        return side > 0 && side * used > 0 && side * used <= largestSideInPixels;
    };
    if (!fits(size.width) || !fits(size.height)) {
        return nullptr;
    }
    ++contextsMade;
    return std::make_unique<RecordingImageContext>(size, opaque, used);
}

} // namespace quorvel::platform::memory
