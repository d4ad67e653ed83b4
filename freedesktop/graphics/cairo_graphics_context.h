// The platform's graphics context on any cairo surface.
#pragma once

#include <memory>
#include <vector>

#include "freedesktop/text/text_lines.h"
#include "platform/graphics_context.h"

struct _cairo; // cairo_t

namespace quorvel::freedesktop {

// Painting anything empties the path. A restore without its save, a figure without size, and
// coordinates that are NaN or infinite have no effect.
class CairoGraphicsContext final : public platform::GraphicsContext {
public:
    // Shares ownership of the context, whose current units are the points. On a raster surface it
    // draws images at whole pixels, which keeps them sharp.
    CairoGraphicsContext(struct _cairo* context, std::shared_ptr<TextLines> lines);
    ~CairoGraphicsContext() override;
    CairoGraphicsContext(const CairoGraphicsContext&) = delete;
    CairoGraphicsContext& operator=(const CairoGraphicsContext&) = delete;

    void saveGState() override;
    void restoreGState() override;
    void translateCTM(platform::CGFloat tx, platform::CGFloat ty) override;
    void scaleCTM(platform::CGFloat sx, platform::CGFloat sy) override;

    void beginPath() override;
    void moveToPoint(platform::CGFloat x, platform::CGFloat y) override;
    void addArcToPoint(platform::CGFloat x1, platform::CGFloat y1, platform::CGFloat x2,
                       platform::CGFloat y2, platform::CGFloat radius) override;
    void closePath() override;
    void clip() override;
    void clipToRect(const platform::CGRect& rect) override;

    void setLineWidth(platform::CGFloat width) override;
    void setStrokeColor(const platform::UIColor& color) override;
    void setFillColor(const platform::UIColor& color) override;
    void strokeEllipseInRect(const platform::CGRect& rect) override;
    void fillEllipseInRect(const platform::CGRect& rect) override;
    void fillRect(const platform::CGRect& rect) override;
    void fillHairline(const platform::CGRect& rect) override;

    void drawImage(const platform::UIImage& image, const platform::CGRect& rect) override;
    void drawText(std::string_view text, const platform::UIFont& font,
                  const platform::UIColor& color, const platform::CGRect& rect) override;

private:
    // The part of the graphics state that cairo does not store.
    struct State {
        platform::UIColor strokeColor = platform::UIColor::blackColor();
        platform::UIColor fillColor = platform::UIColor::blackColor();
    };

    State& state() { return m_states.back(); }
    void hideEverything();
    void addEllipse(const platform::CGRect& rect);

    struct _cairo* m_context;
    std::shared_ptr<TextLines> m_lines;
    std::vector<State> m_states{State{}};
    bool m_isRaster;
};

} // namespace quorvel::freedesktop
