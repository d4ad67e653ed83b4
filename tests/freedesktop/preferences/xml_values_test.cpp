#include "freedesktop/preferences/xml_values.h"

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace quorvel::freedesktop {
namespace {

using platform::NSDate;
using platform::PropertyListData;

constexpr double day = 86400;

std::optional<std::int64_t> integer(std::string_view text) {
    const auto value = integerOfText(text);
    return value ? std::optional(std::get<std::int64_t>(value->value)) : std::nullopt;
}

std::optional<double> real(std::string_view text) {
    const auto value = realOfText(text);
    return value ? std::optional(std::get<double>(value->value)) : std::nullopt;
}

std::optional<double> secondsOfDate(std::string_view text) {
    const auto value = dateOfText(text);
    return value ? std::optional(std::get<NSDate>(value->value).timeIntervalSinceReferenceDate)
                 : std::nullopt;
}

std::string decoded(std::string_view text) {
    std::string bytes;
    for (const std::byte byte : dataOfText(text)) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

TEST(XmlValues, IntegersAreDecimalOrHexadecimal) {
    EXPECT_EQ(integer("0"), 0);
    EXPECT_EQ(integer(" \n42\t"), 42);
    EXPECT_EQ(integer("+42"), 42);
    EXPECT_EQ(integer("- 42"), -42);
    EXPECT_EQ(integer("010"), 10);
    EXPECT_EQ(integer("0x1F"), 31);
    EXPECT_EQ(integer("-0Xff"), -255);
    EXPECT_EQ(integer("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(integer("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
}

TEST(XmlValues, IntegersAboveTheSignedRangeAreUnsigned) {
    const auto largest = integerOfText("18446744073709551615");
    ASSERT_TRUE(largest);
    EXPECT_EQ(std::get<std::uint64_t>(largest->value), std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(std::get<std::uint64_t>(integerOfText("0x8000000000000000")->value),
              std::uint64_t{1} << 63U);
}

TEST(XmlValues, InvalidIntegersAreAbsent) {
    for (const char* text : {"", " ", "a", "12a", "1 2", "1.5", "1e3", "--5", "+-5", "-", "0x",
                             "0xg", "-9223372036854775809", "18446744073709551616", "\xD9\xA1"}) {
        EXPECT_EQ(integer(text), std::nullopt) << text;
    }
}

TEST(XmlValues, RealsAreAsTheCLibraryReadsThem) {
    EXPECT_EQ(real("1.75"), 1.75);
    EXPECT_EQ(real(" -2.5e3 "), -2500);
    EXPECT_EQ(real("+.5"), 0.5);
    EXPECT_EQ(real("18446744073709551615"), 18446744073709551615.0);
    EXPECT_EQ(real("1e999"), std::numeric_limits<double>::infinity());
    EXPECT_EQ(real("-inf"), -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::isnan(real("nan").value_or(0)));
    for (const char* text : {"", " ", "a", "1.5a", "1,5", "1 2", "--1"}) {
        EXPECT_EQ(real(text), std::nullopt) << text;
    }
    EXPECT_EQ(real(std::string_view("1\0", 2)), std::nullopt);
}

TEST(XmlValues, DatesCountFromTheReferenceDate) {
    EXPECT_EQ(secondsOfDate("2001-01-01T00:00:00Z"), 0);
    EXPECT_EQ(secondsOfDate(" 2001-01-02T01:02:03Z\n"), day + 3723);
    EXPECT_EQ(secondsOfDate("1970-01-01T00:00:00Z"), -978307200);
    EXPECT_EQ(secondsOfDate("2000-02-29T00:00:00Z"), -307 * day);
    EXPECT_EQ(secondsOfDate("4001-01-01T00:00:00Z"), 730485 * day); // 2000 years of 365.2425 days
}

TEST(XmlValues, InvalidDatesAreAbsent) {
    for (const char* text :
         {"", "2001", "2001-01-01", "2001-01-01T00:00:00", "2001-13-01T00:00:00Z",
          "2001-02-29T00:00:00Z", "2001-00-01T00:00:00Z", "2001-01-01T24:00:00Z",
          "2001-01-01T00:60:00Z", "2001-01-01T00:00:60Z", "01-01-01T00:00:00Z",
          "2001-1-1T00:00:00Z", "2001-01-01 00:00:00Z", "2001-01-01T00:00:00ZZ", "Z", "T"}) {
        EXPECT_EQ(secondsOfDate(text), std::nullopt) << text;
    }
}

// "All line breaks or other characters not found in Table 1 must be ignored by decoding software."
// (RFC 2045, 6.8)
TEST(XmlValues, DataIsBase64) {
    EXPECT_EQ(decoded(""), "");
    EXPECT_EQ(decoded("YQ=="), "a");
    EXPECT_EQ(decoded("YWI="), "ab");
    EXPECT_EQ(decoded(" YW\n\tJj "), "abc");
    EXPECT_EQ(decoded("+/+/"), "\xFB\xFF\xBF");
    EXPECT_EQ(decoded("Y-W<J>j"), "abc");
    EXPECT_EQ(decoded("YQ==YQ=="), "a");
    EXPECT_EQ(decoded("Y"), "");
    EXPECT_EQ(decoded(std::string(4 << 20, 'A')).size(), 3U << 20U);
}

} // namespace
} // namespace quorvel::freedesktop
