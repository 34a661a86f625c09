// Whether a block of bytes is likely UTF-16 text: the platform's IsTextUnicode tests.
//
// They look at the first 256 units at most. The last unit of a block of several may be a terminator
// and counts for nothing but the controls.
#ifndef FOUNDATION_PLATFORM_TEXT_TEXTDETECTION_H
#define FOUNDATION_PLATFORM_TEXT_TEXTDETECTION_H

#include <cstddef>
#include <cstdint>

#include "Foundation/Platform/Export.h"

namespace zelkor::platform {

// The tests. "Reverse" means big-endian units.
enum : std::uint32_t {
    kUnicodeAscii16 = 0x1,  // every unit is U+0001 to U+007F
    // Low bytes vary far more than high bytes. Bytes that could all be 8-bit text (09, 0A, 0C, 0D,
    // 1A, 1B, 20 to 7E, 80 to FF) never do, but for kana in units 30xx.
    kUnicodeStatistics = 0x2,
    kUnicodeControls = 0x4,   // holds a tab, line end, blank or ideographic blank
    kUnicodeSignature = 0x8,  // begins with the byte-order mark FF FE
    kUnicodeReverseAscii16 = 0x10,
    kUnicodeReverseStatistics = 0x20,
    kUnicodeReverseControls = 0x40,
    kUnicodeReverseSignature = 0x80,
    kUnicodeIllegalChars = 0x100,  // holds U+0000, U+FFFE (not in front), U+FFFF or bytes 0D 0A
    kUnicodeOddLength = 0x200,
    kUnicodeNullBytes = 0x1000,  // holds a zero byte
    kUnicodeAllTests = 0xFFFFFFFF,
};

// The requested tests that hold over `size` bytes; none below two bytes.
[[nodiscard]] ZELKOR_API std::uint32_t UnicodeTests(const void* data, std::size_t size,
                                                    std::uint32_t requested) noexcept;

// The verdict over the requested tests: true for a byte-order mark in either order; otherwise false
// when a test for "not UTF-16" (illegal characters, odd length) or a reverse test holds, and true
// when any other test holds.
[[nodiscard]] ZELKOR_API bool IsTextUnicode(const void* data, std::size_t size,
                                            std::uint32_t requested) noexcept;

}  // namespace zelkor::platform

#endif
