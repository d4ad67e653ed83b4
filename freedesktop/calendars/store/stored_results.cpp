#include "freedesktop/calendars/store/stored_results.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "freedesktop/calendars/index/stored_bytes.h"
#include "freedesktop/calendars/index/stored_message.h"

namespace quorvel::freedesktop::calendars {
namespace {

void put(ByteWriter& writer, const std::vector<VersionedProblem>& problems) {
    writer.number(problems.size());
    for (const auto& [problem, version, isUnreadable] : problems) {
        writer.text(problem.file);
        writer.number(problem.line);
        putMessage(writer, problem.what);
        writer.number(version);
        writer.number(isUnreadable ? 1U : 0U);
    }
}

std::vector<VersionedProblem> takeProblems(ByteReader& reader) {
    std::vector<VersionedProblem> problems(reader.count());
    for (auto& [problem, version, isUnreadable] : problems) {
        problem.file = reader.text();
        problem.line = reader.number<std::size_t>();
        problem.what = takeMessage(reader);
        version = reader.number<std::uint64_t>();
        isUnreadable = reader.flag();
    }
    return problems;
}

void put(ByteWriter& writer, const std::vector<std::string>& texts) {
    writer.number(texts.size());
    for (const std::string& text : texts) {
        writer.text(text);
    }
}

std::vector<std::string> takeTexts(ByteReader& reader) {
    std::vector<std::string> texts(reader.count());
    for (std::string& text : texts) {
        text = reader.text();
    }
    return texts;
}

void put(ByteWriter& writer, double number) {
    writer.number(std::bit_cast<std::uint64_t>(number));
}

double takeDouble(ByteReader& reader) {
    return std::bit_cast<double>(reader.number<std::uint64_t>());
}

std::shared_ptr<const platform::EKCalendar> takeCalendar(ByteReader& reader) {
    auto calendar = std::make_shared<platform::EKCalendar>();
    calendar->calendarIdentifier = reader.text();
    calendar->title = reader.text();
    calendar->CGColor = reader.optional([&] {
        platform::UIColor color;
        color.red = takeDouble(reader);
        color.green = takeDouble(reader);
        color.blue = takeDouble(reader);
        color.alpha = takeDouble(reader);
        return color;
    });
    return calendar;
}

std::int64_t wholeSeconds(platform::NSDate date) {
    return std::llround(platform::timeIntervalSince1970(date));
}

platform::NSDate dateAt(std::int64_t seconds) {
    return platform::dateWithTimeIntervalSince1970(static_cast<double>(seconds));
}

} // namespace

std::string bytesOfSnapshot(const StoreSnapshot& snapshot) {
    ByteWriter writer;
    writer.number(snapshot.isAnyReadable ? 1U : 0U);
    writer.number(snapshot.isAnyCalendar ? 1U : 0U);
    writer.number(snapshot.calendars.size());
    for (const auto& calendar : snapshot.calendars) {
        writer.text(calendar->calendarIdentifier);
        writer.text(calendar->title);
        writer.optional(calendar->CGColor, [&](const platform::UIColor& color) {
            put(writer, color.red);
            put(writer, color.green);
            put(writer, color.blue);
            put(writer, color.alpha);
        });
    }
    put(writer, snapshot.stores);
    put(writer, snapshot.deselected);
    put(writer, snapshot.problems);
    return writer.take();
}

std::optional<StoreSnapshot> snapshotFromBytes(std::string_view bytes) {
    ByteReader reader(bytes);
    StoreSnapshot snapshot;
    snapshot.isAnyReadable = reader.flag();
    snapshot.isAnyCalendar = reader.flag();
    snapshot.calendars.resize(reader.count());
    for (auto& calendar : snapshot.calendars) {
        calendar = takeCalendar(reader);
    }
    snapshot.stores = takeTexts(reader);
    snapshot.deselected = takeTexts(reader);
    snapshot.problems = takeProblems(reader);
    return reader.isWhole() ? std::optional(std::move(snapshot)) : std::nullopt;
}

std::string bytesOfSearch(const SearchResult& result, const platform::EKCalendars& calendars) {
    ByteWriter writer;
    writer.number(result.events.size());
    for (const auto& event : result.events) {
        const auto calendar = std::find(calendars.begin(), calendars.end(), event->calendar);
        writer.number(static_cast<std::size_t>(calendar - calendars.begin()));
        writer.optionalText(event->title);
        writer.optionalText(event->location);
        writer.number(wholeSeconds(event->startDate));
        writer.number(wholeSeconds(event->endDate));
        writer.number(event->isAllDay ? 1U : 0U);
        writer.text(event->persistentEvent.eventIdentifier);
    }
    put(writer, result.problems);
    return writer.take();
}

std::optional<SearchResult> searchFromBytes(std::string_view bytes,
                                            const platform::EKCalendars& calendars) {
    ByteReader reader(bytes);
    SearchResult result;
    result.events.resize(reader.count());
    for (auto& one : result.events) {
        auto event = std::make_shared<platform::EKEvent>();
        const auto calendar = reader.number<std::size_t>();
        if (calendar >= calendars.size()) {
            return std::nullopt;
        }
        event->calendar = calendars[calendar];
        event->title = reader.optionalText();
        event->location = reader.optionalText();
        event->startDate = dateAt(reader.number<std::int64_t>());
        event->endDate = dateAt(reader.number<std::int64_t>());
        event->isAllDay = reader.flag();
        event->persistentEvent.eventIdentifier = reader.text();
        one = std::move(event);
    }
    result.problems = takeProblems(reader);
    return reader.isWhole() ? std::optional(std::move(result)) : std::nullopt;
}

} // namespace quorvel::freedesktop::calendars
