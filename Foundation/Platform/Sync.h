// Locks of the ground.
#ifndef FOUNDATION_PLATFORM_SYNC_H
#define FOUNDATION_PLATFORM_SYNC_H

#include <atomic>
#include <cstdint>

#include "Foundation/Platform/Export.h"

namespace zelkor::platform {

// A lock between the threads of the process: whoever finds it taken sleeps. Can be a `constinit`
// object on every system, and needs no clean-up. Has the names that std::lock_guard asks for.
class Lock {
public:
    constexpr Lock() noexcept = default;
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    void lock() noexcept {
        int state = kFree;
        // Acquire: what the holder before wrote is seen.
        if (!state_.compare_exchange_strong(state, kHeld, std::memory_order_acquire,
                                            std::memory_order_relaxed)) {
            Await();
        }
    }
    void unlock() noexcept {
        if (state_.exchange(kFree, std::memory_order_release) == kAwaited) WakeOne();
    }

private:
    static constexpr int kFree = 0;
    static constexpr int kHeld = 1;
    static constexpr int kAwaited = 2;  // held, and perhaps somebody sleeps

    ZELKOR_API void Await() noexcept;
    ZELKOR_API void WakeOne() noexcept;

    std::atomic<int> state_{kFree};
};

// A lock that its owner may take again: it is free after as many Leave as Enter. Can be a
// `constinit` object; it must not be destroyed while it is held.
class RecursiveLock {
public:
    constexpr RecursiveLock() noexcept = default;
    RecursiveLock(const RecursiveLock&) = delete;
    RecursiveLock& operator=(const RecursiveLock&) = delete;

    ZELKOR_API void Enter();
    ZELKOR_API void Leave();

private:
    Lock lock_;
    std::atomic<std::uint32_t> owner_{0};  // thread that holds lock_, written by that thread only
    std::uint32_t depth_ = 0;              // times entered, guarded by lock_
};

}  // namespace zelkor::platform

#endif
