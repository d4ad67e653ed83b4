#include "freedesktop/preferences/old_property_list.h"

#include <algorithm>
#include <optional>
#include <string>

#include "base/ascii_text.h"
#include "base/translatable_text.h"
#include "base/utf8.h"
#include "freedesktop/preferences/property_list_budget.h"
#include "freedesktop/preferences/text_position.h"

namespace quorvel::freedesktop {
namespace {

using platform::PropertyListArray;
using platform::PropertyListData;
using platform::PropertyListDictionary;
using platform::PropertyListValue;
using MaybeValue = std::optional<PropertyListValue>;

bool isUnquoted(char c) {
    return isAsciiLetterOrDigit(c) || std::string_view("_$/:.-").find(c) != std::string_view::npos;
}

class Parser {
public:
    explicit Parser(std::string_view text)
        : m_text(text)
        , m_rest(text) {}

    Result<PropertyListValue> run() {
        skipSpace();
        if (m_rest.empty()) {
            return PropertyListValue{PropertyListDictionary()};
        }
        const std::string_view all = m_rest;
        MaybeValue value = object(0);
        skipSpace();
        if (value && !m_rest.empty() && std::holds_alternative<std::string>(value->value)) {
            m_rest = all; // the first key of a strings file
            value = pairs(0, '\0');
        }
        skipSpace();
        if (!value || !m_rest.empty()) {
            return Error{m_problem.empty() ? translatable("it is not a property list") : m_problem,
                         positionText(m_text, position()),
                         {}};
        }
        return std::move(*value);
    }

    // After run(), if that has returned a dictionary.
    const ListPlaces& places() const { return m_places; }

private:
    std::size_t position() const { return m_text.size() - m_rest.size(); }

    void skipSpace() {
        while (!m_rest.empty()) {
            if (m_rest.front() == ' ' || (m_rest.front() >= '\t' && m_rest.front() <= '\r')) {
                m_rest.remove_prefix(1);
            } else if (m_rest.substr(0, 2) == "//") {
                m_rest.remove_prefix(std::min(m_rest.find_first_of("\r\n"), m_rest.size()));
            } else if (m_rest.substr(0, 2) == "/*") {
                const std::size_t end = m_rest.find("*/", 2);
                m_rest.remove_prefix(end == m_rest.npos ? m_rest.size() : end + 2);
            } else {
                return;
            }
        }
    }

    bool skip(char c) {
        skipSpace();
        if (m_rest.empty() || m_rest.front() != c) {
            return false;
        }
        m_rest.remove_prefix(1);
        return true;
    }

    MaybeValue fail(const char* problem) {
        m_problem = problem;
        return std::nullopt;
    }

    MaybeValue object(std::size_t depth) {
        if (depth > PropertyListBudget::depth) {
            return fail(translatable("it is nested too deep"));
        }
        if (++m_objects > PropertyListBudget::objects) {
            return fail(translatable("it holds too many objects"));
        }
        if (skip('{')) {
            return pairs(depth, '}');
        }
        if (skip('(')) {
            return array(depth);
        }
        if (skip('<')) {
            return data();
        }
        if (auto text = string()) {
            return PropertyListValue{std::move(*text)};
        }
        return std::nullopt;
    }

    // Parses up to `end`; with '\0' up to the end of the text.
    MaybeValue pairs(std::size_t depth, char end) {
        MaybeValue value(std::in_place);
        if (!readPairs(depth, end, value->value.emplace<PropertyListDictionary>())) {
            value.reset();
        }
        return value;
    }

    bool readPairs(std::size_t depth, char end, PropertyListDictionary& dictionary) {
        while (true) {
            skipSpace();
            const std::size_t start = position();
            if (end == '\0' ? m_rest.empty() : skip(end)) {
                m_places.contentsEnd = start; // the last pairs to end are those of the root
                return true;
            }
            EntryPlace place;
            place.start = start;
            if (!readPair(depth, place, dictionary)) {
                return false;
            }
            if (depth == 0) {
                m_places.entries.push_back(std::move(place));
            }
        }
    }

    bool readPair(std::size_t depth, EntryPlace& place, PropertyListDictionary& dictionary) {
        auto key = string();
        if (!key) {
            return false;
        }
        place.key = *key;
        place.keyEnd = place.valueStart = place.valueEnd = position();
        MaybeValue value = valueOf(*key, depth, place);
        if (!value || !skip(';')) {
            return false;
        }
        place.end = position();
        dictionary.insert_or_assign(std::move(*key), std::move(*value));
        return true;
    }

    // A key without a value is its own value.
    MaybeValue valueOf(const std::string& key, std::size_t depth, EntryPlace& place) {
        if (!skip('=')) {
            return PropertyListValue{key};
        }
        skipSpace();
        place.valueStart = position();
        MaybeValue value = object(depth + 1);
        place.valueEnd = position();
        return value;
    }

    MaybeValue array(std::size_t depth) {
        PropertyListArray values;
        while (!skip(')')) {
            MaybeValue value = object(depth + 1);
            if (!value) {
                return std::nullopt;
            }
            values.push_back(std::move(*value));
            if (!skip(',')) {
                return skip(')') ? MaybeValue(PropertyListValue{std::move(values)}) : std::nullopt;
            }
        }
        return PropertyListValue{std::move(values)};
    }

    MaybeValue data() {
        PropertyListData bytes;
        while (!skip('>')) {
            const auto high = m_rest.size() < 2 ? std::nullopt : hexDigitValue(m_rest[0]);
            const auto low = high ? hexDigitValue(m_rest[1]) : std::nullopt;
            if (!low) {
                return std::nullopt;
            }
            bytes.push_back(static_cast<std::byte>(*high * 16 + *low));
            m_rest.remove_prefix(2);
        }
        return PropertyListValue{std::move(bytes)};
    }

    std::optional<std::string> string() {
        skipSpace();
        if (m_rest.empty()) {
            return std::nullopt;
        }
        if (m_rest.front() == '"' || m_rest.front() == '\'') {
            return quoted();
        }
        std::size_t length = 0;
        while (length < m_rest.size() && isUnquoted(m_rest[length])) {
            ++length;
        }
        if (length == 0) {
            return std::nullopt;
        }
        std::string text(m_rest.substr(0, length));
        m_rest.remove_prefix(length);
        return text;
    }

    std::optional<std::string> quoted() {
        const char quote = m_rest.front();
        m_rest.remove_prefix(1);
        std::string text;
        while (!m_rest.empty()) {
            const char c = m_rest.front();
            m_rest.remove_prefix(1);
            if (c == quote) {
                return wellFormedUtf8(text);
            }
            if (c != '\\') {
                text += c;
            } else if (m_rest.empty()) {
                break;
            } else {
                escape(text);
            }
        }
        return std::nullopt;
    }

    void escape(std::string& text) {
        const char c = m_rest.front();
        if (c >= '0' && c <= '7') {
            return appendCharacterOrReplacement(text, number(8, 3));
        }
        m_rest.remove_prefix(1);
        static constexpr std::string_view letters = "abfnrtv";
        static constexpr std::string_view controls = "\a\b\f\n\r\t\v";
        if (const std::size_t at = letters.find(c); at != std::string_view::npos) {
            text += controls[at];
        } else if (c == 'U' || c == 'u') {
            unicode(text);
        } else {
            text += c;
        }
    }

    // A character beyond 16 bits is written as its two surrogates.
    void unicode(std::string& text) {
        char32_t character = number(16, 4);
        if (isHighSurrogate(character) &&
            (m_rest.substr(0, 2) == "\\U" || m_rest.substr(0, 2) == "\\u")) {
            m_rest.remove_prefix(2);
            const char32_t low = number(16, 4);
            character = isLowSurrogate(low) ? joinSurrogates(character, low) : character;
        }
        appendCharacterOrReplacement(text, character);
    }

    char32_t number(int base, std::size_t mostDigits) {
        char32_t value = 0;
        for (std::size_t i = 0; i < mostDigits && !m_rest.empty(); ++i) {
            const auto digit = hexDigitValue(m_rest.front());
            if (!digit || *digit >= base) {
                break;
            }
            value = value * static_cast<char32_t>(base) + static_cast<char32_t>(*digit);
            m_rest.remove_prefix(1);
        }
        return value;
    }

    std::string_view m_text;
    std::string_view m_rest;
    std::size_t m_objects = 0;
    std::string m_problem;
    ListPlaces m_places; // of the root
};

} // namespace

Result<PropertyListValue> parseOldPropertyList(std::string_view text) {
    return Parser(text).run();
}

std::optional<ListPlaces> placesInOldPropertyList(std::string_view text) {
    Parser parser(text);
    const auto list = parser.run();
    const bool isDictionary = list && std::holds_alternative<PropertyListDictionary>(list->value);
    return isDictionary ? std::optional(parser.places()) : std::nullopt;
}

} // namespace quorvel::freedesktop
