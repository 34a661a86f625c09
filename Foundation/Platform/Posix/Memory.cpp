#include "Foundation/Platform/Memory.h"

#include <pthread.h>

#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <new>

#include "Foundation/Platform/Posix/Internal/ThreadMemory.h"

namespace zelkor::platform {

namespace detail {

ZELKOR_THREAD_LOCAL ThreadMemory* thread_memory = nullptr;

namespace {

// Whether the thread does without memory of its own: it is ending, or has no key to be told by when
// it ends. Asked for once, not with each allocation.
ZELKOR_THREAD_LOCAL bool thread_does_without = false;

// All threads that have memory of their own, and what is left of those that ended.
constinit std::mutex threads_mutex;
constinit ThreadMemory* threads = nullptr;
constinit std::atomic<std::int64_t> shared_live{0};
constinit pthread_key_t exit_key = 0;
constinit bool exit_key_made = false;

constinit std::atomic<MemoryErrorHandler> error_handler{nullptr};

void DetachThread(void* memory) noexcept {
    auto* const mine = static_cast<ThreadMemory*>(memory);
    thread_memory = nullptr;
    thread_does_without = true;
    EmptyCaches(mine);
    if (mine->error_info != nullptr) {
        std::free(mine->error_info);
        mine->Count(-1);
    }
    const std::lock_guard lock(threads_mutex);
    CountShared(mine->live.load(std::memory_order_relaxed));
    (mine->previous != nullptr ? mine->previous->next : threads) = mine->next;
    if (mine->next != nullptr) mine->next->previous = mine->previous;
    std::free(mine);
}

}  // namespace

ThreadMemory* AttachThread() noexcept {
    if (thread_does_without) return nullptr;
    void* const place = std::malloc(sizeof(ThreadMemory));
    if (place == nullptr) return nullptr;
    auto* const mine = new (place) ThreadMemory;
    const std::lock_guard lock(threads_mutex);
    if (!exit_key_made) exit_key_made = pthread_key_create(&exit_key, DetachThread) == 0;
    if (!exit_key_made || pthread_setspecific(exit_key, mine) != 0) {
        std::free(place);
        thread_does_without = true;
        return nullptr;
    }
    mine->next = threads;
    if (threads != nullptr) threads->previous = mine;
    threads = mine;
    return thread_memory = mine;
}

void DetachCallingThread() noexcept {
    if (thread_memory != nullptr) DetachThread(thread_memory);
    thread_does_without = true;
    const std::lock_guard lock(threads_mutex);
    if (exit_key_made) pthread_key_delete(exit_key);
    exit_key_made = false;
}

void CountShared(std::int64_t change) noexcept {
    shared_live.fetch_add(change, std::memory_order_relaxed);
}

bool AskHandler() {
    const MemoryErrorHandler handler = error_handler.load(std::memory_order_acquire);
    const MemoryError error{kMemoryExhausted};
    return handler != nullptr && handler(&error);
}

}  // namespace detail

namespace {

// No request of the library comes near it; beyond it some heaps end the process instead of failing.
constexpr std::size_t kLargest = static_cast<std::size_t>(-1) >> (sizeof(void*) == 8 ? 26 : 1);

std::size_t Rounded(std::size_t size) noexcept {
    return std::max<std::size_t>((size + 3) & ~std::size_t{3}, 4);
}

// Tries `obtain` until it answers a block or the handler gives up.
template <typename Obtain>
void* Obtained(std::size_t size, Obtain obtain) {
    detail::ThreadMemory* const mine = detail::Mine();
    do {
        if ((mine != nullptr && !mine->Permits()) || size > kLargest) continue;
        if (void* const block = obtain(Rounded(size))) {
            detail::CountLive(mine, 1);
            return block;
        }
    } while (detail::AskHandler());
    return nullptr;
}

}  // namespace

MemoryErrorHandler SetMemoryErrorHandler(MemoryErrorHandler handler) noexcept {
    return detail::error_handler.exchange(handler, std::memory_order_acq_rel);
}

void ReportExhausted() {
    (void)detail::AskHandler();
}

void* Allocate(std::size_t size) {
    return Obtained(size, [](std::size_t rounded) { return std::malloc(rounded); });
}

void* TryAllocate(std::size_t size) noexcept {
    detail::ThreadMemory* const mine = detail::Mine();
    if ((mine != nullptr && !mine->Permits()) || size > kLargest) return nullptr;
    void* const block = std::malloc(Rounded(size));
    if (block != nullptr) detail::CountLive(mine, 1);
    return block;
}

void* AllocateZeroed(std::size_t size) {
    return Obtained(size, [](std::size_t rounded) { return std::calloc(rounded, 1); });
}

void* Reallocate(void* block, std::size_t size) {
    void* const result =
        Obtained(size, [block](std::size_t rounded) { return std::realloc(block, rounded); });
    if (result != nullptr && block != nullptr) detail::CountLive(detail::Mine(), -1);
    return result;
}

void Free(void* block) noexcept {
    if (block == nullptr) return;
    detail::CountLive(detail::Mine(), -1);
    std::free(block);
}

void FailAllocation(std::uint64_t countdown, bool sticky) noexcept {
    detail::ThreadMemory* const mine = detail::Mine();
    if (mine == nullptr) return;
    mine->countdown = countdown;
    mine->sticky = sticky;
}

std::uint64_t AllocationCount() noexcept {
    const detail::ThreadMemory* const mine = detail::Mine();
    return mine != nullptr ? mine->tries : 0;
}

std::int64_t LiveBlocks() noexcept {
    const std::lock_guard lock(detail::threads_mutex);
    std::int64_t sum = detail::shared_live.load(std::memory_order_relaxed);
    for (const auto* thread = detail::threads; thread != nullptr; thread = thread->next) {
        sum += thread->live.load(std::memory_order_relaxed);
    }
    return sum;
}

}  // namespace zelkor::platform
