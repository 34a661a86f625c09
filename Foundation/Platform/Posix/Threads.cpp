#include "Foundation/Platform/Threads.h"

#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>

#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Posix/Internal/Handles.h"
#include "Foundation/Platform/ThreadLocal.h"

namespace zelkor::platform {

namespace {

static_assert(sizeof(pthread_key_t) == sizeof(std::uint32_t));

ZELKOR_THREAD_LOCAL std::uint32_t thread_id = 0;
constinit std::atomic<bool> slots_fail{false};

}  // namespace

std::uint32_t CurrentThreadId() noexcept {
    if (thread_id == 0) thread_id = static_cast<std::uint32_t>(syscall(SYS_gettid));
    return thread_id;
}

HANDLE OpenCurrentThread() noexcept {
    posix::Object* const object = posix::NewObject(posix::Kind::kThread);
    if (object == nullptr) return nullptr;
    object->thread = CurrentThreadId();
    return posix::Publish(object);
}

std::uint32_t AllocateThreadSlot() noexcept {
    pthread_key_t key = 0;
    if (slots_fail.load(std::memory_order_relaxed) || pthread_key_create(&key, nullptr) != 0) {
        SetLastError(kErrorNotEnoughMemory);
        return kNoThreadSlot;
    }
    return key;
}

void FreeThreadSlot(std::uint32_t slot) noexcept {
    if (slot != kNoThreadSlot) pthread_key_delete(slot);
}

void* ThreadSlot(std::uint32_t slot) noexcept {
    return slot != kNoThreadSlot ? pthread_getspecific(slot) : nullptr;
}

bool SetThreadSlot(std::uint32_t slot, void* value) noexcept {
    if (slot != kNoThreadSlot && pthread_setspecific(slot, value) == 0) return true;
    SetLastError(slot == kNoThreadSlot ? kErrorInvalidParameter : kErrorNotEnoughMemory);
    return false;
}

void FailThreadSlots(bool fail) noexcept {
    slots_fail.store(fail, std::memory_order_relaxed);
}

}  // namespace zelkor::platform
