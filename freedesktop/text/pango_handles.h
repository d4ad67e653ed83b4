// Owning pointers to Pango's objects. Only for this folder.
#pragma once

#include <memory>

#include <pango/pangocairo.h>

#include "freedesktop/glib/handles.h"

namespace quorvel::freedesktop {

struct FontDescriptionFree {
    void operator()(PangoFontDescription* description) const {
        pango_font_description_free(description);
    }
};
using FontDescriptionHandle = std::unique_ptr<PangoFontDescription, FontDescriptionFree>;

struct FontMetricsUnref {
    void operator()(PangoFontMetrics* metrics) const { pango_font_metrics_unref(metrics); }
};
using FontMetricsHandle = std::unique_ptr<PangoFontMetrics, FontMetricsUnref>;

} // namespace quorvel::freedesktop
