// The text of a floating-point number in pieces, for the formatting engine alone.
#ifndef FOUNDATION_PLATFORM_RUNTIME_INTERNAL_FORMATFLOAT_H
#define FOUNDATION_PLATFORM_RUNTIME_INTERNAL_FORMATFLOAT_H

#include <array>
#include <cstddef>

namespace zelkor::platform::runtime {

// What stands between the sign (or 0x) and the end of a number. No number has more than 17 digits
// of its own; everything else is runs of zeros, which are counted and not stored. In order:
// integer digits, integer zeros, point, fraction zeros, fraction digits, trailing zeros, exponent.
struct FloatText {
    bool negative = false;
    bool hexadecimal = false;  // 0x goes before it
    bool point = false;
    std::array<char, 20> digits{};  // the integer digits, then the fraction digits
    std::size_t integer_digits = 0;
    std::size_t integer_zeros = 0;
    std::size_t fraction_zeros = 0;
    std::size_t fraction_digits = 0;
    std::size_t trailing_zeros = 0;
    std::array<char, 8> exponent{};
    std::size_t exponent_length = 0;

    [[nodiscard]] std::size_t Length() const noexcept {
        return integer_digits + integer_zeros + (point ? 1 : 0) + fraction_zeros + fraction_digits +
               trailing_zeros + exponent_length;
    }
};

// `letter` is one of e E f g G a A; a precision below 0 is the letter's own (6, and 13 for a and
// A); `alternate` keeps the point and the zeros at the end.
[[nodiscard]] FloatText DescribeFloat(double value, char letter, int precision,
                                      bool alternate) noexcept;

}  // namespace zelkor::platform::runtime

#endif
