#include "icalendar/model/zone_parser.h"

#include <utility>

#include "icalendar/text/property_values.h"

namespace quorvel::icalendar {
namespace {

constexpr std::size_t mostZones = 200;
constexpr std::size_t mostObservances = 500; // of a zone; also the most rules of an observance
constexpr std::size_t longestRule = 500;     // bytes
constexpr std::size_t mostDates = 1000;      // of an observance

} // namespace

void ZoneParser::begin() {
    m_zone = {};
    m_isWanted = false;
}

void ZoneParser::addZoneProperty(Property property, const ContentLine& content,
                                 std::uint32_t calendar) {
    if (property == Property::tzid) {
        m_zone.name = {parseText(trimmed(content.value)), calendar};
        m_isWanted = m_builder.file().zones.size() < mostZones && !m_zoneIsKnown(m_zone.name.name);
    }
}

void ZoneParser::beginObservance() {
    m_observance = {};
    m_observanceHasStart = m_observanceHasOffset = false;
}

void ZoneParser::addObservanceProperty(Property property, const ContentLine& content) {
    if (!m_isWanted) {
        return;
    }
    if (property == Property::dtstart) {
        if (const auto time = parseTime(content.value)) {
            m_observance.start = time->civil;
            m_observanceHasStart = true;
        }
    } else if (property == Property::tzOffsetFrom) {
        m_observance.offsetFrom = parseUtcOffset(content.value).value_or(0);
    } else if (property == Property::tzOffsetTo) {
        if (const auto offset = parseUtcOffset(content.value)) {
            m_observance.offsetTo = *offset;
            m_observanceHasOffset = true;
        }
    } else if (property == Property::rrule) {
        if (m_observance.rules.size() < mostObservances && content.value.size() <= longestRule) {
            m_observance.rules.emplace_back(content.value);
        }
    } else if (property == Property::rdate) {
        addDates(content.value);
    }
}

void ZoneParser::addDates(std::string_view list) {
    for (const std::string_view part : listParts(list)) {
        const auto time = parsePeriodOrTime(part);
        if (time && m_observance.dates.size() < mostDates) {
            m_observance.dates.push_back(time->start.civil);
        }
    }
}

// An observance without DTSTART or TZOFFSETTO is left out.
void ZoneParser::endObservance() {
    if (m_isWanted && m_observanceHasStart && m_observanceHasOffset &&
        m_zone.observances.size() < mostObservances && !m_builder.isFull()) {
        m_builder.countZoneBytes(sizeof(ZoneObservance) +
                                 m_observance.rules.size() * (sizeof(std::string) + longestRule) +
                                 m_observance.dates.size() * sizeof(CivilTime));
        m_zone.observances.push_back(std::move(m_observance));
    }
    beginObservance();
}

void ZoneParser::end() {
    if (m_isWanted && !m_zone.name.name.empty() && !m_zone.observances.empty()) {
        m_builder.addZone(std::move(m_zone));
    }
    begin();
}

} // namespace quorvel::icalendar
