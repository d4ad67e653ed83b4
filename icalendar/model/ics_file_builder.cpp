#include "icalendar/model/ics_file_builder.h"

#include <algorithm>
#include <utility>

namespace quorvel::icalendar {
namespace {

constexpr std::size_t mostCompared = 16;                      // names of zones
constexpr std::size_t largeContainer = std::size_t{1} << 20U; // bytes

// A large container lies in pages of its own, and those that were never written take no memory;
// copying it would take some.
template <typename Container>
void trim(Container& container) {
    if (container.size() * sizeof(container[0]) < largeContainer) {
        container.shrink_to_fit();
    }
}

// For so many times what the container has, unless it has room for that. The surplus makes up for
// another estimate later; as in trim(), it takes no memory.
template <typename Container>
void reserve(Container& container, double times, std::size_t most) {
    constexpr double surplus = 1.125;
    const double expected = static_cast<double>(container.size()) * (1 + times);
    if (static_cast<double>(container.capacity()) < expected) {
        container.reserve(std::min(static_cast<std::size_t>(expected * surplus), most));
    }
}

} // namespace

bool IcsFileBuilder::isFull() {
    const std::size_t used = m_file.sizeInMemory(m_overrides) + m_zoneBytes;
    m_mostUsed = std::max(m_mostUsed, used);
    return used > m_mostBytes;
}

// Growing bit by bit would copy everything again and again.
void IcsFileBuilder::reserveMore(double times) {
    reserve(m_file.events, times, m_mostBytes / sizeof(IcsEvent));
    reserve(m_file.text, times, m_mostBytes);
}

Slice IcsFileBuilder::appendText(std::string_view text) {
    const Slice part{static_cast<std::uint32_t>(m_file.text.size()),
                     static_cast<std::uint32_t>(text.size())};
    m_file.text.append(text);
    return part;
}

std::uint32_t IcsFileBuilder::zoneIndex(std::string_view name, std::uint32_t calendar) {
    auto& names = m_file.zoneNames;
    const std::size_t first = names.size() > mostCompared ? names.size() - mostCompared : 0;
    for (std::size_t i = names.size(); i > first; --i) {
        if (names[i - 1].calendar == calendar && names[i - 1].name == name) {
            return static_cast<std::uint32_t>(i - 1);
        }
    }
    names.push_back({std::string(name), calendar});
    m_zoneBytes += sizeof(ZoneName) + name.size();
    return static_cast<std::uint32_t>(names.size() - 1);
}

void IcsFileBuilder::addEvent(const IcsEvent& event) {
    m_file.events.push_back(event);
    m_overrides += event.recurrenceId ? 1 : 0;
    if (isFull()) {
        addProblem(event.line,
                   translatable("there are more events than fit into memory: those that follow are "
                                "left out"));
        m_file.isTruncated = true;
    }
}

void IcsFileBuilder::addZone(ZoneDefinition zone) {
    m_zoneBytes += zone.name.name.size();
    m_file.zones.push_back(std::move(zone));
}

void IcsFileBuilder::addFloatingZone(FloatingZone zone) {
    m_zoneBytes += sizeof(FloatingZone) + zone.name.name.size();
    m_file.floatingZones.push_back(std::move(zone));
}

void IcsFileBuilder::addProblem(std::size_t line, TranslatableText what) {
    if (m_file.problems.size() < mostProblems) {
        m_file.problems.push_back({line, std::move(what)});
    } else {
        ++m_moreProblems;
    }
}

// The calendar's own properties and zones depend on what comes before them, and so does what is
// left out for lack of memory, and which names of zones are compared.
bool IcsFileBuilder::mayAppend(const IcsFileBuilder& rest) const {
    std::size_t bytesOfNames = 0;
    for (const ZoneName& zone : rest.m_file.zoneNames) {
        bytesOfNames += sizeof(ZoneName) + zone.name.size();
    }
    const std::size_t names = m_file.zoneNames.size() + rest.m_file.zoneNames.size();
    const std::size_t used = m_file.sizeInMemory(m_overrides) + m_zoneBytes;
    return !m_file.isTruncated && !rest.m_file.isTruncated && !rest.m_file.calendarName &&
           !rest.m_file.calendarColour && rest.m_file.floatingZones.empty() &&
           rest.m_file.zones.empty() && rest.m_zoneBytes == bytesOfNames && names <= mostCompared &&
           used + rest.m_mostUsed <= m_mostBytes;
}

bool IcsFileBuilder::append(const IcsFileBuilder& rest, std::size_t lines) {
    if (!mayAppend(rest)) {
        return false;
    }
    appendEvents(rest.m_file, lines);
    m_overrides += rest.m_overrides;
    for (const FileProblem& problem : rest.m_file.problems) {
        addProblem(problem.line + lines, problem.what);
    }
    m_moreProblems += rest.m_moreProblems;
    return true;
}

void IcsFileBuilder::appendEvents(const IcsFile& rest, std::size_t lines) {
    const auto linesBefore = static_cast<std::uint32_t>(lines);
    const auto rulesBefore = static_cast<std::uint32_t>(m_file.rules.size());
    const auto textBefore = static_cast<std::uint32_t>(m_file.text.size());
    std::vector<std::uint32_t> zones;
    for (const ZoneName& zone : rest.zoneNames) {
        zones.push_back(zoneIndex(zone.name, zone.calendar));
    }
    const auto moved = [textBefore](Slice part) {
        return Slice{part.offset + textBefore, part.length};
    };
    const auto inZone = [&zones](EventTime time) {
        time.zone = time.kind == TimeKind::zoned ? zones[time.zone] : time.zone;
        return time;
    };
    const auto ifPresent = [](auto& optional, const auto& change) {
        if (optional) {
            optional = change(*optional);
        }
    };
    m_file.text += rest.text;
    for (RuleLine rule : rest.rules) {
        rule.parameters = moved(rule.parameters);
        rule.value = moved(rule.value);
        rule.line += linesBefore;
        m_file.rules.push_back(rule);
    }
    m_file.events.reserve(m_file.events.size() + rest.events.size());
    for (IcsEvent event : rest.events) {
        event.uid = moved(event.uid);
        ifPresent(event.title, moved);
        ifPresent(event.location, moved);
        event.start = inZone(event.start);
        ifPresent(event.end, inZone);
        ifPresent(event.recurrenceId, inZone);
        event.line += linesBefore;
        event.firstRule += rulesBefore;
        m_file.events.push_back(event);
    }
}

IcsFile IcsFileBuilder::finish(bool hasCalendar, std::size_t lastLine) {
    m_file.isCalendar = hasCalendar || !m_file.events.empty();
    if (!m_file.isCalendar) {
        const bool isEmpty = lastLine == 0;
        m_moreProblems = 0;
        m_file.problems = {
            {isEmpty ? 0U : 1U, isEmpty ? translatable("the file is empty")
                                        : translatable("no calendar: BEGIN:VCALENDAR is missing")}};
    }
    if (m_moreProblems > 0) {
        m_file.problems.push_back({0,
                                   {translatable("and {1} more"),
                                    {TranslatableText::verbatim(std::to_string(m_moreProblems))}}});
    }
    trim(m_file.text);
    trim(m_file.events);
    trim(m_file.rules);
    return std::move(m_file);
}

} // namespace quorvel::icalendar
