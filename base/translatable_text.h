// Texts for the user: marked where they are written, filled in where they are used. What translates
// them is freedesktop/language.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quorvel {

// Marks a text that is translated later, such as one of a table: tools/update-messages collects the
// marked texts for translators.
constexpr const char* translatable(const char* text) {
    return text;
}

// Replaces "{1}", "{2}", ... up to "{9}" by the values. A translator may use them in another order
// and repeat them. A number without a value stays as it is, and so does every other brace.
std::string filled(std::string_view text, std::initializer_list<std::string_view> values);
std::string filled(std::string_view text, const std::vector<std::string>& values);

// A text that is made in one place, perhaps stored, and translated only where it is shown: what is
// wrong with a calendar, for instance.
class TranslatableText {
public:
    TranslatableText() = default;
    // `text` is in English and marked, with placeholders for the values, which are translated too.
    TranslatableText(std::string text, std::vector<TranslatableText> values = {})
        : m_text(std::move(text))
        , m_values(std::move(values)) {}
    TranslatableText(const char* text)
        : m_text(text) {}
    // A name, a number or a quoted text, which is the same in all languages.
    static TranslatableText verbatim(std::string text);

    bool empty() const { return m_text.empty(); }
    const std::string& text() const { return m_text; } // with its placeholders
    const std::vector<TranslatableText>& values() const { return m_values; }
    bool isVerbatim() const { return m_isVerbatim; }

    std::string english() const;
    // The text as `translate` returns it for each marked text, filled with its values.
    template <class Translate>
    std::string translatedBy(Translate translate) const;

    // Whether both are the same in English.
    friend bool operator==(const TranslatableText& one, const TranslatableText& other) {
        return one.english() == other.english();
    }

private:
    std::string m_text;
    std::vector<TranslatableText> m_values;
    bool m_isVerbatim = false;
};

template <class Translate>
std::string TranslatableText::translatedBy(Translate translate) const {
    if (m_isVerbatim) {
        return m_text;
    }
    std::vector<std::string> values;
    for (const TranslatableText& value : m_values) {
        values.push_back(value.translatedBy(translate));
    }
    return filled(translate(m_text), values);
}

} // namespace quorvel
