// Code pages: conversion between 8-bit text and UTF-16 by built-in strict tables and rules, and
// what the system knows about each page. No conversion goes through the C library's locale.
//
// Lengths are bytes (8-bit side) and UTF-16 units (wide side). Pages 0 to 3 stand for the
// configured ANSI, OEM, Macintosh and thread pages. Errors go to LastError. Threads: any.
#ifndef FOUNDATION_PLATFORM_NLS_CODEPAGES_H
#define FOUNDATION_PLATFORM_NLS_CODEPAGES_H

#include <cstddef>
#include <cstdint>

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

namespace platform {

enum : std::uint32_t {
    kPrecomposed = 0x1,          // decoding: accepted by table pages, changes nothing
    kComposite = 0x2,            // decoding: accepted by table pages, changes nothing
    kErrorOnInvalidChars = 0x8,  // decoding: an invalid or incomplete sequence fails, error 1113
    kWideErrorOnInvalidChars = 0x80,  // encoding to UTF-8: an unpaired surrogate fails, error 1113
    kSeparateChars = 0x20,            // encoding: accepted by table pages, changes nothing
    kNoBestFit = 0x400,  // encoding: accepted by table pages; mappings are strict anyway
};

// Decodes `length` bytes (negative: up to and including the zero byte) into `out`, which holds
// `capacity` units; capacity 0 asks for the number of units needed. Returns the units written or
// needed, 0 on failure with the last error set:
//   87    no text, length 0, a capacity without a buffer, or an unknown page
//   122   the result does not fit (what fits has been written)
//   1004  a flag that the page does not allow
//   1113  invalid text under kErrorOnInvalidChars
// Source and result must not overlap.
[[nodiscard]] FOUNDATION_API int MultiByteToWideChar(std::uint32_t page, std::uint32_t flags,
                                                     const char* text, int length, char16_t* out,
                                                     int capacity) noexcept;

// Encodes `length` units (negative: up to and including the zero unit) into `out`, which holds
// `capacity` bytes; capacity 0 asks for the bytes needed. A unit that the page lacks gives
// `default_char` (null: the page's own, one or two bytes, zero-terminated) and sets *used_default.
// Returns and errors as above; the algorithmic pages refuse default_char and used_default (87).
[[nodiscard]] FOUNDATION_API int WideCharToMultiByte(std::uint32_t page, std::uint32_t flags,
                                                     const char16_t* text, int length, char* out,
                                                     int capacity, const char* default_char,
                                                     BOOL* used_default) noexcept;

struct CodePageInfo {
    unsigned int max_char_size;  // bytes
    unsigned char default_char[2];
    unsigned char lead_bytes[12];  // (first, last) pairs, ended by a pair of zeros
};

// FALSE with last error 87 for a page the conversion service does not know.
FOUNDATION_API bool GetCodePageInfo(std::uint32_t page, CodePageInfo* info) noexcept;
[[nodiscard]] FOUNDATION_API bool IsValidCodePage(std::uint32_t page) noexcept;

// The configured pages: taken from the environment when the library loads (default 1252, 437,
// 10000); tests set them. The thread page is the ANSI page.
[[nodiscard]] FOUNDATION_API std::uint32_t AnsiCodePage() noexcept;
[[nodiscard]] FOUNDATION_API std::uint32_t OemCodePage() noexcept;
FOUNDATION_API void SetSystemCodePages(std::uint32_t ansi, std::uint32_t oem) noexcept;

}  // namespace platform

#endif
