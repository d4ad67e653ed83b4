// A folder of preferences that goes away with the test.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include <gtest/gtest.h>
#include <unistd.h>

namespace quorvel::freedesktop {

class PreferencesFixture : public testing::Test {
protected:
    PreferencesFixture() { std::filesystem::create_directories(m_folder); }
    ~PreferencesFixture() override { std::filesystem::remove_all(m_base); }

    void write(const std::string& name, std::string_view contents) const {
        std::ofstream(m_folder / name, std::ios::binary) << contents;
    }

    std::string contentsOf(const std::string& name) const {
        std::ifstream file(m_folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    std::string pathOf(const std::string& name) const { return (m_folder / name).string(); }

    const std::filesystem::path m_base =
        std::filesystem::path(testing::TempDir()) /
        ("quorvel-preferences-" + std::to_string(::getpid()) + "-" +
         testing::UnitTest::GetInstance()->current_test_info()->name());
    const std::filesystem::path m_folder = m_base / "Preferences";
};

} // namespace quorvel::freedesktop
