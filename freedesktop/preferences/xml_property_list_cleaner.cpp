#include "freedesktop/preferences/xml_property_list_cleaner.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <vector>

#include "freedesktop/preferences/property_list_budget.h"
#include "freedesktop/preferences/utf8_text.h"

namespace quorvel::freedesktop {
namespace {

constexpr std::string_view whiteSpace = " \t\r\n";
constexpr std::string_view cdataStart = "<![CDATA[";
constexpr std::string_view cdataEnd = "]]>";

constexpr std::array<std::string_view, 3> containers{"plist", "dict", "array"};
constexpr std::array<std::string_view, 8> leaves{"key",  "string", "integer", "real",
                                                 "true", "false",  "date",    "data"};

template <class Names>
bool isOneOf(const Names& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool startsWith(std::string_view text, std::string_view start) {
    return text.substr(0, start.size()) == start;
}

std::optional<char32_t> namedCharacter(std::string_view name) {
    if (name == "lt") {
        return U'<';
    }
    if (name == "gt") {
        return U'>';
    }
    if (name == "amp") {
        return U'&';
    }
    if (name == "quot") {
        return U'"';
    }
    if (name == "apos") {
        return U'\'';
    }
    return std::nullopt;
}

std::optional<char32_t> numberedCharacter(std::string_view name) {
    if (name.substr(0, 1) != "#") {
        return std::nullopt;
    }
    const bool hexadecimal = name.substr(1, 1) == "x" || name.substr(1, 1) == "X";
    const std::string_view digits = name.substr(hexadecimal ? 2 : 1);
    std::uint32_t value = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, hexadecimal ? 16 : 10);
    if (error != std::errc() || end != digits.data() + digits.size() || value == 0) {
        return std::nullopt;
    }
    return value;
}

class Cleaner {
public:
    explicit Cleaner(std::string_view text)
        : m_rest(text) {}

    CleanedXml run() {
        m_output = "<plist>";
        while (m_problem.empty() && !m_done) {
            step();
        }
        m_output += "</plist>";
        return m_problem.empty() ? CleanedXml{std::move(m_output), {}} : CleanedXml{{}, m_problem};
    }

private:
    struct OpenElement {
        std::string_view name;
        bool keyRead = false; // of a dictionary whose next object is the key's value
    };

    void fail(const char* problem) { m_problem = problem; }

    void step() {
        if (m_rest.empty()) {
            fail("the XML breaks off");
        } else if (startsWith(m_rest, "<!--")) {
            skipPast(4, "-->");
        } else if (startsWith(m_rest, "<?")) {
            skipPast(2, "?>");
        } else if (startsWith(m_rest, cdataStart)) {
            takeCdata();
        } else if (startsWith(m_rest, "<!")) {
            skipDeclaration();
        } else if (startsWith(m_rest, "</")) {
            takeEnd();
        } else if (m_rest.front() == '<') {
            takeStart();
        } else {
            takeText();
        }
    }

    // `from` characters begin what `end` ends.
    std::optional<std::string_view> skipPast(std::size_t from, std::string_view end) {
        const std::size_t found = m_rest.find(end, from);
        if (found == std::string_view::npos) {
            fail("the XML breaks off");
            return std::nullopt;
        }
        const std::string_view inside = m_rest.substr(from, found - from);
        m_rest.remove_prefix(found + end.size());
        return inside;
    }

    // A document type may hold declarations of its own, in brackets.
    void skipDeclaration() {
        const std::size_t end = m_rest.find_first_of("[>");
        if (end != std::string_view::npos && m_rest[end] == '[') {
            const std::size_t bracket = m_rest.find(']', end);
            m_rest.remove_prefix(std::min(bracket, m_rest.size()));
        }
        skipPast(0, ">");
    }

    bool insideLeaf() const { return !m_open.empty() && isOneOf(leaves, m_open.back().name); }

    void takeCdata() {
        const auto inside = skipPast(cdataStart.size(), cdataEnd);
        if (inside && insideLeaf()) {
            m_text += *inside;
        } else if (inside) {
            fail("the XML has text between its elements");
        }
    }

    void takeText() {
        const std::string_view text = m_rest.substr(0, m_rest.find('<'));
        m_rest.remove_prefix(text.size());
        if (insideLeaf()) {
            resolveEntities(text);
        } else if (text.find_first_not_of(whiteSpace) != std::string_view::npos) {
            fail("the XML has text between its elements");
        }
    }

    void resolveEntities(std::string_view text) {
        while (!text.empty()) {
            const std::size_t ampersand = std::min(text.find('&'), text.size());
            m_text += text.substr(0, ampersand);
            text.remove_prefix(ampersand);
            if (text.empty()) {
                return;
            }
            constexpr std::size_t longestEntity = 16;
            const std::size_t end = text.substr(0, longestEntity).find(';');
            if (end == std::string_view::npos) {
                return fail("the XML has an unknown entity");
            }
            const std::string_view name = text.substr(1, end - 1);
            const auto character =
                name.substr(0, 1) == "#" ? numberedCharacter(name) : namedCharacter(name);
            if (!character) {
                return fail("the XML has an unknown entity");
            }
            appendUtf8(m_text, *character);
            text.remove_prefix(end + 1);
        }
    }

    // The '>' that ends a tag; one within an attribute's quotes does not.
    std::size_t tagEnd() const {
        char quote = '\0';
        for (std::size_t i = 1; i < m_rest.size(); ++i) {
            const char c = m_rest[i];
            if (quote != '\0') {
                quote = c == quote ? '\0' : quote;
            } else if (c == '"' || c == '\'') {
                quote = c;
            } else if (c == '>') {
                return i;
            }
        }
        return std::string_view::npos;
    }

    void takeStart() {
        const std::size_t end = tagEnd();
        if (end == std::string_view::npos) {
            return fail("the XML breaks off");
        }
        std::string_view inside = m_rest.substr(1, end - 1);
        m_rest.remove_prefix(end + 1);
        const bool empty = !inside.empty() && inside.back() == '/';
        inside.remove_suffix(empty ? 1 : 0);
        const std::string_view name = inside.substr(0, inside.find_first_of(whiteSpace));
        if (!mayOpen(name)) {
            return;
        }
        if (name != "plist" && ++m_objects > PropertyListBudget::objects) {
            return fail("it holds too many objects");
        }
        if (m_open.size() >= PropertyListBudget::depth) {
            return fail("it is nested too deep");
        }
        m_open.push_back({name, false});
        if (isOneOf(containers, name) && name != "plist") {
            m_output.append("<").append(name).append(">");
        }
        if (empty) {
            close(name);
        }
    }

    bool mayOpen(std::string_view name) {
        const bool known = isOneOf(containers, name) || isOneOf(leaves, name);
        if (!known || insideLeaf() || (name == "plist" && !m_open.empty())) {
            fail("the XML has elements that are not those of a property list");
            return false;
        }
        const bool topLevel = m_open.empty() || m_open.back().name == "plist";
        if (topLevel && name != "plist" && m_objects > 0) {
            fail("the XML has more than one object");
            return false;
        }
        const bool inDictionary = !topLevel && m_open.back().name == "dict";
        const bool keyExpected = inDictionary && !m_open.back().keyRead;
        if ((name == "key") != keyExpected) {
            fail("the XML has a key without a value, or a value without a key");
            return false;
        }
        if (inDictionary) {
            m_open.back().keyRead = keyExpected;
        }
        return true;
    }

    void takeEnd() {
        const auto inside = skipPast(2, ">");
        if (!inside) {
            return;
        }
        const std::string_view name = inside->substr(0, inside->find_first_of(whiteSpace));
        if (m_open.empty() || m_open.back().name != name) {
            return fail("the elements of the XML do not match");
        }
        close(name);
    }

    void close(std::string_view name) {
        if (isOneOf(leaves, name)) {
            writeLeaf(name);
        } else if (m_open.back().keyRead) {
            fail("the XML has a key without a value, or a value without a key");
        } else if (name != "plist") {
            m_output.append("</").append(name).append(">");
        }
        m_open.pop_back();
        if (m_open.empty()) {
            m_done = true;
            if (m_objects == 0) {
                fail("the XML holds no object");
            }
        }
    }

    void writeLeaf(std::string_view name) {
        if (name == "true" || name == "false") {
            m_output.append("<").append(name).append("/>");
        } else if (name == "string" || name == "key") {
            m_output.append("<").append(name).append(">");
            writeCdata(m_text);
            m_output.append("</").append(name).append(">");
        } else {
            writeNumberLike(name);
        }
        m_text.clear();
    }

    // Numbers, dates and data have no place for markup.
    void writeNumberLike(std::string_view name) {
        if (m_text.find_first_of("<&") != std::string::npos) {
            return fail("the XML has a value that is none");
        }
        m_output.append("<").append(name).append(">").append(m_text);
        m_output.append("</").append(name).append(">");
    }

    void writeCdata(std::string_view text) {
        if (text.empty()) {
            return;
        }
        m_output += cdataStart;
        while (!text.empty()) {
            const std::size_t end = text.find(cdataEnd);
            const std::string_view part = text.substr(0, end == text.npos ? end : end + 2);
            m_output += part;
            text.remove_prefix(part.size());
            if (!text.empty()) {
                m_output.append(cdataEnd).append(cdataStart);
            }
        }
        m_output += cdataEnd;
    }

    std::string_view m_rest;
    std::string m_output;
    std::string m_text; // of the leaf that is open
    std::vector<OpenElement> m_open;
    std::size_t m_objects = 0;
    bool m_done = false;
    std::string m_problem;
};

} // namespace

bool looksLikeXml(std::string_view text) {
    const std::size_t first = text.find_first_not_of(whiteSpace);
    if (first == std::string_view::npos) {
        return false;
    }
    text.remove_prefix(first);
    for (const std::string_view start : {"<?xml", "<!", "<plist", "<dict", "<array"}) {
        if (startsWith(text, start)) {
            return true;
        }
    }
    return false;
}

CleanedXml cleanedXmlPropertyList(std::string_view text) {
    return Cleaner(text).run();
}

} // namespace quorvel::freedesktop
