// The packed image: its header, its markers and the reading of numbers. The layout is persistent
// and described in docs/formats/compressed-list.md.
#ifndef FOUNDATION_CORE_COMPLIST_INTERNAL_COMPLISTIMAGE_H
#define FOUNDATION_CORE_COMPLIST_INTERNAL_COMPLISTIMAGE_H

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zelkor::detail::complist {

inline constexpr std::uint32_t kStamp = 19970101;
inline constexpr std::uint32_t kAbsent = 0xFFFFFFFF;

// Offsets in the header; numbers are little-endian.
inline constexpr std::uint32_t kStampAt = 0;
inline constexpr std::uint32_t kEndAt = 4;
inline constexpr std::uint32_t kCodePageAt = 8;
inline constexpr std::uint32_t kEmptyHandleAt = 12;
inline constexpr std::uint32_t kJumpsAt = 16;  // 'a' to 'z', 4 bytes each, 0 is none
inline constexpr std::uint32_t kEntriesAt = 120;
inline constexpr std::uint32_t kByteOrderAt = 124;
inline constexpr std::uint32_t kElementSizeAt = 125;
inline constexpr std::uint32_t kHandleSizeAt = 126;
inline constexpr std::uint32_t kFlagsAt = 127;
inline constexpr std::uint32_t kVersionAt = 128;
inline constexpr std::uint32_t kFirstElement = 132;

inline constexpr unsigned kEmptyStringFlag = 1;
inline constexpr unsigned kLongOffsetFlag = 2;

// The element values that are no characters.
inline constexpr std::uint32_t kGoesOn = 10;       // a word ends, longer ones continue; its handle
inline constexpr std::uint32_t kAlternative = 13;  // distance from here to the next alternative
inline constexpr std::uint32_t kEndOfStream = 25;
inline constexpr std::uint32_t kWordEnds = 26;  // a word ends and so does the branch; its handle
inline constexpr std::uint32_t kHighestMarker = kWordEnds;

[[nodiscard]] constexpr bool IsMarker(std::uint32_t element) noexcept {
    return element < 32 &&
           ((1U << kGoesOn | 1U << kAlternative | 1U << kEndOfStream | 1U << kWordEnds) >> element &
            1U) != 0;
}

[[nodiscard]] constexpr bool HasJump(std::uint32_t character) noexcept {
    return character >= 'a' && character <= 'z';
}

template <typename Number>
[[nodiscard]] inline Number Load(const std::byte* from) noexcept {
    static_assert(sizeof(Number) <= 4);
    if constexpr (std::endian::native == std::endian::little) {
        Number number;
        std::memcpy(&number, from, sizeof(Number));
        return number;
    }
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        value |= std::to_integer<std::uint32_t>(from[i]) << (8 * i);
    }
    return static_cast<Number>(value);
}

template <typename Number>
inline void Store(std::byte* to, Number value) noexcept {
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        to[i] = static_cast<std::byte>(static_cast<std::uint32_t>(value) >> (8 * i));
    }
}

// Numbers of 1, 2 or 4 bytes.
[[nodiscard]] inline std::uint32_t LoadNumber(const std::byte* from, std::uint32_t width) noexcept {
    if (width == 4) return Load<std::uint32_t>(from);
    return width == 2 ? Load<std::uint16_t>(from) : Load<std::uint8_t>(from);
}

inline void StoreNumber(std::byte* to, std::uint32_t value, std::uint32_t width) noexcept {
    if (width == 4) return Store(to, value);
    if (width == 2) return Store(to, static_cast<std::uint16_t>(value));
    Store(to, static_cast<std::uint8_t>(value));
}

// How many bytes an element, a handle and an offset take.
struct Widths {
    std::uint32_t element;
    std::uint32_t handle;
    std::uint32_t offset;

    [[nodiscard]] std::uint32_t Mark() const noexcept { return element + handle; }
    [[nodiscard]] std::uint32_t Jump() const noexcept { return element + offset; }
};

// An image with a sound header, for reading. Nothing from `limit` on may be touched; what is asked
// for there is the end of the stream.
struct View {
    const std::byte* bytes;
    std::size_t limit;
    Widths widths;

    [[nodiscard]] std::uint32_t Element(std::size_t at) const noexcept {
        return at + widths.element <= limit ? LoadNumber(bytes + at, widths.element) : kEndOfStream;
    }
    template <typename Unit>
    [[nodiscard]] std::uint32_t ElementOf(std::size_t at) const noexcept {
        return at + sizeof(Unit) <= limit ? Load<Unit>(bytes + at) : kEndOfStream;
    }
    [[nodiscard]] std::uint32_t JumpEntry(std::uint32_t character) const noexcept {
        return Load<std::uint32_t>(bytes + kJumpsAt + 4 * (character - 'a'));
    }
    // The handle behind the marker at `at`, which is inside.
    [[nodiscard]] bool HasHandle(std::size_t at) const noexcept {
        return at + widths.Mark() <= limit;
    }
    [[nodiscard]] std::uint32_t Handle(std::size_t at) const noexcept {
        return LoadNumber(bytes + at + widths.element, widths.handle);
    }
    // Where the alternative marker at `at` leads: behind its offset and inside, else 0.
    [[nodiscard]] std::size_t Target(std::size_t at) const noexcept {
        const std::size_t behind = at + widths.Jump();
        if (behind > limit) return 0;
        const std::byte* const from = bytes + at + widths.element;
        const std::size_t target =
            at + (widths.offset == 4 ? Load<std::uint32_t>(from) : Load<std::uint16_t>(from));
        return target >= behind && target < limit ? target : 0;
    }
    // The alternative behind the one whose first character is at `at`, 0 when there is none.
    template <typename Unit>
    [[nodiscard]] std::size_t NextAlternative(std::size_t at) const noexcept {
        const std::size_t marker = at + sizeof(Unit);
        return ElementOf<Unit>(marker) == kAlternative ? Target(marker) : 0;
    }
};

// What a search gives.
struct Outcome {
    std::uint32_t handle;
    std::uint32_t matched;
};

// One character behind a place of the list, as one number.
[[nodiscard]] constexpr std::uint64_t Step(std::uint32_t place, std::uint32_t unit) noexcept {
    return static_cast<std::uint64_t>(place) << 16 | unit;
}

}  // namespace zelkor::detail::complist

#endif
