#include "Foundation/Platform/Nls/UnitMaps.h"

#include <bit>

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

// A map for eight units at a time.
class BlockMap {
public:
    explicit BlockMap(const UnitMap& map)
        : ascii_mask_(Fill(map.ascii ? 0xFF80 : 0xFFFF)),
          quiet_bias_(Fill(0x8000 - map.quiet)),
          quiet_end_(Fill(0x8000 - map.quiet + 0xD800)),
          below_(Fill(map.first - 1)),
          above_(Fill(map.last + 1)),
          difference_(Fill(map.difference)) {}

    // Whether the range rule holds for all units: each is ASCII (without that rule, zero) or quiet.
    // Quiet units are never in the range: they are above it or, as signed numbers, negative.
    [[nodiscard]] bool ArePlain(__m128i units) const {
        const __m128i ascii =
            _mm_cmpeq_epi16(_mm_and_si128(units, ascii_mask_), _mm_setzero_si128());
        const __m128i quiet = _mm_cmplt_epi16(_mm_add_epi16(units, quiet_bias_), quiet_end_);
        return _mm_movemask_epi8(_mm_or_si128(ascii, quiet)) == 0xFFFF;
    }
    [[nodiscard]] __m128i InRange(__m128i plain) const {
        return _mm_and_si128(_mm_cmpgt_epi16(plain, below_), _mm_cmplt_epi16(plain, above_));
    }
    [[nodiscard]] __m128i Mapped(__m128i plain) const {
        return _mm_add_epi16(plain, _mm_and_si128(InRange(plain), difference_));
    }

private:
    __m128i ascii_mask_, quiet_bias_, quiet_end_, below_, above_, difference_;
};

bool Any(__m128i mask) {
    return _mm_movemask_epi8(mask) != 0;
}

bool HoldHighSurrogate(__m128i units) {
    return Any(_mm_cmpeq_epi16(_mm_and_si128(units, Fill(0xFC00)), Fill(0xD800)));
}

#endif

}  // namespace

std::size_t FindMapped(const char16_t* text, std::size_t from, std::size_t length,
                       const UnitMap& map) noexcept {
    std::size_t i = from;
    // Whether a unit before `stop` is changed; `i` is then the first.
    const auto find_until = [&](std::size_t stop) {
        for (; i < stop; ++i) {
            if (IsHighSurrogate(text[i])) {
                ++i;
            } else if (map.Difference(text[i]) != 0) {
                return true;
            }
        }
        return false;
    };
#if FOUNDATION_SSE2
    const BlockMap blocks(map);
    while (i + kUnits <= length) {
        const __m128i units = LoadBlock(text + i);
        if (blocks.ArePlain(units)) {
            if (Any(blocks.InRange(units))) break;
            i += kUnits;
        } else if (HoldHighSurrogate(units)) {
            if (find_until(i + kUnits)) return i;
        } else {
            unsigned int changed = 0;  // a bit for each unit
            for (unsigned int unit = 0; unit < kUnits; ++unit) {
                changed |= (map.Difference(text[i + unit]) != 0 ? 1U : 0U) << unit;
            }
            if (changed != 0) return i + static_cast<std::size_t>(std::countr_zero(changed));
            i += kUnits;
        }
    }
#endif
    return find_until(length) ? i : length;
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
    const BlockMap blocks(map);
    while (i + kUnits <= length) {
        const __m128i units = LoadBlock(text + i);
        if (blocks.ArePlain(units)) {
            StoreBlock(blocks.Mapped(units), text + i);
            i += kUnits;
        } else if (HoldHighSurrogate(units)) {
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
