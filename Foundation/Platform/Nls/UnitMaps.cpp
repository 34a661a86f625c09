#include "Foundation/Platform/Nls/UnitMaps.h"

#include "Foundation/Platform/Nls/SimdBlocks.h"

namespace platform {

namespace {

constexpr bool IsHighSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}

#if FOUNDATION_SSE2

using nls::LoadBlock;
using nls::StoreBlock;

constexpr std::size_t kUnits = nls::kBlock / sizeof(char16_t);

__m128i Fill(int value) {
    return _mm_set1_epi16(static_cast<short>(value));
}

bool All(__m128i mask) {
    return _mm_movemask_epi8(mask) == 0xFFFF;
}
bool Any(__m128i mask) {
    return _mm_movemask_epi8(mask) != 0;
}

// What eight units tell the map.
class Blocks {
public:
    explicit Blocks(const UnitMap& map)
        : ascii_mask_(Fill(map.ascii ? 0xFF80 : 0xFFFF)),
          below_(Fill(map.first - 1)),
          above_(Fill(map.last + 1)),
          difference_(Fill(map.ascii_difference)) {}

    // Whether the range rule holds for all units. A map without it takes zeros alone for ASCII,
    // which its range leaves as they are.
    [[nodiscard]] bool AreAscii(__m128i units) const {
        return All(_mm_cmpeq_epi16(_mm_and_si128(units, ascii_mask_), _mm_setzero_si128()));
    }
    [[nodiscard]] __m128i InRange(__m128i ascii) const {
        return _mm_and_si128(_mm_cmpgt_epi16(ascii, below_), _mm_cmplt_epi16(ascii, above_));
    }
    [[nodiscard]] __m128i Mapped(__m128i ascii) const {
        return _mm_add_epi16(ascii, _mm_and_si128(InRange(ascii), difference_));
    }
    [[nodiscard]] static bool HoldHighSurrogate(__m128i units) {
        return Any(_mm_cmpeq_epi16(_mm_and_si128(units, Fill(0xFC00)), Fill(0xD800)));
    }

private:
    __m128i ascii_mask_, below_, above_, difference_;
};

#endif

}  // namespace

std::size_t FindMapped(const char16_t* text, std::size_t from, std::size_t length,
                       const UnitMap& map) noexcept {
    std::size_t i = from;
    while (i < length) {
#if FOUNDATION_SSE2
        const Blocks blocks(map);
        while (i + kUnits <= length) {
            const __m128i units = LoadBlock(text + i);
            if (!blocks.AreAscii(units) || Any(blocks.InRange(units))) break;
            i += kUnits;
        }
        const std::size_t stop = i + kUnits < length ? i + kUnits : length;
#else
        const std::size_t stop = length;
#endif
        for (; i < stop; ++i) {
            if (IsHighSurrogate(text[i])) {
                ++i;
            } else if (map(text[i]) != text[i]) {
                return i;
            }
        }
    }
    return length;
}

void MapUnits(char16_t* text, std::size_t from, std::size_t length, const UnitMap& map) noexcept {
    std::size_t i = from;
    const auto map_until = [&](std::size_t stop) {
        for (; i < stop; ++i) {
            if (IsHighSurrogate(text[i])) {
                ++i;
            } else {
                text[i] = map(text[i]);
            }
        }
    };
#if FOUNDATION_SSE2
    const Blocks blocks(map);
    while (i + kUnits <= length) {
        const __m128i units = LoadBlock(text + i);
        if (blocks.AreAscii(units)) {
            StoreBlock(blocks.Mapped(units), text + i);
            i += kUnits;
        } else if (Blocks::HoldHighSurrogate(units)) {
            map_until(i + kUnits);
        } else {
            for (std::size_t unit = i; unit < i + kUnits; ++unit) text[unit] = map(text[unit]);
            i += kUnits;
        }
    }
#endif
    map_until(length);
}

}  // namespace platform
