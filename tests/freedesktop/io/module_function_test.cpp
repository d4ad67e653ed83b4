// Libraries that are loaded at their first use, and those that are missing.
#include "freedesktop/io/module_function.h"

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

constexpr const char* mathematics = "libm.so.6";

TEST(ModuleFunction, IsTheFunctionOfThatName) {
    const auto found = moduleFunction(mathematics, "fabs");
    ASSERT_TRUE(found);
    EXPECT_EQ(reinterpret_cast<double (*)(double)>(*found)(-3), 3);
}

TEST(ModuleFunction, NamesTheFileThatIsMissing) {
    const auto found = moduleFunction("libquorvel-none.so.0", "fabs");
    ASSERT_FALSE(found);
    EXPECT_NE(found.error().find("libquorvel-none.so.0"), std::string::npos) << found.error();
}

TEST(ModuleFunction, NamesTheFunctionThatIsMissing) {
    const auto found = moduleFunction(mathematics, "quorvelNone");
    ASSERT_FALSE(found);
    EXPECT_NE(found.error().find("quorvelNone"), std::string::npos) << found.error();
}

} // namespace
} // namespace quorvel::freedesktop
