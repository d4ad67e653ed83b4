#include "shells/settings/swatch.h"

#include <cmath>
#include <memory>
#include <numbers>

namespace quorvel::settings_pages {

namespace {

void drawSwatch(GtkDrawingArea*, cairo_t* context, int width, int height, gpointer data) {
    const auto& swatch = *static_cast<const Swatch*>(data);
    const double radius = swatch.diameter / 2.0;
    cairo_translate(context, width / 2.0, height / 2.0);
    const double part = 2 * std::numbers::pi / static_cast<double>(swatch.colours.size());
    double angle = -std::numbers::pi / 2;
    for (const Rgba& colour : swatch.colours) {
        cairo_move_to(context, 0, 0);
        cairo_arc(context, 0, 0, radius, angle, angle + part);
        cairo_close_path(context);
        cairo_set_source_rgba(context, colour[0] / 255.0, colour[1] / 255.0, colour[2] / 255.0,
                              colour[3] / 255.0);
        cairo_fill(context);
        angle += part;
    }
    if (!swatch.colours.empty()) { // a ring that is seen on every background
        cairo_set_source_rgba(context, 0.5, 0.5, 0.5, 1);
        cairo_set_line_width(context, 1);
        cairo_new_path(context);
        cairo_arc(context, 0, 0, radius, 0, 2 * std::numbers::pi);
        cairo_stroke(context);
    }
}

void destroySwatch(gpointer data) {
    delete static_cast<Swatch*>(data);
}

} // namespace

GtkWidget* makeSwatch(int size) {
    auto* const area = static_cast<GtkWidget*>(g_object_new(
        GTK_TYPE_DRAWING_AREA, "accessible-role", GTK_ACCESSIBLE_ROLE_PRESENTATION, nullptr));
    gtk_drawing_area_set_content_width(GTK_DRAWING_AREA(area), size);
    gtk_drawing_area_set_content_height(GTK_DRAWING_AREA(area), size);
    gtk_widget_set_valign(area, GTK_ALIGN_CENTER);
    setSwatch(area, {});
    return area;
}

void setSwatch(GtkWidget* widget, const Swatch& swatch) {
    auto data = std::make_unique<Swatch>(swatch);
    gtk_drawing_area_set_draw_func(GTK_DRAWING_AREA(widget), drawSwatch, data.release(),
                                   destroySwatch);
    gtk_widget_queue_draw(widget);
}

std::optional<Rgba> parseRgba(const char* text) {
    GdkRGBA colour{};
    if (gdk_rgba_parse(&colour, text) == FALSE) {
        return std::nullopt;
    }
    const auto byte = [](float part) { return static_cast<std::uint8_t>(std::lround(part * 255)); };
    return Rgba{byte(colour.red), byte(colour.green), byte(colour.blue), byte(colour.alpha)};
}

} // namespace quorvel::settings_pages
