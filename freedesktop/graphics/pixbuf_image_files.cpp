#include "freedesktop/graphics/pixbuf_image_files.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <utility>

#include <gdk-pixbuf/gdk-pixbuf.h>

#include "freedesktop/glib/handles.h"
#include "freedesktop/graphics/cairo_pixels.h"

namespace quorvel::freedesktop {

using platform::CGFloat;
using platform::UIImage;

namespace {

constexpr std::string_view stockIconPath = "/Applications/MobileCal.app/icon-about@2x.png";
constexpr std::string_view stockIconName = "icon-about@2x.png";
constexpr std::size_t maximumFileSize = std::size_t{32} << 20;
constexpr std::int64_t maximumFilePixels = std::int64_t{1} << 25;
constexpr std::size_t maximumCachedImages = 8;
constexpr int maximumCachedPixels = 1 << 20;

using LoaderHandle = ObjectHandle<GdkPixbufLoader>;
using PixbufHandle = ObjectHandle<GdkPixbuf>;

// As many bytes as the file had when it was opened: at most maximumFileSize.
std::optional<std::string> contentsOf(const RegularFile& file) {
    std::string contents(static_cast<std::size_t>(file.size()), '\0');
    const auto size = file.read(contents.data(), contents.size());
    if (!size)
        return std::nullopt;
    contents.resize(*size);
    return contents;
}

bool isPng(std::string_view contents) {
    return contents.starts_with("\x89PNG\r\n\x1A\n");
}

bool isJpeg(std::string_view contents) {
    return contents.starts_with("\xFF\xD8\xFF");
}

// The last chunk, with its checksum.
bool hasEndOfPng(std::string_view contents) {
    return contents.rfind("IEND\xAE\x42\x60\x82") != std::string_view::npos;
}

// With the name of the format the library need not load all of its format modules.
LoaderHandle createLoader(std::string_view contents) {
    const char* format = isPng(contents) ? "png" : isJpeg(contents) ? "jpeg" : nullptr;
    GdkPixbufLoader* loader =
        format != nullptr ? gdk_pixbuf_loader_new_with_type(format, nullptr) : nullptr;
    return LoaderHandle(loader != nullptr ? loader : gdk_pixbuf_loader_new());
}

struct Progress {
    bool tooLarge = false;
    int decodedRows = 0;
};

void checkSize(GdkPixbufLoader* loader, gint width, gint height, gpointer progress) {
    if (width <= 0 || height <= 0 || width > maximumSide || height > maximumSide ||
        std::int64_t{width} * height > maximumFilePixels) {
        static_cast<Progress*>(progress)->tooLarge = true;
        gdk_pixbuf_loader_set_size(loader, 0, 0); // makes the format's decoder stop
    }
}

void countRows(GdkPixbufLoader*, gint, gint y, gint, gint height, gpointer progress) {
    int& rows = static_cast<Progress*>(progress)->decodedRows;
    rows = std::max(rows, y + height);
}

// The library reports no error for a truncated file of the two usual formats.
bool isTruncated(std::string_view contents, const GdkPixbuf* pixbuf, int decodedRows) {
    if (isPng(contents))
        return !hasEndOfPng(contents);
    return isJpeg(contents) && decodedRows < gdk_pixbuf_get_height(pixbuf);
}

PixbufHandle decode(std::string_view contents) {
    const LoaderHandle loader = createLoader(contents);
    Progress progress;
    g_signal_connect(loader.get(), "size-prepared", G_CALLBACK(checkSize), &progress);
    g_signal_connect(loader.get(), "area-updated", G_CALLBACK(countRows), &progress);
    bool good = true;
    constexpr std::size_t pieceSize = 65536; // to stop early if the image is too large
    for (std::size_t at = 0; good && !progress.tooLarge && at < contents.size(); at += pieceSize) {
        const std::string_view piece = contents.substr(at, pieceSize);
        good = gdk_pixbuf_loader_write(loader.get(), reinterpret_cast<const guchar*>(piece.data()),
                                       piece.size(), nullptr) != 0;
    }
    const int decodedRows = progress.decodedRows; // closing also counts missing rows
    // The loader must be closed even after an error.
    good = gdk_pixbuf_loader_close(loader.get(), nullptr) != 0 && good && !progress.tooLarge;
    GdkPixbuf* pixbuf = good ? gdk_pixbuf_loader_get_pixbuf(loader.get()) : nullptr;
    if (pixbuf == nullptr || isTruncated(contents, pixbuf, decodedRows))
        return nullptr;
    return PixbufHandle(gdk_pixbuf_apply_embedded_orientation(pixbuf)); // written by cameras
}

std::uint32_t premultiplied(const guchar* pixel, bool hasAlpha) {
    const std::uint32_t alpha = hasAlpha ? pixel[3] : 255;
    const auto component = [alpha](guchar value) {
        return (std::uint32_t{value} * alpha + 127) / 255;
    };
    return alpha << 24 | component(pixel[0]) << 16 | component(pixel[1]) << 8 | component(pixel[2]);
}

SurfaceHandle surfaceOf(const GdkPixbuf* pixbuf) {
    const int width = gdk_pixbuf_get_width(pixbuf);
    const int height = gdk_pixbuf_get_height(pixbuf);
    const bool hasAlpha = gdk_pixbuf_get_has_alpha(pixbuf) != 0;
    SurfaceHandle surface = createPixels(width, height);
    if (!surface || gdk_pixbuf_get_bits_per_sample(pixbuf) != 8)
        return nullptr;
    const guchar* from = gdk_pixbuf_read_pixels(pixbuf);
    unsigned char* to = cairo_image_surface_get_data(surface.get());
    const std::ptrdiff_t fromStride = gdk_pixbuf_get_rowstride(pixbuf);
    const std::ptrdiff_t toStride = cairo_image_surface_get_stride(surface.get());
    const int channels = gdk_pixbuf_get_n_channels(pixbuf);
    for (int y = 0; y < height; ++y) {
        const guchar* pixel = from + y * fromStride;
        auto* row = reinterpret_cast<std::uint32_t*>(to + y * toStride);
        for (int x = 0; x < width; ++x, pixel += channels)
            row[x] = premultiplied(pixel, hasAlpha);
    }
    cairo_surface_mark_dirty(surface.get());
    return surface;
}

std::shared_ptr<const UIImage> imageOf(std::string_view contents, CGFloat scale) {
    const PixbufHandle pixbuf = decode(contents);
    SurfaceHandle surface = pixbuf ? surfaceOf(pixbuf.get()) : nullptr;
    return surface ? imageOfPixels(std::move(surface), scale) : nullptr;
}

bool isSmallEnoughToCache(const UIImage& image) {
    return image.size().width * image.size().height * image.scale() * image.scale() <=
           maximumCachedPixels;
}

} // namespace

CGFloat scaleOfFileName(std::string_view path) {
    const std::string_view name = path.substr(path.rfind('/') + 1);
    const std::string_view stem = name.substr(0, name.rfind('.'));
    if (stem.size() == name.size())
        return 1;
    return stem.ends_with("@2x") ? 2 : stem.ends_with("@3x") ? 3 : 1;
}

PixbufImageFiles::PixbufImageFiles(std::string dataFolder)
    : m_dataFolder(std::move(dataFolder)) {}

PixbufImageFiles::CachedImage* PixbufImageFiles::cachedAt(const std::string& path) {
    const auto found = std::find_if(m_cache.begin(), m_cache.end(),
                                    [&](const CachedImage& cached) { return cached.path == path; });
    return found == m_cache.end() ? nullptr : &*found;
}

// Replaces an older image of the same path.
void PixbufImageFiles::cache(CachedImage image) {
    std::erase_if(m_cache, [&](const CachedImage& cached) { return cached.path == image.path; });
    if (!isSmallEnoughToCache(*image.image))
        return;
    m_cache.push_front(std::move(image));
    if (m_cache.size() > maximumCachedImages)
        m_cache.pop_back();
}

std::shared_ptr<const UIImage> PixbufImageFiles::imageWithContentsOfFile(std::string_view path) {
    if (path.empty() || path.find('\0') != std::string_view::npos)
        return nullptr;
    const std::string file = path == stockIconPath
                                 ? (std::filesystem::path(m_dataFolder) / stockIconName).string()
                                 : std::string(path);
    const std::int64_t readAt = m_fileClock();
    const auto opened = RegularFile::open(file);
    if (!opened || opened->size() > maximumFileSize)
        return nullptr;
    return imageOfFile(file, *opened, readAt);
}

std::shared_ptr<const UIImage> PixbufImageFiles::imageOfFile(const std::string& file,
                                                             const RegularFile& opened,
                                                             std::int64_t readAt) {
    const FileVersion& version = opened.version();
    CachedImage* const cached = cachedAt(file);
    const bool isSameVersion = cached != nullptr && cached->version == version;
    if (isSameVersion && cached->isSettled)
        return cached->image;
    const auto contents = contentsOf(opened);
    if (!contents)
        return nullptr;
    const std::size_t hash = std::hash<std::string>()(*contents);
    const bool willBeSettled = isSettled(version, readAt);
    if (isSameVersion && cached->contentHash == hash) {
        cached->isSettled = willBeSettled;
        return cached->image;
    }
    auto image = imageOf(*contents, scaleOfFileName(file));
    if (image)
        cache({file, version, willBeSettled, hash, image});
    return image;
}

} // namespace quorvel::freedesktop
