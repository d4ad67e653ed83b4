#include "freedesktop/preferences/list_notation.h"

#include <algorithm>
#include <cstdint>
#include <type_traits>

#include "base/ascii_text.h"
#include "base/utf8.h"
#include "freedesktop/preferences/xml_values.h"

namespace quorvel::freedesktop {
namespace {

using platform::PropertyListArray;
using platform::PropertyListDictionary;
using platform::PropertyListValue;

constexpr std::string_view space = " \t\r\n";

std::string element(std::string_view name, std::string_view content) {
    std::string text = "<";
    return text.append(name).append(">").append(content).append("</").append(name).append(">");
}

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            result += '\\';
        }
        result += c;
    }
    return result + '"';
}

} // namespace

std::string XmlNotation::escaped(std::string_view text) const {
    std::string result;
    while (!text.empty()) {
        const DecodedCharacter decoded = decodeCharacter(text);
        const char32_t character = decoded.character.value_or(replacementCharacter);
        const bool isForeign = m_encoding == XmlEncoding::declared && character > 0x7E;
        if (character == '&' || character == '<' || character == '>' || character == '\r' ||
            isForeign) {
            result += "&#" + std::to_string(static_cast<std::uint32_t>(character)) + ';';
        } else {
            appendCharacter(result, character);
        }
        text.remove_prefix(decoded.length);
    }
    return result;
}

std::string XmlNotation::value(const PropertyListValue& value) const {
    return std::visit(
        [this](const auto& held) -> std::string {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, bool>) {
                return held ? "<true/>" : "<false/>";
            } else if constexpr (std::is_same_v<Held, double>) {
                return element("real", textOfReal(held));
            } else if constexpr (std::is_arithmetic_v<Held>) {
                return element("integer", std::to_string(held));
            } else if constexpr (std::is_same_v<Held, std::string>) {
                return element("string", escaped(held));
            } else if constexpr (std::is_same_v<Held, PropertyListArray>) {
                std::string items;
                for (const PropertyListValue& item : held) {
                    items += this->value(item);
                }
                return element("array", items);
            } else if constexpr (std::is_same_v<Held, PropertyListDictionary>) {
                std::string entries;
                for (const auto& [name, item] : held) {
                    entries += key(name) + this->value(item);
                }
                return element("dict", entries);
            } else {
                return {};
            }
        },
        value.value);
}

std::string XmlNotation::key(std::string_view key) const {
    return element("key", escaped(key));
}

bool XmlNotation::isSeparator(std::string_view text) const {
    return trimmed(text, space).empty();
}

std::string OldNotation::value(const PropertyListValue& value) const {
    if (const auto* const items = std::get_if<PropertyListArray>(&value.value)) {
        std::string list;
        for (const PropertyListValue& item : *items) {
            list += (list.empty() ? "" : ", ") + this->value(item);
        }
        return '(' + list + ')';
    }
    const PropertyListValue stored = asOldValue(value);
    const auto* const text = std::get_if<std::string>(&stored.value);
    const bool isText = std::holds_alternative<std::string>(value.value);
    if (text == nullptr) {
        return {};
    }
    return isText ? quoted(*text) : *text;
}

std::string OldNotation::key(std::string_view key) const {
    return !key.empty() && std::ranges::all_of(key, isAsciiLetterOrDigit) ? std::string(key)
                                                                          : quoted(key);
}

bool OldNotation::isSeparator(std::string_view text) const {
    return trimmed(text, space) == "=";
}

bool canWrite(const PropertyListValue& value) {
    if (const auto* const items = std::get_if<PropertyListArray>(&value.value)) {
        return std::ranges::all_of(*items, canWrite);
    }
    return platform::stringValue(value).has_value();
}

PropertyListValue asOldValue(const PropertyListValue& value) {
    if (const auto* const truth = std::get_if<bool>(&value.value)) {
        return {std::string(*truth ? "YES" : "NO")};
    }
    if (const auto* const real = std::get_if<double>(&value.value)) {
        return {textOfReal(*real)};
    }
    if (const auto* const items = std::get_if<PropertyListArray>(&value.value)) {
        PropertyListArray stored;
        std::ranges::transform(*items, std::back_inserter(stored), asOldValue);
        return {std::move(stored)};
    }
    const auto text = platform::stringValue(value);
    return text ? PropertyListValue{*text} : value;
}

} // namespace quorvel::freedesktop
