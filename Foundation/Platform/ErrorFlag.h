// The calling thread's error flag: the one thing of failure reporting that is asked after every
// call, and so reached without one.
#ifndef FOUNDATION_PLATFORM_ERRORFLAG_H
#define FOUNDATION_PLATFORM_ERRORFLAG_H

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/ThreadLocal.h"

namespace platform {

// Whether the thread has an error that is not ignored. The error manager alone sets it.
#if defined(_WIN32)  // where libraries cannot export thread-local variables
[[nodiscard]] FOUNDATION_API bool& ErrorFlag() noexcept;
#else
extern FOUNDATION_API FOUNDATION_THREAD_LOCAL bool error_flag;
[[nodiscard]] inline bool& ErrorFlag() noexcept {
    return error_flag;
}
#endif

}  // namespace platform

#endif
