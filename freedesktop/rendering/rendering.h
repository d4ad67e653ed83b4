// What measures texts, reads pictures and paints, without a type of the libraries that do it. They
// are dear to load, so that a program that shows nothing does without them.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/result.h"
#include "platform/geometry.h"
#include "platform/graphics_context.h"
#include "platform/image_files.h"
#include "platform/screen.h"
#include "platform/text_measurer.h"

namespace quorvel::freedesktop {

class TextLines;
struct Snapshot;

struct RenderingOptions {
    std::optional<std::string> fontFamily; // absent: the desktop's
    std::string locale;                    // see TextLines
    platform::CGFloat textScale = 1;       // see TextLines::setTextScale()
    std::string dataFolder;                // with the pictures that come with the program
};

// Belongs to the thread that made it. The services live as long as the rendering.
class Rendering {
public:
    virtual ~Rendering() = default;

    virtual platform::TextMeasurer& textMeasurer() = 0;
    virtual platform::ImageFiles& imageFiles() = 0;
    // Never null. The screen gives the scale and must outlive the result, as the rendering must.
    virtual std::unique_ptr<platform::GraphicsContexts>
    makeGraphicsContexts(const platform::Screen& screen) = 0;

    // See TextLines.
    virtual void setLocale(const std::string& locale) = 0;
    virtual void setTextScale(platform::CGFloat scale) = 0;
    virtual void reloadFonts() = 0;
    // The renderer of texts, for a program that paints on surfaces of its own and is linked with
    // the libraries. Null in any other program.
    virtual std::shared_ptr<TextLines> textLines() = 0;

    // See freedesktop/text/fonts.h.
    virtual bool isFontInstalled(const std::string& family) = 0;
    virtual bool areFontsInstalled() = 0;
    // See freedesktop/graphics/snapshot.h.
    virtual bool fitsInto(const std::string& path, const Snapshot& snapshot) = 0;
    virtual Result<void> writeSnapshot(const std::string& path, const Snapshot& snapshot) = 0;

    // Starts to load the list of fonts in the background: for a program that will show texts.
    virtual void prepare() = 0;
    // Present: the libraries cannot be loaded, so that nothing was measured or read.
    virtual std::optional<Error> failure() const { return std::nullopt; }
};

// Never returns null.
using RenderingFactory = std::function<std::unique_ptr<Rendering>(const RenderingOptions& options)>;

} // namespace quorvel::freedesktop
