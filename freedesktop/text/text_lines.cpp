// Shapes lines at one size and scales them to measure and paint: a text is shaped once for all
// sizes, and no size exceeds the range of Pango's integers.
#include "freedesktop/text/text_lines.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>

#include "freedesktop/text/font_context.h"
#include "freedesktop/text/least_recently_used.h"
#include "freedesktop/text/line_text.h"
#include "freedesktop/text/shaped_line.h"

namespace quorvel::freedesktop {

using platform::CGFloat;
using platform::CGRect;
using platform::CGSize;
using platform::UIColor;
using platform::UIFont;

namespace {

constexpr CGFloat maximumSize = 1e6; // points
// Absorbs rounding errors, so that a rectangle of the measured width fits the text.
constexpr CGFloat widthTolerance = 0.05;
constexpr int notTruncated = -1;

struct LineView;

struct LineKey {
    explicit LineKey(const LineView& view);
    std::string text; // at most lineTextMaximumBytes
    std::string family;
    std::size_t textSize; // of the whole text, at most lineTextMaximumBytes + 1
    int truncationWidth;
};

struct LineView {
    LineView(std::string_view wholeText, const UIFont& font, int width)
        : text(wholeText.substr(0, lineTextMaximumBytes))
        , family(font.familyName)
        , textSize(std::min(wholeText.size(), lineTextMaximumBytes + 1))
        , truncationWidth(width) {}
    explicit LineView(const LineKey& key)
        : text(key.text)
        , family(key.family)
        , textSize(key.textSize)
        , truncationWidth(key.truncationWidth) {}
    bool operator==(const LineView&) const = default;

    std::string_view text;
    std::string_view family;
    std::size_t textSize;
    int truncationWidth;
};

LineKey::LineKey(const LineView& view)
    : text(view.text)
    , family(view.family)
    , textSize(view.textSize)
    , truncationWidth(view.truncationWidth) {}

struct LineHash {
    std::size_t operator()(const LineView& view) const {
        std::uint64_t hash = std::hash<std::string_view>{}(view.text);
        const auto add = [&hash](std::uint64_t part) {
            hash ^= part + 0x9E3779B97F4A7C15 + (hash << 6) + (hash >> 2);
        };
        if (!view.family.empty())
            add(std::hash<std::string_view>{}(view.family));
        add(view.textSize);
        add(static_cast<std::uint64_t>(view.truncationWidth));
        return static_cast<std::size_t>(hash);
    }
};

// The line metrics of a family at the shaped size.
struct LineMetrics {
    CGFloat ascent = 0;
    CGFloat descent = 0;
    CGFloat height() const { return ascent + descent; }
};

bool isShown(std::string_view text, const UIFont& font) {
    return !text.empty() && font.pointSize > 0;
}

CGFloat toPoints(int units) {
    return static_cast<CGFloat>(units) / PANGO_SCALE;
}

// At the shaped size.
CGFloat widthOf(const ShapedLine& line) {
    return std::max(0.0, toPoints(line.width));
}

int toUnits(CGFloat points) {
    constexpr CGFloat maximum = 1 << 20; // points; far below the largest int
    return static_cast<int>(std::floor(std::min(points, maximum) * PANGO_SCALE));
}

} // namespace

class TextLines::Shaper {
public:
    Shaper(std::optional<std::string> family, const std::string& locale)
        : m_requestedFamily(std::move(family))
        , m_context(createFontContext(locale)) {}

    CGFloat width(std::string_view text, const UIFont& font) {
        const LineView view(text, font, notTruncated);
        if (const CGFloat* known = m_widths.find(view))
            return *known;
        return m_widths.insert(LineKey(view), widthOf(line(view, text)), view.text.size());
    }

    // The line, truncated if it is wider than that width when it is enlarged.
    const ShapedLine& lineOfWidth(std::string_view text, const UIFont& font, CGFloat width,
                                  CGFloat enlargement) {
        const ShapedLine& whole = line(LineView(text, font, notTruncated), text);
        if (enlargement * widthOf(whole) <= width + widthTolerance)
            return whole;
        return line(LineView(text, font, toUnits(width / enlargement)), text);
    }

    const LineMetrics& metrics(const UIFont& font) {
        const LineView view({}, font, notTruncated);
        if (const LineMetrics* known = m_metrics.find(view))
            return *known;
        return m_metrics.insert(LineKey(view), measuredMetrics(font.familyName),
                                view.family.size());
    }

    const std::string& systemFamily() {
        if (m_systemFamily.empty())
            m_systemFamily = systemFontFamily(m_context.get(), m_requestedFamily);
        return m_systemFamily;
    }

private:
    const ShapedLine& line(const LineView& view, std::string_view text) {
        if (const ShapedLine* known = m_lines.find(view))
            return *known;
        LineKey key(view);
        ShapedLine line = shaped(text, key.family, key.truncationWidth);
        return m_lines.insert(std::move(key), std::move(line), view.text.size());
    }

    ShapedLine shaped(std::string_view text, const std::string& family, int truncationWidth) {
        pango_context_set_font_description(m_context.get(), description(family).get());
        return truncationWidth == notTruncated
                   ? shapedLine(m_context.get(), lineText(text))
                   : truncatedLine(m_context.get(), lineText(text), truncationWidth);
    }

    LineMetrics measuredMetrics(const std::string& family) {
        const ObjectHandle<PangoFont> font(
            pango_context_load_font(m_context.get(), description(family).get()));
        if (font) {
            const FontExtents extents = extentsOf(font.get());
            const LineMetrics metrics = {toPoints(extents.ascent), toPoints(extents.descent)};
            if (metrics.height() >= shapedSize / 2 && metrics.height() <= shapedSize * 4)
                return metrics;
        }
        // There is no font, or its metrics are implausible: use typical metrics.
        return {shapedSize * 0.95, shapedSize * 0.25};
    }

    FontDescriptionHandle description(const std::string& family) {
        return describeFont(family.empty() ? systemFamily() : family);
    }

    std::optional<std::string> m_requestedFamily;
    std::string m_systemFamily; // empty until the first text
    ObjectHandle<PangoContext> m_context;
    // A width is small, a shaped line takes a few kilobytes.
    LeastRecentlyUsed<LineKey, LineView, CGFloat, LineHash> m_widths{16384, std::size_t{1} << 20};
    LeastRecentlyUsed<LineKey, LineView, ShapedLine, LineHash> m_lines{512, std::size_t{1} << 16};
    LeastRecentlyUsed<LineKey, LineView, LineMetrics, LineHash> m_metrics{64, std::size_t{1} << 16};
};

TextLines::TextLines(std::optional<std::string> family, const std::string& locale)
    : m_family(std::move(family))
    , m_locale(locale) {}

TextLines::~TextLines() = default;

TextLines::Shaper& TextLines::shaper() {
    if (!m_shaper) {
        m_shaper = std::make_unique<Shaper>(m_family, m_locale);
    }
    return *m_shaper;
}

void TextLines::setLocale(const std::string& locale) {
    m_locale = locale;
    reloadFonts();
}

void TextLines::setTextScale(CGFloat scale) {
    m_textScale = std::isnan(scale) ? 1 : std::clamp(scale, leastTextScale, greatestTextScale);
}

void TextLines::reloadFonts() {
    if (m_shaper) {
        m_shaper = std::make_unique<Shaper>(m_family, m_locale);
    }
}

// The scale from the shaped size to the size in which a font is shown.
CGFloat TextLines::enlargement(const UIFont& font) const {
    return std::min(font.pointSize * m_textScale, maximumSize) / shapedSize;
}

CGSize TextLines::size(std::string_view text, const UIFont& font) {
    if (!isShown(text, font))
        return {};
    return {enlargement(font) * shaper().width(text, font),
            enlargement(font) * shaper().metrics(font).height()};
}

const std::string& TextLines::systemFamily() {
    return shaper().systemFamily();
}

void TextLines::paint(struct _cairo* context, std::string_view text, const UIFont& font,
                      const UIColor& color, const CGRect& rect) {
    if (!isShown(text, font) || !(rect.size.width > 0) || !(rect.size.height > 0))
        return;
    const CGFloat scale = enlargement(font);
    const LineMetrics metrics = shaper().metrics(font);
    const ShapedLine& line = shaper().lineOfWidth(text, font, rect.size.width, scale);
    const CGFloat baseline = CGRectGetMinY(rect) +
                             (rect.size.height - scale * metrics.height()) / 2 +
                             scale * metrics.ascent;
    const bool isWider = scale * widthOf(line) > rect.size.width + widthTolerance;
    cairo_save(context);
    if (isWider) { // not even the ellipsis fits
        cairo_new_path(context);
        cairo_rectangle(context, CGRectGetMinX(rect), CGRectGetMinY(rect), rect.size.width,
                        rect.size.height);
        cairo_clip(context);
    }
    cairo_set_source_rgba(context, color.red, color.green, color.blue, color.alpha);
    cairo_move_to(context, CGRectGetMinX(rect), baseline);
    cairo_scale(context, scale, scale);
    showLine(context, line);
    cairo_restore(context);
    cairo_new_path(context);
}

} // namespace quorvel::freedesktop
