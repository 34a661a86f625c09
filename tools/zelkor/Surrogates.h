// Surrogate pairs of UTF-16 and units that are only half of one.
#ifndef TOOLS_ZELKOR_SURROGATES_H
#define TOOLS_ZELKOR_SURROGATES_H

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace zelkor::cli {

constexpr bool IsFirstHalf(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}
constexpr bool IsSecondHalf(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}
constexpr char32_t CodeOf(char16_t first, char16_t second) {
    return (char32_t{first} << 10) + second - 0x35FDC00U;
}

// Place of the first unit from `at` on that is half of no pair, the text's size when there is none.
inline std::size_t FindUnpaired(std::u16string_view units, std::size_t at = 0) {
    constexpr std::size_t kBlock = 64;
    while (at < units.size()) {
        const std::size_t end = std::min(units.size(), at + kBlock);
        // A block without any surrogate is passed over at once.
        unsigned int found = 0;
        for (std::size_t i = at; i < end; ++i) found |= (units[i] & 0xF800) == 0xD800 ? 1u : 0u;
        if (found == 0) {
            at = end;
            continue;
        }
        while (at < end) {
            const bool first = IsFirstHalf(units[at]);
            const bool pair = first && at + 1 < units.size() && IsSecondHalf(units[at + 1]);
            if (!pair && (first || IsSecondHalf(units[at]))) return at;
            at += pair ? 2 : 1;
        }
    }
    return units.size();
}

}  // namespace zelkor::cli

#endif
