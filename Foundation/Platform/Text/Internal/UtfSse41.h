// Sixteen bytes at once with byte shuffles; for UtfSse41.cpp, and for UtfAvx2.cpp at the ends of
// texts. Included like UtfVector128.h.
#ifndef FOUNDATION_PLATFORM_TEXT_INTERNAL_UTFSSE41_H
#define FOUNDATION_PLATFORM_TEXT_INTERNAL_UTFSSE41_H

#include "Foundation/Platform/Text/Internal/UtfAscii.h"
#include "Foundation/Platform/Text/Internal/UtfTables.h"

namespace zelkor::platform::detail {
namespace {

struct VectorSse41 : Vector128 {
    using Half = VectorSse41;

    UTF_PART static Raw Select(Raw mask, Raw yes, Raw no) { return _mm_blendv_epi8(no, yes, mask); }
    UTF_PART static bool AnySet(Raw v) { return _mm_testz_si128(v, v) == 0; }
    UTF_PART static Raw Entry(const Shuffle& table) { return Load(table.data()); }
    UTF_PART static Raw LookUp(const Shuffle& table, Raw v) {
        return _mm_shuffle_epi8(Entry(table), v);
    }

    UTF_PART static Raw Errors(const Window<VectorSse41>& window) {
        const Raw half = Bytes(0x0F);
        const Raw pair = LookUp(kFirstHigh, Right<4>(window.lead) & half) &
                         LookUp(kFirstLow, window.lead & half) &
                         LookUp(kSecondHigh, Right<4>(window.second) & half);
        return pair ^ (SecondIsLaterTrail<VectorSse41>(window) & Bytes(0x80));
    }

    UTF_PART static char16_t* KeepEight(Raw units, std::uint32_t kept, char16_t* to) {
        Store(to, _mm_shuffle_epi8(units, Entry(kKeepUnits[kept])));
        return to + _mm_popcnt_u32(kept);
    }
    UTF_PART static char16_t* Keep(const PlacedUnits<VectorSse41>& placed, char16_t* to) {
        const std::uint32_t kept = TopBits(placed.kept);
        to = KeepEight(_mm_unpacklo_epi8(placed.low, placed.high), kept & 0xFF, to);
        return KeepEight(_mm_unpackhi_epi8(placed.low, placed.high), kept >> 8, to);
    }

    UTF_PART static char* JoinEight(Raw words, std::uint32_t one, char* to) {
        Store(to, _mm_shuffle_epi8(words, Entry(kJoinTwoBytes[one])));
        return to + (16 - _mm_popcnt_u32(one));
    }
    UTF_PART static char* JoinTwoBytes(Raw words, Raw one, char* to) {
        return JoinEight(words, TopBits(_mm_packs_epi16(one, Zero())), to);
    }

    UTF_PART static char* JoinFour(Raw characters, std::uint32_t codes, char* to) {
        Store(to, _mm_shuffle_epi8(characters, Entry(kJoinThreeBytes[codes])));
        return to + (12 - _mm_popcnt_u32(codes));
    }
    UTF_PART static char* JoinThreeBytes(const UnitBytes<VectorSse41>& bytes,
                                         const Sized<VectorSse41>& source, char* to) {
        const std::uint32_t codes = source.Codes();
        to = JoinFour(_mm_unpacklo_epi16(bytes.front, bytes.back), codes & 0xFF, to);
        return JoinFour(_mm_unpackhi_epi16(bytes.front, bytes.back), codes >> 8, to);
    }
};

}  // namespace
}  // namespace zelkor::platform::detail

#endif
