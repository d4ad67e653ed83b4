#include "freedesktop/preferences/xml_parser.h"

#include <algorithm>
#include <iterator>

#include "freedesktop/preferences/single_byte_encoding.h"

namespace quorvel::freedesktop {
namespace {

int fillEncoding(void*, const XML_Char* name, XML_Encoding* info) {
    const auto encoding = singleByteEncodingNamed(name);
    if (!encoding) {
        return XML_STATUS_ERROR;
    }
    std::copy(encoding->begin(), encoding->end(), std::begin(info->map));
    info->data = nullptr;
    info->convert = nullptr;
    info->release = nullptr;
    return XML_STATUS_OK;
}

std::size_t endOf(std::string_view text, std::size_t from, std::string_view mark) {
    const std::size_t found = text.find(mark, from);
    return found == text.npos ? text.size() : found;
}

// A declaration ends, or the declarations inside it start, at an unquoted bracket.
std::size_t endOfDeclaration(std::string_view text, std::size_t from) {
    while ((from = text.find_first_of("\"'<>[", from)) != text.npos) {
        const char c = text[from];
        if (c != '"' && c != '\'') {
            return from;
        }
        from = endOf(text, from + 1, text.substr(from, 1)) + 1;
    }
    return text.size();
}

// Where markup may start after the one at `from`, which is not a comment.
std::size_t endOfMarkup(std::string_view text, std::size_t from) {
    const std::string_view rest = text.substr(from);
    if (rest.starts_with("<![CDATA[")) {
        return endOf(text, from, "]]>");
    }
    if (rest.starts_with("<?")) {
        return endOf(text, from, "?>");
    }
    return rest.starts_with("<!") ? endOfDeclaration(text, from + 2) : from + 1;
}

} // namespace

std::string withPlainComments(std::string_view text) {
    constexpr std::string_view comment = "<!--";
    std::string plain(text);
    std::size_t at = 0;
    while ((at = text.find('<', at)) != text.npos) {
        if (!text.substr(at).starts_with(comment)) {
            at = endOfMarkup(text, at);
            continue;
        }
        const std::size_t from = at + comment.size();
        at = endOf(text, from, "-->");
        std::replace(plain.begin() + static_cast<std::ptrdiff_t>(from),
                     plain.begin() + static_cast<std::ptrdiff_t>(at), '-', ' ');
    }
    return plain;
}

XmlParserHandle makeXmlParser(XmlEncoding encoding) {
    XmlParserHandle parser(XML_ParserCreate(encoding == XmlEncoding::utf8 ? "UTF-8" : nullptr));
    if (parser) {
        XML_SetUnknownEncodingHandler(parser.get(), fillEncoding, nullptr);
    }
    return parser;
}

} // namespace quorvel::freedesktop
