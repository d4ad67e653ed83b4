// Paints the whole agenda: the rows, and what the host adds behind and in front of them.
#pragma once

#include <memory>

#include "platform/geometry.h"

struct _cairo; // the painting library's context

namespace quorvel::freedesktop {
class TextLines;
} // namespace quorvel::freedesktop

namespace quorvel::shells {

class AgendaHost;

// The context's units are points, its origin is that of the host's area. `indicatorOpacity`: of the
// scroll indicator, from 0 to 1. Paints no backdrop.
void paintAgenda(struct _cairo* context, AgendaHost& host,
                 const std::shared_ptr<freedesktop::TextLines>& lines,
                 platform::CGFloat indicatorOpacity);

} // namespace quorvel::shells
