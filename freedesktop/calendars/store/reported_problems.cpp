#include "freedesktop/calendars/store/reported_problems.h"

#include <string>
#include <string_view>
#include <utility>

#include "base/content_hash.h"
#include "freedesktop/language/messages.h"

namespace quorvel::freedesktop::calendars {
namespace {

constexpr std::size_t mostProblems = 10000;

std::uint64_t hashOf(const VersionedProblem& problem) {
    ContentHash hash;
    hash.add(std::string_view(problem.problem.file));
    hash.add(problem.problem.line);
    hash.add(std::string_view(problem.problem.what.english()));
    hash.add(problem.version);
    return hash.value();
}

} // namespace

void limitProblems(std::vector<VersionedProblem>& problems) {
    if (problems.size() > mostProblems) {
        const std::size_t more = problems.size() - mostProblems;
        problems.resize(mostProblems);
        problems.push_back(
            {{translated("the calendars"),
              0,
              {translatable("and {1} more"), {TranslatableText::verbatim(std::to_string(more))}}},
             0});
    }
}

ReportedProblems::ReportedProblems(CalendarProblemHandler onProblem)
    : m_onProblem(onProblem ? std::move(onProblem) : [](const CalendarProblem&) {}) {}

void ReportedProblems::report(const std::vector<VersionedProblem>& problems) {
    for (const VersionedProblem& problem : problems) {
        if (m_reported.insert(hashOf(problem)).second) {
            m_onProblem(problem.problem);
        }
    }
}

void ReportedProblems::reportAll(const std::vector<VersionedProblem>& problems) {
    std::unordered_set<std::uint64_t> withoutVersion;
    for (const VersionedProblem& problem : problems) {
        if (problem.version == 0) {
            withoutVersion.insert(hashOf(problem));
        }
    }
    for (const std::uint64_t before : m_withoutVersion) {
        if (withoutVersion.count(before) == 0) {
            m_reported.erase(before);
        }
    }
    m_withoutVersion = std::move(withoutVersion);
    report(problems);
}

} // namespace quorvel::freedesktop::calendars
