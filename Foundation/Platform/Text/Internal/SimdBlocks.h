// Sixteen-byte blocks for the table pages: loads, stores, widening. FOUNDATION_SSE2 is 1 where the
// processor has them; the table pages go character by character elsewhere, with the same answers.
#ifndef FOUNDATION_PLATFORM_TEXT_INTERNAL_SIMDBLOCKS_H
#define FOUNDATION_PLATFORM_TEXT_INTERNAL_SIMDBLOCKS_H

#include <cstddef>

#if defined(__SSE2__) || defined(_M_X64)
#define FOUNDATION_SSE2 1
#include <emmintrin.h>
#else
#define FOUNDATION_SSE2 0
#endif

namespace zelkor::platform::nls {

inline constexpr std::size_t kBlock = 16;  // bytes

#if FOUNDATION_SSE2

inline __m128i LoadBlock(const void* from) noexcept {
    return _mm_loadu_si128(static_cast<const __m128i*>(from));
}
inline void StoreBlock(__m128i block, void* to) noexcept {
    _mm_storeu_si128(static_cast<__m128i*>(to), block);
}

// Writes the 16 bytes as 16 units.
inline void StoreWidened(__m128i bytes, char16_t* to) noexcept {
    const __m128i zero = _mm_setzero_si128();
    StoreBlock(_mm_unpacklo_epi8(bytes, zero), to);
    StoreBlock(_mm_unpackhi_epi8(bytes, zero), to + kBlock / 2);
}

#endif

}  // namespace zelkor::platform::nls

#endif
