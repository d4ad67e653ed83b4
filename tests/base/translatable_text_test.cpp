#include "base/translatable_text.h"

#include <gtest/gtest.h>

#include <string>

#include "base/ascii_text.h"

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

std::string inCapitals(const TranslatableText& text) {
    return text.translatedBy([](const std::string& part) { return asciiUpperCase(part); });
}

TEST(TranslatableTextValue, IsTranslatedWithItsValues) {
    const TranslatableText text("the rule is wrong: {1}",
                                {{"its {1} is odd", {TranslatableText::verbatim("Count {2}")}}});
    EXPECT_EQ(text.english(), "the rule is wrong: its Count {2} is odd");
    EXPECT_EQ(inCapitals(text), "THE RULE IS WRONG: ITS Count {2} IS ODD");
    EXPECT_EQ(inCapitals("a text"), "A TEXT");
    EXPECT_EQ(inCapitals(TranslatableText::verbatim("a {1}")), "a {1}");
    EXPECT_EQ(TranslatableText().english(), "");
    EXPECT_TRUE(TranslatableText().empty());
}

TEST(TranslatableTextValue, IsEqualWhereItIsTheSameInEnglish) {
    const TranslatableText filledText("more than {1}", {TranslatableText::verbatim("9")});
    EXPECT_EQ(filledText, "more than 9");
    EXPECT_FALSE(filledText == "more than 8");
}

} // namespace
} // namespace quorvel
