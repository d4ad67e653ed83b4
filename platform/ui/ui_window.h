// The top of a view tree, on a screen.
#pragma once

#include "platform/ui/ui_view.h"

namespace quorvel::platform {

class Screen;

class UIWindow : public UIView {
public:
    // The screen outlives the window.
    UIWindow(const CGRect& frame, const Screen& screen)
        : UIView(frame)
        , m_screen(screen) {}

    std::string_view className() const override { return "UIWindow"; }
    const Screen& screen() const { return m_screen; }

private:
    const Screen& m_screen;
};

} // namespace quorvel::platform
