// The sets of kernels behind Utf.h, one for each instruction set; Utf.cpp chooses among them.
#ifndef FOUNDATION_PLATFORM_TEXT_INTERNAL_UTFKERNELS_H
#define FOUNDATION_PLATFORM_TEXT_INTERNAL_UTFKERNELS_H

#include <cstddef>

#include "Foundation/Platform/Text/Utf.h"

namespace zelkor::platform::detail {

// One function for each of those in Utf.h, with the same contracts.
struct UtfKernels {
    UtfProgress (*decode)(const char* text, std::size_t length, char16_t* out,
                          std::size_t capacity) noexcept;
    UtfProgress (*encode)(const char16_t* text, std::size_t length, char* out,
                          std::size_t capacity) noexcept;
    UtfProgress (*decoded_length)(const char* text, std::size_t length) noexcept;
    UtfProgress (*encoded_length)(const char16_t* text, std::size_t length) noexcept;
    std::size_t (*ascii_bytes)(const char* text, std::size_t length) noexcept;
    std::size_t (*ascii_units)(const char16_t* text, std::size_t length) noexcept;
    void (*widen)(const char* text, std::size_t length, char16_t* out) noexcept;
    void (*narrow)(const char16_t* text, std::size_t length, char* out) noexcept;
};

extern const UtfKernels kPlainKernels;
extern const UtfKernels kSse2Kernels;
extern const UtfKernels kSse41Kernels;
extern const UtfKernels kAvx2Kernels;

}  // namespace zelkor::platform::detail

#endif
