#include "shells/host/agenda_painting.h"

#include "freedesktop/graphics/cairo_graphics_context.h"
#include "shells/host/agenda_host.h"
#include "shells/host/painting.h"
#include "shells/host/row_pull.h"

namespace quorvel::shells {

using platform::CGFloat;

namespace {

// Behind the rows, which have no background of their own.
void paintPulls(platform::GraphicsContext& graphics, AgendaHost& host) {
    const platform::UIWindow& views = host.window();
    if (!views.isMoving() && views.draggedScrollView() == nullptr) {
        return;
    }
    for (const RowPull& pull : host.rows().pulls()) {
        paintPull(graphics, pull, host.appearance().title);
    }
}

void paintScrollIndicator(struct _cairo* context, const AgendaHost& host, CGFloat opacity) {
    const auto frame = scrollIndicatorFrame(host.rows().scrollPosition());
    if (frame && opacity > 0) {
        paintBar(context, *frame, host.appearance().title, opacity);
    }
}

} // namespace

void paintAgenda(struct _cairo* context, AgendaHost& host,
                 const std::shared_ptr<freedesktop::TextLines>& lines, CGFloat indicatorOpacity) {
    platform::UIWindow& views = host.window();
    views.layoutIfNeeded();
    {
        freedesktop::CairoGraphicsContext graphics(context, lines);
        paintPulls(graphics, host);
        views.render(graphics);
    }
    if (const auto row = host.rows().focusedRow()) {
        paintFocus(context, host.rows().rowFrame(*row), host.appearance().title);
    }
    paintScrollIndicator(context, host, indicatorOpacity);
}

} // namespace quorvel::shells
