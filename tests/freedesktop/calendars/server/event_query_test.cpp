#include "freedesktop/calendars/server/library/event_query.h"

#include <gtest/gtest.h>

namespace quorvel::freedesktop::eds {
namespace {

TEST(EventQuery, AsksForTwoDaysMoreOnEitherSide) {
    EXPECT_EQ(singleEventsQuery({1773136800, 1773309600}),
              "(and (not (has-recurrences?)) (occur-in-time-range? "
              "(make-time \"20260308T100000Z\") (make-time \"20260314T100000Z\")))");
}

TEST(EventQuery, AsksForEverythingWhereTheServerCountsNoTime) {
    EXPECT_EQ(singleEventsQuery({-1'000'000'000, 1'773'309'600}), "(not (has-recurrences?))");
    EXPECT_EQ(singleEventsQuery({100'000, 200'000}), "(not (has-recurrences?))");
    EXPECT_EQ(singleEventsQuery({2'145'000'000, 2'145'800'000}), "(not (has-recurrences?))");
    EXPECT_EQ(singleEventsQuery({200'000'000'000, 250'000'000'000}), "(not (has-recurrences?))");
}

} // namespace
} // namespace quorvel::freedesktop::eds
