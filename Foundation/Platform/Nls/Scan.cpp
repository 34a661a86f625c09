#include "Foundation/Platform/Scan.h"

#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace platform {

namespace {

#if defined(__SSE2__)

// Sixteen bytes of units. A mask has sizeof(Unit) equal bits for every unit.
template <typename Unit>
struct Line {
    static constexpr std::size_t kUnits = 16 / sizeof(Unit);

    static __m128i Load(const Unit* text) {
        return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
    }
    static __m128i Fill(char unit) { return _mm_set1_epi8(unit); }
    static __m128i Fill(char16_t unit) { return _mm_set1_epi16(static_cast<short>(unit)); }
    static __m128i Equal(__m128i left, __m128i right) {
        return sizeof(Unit) == 1 ? _mm_cmpeq_epi8(left, right) : _mm_cmpeq_epi16(left, right);
    }
    static std::uint32_t Mask(__m128i units) {
        return static_cast<std::uint32_t>(_mm_movemask_epi8(units));
    }
    static std::size_t First(std::uint32_t mask) {
        return static_cast<std::size_t>(std::countr_zero(mask)) / sizeof(Unit);
    }
    static std::uint32_t WithoutFirst(std::uint32_t mask) {
        mask &= mask - 1;
        return sizeof(Unit) == 1 ? mask : mask & (mask - 1);
    }
};

#endif

// The plain scans, for the ends of texts and for other processors.
template <typename Unit>
std::size_t PlainFindUnit(const Unit* text, std::size_t from, std::size_t length, Unit wanted) {
    for (std::size_t i = from; i < length; ++i) {
        if (text[i] == wanted) return i;
    }
    return kNoHit;
}

template <typename Unit>
bool StartsHere(const Unit* text, const Unit* wanted, std::size_t wanted_length) {
    return text[0] == wanted[0] && text[wanted_length - 1] == wanted[wanted_length - 1] &&
           std::memcmp(text, wanted, wanted_length * sizeof(Unit)) == 0;
}

template <typename Unit>
std::size_t PlainCommonLength(const Unit* left, const Unit* right, std::size_t from,
                              std::size_t length) {
    std::size_t i = from;
    while (i < length && left[i] == right[i] && left[i] != 0) ++i;
    return i;
}

template <typename Unit>
std::size_t FindTextIn(const Unit* text, std::size_t length, const Unit* wanted,
                       std::size_t wanted_length) {
    if (wanted_length == 0) return 0;
    if (length < wanted_length) return kNoHit;
    const std::size_t starts = length - wanted_length + 1;
    std::size_t i = 0;
#if defined(__SSE2__)
    // Candidates are where the first and the last unit of the wanted text both stand.
    using L = Line<Unit>;
    const __m128i first = L::Fill(wanted[0]);
    const __m128i last = L::Fill(wanted[wanted_length - 1]);
    const auto candidates = [&](std::size_t at) {
        return _mm_and_si128(L::Equal(L::Load(text + at), first),
                             L::Equal(L::Load(text + at + wanted_length - 1), last));
    };
    const auto verify = [&](std::size_t at, __m128i line) {
        for (std::uint32_t mask = L::Mask(line); mask != 0; mask = L::WithoutFirst(mask)) {
            const std::size_t hit = at + L::First(mask);
            if (StartsHere(text + hit, wanted, wanted_length)) return hit;
        }
        return kNoHit;
    };
    for (; i + 2 * L::kUnits <= starts; i += 2 * L::kUnits) {
        const __m128i low = candidates(i);
        const __m128i high = candidates(i + L::kUnits);
        if (L::Mask(_mm_or_si128(low, high)) == 0) continue;
        std::size_t hit = verify(i, low);
        if (hit == kNoHit) hit = verify(i + L::kUnits, high);
        if (hit != kNoHit) return hit;
    }
    for (; i + L::kUnits <= starts; i += L::kUnits) {
        const std::size_t hit = verify(i, candidates(i));
        if (hit != kNoHit) return hit;
    }
#endif
    for (; i < starts; ++i) {
        if (StartsHere(text + i, wanted, wanted_length)) return i;
    }
    return kNoHit;
}

template <typename Unit>
std::size_t CommonLengthOf(const Unit* left, const Unit* right, std::size_t length) {
    std::size_t i = 0;
#if defined(__SSE2__)
    using L = Line<Unit>;
    const __m128i zero = _mm_setzero_si128();
    const auto stops = [&](std::size_t at) {
        const __m128i line = L::Load(left + at);
        const __m128i same = L::Equal(line, L::Load(right + at));
        return L::Mask(_mm_andnot_si128(L::Equal(line, zero), same)) ^ 0xFFFF;
    };
    for (; i + L::kUnits <= length; i += L::kUnits) {
        if (const std::uint32_t mask = stops(i); mask != 0) return i + L::First(mask);
    }
    if (i != 0 && i < length) {  // the rest, together with units that are known to agree
        const std::size_t at = length - L::kUnits;
        const std::uint32_t mask = stops(at);
        return mask == 0 ? length : at + L::First(mask);
    }
#endif
    return PlainCommonLength(left, right, i, length);
}

}  // namespace

std::size_t FindUnit(const char* text, std::size_t length, char wanted) noexcept {
    if (length == 0) return kNoHit;
    const void* const hit = std::memchr(text, static_cast<unsigned char>(wanted), length);
    return hit == nullptr ? kNoHit : static_cast<std::size_t>(static_cast<const char*>(hit) - text);
}

std::size_t FindUnit(const char16_t* text, std::size_t length, char16_t wanted) noexcept {
    std::size_t i = 0;
#if defined(__SSE2__)
    using L = Line<char16_t>;
    const __m128i unit = L::Fill(wanted);
    for (; i + 4 * L::kUnits <= length; i += 4 * L::kUnits) {
        const __m128i a = L::Equal(L::Load(text + i), unit);
        const __m128i b = L::Equal(L::Load(text + i + L::kUnits), unit);
        const __m128i c = L::Equal(L::Load(text + i + 2 * L::kUnits), unit);
        const __m128i d = L::Equal(L::Load(text + i + 3 * L::kUnits), unit);
        if (L::Mask(_mm_or_si128(_mm_or_si128(a, b), _mm_or_si128(c, d))) != 0) break;
    }
    for (; i + L::kUnits <= length; i += L::kUnits) {
        const std::uint32_t mask = L::Mask(L::Equal(L::Load(text + i), unit));
        if (mask != 0) return i + L::First(mask);
    }
    if (length >= L::kUnits) {  // the rest, together with units that are known to differ
        i = length - L::kUnits;
        const std::uint32_t mask = L::Mask(L::Equal(L::Load(text + i), unit));
        return mask == 0 ? kNoHit : i + L::First(mask);
    }
#endif
    return PlainFindUnit(text, i, length, wanted);
}

std::size_t FindText(const char* text, std::size_t length, const char* wanted,
                     std::size_t wanted_length) noexcept {
    return wanted_length == 1 ? FindUnit(text, length, wanted[0])
                              : FindTextIn(text, length, wanted, wanted_length);
}

std::size_t FindText(const char16_t* text, std::size_t length, const char16_t* wanted,
                     std::size_t wanted_length) noexcept {
    return wanted_length == 1 ? FindUnit(text, length, wanted[0])
                              : FindTextIn(text, length, wanted, wanted_length);
}

std::size_t CommonLength(const char* left, const char* right, std::size_t length) noexcept {
    return CommonLengthOf(left, right, length);
}

std::size_t CommonLength(const char16_t* left, const char16_t* right, std::size_t length) noexcept {
    return CommonLengthOf(left, right, length);
}

}  // namespace platform
