#include "tests/golden/golden_picture.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>

#include "tests/golden/drawing_versions.h"
#include "tests/golden/picture.h"
#include "tests/golden/picture_comparison.h"

namespace quorvel::golden {
namespace {

constexpr const char* versionsFile = "drawn-with.txt";

std::string goldenFile(const std::string& name) {
    return (std::filesystem::path(GOLDEN_FOLDER) / "pictures" / name).string();
}

std::string textOf(const std::string& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Prints how the pictures are compared, and leaves the versions beside them for tools/make-goldens.
class Comparison : public testing::Environment {
public:
    void SetUp() override {
        setenv("FONTCONFIG_FILE", GOLDEN_FOLDER "/fonts.conf", 1); // also for the command
        const std::string here = drawingVersions();
        std::ofstream(drawnPicture(versionsFile)) << here;
        m_isExact = here == textOf(goldenFile(versionsFile));
        std::cout << "The pictures are compared "
                  << (m_isExact ? "pixel by pixel.\n"
                                : "by their structure: they were drawn with other versions than "
                                  "those here, which are\n" +
                                      here)
                  << std::flush;
    }
    bool isExact() const { return m_isExact; }

private:
    bool m_isExact = false;
};

const auto* const comparison =
    dynamic_cast<Comparison*>(testing::AddGlobalTestEnvironment(new Comparison));

double scaleOf(const std::string& name) {
    return std::strtod(name.c_str() + name.rfind('@') + 1, nullptr);
}

void expectSameStructure(const std::string& name, const Picture& golden, const Picture& drawn) {
    std::string differences;
    for (const std::string& difference : structuralDifferences(golden, drawn, scaleOf(name)))
        differences += "\n  " + difference;
    EXPECT_EQ(differences, "") << name
                               << ": compare the picture with the one drawn into the build folder";
}

} // namespace

std::string drawnPicture(const std::string& name) {
    return (std::filesystem::path(GOLDEN_OUTPUT) / name).string();
}

std::string testName(std::string name) {
    for (char& c : name) {
        if (isalnum(static_cast<unsigned char>(c)) == 0)
            c = '_';
    }
    return name;
}

void expectGolden(const std::string& name) {
    const auto golden = readPicture(goldenFile(name));
    const auto drawn = readPicture(drawnPicture(name));
    ASSERT_TRUE(golden) << name;
    ASSERT_TRUE(drawn) << name;
    if (!comparison->isExact()) {
        expectSameStructure(name, *golden, *drawn);
        return;
    }
    constexpr double mostDiffering = 0.002; // glyph edges
    EXPECT_LE(differingShare(*golden, *drawn), mostDiffering)
        << name << ": compare the picture with the one drawn into the build folder";
}

} // namespace quorvel::golden
