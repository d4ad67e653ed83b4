#include "freedesktop/graphics/pixbuf_image_files.h"

#include <chrono>
#include <thread>

#include <fcntl.h>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <sys/stat.h>

#include "tests/freedesktop/graphics/graphics_testing.h"

namespace quorvel::freedesktop {
namespace {

using platform::CGSize;

// 2 x 2 pixels: red, green; blue, white.
const std::string portablePixmap = "P6 2 2 255\n"
                                   "\xFF\x01\x02\x01\xFF\x02\x01\x02\xFF\xFF\xFF\xFF";

class ImageFiles : public FolderTest {
protected:
    std::shared_ptr<const platform::UIImage> read(const std::string& name) {
        return m_files.imageWithContentsOfFile(inFolder(name));
    }

    PixbufImageFiles m_files{QUORVEL_SHARE};
};

void writePng(const std::string& path, int width, int height) {
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
    cairo_t* context = cairo_create(surface);
    cairo_set_source_rgba(context, 1, 0, 0, 0.5);
    cairo_paint(context);
    cairo_destroy(context);
    cairo_surface_write_to_png(surface, path.c_str());
    cairo_surface_destroy(surface);
}

TEST(ScaleOfFileName, StandsBeforeTheExtension) {
    EXPECT_EQ(scaleOfFileName("/a/icon.png"), 1);
    EXPECT_EQ(scaleOfFileName("/a/icon@2x.png"), 2);
    EXPECT_EQ(scaleOfFileName("icon@3x.jpeg"), 3);
    EXPECT_EQ(scaleOfFileName("/a@2x/icon.png"), 1);
    EXPECT_EQ(scaleOfFileName("/a@2x.b/icon"), 1);
    EXPECT_EQ(scaleOfFileName("icon@2x.old.png"), 1);
    EXPECT_EQ(scaleOfFileName("icon@2x"), 1);
    EXPECT_EQ(scaleOfFileName("icon@4x.png"), 1);
    EXPECT_EQ(scaleOfFileName(""), 1);
}

TEST_F(ImageFiles, TheStockIconIsInTheDataFolder) {
    const auto icon =
        m_files.imageWithContentsOfFile("/Applications/MobileCal.app/icon-about@2x.png");
    ASSERT_TRUE(icon);
    EXPECT_EQ(icon->size(), (CGSize{40, 40}));
    EXPECT_EQ(icon->scale(), 2);
    EXPECT_EQ(alphaOf(pixel(*icon, 0, 0)), 255);
    EXPECT_EQ(m_files.imageWithContentsOfFile("/Applications/MobileCal.app/icon-about.png"),
              nullptr);
}

TEST_F(ImageFiles, SizeIsPixelsOverScale) {
    writePng(inFolder("a.png"), 30, 60);
    writePng(inFolder("a@2x.png"), 30, 60);
    writePng(inFolder("a@3x.png"), 30, 61);
    EXPECT_EQ(read("a.png")->size(), (CGSize{30, 60}));
    EXPECT_EQ(read("a@2x.png")->size(), (CGSize{15, 30}));
    EXPECT_EQ(read("a@2x.png")->scale(), 2);
    EXPECT_EQ(read("a@3x.png")->size(), (CGSize{10, 61 / 3.0}));
}

TEST_F(ImageFiles, PixelsAreThoseOfTheFile) {
    writeFile(inFolder("a.ppm"), portablePixmap);
    const auto image = read("a.ppm");
    ASSERT_TRUE(image);
    EXPECT_EQ(pixel(*image, 0, 0), 0xFFFF0102);
    EXPECT_EQ(pixel(*image, 1, 0), 0xFF01FF02);
    EXPECT_EQ(pixel(*image, 0, 1), 0xFF0102FF);
    EXPECT_EQ(pixel(*image, 1, 1), 0xFFFFFFFF);
    writePng(inFolder("a.png"), 2, 2);
    const std::uint32_t half = pixel(*read("a.png"), 0, 0);
    EXPECT_NEAR(alphaOf(half), 128, 1);
    EXPECT_NEAR((half >> 16) & 0xFF, 128, 1);
    EXPECT_EQ(half & 0xFFFF, 0u);
}

TEST_F(ImageFiles, InvalidImagesAreNull) {
    writeFile(inFolder("text.png"), "not a picture");
    writeFile(inFolder("empty.png"), "");
    writePng(inFolder("good.png"), 200, 200);
    const std::string good = contentsOfFile(inFolder("good.png"));
    writeFile(inFolder("torn.png"), good.substr(0, good.size() / 2));
    EXPECT_EQ(read("text.png"), nullptr);
    EXPECT_EQ(read("empty.png"), nullptr);
    EXPECT_EQ(read("torn.png"), nullptr);
    EXPECT_EQ(read("missing.png"), nullptr);
    EXPECT_EQ(read(""), nullptr); // a folder
    EXPECT_EQ(m_files.imageWithContentsOfFile(""), nullptr);
    EXPECT_EQ(m_files.imageWithContentsOfFile(inFolder("good.png") + std::string(1, '\0')),
              nullptr);
    EXPECT_EQ(m_files.imageWithContentsOfFile("dot"), nullptr);
}

TEST_F(ImageFiles, AJpegIsAPictureAndATornOneIsNot) {
    GdkPixbuf* pixbuf = gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, 300, 200);
    guchar* bytes = gdk_pixbuf_get_pixels(pixbuf);
    for (unsigned i = 0; i < static_cast<unsigned>(gdk_pixbuf_get_rowstride(pixbuf)) * 200; ++i)
        bytes[i] = static_cast<guchar>(i * i >> 3);
    ASSERT_TRUE(gdk_pixbuf_save(pixbuf, inFolder("a@2x.jpg").c_str(), "jpeg", nullptr, nullptr));
    g_object_unref(pixbuf);
    const auto image = read("a@2x.jpg");
    ASSERT_TRUE(image);
    EXPECT_EQ(image->size(), (CGSize{150, 100}));
    const std::string whole = contentsOfFile(inFolder("a@2x.jpg"));
    writeFile(inFolder("torn.jpg"), whole.substr(0, whole.size() / 2));
    EXPECT_EQ(read("torn.jpg"), nullptr);
}

TEST_F(ImageFiles, PipesAndDevicesAreNotRead) {
    ASSERT_EQ(::mkfifo(inFolder("pipe.png").c_str(), 0600), 0);
    EXPECT_EQ(read("pipe.png"), nullptr);
    EXPECT_EQ(m_files.imageWithContentsOfFile("/dev/zero"), nullptr);
}

TEST_F(ImageFiles, TooLargeImagesAreRefusedBeforeDecoding) {
    // The header alone promises 60,000 x 60,000 pixels.
    writeFile(inFolder("huge.ppm"), "P6 60000 60000 255\n" + std::string(1000, 'x'));
    EXPECT_EQ(read("huge.ppm"), nullptr);
    writePng(inFolder("good.png"), 8, 8);
    std::string png = contentsOfFile(inFolder("good.png"));
    png[18] = '\x7F'; // the width's third byte
    writeFile(inFolder("lying.png"), png);
    EXPECT_EQ(read("lying.png"), nullptr);
    std::filesystem::resize_file(inFolder("good.png"), (std::uintmax_t{32} << 20) + 1);
    EXPECT_EQ(read("good.png"), nullptr);
}

TEST_F(ImageFiles, AChangedFileIsReadAgain) {
    writePng(inFolder("a.png"), 10, 10);
    const auto first = read("a.png");
    EXPECT_EQ(read("a.png"), first);
    writePng(inFolder("b.png"), 20, 10);
    std::filesystem::rename(inFolder("b.png"), inFolder("a.png"));
    EXPECT_EQ(read("a.png")->size(), (CGSize{20, 10}));
    EXPECT_EQ(first->size(), (CGSize{10, 10}));
    std::filesystem::remove(inFolder("a.png"));
    EXPECT_EQ(read("a.png"), nullptr);
}

// In place, and as if the file had not been written to since.
void rewrite(const std::string& path, const std::string& contents) {
    writeFile(path, contents);
    const timespec longAgo{1'000'000'000, 0};
    const timespec times[] = {longAgo, longAgo};
    ASSERT_EQ(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

TEST_F(ImageFiles, AFileRewrittenWithTheSameSizeAndTimeIsReadAgain) {
    for (int i = 0; i < 50; ++i) { // faster than the file system's clock ticks
        const std::string shade(1, static_cast<char>(i));
        rewrite(inFolder("a.ppm"), "P6 1 1 255\n" + shade + shade + shade);
        const auto image = read("a.ppm");
        ASSERT_TRUE(image);
        EXPECT_EQ(pixel(*image, 0, 0) & 0xFF, static_cast<unsigned>(i));
    }
}

TEST_F(ImageFiles, APictureOfASettledFileIsRememberedUntilTheFileChanges) {
    constexpr std::int64_t hour = 3'600'000'000'000;
    m_files.setFileClock([] { return fileClock() + hour; });
    rewrite(inFolder("a.ppm"), "P6 1 1 255\n\x01\x01\x01");
    const auto first = read("a.ppm");
    ASSERT_TRUE(first);
    EXPECT_EQ(read("a.ppm"), first);
    // By the inode's time, though size and time of the bytes are the same.
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    rewrite(inFolder("a.ppm"), "P6 1 1 255\n\x02\x02\x02");
    const auto second = read("a.ppm");
    ASSERT_TRUE(second);
    EXPECT_EQ(pixel(*second, 0, 0) & 0xFF, 2U);
}

} // namespace
} // namespace quorvel::freedesktop
