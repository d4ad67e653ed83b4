#include "icalendar/expansion/rule_starts.h"

#include <string>
#include <utility>

#include "icalendar/expansion/rule_end.h"
#include "icalendar/recurrence/recurrence.h"
#include "icalendar/text/property_values.h"

namespace quorvel::icalendar {
namespace {

// The steps of a rule once a search has spent all that it may.
constexpr std::int64_t fewSteps = 2'000;

// Computed once and cached, as long as the series' zone stays the same.
CountEnd countEnd(ExpansionContext& context, Series& series, const RuleLine& line,
                  const RecurrenceRequest& request) {
    const std::string& zone = series.clock.zone().identifier();
    const auto rule = static_cast<std::size_t>(&line - series.file.ics.rules.data());
    auto& countedRules = series.file.cache.countedRules;
    const auto known = countedRules.find(rule);
    if (known != countedRules.end() && known->second.zone == zone) {
        return known->second.end;
    }
    const CountEnd end = endOfCount(request);
    context.cost.calendar.steps += end.stepsSpent;
    if (end.isCounted || request.budget == standardBudget) {
        countedRules[rule] = {zone, end};
    }
    return end;
}

} // namespace

std::vector<std::int64_t> ruleStarts(ExpansionContext& context, Series& series,
                                     const RuleLine& line) {
    const IcsEvent& event = series.event;
    ZoneClock& clock = series.clock;
    const std::string_view text = series.file.ics.slice(line.value);
    const auto report = [&](const TranslatableText& problem) {
        context.onProblem(
            series.file, line.line,
            {translatable("a recurrence rule is not followed to its end: {1}"), {problem}});
    };
    auto rule = parseRecurrenceRule(text);
    const auto until = untilOf(text);
    const bool isGiving = line.kind == RuleKind::rrule;
    if (!rule || (rule->hasUntil && !until)) {
        report(rule ? translatable("its UNTIL cannot be used") : rule.error().what);
        series.reachesStart = series.reachesStart || isGiving;
        return {};
    }
    RecurrenceRequest request(*rule);
    request.start = event.start.localTime;
    request.wholeDays = event.start.kind == TimeKind::date;
    request.startCounts = isGiving && series.hasOneRule;
    request.from = series.from;
    request.to = series.to;
    const RuleEnd ruleEnd(until, request.wholeDays, clock);
    request.until = ruleEnd.lastLocalTime();
    if (isGiving && ruleEnd.admits(request.start)) {
        series.reachesStart = true;
    }
    if (!request.wholeDays) {
        request.existingLocalTime = [&clock](std::int64_t localTime) {
            return clock.existingLocalTime(localTime);
        };
    }
    request.budget = context.cost.hasSpentSteps() ? fewSteps : standardBudget;
    if (rule->count && request.to >= request.start) {
        const CountEnd end = countEnd(context, series, line, request);
        if (!end.isCounted && request.to > end.lastLocalTime) {
            report(translatable("its COUNT is out of reach"));
        }
        request.until = end.lastLocalTime;
        rule->count = std::nullopt;
    }
    RecurrenceStarts starts = expandRecurrence(request);
    context.cost.calendar.steps += starts.stepsSpent;
    ruleEnd.truncate(starts.localTimes);
    if (!starts.problem.empty()) {
        report(starts.problem);
    }
    return starts.localTimes;
}

} // namespace quorvel::icalendar
