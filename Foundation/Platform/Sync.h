// Locks of the ground.
#ifndef FOUNDATION_PLATFORM_SYNC_H
#define FOUNDATION_PLATFORM_SYNC_H

#include <atomic>
#include <cstdint>
#include <mutex>

#include "Foundation/Platform/Export.h"

namespace zelkor::platform {

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
    std::mutex mutex_;
    std::atomic<std::uint32_t> owner_{0};  // thread that holds mutex_, written by that thread only
    std::uint32_t depth_ = 0;              // times entered, guarded by mutex_
};

}  // namespace zelkor::platform

#endif
