#include "Foundation/Platform/Sync.h"

#include "Foundation/Platform/Threads.h"

namespace zelkor::platform {

// Whoever has slept takes the lock as one that is awaited: others may sleep still.
void Lock::Await() noexcept {
    while (state_.exchange(kAwaited, std::memory_order_acquire) != kFree) {
        state_.wait(kAwaited, std::memory_order_relaxed);
    }
}

void Lock::WakeOne() noexcept {
    state_.notify_one();
}

void RecursiveLock::Enter() {
    const std::uint32_t self = CurrentThreadId();
    if (owner_.load(std::memory_order_relaxed) != self) {
        lock_.lock();
        owner_.store(self, std::memory_order_relaxed);
    }
    ++depth_;
}

void RecursiveLock::Leave() {
    if (--depth_ != 0) return;
    owner_.store(0, std::memory_order_relaxed);
    lock_.unlock();
}

}  // namespace zelkor::platform
