#include "Foundation/Platform/Text/LineEnd.h"

#include <bit>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace zelkor::platform {

namespace {

constexpr char16_t kCarriageReturn = 13;
constexpr char16_t kLineFeed = 10;

#if defined(__SSE2__)

constexpr std::size_t kUnitsPerStep = 16;

// 0xFFFF for each of the eight units that is a line end.
__m128i LineEnds(const char16_t* text) {
    const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
    const __m128i returns = _mm_cmpeq_epi16(units, _mm_set1_epi16(kCarriageReturn));
    const __m128i feeds = _mm_cmpeq_epi16(units, _mm_set1_epi16(kLineFeed));
    return _mm_or_si128(returns, feeds);
}

// One bit per unit of the sixteen at `text`, set for line ends.
unsigned int LineEndBits(const char16_t* text) {
    return static_cast<unsigned int>(
        _mm_movemask_epi8(_mm_packs_epi16(LineEnds(text), LineEnds(text + kUnitsPerStep / 2))));
}

#endif

}  // namespace

std::size_t FindLineEnd(const char16_t* text, std::size_t length) noexcept {
    std::size_t i = 0;
#if defined(__SSE2__)
    for (; i + kUnitsPerStep <= length; i += kUnitsPerStep) {
        const unsigned int bits = LineEndBits(text + i);
        if (bits != 0) return i + static_cast<std::size_t>(std::countr_zero(bits));
    }
#endif
    while (i < length && text[i] != kCarriageReturn && text[i] != kLineFeed) ++i;
    return i;
}

}  // namespace zelkor::platform
