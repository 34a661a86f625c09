#include "Foundation/Platform/Text/Internal/TwoWay.h"

#include <algorithm>

#include "Foundation/Platform/Scan.h"

namespace zelkor::platform::detail {

namespace {

// A text in two parts, cut where its local period is that of the whole.
struct Factors {
    std::size_t cut;
    std::size_t period;
};

// The greatest suffix in the order of the units, or in the reverse order, and its period.
template <bool kReverse, typename Unit>
Factors GreatestSuffix(const Unit* text, std::size_t length) noexcept {
    std::size_t start = 0, rival = 1, same = 0, period = 1;
    while (rival + same < length) {
        const Unit mine = text[start + same];
        const Unit other = text[rival + same];
        if (mine == other) {
            if (++same == period) {
                rival += period;
                same = 0;
            }
        } else if ((other < mine) != kReverse) {
            rival += same + 1;
            same = 0;
            period = rival - start;
        } else {
            start = rival++;
            same = 0;
            period = 1;
        }
    }
    return {start, period};
}

}  // namespace

template <typename Unit>
std::size_t TwoWayFind(const Unit* text, std::size_t length, const Unit* wanted,
                       std::size_t wanted_length) noexcept {
    auto [cut, period] = GreatestSuffix<false>(wanted, wanted_length);
    const Factors reverse = GreatestSuffix<true>(wanted, wanted_length);
    if (reverse.cut > cut) {
        cut = reverse.cut;
        period = reverse.period;
    }
    // A wanted text of that period keeps what it shares with itself one period further on; any
    // other moves by more than the longer part.
    const bool periodic = std::equal(wanted, wanted + cut, wanted + period);
    if (!periodic) period = std::max(cut, wanted_length - cut) + 1;

    std::size_t known = 0;  // leading units that are known to agree
    for (std::size_t at = 0; at + wanted_length <= length;) {
        std::size_t i = std::max(cut, known);
        while (i < wanted_length && wanted[i] == text[at + i]) ++i;
        if (i < wanted_length) {
            at += i - cut + 1;
            known = 0;
            continue;
        }
        for (i = cut; i > known && wanted[i - 1] == text[at + i - 1];) --i;
        if (i <= known) return at;
        at += period;
        known = periodic ? wanted_length - period : 0;
    }
    return kNoHit;
}

template std::size_t TwoWayFind(const char*, std::size_t, const char*, std::size_t) noexcept;
template std::size_t TwoWayFind(const char16_t*, std::size_t, const char16_t*,
                                std::size_t) noexcept;

}  // namespace zelkor::platform::detail
