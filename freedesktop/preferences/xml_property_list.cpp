#include "freedesktop/preferences/xml_property_list.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include <expat.h>

#include "base/ascii_text.h"
#include "base/translatable_text.h"
#include "freedesktop/preferences/property_list_builder.h"
#include "freedesktop/preferences/single_byte_encoding.h"
#include "freedesktop/preferences/text_position.h"
#include "freedesktop/preferences/xml_index.h"
#include "freedesktop/preferences/xml_parser.h"

namespace quorvel::freedesktop {
namespace {

using platform::PropertyListValue;

constexpr const char* unknownEntity = translatable("the XML has an unknown entity");

std::string_view withoutLeadingSpace(std::string_view text) {
    return trimmedStart(text, " \t\r\n");
}

// Expat expands entities within attributes. An entity without references that is no longer than a
// reference to it cannot make the text grow.
bool isHarmlessEntity(std::string_view name, std::string_view value) {
    constexpr std::size_t punctuation = 2; // of a reference: & and ;
    return value.find('&') == value.npos && value.size() <= name.size() + punctuation;
}

bool isForbidden(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x20 && c != '\t' && c != '\n' && c != '\r';
}

bool endsInReference(std::string_view text) {
    constexpr std::string_view nameCharacters =
        "#ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    const std::size_t last = text.find_last_not_of(nameCharacters);
    return last != text.npos && text[last] == '&';
}

// `rest` starts where expat found a character that fits nowhere.
const char* problemOfInvalidToken(std::string_view before, std::string_view rest) {
    if (!rest.empty() && isForbidden(rest.front())) {
        return translatable("the XML has a character that XML forbids");
    }
    return endsInReference(before) ? unknownEntity : translatable("the XML is malformed");
}

const char* problemOfError(XML_Error error) {
    switch (error) {
    case XML_ERROR_NO_ELEMENTS:
    case XML_ERROR_UNCLOSED_TOKEN:
    case XML_ERROR_UNCLOSED_CDATA_SECTION:
    case XML_ERROR_PARTIAL_CHAR:
        return translatable("the XML breaks off");
    case XML_ERROR_TAG_MISMATCH:
        return translatable("the elements of the XML do not match");
    case XML_ERROR_UNDEFINED_ENTITY:
    case XML_ERROR_EXTERNAL_ENTITY_HANDLING:
        return unknownEntity;
    case XML_ERROR_BAD_CHAR_REF:
        return translatable("the XML has a character that XML forbids");
    case XML_ERROR_UNKNOWN_ENCODING:
    case XML_ERROR_INCORRECT_ENCODING:
        return translatable("the XML is in an unknown encoding");
    case XML_ERROR_NO_MEMORY:
        return translatable("there is not enough memory");
    default:
        return translatable("the XML is malformed");
    }
}

// One pass of expat over a list.
class XmlPass {
public:
    explicit XmlPass(XmlEncoding encoding);

    // `list` may begin with white space.
    Result<PropertyListValue> parse(std::string_view list);

    // Stops if the XML declaration names an encoding other than UTF-8.
    void stopAtOtherEncoding() { m_stopsAtOtherEncoding = true; }
    bool namesOtherEncoding() const { return m_namesOtherEncoding; }

private:
    static XmlPass& self(void* pass) { return *static_cast<XmlPass*>(pass); }
    void setHandlers();
    void stopWhenDone();
    void fail(const char* problem);
    void onDeclaredEncoding(const char* encoding);
    void onEntity(std::string_view name, const char* value, int length);
    void countAttribute();
    void stop();
    std::size_t parserIndex() const;
    const char* problemAfter(std::string_view text) const;

    XmlParserHandle m_parser;
    PropertyListBuilder m_builder;
    const char* m_problem = nullptr; // null: none but the builder's
    bool m_stopsAtOtherEncoding = false;
    bool m_namesOtherEncoding = false;
    int m_declaredAttributes = 0;
    std::optional<std::size_t> m_stoppedAt; // a byte index
};

XmlPass::XmlPass(XmlEncoding encoding)
    : m_parser(makeXmlParser(encoding)) {
    if (m_parser) {
        setHandlers();
    }
}

void XmlPass::setHandlers() {
    XML_Parser parser = m_parser.get();
    XML_SetUserData(parser, this);
    XML_SetElementHandler(
        parser,
        [](void* pass, const XML_Char* name, const XML_Char**) {
            self(pass).m_builder.start(name);
            self(pass).stopWhenDone();
        },
        [](void* pass, const XML_Char*) {
            self(pass).m_builder.end();
            self(pass).stopWhenDone();
        });
    XML_SetCharacterDataHandler(parser, [](void* pass, const XML_Char* text, int length) {
        self(pass).m_builder.text({text, static_cast<std::size_t>(length)});
        self(pass).stopWhenDone();
    });
    // With a default handler, references to declared entities are skipped instead of expanded.
    XML_SetDefaultHandler(parser, [](void*, const XML_Char*, int) {});
    XML_SetSkippedEntityHandler(
        parser, [](void* pass, const XML_Char*, int) { self(pass).fail(unknownEntity); });
    XML_SetExternalEntityRefHandler(parser,
                                    [](XML_Parser, const XML_Char*, const XML_Char*,
                                       const XML_Char*,
                                       const XML_Char*) -> int { return XML_STATUS_ERROR; });
    XML_SetEntityDeclHandler(parser, [](void* pass, const XML_Char* name, int isParameter,
                                        const XML_Char* value, int length, const XML_Char*,
                                        const XML_Char*, const XML_Char*, const XML_Char*) {
        if (isParameter == 0) {
            self(pass).onEntity(name, value, length);
        }
    });
    XML_SetAttlistDeclHandler(parser,
                              [](void* pass, const XML_Char*, const XML_Char*, const XML_Char*,
                                 const XML_Char*, int) { self(pass).countAttribute(); });
    XML_SetXmlDeclHandler(parser, [](void* pass, const XML_Char*, const XML_Char* encoding, int) {
        self(pass).onDeclaredEncoding(encoding);
    });
}

void XmlPass::stopWhenDone() {
    if (m_builder.isDone()) {
        stop();
    }
}

// After it has stopped, the parser's own index is behind the event that was the reason.
void XmlPass::stop() {
    m_stoppedAt = m_stoppedAt.value_or(parserIndex());
    XML_StopParser(m_parser.get(), XML_FALSE);
}

void XmlPass::fail(const char* problem) {
    m_problem = problem;
    stop();
}

void XmlPass::onDeclaredEncoding(const char* encoding) {
    if (m_stopsAtOtherEncoding && encoding != nullptr && !isUtf8Name(encoding)) {
        m_namesOtherEncoding = true;
        XML_StopParser(m_parser.get(), XML_FALSE);
    }
}

// An entity without a value is external.
void XmlPass::onEntity(std::string_view name, const char* value, int length) {
    if (value != nullptr && !isHarmlessEntity(name, {value, static_cast<std::size_t>(length)})) {
        fail(translatable("the XML declares entities"));
    }
}

// The time that expat takes is quadratic in the number of declared attributes.
void XmlPass::countAttribute() {
    constexpr int mostDeclaredAttributes = 100;
    if (++m_declaredAttributes > mostDeclaredAttributes) {
        fail(translatable("the XML declares too many attributes"));
    }
}

// In bytes.
std::size_t XmlPass::parserIndex() const {
    return static_cast<std::size_t>(std::max<std::int64_t>(0, xmlByteIndex(m_parser.get())));
}

const char* XmlPass::problemAfter(std::string_view text) const {
    if (m_problem != nullptr) {
        return m_problem;
    }
    const XML_Error error = XML_GetErrorCode(m_parser.get());
    if (error != XML_ERROR_INVALID_TOKEN) {
        return problemOfError(error);
    }
    const std::size_t split = std::min(parserIndex(), text.size());
    return problemOfInvalidToken(text.substr(0, split), text.substr(split));
}

Result<PropertyListValue> XmlPass::parse(std::string_view list) {
    if (!m_parser) {
        return Error{problemOfError(XML_ERROR_NO_MEMORY), {}, {}};
    }
    const std::string_view afterSpace = withoutLeadingSpace(list);
    const std::string text = withPlainComments(afterSpace);
    const XML_Status status =
        XML_Parse(m_parser.get(), text.data(), static_cast<int>(text.size()), XML_TRUE);
    const auto failure = [&](std::string what) {
        const std::size_t offset =
            list.size() - afterSpace.size() + m_stoppedAt.value_or(parserIndex());
        return Error{std::move(what), positionText(list, offset), {}};
    };
    if (m_builder.isDone() && m_problem == nullptr) {
        auto result = m_builder.takeResult();
        return result ? std::move(result) : failure(result.error().what);
    }
    return failure(status == XML_STATUS_OK ? translatable("the XML holds no object")
                                           : problemAfter(text));
}

} // namespace

bool looksLikeXml(std::string_view text) {
    text = withoutLeadingSpace(text);
    constexpr std::array<std::string_view, 5> starts{"<?xml", "<!", "<plist", "<dict", "<array"};
    return std::any_of(starts.begin(), starts.end(),
                       [&](std::string_view start) { return text.starts_with(start); });
}

bool namesOtherEncoding(std::string_view text) {
    XmlPass pass(XmlEncoding::utf8);
    pass.stopAtOtherEncoding();
    static_cast<void>(pass.parse(text));
    return pass.namesOtherEncoding();
}

Result<PropertyListValue> parseXmlPropertyList(std::string_view text, std::string_view bytes) {
    XmlPass pass(XmlEncoding::utf8);
    if (!bytes.empty()) {
        pass.stopAtOtherEncoding();
    }
    auto value = pass.parse(text);
    if (!pass.namesOtherEncoding()) {
        return value;
    }
    return XmlPass(XmlEncoding::declared).parse(bytes);
}

} // namespace quorvel::freedesktop
