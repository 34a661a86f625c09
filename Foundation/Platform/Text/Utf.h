// UTF-8 and UTF-16 kernels, the fast paths beneath code page 65001 and the text readers and
// writers. Kernels for the widest instruction set the processor has are chosen once, at run time;
// the SSE2 and the plain ones give the same answers.
//
// Threads: any. Nothing here allocates, fails through LastError or reads outside [text,
// text+length).
#ifndef FOUNDATION_PLATFORM_TEXT_UTF_H
#define FOUNDATION_PLATFORM_TEXT_UTF_H

#include <cstddef>

#include "Foundation/Platform/Export.h"

namespace zelkor::platform {

// What a kernel did: how much of the source it took and how many elements it wrote. `taken` stops
// before the first ill-formed or cut sequence (decoding), before the first unpaired surrogate
// (encoding), or where the next character no longer fits the output.
struct UtfProgress {
    std::size_t taken;
    std::size_t written;
};

// Converts the well-formed beginning of the text. `out` holds `capacity` elements; bytes of `out`
// behind `written` and within `capacity` may be overwritten.
[[nodiscard]] ZELKOR_API UtfProgress Utf8ToUtf16(const char* text, std::size_t length,
                                                 char16_t* out, std::size_t capacity) noexcept;
[[nodiscard]] ZELKOR_API UtfProgress Utf16ToUtf8(const char16_t* text, std::size_t length,
                                                 char* out, std::size_t capacity) noexcept;

// Sizes of the conversion of the well-formed beginning: `taken` of the source, `written` needed.
[[nodiscard]] ZELKOR_API UtfProgress Utf16LengthOfUtf8(const char* text,
                                                       std::size_t length) noexcept;
[[nodiscard]] ZELKOR_API UtfProgress Utf8LengthOfUtf16(const char16_t* text,
                                                       std::size_t length) noexcept;

// Number of leading bytes (units) below 0x80.
[[nodiscard]] ZELKOR_API std::size_t AsciiPrefix(const char* text, std::size_t length) noexcept;
[[nodiscard]] ZELKOR_API std::size_t AsciiPrefix(const char16_t* text, std::size_t length) noexcept;

// Copies a run of ASCII, widening or narrowing; every source element is below 0x80.
ZELKOR_API void WidenAscii(const char* text, std::size_t length, char16_t* out) noexcept;
ZELKOR_API void NarrowAscii(const char16_t* text, std::size_t length, char* out) noexcept;

// Test and benchmark seam: caps the kernels at an instruction set (0 plain, 1 SSE2, 2 SSSE3/SSE4.1,
// 3 AVX2, above: no cap) and returns the level in use: the lower of cap and processor.
ZELKOR_API int LimitUtfKernels(int level) noexcept;

}  // namespace zelkor::platform

#endif
