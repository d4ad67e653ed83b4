// The rendering of a program that seldom shows anything: a module with the libraries, which is
// loaded when something is measured, read or painted for the first time.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "freedesktop/rendering/rendering.h"

namespace quorvel::freedesktop {

// Where the module cannot be loaded, failure() is present, and everything is as in UnseenRendering.
class LoadedRendering final : public Rendering {
public:
    // `module`: the file. Loads nothing.
    LoadedRendering(std::string module, const RenderingOptions& options);

    platform::TextMeasurer& textMeasurer() override { return m_textMeasurer; }
    platform::ImageFiles& imageFiles() override { return m_imageFiles; }
    std::unique_ptr<platform::GraphicsContexts>
    makeGraphicsContexts(const platform::Screen& screen) override;

    void setLocale(const std::string& locale) override;
    void setTextScale(platform::CGFloat scale) override;
    void reloadFonts() override;
    std::shared_ptr<TextLines> textLines() override { return nullptr; }

    bool isFontInstalled(const std::string& family) override;
    bool areFontsInstalled() override;
    bool fitsInto(const std::string& path, const Snapshot& snapshot) override;
    Result<void> writeSnapshot(const std::string& path, const Snapshot& snapshot) override;
    void prepare() override;
    std::optional<Error> failure() const override { return m_failure; }

private:
    class LoadedTextMeasurer final : public platform::TextMeasurer {
    public:
        explicit LoadedTextMeasurer(LoadedRendering& rendering)
            : m_rendering(rendering) {}
        platform::CGSize sizeWithFont(std::string_view text, const platform::UIFont& font) override;

    private:
        LoadedRendering& m_rendering;
    };
    class LoadedImageFiles final : public platform::ImageFiles {
    public:
        explicit LoadedImageFiles(LoadedRendering& rendering)
            : m_rendering(rendering) {}
        std::shared_ptr<const platform::UIImage>
        imageWithContentsOfFile(std::string_view path) override;

    private:
        LoadedRendering& m_rendering;
    };
    class LoadedGraphicsContexts;

    Rendering& loaded();
    std::unique_ptr<Rendering> load();

    std::string m_module;
    RenderingOptions m_options;
    LoadedTextMeasurer m_textMeasurer{*this};
    LoadedImageFiles m_imageFiles{*this};
    std::unique_ptr<Rendering> m_loaded; // null: not loaded yet
    std::optional<Error> m_failure;
};

} // namespace quorvel::freedesktop
