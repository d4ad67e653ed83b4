// What every text is shaped with. For this folder's own sources.
#pragma once

#include <optional>
#include <string>

#include "freedesktop/text/pango_handles.h"

namespace quorvel::freedesktop {

// Every text is shaped at this one size, in points, and scaled from there: looking up a family at
// another size costs the system 2 ms, and nothing that is shaped here depends on the size.
inline constexpr double shapedSize = 64;

// Of the process's one font map. `locale` may be empty: the environment's.
ObjectHandle<PangoContext> createFontContext(const std::string& locale);

FontDescriptionHandle describeFont(const std::string& family);

// The family asked for, as it is; else the desktop's interface font where a desktop session runs
// and the font is installed; else the first installed of Inter, Cantarell, Noto Sans and
// DejaVu Sans; else whatever the system holds for a font without serifs.
std::string systemFontFamily(PangoContext* context, const std::optional<std::string>& requested);

} // namespace quorvel::freedesktop
