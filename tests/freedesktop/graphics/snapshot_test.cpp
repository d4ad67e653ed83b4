#include "freedesktop/graphics/snapshot.h"

#include <limits>
#include <stdexcept>

#include <gmock/gmock.h>

#include "freedesktop/graphics/pixbuf_image_files.h"
#include "tests/freedesktop/graphics/graphics_testing.h"
#include "tests/freedesktop/graphics/pdf_text.h"

namespace quorvel::freedesktop {
namespace {

using platform::CGRectMake;
using platform::CGSize;
using platform::GraphicsContext;
using platform::UIColor;
using platform::UIFont;
using testing::HasSubstr;
using testing::StartsWith;

class SnapshotFile : public FolderTest {
protected:
    std::shared_ptr<const platform::UIImage> read(const std::string& name) {
        return PixbufImageFiles("").imageWithContentsOfFile(inFolder(name));
    }
};

Snapshot redSquare(CGSize size, double scale = 1) {
    return {size, scale, std::nullopt, [](GraphicsContext& context) {
                context.setFillColor(UIColor::redColor());
                context.fillRect(CGRectMake(0, 0, 10, 10));
                context.drawText("Agenda", UIFont::systemFontOfSize(14), UIColor::whiteColor(),
                                 CGRectMake(20, 0, 60, 20));
            }};
}

TEST_F(SnapshotFile, APngHasThePixelsOfItsScale) {
    ASSERT_TRUE(writeSnapshot(inFolder("a.png"), redSquare({100, 30.2}, 2), sharedLines()));
    EXPECT_THAT(contentsOfFile(inFolder("a.png")), StartsWith("\x89PNG\r\n\x1A\n"));
    const auto image = read("a.png");
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), (CGSize{200, 61}));
    EXPECT_EQ(pixel(*image, 0, 0), 0xFFFF0000);
    EXPECT_EQ(pixel(*image, 19, 19), 0xFFFF0000);
    EXPECT_EQ(pixel(*image, 20, 20), 0u);
    EXPECT_EQ(fileCount(), 1u);
}

TEST_F(SnapshotFile, TheBackdropLiesBehindAll) {
    Snapshot snapshot = redSquare({20, 20});
    snapshot.backdrop = UIColor::blueColor();
    ASSERT_TRUE(writeSnapshot(inFolder("a.PNG"), snapshot, sharedLines()));
    const auto image = read("a.PNG");
    EXPECT_EQ(pixel(*image, 5, 5), 0xFFFF0000);
    EXPECT_EQ(pixel(*image, 15, 15), 0xFF0000FF);
}

TEST_F(SnapshotFile, AnEmptyAgendaIsAPictureToo) {
    ASSERT_TRUE(writeSnapshot(inFolder("a.png"), redSquare({320, 0}), sharedLines()));
    EXPECT_EQ(read("a.png")->size(), (CGSize{320, 1}));
    ASSERT_TRUE(writeSnapshot(inFolder("b.png"), redSquare({320, -1}, 2), sharedLines()));
    EXPECT_EQ(read("b.png")->size(), (CGSize{640, 2}));
}

TEST_F(SnapshotFile, SvgAndPdfHaveTheirSize) {
    ASSERT_TRUE(writeSnapshot(inFolder("a.svg"), redSquare({100, 30}, 2), sharedLines()));
    const std::string svg = contentsOfFile(inFolder("a.svg"));
    EXPECT_THAT(svg, HasSubstr("<svg"));
    EXPECT_THAT(svg, HasSubstr("width=\"200px\" height=\"60px\""));
    EXPECT_THAT(svg, HasSubstr("</svg>"));
    ASSERT_TRUE(writeSnapshot(inFolder("a.pdf"), redSquare({100, 30}), sharedLines()));
    const std::string pdf = contentsOfFile(inFolder("a.pdf"));
    EXPECT_THAT(pdf, StartsWith("%PDF-1."));
    EXPECT_THAT(pdf, HasSubstr("%%EOF"));
}

TEST_F(SnapshotFile, TheSameSnapshotIsTheSameBytes) {
    for (const std::string extension : {".png", ".pdf"}) {
        const std::string first = inFolder("1" + extension);
        const std::string second = inFolder("2" + extension);
        ASSERT_TRUE(writeSnapshot(first, redSquare({100, 30}), sharedLines()));
        ASSERT_TRUE(writeSnapshot(second, redSquare({100, 30}), sharedLines()));
        EXPECT_EQ(contentsOfFile(first), contentsOfFile(second)) << extension;
    }
    EXPECT_THAT(pdfText(contentsOfFile(inFolder("1.pdf"))),
                HasSubstr("/CreationDate (20010101000000Z)"));
}

TEST_F(SnapshotFile, ReportsWhatIsWrong) {
    const auto error = [&](const std::string& name, const Snapshot& snapshot) {
        const auto written = writeSnapshot(inFolder(name), snapshot, sharedLines());
        return written ? "" : message(written.error());
    };
    EXPECT_THAT(error("a.jpg", redSquare({9, 9})), HasSubstr("does not end in .png, .svg or .pdf"));
    EXPECT_THAT(error("png", redSquare({9, 9})), HasSubstr("does not end in"));
    EXPECT_THAT(error("none/a.png", redSquare({9, 9})), HasSubstr("No such file or directory"));
    EXPECT_THAT(error("a.png", redSquare({9, 9}, 0)), HasSubstr("no size"));
    EXPECT_THAT(error("a.png", redSquare({9, 9}, -1)), HasSubstr("no size"));
    EXPECT_THAT(error("a.png", redSquare({9, std::numeric_limits<double>::infinity()})),
                HasSubstr("no size"));
    EXPECT_THAT(error("a.png", redSquare({320, 40000})),
                HasSubstr("320 x 40000 pixels is too large"));
    EXPECT_THAT(error("a.pdf", redSquare({320, 1e9})), HasSubstr("too large"));
    EXPECT_EQ(fileCount(), 0u);
}

TEST_F(SnapshotFile, AFailureLeavesTheFileAsItWas) {
    writeFile(inFolder("a.png"), "before");
    Snapshot snapshot = redSquare({10, 10});
    snapshot.paint = [](GraphicsContext&) { throw std::runtime_error("painting"); };
    EXPECT_THROW(static_cast<void>(writeSnapshot(inFolder("a.png"), snapshot, sharedLines())),
                 std::runtime_error);
    EXPECT_EQ(contentsOfFile(inFolder("a.png")), "before");
    EXPECT_EQ(fileCount(), 1u);
}

} // namespace
} // namespace quorvel::freedesktop
