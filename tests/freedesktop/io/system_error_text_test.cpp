// The texts of error numbers, before anything translates them.
#include "freedesktop/io/system_error_text.h"

#include <cerrno>
#include <climits>
#include <string>

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

TEST(SystemErrorTextTest, IsInEnglish) {
    EXPECT_EQ(systemErrorText(ENOENT).english(), "No such file or directory");
    EXPECT_EQ(systemErrorText(EACCES).english(), "Permission denied");
}

TEST(SystemErrorTextTest, OfAnUnknownNumberNamesIt) {
    EXPECT_NE(systemErrorText(INT_MAX).english().find(std::to_string(INT_MAX)), std::string::npos);
    const TranslatableText first = systemErrorText(98765);
    systemErrorText(56789);
    EXPECT_NE(first.english().find("98765"), std::string::npos);
}

} // namespace
} // namespace quorvel::freedesktop
