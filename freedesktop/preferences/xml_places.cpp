#include "freedesktop/preferences/xml_places.h"

#include <utility>

#include "base/ascii_text.h"
#include "freedesktop/preferences/xml_index.h"

namespace quorvel::freedesktop {
namespace {

// Follows the elements down to the entries of the root.
class PlacesPass {
public:
    explicit PlacesPass(XmlEncoding encoding)
        : m_parser(makeXmlParser(encoding)) {}

    std::optional<ListPlaces> run(std::string_view text) {
        if (!m_parser) {
            return std::nullopt;
        }
        setHandlers();
        // Expat refuses white space in front of the XML declaration.
        const std::string_view afterSpace = trimmedStart(text, " \t\r\n");
        m_shift = text.size() - afterSpace.size();
        const std::string plain = withPlainComments(afterSpace);
        XML_Parse(m_parser.get(), plain.data(), static_cast<int>(plain.size()), XML_TRUE);
        return m_isComplete ? std::optional(std::move(m_places)) : std::nullopt;
    }

private:
    static PlacesPass& self(void* pass) { return *static_cast<PlacesPass*>(pass); }

    void setHandlers() {
        XML_SetUserData(m_parser.get(), this);
        XML_SetElementHandler(
            m_parser.get(),
            [](void* pass, const XML_Char* name, const XML_Char**) { self(pass).start(name); },
            [](void* pass, const XML_Char*) { self(pass).end(); });
        XML_SetCharacterDataHandler(m_parser.get(),
                                    [](void* pass, const XML_Char* text, int length) {
                                        self(pass).text({text, static_cast<std::size_t>(length)});
                                    });
        // With a default handler, references to declared entities are skipped, not expanded.
        XML_SetDefaultHandler(m_parser.get(), [](void*, const XML_Char*, int) {});
    }

    std::size_t eventStart() const {
        return m_shift + static_cast<std::size_t>(xmlByteIndex(m_parser.get()));
    }
    std::size_t eventEnd() const {
        return eventStart() + static_cast<std::size_t>(xmlByteCount(m_parser.get()));
    }

    void start(std::string_view name) {
        if (m_depth == 0 && name == "plist") {
            return; // the root is within
        }
        if (m_depth == 0) {
            m_isList = name == "dict" || name == "array";
            m_places.start = eventStart();
        } else if (m_depth == 1) {
            startInRoot(name == "key");
        }
        ++m_depth;
    }

    void startInRoot(bool isKey) {
        m_isInKey = isKey;
        if (m_entry.keyEnd == 0) {
            m_entry.start = eventStart();
        }
        if (!isKey) {
            m_entry.valueStart = eventStart();
        }
    }

    void text(std::string_view characters) {
        if (m_isInKey && m_depth == 2) {
            m_entry.key += characters;
        }
    }

    void end() {
        if (m_depth == 0) {
            return; // of the plist element
        }
        --m_depth;
        if (m_depth == 0) {
            m_places.contentsEnd = eventStart();
            m_isComplete = m_isList;
            XML_StopParser(m_parser.get(), XML_FALSE);
        } else if (m_depth == 1 && m_isInKey) {
            m_isInKey = false;
            m_entry.keyEnd = eventEnd();
        } else if (m_depth == 1) {
            m_entry.valueEnd = m_entry.end = eventEnd();
            m_places.entries.push_back(std::exchange(m_entry, EntryPlace()));
        }
    }

    XmlParserHandle m_parser;
    std::size_t m_shift = 0; // bytes before those that expat gets
    std::size_t m_depth = 0; // of elements, without that of the plist
    bool m_isList = false;
    bool m_isInKey = false;
    bool m_isComplete = false;
    EntryPlace m_entry; // the one that is open
    ListPlaces m_places;
};

} // namespace

std::optional<ListPlaces> placesInXml(std::string_view text, XmlEncoding encoding) {
    return PlacesPass(encoding).run(text);
}

std::string withOpenRoot(std::string_view text, XmlEncoding encoding) {
    constexpr std::string_view emptyElementEnd = "/>";
    const auto places = placesInXml(text, encoding);
    const std::string_view upToEnd = text.substr(0, places ? places->contentsEnd : 0);
    if (!upToEnd.ends_with(emptyElementEnd) || !places->entries.empty()) {
        return std::string(text);
    }
    const std::string_view tag =
        trimmed(upToEnd.substr(places->start, upToEnd.size() - places->start - 2), " \t\r\n");
    const std::string_view name = tag.substr(1, tag.find_first_of(" \t\r\n") - 1);
    std::string open(text.substr(0, places->start));
    open.append(tag).append("></").append(name).append(">");
    return open.append(text.substr(places->contentsEnd));
}

} // namespace quorvel::freedesktop
