// What the sources of buffers and strings share: the layout of a block and how its size is chosen.
#ifndef FOUNDATION_CORE_BUFFER_INTERNAL_BLOCKS_H
#define FOUNDATION_CORE_BUFFER_INTERNAL_BLOCKS_H

#include <cstddef>
#include <cstdint>

#include "Foundation/Core/Base/HeapObject.h"

namespace zelkor::detail {

inline constexpr std::uint64_t kHeaderSize = 12;
// Before the header, so that the content starts on a 16-byte boundary as the allocation does.
inline constexpr std::uint64_t kSlack = 4;
// Counted with the header; the largest multiple of 64 below 4 GiB.
inline constexpr std::uint64_t kLargestBlock = 0xFFFFFFC0;

[[nodiscard]] constexpr std::uint64_t RoundUp(std::uint64_t size, std::uint64_t step) {
    return (size + step - 1) / step * step;
}

// The content of a fresh block with use count 1 and nothing used.
[[nodiscard]] std::byte* NewBlock(std::uint32_t capacity);

// The capacity of a block of `block` bytes, which must hold `size` bytes of content. A block that
// would pass 4 GiB is cut to the largest one.
[[nodiscard]] std::uint32_t CapacityOf(std::uint64_t block, std::uint64_t size);

}  // namespace zelkor::detail

#endif
