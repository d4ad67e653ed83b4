// Small pictures of colours and of the marks of rows.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include <gtk/gtk.h>

namespace quorvel::settings_pages {

using Rgba = std::array<std::uint8_t, 4>;

// A disc, cut into equal parts that have the colours. The diameter is in points.
struct Swatch {
    std::vector<Rgba> colours; // empty: nothing is drawn
    int diameter = 20;
};

// A widget of that size in points, with the swatch in its middle. A screen reader passes it over.
GtkWidget* makeSwatch(int size);
void setSwatch(GtkWidget* widget, const Swatch& swatch);

// "#RRGGBB" or "#RRGGBBAA"; absent for any other text.
std::optional<Rgba> parseRgba(const char* text);

} // namespace quorvel::settings_pages
