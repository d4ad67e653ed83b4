// Files that are copies of calendars elsewhere: their names, identifiers and problems.
#include "tests/freedesktop/calendars/store/store_fixture.h"

namespace quorvel::freedesktop {
namespace {

class CopiedCalendarTest : public StoreFixture {
protected:
    CalendarSource copy(std::optional<std::string> title = std::nullopt,
                        std::optional<std::string> colour = std::nullopt) const {
        CalendarSource source = CalendarSource::at(folder / "0123/calendar.ics");
        const std::string label = title.value_or("example.org");
        source.copy =
            CopiedCalendar{"the origin", "example.org", std::move(title), std::move(colour), label};
        return source;
    }
    void use(CalendarSource source) { stores.setSources({std::move(source)}); }
    std::shared_ptr<const platform::EKCalendar> calendar() {
        return stores.makeEventStore()->calendars().at(0);
    }
    static std::string named(const std::string& name) {
        return calendarText("X-WR-CALNAME:" + name + "\r\nX-APPLE-CALENDAR-COLOR:#FF0000\r\n" +
                            eventText("UID:a|SUMMARY:a|DTSTART:20260310T100000Z"));
    }
};

TEST_F(CopiedCalendarTest, IsNamedByTheUserElseByItselfElseByItsHost) {
    write("0123/calendar.ics", named("Team"));
    use(copy());
    EXPECT_EQ(titles(), "Team");
    use(copy("My title"));
    EXPECT_EQ(titles(), "My title");
    write("0123/calendar.ics", calendarText(""));
    use(copy());
    EXPECT_EQ(titles(), "example.org");
}

TEST_F(CopiedCalendarTest, ColourOfTheUserReplacesThatInTheFile) {
    write("0123/calendar.ics", named("Team"));
    use(copy());
    EXPECT_EQ(calendar()->CGColor, platform::UIColor::redColor());
    use(copy(std::nullopt, "#0000ff"));
    EXPECT_EQ(calendar()->CGColor, platform::UIColor::blueColor());
}

TEST_F(CopiedCalendarTest, IdentifierFollowsTheOriginAndNotThePath) {
    write("0123/calendar.ics", named("Team"));
    write("elsewhere.ics", named("Team"));
    use(copy());
    const std::string identifier = calendar()->calendarIdentifier;
    CalendarSource moved = copy("Other title");
    moved.name = folder / "elsewhere.ics";
    use(moved);
    EXPECT_EQ(calendar()->calendarIdentifier, identifier);
    EXPECT_TRUE(identifier.starts_with("example.org-")) << identifier;
    moved.copy->origin = "another origin";
    use(moved);
    EXPECT_NE(calendar()->calendarIdentifier, identifier);
}

TEST_F(CopiedCalendarTest, MissingFileIsNoProblemAndAppearsLater) {
    use(copy());
    EXPECT_EQ(titles(), "");
    EXPECT_FALSE(stores.anyReadable());
    write("0123/calendar.ics", named("Team"));
    EXPECT_EQ(titles(), "Team");
    EXPECT_TRUE(stores.anyReadable());
    EXPECT_EQ(problems, "");
}

TEST_F(CopiedCalendarTest, ProblemsNameTheLabelAndNotThePath) {
    write("0123/calendar.ics", "no calendar");
    use(copy("Team"));
    EXPECT_EQ(titles(), "Team");
    EXPECT_EQ(problems, "Team:1: no calendar: BEGIN:VCALENDAR is missing\n");
    problems.clear();
    write("0123/calendar.ics",
          calendarText(eventText("UID:a|DTSTART:20260310T100000Z|RRULE:FREQ=NEVER")));
    use(copy("Other"));
    static_cast<void>(found("20260310", "20260311"));
    EXPECT_EQ(problems, "Other:6: a recurrence rule is not followed to its end: its FREQ cannot be "
                        "used\n");
}

} // namespace
} // namespace quorvel::freedesktop
