// What the memory manager keeps for each thread: counters, the failure seam, small caches of free
// pool blocks, and what else goes with the thread: a destructor of a thread-local object would keep
// the library from being unloaded. Shared by Memory.cpp, Pools.cpp and ErrorInfo.cpp.
#ifndef FOUNDATION_PLATFORM_POSIX_INTERNAL_THREADMEMORY_H
#define FOUNDATION_PLATFORM_POSIX_INTERNAL_THREADMEMORY_H

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "Foundation/Platform/Memory.h"
#include "Foundation/Platform/ThreadLocal.h"

namespace zelkor::platform::detail {

inline constexpr std::uint32_t kCachedPools = 48;  // further pools work without caches

struct BlockCache {
    void* blocks = nullptr;  // linked through their first word
    std::uint32_t count = 0;
};

struct ThreadMemory {
    std::atomic<std::int64_t> live{0};  // allocated less freed; written by the owner alone
    std::uint64_t tries = 0;
    std::uint64_t countdown = 0;  // the try that fails, counted from now; 0 none
    bool sticky = false;
    BlockCache caches[kCachedPools];  // [0] stays empty: pools without a place use it
    char16_t* error_info = nullptr;   // the component error object, a block of the heap
    ThreadMemory* next = nullptr;
    ThreadMemory* previous = nullptr;

    void Count(std::int64_t change) noexcept {
        live.store(live.load(std::memory_order_relaxed) + change, std::memory_order_relaxed);
    }
    // Whether this try may go on to the heap.
    bool Permits() noexcept {
        ++tries;
        return countdown == 0 || --countdown != 0 || Fail();
    }

private:
    bool Fail() noexcept {
        if (sticky) countdown = 1;
        return false;
    }
};

extern ZELKOR_THREAD_LOCAL ThreadMemory* thread_memory;

// Makes the calling thread's; null without memory, and for good when the thread is ending or no key
// can be had for it.
ThreadMemory* AttachThread() noexcept;

// Gives up the calling thread's for good, and no longer follows the end of threads.
void DetachCallingThread() noexcept;

inline ThreadMemory* Mine() noexcept {
    ThreadMemory* const mine = thread_memory;
    return mine != nullptr ? mine : AttachThread();
}

// Counts for threads that have no counters of their own.
void CountShared(std::int64_t change) noexcept;

inline void CountLive(ThreadMemory* mine, std::int64_t change) noexcept {
    if (mine != nullptr) {
        mine->Count(change);
    } else {
        CountShared(change);
    }
}

// Asks the error handler; whether the request is to be tried again.
bool AskHandler();

// Gives all blocks of the thread's caches back to their pools.
void EmptyCaches(ThreadMemory* mine) noexcept;

}  // namespace zelkor::platform::detail

#endif
