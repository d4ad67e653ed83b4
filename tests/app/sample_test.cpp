#include "app/sample.h"

#include <gtest/gtest.h>

#include "freedesktop/dates/time_zone.h"

namespace quorvel::app {
namespace {

using freedesktop::dateOf;
using freedesktop::namedTimeZone;
using freedesktop::TimeZone;

class FilledTemplate : public ::testing::Test {
protected:
    std::string filled(std::string_view text) const {
        return filledTemplate(text, dateOf(*m_zone, m_now), *m_zone);
    }

    std::shared_ptr<const TimeZone> m_zone = namedTimeZone("Europe/Berlin");
    CivilTime m_now{2026, 12, 30, 0, 10, 0};
};

TEST_F(FilledTemplate, CountsDaysFromToday) {
    EXPECT_EQ(filled("@+0@ @+1@ @+2@ @-30@"), "20261230 20261231 20270101 20261130");
}

TEST_F(FilledTemplate, CountsDaysAcrossAClockChange) {
    m_now = {2026, 3, 28, 23, 30, 0};
    EXPECT_EQ(filled("@+1@ @+2@"), "20260329 20260330");
}

TEST_F(FilledTemplate, RoundsTimesDownToAQuarterOfAnHour) {
    EXPECT_EQ(filled("@now+0m@ @now+50m@ @now-25m@"),
              "20261230T000000 20261230T010000 20261229T234500");
}

TEST_F(FilledTemplate, LeavesOtherTextUnchanged) {
    for (const char* text : {"", "@", "@@", "a@b.example", "@+@", "@1@", "@+x@", "@now@", "@now+1@",
                             "@now+m@", "@+1234567@", "@++1@"}) {
        EXPECT_EQ(filled(text), text);
    }
    EXPECT_EQ(filled("a@b @+0@T093000"), "a@b 20261230T093000");
}

TEST_F(FilledTemplate, UsesTheTimeZone) {
    m_zone = namedTimeZone("Pacific/Kiritimati");
    m_now = {2026, 1, 1, 0, 0, 0};
    EXPECT_EQ(filled("@+0@"), "20260101");
}

} // namespace
} // namespace quorvel::app
