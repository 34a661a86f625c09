// What the source files of the containers share: objects from class pools, and item copying.
#ifndef FOUNDATION_CORE_CONTAINER_INTERNAL_CONTAINERDETAIL_H
#define FOUNDATION_CORE_CONTAINER_INTERNAL_CONTAINERDETAIL_H

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "Foundation/Core/Base/HeapObject.h"

namespace zelkor::detail {

// Copies one item; `out` and `item` may be the same. Sizes up to 16 are copied as two pieces that
// may overlap, both read before either is written.
inline void CopyItem(void* out, const void* item, std::uint32_t size) noexcept {
    const auto in_two = [&]<typename Piece>(Piece first) {
        Piece last;
        const std::size_t at = size - sizeof(Piece);
        std::memcpy(&first, item, sizeof(Piece));
        std::memcpy(&last, static_cast<const std::byte*>(item) + at, sizeof(Piece));
        std::memcpy(out, &first, sizeof(Piece));
        std::memcpy(static_cast<std::byte*>(out) + at, &last, sizeof(Piece));
    };
    if (size > 16) {
        std::memmove(out, item, size);
    } else if (size >= 8) {
        in_two(std::uint64_t{});
    } else if (size >= 4) {
        in_two(std::uint32_t{});
    } else if (size >= 2) {
        in_two(std::uint16_t{});
    } else if (size == 1) {
        std::memcpy(out, item, 1);
    }
}

// Fills one item with zeros.
inline void ClearItem(void* out, std::uint32_t size) noexcept {
    if (size == 16) {
        std::memset(out, 0, 16);
    } else if (size == 8) {
        std::memset(out, 0, 8);
    } else if (size == 4) {
        std::memset(out, 0, 4);
    } else if (size != 0) {
        std::memset(out, 0, size);
    }
}

}  // namespace zelkor::detail

#endif
