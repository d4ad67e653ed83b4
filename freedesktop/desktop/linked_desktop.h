// The desktop of a program that is linked with GIO.
#pragma once

#include "freedesktop/desktop/desktop.h"

namespace quorvel::freedesktop {

class LinkedDesktop final : public Desktop {
public:
    ClockFormat clockFormat() override;
    std::unique_ptr<eds::SourcesSearch> makeSourcesSearch() const override;
};

} // namespace quorvel::freedesktop
