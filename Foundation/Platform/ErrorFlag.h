// The calling thread's error flag: the one thing of failure reporting that is asked after every
// call, and so reached without one.
#ifndef FOUNDATION_PLATFORM_ERRORFLAG_H
#define FOUNDATION_PLATFORM_ERRORFLAG_H

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/ThreadLocal.h"

namespace zelkor::platform {

// Whether the thread has an error that is not ignored. The error manager alone sets it.
#if defined(_WIN32)  // where libraries cannot export thread-local variables
[[nodiscard]] ZELKOR_API bool& ErrorFlag() noexcept;
#else
extern ZELKOR_API ZELKOR_THREAD_LOCAL bool error_flag;
[[nodiscard]] inline bool& ErrorFlag() noexcept {
    return error_flag;
}
#endif

}  // namespace zelkor::platform

#endif
