// An expat parser, as the readers of property lists need it.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

#include <expat.h>

namespace quorvel::freedesktop {

enum class XmlEncoding {
    utf8,
    declared, // by the XML declaration; single-byte encodings that expat lacks are known
};

struct XmlParserDeleter {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};
using XmlParserHandle = std::unique_ptr<std::remove_pointer_t<XML_Parser>, XmlParserDeleter>;

// Null: there is not enough memory.
XmlParserHandle makeXmlParser(XmlEncoding encoding);

// Replaces the dashes in comments by blanks: XML forbids "--" within a comment and expat refuses
// it, but people write it and other parsers of property lists accept it.
std::string withPlainComments(std::string_view text);

} // namespace quorvel::freedesktop
