// The memory manager: the heap beneath buffers and nodes, fixed-size block pools beneath the small
// classes, and the handler that hears of exhausted memory.
//
// Sizes are bytes. Blocks are aligned to 16. Threads: everything here may be called from any
// thread; blocks may be freed by another thread than the one that allocated them.
// The process-wide operator new is left alone.
#ifndef FOUNDATION_PLATFORM_MEMORY_H
#define FOUNDATION_PLATFORM_MEMORY_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>

#include "Foundation/Platform/Export.h"

// A pool of blocks of one size: made as a `constinit` object in the file of the class it serves,
// alive as long as the library; the classes hand it out as their spso_GetMemPool().
//
//   constinit _SHI_Pool pool(sizeof(CT_Buffer), 1024);
//
// Making one costs nothing: the first block asked for obtains a slab of `initial_blocks`. Blocks
// go through a small cache of the calling thread; only every few dozen blocks, or the first use in
// a thread, visit the pool itself. The members belong to the memory manager.
struct _SHI_Pool {
    constexpr _SHI_Pool(std::size_t block_size, std::uint32_t initial_blocks,
                        std::uint32_t pool_flags = 2) noexcept
        : size(block_size), initial(initial_blocks), flags(pool_flags) {}
    _SHI_Pool(const _SHI_Pool&) = delete;
    _SHI_Pool& operator=(const _SHI_Pool&) = delete;

    std::size_t size;       // bytes the caller may use of a block
    std::uint32_t initial;  // blocks of the first slab
    std::uint32_t flags;    // 2 for every pool of the library; kept, changes nothing
    std::atomic<std::uint32_t> cache_index{0};  // place in the thread caches, 0 until first used
    std::atomic<bool> busy{false};              // guards what follows
    void* free_blocks = nullptr;                // linked through their first word
    std::size_t free_count = 0;
    char* fresh = nullptr;  // blocks of the latest slab that were never used: fresh_count of them
    std::size_t fresh_count = 0;
    void* slabs = nullptr;  // linked through their first word
    std::size_t total_count = 0;
    bool listed = false;  // among all pools that were ever used:
    _SHI_Pool* next = nullptr;
};

namespace zelkor::platform {

// What the memory manager tells the error handler; the code is first.
struct MemoryError {
    std::uint32_t code;
};
inline constexpr std::uint32_t kMemoryExhausted = 1;

// Called when memory cannot be had. It may free memory and return true to have the request tried
// again, return false to make the request answer null, or throw: the manager holds no lock then.
using MemoryErrorHandler = bool (*)(const MemoryError* error);

// Installs a handler (null: none, requests then answer null) and returns the one before. While the
// library is loaded its own handler stands here, which throws CT_SmartHeapException.
ZELKOR_API MemoryErrorHandler SetMemoryErrorHandler(MemoryErrorHandler handler) noexcept;

// A block of at least `size` bytes, rounded up to a multiple of 4 and at least 4; null only when
// memory is exhausted and the handler gave up. Reallocate keeps the leading bytes and leaves the
// old block valid when it fails; a null block allocates.
[[nodiscard]] ZELKOR_API void* Allocate(std::size_t size);
[[nodiscard]] ZELKOR_API void* AllocateZeroed(std::size_t size);
[[nodiscard]] ZELKOR_API void* Reallocate(void* block, std::size_t size);
ZELKOR_API void Free(void* block) noexcept;
// As Allocate, but answers null at once: the handler is not asked.
[[nodiscard]] ZELKOR_API void* TryAllocate(std::size_t size) noexcept;

// Has the handler hear of a request that is larger than any block; comes back when it gives up.
ZELKOR_API void ReportExhausted();

// One block of the pool's size, or null as above; freeing null does nothing. Under
// AddressSanitizer every block comes from the heap, so that use after freeing is seen.
[[nodiscard]] ZELKOR_API void* AllocateBlock(_SHI_Pool* pool);
ZELKOR_API void FreeBlock(_SHI_Pool* pool, void* block) noexcept;

// Test seam: makes the `countdown`-th allocation of this thread from now on fail (1: the next one),
// and with `sticky` all that follow; 0 switches it off. AllocationCount counts this thread's tries
// to allocate, LiveBlocks the blocks of all threads not yet freed (exact while the other threads
// rest). Both always count, in counters of each thread; a trial after the handler freed memory is
// a try of its own.
ZELKOR_API void FailAllocation(std::uint64_t countdown, bool sticky = false) noexcept;
[[nodiscard]] ZELKOR_API std::uint64_t AllocationCount() noexcept;
[[nodiscard]] ZELKOR_API std::int64_t LiveBlocks() noexcept;

// Gives the memory of pools whose blocks have all come back to the heap again, and stops caching in
// the calling thread. Called once when the library goes; everything keeps working afterwards.
void ReleasePools() noexcept;

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

}  // namespace zelkor::platform

#endif
