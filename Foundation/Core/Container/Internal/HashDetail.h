// What hash functions, hash tables and the string cache share: hashing without a table size.
#ifndef FOUNDATION_CORE_CONTAINER_INTERNAL_HASHDETAIL_H
#define FOUNDATION_CORE_CONTAINER_INTERNAL_HASHDETAIL_H

#include <cstdint>
#include <cstring>
#include <type_traits>

#include "Foundation/Core/Container/Remainder.h"
#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Runtime.h"

namespace zelkor::detail {

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

inline constexpr std::uint32_t kHashBits = 0x0FFFFFFF;

struct HashedText {
    std::uint32_t hash;
    std::size_t length;
};

// The hash of a zero-terminated text, 28 bits wide, and its length. Each round shifts by four bits,
// adds the unit and folds the top four bits in above the lowest four.
template <bool kFolds, typename Unit>
[[nodiscard]] constexpr HashedText HashAndLength(const Unit* text) noexcept {
    std::uint32_t hash = 0;
    std::size_t at = 0;
    // Six units below 0xF0 stay below 28 bits, so the seventh has nothing to fold either, and the
    // chain of operations is shorter.
    for (; at < 7 && Addend<kFolds>(text[at]) - 1 < 0xEF; ++at) {
        hash = (hash << 4) + Addend<kFolds>(text[at]);
    }
    // Folding is left to the next round, which shifts what was folded out of the word.
    for (; text[at] != 0; ++at) {
        hash = ((hash << 4) ^ (hash >> 20 & 0xF00)) + Addend<kFolds>(text[at]);
    }
    return {(hash ^ (hash >> 24 & 0xF0)) & kHashBits, at};
}
template <bool kFolds, typename Unit>
[[nodiscard]] constexpr std::uint32_t HashText(const Unit* text) noexcept {
    return HashAndLength<kFolds>(text).hash;
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

// The value that a key, which may lie anywhere, consists of.
template <typename Value>
[[nodiscard]] Value ValueAt(const void* key) noexcept {
    Value value;
    std::memcpy(&value, key, sizeof(value));
    return value;
}

// Hashes of keys by what the key pointer leads to: a text or string, or a pointer to one. Null
// counts as an empty text.
template <typename Target, bool kFolds>
[[nodiscard]] std::uint32_t HashTarget(const void* key) {
    if (key == nullptr) return 0;
    if constexpr (std::is_integral_v<Target>) {
        return HashText<kFolds>(static_cast<const Target*>(key));
    } else {
        return HashString<kFolds>(*static_cast<const Target*>(key));
    }
}
template <typename Target, bool kFolds>
[[nodiscard]] std::uint32_t HashTargetOf(const void* key) {
    return key == nullptr ? 0 : HashTarget<Target, kFolds>(ValueAt<const void*>(key));
}

}  // namespace zelkor::detail

#endif
