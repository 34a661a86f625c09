#include <algorithm>
#include <bit>
#include <cstring>
#include <string>
#include <type_traits>

#include "Foundation/Platform/Runtime.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace zelkor::platform {
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

#if defined(__SSE2__)

__m128i Load(const void* units) noexcept {
    return _mm_loadu_si128(static_cast<const __m128i*>(units));
}

// The letters of a block in lower case. Comparisons are signed, so A is moved to the lowest number.
__m128i Lowered(__m128i block, char16_t) noexcept {
    const __m128i shifted = _mm_add_epi16(block, _mm_set1_epi16(0x8000 - u'A'));
    const __m128i letter = _mm_cmplt_epi16(shifted, _mm_set1_epi16(-0x8000 + 26));
    return _mm_add_epi16(block, _mm_and_si128(letter, _mm_set1_epi16(32)));
}
__m128i Lowered(__m128i block, char) noexcept {
    const __m128i shifted = _mm_add_epi8(block, _mm_set1_epi8(static_cast<char>(0x80 - 'A')));
    const __m128i letter = _mm_cmplt_epi8(shifted, _mm_set1_epi8(-0x80 + 26));
    return _mm_add_epi8(block, _mm_and_si128(letter, _mm_set1_epi8(32)));
}
__m128i Equal(__m128i a, __m128i b, char16_t) noexcept {
    return _mm_cmpeq_epi16(a, b);
}
__m128i Equal(__m128i a, __m128i b, char) noexcept {
    return _mm_cmpeq_epi8(a, b);
}

// A bit for each byte of two blocks whose units are the same but for case, and not zero.
template <typename Char>
unsigned SameBytes(const Char* a, const Char* b) noexcept {
    const __m128i block = Lowered(Load(a), Char{});
    const __m128i equal = Equal(block, Lowered(Load(b), Char{}), Char{});
    const __m128i zero = Equal(block, _mm_setzero_si128(), Char{});
    return static_cast<unsigned>(_mm_movemask_epi8(_mm_andnot_si128(zero, equal)));
}

#endif

// Index of the first place, at most `length`, where the two differ in more than case or where both
// are zero.
template <typename Char>
std::size_t CommonNoCase(const Char* a, const Char* b, std::size_t length) noexcept {
    std::size_t done = 0;
#if defined(__SSE2__)
    constexpr std::size_t kBlock = 16 / sizeof(Char);
    while (length - done >= kBlock) {
        const unsigned same = SameBytes(a + done, b + done);
        if (same != 0xFFFF)
            return done + static_cast<std::size_t>(std::countr_one(same)) / sizeof(Char);
        done += kBlock;
        // The last block reaches back over units that are known to be the same.
        if (done < length && length - done < kBlock) done = length - kBlock;
    }
#endif
    while (done < length && a[done] != 0 && Lower(Code(a[done])) == Lower(Code(b[done]))) ++done;
    return done;
}

template <typename Char>
int DifferenceAt(const Char* a, const Char* b, std::size_t at) noexcept {
    return static_cast<int>(Lower(Code(a[at]))) - static_cast<int>(Lower(Code(b[at])));
}

template <typename Char>
int CompareViews(std::basic_string_view<Char> a, std::basic_string_view<Char> b) noexcept {
    const std::size_t common = std::min(a.size(), b.size());
    const std::size_t at = CommonNoCase(a.data(), b.data(), common);
    if (at < common) return DifferenceAt(a.data(), b.data(), at);
    if (a.size() > common) return static_cast<int>(Lower(Code(a[common])));
    return b.size() > common ? -static_cast<int>(Lower(Code(b[common]))) : 0;
}

// Units up to and with the zero, at most `most`.
std::size_t LengthWithZero(const char* text, std::size_t most) noexcept {
    const void* const zero = std::memchr(text, 0, most);
    return zero != nullptr ? static_cast<std::size_t>(static_cast<const char*>(zero) - text) + 1
                           : most;
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

// Most texts differ early; of those that do not, ever longer pieces are measured and compared.
int CompareNoCase(const char* a, const char* b) noexcept {
    for (std::size_t i = 0; i < 8; ++i) {
        const int difference = DifferenceAt(a, b, i);
        if (difference != 0 || a[i] == 0) return difference;
    }
    std::size_t start = 8;
    for (std::size_t most = 64;; most *= 2) {
        const std::size_t length = LengthWithZero(b + start, LengthWithZero(a + start, most));
        const std::size_t at = CommonNoCase(a + start, b + start, length);
        if (at < length) return DifferenceAt(a + start, b + start, at);
        start += length;
    }
}

int CompareNoCase(const char16_t* a, const char16_t* b, std::size_t count) noexcept {
    return CompareLowered(a, b, count);
}

int CompareNoCase(const char* a, const char* b, std::size_t count) noexcept {
    return CompareLowered(a, b, count);
}

int CompareNoCase(std::u16string_view a, std::u16string_view b) noexcept {
    return CompareViews(a, b);
}

int CompareNoCase(std::string_view a, std::string_view b) noexcept {
    return CompareViews(a, b);
}

std::size_t TextLength(const char16_t* text) noexcept {
    return std::char_traits<char16_t>::length(text);
}

}  // namespace zelkor::platform
