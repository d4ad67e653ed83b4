// A graphics context that records its calls instead of painting.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/graphics_context.h"

namespace quorvel::platform::memory {

// One line an operation: its name and its arguments with spaces between them, numbers as short as
// they can be, a rectangle as "x y width height", a colour as "red green blue alpha":
//   saveGState
//   translateCTM 0 44
//   fillRect 15 43.5 305 0.5
//   drawImage 60x60@2 0 0 20 20
//   drawText "Lunch" 14 0 0 0 1 47 13 35 17.5    (text, font size, colour, rectangle)
// A font with a family name is written as NAME:SIZE.
class RecordingContext : public GraphicsContext {
public:
    void saveGState() override;
    void restoreGState() override;
    void translateCTM(CGFloat tx, CGFloat ty) override;
    void scaleCTM(CGFloat sx, CGFloat sy) override;
    void beginPath() override;
    void moveToPoint(CGFloat x, CGFloat y) override;
    void addArcToPoint(CGFloat x1, CGFloat y1, CGFloat x2, CGFloat y2, CGFloat radius) override;
    void closePath() override;
    void clip() override;
    void clipToRect(const CGRect& rect) override;
    void setLineWidth(CGFloat width) override;
    void setStrokeColor(const UIColor& color) override;
    void setFillColor(const UIColor& color) override;
    void strokeEllipseInRect(const CGRect& rect) override;
    void fillEllipseInRect(const CGRect& rect) override;
    void fillRect(const CGRect& rect) override;
    void fillHairline(const CGRect& rect) override;
    void drawImage(const UIImage& image, const CGRect& rect) override;
    void drawText(std::string_view text, const UIFont& font, const UIColor& color,
                  const CGRect& rect) override;

    std::vector<std::string> operations;
};

} // namespace quorvel::platform::memory
