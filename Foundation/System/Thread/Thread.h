// CT_Thread: how a thread finds its own thread object.
//
// The library keeps one thread-local slot with the CT_Thread of each thread. The thread that loaded
// the library has the static initial-thread object; threads that the library did not start have
// none. Errors: records none. Threads: any.
#ifndef FOUNDATION_SYSTEM_THREAD_THREAD_H
#define FOUNDATION_SYSTEM_THREAD_THREAD_H

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class ZELKOR_API CT_Thread {
public:
    CT_Thread(const CT_Thread&) = delete;
    CT_Thread& operator=(const CT_Thread&) = delete;

    // The calling thread's object, or null.
    [[nodiscard]] static CT_Thread* spco_GetCurrentThread();

    // The thread's handle; null when there is none, invalid after the slot was freed.
    [[nodiscard]] HANDLE h_GetHandle() const { return handle_; }

    // Called when the library is loaded and unloaded. Allocating stores the initial-thread object
    // for the calling thread and gives it a handle of that thread; FALSE, with nothing changed,
    // when no slot can be had. Freeing closes the handle.
    static BOOL sb_AllocTlsSlot();
    static void sv_FreeTlsSlot();

private:
    constexpr CT_Thread() = default;

    HANDLE handle_ = nullptr;
    static CT_Thread sco_InitialThread;
};

#endif
