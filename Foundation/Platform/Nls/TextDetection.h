// Whether a block of bytes is likely UTF-16 text: the platform's IsTextUnicode tests.
#ifndef FOUNDATION_PLATFORM_NLS_TEXTDETECTION_H
#define FOUNDATION_PLATFORM_NLS_TEXTDETECTION_H

#include <cstddef>
#include <cstdint>

#include "Foundation/Platform/Export.h"

namespace platform {

// The tests. "Reverse" means big-endian units.
enum : std::uint32_t {
    kUnicodeAscii16 = 0x1,     // every unit is U+0001 to U+007F
    kUnicodeStatistics = 0x2,  // low bytes vary far more than high bytes; never for ASCII bytes
    kUnicodeControls = 0x4,    // holds a tab, line end, blank or ideographic blank
    kUnicodeSignature = 0x8,   // begins with the byte-order mark FF FE
    kUnicodeReverseAscii16 = 0x10,
    kUnicodeReverseStatistics = 0x20,
    kUnicodeReverseControls = 0x40,
    kUnicodeReverseSignature = 0x80,
    kUnicodeIllegalChars = 0x100,  // holds U+0000, U+FFFE (not in front), U+FFFF or bytes 0A 0D
    kUnicodeOddLength = 0x200,
    kUnicodeNullBytes = 0x1000,  // holds a zero byte
    kUnicodeAllTests = 0xFFFFFFFF,
};

// Runs the requested tests over `size` bytes and returns those that hold; 0 below two bytes.
[[nodiscard]] FOUNDATION_API std::uint32_t UnicodeTests(const void* data, std::size_t size,
                                                        std::uint32_t requested) noexcept;

// The verdict over the requested tests: true for a byte-order mark in either order; otherwise false
// when a test for "not UTF-16" (illegal characters, odd length) or a reverse test holds, and true
// when any other test holds.
[[nodiscard]] FOUNDATION_API bool IsTextUnicode(const void* data, std::size_t size,
                                                std::uint32_t requested) noexcept;

}  // namespace platform

#endif
