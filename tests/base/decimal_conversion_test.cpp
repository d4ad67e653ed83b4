// What this machine's standard library converts, and what only the conversion without it does here.
#include "base/decimal_conversion.h"

#include <array>
#include <bit>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "base/number_text.h"
#include "tests/test_seed.h"

namespace quorvel {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double least = std::numeric_limits<double>::denorm_min();

std::uint64_t bitsOf(double number) {
    return std::bit_cast<std::uint64_t>(number);
}

// Decimals of a number between 0 and 1, divided by two.
std::string halved(const std::string& decimals) {
    std::string half;
    int rest = 0;
    for (const char digit : decimals + "0") {
        const int dividend = (rest * 10) + (digit - '0');
        half += static_cast<char>('0' + (dividend / 2));
        rest = dividend % 2;
    }
    return half;
}

// Every digit behind the point of a number below 1.
std::string allDecimals(double number) {
    std::array<char, 1100> text{};
    std::snprintf(text.data(), text.size(), "%.1074f", number);
    return text.data() + 2;
}

class RandomNumbers {
public:
    std::string next() {
        std::string text = chance(2) ? "-" : "";
        text += digits(chance(8) ? 900 : 25);
        if (chance(2)) {
            text += "." + digits(chance(8) ? 900 : 25);
        }
        if (chance(2)) {
            text += chance(2) ? "e" : "E-";
            text += std::to_string(below(chance(2) ? 30 : 360));
        }
        return text;
    }

    std::uint64_t below(std::uint64_t end) { return m_engine() % end; }

private:
    bool chance(std::uint64_t ofHowMany) { return below(ofHowMany) == 0; }

    // At least one; often of one kind only.
    std::string digits(std::uint64_t mostDigits) {
        const std::uint64_t kinds = chance(4) ? 1 : 10;
        std::string text;
        for (std::uint64_t count = below(mostDigits) + 1; count > 0; --count) {
            text += static_cast<char>('0' + (below(kinds) + (kinds == 1 && chance(50) ? 5 : 0)));
        }
        return text;
    }

    std::mt19937_64 m_engine{testSeed()};
};

TEST(DecimalConversion, AgreesWithTheStandardLibrary) {
    RandomNumbers numbers;
    for (int i = 0; i < 200'000; ++i) {
        const std::string text = numbers.next();
        const auto expected = leadingNumber(text);
        ASSERT_TRUE(expected) << text;
        ASSERT_EQ(expected->length, text.size()) << text;
        ASSERT_EQ(bitsOf(convertedDecimal(text)), bitsOf(expected->value)) << text;
    }
}

// The most digits have the middles between the smallest numbers.
TEST(DecimalConversion, RoundsTheMiddleToEven) {
    RandomNumbers numbers;
    for (int i = 0; i < 2'000; ++i) {
        const std::uint64_t below = numbers.below(std::uint64_t{1} << numbers.below(52));
        const double lower = std::ldexp(static_cast<double>(below), -1074);
        const double upper = lower + least;
        const double twice = std::ldexp(static_cast<double>((2 * below) + 1), -1074);
        const std::string middle = "." + halved(allDecimals(twice));

        ASSERT_EQ(bitsOf(convertedDecimal(middle)), bitsOf(below % 2 == 0 ? lower : upper))
            << middle;
        ASSERT_EQ(bitsOf(convertedDecimal(middle + "000001")), bitsOf(upper)) << middle;
        const std::string less = middle.substr(0, middle.size() - 1) + "4999999";
        ASSERT_EQ(middle.back(), '5');
        ASSERT_EQ(bitsOf(convertedDecimal(less)), bitsOf(lower)) << middle;
    }
}

TEST(DecimalConversion, CountsADigitFarBehind) {
    const std::string middle = "9007199254740993"; // of two doubles
    const std::string zeros(5'000, '0');
    EXPECT_EQ(convertedDecimal(middle + "." + zeros), 9007199254740992.0);
    EXPECT_EQ(convertedDecimal(middle + "." + zeros + "1"), 9007199254740994.0);
    EXPECT_EQ(convertedDecimal(middle + zeros + "1e-5001"), 9007199254740994.0);
}

TEST(DecimalConversion, IsInfiniteOrZeroBeyondTheRange) {
    EXPECT_EQ(bitsOf(convertedDecimal("1e400")), bitsOf(infinity));
    EXPECT_EQ(bitsOf(convertedDecimal("-1e99999999999999999999")), bitsOf(-infinity));
    EXPECT_EQ(bitsOf(convertedDecimal("-1e-400")), bitsOf(-0.0));
    EXPECT_EQ(bitsOf(convertedDecimal("1e-99999999999999999999")), bitsOf(0.0));
    EXPECT_EQ(bitsOf(convertedDecimal("0e99999999999999999999")), bitsOf(0.0));
    EXPECT_EQ(bitsOf(convertedDecimal(std::string(100'000, '9'))), bitsOf(infinity));
    EXPECT_EQ(bitsOf(convertedDecimal(std::string(100'000, '9') + "e-100000")), bitsOf(1.0));
}

TEST(DecimalConversion, IsTheSameInEveryLocale) {
    setenv("LOCPATH", QUORVEL_TEST_LOCALES, 1);
    ASSERT_NE(std::setlocale(LC_NUMERIC, "de_DE.UTF-8"), nullptr);
    EXPECT_EQ(std::strtod("1,5", nullptr), 1.5);
    EXPECT_EQ(convertedDecimal("1.5"), 1.5);
    EXPECT_EQ(convertedDecimal("-1234.5e-2"), -12.345);
    EXPECT_EQ(wholeNumber("1.5"), 1.5);
    EXPECT_EQ(wholeNumber("1,5"), std::nullopt);
    EXPECT_EQ(wholeNumber("1.234,5"), std::nullopt);
    std::setlocale(LC_NUMERIC, "C");
    unsetenv("LOCPATH");
}

} // namespace
} // namespace quorvel
