// The platform's data types that the public interface speaks of, under their usual names and with
// their usual layouts. Numbers keep their width on every system: 32-bit quantities are `unsigned
// int` or `int`, what the interface calls `unsigned long` is `std::uint32_t`.
#ifndef FOUNDATION_PLATFORM_TYPES_H
#define FOUNDATION_PLATFORM_TYPES_H

#include <cstdint>

// Truth value: 0 is false, everything else true; operations answer TRUE or FALSE.
using BOOL = int;
#ifndef TRUE
inline constexpr BOOL TRUE = 1;
#endif
#ifndef FALSE
inline constexpr BOOL FALSE = 0;
#endif

// Opaque handles. A null handle is "none"; INVALID_HANDLE_VALUE is the answer of a failed open.
using HANDLE = void*;
inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(std::intptr_t{-1});
struct HINSTANCE__;
using HINSTANCE = HINSTANCE__*;
struct HWND__;
using HWND = HWND__*;
struct HKEY__;
using HKEY = HKEY__*;
struct HDC__;
using HDC = HDC__*;

// A locale is a language in the low 16 bits and a sort order above; a language is a primary
// language in the low 10 bits and a sub-language in the 6 bits above.
using LCID = std::uint32_t;
using LANGID = std::uint16_t;
using HRESULT = std::int32_t;

struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
    bool operator==(const GUID&) const = default;
};

// 100-nanosecond intervals since 1601-01-01 UTC, as two halves.
struct FILETIME {
    std::uint32_t dwLowDateTime;
    std::uint32_t dwHighDateTime;
};

struct SYSTEMTIME {
    std::uint16_t wYear;
    std::uint16_t wMonth;      // 1 to 12
    std::uint16_t wDayOfWeek;  // 0 is Sunday
    std::uint16_t wDay;        // 1 to 31
    std::uint16_t wHour;
    std::uint16_t wMinute;
    std::uint16_t wSecond;
    std::uint16_t wMilliseconds;
};

struct BY_HANDLE_FILE_INFORMATION {
    std::uint32_t dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    std::uint32_t dwVolumeSerialNumber;
    std::uint32_t nFileSizeHigh;
    std::uint32_t nFileSizeLow;
    std::uint32_t nNumberOfLinks;
    std::uint32_t nFileIndexHigh;
    std::uint32_t nFileIndexLow;
};

// The fixed part of a module's version resource. Versions are four 16-bit numbers, the first in the
// upper half of the first word: 7.0.0.615 is 0x00070000 and 0x00000267.
struct VS_FIXEDFILEINFO {
    std::uint32_t dwSignature;  // 0xFEEF04BD
    std::uint32_t dwStrucVersion;
    std::uint32_t dwFileVersionMS;
    std::uint32_t dwFileVersionLS;
    std::uint32_t dwProductVersionMS;
    std::uint32_t dwProductVersionLS;
    std::uint32_t dwFileFlagsMask;
    std::uint32_t dwFileFlags;
    std::uint32_t dwFileOS;
    std::uint32_t dwFileType;  // 1 program, 2 library
    std::uint32_t dwFileSubtype;
    std::uint32_t dwFileDateMS;
    std::uint32_t dwFileDateLS;
};

#endif
