#include "Foundation/System/Thread/Thread.h"

#include "Foundation/Platform/Files.h"
#include "Foundation/Platform/Threads.h"

namespace platform = zelkor::platform;

namespace {

constinit std::uint32_t thread_slot = platform::kNoThreadSlot;

}  // namespace

constinit CT_Thread CT_Thread::sco_InitialThread;

CT_Thread* CT_Thread::spco_GetCurrentThread() {
    return static_cast<CT_Thread*>(platform::ThreadSlot(thread_slot));
}

BOOL CT_Thread::sb_AllocTlsSlot() {
    const std::uint32_t slot = platform::AllocateThreadSlot();
    if (slot == platform::kNoThreadSlot) return FALSE;
    if (!platform::SetThreadSlot(slot, &sco_InitialThread)) {
        platform::FreeThreadSlot(slot);
        return FALSE;
    }
    thread_slot = slot;
    // Without a handle the library works as well: a thread finds its object through the slot.
    sco_InitialThread.handle_ = platform::OpenCurrentThread();
    return TRUE;
}

void CT_Thread::sv_FreeTlsSlot() {
    HANDLE& handle = sco_InitialThread.handle_;
    if (handle != nullptr && handle != INVALID_HANDLE_VALUE) platform::CloseHandle(handle);
    handle = INVALID_HANDLE_VALUE;
    platform::FreeThreadSlot(thread_slot);
    thread_slot = platform::kNoThreadSlot;
}
