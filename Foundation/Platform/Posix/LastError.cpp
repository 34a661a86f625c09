#include "Foundation/Platform/LastError.h"

#include "Foundation/Platform/ThreadLocal.h"

namespace zelkor::platform {

namespace {
ZELKOR_THREAD_LOCAL std::uint32_t last_error = kErrorSuccess;
}  // namespace

std::uint32_t LastError() noexcept {
    return last_error;
}

void SetLastError(std::uint32_t number) noexcept {
    last_error = number;
}

}  // namespace zelkor::platform
