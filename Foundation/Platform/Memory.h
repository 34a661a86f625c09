// The memory manager: the heap beneath buffers and nodes, fixed-size block pools beneath the small
// classes, and the handler that hears of exhausted memory.
//
// Sizes are bytes. Blocks are aligned to 16. Threads: everything here may be called from any
// thread; blocks may be freed by another thread than the one that allocated them.
// The process-wide operator new is left alone.
#ifndef FOUNDATION_PLATFORM_MEMORY_H
#define FOUNDATION_PLATFORM_MEMORY_H

#include <cstddef>
#include <cstdint>
#include <new>

#include "Foundation/Platform/Export.h"

// A pool of blocks of one size (defined by the memory manager; a handle to everybody else).
struct _SHI_Pool;

namespace platform {

// What the memory manager tells the error handler; the code is first.
struct MemoryError {
    std::uint32_t code;
};
inline constexpr std::uint32_t kMemoryExhausted = 1;

// Called when memory cannot be had. It may free memory and return true to have the request tried
// again, return false to make the request answer null, or throw.
using MemoryErrorHandler = bool (*)(const MemoryError* error);

// Installs a handler (null: none, requests then answer null) and returns the one before.
FOUNDATION_API MemoryErrorHandler SetMemoryErrorHandler(MemoryErrorHandler handler) noexcept;

// A block of at least `size` bytes, rounded up to a multiple of 4 and at least 4; null only when
// memory is exhausted and the handler gave up. Reallocate keeps the leading bytes and leaves the
// old block valid when it fails; a null block allocates.
[[nodiscard]] FOUNDATION_API void* Allocate(std::size_t size);
[[nodiscard]] FOUNDATION_API void* AllocateZeroed(std::size_t size);
[[nodiscard]] FOUNDATION_API void* Reallocate(void* block, std::size_t size);
FOUNDATION_API void Free(void* block) noexcept;

// One block of the pool's size, or null as above; freeing null does nothing.
[[nodiscard]] FOUNDATION_API void* AllocateBlock(_SHI_Pool* pool);
FOUNDATION_API void FreeBlock(_SHI_Pool* pool, void* block) noexcept;

// Test seam: makes the `countdown`-th allocation of this thread from now on fail (1: the next one),
// and with `sticky` all that follow; 0 switches it off. AllocationCount counts this thread's calls
// of the allocating functions, LiveBlocks the blocks of all threads not yet freed.
FOUNDATION_API void FailAllocation(std::uint64_t countdown, bool sticky = false) noexcept;
[[nodiscard]] FOUNDATION_API std::uint64_t AllocationCount() noexcept;
[[nodiscard]] FOUNDATION_API std::int64_t LiveBlocks() noexcept;

// For standard containers inside the library: memory from the manager, so that exhaustion reaches
// callers the same way everywhere. std::bad_alloc is thrown only when no handler throws.
template <typename T>
struct Allocator {
    using value_type = T;
    Allocator() = default;
    template <typename U>
    Allocator(const Allocator<U>&) noexcept {}
    T* allocate(std::size_t count) {
        if (count > static_cast<std::size_t>(-1) / sizeof(T)) throw std::bad_alloc();
        void* block = Allocate(count * sizeof(T));
        if (block == nullptr) throw std::bad_alloc();
        return static_cast<T*>(block);
    }
    void deallocate(T* block, std::size_t) noexcept { Free(block); }
    template <typename U>
    bool operator==(const Allocator<U>&) const noexcept {
        return true;
    }
};

}  // namespace platform

#endif
