// Code pages: conversion between 8-bit text and UTF-16 by built-in strict tables and rules, and
// what the system knows about each page. No conversion goes through the C library's locale.
//
// Served are
//   MS-DOS         437 708 720 737 775 850 852 855 857 858 860 to 866 869
//   Windows        874 932 936 949 950 1250 to 1258 1361
//   Macintosh      10000 to 10008 10010 10017 10021 10029 10079 10081 10082
//   ISO, Unix      646 and 20127 (US-ASCII) 20866 21866 (KOI8) 20932 51932 (EUC-JP) 20949 (EUC-KR)
//                  28591 to 28599 28603 28605
//   without table  42 (symbol) 50220 (ISO-2022-JP) 52936 (HZ) 54936 (GB18030) 65000 65001
// Not served are EBCDIC and the other pages of mainframes, 50221, 50222, 50225 to 50229 (further
// forms of ISO-2022), ISCII (57002 to 57011), T.61 and its kind. Pages 0 to 3 stand for the
// configured ANSI, OEM, Macintosh and thread pages. 1200 and 1201, UTF-16, are not conversion
// pages.
//
// Lengths are bytes (8-bit side) and UTF-16 units (wide side). Errors go to LastError, which
// success leaves alone. Threads: any. Nothing allocates.
#ifndef FOUNDATION_PLATFORM_CODEPAGES_CODEPAGES_H
#define FOUNDATION_PLATFORM_CODEPAGES_CODEPAGES_H

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

namespace zelkor::platform {

inline constexpr std::uint32_t kUtf8Page = 65001;

// Whether callers give a page the flags of the table pages. The pages of another make (symbol,
// ISO-2022, HZ, GB18030, ISCII, UTF-7; served or not) get none, 65001 at most its own.
[[nodiscard]] constexpr bool TakesTableFlags(std::uint32_t page) noexcept {
    constexpr auto kOthers = std::to_array<std::uint32_t>(
        {42, 50220, 50221, 50222, 50225, 50227, 50229, 52936, 54936, 65000, kUtf8Page});
    return !(page >= 57002 && page <= 57011) && !std::ranges::binary_search(kOthers, page);
}

// What the flags mean; which page allows which:
//                             decoding   encoding
//   table pages               0xF        0x6F0
//   54936, 65001              0x8        0x80
//   42, 50220, 52936, 65000   none       none
// Allowed flags without a name here change nothing either.
enum : std::uint32_t {
    kPrecomposed = 0x1,          // decoding: changes nothing, mappings are precomposed anyway
    kComposite = 0x2,            // decoding: changes nothing, letters are never decomposed
    kErrorOnInvalidChars = 0x8,  // decoding: an invalid or incomplete sequence fails, error 1113
    kWideErrorOnInvalidChars = 0x80,  // encoding: an unpaired surrogate fails, error 1113
    kSeparateChars = 0x20,            // encoding: changes nothing
    kNoBestFit = 0x400,               // encoding: changes nothing, mappings are strict anyway
};

// Decodes `length` bytes (negative: up to and including the zero byte) into `out`, which holds
// `capacity` units; capacity 0 asks for the number of units needed. Returns the units written or
// needed, 0 on failure with the last error set:
//   87    no text, length 0, a capacity without a buffer, or an unknown page
//   122   the result does not fit (what fits has been written)
//   1004  a flag that the page does not allow
//   1113  invalid text under kErrorOnInvalidChars; table pages find it behind what fits, too
//   0     none: a text of marks and escape sequences alone gives no unit
// Units that the page lacks a row for come out as its default unit (U+003F; U+30FB in the Japanese
// table pages; U+FFFD in 65001). Source and result must not overlap. Elements of `out` behind the
// result, up to its capacity, may be overwritten, here and below; so may all of it by a call that
// fails.
//
// No text has more units than bytes: a buffer of `length` units always holds the result, so that a
// caller who has one need not ask for the size first.
[[nodiscard]] ZELKOR_API int MultiByteToWideChar(std::uint32_t page, std::uint32_t flags,
                                                 const char* text, int length, char16_t* out,
                                                 int capacity) noexcept;

// Encodes `length` units (negative: up to and including the zero unit) into `out`, which holds
// `capacity` bytes; capacity 0 asks for the bytes needed. A unit that the page lacks, each half of
// a surrogate pair for itself, gives `default_char` (null: the page's own; one byte, or two in a
// double-byte page; zero-terminated) and sets *used_default, which is cleared otherwise.
// Returns and errors as above, and
//   87    default_char or used_default given for 42, 50220, 52936, 54936, 65000 or 65001
//   1113  a unit that page 42 lacks; an unpaired surrogate under kWideErrorOnInvalidChars
[[nodiscard]] ZELKOR_API int WideCharToMultiByte(std::uint32_t page, std::uint32_t flags,
                                                 const char16_t* text, int length, char* out,
                                                 int capacity, const char* default_char,
                                                 BOOL* used_default) noexcept;

// Bytes that hold the encoding of `units` units in the page, whatever the units; 0 for an unknown
// page. At most 6 * units + 3.
[[nodiscard]] ZELKOR_API std::size_t MaxBytes(std::uint32_t page, std::size_t units) noexcept;

struct CodePageInfo {
    unsigned int max_char_size;  // bytes
    unsigned char default_char[2];
    unsigned char lead_bytes[12];  // (first, last) pairs, ended by a pair of zeros
};

// False with last error 87 for a page that is not served (pages 0 to 3 are).
ZELKOR_API bool GetCodePageInfo(std::uint32_t page, CodePageInfo* info) noexcept;

// Whether the page is served under this number; false for pages 0 to 3.
[[nodiscard]] ZELKOR_API bool IsValidCodePage(std::uint32_t page) noexcept;

// The configured pages; the thread page is the ANSI page, the Macintosh page is 10000. They are
// those of the system's default locale (Locales.h), taken from the environment when the library is
// loaded: 1252 and 437 when there is none.
[[nodiscard]] ZELKOR_API std::uint32_t AnsiCodePage() noexcept;
[[nodiscard]] ZELKOR_API std::uint32_t OemCodePage() noexcept;

// Sets both pages for the process; (0, 0) puts back those found at load.
ZELKOR_API void SetSystemCodePages(std::uint32_t ansi, std::uint32_t oem) noexcept;

}  // namespace zelkor::platform

#endif
