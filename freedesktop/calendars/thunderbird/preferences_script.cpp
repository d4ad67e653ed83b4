#include "freedesktop/calendars/thunderbird/preferences_script.h"

#include <optional>
#include <utility>

#include "base/ascii_text.h"
#include "base/utf8.h"

namespace quorvel::freedesktop::thunderbird {
namespace {

constexpr std::string_view blanks = " \t\r\n";

// The code unit of "\xNN" or "\uNNNN"; `digits` begin behind the letter. Absent: they are none.
std::optional<char32_t> hexadecimal(std::string_view digits, std::size_t count) {
    char32_t code = 0;
    if (digits.size() < count) {
        return std::nullopt;
    }
    for (const char digit : digits.substr(0, count)) {
        const std::optional<int> value = hexDigitValue(digit);
        if (!value) {
            return std::nullopt;
        }
        code = code * 16 + static_cast<char32_t>(*value);
    }
    return code;
}

// What is left to read of a line.
class Script {
public:
    explicit Script(std::string_view text)
        : m_rest(text) {}

    bool take(std::string_view word) {
        skipBlanks();
        const bool isNext = m_rest.starts_with(word);
        m_rest.remove_prefix(isNext ? word.size() : 0);
        return isNext;
    }
    // A text between double or single quotation marks. Absent: there is none, or it does not end.
    std::optional<std::string> takeText() {
        skipBlanks();
        if (m_rest.empty() || (m_rest.front() != '"' && m_rest.front() != '\'')) {
            return std::nullopt;
        }
        const char mark = takeOne();
        std::string text;
        while (!m_rest.empty()) {
            const char character = takeOne();
            if (character == mark) {
                return text;
            }
            if (character == '\\' && !m_rest.empty()) {
                addEscaped(text);
            } else {
                text += character;
            }
        }
        return std::nullopt;
    }
    std::string takeUntil(char end) {
        const std::size_t size = m_rest.find(end);
        std::string word(trimmed(m_rest.substr(0, size), blanks));
        m_rest.remove_prefix(size == std::string_view::npos ? m_rest.size() : size);
        return word;
    }

private:
    void skipBlanks() { m_rest = trimmedStart(m_rest, blanks); }
    char takeOne() {
        const char character = m_rest.front();
        m_rest.remove_prefix(1);
        return character;
    }
    // The character behind a backslash.
    void addEscaped(std::string& text) {
        const char letter = takeOne();
        const std::size_t digits = letter == 'u' ? 4 : 2;
        const auto code =
            letter == 'u' || letter == 'x' ? hexadecimal(m_rest, digits) : std::nullopt;
        if (code) {
            m_rest.remove_prefix(digits);
            appendCharacterOrReplacement(text, withSecondHalf(*code));
        } else if (letter == 'n' || letter == 'r') {
            text += letter == 'n' ? '\n' : '\r';
        } else {
            text += letter;
        }
    }
    char32_t withSecondHalf(char32_t code) {
        if (!isHighSurrogate(code) || !m_rest.starts_with("\\u")) {
            return code;
        }
        const auto second = hexadecimal(m_rest.substr(2), 4);
        if (!second || !isLowSurrogate(*second)) {
            return code;
        }
        m_rest.remove_prefix(6);
        return joinSurrogates(code, *second);
    }

    std::string_view m_rest;
};

using Preference = std::pair<std::string, std::string>;

std::optional<Preference> preferenceIn(std::string_view line, std::string_view prefix) {
    Script script(line);
    if (!script.take("user_pref") || !script.take("(")) {
        return std::nullopt;
    }
    auto name = script.takeText();
    if (!name || !name->starts_with(prefix) || !script.take(",")) {
        return std::nullopt;
    }
    auto text = script.takeText();
    return Preference(*std::move(name), text ? *std::move(text) : script.takeUntil(')'));
}

} // namespace

std::map<std::string, std::string> preferencesIn(std::string_view script, std::string_view prefix) {
    std::map<std::string, std::string> preferences;
    while (!script.empty()) {
        const std::size_t end = script.find('\n');
        if (auto preference = preferenceIn(script.substr(0, end), prefix)) {
            preferences.insert_or_assign(std::move(preference->first),
                                         std::move(preference->second));
        }
        script.remove_prefix(end == std::string_view::npos ? script.size() : end + 1);
    }
    return preferences;
}

} // namespace quorvel::freedesktop::thunderbird
