// One recurrence rule from a stranger. The input's first line is the rule; the bytes after it
// choose the start, the window and how it is asked.
//
// At its end it prints the slowest question that it met about a rule of 300 characters at most and
// a window of a year at most.
#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "base/time_units.h"
#include "icalendar/recurrence/recurrence.h"
#include "tests/fuzz/fuzzing.h"

namespace {

using namespace quorvel;
using namespace quorvel::icalendar;
using quorvel::fuzzing::processorTime;
using quorvel::fuzzing::require;

constexpr std::int64_t year = 366 * secondsPerDay;
constexpr std::int64_t usualStart = 1704096000; // 2024-01-01T08:00:00
constexpr std::int64_t firstLocalTime = -62135596800;
constexpr std::int64_t lastLocalTime = 253402300799;
constexpr std::size_t longestMeasured = 300;
constexpr double greatestMilliseconds = 2000; // under the sanitizers

// Takes numbers off the bytes; zeros where they have ended.
class Bytes {
public:
    explicit Bytes(std::string_view bytes)
        : m_bytes(bytes) {}

    std::int64_t take(int count) { // with a sign
        std::int64_t value = 0;
        for (int i = 0; i < count; ++i) {
            std::int64_t byte = 0;
            if (!m_bytes.empty()) {
                byte = static_cast<unsigned char>(m_bytes.front());
                m_bytes.remove_prefix(1);
            }
            value = value * 256 + byte;
        }
        const std::int64_t range = std::int64_t{1} << (8 * count);
        return value >= range / 2 ? value - range : value;
    }

private:
    std::string_view m_bytes;
};

struct Slowest {
    double milliseconds = 0;
    std::int64_t steps = 0;
    std::string question;
};

Slowest& slowest() {
    static Slowest result;
    return result;
}

void printSlowest() {
    std::fprintf(stderr, "slowest: %.3f ms, %lld steps: %s\n", slowest().milliseconds,
                 static_cast<long long>(slowest().steps), slowest().question.c_str());
}

// Tells the fuzzer of inputs that take more steps than those before, as if they reached new code.
__attribute__((section("__libfuzzer_extra_counters"))) std::uint8_t stepCounters[256];

void noteSteps(std::int64_t steps) {
    std::size_t bucket = 0; // eight for each doubling
    for (double reached = 1; reached < static_cast<double>(steps); reached *= 1.09) {
        ++bucket;
    }
    stepCounters[std::min(bucket, std::size(stepCounters) - 1)] = 1;
}

std::string printable(std::string_view text) {
    std::string result(text);
    std::replace_if(
        result.begin(), result.end(), [](char c) { return c < ' ' || c > '~'; }, '.');
    return result;
}

void noteTime(const RecurrenceRequest& request, std::string_view rule, double milliseconds,
              std::int64_t steps) {
    require(milliseconds < greatestMilliseconds, "one question takes no longer than its budget");
    if (rule.size() <= longestMeasured && request.to - request.from <= year &&
        milliseconds > slowest().milliseconds) {
        slowest() = {milliseconds, steps,
                     printable(rule) + " start " + std::to_string(request.start) + " from " +
                         std::to_string(request.from) + " to " + std::to_string(request.to) +
                         (request.wholeDays ? " whole days" : "")};
    }
}

void checkLocalTimes(const RecurrenceRequest& request, const RecurrenceStarts& starts) {
    const auto& localTimes = starts.localTimes;
    require(starts.stepsSpent <= request.budget, "the budget is kept");
    require(std::adjacent_find(localTimes.begin(), localTimes.end(), std::greater_equal<>()) ==
                localTimes.end(),
            "localTimes are sorted, and no two the same");
    if (!localTimes.empty()) {
        require(localTimes.front() >= request.from && localTimes.back() <= request.to,
                "localTimes lie in the window");
        require(localTimes.front() >= firstLocalTime && localTimes.back() <= lastLocalTime,
                "localTimes lie in the years 1 to 9999");
        require(localTimes.front() >= request.start &&
                    (!request.until || localTimes.back() <= *request.until),
                "localTimes lie between the start and UNTIL");
    }
}

// Two halves of the window make the whole.
void checkHalves(RecurrenceRequest request, const RecurrenceStarts& whole) {
    const std::int64_t to = request.to;
    request.to = request.from + (to - request.from) / 2;
    RecurrenceStarts both = expandRecurrence(request);
    request.from = request.to + 1;
    request.to = to;
    const RecurrenceStarts second = expandRecurrence(request);
    if (both.problem.empty() && second.problem.empty()) {
        both.localTimes.insert(both.localTimes.end(), second.localTimes.begin(),
                               second.localTimes.end());
        require(both.localTimes == whole.localTimes, "two windows make one");
    }
}

// The end of a count, found once, stands for the count.
void checkCount(RecurrenceRequest request, RecurrenceRule& rule, const RecurrenceStarts& counted) {
    const CountEnd end = endOfCount(request);
    require(end.stepsSpent <= request.budget, "the budget is kept while counting");
    if (!end.isCounted || !counted.problem.empty()) {
        return;
    }
    rule.count.reset();
    request.until = end.lastLocalTime;
    const RecurrenceStarts starts = expandRecurrence(request);
    require(!starts.problem.empty() || starts.localTimes == counted.localTimes,
            "the end of a count stands for it");
}

void ask(std::string_view text, Bytes bytes) {
    auto rule = parseRecurrenceRule(text);
    if (!rule) {
        require(!rule.error().what.empty(), "an error is explained");
        return;
    }
    RecurrenceRequest request(*rule);
    const std::int64_t flags = bytes.take(1);
    request.wholeDays = (flags & 1) != 0;
    request.startCounts = (flags & 2) == 0;
    request.start = std::clamp(usualStart + bytes.take(2) * secondsPerHour * 37 + bytes.take(2),
                               firstLocalTime, lastLocalTime);
    if (request.wholeDays) {
        request.start -= (request.start % secondsPerDay + secondsPerDay) % secondsPerDay;
    }
    request.from = request.start + bytes.take(2) * secondsPerHour * ((flags & 4) != 0 ? 999 : 1);
    request.to = request.from + ((flags & 8) != 0 ? 1000 * year : year - 1);
    if ((flags & 16) != 0) {
        request.until = request.start + bytes.take(2) * secondsPerHour;
    }
    if ((flags & 32) != 0) {
        request.existingLocalTime = [](std::int64_t localTime) {
            return localTime / secondsPerHour % 5 == 0 ? localTime + secondsPerHour : localTime;
        };
    }
    const double before = processorTime();
    const RecurrenceStarts starts = expandRecurrence(request);
    noteTime(request, text, processorTime() - before, starts.stepsSpent);
    noteSteps(starts.stepsSpent);
    checkLocalTimes(request, starts);
    if (starts.problem.empty()) {
        checkHalves(request, starts);
    }
    if (rule->count) {
        checkCount(request, *rule, starts);
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    slowest(); // is gone only after the last line was printed
    return std::atexit(printSlowest);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t line = std::min(input.find('\n'), input.size());
    ask(input.substr(0, line), Bytes(input.substr(std::min(line + 1, input.size()))));
    return 0;
}
