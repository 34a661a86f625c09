#include "Foundation/Platform/LastError.h"

namespace platform {

namespace {
constinit thread_local std::uint32_t last_error = kErrorSuccess;
}  // namespace

std::uint32_t LastError() noexcept {
    return last_error;
}

void SetLastError(std::uint32_t number) noexcept {
    last_error = number;
}

}  // namespace platform
