// The calling thread's last system error, in the numbers of Win32, and the English text of each.
//
// Every service of the ground that can fail sets it; none resets it on success unless it says so.
// Threads: each thread has its own number. Nothing here allocates except SystemText's result.
#ifndef FOUNDATION_PLATFORM_LASTERROR_H
#define FOUNDATION_PLATFORM_LASTERROR_H

#include <cstdint>
#include <string_view>

#include "Foundation/Platform/Export.h"

namespace platform {

// The numbers that the library itself tests for or sets; any other Win32 number may occur.
enum : std::uint32_t {
    kErrorSuccess = 0,
    kErrorFileNotFound = 2,
    kErrorPathNotFound = 3,
    kErrorTooManyOpenFiles = 4,
    kErrorAccessDenied = 5,
    kErrorInvalidHandle = 6,
    kErrorNotEnoughMemory = 8,
    kErrorInvalidDrive = 15,
    kErrorNotSameDevice = 17,
    kErrorNoMoreFiles = 18,
    kErrorNotReady = 21,
    kErrorSeek = 25,
    kErrorWriteFault = 29,
    kErrorReadFault = 30,
    kErrorGenFailure = 31,
    kErrorSharingViolation = 32,
    kErrorLockViolation = 33,
    kErrorFileExists = 80,
    kErrorInvalidParameter = 87,
    kErrorDiskFull = 112,
    kErrorInsufficientBuffer = 122,
    kErrorInvalidName = 123,
    kErrorNegativeSeek = 131,
    kErrorDirNotEmpty = 145,
    kErrorNotLocked = 158,
    kErrorAlreadyExists = 183,
    kErrorFilenameExceedsRange = 206,
    kErrorBadFileType = 222,
    kErrorFileTooLarge = 223,
    kErrorDirectory = 267,
    kErrorInvalidAddress = 487,
    kErrorInvalidFlags = 1004,
    kErrorFileInvalid = 1006,
    kErrorNoUnicodeTranslation = 1113,
    kErrorUserMappedFile = 1224,
};

[[nodiscard]] FOUNDATION_API std::uint32_t LastError() noexcept;
FOUNDATION_API void SetLastError(std::uint32_t number) noexcept;

// The system's English message for a Win32 error number or a common HRESULT, ending in CR LF as the
// system ends them; empty when the system has no text for the number. Borrowed, constant.
[[nodiscard]] FOUNDATION_API std::u16string_view SystemText(std::uint32_t number) noexcept;

}  // namespace platform

#endif
