// The rendering of a program that is linked with the libraries: Pango, cairo and gdk-pixbuf.
#pragma once

#include "freedesktop/graphics/pixbuf_image_files.h"
#include "freedesktop/rendering/rendering.h"
#include "freedesktop/text/pango_text_measurer.h"
#include "freedesktop/text/text_lines.h"

namespace quorvel::freedesktop {

class LinkedRendering final : public Rendering {
public:
    explicit LinkedRendering(const RenderingOptions& options);

    platform::TextMeasurer& textMeasurer() override { return m_textMeasurer; }
    platform::ImageFiles& imageFiles() override { return m_imageFiles; }
    std::unique_ptr<platform::GraphicsContexts>
    makeGraphicsContexts(const platform::Screen& screen) override;

    void setLocale(const std::string& locale) override { m_lines->setLocale(locale); }
    void setTextScale(platform::CGFloat scale) override { m_lines->setTextScale(scale); }
    void reloadFonts() override { m_lines->reloadFonts(); }
    std::shared_ptr<TextLines> textLines() override { return m_lines; }

    bool isFontInstalled(const std::string& family) override;
    bool areFontsInstalled() override;
    bool fitsInto(const std::string& path, const Snapshot& snapshot) override;
    Result<void> writeSnapshot(const std::string& path, const Snapshot& snapshot) override;
    void prepare() override { m_lines->prepare(); }

private:
    std::shared_ptr<TextLines> m_lines;
    PangoTextMeasurer m_textMeasurer;
    PixbufImageFiles m_imageFiles;
};

// A RenderingFactory for a program that will show texts: the rendering is prepared.
std::unique_ptr<Rendering> makeLinkedRendering(const RenderingOptions& options);

} // namespace quorvel::freedesktop
