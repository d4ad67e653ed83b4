// Shows a picture scaled to the view.
#pragma once

#include <memory>

#include "platform/ui/ui_view.h"
#include "platform/ui_image.h"

namespace quorvel::platform {

// The modes that the widget uses.
enum class UIViewContentMode { scaleToFill = 0, scaleAspectFit = 1 };

// The name of the mode, such as "scaleAspectFit".
std::string_view contentModeName(UIViewContentMode mode);

// The rectangle of a picture of that size within the bounds.
CGRect imageRect(UIViewContentMode mode, CGSize imageSize, const CGRect& bounds);

// User interaction is disabled by default.
class UIImageView : public UIView {
public:
    explicit UIImageView(const CGRect& frame = {});

    std::string_view className() const override { return "UIImageView"; }

    const std::shared_ptr<const UIImage>& image() const { return m_image; } // may be null
    void setImage(std::shared_ptr<const UIImage> image);
    UIViewContentMode contentMode() const { return m_contentMode; }
    void setContentMode(UIViewContentMode mode) { m_contentMode = mode; }

    void drawRect(GraphicsContext& context) override;

private:
    std::shared_ptr<const UIImage> m_image;
    UIViewContentMode m_contentMode = UIViewContentMode::scaleToFill;
};

} // namespace quorvel::platform
