#include "freedesktop/rendering/loaded_rendering.h"

#include <utility>

#include "freedesktop/io/module_function.h"
#include "freedesktop/language/messages.h"
#include "freedesktop/rendering/module.h"
#include "freedesktop/rendering/unseen_rendering.h"

namespace quorvel::freedesktop {

using platform::CGFloat;
using platform::CGSize;
using platform::ImageContext;
using platform::UIImage;

namespace {

Error loadFailure(const std::string& reason) {
    return {filled(translated("the part of Quorvel that draws cannot be loaded ({1})"), {reason}),
            {},
            translated("install Quorvel again (on Debian the package quorvel)")};
}

Result<std::unique_ptr<Rendering>> renderingOfModule(const std::string& file,
                                                     const RenderingOptions& options) {
    const auto function = moduleFunction(file, makeRenderingSymbol);
    if (!function) {
        return loadFailure(function.error());
    }
    std::unique_ptr<Rendering> rendering(reinterpret_cast<MakeRendering>(*function)(options));
    if (!rendering) {
        return loadFailure(file);
    }
    return rendering;
}

} // namespace

class LoadedRendering::LoadedGraphicsContexts final : public platform::GraphicsContexts {
public:
    LoadedGraphicsContexts(LoadedRendering& rendering, const platform::Screen& screen)
        : m_rendering(rendering)
        , m_screen(screen) {}

    std::unique_ptr<ImageContext> beginImageContext(CGSize size, bool opaque,
                                                    CGFloat scale) override {
        if (!m_contexts) {
            m_contexts = m_rendering.loaded().makeGraphicsContexts(m_screen);
        }
        return m_contexts->beginImageContext(size, opaque, scale);
    }

private:
    LoadedRendering& m_rendering;
    const platform::Screen& m_screen;
    std::unique_ptr<platform::GraphicsContexts> m_contexts; // null before the first image
};

CGSize LoadedRendering::LoadedTextMeasurer::sizeWithFont(std::string_view text,
                                                         const platform::UIFont& font) {
    return m_rendering.loaded().textMeasurer().sizeWithFont(text, font);
}

std::shared_ptr<const UIImage>
LoadedRendering::LoadedImageFiles::imageWithContentsOfFile(std::string_view path) {
    return m_rendering.loaded().imageFiles().imageWithContentsOfFile(path);
}

LoadedRendering::LoadedRendering(std::string module, const RenderingOptions& options)
    : m_module(std::move(module))
    , m_options(options) {}

Rendering& LoadedRendering::loaded() {
    if (!m_loaded) {
        m_loaded = load();
    }
    return *m_loaded;
}

std::unique_ptr<Rendering> LoadedRendering::load() {
    Result<std::unique_ptr<Rendering>> rendering = renderingOfModule(m_module, m_options);
    if (!rendering) {
        m_failure = rendering.error();
        return std::make_unique<UnseenRendering>();
    }
    return *std::move(rendering);
}

std::unique_ptr<platform::GraphicsContexts>
LoadedRendering::makeGraphicsContexts(const platform::Screen& screen) {
    return std::make_unique<LoadedGraphicsContexts>(*this, screen);
}

void LoadedRendering::setLocale(const std::string& locale) {
    m_options.locale = locale;
    if (m_loaded) {
        m_loaded->setLocale(locale);
    }
}

void LoadedRendering::setTextScale(CGFloat scale) {
    m_options.textScale = scale;
    if (m_loaded) {
        m_loaded->setTextScale(scale);
    }
}

void LoadedRendering::reloadFonts() {
    if (m_loaded) {
        m_loaded->reloadFonts();
    }
}

bool LoadedRendering::isFontInstalled(const std::string& family) {
    return loaded().isFontInstalled(family);
}

bool LoadedRendering::areFontsInstalled() {
    return loaded().areFontsInstalled();
}

bool LoadedRendering::fitsInto(const std::string& path, const Snapshot& snapshot) {
    return loaded().fitsInto(path, snapshot);
}

Result<void> LoadedRendering::writeSnapshot(const std::string& path, const Snapshot& snapshot) {
    Rendering& rendering = loaded();
    return m_failure ? Result<void>(*m_failure) : rendering.writeSnapshot(path, snapshot);
}

void LoadedRendering::prepare() {
    loaded().prepare();
}

} // namespace quorvel::freedesktop
