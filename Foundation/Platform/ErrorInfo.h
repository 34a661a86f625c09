// The calling thread's component error object: a description that a failing component leaves beside
// its HRESULT for the caller to pick up.
#ifndef FOUNDATION_PLATFORM_ERRORINFO_H
#define FOUNDATION_PLATFORM_ERRORINFO_H

#include "Foundation/Platform/Export.h"

namespace zelkor::platform {

// Leaves a description for the thread, in place of the one before; null takes it away. The text is
// copied. FALSE when there is no memory for it.
ZELKOR_API bool SetErrorInfo(const char16_t* description) noexcept;

// Takes the thread's description away from it: the caller frees it with platform::Free. Null when
// there is none.
[[nodiscard]] ZELKOR_API char16_t* TakeErrorInfo() noexcept;

}  // namespace zelkor::platform

#endif
