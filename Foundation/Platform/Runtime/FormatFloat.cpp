#include "Foundation/Platform/Runtime/Internal/FormatFloat.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>

namespace zelkor::platform::runtime {
namespace {

// Significant digits that tell any two doubles apart; the runtime knows no more than these.
constexpr int kDigits = 17;
constexpr int kMantissaBits = 52;
constexpr int kMantissaDigits = kMantissaBits / 4;

// d.ddd... times 10 to the power `exponent`; digits from `count` on are 0.
struct Decimal {
    std::array<char, kDigits> digits{};
    int count = 0;
    int exponent = 0;
};

// The 17 digits of a finite number other than 0.
Decimal Digits(double value) noexcept {
    std::array<char, kDigits + 8> text;  // d.dddddddddddddddde-308
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                   std::chars_format::scientific, kDigits - 1)
                         .ptr;
    Decimal decimal;
    decimal.digits[0] = text[0];
    std::copy_n(text.data() + 2, kDigits - 1, decimal.digits.data() + 1);
    const char* exponent = text.data() + kDigits + 2;  // behind the e
    if (*exponent == '+') ++exponent;                  // which from_chars does not take
    std::from_chars(exponent, end, decimal.exponent);
    decimal.count = kDigits;
    return decimal;
}

// Rounds half up to `wanted` digits; with none left the number is 0 (count 0).
void Round(Decimal& decimal, std::int64_t wanted) noexcept {
    if (wanted >= decimal.count) return;
    if (wanted < 0) {
        decimal.count = 0;
        return;
    }
    int kept = static_cast<int>(wanted);
    const bool up = decimal.digits[static_cast<std::size_t>(kept)] >= '5';
    decimal.count = kept;
    if (!up) return;
    while (kept > 0 && decimal.digits[static_cast<std::size_t>(kept - 1)] == '9') --kept;
    if (kept == 0) {  // all nines: the next power of ten
        decimal.digits[0] = '1';
        decimal.count = 1;
        ++decimal.exponent;
        return;
    }
    ++decimal.digits[static_cast<std::size_t>(kept - 1)];
    decimal.count = kept;  // the nines behind it became zeros
}

void SetExponent(FloatText& text, char letter, int exponent, int least_digits) noexcept {
    char* out = text.exponent.data();
    *out++ = letter;
    *out++ = exponent < 0 ? '-' : '+';
    const int magnitude = exponent < 0 ? -exponent : exponent;
    for (int limit = 10, digits = 1; digits < least_digits; ++digits, limit *= 10) {
        if (magnitude < limit) *out++ = '0';
    }
    out = std::to_chars(out, text.exponent.data() + text.exponent.size(), magnitude).ptr;
    text.exponent_length = static_cast<std::size_t>(out - text.exponent.data());
}

void LayOutFixed(FloatText& text, const Decimal& decimal, std::int64_t precision) noexcept {
    std::ranges::copy(decimal.digits, text.digits.begin());
    std::int64_t integer = 0;
    std::int64_t gap = 0;  // zeros between the point and the first digit
    if (decimal.count > 0 && decimal.exponent >= 0) {
        integer = std::min<std::int64_t>(decimal.count, decimal.exponent + 1);
        text.integer_zeros = static_cast<std::size_t>(decimal.exponent + 1 - integer);
    } else {
        text.integer_zeros = 1;
        if (decimal.count > 0) gap = std::min<std::int64_t>(-decimal.exponent - 1, precision);
    }
    const std::int64_t fraction = std::min<std::int64_t>(decimal.count - integer, precision - gap);
    text.integer_digits = static_cast<std::size_t>(integer);
    text.fraction_zeros = static_cast<std::size_t>(gap);
    text.fraction_digits = static_cast<std::size_t>(fraction);
    text.trailing_zeros = static_cast<std::size_t>(precision - gap - fraction);
}

void LayOutScientific(FloatText& text, const Decimal& decimal, std::int64_t precision,
                      char letter) noexcept {
    std::ranges::copy(decimal.digits, text.digits.begin());
    text.integer_digits = decimal.count > 0 ? 1 : 0;
    text.integer_zeros = 1 - text.integer_digits;
    const std::int64_t fraction = std::max(decimal.count - 1, 0);
    text.fraction_digits = static_cast<std::size_t>(fraction);
    text.trailing_zeros = static_cast<std::size_t>(precision - fraction);
    SetExponent(text, letter, decimal.exponent, 3);
}

void StripZeros(FloatText& text) noexcept {
    text.trailing_zeros = 0;
    const char* fraction = text.digits.data() + text.integer_digits;
    while (text.fraction_digits > 0 && fraction[text.fraction_digits - 1] == '0') {
        --text.fraction_digits;
    }
    if (text.fraction_digits == 0) {
        text.fraction_zeros = 0;
        text.point = false;
    }
}

// Infinity and not-a-number take the place of digits: 1.#INF and so on.
void Special(FloatText& text, double value, char letter, std::int64_t precision) noexcept {
    constexpr std::uint64_t kPayload = (std::uint64_t{1} << (kMantissaBits - 1)) - 1;
    const auto bits = std::bit_cast<std::uint64_t>(value);
    std::string_view name = "1#QNAN";
    if (std::isinf(value)) {
        name = "1#INF";
    } else if (text.negative && (bits & kPayload) == 0) {
        name = "1#IND";  // what invalid operations make
    }
    std::ranges::copy(name, text.digits.begin());
    text.integer_digits = 1;
    text.fraction_digits = name.size() - 1;
    text.point = true;
    const bool general = letter == 'g' || letter == 'G';
    const auto fraction = static_cast<std::int64_t>(text.fraction_digits);
    if (!general && precision > fraction) {
        text.trailing_zeros = static_cast<std::size_t>(precision - fraction);
    }
    if (letter == 'e' || letter == 'E') SetExponent(text, letter, 0, 3);
}

void Hexadecimal(FloatText& text, double value, bool upper, int precision) noexcept {
    constexpr std::uint64_t kMantissa = (std::uint64_t{1} << kMantissaBits) - 1;
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const int biased = static_cast<int>(bits >> kMantissaBits & 0x7FF);
    const bool subnormal = biased == 0;
    std::uint64_t mantissa = bits & kMantissa;
    int exponent = biased - 1023;
    if (subnormal) exponent = mantissa == 0 ? 0 : -1022;
    if (!subnormal) mantissa |= std::uint64_t{1} << kMantissaBits;
    if (precision < kMantissaDigits) {
        mantissa += std::uint64_t{1} << (4 * (kMantissaDigits - precision) - 1);
    }
    const char* const names = upper ? "0123456789ABCDEF" : "0123456789abcdef";
    for (std::size_t i = 0; i <= kMantissaDigits; ++i) {
        text.digits[i] = names[mantissa >> (kMantissaBits - 4 * i) & 0xF];
    }
    const int fraction = std::min(precision, kMantissaDigits);
    text.hexadecimal = true;
    text.integer_digits = 1;
    text.fraction_digits = static_cast<std::size_t>(fraction);
    text.trailing_zeros = static_cast<std::size_t>(precision - fraction);
    SetExponent(text, upper ? 'P' : 'p', exponent, 1);
}

}  // namespace

FloatText DescribeFloat(double value, char letter, int precision, bool alternate) noexcept {
    const bool hexadecimal = letter == 'a' || letter == 'A';
    if (precision < 0) precision = hexadecimal ? kMantissaDigits : 6;
    FloatText text;
    text.negative = std::signbit(value);
    text.point = precision > 0 || alternate;
    if (!std::isfinite(value)) {
        Special(text, value, letter, precision);
        return text;
    }
    if (hexadecimal) {
        Hexadecimal(text, value, letter == 'A', precision);
        return text;
    }
    Decimal decimal;
    if (value != 0) decimal = Digits(std::fabs(value));
    if (letter == 'f') {
        Round(decimal, std::int64_t{decimal.exponent} + 1 + precision);
        LayOutFixed(text, decimal, precision);
    } else if (letter == 'e' || letter == 'E') {
        Round(decimal, std::int64_t{precision} + 1);
        LayOutScientific(text, decimal, precision, letter);
    } else {
        if (precision == 0) precision = 1;
        text.point = true;  // StripZeros takes it back where nothing stands behind it
        Round(decimal, precision);
        if (decimal.exponent < -4 || decimal.exponent >= precision) {
            LayOutScientific(text, decimal, precision - 1, letter == 'G' ? 'E' : 'e');
        } else {
            LayOutFixed(text, decimal, std::int64_t{precision} - 1 - decimal.exponent);
        }
        if (!alternate) StripZeros(text);
    }
    return text;
}

}  // namespace zelkor::platform::runtime
