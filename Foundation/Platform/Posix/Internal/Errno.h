// From the system's error numbers to those of Win32 and of the C runtime. Only for this backend.
#ifndef FOUNDATION_PLATFORM_POSIX_INTERNAL_ERRNO_H
#define FOUNDATION_PLATFORM_POSIX_INTERNAL_ERRNO_H

#include <cerrno>
#include <cstdint>

namespace zelkor::platform::posix {

// The Win32 number; 31 (a device does not function) for one without a counterpart.
[[nodiscard]] std::uint32_t Win32FromErrno(int number) noexcept;

// The C runtime's number; 22 (invalid argument) for one that it does not know.
[[nodiscard]] int RuntimeFromErrno(int number) noexcept;

// Sets the last error, and answers false for the caller to return.
bool Fail(std::uint32_t win32_number) noexcept;
bool FailWithErrno(int number = errno) noexcept;

// The call again while a signal interrupts it.
template <typename Call>
auto Retry(Call call) noexcept {
    auto result = call();
    while (result == -1 && errno == EINTR) result = call();
    return result;
}

}  // namespace zelkor::platform::posix

#endif
