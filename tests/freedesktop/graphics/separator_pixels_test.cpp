// Paints a table at every scale and counts the pixels of its separators.
#include <cmath>
#include <string>
#include <vector>

#include "platform/ui/ui_table_view.h"
#include "platform/ui/ui_window.h"
#include "tests/freedesktop/graphics/graphics_testing.h"

namespace quorvel::freedesktop {
namespace {

using namespace platform;

constexpr CGFloat width = 60;
constexpr CGFloat height = 200;
constexpr UIColor lineColor{1, 1, 1, 0.5};
constexpr std::uint32_t background = 0xFF000000;

class EqualRows final : public UITableViewDataSource, public UITableViewDelegate {
public:
    EqualRows(NSInteger count, CGFloat rowHeight)
        : m_count(count)
        , m_height(rowHeight) {}
    NSInteger numberOfRowsInSection(UITableView*, NSInteger) override { return m_count; }
    CGFloat heightForRowAtIndexPath(UITableView*, const NSIndexPath&) override { return m_height; }
    std::shared_ptr<UITableViewCell> cellForRowAtIndexPath(UITableView*,
                                                           const NSIndexPath&) override {
        return std::make_shared<UITableViewCell>();
    }

private:
    NSInteger m_count;
    CGFloat m_height;
};

struct PaintedTable {
    CGFloat scale;
    CGFloat rowHeight;
    NSInteger rows;
    CGFloat offset;
    bool hasTrailingSeparators;
};

// The colours of a column of pixels in the middle.
std::vector<std::uint32_t> columnOf(const PaintedTable& painted) {
    const FixedScreen screen(painted.scale);
    const auto window = std::make_shared<UIWindow>(CGRectMake(0, 0, width, height), screen);
    const auto rows = std::make_shared<EqualRows>(painted.rows, painted.rowHeight);
    const auto table = std::make_shared<UITableView>(window->bounds(), UITableViewStyle::plain);
    table->setSeparatorColor(lineColor);
    table->setPaintsTrailingSeparators(painted.hasTrailingSeparators);
    table->setDelegate(std::weak_ptr<UITableViewDelegate>(rows));
    table->setDataSource(rows);
    window->addSubview(table);
    window->layoutIfNeeded();
    table->setContentOffset({0, painted.offset});
    window->layoutIfNeeded();
    const auto context = begin(width, height, painted.scale, true);
    window->render(context->context());
    const auto image = context->image();
    std::vector<std::uint32_t> column;
    for (int y = 0; y < static_cast<int>(std::ceil(height * painted.scale)); ++y)
        column.push_back(pixel(*image, static_cast<int>(30 * painted.scale), y));
    return column;
}

std::vector<int> litRows(const std::vector<std::uint32_t>& column) {
    std::vector<int> lit;
    for (std::size_t y = 0; y < column.size(); ++y) {
        if (column[y] != background) {
            lit.push_back(static_cast<int>(y));
            const int brightness = static_cast<int>(column[y] & 0xFF);
            EXPECT_NEAR(brightness, 128, 1) << "row " << y << " is smeared";
        }
    }
    return lit;
}

// The row of pixels of each line that is completely visible.
std::vector<int> expectedRows(const PaintedTable& painted, NSInteger lines) {
    std::vector<int> rows;
    for (NSInteger line = 1; line <= lines; ++line) {
        const CGFloat bottom = static_cast<CGFloat>(line) * painted.rowHeight - painted.offset;
        if (bottom * painted.scale >= 1 && bottom <= height)
            rows.push_back(static_cast<int>(std::floor(bottom * painted.scale + 1e-6)) - 1);
    }
    return rows;
}

TEST(SeparatorPixels, AreOneSharpRowAtEveryScaleHeightAndOffset) {
    for (const CGFloat scale : {1.0, 1.25, 1.5, 2.0, 2.75, 3.0}) {
        for (const CGFloat rowHeight : {43.0, 42.94, 43.707, 59.9, 44.5}) {
            for (const CGFloat offset : {0.0, 0.4, 17.33}) {
                const PaintedTable painted{scale, rowHeight, 8, offset, true};
                EXPECT_EQ(litRows(columnOf(painted)), expectedRows(painted, 8))
                    << scale << " " << rowHeight << " " << offset;
            }
        }
    }
}

TEST(SeparatorPixels, AreNotBelowTheLastRowWhereTheHostDoesNotWantThem) {
    for (const CGFloat scale : {1.0, 1.25, 1.5, 2.0, 2.75, 3.0}) {
        const PaintedTable without{scale, 43.7, 3, 0, false};
        EXPECT_EQ(litRows(columnOf(without)), expectedRows(without, 2)) << scale;
        const PaintedTable empty{scale, 43.7, 0, 0, false};
        EXPECT_TRUE(litRows(columnOf(empty)).empty()) << scale;
    }
}

} // namespace
} // namespace quorvel::freedesktop
