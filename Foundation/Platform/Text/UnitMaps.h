// Mappings of one UTF-16 unit to another over whole texts, eight units at a time where the
// processor has the means.
//
// A high surrogate and the unit after it, whatever it is, are left alone. Nothing here allocates,
// fails or touches a unit outside the given ones. Threads: any.
#ifndef FOUNDATION_PLATFORM_TEXT_UNITMAPS_H
#define FOUNDATION_PLATFORM_TEXT_UNITMAPS_H

#include <cstddef>
#include <cstdint>

namespace zelkor::platform {

// The upper bits of a unit select a block in `stage`; its lower 6 bits select what to add to the
// unit, modulo 65,536, in that block. Blocks of texts need no table where two more facts hold:
// below `plain` the table changes the units of `ranges` and no others, from `quiet` to U+D7FF none.
struct UnitMap {
    static constexpr unsigned int kShift = 6;

    struct Range {
        char16_t first, last;
        std::uint16_t difference;
    };

    [[nodiscard]] constexpr std::uint16_t Difference(char16_t unit) const noexcept {
        const std::size_t block = stage[unit >> kShift];
        return blocks[(block << kShift) + (unit & ((1U << kShift) - 1))];
    }
    [[nodiscard]] constexpr char16_t operator()(char16_t unit) const noexcept {
        return static_cast<char16_t>(unit + Difference(unit));
    }
    // Whether the table agrees with the ranges.
    [[nodiscard]] constexpr bool RangesHold() const noexcept;

    const std::uint8_t* stage;
    const std::uint16_t* blocks;
    char16_t plain, quiet;
    Range ranges[3];  // difference 0: none
};

constexpr bool UnitMap::RangesHold() const noexcept {
    for (char16_t unit = 0; unit < plain; ++unit) {
        std::uint16_t difference = 0;
        for (const Range& range : ranges) {
            if (unit >= range.first && unit <= range.last) difference = range.difference;
        }
        if (difference != Difference(unit)) return false;
    }
    return true;
}

// Index of the first unit from `from` on that the map changes, `length` when there is none.
[[nodiscard]] std::size_t FindMapped(const char16_t* text, std::size_t from, std::size_t length,
                                     const UnitMap& map) noexcept;

// Maps text[from, length) in place.
void MapUnits(char16_t* text, std::size_t from, std::size_t length, const UnitMap& map) noexcept;

}  // namespace zelkor::platform

#endif
