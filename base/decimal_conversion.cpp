// std::strtod() rounds right, but expects the decimal point of the locale. A number without one is
// the same in every locale: 12.5e3 becomes 125e2 first.
#include "base/decimal_conversion.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "base/ascii_text.h"

namespace quorvel {

namespace {

// No two neighbouring doubles have their middle further down than this many digits, so that of all
// later digits it counts only whether one is not 0.
constexpr std::size_t mostDigits = 768;
// Beyond it, every number of at most so many digits is infinite or 0.
constexpr std::int64_t furthestExponent = 10'000;

class NumberWithoutPoint {
public:
    explicit NumberWithoutPoint(std::string_view number) {
        if (number.starts_with('-')) {
            append('-');
            number.remove_prefix(1);
        }
        const std::size_t mark = std::min(number.find_first_of("eE"), number.size());
        addDigits(number.substr(0, mark));
        addExponent(number.substr(mark));
    }

    double value() const { return std::strtod(m_text.data(), nullptr); }

private:
    void append(char character) { m_text[m_length++] = character; }

    void addDigits(std::string_view digits) {
        bool isFraction = false;
        bool hasMore = false;
        for (const char digit : digits) {
            if (digit == '.') {
                isFraction = true;
                continue;
            }
            const bool isLeadingZero = digit == '0' && m_digits == 0;
            const bool isWritten = !isLeadingZero && m_digits < mostDigits;
            if (isWritten) {
                append(digit);
                ++m_digits;
            }
            hasMore = hasMore || (!isWritten && digit != '0');
            m_exponent += (isWritten || isLeadingZero ? 0 : 1) - (isFraction ? 1 : 0);
        }
        if (m_digits == 0) {
            append('0');
        } else if (hasMore) {
            append('1');
            --m_exponent;
        }
    }

    // `part` is empty or starts with the letter.
    void addExponent(std::string_view part) {
        part.remove_prefix(std::min<std::size_t>(1, part.size()));
        const bool isNegative = part.starts_with('-');
        part.remove_prefix(isNegative || part.starts_with('+') ? 1 : 0);
        constexpr std::int64_t farEnough =
            100'000'000'000'000'000; // ten times it is an int64_t, too
        std::int64_t written = 0;
        for (const char digit : part) {
            written = std::min((written * 10) + (digit - '0'), farEnough);
        }
        m_exponent += isNegative ? -written : written;
        m_exponent = std::clamp(m_exponent, -furthestExponent, furthestExponent);
        append('e');
        char* const end = m_text.data() + m_text.size() - 1; // a 0 stays behind it
        std::to_chars(m_text.data() + m_length, end, m_exponent);
    }

    std::size_t m_digits = 0;    // written, from the first that is not 0
    std::int64_t m_exponent = 0; // of the last digit
    std::size_t m_length = 0;
    std::array<char, mostDigits + 12> m_text{}; // the sign, one more digit, "e-10000" and a 0
};

} // namespace

double convertedDecimal(std::string_view number) {
    return NumberWithoutPoint(number).value();
}

} // namespace quorvel
