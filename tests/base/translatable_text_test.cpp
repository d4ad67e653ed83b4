#include "base/translatable_text.h"

#include <gtest/gtest.h>

namespace quorvel {
namespace {

TEST(TranslatableText, IsUnchanged) {
    static constexpr const char* text = translatable("Nothing today");
    EXPECT_STREQ(text, "Nothing today");
}

TEST(FilledText, HasTheValuesAtTheirNumbers) {
    EXPECT_EQ(filled("{1} and {2} more", {"work.ics", "3"}), "work.ics and 3 more");
    EXPECT_EQ(filled("{2}: {1}, {1}", {"a", "b"}), "b: a, a");
    EXPECT_EQ(filled("{9}", {"1", "2", "3", "4", "5", "6", "7", "8", "9"}), "9");
    EXPECT_EQ(filled("", {"a"}), "");
}

TEST(FilledText, KeepsWhatIsNoPlaceholder) {
    EXPECT_EQ(filled("{2} {0} {} {10} {a} {1 } { {1", {"a"}), "{2} {0} {} {10} {a} {1 } { {1");
    EXPECT_EQ(filled("100 % %s %n", {"a"}), "100 % %s %n");
}

TEST(FilledText, FillsNothingInTheValues) {
    EXPECT_EQ(filled("{1}{2}", {"{2}", "{1}"}), "{2}{1}");
}

} // namespace
} // namespace quorvel
