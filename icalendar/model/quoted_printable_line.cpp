#include "icalendar/model/quoted_printable_line.h"

#include <utility>

#include "icalendar/model/property_names.h"
#include "icalendar/text/encoded_text.h"

namespace quorvel::icalendar {
namespace {

constexpr std::size_t longestLine = std::size_t{4} << 20U; // bytes, with all that follows

} // namespace

bool QuotedPrintableLine::begin(const RawLine& line) {
    if (line.text.empty() || line.text.back() != '=') {
        return false;
    }
    std::string text = unfoldedQuotedPrintable(line.text);
    const auto content = splitContentLine(text);
    if (!content || transferEncoding(content->parameters) != TransferEncoding::quotedPrintable) {
        return false;
    }
    m_isOpen = true;
    m_number = line.number;
    m_text = std::move(text);
    m_text.pop_back();
    return true;
}

bool QuotedPrintableLine::append(const RawLine& line) {
    const Property property = nameOf(line.text).property;
    if (property == Property::begin || property == Property::end) {
        m_isOpen = false;
        return false;
    }
    const std::string more = unfoldedQuotedPrintable(line.text);
    m_isOpen = !more.empty() && more.back() == '=';
    if (m_text.size() + more.size() <= longestLine) {
        m_text.append(more, 0, more.size() - (m_isOpen ? 1 : 0));
    }
    return true;
}

} // namespace quorvel::icalendar
