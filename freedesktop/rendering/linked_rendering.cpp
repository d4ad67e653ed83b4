#include "freedesktop/rendering/linked_rendering.h"

#include "freedesktop/graphics/cairo_graphics_contexts.h"
#include "freedesktop/graphics/snapshot.h"
#include "freedesktop/text/fonts.h"

namespace quorvel::freedesktop {

LinkedRendering::LinkedRendering(const RenderingOptions& options)
    : m_lines(std::make_shared<TextLines>(options.fontFamily, options.locale))
    , m_textMeasurer(m_lines)
    , m_imageFiles(options.dataFolder) {
    m_lines->setTextScale(options.textScale);
}

std::unique_ptr<platform::GraphicsContexts>
LinkedRendering::makeGraphicsContexts(const platform::Screen& screen) {
    return std::make_unique<CairoGraphicsContexts>(screen, m_lines);
}

bool LinkedRendering::isFontInstalled(const std::string& family) {
    return freedesktop::isFontInstalled(family);
}

bool LinkedRendering::areFontsInstalled() {
    return freedesktop::areFontsInstalled();
}

bool LinkedRendering::fitsInto(const std::string& path, const Snapshot& snapshot) {
    return freedesktop::fitsInto(path, snapshot);
}

Result<void> LinkedRendering::writeSnapshot(const std::string& path, const Snapshot& snapshot) {
    return freedesktop::writeSnapshot(path, snapshot, m_lines);
}

std::unique_ptr<Rendering> makeLinkedRendering(const RenderingOptions& options) {
    auto rendering = std::make_unique<LinkedRendering>(options);
    rendering->prepare();
    return rendering;
}

} // namespace quorvel::freedesktop
