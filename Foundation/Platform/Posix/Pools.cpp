#include <algorithm>
#include <cstdlib>
#include <thread>

#include "Foundation/Platform/Memory.h"
#include "Foundation/Platform/Posix/Internal/ThreadMemory.h"

// A pool owns slabs; a block is in the pool's free list, in the never-used rest of the latest slab,
// in one thread's cache, or with the caller. Caches and pool exchange blocks in runs of kRun.
namespace zelkor::platform {

namespace {

using detail::BlockCache;
using detail::ThreadMemory;

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZELKOR_POOLS_ON_HEAP true
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define ZELKOR_POOLS_ON_HEAP true
#endif
#if defined(ZELKOR_POOLS_ON_HEAP)
constexpr bool kPoolsOnHeap = true;
#else
constexpr bool kPoolsOnHeap = false;
#endif

constexpr std::uint32_t kRun = 32;
constexpr std::size_t kSlabHeader = 16;
constexpr std::size_t kLargestSlab = 4096;  // blocks

constinit std::atomic<_SHI_Pool*> pools{nullptr};
constinit std::atomic<std::uint32_t> next_index{1};

// The link to the next free block is the first word of a free one.
void*& Next(void* block) noexcept {
    return *static_cast<void**>(block);
}

// Blocks keep the alignment of 16 and have room for the link.
std::size_t Stride(const _SHI_Pool& pool) noexcept {
    return std::max<std::size_t>((pool.size + 15) & ~std::size_t{15}, 16);
}

class PoolLock {
public:
    explicit PoolLock(_SHI_Pool& pool) noexcept : pool_(pool) {
        while (pool_.busy.exchange(true, std::memory_order_acquire)) std::this_thread::yield();
    }
    ~PoolLock() { pool_.busy.store(false, std::memory_order_release); }
    PoolLock(const PoolLock&) = delete;
    PoolLock& operator=(const PoolLock&) = delete;

private:
    _SHI_Pool& pool_;
};

// Enters a pool at its first use among all pools, with a place in the thread caches while there
// are any. Needs the lock.
void Enter(_SHI_Pool& pool) noexcept {
    pool.listed = true;
    if (next_index.load(std::memory_order_relaxed) < detail::kCachedPools) {
        const std::uint32_t index = next_index.fetch_add(1, std::memory_order_relaxed);
        if (index < detail::kCachedPools) pool.cache_index.store(index, std::memory_order_relaxed);
    }
    pool.next = pools.load(std::memory_order_relaxed);
    while (!pools.compare_exchange_weak(pool.next, &pool, std::memory_order_acq_rel)) {
    }
}

// Obtains a slab of fresh blocks: the initial count, then as many as there are already. Needs the
// lock.
bool Grow(_SHI_Pool& pool) noexcept {
    if (!pool.listed) Enter(pool);
    const std::size_t count = std::clamp<std::size_t>(
        pool.total_count, std::max<std::uint32_t>(pool.initial, 1), kLargestSlab);
    auto* const slab = static_cast<char*>(std::malloc(kSlabHeader + count * Stride(pool)));
    if (slab == nullptr) return false;
    Next(slab) = pool.slabs;
    pool.slabs = slab;
    pool.fresh = slab + kSlabHeader;
    pool.fresh_count = count;
    pool.total_count += count;
    return true;
}

// Takes up to `wanted` blocks from the pool as a list, freed ones first; `cache` gets them.
void TakeRun(_SHI_Pool& pool, std::uint32_t wanted, BlockCache& cache) noexcept {
    const PoolLock lock(pool);
    if (pool.free_blocks != nullptr) {
        void* last = cache.blocks = pool.free_blocks;
        for (cache.count = 1; cache.count < wanted && Next(last) != nullptr; ++cache.count) {
            last = Next(last);
        }
        pool.free_blocks = Next(last);
        pool.free_count -= cache.count;
        Next(last) = nullptr;
        return;
    }
    if (pool.fresh_count == 0 && !Grow(pool)) return;
    while (cache.count < wanted && pool.fresh_count != 0) {
        Next(pool.fresh) = cache.blocks;
        cache.blocks = pool.fresh;
        ++cache.count;
        pool.fresh += Stride(pool);
        --pool.fresh_count;
    }
}

// Puts the list `first` to `last` of `count` blocks back into the pool.
void GiveRun(_SHI_Pool& pool, void* first, void* last, std::uint32_t count) noexcept {
    const PoolLock lock(pool);
    Next(last) = pool.free_blocks;
    pool.free_blocks = first;
    pool.free_count += count;
}

void* Pop(BlockCache& cache) noexcept {
    void* const block = cache.blocks;
    cache.blocks = Next(block);
    --cache.count;
    return block;
}

void* Take(_SHI_Pool& pool, ThreadMemory* mine) noexcept {
    if constexpr (kPoolsOnHeap) return std::malloc(pool.size);
    const std::uint32_t index = pool.cache_index.load(std::memory_order_relaxed);
    if (mine != nullptr && mine->caches[index].blocks != nullptr) [[likely]] {
        return Pop(mine->caches[index]);
    }
    if (mine != nullptr && index != 0) {
        BlockCache& cache = mine->caches[index];
        TakeRun(pool, kRun, cache);
        return cache.blocks != nullptr ? Pop(cache) : nullptr;
    }
    BlockCache single;
    TakeRun(pool, 1, single);
    return single.blocks;
}

// Hands the newest kRun blocks of a full cache over to the pool.
void Shorten(_SHI_Pool& pool, BlockCache& cache) noexcept {
    void* const first = cache.blocks;
    void* last = first;
    for (std::uint32_t i = 1; i < kRun; ++i) last = Next(last);
    cache.blocks = Next(last);
    cache.count -= kRun;
    GiveRun(pool, first, last, kRun);
}

// Frees the slabs of a pool when every block is back.
void Release(_SHI_Pool& pool) noexcept {
    const PoolLock lock(pool);
    if (pool.free_count + pool.fresh_count != pool.total_count) return;
    while (pool.slabs != nullptr) {
        void* const slab = pool.slabs;
        pool.slabs = Next(slab);
        std::free(slab);
    }
    pool.free_blocks = nullptr;
    pool.fresh = nullptr;
    pool.free_count = pool.fresh_count = pool.total_count = 0;
}

}  // namespace

namespace detail {

void EmptyCaches(ThreadMemory* mine) noexcept {
    for (_SHI_Pool* pool = pools.load(std::memory_order_acquire); pool != nullptr;
         pool = pool->next) {
        BlockCache& cache = mine->caches[pool->cache_index.load(std::memory_order_relaxed)];
        if (cache.blocks == nullptr) continue;
        void* last = cache.blocks;
        while (Next(last) != nullptr) last = Next(last);
        GiveRun(*pool, cache.blocks, last, cache.count);
        cache = BlockCache{};
    }
}

}  // namespace detail

void* AllocateBlock(_SHI_Pool* pool) {
    ThreadMemory* const mine = detail::Mine();
    do {
        if (mine != nullptr && !mine->Permits()) continue;
        if (void* const block = Take(*pool, mine)) {
            detail::CountLive(mine, 1);
            return block;
        }
    } while (detail::AskHandler());
    return nullptr;
}

void FreeBlock(_SHI_Pool* pool, void* block) noexcept {
    if (block == nullptr) return;
    ThreadMemory* const mine = detail::Mine();
    detail::CountLive(mine, -1);
    if constexpr (kPoolsOnHeap) return std::free(block);
    const std::uint32_t index = pool->cache_index.load(std::memory_order_relaxed);
    if (mine == nullptr || index == 0) return GiveRun(*pool, block, block, 1);
    BlockCache& cache = mine->caches[index];
    Next(block) = cache.blocks;
    cache.blocks = block;
    if (++cache.count > 2 * kRun) Shorten(*pool, cache);
}

void ReleasePools() noexcept {
    detail::DetachCallingThread();
    for (_SHI_Pool* pool = pools.load(std::memory_order_acquire); pool != nullptr;
         pool = pool->next) {
        Release(*pool);
    }
}

}  // namespace zelkor::platform
