// The rendering of a host that shows nothing: rough sizes of texts, and no pictures.
#pragma once

#include "freedesktop/rendering/rendering.h"
#include "freedesktop/rendering/rough_text_measurer.h"

namespace quorvel::freedesktop {

class UnseenRendering final : public Rendering {
public:
    platform::TextMeasurer& textMeasurer() override { return m_textMeasurer; }
    platform::ImageFiles& imageFiles() override { return m_imageFiles; }
    std::unique_ptr<platform::GraphicsContexts>
    makeGraphicsContexts(const platform::Screen& screen) override;

    void setLocale(const std::string&) override {}
    void setTextScale(platform::CGFloat) override {}
    void reloadFonts() override {}
    std::shared_ptr<TextLines> textLines() override { return nullptr; }

    bool isFontInstalled(const std::string&) override { return false; }
    bool areFontsInstalled() override { return false; }
    bool fitsInto(const std::string&, const Snapshot&) override { return false; }
    Result<void> writeSnapshot(const std::string& path, const Snapshot& snapshot) override;
    void prepare() override {}

private:
    class NoImageFiles final : public platform::ImageFiles {
    public:
        std::shared_ptr<const platform::UIImage>
        imageWithContentsOfFile(std::string_view) override {
            return nullptr;
        }
    };

    RoughTextMeasurer m_textMeasurer;
    NoImageFiles m_imageFiles;
};

} // namespace quorvel::freedesktop
