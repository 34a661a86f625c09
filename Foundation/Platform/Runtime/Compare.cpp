#include <algorithm>
#include <cstring>
#include <string>
#include <type_traits>

#include "Foundation/Platform/Runtime.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace platform {
namespace {

template <typename Char>
unsigned Code(Char unit) noexcept {
    return static_cast<std::make_unsigned_t<Char>>(unit);
}
template <>
unsigned Code(char16_t unit) noexcept {
    return unit;
}

constexpr unsigned Lower(unsigned code) noexcept {
    return code - u'A' < 26u ? code + 32 : code;
}

int Sign(int value) noexcept {
    return (value > 0) - (value < 0);
}

// A count that no text reaches.
constexpr auto kUnbounded = static_cast<std::size_t>(-1);

template <typename Char>
int CompareUnits(const Char* a, const Char* b, std::size_t count) noexcept {
    for (; count != 0; --count, ++a, ++b) {
        if (*a != *b) return Code(*a) < Code(*b) ? -1 : 1;
        if (*a == 0) return 0;
    }
    return 0;
}

template <typename Char>
int CompareLowered(const Char* a, const Char* b, std::size_t count) noexcept {
    for (; count != 0; --count, ++a, ++b) {
        const unsigned left = Lower(Code(*a));
        const unsigned right = Lower(Code(*b));
        if (left != right) return static_cast<int>(left) - static_cast<int>(right);
        if (left == 0) return 0;
    }
    return 0;
}

// Units that two texts share from their start: whole blocks without a zero.
std::size_t EqualBlocks(const char16_t* a, const char16_t* b, std::size_t length) noexcept {
    std::size_t done = 0;
#if defined(__SSE2__)
    // The comparison is signed, so A is moved to the lowest signed number.
    const auto lower = [](const char16_t* units) {
        const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(units));
        const __m128i shifted = _mm_add_epi16(block, _mm_set1_epi16(0x8000 - u'A'));
        const __m128i letter = _mm_cmplt_epi16(shifted, _mm_set1_epi16(-0x8000 + 26));
        return _mm_add_epi16(block, _mm_and_si128(letter, _mm_set1_epi16(32)));
    };
    for (; length - done >= 8; done += 8) {
        const __m128i block = lower(a + done);
        const __m128i equal = _mm_cmpeq_epi16(block, lower(b + done));
        const __m128i zero = _mm_cmpeq_epi16(block, _mm_setzero_si128());
        if (_mm_movemask_epi8(_mm_andnot_si128(zero, equal)) != 0xFFFF) break;
    }
#else
    for (; length - done >= 4; done += 4) {
        bool same = true;
        for (std::size_t i = done; i < done + 4; ++i) {
            same = same && a[i] != 0 && ToLower(a[i]) == ToLower(b[i]);
        }
        if (!same) break;
    }
#endif
    return done;
}

}  // namespace

int CompareText(const char16_t* a, const char16_t* b) noexcept {
    return CompareUnits(a, b, kUnbounded);
}

int CompareText(const char* a, const char* b) noexcept {
    return Sign(std::strcmp(a, b));
}

int CompareText(const char16_t* a, const char16_t* b, std::size_t count) noexcept {
    return CompareUnits(a, b, count);
}

int CompareText(const char* a, const char* b, std::size_t count) noexcept {
    return Sign(std::strncmp(a, b, count));
}

int CompareNoCase(const char16_t* a, const char16_t* b) noexcept {
    return CompareLowered(a, b, kUnbounded);
}

int CompareNoCase(const char* a, const char* b) noexcept {
    return CompareLowered(a, b, kUnbounded);
}

int CompareNoCase(const char16_t* a, const char16_t* b, std::size_t count) noexcept {
    return CompareLowered(a, b, count);
}

int CompareNoCase(const char* a, const char* b, std::size_t count) noexcept {
    return CompareLowered(a, b, count);
}

int CompareNoCase(std::u16string_view a, std::u16string_view b) noexcept {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = EqualBlocks(a.data(), b.data(), common); i < common; ++i) {
        const int difference = ToLower(a[i]) - ToLower(b[i]);
        if (difference != 0) return difference;
        if (a[i] == 0) return 0;
    }
    if (a.size() > common) return ToLower(a[common]);
    return b.size() > common ? -ToLower(b[common]) : 0;
}

std::size_t TextLength(const char16_t* text) noexcept {
    return std::char_traits<char16_t>::length(text);
}

}  // namespace platform
