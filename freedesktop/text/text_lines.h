// Shapes, measures and paints single lines of text. Caches shaped lines, so that a text that is
// drawn in many frames is shaped once.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/geometry.h"
#include "platform/ui_color.h"
#include "platform/ui_font.h"

struct _cairo; // cairo_t

namespace quorvel::freedesktop {

inline constexpr platform::CGFloat leastTextScale = 0.5;
inline constexpr platform::CGFloat greatestTextScale = 3;

// A process needs one object.
class TextLines {
public:
    // `family`: the family for UIFont's empty name, installed or not. Absent: systemFontFamily()
    // chooses it at the first text.
    // `locale`, such as "ja_JP", chooses between the forms of a character in different languages.
    // Empty: the environment's.
    explicit TextLines(std::optional<std::string> family = std::nullopt,
                       const std::string& locale = {});
    ~TextLines();
    TextLines(const TextLines&) = delete;
    TextLines& operator=(const TextLines&) = delete;

    // Starts to load the list of fonts in the background, which else happens with the first text.
    void prepare() { shaper(); }

    // As in the constructor. Drops all cached lines.
    void setLocale(const std::string& locale);

    // Enlarges every font, measured and painted. A number outside the bounds becomes the nearer
    // bound, NaN becomes 1.
    void setTextScale(platform::CGFloat scale);
    platform::CGFloat textScale() const { return m_textScale; }
    // Drops all cached lines. A system font that was not requested is chosen again with the next
    // text.
    void reloadFonts();

    // The width of the text and the line height of the font itself, whatever other fonts supply
    // missing characters. In points, not rounded. Zero if the font size is not positive.
    platform::CGSize size(std::string_view text, const platform::UIFont& font);

    const std::string& systemFamily();

    // Starts at the rectangle's left edge and centres vertically. Truncates a wider text with an
    // ellipsis. Empties the context's path.
    void paint(struct _cairo* context, std::string_view text, const platform::UIFont& font,
               const platform::UIColor& color, const platform::CGRect& rect);

private:
    class Shaper;
    Shaper& shaper();
    platform::CGFloat enlargement(const platform::UIFont& font) const;

    std::optional<std::string> m_family;
    std::string m_locale;
    platform::CGFloat m_textScale = 1;
    std::unique_ptr<Shaper> m_shaper; // null before the first text
};

} // namespace quorvel::freedesktop
