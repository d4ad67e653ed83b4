#include "base/number_text.h"

#include <cmath>
#include <limits>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace quorvel {

static bool operator==(const LeadingNumber& a, const LeadingNumber& b) {
    return a.value == b.value && std::signbit(a.value) == std::signbit(b.value) &&
           a.length == b.length;
}

static std::ostream& operator<<(std::ostream& stream, const LeadingNumber& number) {
    return stream << number.value << " in " << number.length << " bytes";
}

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double least = std::numeric_limits<double>::denorm_min();
constexpr double most = std::numeric_limits<double>::max();

TEST(LeadingNumber, IsTheLongestAtTheStart) {
    const std::vector<std::pair<std::string, LeadingNumber>> cases = {
        {"0", {0, 1}},
        {"-0", {-0.0, 2}},
        {"12", {12, 2}},
        {"0012.500", {12.5, 8}},
        {"-0.5pt", {-0.5, 4}},
        {".5", {0.5, 2}},
        {"-.5.", {-0.5, 3}},
        {"5.", {5, 2}},
        {"5.e1", {50, 4}},
        {"1e", {1, 1}},
        {"1e+", {1, 1}},
        {"1E+2-", {100, 4}},
        {"1.5e-3e", {0.0015, 6}},
        {"1e2.5", {100, 3}},
        {"0x10", {0, 1}},
        {"1,5", {1, 1}},
        {"1'000", {1, 1}},
        {"7 8", {7, 1}},
        {std::string("3\0"
                     "4",
                     3),
         {3, 1}},
    };
    for (const auto& [text, number] : cases) {
        EXPECT_EQ(leadingNumber(text), number) << text;
    }
}

TEST(LeadingNumber, IsAbsentWhereNoneStarts) {
    for (const char* text :
         {"",    "-",  "+",   "+1",  "--1",  "-+1",      ".",   "-.",      ".e1", "e1",
          "-e1", " 1", "\t1", "inf", "-inf", "infinity", "nan", "-nan(1)", "x1",  "\u0661"}) {
        EXPECT_EQ(leadingNumber(text), std::nullopt) << text;
    }
}

TEST(LeadingNumber, ReadsNothingBehindItsText) {
    const std::string digits = "12.5e17";
    EXPECT_EQ(leadingNumber(std::string_view(digits).substr(0, 1)), (LeadingNumber{1, 1}));
    EXPECT_EQ(leadingNumber(std::string_view(digits).substr(0, 3)), (LeadingNumber{12, 3}));
    EXPECT_EQ(leadingNumber(std::string_view(digits).substr(0, 5)), (LeadingNumber{12.5, 4}));
    EXPECT_EQ(leadingNumber(std::string_view(digits).substr(0, 6)), (LeadingNumber{125, 6}));
}

TEST(LeadingNumber, BeyondTheRangeIsInfiniteOrZero) {
    EXPECT_EQ(leadingNumber("1e400"), (LeadingNumber{infinity, 5}));
    EXPECT_EQ(leadingNumber("-1e400"), (LeadingNumber{-infinity, 6}));
    EXPECT_EQ(leadingNumber("1e-400"), (LeadingNumber{0, 6}));
    EXPECT_EQ(leadingNumber("-1e-400"), (LeadingNumber{-0.0, 7}));
    EXPECT_EQ(leadingNumber("1e99999999999999999999"), (LeadingNumber{infinity, 22}));
    EXPECT_EQ(leadingNumber("1e-99999999999999999999"), (LeadingNumber{0, 23}));
    EXPECT_EQ(leadingNumber("0e99999999999999999999"), (LeadingNumber{0, 22}));
    EXPECT_EQ(leadingNumber("1.7976931348623159e308"), (LeadingNumber{infinity, 22}));
}

TEST(WholeNumber, IsTheWholeText) {
    EXPECT_EQ(wholeNumber("12"), 12);
    EXPECT_EQ(wholeNumber("-1.5e-3"), -0.0015);
    EXPECT_EQ(wholeNumber("1.7976931348623157e308"), most);
    EXPECT_EQ(wholeNumber("4.9e-324"), least);
    for (const char* text : {"", "12 ", " 12", "1e", "1,5", "0x10", "+1", "inf", "nan", "1.2.3"}) {
        EXPECT_EQ(wholeNumber(text), std::nullopt) << text;
    }
    EXPECT_EQ(wholeNumber(std::string_view("1\0", 2)), std::nullopt);
}

TEST(WholeNumber, IsAbsentBeyondTheRange) {
    for (const char* text : {"1e400", "-1e400", "1e-400", "-1e-400", "2e-324", "0.1e-400"}) {
        EXPECT_EQ(wholeNumber(text), std::nullopt) << text;
    }
    for (const char* text : {"0", "-0", "0.000", "0e400", "-0.0e-99999999999999999999"}) {
        EXPECT_EQ(wholeNumber(text), 0) << text;
    }
}

TEST(WholeNumber, MayBeOfAnyLength) {
    const std::string zeros(1'000'000, '0');
    EXPECT_EQ(wholeNumber(zeros + "7." + zeros), 7);
    EXPECT_EQ(wholeNumber("1" + zeros + "e-1000000"), 1);
    EXPECT_EQ(wholeNumber("0." + zeros + "1e1000001"), 1);
    EXPECT_EQ(wholeNumber("1e" + zeros + "2"), 100);
    EXPECT_EQ(wholeNumber("1" + zeros), std::nullopt);
    EXPECT_EQ(wholeNumber("0." + zeros + "1"), std::nullopt);
    EXPECT_EQ(wholeNumber(std::string(1'000'000, '-')), std::nullopt);
}

} // namespace
} // namespace quorvel
