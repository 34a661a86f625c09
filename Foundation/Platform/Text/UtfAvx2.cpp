// The kernels for processors with AVX2: thirty-two bytes at once.
#define UTF_INSTRUCTIONS "avx2,bmi,popcnt"

#include "Foundation/Platform/Text/Internal/UtfSse41.h"

namespace zelkor::platform::detail {
namespace {

struct Vector256 {
    using Raw = __m256i;
    using Half = VectorSse41;
    static constexpr std::size_t kBytes = 32;
    static constexpr std::size_t kUnits = 16;
    static constexpr std::uint32_t kAllBits = 0xFFFFFFFF;

    UTF_PART static Raw Load(const void* from) {
        return _mm256_loadu_si256(static_cast<const Raw*>(from));
    }
    UTF_PART static void Store(void* to, Raw v) { _mm256_storeu_si256(static_cast<Raw*>(to), v); }
    UTF_PART static Raw Bytes(int value) { return _mm256_set1_epi8(static_cast<char>(value)); }
    UTF_PART static Raw Units(int value) { return _mm256_set1_epi16(static_cast<short>(value)); }
    UTF_PART static Raw Zero() { return _mm256_setzero_si256(); }

    UTF_PART static Raw EqualBytes(Raw a, Raw b) { return _mm256_cmpeq_epi8(a, b); }
    UTF_PART static Raw EqualUnits(Raw a, Raw b) { return _mm256_cmpeq_epi16(a, b); }
    UTF_PART static Raw SignedLess(Raw a, Raw b) { return _mm256_cmpgt_epi8(b, a); }
    UTF_PART static Raw Largest(Raw a, Raw b) { return _mm256_max_epu8(a, b); }
    UTF_PART static Raw AddBytes(Raw a, Raw b) { return _mm256_add_epi8(a, b); }
    UTF_PART static Raw AddUnits(Raw a, Raw b) { return _mm256_add_epi16(a, b); }
    UTF_PART static Raw LessOrZero(Raw v, int value) { return _mm256_subs_epu8(v, Bytes(value)); }
    template <int count>
    UTF_PART static Raw Left(Raw v) {
        return _mm256_slli_epi16(v, count);
    }
    template <int count>
    UTF_PART static Raw Right(Raw v) {
        return _mm256_srli_epi16(v, count);
    }
    UTF_PART static Raw UnitsBefore(Raw v) {
        const Raw zero_and_lower = _mm256_permute2x128_si256(v, v, 0x08);
        return _mm256_alignr_epi8(v, zero_and_lower, 14);
    }
    UTF_PART static Raw Select(Raw mask, Raw yes, Raw no) {
        return _mm256_blendv_epi8(no, yes, mask);
    }
    UTF_PART static std::uint32_t TopBits(Raw v) {
        return static_cast<std::uint32_t>(_mm256_movemask_epi8(v));
    }
    UTF_PART static bool AnySet(Raw v) { return _mm256_testz_si256(v, v) == 0; }
    UTF_PART static void Widen(Raw bytes, char16_t* to) {
        Store(to, _mm256_cvtepu8_epi16(_mm256_castsi256_si128(bytes)));
        Store(to + 16, _mm256_cvtepu8_epi16(_mm256_extracti128_si256(bytes, 1)));
    }
    UTF_PART static void Narrow(Raw first, Raw second, char* to) {
        Store(to, _mm256_permute4x64_epi64(_mm256_packus_epi16(first, second), 0xD8));
    }

    UTF_PART static Raw LookUp(const Shuffle& table, Raw v) {
        return _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(Half::Entry(table)), v);
    }
    UTF_PART static Raw Errors(const Window<Vector256>& window) {
        const Raw half = Bytes(0x0F);
        const Raw pair = LookUp(kFirstHigh, Right<4>(window.lead) & half) &
                         LookUp(kFirstLow, window.lead & half) &
                         LookUp(kSecondHigh, Right<4>(window.second) & half);
        return pair ^ (SecondIsLaterTrail<Vector256>(window) & Bytes(0x80));
    }

    // Unpacking works on halves: `outer` has positions 0 to 7 and 16 to 23, `inner` the others.
    UTF_PART static char16_t* Keep(const PlacedUnits<Vector256>& placed, char16_t* to) {
        const std::uint32_t kept = TopBits(placed.kept);
        const Raw outer = _mm256_unpacklo_epi8(placed.low, placed.high);
        const Raw inner = _mm256_unpackhi_epi8(placed.low, placed.high);
        to = Half::KeepEight(_mm256_castsi256_si128(outer), kept & 0xFF, to);
        to = Half::KeepEight(_mm256_castsi256_si128(inner), kept >> 8 & 0xFF, to);
        to = Half::KeepEight(_mm256_extracti128_si256(outer, 1), kept >> 16 & 0xFF, to);
        return Half::KeepEight(_mm256_extracti128_si256(inner, 1), kept >> 24, to);
    }
    UTF_PART static char* JoinTwoBytes(Raw words, Raw one, char* to) {
        const std::uint32_t bits = TopBits(_mm256_packs_epi16(one, one));
        to = Half::JoinEight(_mm256_castsi256_si128(words), bits & 0xFF, to);
        return Half::JoinEight(_mm256_extracti128_si256(words, 1), bits >> 24, to);
    }
    UTF_PART static char* JoinThreeBytes(const UnitBytes<Vector256>& bytes,
                                         const Sized<Vector256>& source, char* to) {
        const std::uint32_t codes = source.Codes();
        const Raw outer = _mm256_unpacklo_epi16(bytes.front, bytes.back);
        const Raw inner = _mm256_unpackhi_epi16(bytes.front, bytes.back);
        to = Half::JoinFour(_mm256_castsi256_si128(outer), codes & 0xFF, to);
        to = Half::JoinFour(_mm256_castsi256_si128(inner), codes >> 8 & 0xFF, to);
        to = Half::JoinFour(_mm256_extracti128_si256(outer, 1), codes >> 16 & 0xFF, to);
        return Half::JoinFour(_mm256_extracti128_si256(inner, 1), codes >> 24, to);
    }
};

}  // namespace

constinit const UtfKernels kAvx2Kernels = KernelsOver<Vector256>();

}  // namespace zelkor::platform::detail
