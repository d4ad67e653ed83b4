#include "freedesktop/calendars/store/calendar_expansion.h"

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "icalendar/text/property_values.h"

namespace quorvel::freedesktop::calendars {
namespace {

constexpr std::size_t mostProblemsOfAFile = 50;
constexpr std::size_t mostProblemsOfACalendar = 10000;

std::string identifierOf(const platform::EKCalendar& calendar,
                         const icalendar::Occurrence& occurrence) {
    const icalendar::IcsFile& file = occurrence.file->ics;
    std::string identifier = calendar.calendarIdentifier;
    identifier += ':';
    identifier += icalendar::validUtf8(file.slice(occurrence.event->uid));
    if (occurrence.recurrence) {
        const auto since = static_cast<std::int64_t>(platform::referenceDateSince1970);
        identifier += ":RID=" + std::to_string(*occurrence.recurrence - since);
    }
    return identifier;
}

std::optional<std::string> textOf(const icalendar::IcsFile& file,
                                  const icalendar::SmallOptional<icalendar::Slice>& slice) {
    return slice ? std::optional(icalendar::parseText(file.slice(*slice))) : std::nullopt;
}

std::shared_ptr<const platform::EKEvent>
makeEvent(const std::shared_ptr<const platform::EKCalendar>& calendar,
          const icalendar::Occurrence& occurrence) {
    const icalendar::IcsFile& file = occurrence.file->ics;
    auto event = std::make_shared<platform::EKEvent>();
    event->title = textOf(file, occurrence.event->title);
    event->location = textOf(file, occurrence.event->location);
    event->startDate =
        platform::dateWithTimeIntervalSince1970(static_cast<double>(occurrence.start));
    event->endDate = platform::dateWithTimeIntervalSince1970(static_cast<double>(occurrence.end));
    event->isAllDay = occurrence.isAllDay;
    event->calendar = calendar;
    event->persistentEvent.eventIdentifier = identifierOf(*calendar, occurrence);
    return event;
}

// The problems that an expansion reports, each once and only so many of a file.
class ProblemCollection {
public:
    void add(const icalendar::LoadedFile& file, std::size_t line, TranslatableText what) {
        auto& ofFile = m_known[&file];
        if (ofFile.size() < mostProblemsOfAFile && m_problems.size() < mostProblemsOfACalendar &&
            ofFile.emplace(line, what.english()).second) {
            m_problems.push_back({{file.path, line, std::move(what)}, file.version});
        }
    }
    std::vector<VersionedProblem> take() { return std::move(m_problems); }

private:
    std::map<const icalendar::LoadedFile*, std::set<std::pair<std::size_t, std::string>>> m_known;
    std::vector<VersionedProblem> m_problems;
};

} // namespace

ExpandedCalendar expandCalendar(const ExpansionContext& context, const LoadedCalendar& calendar,
                                const std::shared_ptr<const platform::EKCalendar>& owner) {
    ProblemCollection problems;
    const icalendar::ExpansionProblemHandler onProblem =
        [&problems](icalendar::LoadedFile& file, std::size_t line, TranslatableText what) {
            problems.add(file, line, std::move(what));
        };
    icalendar::SearchCost& cost = context.cost;
    icalendar::Expander expander(context.window, context.userZone, context.zones, onProblem, cost);
    std::vector<icalendar::Occurrence> occurrences;
    for (const icalendar::EventEntry& entry : calendar.entries) {
        if (cost.calendar.isTruncated && cost.calendar.found == cost.mostFound()) {
            break;
        }
        if (expander.mayMeetWindow(entry.firstDay, entry.lastDay)) {
            icalendar::LoadedFile& file = *calendar.files[entry.file];
            expander.expand({&file, &file.ics.events[entry.event]}, calendar.overrides,
                            occurrences);
        }
    }
    ExpandedCalendar result{{}, problems.take(), cost.calendar};
    result.events.reserve(occurrences.size());
    for (const icalendar::Occurrence& occurrence : occurrences) {
        result.events.push_back(makeEvent(owner, occurrence));
    }
    return result;
}

} // namespace quorvel::freedesktop::calendars
