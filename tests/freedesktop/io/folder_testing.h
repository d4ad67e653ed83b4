// What tests of files share: a folder of their own, and whole files in it.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

namespace quorvel::freedesktop {

inline std::string contentsOfFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void writeFile(const std::filesystem::path& path, const std::string& contents) {
    std::ofstream(path, std::ios::binary) << contents;
}

// A folder for each test, empty at first and removed afterwards.
class FolderTest : public testing::Test {
protected:
    FolderTest() {
        std::string name = (std::filesystem::temp_directory_path() / "quorvel-XXXXXX").string();
        m_folder = ::mkdtemp(name.data());
    }
    ~FolderTest() override { std::filesystem::remove_all(m_folder); }

    std::string inFolder(const std::string& name) const { return (m_folder / name).string(); }
    std::size_t fileCount() const {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(m_folder),
                                                      std::filesystem::directory_iterator()));
    }

private:
    std::filesystem::path m_folder;
};

} // namespace quorvel::freedesktop
