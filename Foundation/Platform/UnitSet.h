// UnitSet: a set of UTF-16 units, and scans of text by whether units are in it, sixteen units at a
// time where the processor has the means and the set is small.
//
// Lengths, positions and results are units. The units of a set are borrowed. Nothing here
// allocates, fails or reads outside the given text. Threads: any.
#ifndef FOUNDATION_PLATFORM_UNITSET_H
#define FOUNDATION_PLATFORM_UNITSET_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Foundation/Platform/Scan.h"

namespace zelkor::platform {

class UnitSet {
public:
    explicit constexpr UnitSet(std::u16string_view units) noexcept : units_(units) {
        for (const char16_t unit : units) {
            if (unit < 128) {
                low_[unit / 64] |= std::uint64_t{1} << unit % 64;
            } else {
                any_high_ = true;
            }
        }
    }

    [[nodiscard]] bool Has(char16_t unit) const noexcept {
        if (unit < 128) return (low_[unit / 64] >> unit % 64 & 1) != 0;
        return any_high_ && FindUnit(units_.data(), units_.size(), unit) != kNoHit;
    }

    // Position of the first unit that is (is not) in the set; the text's length when there is none.
    [[nodiscard]] std::size_t FirstMember(std::u16string_view text) const noexcept;
    [[nodiscard]] std::size_t FirstOther(std::u16string_view text) const noexcept;
    // The last one; kNoHit when there is none.
    [[nodiscard]] std::size_t LastMember(std::u16string_view text) const noexcept;
    [[nodiscard]] std::size_t LastOther(std::u16string_view text) const noexcept;

    // How many units are in the set, and the position of the one with `index`, counted from 0;
    // kNoHit when there are fewer.
    [[nodiscard]] std::size_t CountMembers(std::u16string_view text) const noexcept;
    [[nodiscard]] std::size_t FindMember(std::u16string_view text,
                                         std::size_t index) const noexcept;
    // The positions of the first `most` units that are in the set; answers how many there are.
    [[nodiscard]] std::size_t FindMembers(std::u16string_view text, std::uint32_t* places,
                                          std::size_t most) const noexcept;
    // Count and find for runs of units that are not in the set, by their first unit.
    [[nodiscard]] std::size_t CountRuns(std::u16string_view text) const noexcept;
    [[nodiscard]] std::size_t FindRun(std::u16string_view text, std::size_t index) const noexcept;

private:
    friend class Membership;

    std::u16string_view units_;
    std::array<std::uint64_t, 2> low_{};  // the members below 128
    bool any_high_ = false;
};

}  // namespace zelkor::platform

#endif
