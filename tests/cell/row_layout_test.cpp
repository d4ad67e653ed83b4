#include "cell/row_layout.h"

#include <gtest/gtest.h>

namespace quorvel {
namespace {

using namespace platform;

RowMeasures usualRow() {
    RowMeasures measures;
    measures.title = {150, 17};
    measures.date = {60, 17};
    measures.location = {300, 17};
    measures.width = 320;
    return measures;
}

TEST(RowLayout, PutsTheDateBehindTheTitle) {
    const RowFrames frames = layOutRow(usualRow());
    EXPECT_EQ(frames.title, CGRectMake(47, 13, 150, 17));
    EXPECT_EQ(frames.date, CGRectMake(207, 13, 60, 17));
    EXPECT_EQ(frames.location, CGRectMake(47, 30, 263, 17));
    EXPECT_EQ(frames.heightWithoutLocation, 43);
    EXPECT_EQ(frames.heightWithLocation, 60);
}

TEST(RowLayout, PutsTheDateAtTheRightEdge) {
    RowMeasures measures = usualRow();
    measures.rightAlignedDate = true;
    const RowFrames frames = layOutRow(measures);
    EXPECT_EQ(frames.date, CGRectMake(250, 13, 60, 17));
    EXPECT_EQ(frames.title, CGRectMake(47, 13, 150, 17));
}

TEST(RowLayout, CutsATitleThatLeavesTheDateNoRoom) {
    RowMeasures measures = usualRow();
    measures.title.width = 250;
    const RowFrames frames = layOutRow(measures);
    EXPECT_EQ(frames.title, CGRectMake(47, 13, 193, 17));
    EXPECT_EQ(frames.date, CGRectMake(250, 13, 60, 17));
}

TEST(RowLayout, LimitsTheTitleAlsoWhereTheDateIsAtTheRight) {
    RowMeasures measures = usualRow();
    measures.title.width = 250;
    measures.rightAlignedDate = true;
    EXPECT_EQ(layOutRow(measures).title.size.width, 193);
}

TEST(RowLayout, MeetsOnTheLineOfTheTallerText) {
    RowMeasures measures = usualRow();
    measures.date.height = 24;
    const RowFrames frames = layOutRow(measures);
    EXPECT_EQ(frames.title.origin.y, 20);
    EXPECT_EQ(frames.date.origin.y, 13);
    EXPECT_EQ(frames.location.origin.y, 37);
    // A tall date does not count in the heights that are recorded.
    EXPECT_EQ(frames.heightWithoutLocation, 43);
    EXPECT_EQ(frames.heightWithLocation, 60);
}

TEST(RowLayout, PutsAShorterDateOnTheTitlesBottom) {
    RowMeasures measures = usualRow();
    measures.date.height = 10;
    const RowFrames frames = layOutRow(measures);
    EXPECT_EQ(frames.title.origin.y, 13);
    EXPECT_EQ(frames.date.origin.y, 20);
}

TEST(RowLayout, PlacesAnEmptyLocationUnderTheTitle) {
    RowMeasures measures = usualRow();
    measures.location = {};
    const RowFrames frames = layOutRow(measures);
    EXPECT_EQ(frames.location, CGRectMake(47, 30, 0, 0));
    EXPECT_EQ(frames.heightWithLocation, 43);
}

TEST(RowLayout, LetsTheLocationRunUnderTheDate) {
    RowMeasures measures = usualRow();
    measures.location.width = 250; // more than the title may have
    EXPECT_EQ(layOutRow(measures).location.size.width, 250);
}

TEST(RowLayout, PassesNegativeWidthsOn) {
    RowMeasures measures = usualRow();
    measures.width = 100;
    const RowFrames frames = layOutRow(measures);
    EXPECT_EQ(frames.title.size.width, -27);
    EXPECT_EQ(frames.date.origin.x, 30);
    EXPECT_EQ(frames.location.size.width, 43);

    measures.width = 40;
    EXPECT_EQ(layOutRow(measures).location.size.width, -17);
}

} // namespace
} // namespace quorvel
