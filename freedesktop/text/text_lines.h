// Single lines of text, shaped, measured and painted. What was shaped is remembered, so that a text
// that shows in frame after frame is shaped once.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/geometry.h"
#include "platform/ui_color.h"
#include "platform/ui_font.h"

struct _cairo; // the painting library's context

namespace quorvel::freedesktop {

// When the list of fonts is read: at once in the background, or with the first text.
enum class FontReading { early, late };

// For one thread. A process needs one, best made early where texts will be shown.
class TextLines {
public:
    // `family`: what UIFont's empty name stands for, installed or not. Absent: the desktop's
    // interface font, or the first of some good ones, looked for at the first text.
    // `locale`, such as "ja_JP", chooses between the forms that languages give the same character;
    // empty: the environment's.
    explicit TextLines(std::optional<std::string> family = std::nullopt,
                       const std::string& locale = {}, FontReading reading = FontReading::early);
    ~TextLines();
    TextLines(const TextLines&) = delete;
    TextLines& operator=(const TextLines&) = delete;

    // As in the constructor. What was shaped is shaped anew.
    void setLocale(const std::string& locale);

    // The text's width, and the line height of the font itself: a character that another font lends
    // does not make the line higher. In points, not rounded; nothing for a size that is not above
    // 0.
    platform::CGSize size(std::string_view text, const platform::UIFont& font);

    const std::string& systemFamily();

    // From the rectangle's left edge, vertically centred, cut with an ellipsis at the end of the
    // text where it is wider. The context's path is empty afterwards.
    void paint(struct _cairo* context, std::string_view text, const platform::UIFont& font,
               const platform::UIColor& color, const platform::CGRect& rect);

private:
    class Shaper;
    Shaper& shaper();

    std::optional<std::string> m_family;
    std::string m_locale;
    std::unique_ptr<Shaper> m_shaper; // null before the first text, where fonts are read late
};

} // namespace quorvel::freedesktop
