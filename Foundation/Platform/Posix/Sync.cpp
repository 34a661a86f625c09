#include "Foundation/Platform/Sync.h"

#include "Foundation/Platform/Threads.h"

namespace zelkor::platform {

void RecursiveLock::Enter() {
    const std::uint32_t self = CurrentThreadId();
    if (owner_.load(std::memory_order_relaxed) != self) {
        mutex_.lock();
        owner_.store(self, std::memory_order_relaxed);
    }
    ++depth_;
}

void RecursiveLock::Leave() {
    if (--depth_ != 0) return;
    owner_.store(0, std::memory_order_relaxed);
    mutex_.unlock();
}

}  // namespace zelkor::platform
