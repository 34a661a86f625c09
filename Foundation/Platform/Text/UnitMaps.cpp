#include "Foundation/Platform/Text/UnitMaps.h"

#include <bit>

#include "Foundation/Platform/Text/Internal/SimdBlocks.h"

namespace zelkor::platform {

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

// Which of eight units lie in a range. Comparisons know numbers with sign only, so the range is
// shifted to the lowest of these.
class Within {
public:
    Within(int first, int last) : shift_(Fill(0x8000 - first)), end_(Fill(0x8001 + last - first)) {}

    __m128i operator()(__m128i units) const {
        return _mm_cmplt_epi16(_mm_add_epi16(units, shift_), end_);
    }

private:
    __m128i shift_, end_;
};

// A map for eight units that its ranges alone decide.
class RangeMap {
public:
    explicit RangeMap(const UnitMap& map)
        : plain_(0, map.plain - 1),
          quiet_(map.quiet, 0xD7FF),
          ranges_{Within(map.ranges[0].first, map.ranges[0].last),
                  Within(map.ranges[1].first, map.ranges[1].last),
                  Within(map.ranges[2].first, map.ranges[2].last)},
          differences_{Fill(map.ranges[0].difference), Fill(map.ranges[1].difference),
                       Fill(map.ranges[2].difference)} {}

    [[nodiscard]] bool Decides(__m128i units) const {
        return All(_mm_or_si128(plain_(units), quiet_(units)));
    }
    [[nodiscard]] __m128i Differences(__m128i units) const {
        return _mm_or_si128(Part(0, units), _mm_or_si128(Part(1, units), Part(2, units)));
    }

private:
    [[nodiscard]] __m128i Part(int range, __m128i units) const {
        return _mm_and_si128(ranges_[range](units), differences_[range]);
    }

    Within plain_, quiet_;
    Within ranges_[3];
    __m128i differences_[3];
};

bool HoldHighSurrogate(__m128i units) {
    const __m128i high = _mm_cmpeq_epi16(_mm_and_si128(units, Fill(0xFC00)), Fill(0xD800));
    return _mm_movemask_epi8(high) != 0;
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
    const RangeMap ranges(map);
    while (i + kUnits <= length) {
        const __m128i units = LoadBlock(text + i);
        if (ranges.Decides(units)) {
            if (!All(_mm_cmpeq_epi16(ranges.Differences(units), _mm_setzero_si128()))) break;
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
    const RangeMap ranges(map);
    while (i + kUnits <= length) {
        const __m128i units = LoadBlock(text + i);
        if (ranges.Decides(units)) {
            StoreBlock(_mm_add_epi16(units, ranges.Differences(units)), text + i);
            i += kUnits;
        } else if (HoldHighSurrogate(units)) {
            map_until(i + kUnits);
        } else {
            // By way of a block of its own: a store to the text might be one to the tables.
            char16_t mapped[kUnits];
            for (std::size_t unit = 0; unit < kUnits; ++unit) mapped[unit] = map(text[i + unit]);
            StoreBlock(LoadBlock(mapped), text + i);
            i += kUnits;
        }
    }
#endif
    map_until(length);
}

}  // namespace zelkor::platform
