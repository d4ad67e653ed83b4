// UTF-8 in both directions, and what is no character of it.
#include "base/utf8.h"

#include <gtest/gtest.h>

namespace quorvel {
namespace {

void expectCharacter(std::string_view text, char32_t character, std::size_t length) {
    const DecodedCharacter decoded = decodeCharacter(text);
    ASSERT_TRUE(decoded.character.has_value()) << text;
    EXPECT_EQ(*decoded.character, character);
    EXPECT_EQ(decoded.length, length);
}

void expectDamage(std::string_view text) {
    const DecodedCharacter decoded = decodeCharacter(text);
    EXPECT_FALSE(decoded.character.has_value()) << text;
    EXPECT_EQ(decoded.length, 1U);
}

TEST(DecodeCharacter, KnowsEachLength) {
    expectCharacter("ab", U'a', 1);
    expectCharacter(std::string_view("\0", 1), 0, 1);
    expectCharacter("\x7F", 0x7F, 1);
    expectCharacter("\xC2\x80", 0x80, 2);
    expectCharacter("\xDF\xBF", 0x7FF, 2);
    expectCharacter("\xE0\xA0\x80", 0x800, 3);
    expectCharacter("\xEF\xBF\xBF", 0xFFFF, 3);
    expectCharacter("\xF0\x90\x80\x80", 0x10000, 4);
    expectCharacter("\xF4\x8F\xBF\xBF", 0x10FFFF, 4);
}

TEST(DecodeCharacter, TakesOneDamagedByte) {
    expectDamage("\x80");
    expectDamage("\xFF");
    expectDamage("\xC3");             // cut off
    expectDamage("\xE2\x82");         // likewise
    expectDamage("\xE2\x28\xA1");     // no continuation
    expectDamage("\xC0\xAF");         // longer than it need be
    expectDamage("\xE0\x9F\xBF");     // likewise
    expectDamage("\xF0\x8F\xBF\xBF"); // likewise
    expectDamage("\xED\xA0\x80");     // half of a surrogate pair
    expectDamage("\xF4\x90\x80\x80"); // beyond U+10FFFF
}

TEST(AppendCharacter, EncodesWhatIsDecoded) {
    for (char32_t character = 0; character <= 0x10FFFF; ++character) {
        if (!isEncodable(character)) {
            continue;
        }
        std::string text;
        appendCharacter(text, character);
        const DecodedCharacter decoded = decodeCharacter(text);
        ASSERT_EQ(decoded.character, character);
        ASSERT_EQ(decoded.length, text.size());
    }
}

TEST(JoinSurrogates, GivesEveryCharacterBeyondSixteenBits) {
    EXPECT_EQ(joinSurrogates(0xD800, 0xDC00), 0x10000U);
    EXPECT_EQ(joinSurrogates(0xD83C, 0xDF82), 0x1F382U); // a birthday cake
    EXPECT_EQ(joinSurrogates(0xDBFF, 0xDFFF), 0x10FFFFU);
}

TEST(Surrogates, AreHighOrLow) {
    for (char32_t unit = 0; unit <= 0xFFFF; ++unit) {
        ASSERT_EQ(isHighSurrogate(unit), unit >= 0xD800 && unit <= 0xDBFF)
            << static_cast<unsigned>(unit);
        ASSERT_EQ(isLowSurrogate(unit), unit >= 0xDC00 && unit <= 0xDFFF)
            << static_cast<unsigned>(unit);
    }
}

TEST(IsEncodable, RefusesSurrogatesAndLargeNumbers) {
    EXPECT_TRUE(isEncodable(0xD7FF));
    EXPECT_FALSE(isEncodable(0xD800));
    EXPECT_FALSE(isEncodable(0xDFFF));
    EXPECT_TRUE(isEncodable(0xE000));
    EXPECT_TRUE(isEncodable(0x10FFFF));
    EXPECT_FALSE(isEncodable(0x110000));
}

TEST(AppendCharacterOrReplacement, ReplacesWhatUtf8CannotEncode) {
    std::string text;
    appendCharacterOrReplacement(text, U'é');
    appendCharacterOrReplacement(text, 0xD800);
    appendCharacterOrReplacement(text, 0x110000);
    EXPECT_EQ(text, "é\uFFFD\uFFFD");
}

TEST(WellFormedUtf8, DoesNotChangeUtf8) {
    EXPECT_EQ(wellFormedUtf8("aé日😀"), "aé日😀");
    EXPECT_EQ(wellFormedUtf8(""), "");
    EXPECT_EQ(wellFormedUtf8("\xF4\x8F\xBF\xBF"), "\xF4\x8F\xBF\xBF");
}

TEST(WellFormedUtf8, ReplacesEachInvalidByte) {
    EXPECT_EQ(wellFormedUtf8("a\xFFz"), "a\uFFFDz");
    EXPECT_EQ(wellFormedUtf8("\xC0\xAF"), "\uFFFD\uFFFD");
    EXPECT_EQ(wellFormedUtf8("\xE2\x82"), "\uFFFD\uFFFD");
    EXPECT_EQ(wellFormedUtf8("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(wellFormedUtf8("\xF4\x90\x80\x80").size(), 12U);
}

} // namespace
} // namespace quorvel
