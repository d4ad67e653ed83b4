// UTF-16 in pieces, and the encodings of vCalendar 1.0, right and wrong ones.
#include "icalendar/text/encoded_text.h"

#include <gtest/gtest.h>

namespace quorvel::icalendar {
namespace {

std::string utf16(std::u16string_view text, bool isBigEndian) {
    std::string bytes;
    for (const char16_t unit : text) {
        const char high = static_cast<char>(unit >> 8);
        const char low = static_cast<char>(unit & 0xFF);
        bytes += isBigEndian ? high : low;
        bytes += isBigEndian ? low : high;
    }
    return bytes;
}

// With its byte-order mark.
std::string decoded(std::string_view text, std::size_t pieceSize = 1000) {
    auto decoder = Utf16Decoder::forTextWithMark(text);
    if (!decoder) {
        return "none";
    }
    std::string utf8;
    for (std::size_t at = Utf16Decoder::markSize; at < text.size(); at += pieceSize) {
        decoder->decode(text.substr(at, pieceSize), utf8);
    }
    decoder->finish(utf8);
    return utf8;
}

TEST(Utf16, IsDecodedAsItsMarkSays) {
    for (const bool isBigEndian : {false, true}) {
        const std::string bytes = utf16(u"\uFEFFA\u00FC\u20AC\U0001F382\uFFFF", isBigEndian);
        for (std::size_t pieceSize = 1; pieceSize < 8; ++pieceSize) {
            EXPECT_EQ(decoded(bytes, pieceSize), "Aü€🎂\xEF\xBF\xBF") << pieceSize;
        }
    }
    EXPECT_EQ(decoded("\xEF\xBB\xBF"
                      "A"),
              "none");
    EXPECT_EQ(decoded("\xFF"), "none");
    EXPECT_EQ(decoded(""), "none");
}

TEST(Utf16, OfHalvesAndNulIsReplaced) {
    const std::string marked = utf16(u"\uFEFF", false);
    const std::string high = utf16(std::u16string(1, 0xD83C), false);
    const std::string low = utf16(std::u16string(1, 0xDF82), false);
    const std::string letter = utf16(u"a", false);
    const std::string nul(2, '\0');
    const std::string lost = "\xEF\xBF\xBD";
    for (std::size_t pieceSize = 1; pieceSize < 6; ++pieceSize) {
        EXPECT_EQ(decoded(marked + high + letter, pieceSize), lost + "a");
        EXPECT_EQ(decoded(marked + low + letter, pieceSize), lost + "a");
        EXPECT_EQ(decoded(marked + low + high + letter, pieceSize), lost + lost + "a");
        EXPECT_EQ(decoded(marked + high + high + low, pieceSize), lost + "🎂");
        EXPECT_EQ(decoded(marked + letter + high, pieceSize), "a" + lost);
        EXPECT_EQ(decoded(marked + letter + nul + letter, pieceSize), "a" + lost + "a");
        EXPECT_EQ(decoded(marked + letter + "x", pieceSize), "a" + lost);
        EXPECT_EQ(decoded(marked + high + "x", pieceSize), lost);
    }
}

// RFC 2045, 6.7: "Any octet [...] may be represented by an "=" followed by a two digit hexadecimal
// representation of the octet's value."
TEST(QuotedPrintable, IsDecoded) {
    EXPECT_EQ(decodedQuotedPrintable("Gr=C3=BC=C3=9Fe = 1=3D1"), "Grüße = 1=1");
    EXPECT_EQ(decodedQuotedPrintable("a=0d=0Ab"), "a\r\nb");
    for (const char* text : {"=", "=4", "a=", "=G0", "=0G", "=="}) {
        EXPECT_EQ(decodedQuotedPrintable(text), text);
    }
}

// RFC 2045, 6.7: "An equal sign as the last character on a encoded line indicates such a
// non-significant ("soft") line break in the encoded text."
TEST(QuotedPrintable, IsUnfoldedAtSoftBreaksWithTheirSpaces) {
    EXPECT_EQ(unfoldedQuotedPrintable("A:one=\r\n two"), "A:one two");
    EXPECT_EQ(unfoldedQuotedPrintable("A:one\r\r\n  two=\n\tthree="), "A:one two\tthree=");
    EXPECT_EQ(unfoldedQuotedPrintable("\r\n "), "");
    EXPECT_EQ(unfoldedQuotedPrintable(""), "");
}

// The vectors of RFC 4648, 10.
TEST(Base64, IsDecoded) {
    EXPECT_EQ(decodedBase64(""), "");
    EXPECT_EQ(decodedBase64("Zg=="), "f");
    EXPECT_EQ(decodedBase64("Zm8="), "fo");
    EXPECT_EQ(decodedBase64("Zm9vYmE="), "fooba");
    EXPECT_EQ(decodedBase64("Zm9v YmFy"), "foobar");
    EXPECT_EQ(decodedBase64("Zg"), "f");
    EXPECT_EQ(decodedBase64("Z!=="), std::nullopt);
    EXPECT_EQ(decodedBase64("Zg==Zg=="), std::nullopt);
}

DecodedText textOf(std::string_view line) {
    return decodedText(*splitContentLine(line)).value_or(DecodedText{"plain", false, {}});
}

TEST(EncodedText, IsReadByItsParameters) {
    EXPECT_EQ(textOf("SUMMARY;ENCODING=QUOTED-PRINTABLE;CHARSET=UTF-8:Gr=C3=BC=C3=9Fe").text,
              "Grüße");
    EXPECT_EQ(textOf("SUMMARY;charset=iso-8859-1;quoted-printable:Gr=FC=DFe").text, "Grüße");
    EXPECT_EQ(textOf("SUMMARY;ENCODING=BASE64;CHARSET=ISO-8859-1:R3L832U=").text, "Grüße");
    EXPECT_EQ(textOf("SUMMARY;CHARSET=ISO-8859-1:Gr\xFC\xDF"
                     "e")
                  .text,
              "Grüße");
    EXPECT_EQ(textOf("SUMMARY;ENCODING=QUOTED-PRINTABLE:one=0D=0Atwo=0Dthree=0D=0A").text,
              "one\ntwo\nthree");
    EXPECT_EQ(textOf("SUMMARY;LANGUAGE=de:Gr=C3").text, "plain");
    EXPECT_EQ(textOf("SUMMARY:Gr=C3").text, "plain");
}

TEST(EncodedText, OfUnknownKindStaysAndIsNamed) {
    const DecodedText other = textOf("SUMMARY;ENCODING=QUOTED-PRINTABLE;CHARSET=KOI8-R:=F0=D2");
    EXPECT_EQ(other.text, "\xF0\xD2");
    EXPECT_EQ(other.unknownCharset, "KOI8-R");
    const DecodedText broken = textOf("SUMMARY;ENCODING=BASE64:no base64!");
    EXPECT_EQ(broken.text, "no base64!");
    EXPECT_FALSE(broken.isDecoded);
    EXPECT_FALSE(textOf("SUMMARY;ENCODING=8BIT;CHARSET=US-ASCII:x").unknownCharset);
}

} // namespace
} // namespace quorvel::icalendar
