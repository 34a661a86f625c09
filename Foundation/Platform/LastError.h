// The calling thread's last system error, in the numbers of Win32, and the English text of each.
//
// Every service of the ground that can fail sets it; none resets it on success unless it says so.
// Threads: each thread has its own number. Nothing here allocates except SystemText's result.
#ifndef FOUNDATION_PLATFORM_LASTERROR_H
#define FOUNDATION_PLATFORM_LASTERROR_H

#include <cstdint>
#include <string_view>

#include "Foundation/Platform/Export.h"

namespace zelkor::platform {

// The numbers that the library itself tests for or sets; any other Win32 number may occur.
inline constexpr std::uint32_t kErrorSuccess = 0;
inline constexpr std::uint32_t kErrorFileNotFound = 2;
inline constexpr std::uint32_t kErrorPathNotFound = 3;
inline constexpr std::uint32_t kErrorTooManyOpenFiles = 4;
inline constexpr std::uint32_t kErrorAccessDenied = 5;
inline constexpr std::uint32_t kErrorInvalidHandle = 6;
inline constexpr std::uint32_t kErrorNotEnoughMemory = 8;
inline constexpr std::uint32_t kErrorInvalidDrive = 15;
inline constexpr std::uint32_t kErrorNotSameDevice = 17;
inline constexpr std::uint32_t kErrorNoMoreFiles = 18;
inline constexpr std::uint32_t kErrorNotReady = 21;
inline constexpr std::uint32_t kErrorSeek = 25;
inline constexpr std::uint32_t kErrorWriteFault = 29;
inline constexpr std::uint32_t kErrorReadFault = 30;
inline constexpr std::uint32_t kErrorGenFailure = 31;
inline constexpr std::uint32_t kErrorSharingViolation = 32;
inline constexpr std::uint32_t kErrorLockViolation = 33;
inline constexpr std::uint32_t kErrorFileExists = 80;
inline constexpr std::uint32_t kErrorInvalidParameter = 87;
inline constexpr std::uint32_t kErrorDiskFull = 112;
inline constexpr std::uint32_t kErrorInsufficientBuffer = 122;
inline constexpr std::uint32_t kErrorInvalidName = 123;
inline constexpr std::uint32_t kErrorNegativeSeek = 131;
inline constexpr std::uint32_t kErrorDirNotEmpty = 145;
inline constexpr std::uint32_t kErrorNotLocked = 158;
inline constexpr std::uint32_t kErrorAlreadyExists = 183;
inline constexpr std::uint32_t kErrorFilenameExceedsRange = 206;
inline constexpr std::uint32_t kErrorBadFileType = 222;
inline constexpr std::uint32_t kErrorFileTooLarge = 223;
inline constexpr std::uint32_t kErrorDirectory = 267;
inline constexpr std::uint32_t kErrorInvalidAddress = 487;
inline constexpr std::uint32_t kErrorInvalidFlags = 1004;
inline constexpr std::uint32_t kErrorFileInvalid = 1006;
inline constexpr std::uint32_t kErrorNoUnicodeTranslation = 1113;
inline constexpr std::uint32_t kErrorUserMappedFile = 1224;

[[nodiscard]] ZELKOR_API std::uint32_t LastError() noexcept;
ZELKOR_API void SetLastError(std::uint32_t number) noexcept;

// The system's English message for a Win32 error number or a common HRESULT, ending in CR LF as the
// system ends them; empty when the system has no text for the number. Borrowed, constant.
[[nodiscard]] ZELKOR_API std::u16string_view SystemText(std::uint32_t number) noexcept;

}  // namespace zelkor::platform

#endif
