#include "Foundation/Platform/Scan.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "Foundation/Platform/Text/Internal/TwoWay.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace zelkor::platform {

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

// Compares the wanted text with places whose first and last units agree. Whoever searches asks now
// and then whether that has cost more than a few units for every unit passed: then nearly every
// place agrees far into the wanted text, and the search goes on in a way that bears it.
template <typename Unit>
class Comparison {
public:
    Comparison(const Unit* wanted, std::size_t length) noexcept
        : wanted_(wanted), length_(length) {}

    bool Holds(const Unit* place) noexcept {
        if (length_ <= kStep) {
            compared_ += length_;
            return std::memcmp(place, wanted_, length_ * sizeof(Unit)) == 0;
        }
        std::size_t step = kStep;
        for (std::size_t at = 0; at < length_; at += step, step *= 2) {
            step = std::min(step, length_ - at);
            compared_ += step;
            if (std::memcmp(place + at, wanted_ + at, step * sizeof(Unit)) != 0) return false;
        }
        return true;
    }
    [[nodiscard]] bool IsTooCostly(std::size_t passed) const noexcept {
        return compared_ / 8 > passed + length_;
    }

private:
    static constexpr std::size_t kStep = 32;

    const Unit* wanted_;
    std::size_t length_;
    std::size_t compared_ = 0;
};

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
    const Unit last_wanted = wanted[wanted_length - 1];
    Comparison<Unit> comparison(wanted, wanted_length);
    const auto go_on_linearly = [&](std::size_t from) {
        const std::size_t hit =
            detail::TwoWayFind(text + from, length - from, wanted, wanted_length);
        return hit == kNoHit ? kNoHit : from + hit;
    };
    std::size_t i = 0;
#if defined(__SSE2__)
    // Candidates are where the first and the last unit of the wanted text both stand.
    using L = Line<Unit>;
    const __m128i first = L::Fill(wanted[0]);
    const __m128i last = L::Fill(last_wanted);
    const auto candidates = [&](std::size_t at) {
        return _mm_and_si128(L::Equal(L::Load(text + at), first),
                             L::Equal(L::Load(text + at + wanted_length - 1), last));
    };
    const auto verify = [&](std::size_t at, __m128i line) {
        for (std::uint32_t mask = L::Mask(line); mask != 0; mask = L::WithoutFirst(mask)) {
            const std::size_t hit = at + L::First(mask);
            if (comparison.Holds(text + hit)) return hit;
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
        if (comparison.IsTooCostly(i)) return go_on_linearly(i + 2 * L::kUnits);
    }
    for (; i + L::kUnits <= starts; i += L::kUnits) {
        const std::size_t hit = verify(i, candidates(i));
        if (hit != kNoHit) return hit;
    }
#endif
    for (; i < starts; ++i) {
        if (text[i] != wanted[0] || text[i + wanted_length - 1] != last_wanted) continue;
        if (comparison.Holds(text + i)) return i;
        if (comparison.IsTooCostly(i)) return go_on_linearly(i + 1);
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

}  // namespace zelkor::platform
