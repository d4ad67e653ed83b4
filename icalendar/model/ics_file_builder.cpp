#include "icalendar/model/ics_file_builder.h"

#include <algorithm>
#include <utility>

namespace quorvel::icalendar {
namespace {

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

bool IcsFileBuilder::isFull() const {
    return m_file.sizeInMemory(m_overrides) + m_zoneBytes > m_mostBytes;
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
    constexpr std::size_t mostCompared = 16;
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
