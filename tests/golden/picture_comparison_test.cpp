// The comparison of pictures must pass over other edges of glyphs, and find what is elsewhere, of
// another size or in another colour.
#include "tests/golden/picture_comparison.h"

#include <cairo.h>
#include <gmock/gmock.h>

#include <cstring>
#include <memory>

namespace quorvel::golden {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr int width = 200;
constexpr int height = 60;
constexpr double grey = 0.65;

// What a picture of a row shows: a dot, two texts and a line below them.
struct Row {
    double textX = 40;
    double textY = 25;
    double textGrey = 1;
    double textSize = 16;
    bool hasText = true;
    double dateX = 130;
    double dotGreen = 0.8;
    double lineY = 50;
    double backdrop = 0.1;
    cairo_antialias_t edges = CAIRO_ANTIALIAS_GRAY;
};

void drawText(cairo_t* context, const Row& row, double x, double brightness, const char* text) {
    cairo_select_font_face(context, "Inter", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context, row.textSize);
    cairo_font_options_t* const options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, row.edges);
    cairo_set_font_options(context, options);
    cairo_font_options_destroy(options);
    cairo_set_source_rgb(context, brightness, brightness, brightness);
    cairo_move_to(context, x, row.textY);
    cairo_show_text(context, text);
}

void draw(cairo_t* context, const Row& row) {
    cairo_set_source_rgb(context, row.backdrop, row.backdrop, row.backdrop);
    cairo_paint(context);
    cairo_set_source_rgb(context, 0.3, row.dotGreen, 0.4);
    cairo_arc(context, 20, 20, 8, 0, 7);
    cairo_fill(context);
    if (row.hasText)
        drawText(context, row, row.textX, row.textGrey, "Dinner");
    drawText(context, row, row.dateX, grey, "7 PM");
    cairo_set_source_rgb(context, 0.3, 0.3, 0.3);
    cairo_rectangle(context, 10, row.lineY, width - 10, 1);
    cairo_fill(context);
}

Picture drawn(const Row& row, int pictureHeight = height) {
    Picture picture{width, pictureHeight, true, {}};
    picture.pixels.resize(static_cast<std::size_t>(width) *
                          static_cast<std::size_t>(pictureHeight));
    const std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, pictureHeight),
        &cairo_surface_destroy);
    const std::unique_ptr<cairo_t, decltype(&cairo_destroy)> context(cairo_create(surface.get()),
                                                                     &cairo_destroy);
    draw(context.get(), row);
    cairo_surface_flush(surface.get());
    std::memcpy(picture.pixels.data(), cairo_image_surface_get_data(surface.get()),
                picture.pixels.size() * sizeof(picture.pixels[0]));
    return picture;
}

std::vector<std::string> differences(const Row& row) {
    return structuralDifferences(drawn(Row()), drawn(row), 1);
}

TEST(PictureComparison, FindsNothingInTheSamePicture) {
    EXPECT_THAT(differences(Row()), IsEmpty());
    EXPECT_EQ(differingShare(drawn(Row()), drawn(Row())), 0);
}

TEST(PictureComparison, PassesOverOtherEdges) {
    Row row;
    row.edges = CAIRO_ANTIALIAS_NONE;
    row.textX += 0.4;
    row.textY += 0.3;
    EXPECT_GT(differingShare(drawn(Row()), drawn(row)), 0.01);
    EXPECT_THAT(differences(row), IsEmpty());
}

// Words are one text or two, depending on the space between them.
TEST(PictureComparison, PassesOverALittleMoreSpace) {
    for (double x = 90; x < 110; x += 0.5) {
        Row row;
        row.dateX = x;
        Row wider = row;
        wider.dateX += 1;
        EXPECT_THAT(structuralDifferences(drawn(row), drawn(wider), 1), IsEmpty()) << x;
    }
}

TEST(PictureComparison, FindsAMovedText) {
    for (const double way : {-3.0, 3.0}) {
        Row across;
        across.textX += way;
        EXPECT_THAT(differences(across), Not(IsEmpty())) << way;
        Row down;
        down.textY += way;
        EXPECT_THAT(differences(down), Not(IsEmpty())) << way;
        Row date;
        date.dateX += way;
        EXPECT_THAT(differences(date), Not(IsEmpty())) << way;
    }
}

TEST(PictureComparison, FindsAMissingText) {
    Row row;
    row.hasText = false;
    EXPECT_THAT(structuralDifferences(drawn(Row()), drawn(row), 1), Not(IsEmpty()));
    EXPECT_THAT(structuralDifferences(drawn(row), drawn(Row()), 1), Not(IsEmpty()));
}

TEST(PictureComparison, FindsALargerText) {
    Row row;
    row.textSize = 19;
    EXPECT_THAT(differences(row), Not(IsEmpty()));
}

TEST(PictureComparison, FindsAMovedLine) {
    Row row;
    row.lineY += 3;
    EXPECT_THAT(differences(row), Not(IsEmpty()));
}

TEST(PictureComparison, FindsAnotherColor) {
    Row text;
    text.textGrey = grey;
    EXPECT_THAT(differences(text), ElementsAre(HasSubstr("have the colours")));
    Row dot;
    dot.dotGreen = 0.7;
    EXPECT_THAT(differences(dot), ElementsAre(HasSubstr("are in another colour")));
    Row backdrop;
    backdrop.backdrop = 0.15;
    EXPECT_THAT(differences(backdrop), Not(IsEmpty()));
}

TEST(PictureComparison, FindsAnotherSize) {
    const Picture larger = drawn(Row(), height + 3);
    EXPECT_THAT(structuralDifferences(drawn(Row()), larger, 1),
                ElementsAre("the size is 200 x 63 with alpha instead of 200 x 60 with alpha"));
    EXPECT_EQ(differingShare(drawn(Row()), larger), 1);
}

TEST(PictureComparison, TheToleranceOfPlacesGrowsWithTheScale) {
    Row row;
    row.textY += 3;
    EXPECT_THAT(structuralDifferences(drawn(Row()), drawn(row), 1), Not(IsEmpty()));
    EXPECT_THAT(structuralDifferences(drawn(Row()), drawn(row), 2), IsEmpty());
}

} // namespace
} // namespace quorvel::golden
