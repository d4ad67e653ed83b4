// Property lists from elsewhere, where the folder of them is present: none may crash or stall.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

#include "freedesktop/preferences/property_list_file.h"

namespace quorvel::freedesktop {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> propertyListsBelow(const fs::path& corpus) {
    std::vector<fs::path> files;
    for (const auto& folder : fs::directory_iterator(corpus)) {
        if (folder.path().filename().string().rfind("plist-", 0) != 0) {
            continue;
        }
        for (const auto& file : fs::recursive_directory_iterator(folder)) {
            if (file.is_regular_file()) {
                files.push_back(file.path());
            }
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

TEST(PropertyListCorpus, IsReadInTime) {
    const char* const corpus = std::getenv("QUORVEL_CORPUS");
    if (corpus == nullptr) {
        GTEST_SKIP() << "QUORVEL_CORPUS does not name the folder of property lists";
    }
    const auto files = propertyListsBelow(corpus);
    ASSERT_FALSE(files.empty());
    std::size_t read = 0;
    for (const fs::path& file : files) {
        const auto start = std::chrono::steady_clock::now();
        const auto list = readPropertyListFile(file);
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        EXPECT_LT(took.count(), 1) << file;
        if (list) {
            EXPECT_TRUE(list->has_value()) << file;
            ++read;
        } else {
            EXPECT_NE(message(list.error()), "") << file;
        }
    }
    RecordProperty("files", static_cast<int>(files.size()));
    RecordProperty("read", static_cast<int>(read));
    EXPECT_GT(read, files.size() / 2);
}

} // namespace
} // namespace quorvel::freedesktop
