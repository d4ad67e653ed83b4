#include "freedesktop/graphics/snapshot.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <string_view>
#include <utility>

#include <cairo-pdf.h>
#include <cairo-svg.h>

#include "base/ascii_text.h"
#include "freedesktop/graphics/cairo_graphics_context.h"
#include "freedesktop/graphics/cairo_handles.h"
#include "freedesktop/graphics/pixel_length.h"
#include "freedesktop/graphics/png_encoding.h"
#include "freedesktop/io/file_replacement.h"
#include "freedesktop/language/messages.h"

namespace quorvel::freedesktop {

using platform::CGFloat;
using platform::CGSize;

namespace {

enum class Format { png, svg, pdf };

constexpr CGFloat maximumPictureSide = 32767; // cairo's limit
constexpr CGFloat maximumPicturePixels = 1 << 27;
constexpr CGFloat maximumPageSide = 1e6; // cairo's coordinates overflow at some millions

std::optional<Format> formatOf(const std::string& path) {
    const std::string extension = asciiLowerCase(std::filesystem::path(path).extension().string());
    if (extension == ".png")
        return Format::png;
    if (extension == ".svg")
        return Format::svg;
    if (extension == ".pdf")
        return Format::pdf;
    return std::nullopt;
}

// In pixels; whole ones for a .png.
CGSize deviceSize(Format format, const Snapshot& snapshot) {
    const CGSize points = {std::max(snapshot.size.width, 1.0), std::max(snapshot.size.height, 1.0)};
    if (format == Format::png)
        return {std::max(pixelLength(points.width, snapshot.scale), 1.0),
                std::max(pixelLength(points.height, snapshot.scale), 1.0)};
    return {points.width * snapshot.scale, points.height * snapshot.scale};
}

bool canBeHeld(Format format, CGSize size) {
    const CGFloat side = std::max(size.width, size.height);
    if (format == Format::png)
        return side <= maximumPictureSide && size.width * size.height <= maximumPicturePixels;
    return side <= maximumPageSide;
}

cairo_status_t append(void* contents, const unsigned char* bytes, unsigned int count) {
    static_cast<std::string*>(contents)->append(reinterpret_cast<const char*>(bytes), count);
    return CAIRO_STATUS_SUCCESS;
}

SurfaceHandle createSurface(Format format, CGSize size, std::string& contents) {
    if (format == Format::png)
        return SurfaceHandle(cairo_image_surface_create(
            CAIRO_FORMAT_ARGB32, static_cast<int>(size.width), static_cast<int>(size.height)));
    if (format == Format::svg) {
        SurfaceHandle surface(
            cairo_svg_surface_create_for_stream(append, &contents, size.width, size.height));
        cairo_svg_surface_set_document_unit(surface.get(), CAIRO_SVG_UNIT_PX);
        return surface;
    }
    SurfaceHandle surface(
        cairo_pdf_surface_create_for_stream(append, &contents, size.width, size.height));
    // A fixed date, because the same snapshot must give the same bytes.
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE,
                                   "2001-01-01T00:00:00Z");
    return surface;
}

void paintOn(cairo_surface_t* surface, const Snapshot& snapshot,
             const std::shared_ptr<TextLines>& lines) {
    const ContextHandle context(cairo_create(surface));
    if (const auto& backdrop = snapshot.backdrop) {
        cairo_set_source_rgba(context.get(), backdrop->red, backdrop->green, backdrop->blue,
                              backdrop->alpha);
        cairo_paint(context.get());
    }
    cairo_scale(context.get(), snapshot.scale, snapshot.scale);
    CairoGraphicsContext graphics(context.get(), lines);
    snapshot.paint(graphics);
}

Error failure(std::string what) {
    return {std::move(what), {}, {}};
}

Result<void> statusOf(cairo_surface_t* surface) {
    const cairo_status_t status = cairo_surface_status(surface);
    return status == CAIRO_STATUS_SUCCESS ? Result<void>()
                                          : Result<void>(failure(cairo_status_to_string(status)));
}

Result<std::string> render(Format format, CGSize size, const Snapshot& snapshot,
                           const std::shared_ptr<TextLines>& lines) {
    std::string contents;
    const SurfaceHandle surface = createSurface(format, size, contents);
    if (const Result<void> created = statusOf(surface.get()); !created)
        return created.error();
    paintOn(surface.get(), snapshot, lines);
    if (format == Format::png)
        return pngOf(surface.get());
    cairo_surface_finish(surface.get());
    if (const Result<void> finished = statusOf(surface.get()); !finished)
        return finished.error();
    return contents;
}

} // namespace

bool fitsInto(const std::string& path, const Snapshot& snapshot) {
    const std::optional<Format> format = formatOf(path);
    return format && canBeHeld(*format, deviceSize(*format, snapshot));
}

Result<void> writeSnapshot(const std::string& path, const Snapshot& snapshot,
                           const std::shared_ptr<TextLines>& lines) {
    const std::optional<Format> format = formatOf(path);
    if (!format)
        return failure(
            filled(translated("the name of the picture \"{1}\" does not end in .png, .svg or .pdf"),
                   {path}));
    if (!std::isnormal(snapshot.scale) || snapshot.scale < 0 ||
        !std::isfinite(snapshot.size.width) || !std::isfinite(snapshot.size.height))
        return failure(translated("the picture has no size that can be drawn"));
    const CGSize size = deviceSize(*format, snapshot);
    if (!canBeHeld(*format, size))
        return failure(filled(
            translated("a picture of {1} x {2} pixels is too large"),
            {std::to_string(std::llround(size.width)), std::to_string(std::llround(size.height))}));
    const auto contents = render(*format, size, snapshot, lines);
    if (!contents)
        return failure(filled(translated("cannot draw the picture: {1}"), {contents.error().what}));
    if (const auto replaced = replaceFile(path, *contents); !replaced)
        return failure(filled(translated("cannot write \"{1}\": {2}"),
                              {path, translated(replaced.error().what)}));
    return {};
}

} // namespace quorvel::freedesktop
