#include "base/translatable_text.h"

#include <cstddef>

namespace quorvel {

namespace {

constexpr std::size_t placeholderLength = 3; // "{1}"

// The number of the placeholder that the text begins with; 0: it begins with none.
std::size_t placeholderNumber(std::string_view text) {
    const bool isPlaceholder = text.size() >= placeholderLength && text[0] == '{' &&
                               text[1] >= '1' && text[1] <= '9' && text[2] == '}';
    return isPlaceholder ? static_cast<std::size_t>(text[1] - '0') : 0;
}

template <class Values>
std::string filledWith(std::string_view text, const Values& values) {
    std::string result;
    while (!text.empty()) {
        const std::size_t number = placeholderNumber(text);
        if (number > 0 && number <= values.size()) {
            result += values.begin()[static_cast<std::ptrdiff_t>(number) - 1];
            text.remove_prefix(placeholderLength);
        } else {
            result += text.front();
            text.remove_prefix(1);
        }
    }
    return result;
}

} // namespace

std::string filled(std::string_view text, std::initializer_list<std::string_view> values) {
    return filledWith(text, values);
}

std::string filled(std::string_view text, const std::vector<std::string>& values) {
    return filledWith(text, values);
}

TranslatableText TranslatableText::verbatim(std::string text) {
    TranslatableText result(std::move(text));
    result.m_isVerbatim = true;
    return result;
}

std::string TranslatableText::english() const {
    return translatedBy([](const std::string& text) { return text; });
}

} // namespace quorvel
