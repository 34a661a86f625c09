#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

#include "Foundation/Platform/Runtime.h"

namespace zelkor::platform {
namespace {

// The zeros of the decimal digits of other scripts; nine digits follow each.
constexpr auto kZeros =
    std::to_array<char16_t>({0x0660, 0x06F0, 0x0966, 0x09E6, 0x0A66, 0x0AE6, 0x0B66, 0x0C66, 0x0CE6,
                             0x0D66, 0x0E50, 0x0ED0, 0x0F20, 0x1040, 0x17E0, 0x1810, 0xFF10});
static_assert(std::ranges::is_sorted(kZeros));

constexpr unsigned kNoDigit = 36;

// The value of a digit in any base up to 36, or kNoDigit.
unsigned DigitValue(char16_t unit) noexcept {
    if (unit < 0x80) {
        if (unit >= u'0' && unit <= u'9') return unit - u'0';
        const char16_t lower = ToLower(unit);
        return lower >= u'a' && lower <= u'z' ? lower - u'a' + 10u : kNoDigit;
    }
    const auto above = std::ranges::upper_bound(kZeros, unit);
    if (above == kZeros.begin()) return kNoDigit;
    const auto value = static_cast<unsigned>(unit - *(above - 1));
    return value < 10 ? value : kNoDigit;
}

unsigned DigitValue(char byte) noexcept {
    return DigitValue(static_cast<char16_t>(static_cast<unsigned char>(byte)));
}

template <typename Char>
std::size_t SkipSpace(const Char* text) noexcept {
    std::size_t at = 0;
    while (IsSpace(text[at])) ++at;
    return at;
}

template <typename Char>
bool SkipSign(const Char* text, std::size_t& at) noexcept {
    const bool negative = text[at] == '-';
    if (negative || text[at] == '+') ++at;
    return negative;
}

template <typename Number>
struct Integer {
    Number value = 0;
    std::size_t consumed = 0;
    bool out_of_range = false;
};

// Passes over the mark of base 16 when a digit follows it, and settles base 0.
template <typename Char>
unsigned Base(const Char* text, std::size_t& at, int base) noexcept {
    const bool marked = text[at] == '0' && (text[at + 1] == 'x' || text[at + 1] == 'X') &&
                        DigitValue(text[at + 2]) < 16;
    if (marked && (base == 0 || base == 16)) {
        at += 2;
        return 16;
    }
    if (base == 0) return text[at] == '0' ? 8 : 10;
    return static_cast<unsigned>(base);
}

template <typename Number, typename Char>
Integer<Number> Read(const Char* text, int requested_base) noexcept {
    using Limits = std::numeric_limits<Number>;
    Integer<Number> result;
    if (requested_base < 0 || requested_base == 1 || requested_base > 36) return result;
    std::size_t at = SkipSpace(text);
    const bool negative = SkipSign(text, at);
    const unsigned base = Base(text, at, requested_base);
    const std::size_t first = at;
    const auto limit = static_cast<std::uint64_t>(Limits::max()) + (negative ? 1 : 0);
    std::uint64_t magnitude = 0;
    for (unsigned digit; (digit = DigitValue(text[at])) < base; ++at) {
        if (magnitude > (limit - digit) / base)
            result.out_of_range = true;
        else
            magnitude = magnitude * base + digit;
    }
    if (at == first) return result;
    if (result.out_of_range) magnitude = limit;
    result.value = static_cast<Number>(negative ? 0 - magnitude : magnitude);
    result.consumed = at;
    return result;
}

template <typename Char>
ReadNumber ReadLongOf(const Char* text, int base) noexcept {
    const auto [value, consumed, out_of_range] = Read<std::int32_t>(text, base);
    return {value, consumed, out_of_range};
}

// The digits of a decimal number with its period left out, as the number parser of the standard
// library takes them: as many as can matter to a double, the power of ten behind an e.
class Significand {
public:
    // A digit before the period, or behind it.
    void Add(char digit, bool fraction) noexcept {
        if (fraction) --exponent_;
        if (digit == '0' && length_ == 0) return;
        if (length_ < kMost) {
            text_[length_++] = digit;
            return;
        }
        ++exponent_;
        // What is cut off tells the number from a midpoint between two doubles.
        if (digit != '0') text_[kMost - 1] = '1';
    }
    [[nodiscard]] double Value(std::int64_t exponent) noexcept {
        if (length_ == 0) return 0;
        exponent += exponent_;
        const std::int64_t magnitude = exponent + static_cast<std::int64_t>(length_);
        if (magnitude > 400) return std::numeric_limits<double>::infinity();
        if (magnitude < -400) return 0;
        char* end = text_.data() + length_;
        *end++ = 'e';
        end = std::to_chars(end, text_.data() + text_.size(), exponent).ptr;
        double value = 0;
        const auto read = std::from_chars(text_.data(), end, value);
        if (read.ec == std::errc()) return value;
        return magnitude > 0 ? std::numeric_limits<double>::infinity() : 0;
    }

private:
    static constexpr std::size_t kMost = 780;  // more than a midpoint has: 768
    std::array<char, kMost + 24> text_;
    std::size_t length_ = 0;
    std::int64_t exponent_ = 0;
};

template <typename Char>
bool IsDecimal(Char unit) noexcept {
    return unit >= '0' && unit <= '9';
}

// The exponent at `at` with its letter; passes over it only when it has a digit.
template <typename Char>
std::int64_t ReadExponent(const Char* text, std::size_t& at) noexcept {
    const auto letter = ToLower(text[at]);
    if (letter != 'e' && letter != 'd') return 0;
    std::size_t digit = at + 1;
    const bool negative = SkipSign(text, digit);
    if (!IsDecimal(text[digit])) return 0;
    constexpr std::int64_t kBeyondAnyText = std::int64_t{1} << 60;
    std::int64_t exponent = 0;
    for (; IsDecimal(text[digit]); ++digit) {
        exponent = std::min(exponent * 10 + (text[digit] - '0'), kBeyondAnyText / 10);
    }
    at = digit;
    return negative ? -exponent : exponent;
}

template <typename Char>
ReadReal ReadDoubleOf(const Char* text) noexcept {
    std::size_t at = SkipSpace(text);
    const bool negative = SkipSign(text, at);
    Significand significand;
    bool any = false;
    bool fraction = false;
    for (;; ++at) {
        if (IsDecimal(text[at])) {
            any = true;
            significand.Add(static_cast<char>(text[at]), fraction);
        } else if (text[at] == '.' && !fraction) {
            fraction = true;
        } else {
            break;
        }
    }
    if (!any) return {0, 0};
    const double value = significand.Value(ReadExponent(text, at));
    return {negative ? -value : value, at};
}

}  // namespace

std::int32_t ReadInteger(const char16_t* text) noexcept {
    return Read<std::int32_t>(text, 10).value;
}

std::int32_t ReadInteger(const char* text) noexcept {
    return Read<std::int32_t>(text, 10).value;
}

std::int64_t ReadInteger64(const char16_t* text) noexcept {
    return Read<std::int64_t>(text, 10).value;
}

std::int64_t ReadInteger64(const char* text) noexcept {
    return Read<std::int64_t>(text, 10).value;
}

ReadNumber ReadLong(const char16_t* text, int base) noexcept {
    return ReadLongOf(text, base);
}

ReadNumber ReadLong(const char* text, int base) noexcept {
    return ReadLongOf(text, base);
}

ReadReal ReadDouble(const char16_t* text) noexcept {
    return ReadDoubleOf(text);
}

ReadReal ReadDouble(const char* text) noexcept {
    return ReadDoubleOf(text);
}

}  // namespace zelkor::platform
