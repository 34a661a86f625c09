// What the source files of the containers share: objects from class pools, and item copying.
#ifndef FOUNDATION_CORE_CONTAINER_CONTAINERDETAIL_H
#define FOUNDATION_CORE_CONTAINER_CONTAINERDETAIL_H

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "Foundation/Core/Buffer/BufferDetail.h"
#include "Foundation/Platform/Memory.h"

namespace foundation::detail {

// An object of a class with a pool; classes derived from it, being larger, come from the heap.
[[nodiscard]] inline void* NewObject(_SHI_Pool& pool, std::size_t size) {
    void* const block =
        size <= pool.size ? platform::AllocateBlock(&pool) : platform::Allocate(size);
    if (block == nullptr) ReportExhausted();
    return block;
}
inline void DeleteObject(_SHI_Pool& pool, void* block, std::size_t size) noexcept {
    if (size <= pool.size) {
        platform::FreeBlock(&pool, block);
    } else {
        platform::Free(block);
    }
}

// Copies one item; `out` and `item` may be the same.
inline void CopyItem(void* out, const void* item, std::uint32_t size) noexcept {
    switch (size) {
        case 1:
            std::memcpy(out, item, 1);
            break;
        case 2:
            std::memcpy(out, item, 2);
            break;
        case 4:
            std::memcpy(out, item, 4);
            break;
        case 8:
            std::memcpy(out, item, 8);
            break;
        case 16:
            std::memcpy(out, item, 16);
            break;
        default:
            if (size != 0) std::memmove(out, item, size);
    }
}

// Fills one item with zeros.
inline void ClearItem(void* out, std::uint32_t size) noexcept {
    switch (size) {
        case 4:
            std::memset(out, 0, 4);
            break;
        case 8:
            std::memset(out, 0, 8);
            break;
        case 16:
            std::memset(out, 0, 16);
            break;
        default:
            if (size != 0) std::memset(out, 0, size);
    }
}

}  // namespace foundation::detail

#endif
