// Most lines of a calendar are of no interest. Their names decide that, before anything is unfolded
// or split.
#include "icalendar/model/ics_file_parser.h"

#include <optional>
#include <string>

#include "icalendar/model/component_parser.h"
#include "icalendar/model/ics_file_builder.h"
#include "icalendar/model/message_text.h"
#include "icalendar/model/property_names.h"
#include "icalendar/model/quoted_printable_line.h"
#include "icalendar/text/content_lines.h"
#include "icalendar/text/encoded_text.h"
#include "icalendar/text/property_values.h"

namespace quorvel::icalendar {
namespace {

constexpr std::size_t pieceToDecode = std::size_t{256} << 10U; // bytes

bool isNameEnd(std::string_view text, std::size_t at) {
    return at < text.size() && (text[at] == ':' || text[at] == ';');
}

} // namespace

class IcsFileParser::Impl {
public:
    Impl(const std::function<bool(std::string_view)>& zoneIsKnown, std::size_t mostBytes)
        : m_builder(mostBytes)
        , m_components(m_builder, zoneIsKnown) {}

    std::size_t read(std::string_view piece) {
        const bool mayLackItsMark = m_bytesParsed == 0 && piece.size() < Utf16Decoder::markSize;
        return mayLackItsMark ? 0 : parse(piece, false);
    }

    void beginWithinCalendar() { m_components.beginWithinCalendar(); }

    // UTF-16 has no lines before it is decoded.
    std::size_t readLines(std::string_view piece) { return parse(piece, !m_decoder); }

    bool append(const Impl& second) {
        const std::size_t lines = m_lines.linesTaken();
        if (m_decoder || m_quotedPrintable.isOpen() || second.m_quotedPrintable.isOpen() ||
            second.m_line.number == 0 || !m_components.isWithinPlainCalendar() ||
            !second.m_components.isBetweenComponents() ||
            !m_builder.append(second.m_builder, lines)) {
            return false;
        }
        m_components.continueBehind(second.m_components);
        m_line.number = lines + second.m_line.number;
        return true;
    }

    void expect(std::size_t bytes) {
        if (m_bytesParsed != 0) {
            m_builder.reserveMore(static_cast<double>(bytes) / static_cast<double>(m_bytesParsed));
        }
    }

    IcsFile finish(std::string_view piece) {
        parse(piece, true);
        if (m_quotedPrintable.isOpen()) {
            m_quotedPrintable.close();
            parseContentLine(m_quotedPrintable.line());
        }
        return m_components.finish(m_line.number);
    }

private:
    std::size_t parse(std::string_view piece, bool isLast) {
        if (m_bytesParsed == 0) {
            m_decoder = Utf16Decoder::forTextWithMark(piece);
        }
        const std::size_t parsed = m_decoder ? decode(piece, isLast) : parseLines(piece, isLast);
        m_bytesParsed += parsed;
        return parsed;
    }

    // In small parts, as a text in memory is one piece.
    std::size_t decode(std::string_view piece, bool isLast) {
        const std::size_t begin = m_bytesParsed == 0 ? Utf16Decoder::markSize : 0;
        for (std::size_t at = begin; at < piece.size(); at += pieceToDecode) {
            m_decoder->decode(piece.substr(at, pieceToDecode), m_decoded);
            m_decoded.erase(0, parseLines(m_decoded, false));
        }
        if (isLast) {
            m_decoder->finish(m_decoded);
            m_decoded.erase(0, parseLines(m_decoded, true));
        }
        return piece.size();
    }

    // A truncated file's remaining lines are counted only.
    std::size_t parseLines(std::string_view piece, bool isLast) {
        m_lines.continueWith(piece, isLast);
        while (m_lines.next(m_line)) {
            if (!m_builder.file().isTruncated) {
                parseLine();
            }
        }
        return piece.size() - m_lines.remaining().size();
    }

    void parseLine() {
        const bool endsWithEquals = !m_line.text.empty() && m_line.text.back() == '=';
        const bool mayBePart = m_quotedPrintable.isOpen() || endsWithEquals;
        if (!mayBePart || !isPartOfQuotedPrintable()) {
            parseContentLine(m_line);
        }
    }

    bool isPartOfQuotedPrintable() {
        if (m_quotedPrintable.isOpen()) {
            const bool isPart = m_quotedPrintable.append(m_line);
            if (!m_quotedPrintable.isOpen()) {
                parseContentLine(m_quotedPrintable.line());
            }
            if (isPart) {
                return true;
            }
        }
        return m_quotedPrintable.begin(m_line);
    }

    void parseContentLine(const RawLine& line) {
        const PropertyName* const known = propertyTable.find(line.text);
        if (known != nullptr && isNameEnd(line.text, known->name.size())) {
            parseProperty({known->name.size(), known->property}, line.text, line);
        } else if (line.folded || mayBeMalformed(line.text)) {
            parseOtherLine(line);
        }
    }

    static bool mayBeMalformed(std::string_view text) {
        return !text.empty() && (isNameEnd(text, 0) || text.find(':') == std::string_view::npos);
    }

    void parseOtherLine(const RawLine& line);
    void parseProperty(LineName name, std::string_view text, const RawLine& line);
    void parseFoldedProperty(LineName name, std::string_view text, const RawLine& line);
    void reportMalformedLine(std::string_view text, std::size_t line);

    IcsFileBuilder m_builder;
    ComponentParser m_components;
    ContentLineReader m_lines;
    std::optional<Utf16Decoder> m_decoder; // of a text in UTF-16
    std::string m_decoded;                 // UTF-8 of which no whole line was parsed yet
    std::size_t m_bytesParsed = 0;
    RawLine m_line; // the latest
    ContentLineSplitter m_splitter;
    std::string m_unfolded;
    QuotedPrintableLine m_quotedPrintable;
};

// Its name is none of those that are stored, or there is a fold in it.
void IcsFileParser::Impl::parseOtherLine(const RawLine& line) {
    std::string_view text = line.text;
    LineName name{lengthOfName(text), Property::none};
    // A fold may stand in the name already; else the name decides whether to unfold at all.
    if (line.folded && !isNameEnd(text, name.length)) {
        text = unfolded(line, m_unfolded);
        name = nameOf(text);
    }
    if (name.length == 0 || !isNameEnd(text, name.length)) {
        if (!trimmed(text).empty()) {
            reportMalformedLine(text, line.number);
        }
    } else if (name.property != Property::none) {
        parseProperty(name, text, line);
    } else if (text[name.length] == ';' && text.find(':', name.length) == text.npos) {
        reportMalformedLine(text, line.number);
    }
}

// The text is the line's, unfolded where a fold stands in its name.
void IcsFileParser::Impl::parseProperty(LineName name, std::string_view text, const RawLine& line) {
    if (line.folded) {
        parseFoldedProperty(name, text, line);
    } else if (ContentLine content; m_splitter.split(text, name.length, content)) {
        m_components.addLine(name.property, content, line.number);
    } else {
        reportMalformedLine(text, line.number);
    }
}

void IcsFileParser::Impl::parseFoldedProperty(LineName name, std::string_view text,
                                              const RawLine& line) {
    std::string quotedPrintable;
    auto content = splitContentLine(unfolded(line, m_unfolded), name.length);
    if (content && transferEncoding(content->parameters) == TransferEncoding::quotedPrintable) {
        quotedPrintable = unfoldedQuotedPrintable(line.text);
        content = splitContentLine(quotedPrintable, name.length);
    }
    if (content) {
        m_components.addLine(name.property, *content, line.number);
    } else {
        reportMalformedLine(text, line.number);
    }
}

void IcsFileParser::Impl::reportMalformedLine(std::string_view text, std::size_t line) {
    m_builder.addProblem(line,
                         {translatable("a line without a name and a value: {1}"), {quoted(text)}});
}

IcsFileParser::IcsFileParser(const std::function<bool(std::string_view)>& zoneIsKnown,
                             std::size_t mostBytes)
    : m_impl(std::make_unique<Impl>(zoneIsKnown, mostBytes)) {}

IcsFileParser::~IcsFileParser() = default;

std::size_t IcsFileParser::read(std::string_view piece) {
    return m_impl->read(piece);
}

void IcsFileParser::beginWithinCalendar() {
    m_impl->beginWithinCalendar();
}

std::size_t IcsFileParser::readLines(std::string_view piece) {
    return m_impl->readLines(piece);
}

bool IcsFileParser::append(const IcsFileParser& second) {
    return m_impl->append(*second.m_impl);
}

void IcsFileParser::expect(std::size_t bytes) {
    m_impl->expect(bytes);
}

IcsFile IcsFileParser::finish(std::string_view piece) {
    return m_impl->finish(piece);
}

IcsFile parseIcsFile(std::string_view bytes,
                     const std::function<bool(std::string_view)>& zoneIsKnown) {
    return IcsFileParser(zoneIsKnown).finish(bytes);
}

} // namespace quorvel::icalendar
