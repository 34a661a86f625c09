// What the sources of buffers and strings share: the layout of a block, how its size is chosen, and
// the objects of a class pool.
#ifndef FOUNDATION_CORE_BUFFER_INTERNAL_BLOCKS_H
#define FOUNDATION_CORE_BUFFER_INTERNAL_BLOCKS_H

#include <cstddef>
#include <cstdint>

#include "Foundation/Platform/Memory.h"

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

// Exhausted memory as the memory manager reports it; does not return.
[[noreturn]] void ReportExhausted();

// The capacity of a block of `block` bytes, which must hold `size` bytes of content. A block that
// would pass 4 GiB is cut to the largest one.
[[nodiscard]] std::uint32_t CapacityOf(std::uint64_t block, std::uint64_t size);

// A class's operator new and delete: a block of its pool, or of the heap for an object of a derived
// class that is larger.
[[nodiscard]] void* NewObject(_SHI_Pool& pool, std::size_t size);
void DeleteObject(_SHI_Pool& pool, void* block, std::size_t size) noexcept;

}  // namespace zelkor::detail

#endif
