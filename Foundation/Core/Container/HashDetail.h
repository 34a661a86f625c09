// What hash functions, hash tables and the string cache share: hashing without a table size, and
// division by a number that stays the same.
#ifndef FOUNDATION_CORE_CONTAINER_HASHDETAIL_H
#define FOUNDATION_CORE_CONTAINER_HASHDETAIL_H

#include <cstdint>
#include <cstring>
#include <type_traits>

#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Runtime.h"

namespace foundation::detail {

// A unit as the hash adds it: bytes count as signed numbers whatever `char` is.
template <bool kFolds, typename Unit>
[[nodiscard]] constexpr std::uint32_t Addend(Unit unit) noexcept {
    const Unit folded = kFolds ? platform::ToUpper(unit) : unit;
    if constexpr (sizeof(Unit) == 1) {
        return static_cast<std::uint32_t>(static_cast<signed char>(folded));
    } else {
        return folded;
    }
}

// The hash of a zero-terminated text, 28 bits wide. Each round shifts by four bits, adds the unit
// and folds the top four bits in above the lowest four.
template <bool kFolds, typename Unit>
[[nodiscard]] constexpr std::uint32_t HashText(const Unit* text) noexcept {
    std::uint32_t hash = 0;
    // Six units below 0x80 stay below 28 bits: nothing to fold, and a shorter chain of operations.
    for (int round = 0; round < 6; ++round, ++text) {
        const std::uint32_t unit = Addend<kFolds>(*text);
        if (unit == 0) return hash;
        if (unit >= 0x80) break;
        hash = (hash << 4) + unit;
    }
    // Folding is left to the next round, which shifts what was folded out of the word.
    for (; *text != 0; ++text) {
        hash = ((hash << 4) ^ (hash >> 20 & 0xF00)) + Addend<kFolds>(*text);
    }
    return (hash ^ (hash >> 24 & 0xF0)) & 0x0FFFFFFF;
}
static_assert(HashText<false>(u"abc") == 26499);

template <bool kFolds>
[[nodiscard]] std::uint32_t HashString(const CT_CString& string) {
    return HashText<kFolds>(string.qccz_Get());
}
template <bool kFolds>
[[nodiscard]] std::uint32_t HashString(const CT_UString& string) {
    return HashText<kFolds>(string.qcuz_Get());
}
template <bool kFolds>
[[nodiscard]] std::uint32_t HashString(const CT_String& string) {
    return HashText<kFolds>(CT_UString(&string).qcuz_Get());
}

// The end is looked for in `wanted`, which was just read: `stored` may still be on its way from
// memory.
[[nodiscard]] inline bool IsSameText(const char16_t* stored, const char16_t* wanted) noexcept {
    for (; *stored == *wanted; ++stored, ++wanted) {
        if (*wanted == 0) return true;
    }
    return false;
}

// The value that a key, which may lie anywhere, consists of.
template <typename Value>
[[nodiscard]] Value ValueAt(const void* key) noexcept {
    Value value;
    std::memcpy(&value, key, sizeof(value));
    return value;
}

// Hashes of keys by what the key pointer leads to: a text or string, or a pointer to one.
template <typename Target, bool kFolds>
[[nodiscard]] std::uint32_t HashTarget(const void* key) {
    if constexpr (std::is_integral_v<Target>) {
        return HashText<kFolds>(static_cast<const Target*>(key));
    } else {
        return HashString<kFolds>(*static_cast<const Target*>(key));
    }
}
template <typename Target, bool kFolds>
[[nodiscard]] std::uint32_t HashTargetOf(const void* key) {
    return HashTarget<Target, kFolds>(ValueAt<const void*>(key));
}

// Remainders by one divisor of at least 1 without dividing, exact for all 32-bit numbers (Lemire,
// Kaser, Kurz: "Faster remainder by direct computation", 2019): the fraction that the quotient
// leaves, 64 bits wide, times the divisor.
[[nodiscard]] constexpr std::uint64_t Reciprocal(std::uint32_t divisor) noexcept {
    return ~std::uint64_t{0} / divisor + 1;
}
[[nodiscard]] constexpr std::uint32_t Remainder(std::uint32_t value, std::uint32_t divisor,
                                                std::uint64_t reciprocal) noexcept {
    const std::uint64_t fraction = reciprocal * value;
    const std::uint64_t low = (fraction & 0xFFFFFFFF) * divisor >> 32;
    return static_cast<std::uint32_t>(((fraction >> 32) * divisor + low) >> 32);
}

}  // namespace foundation::detail

#endif
