// Remainders by a number that stays the same, without dividing.
#ifndef FOUNDATION_CORE_CONTAINER_REMAINDER_H
#define FOUNDATION_CORE_CONTAINER_REMAINDER_H

#include <cstdint>

namespace zelkor::detail {

// Exact for all 32-bit numbers and divisors of at least 1 (Lemire, Kaser, Kurz: "Faster remainder
// by direct computation", 2019): the fraction that the quotient leaves, 64 bits wide, times the
// divisor.
[[nodiscard]] constexpr std::uint64_t Reciprocal(std::uint32_t divisor) noexcept {
    return ~std::uint64_t{0} / divisor + 1;
}
[[nodiscard]] constexpr std::uint32_t Remainder(std::uint32_t value, std::uint32_t divisor,
                                                std::uint64_t reciprocal) noexcept {
    const std::uint64_t fraction = reciprocal * value;
    const std::uint64_t low = (fraction & 0xFFFFFFFF) * divisor >> 32;
    return static_cast<std::uint32_t>(((fraction >> 32) * divisor + low) >> 32);
}

}  // namespace zelkor::detail

#endif
