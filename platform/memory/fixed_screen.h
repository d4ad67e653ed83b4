// A display of a settable scale.
#pragma once

#include "platform/screen.h"

namespace quorvel::platform::memory {

class FixedScreen : public Screen {
public:
    CGFloat scale() const override { return m_scale; }
    void setScale(CGFloat scale) { m_scale = scale; }

private:
    CGFloat m_scale = 1;
};

} // namespace quorvel::platform::memory
