// Chooses the kernels at the first call and hands every call to them.
#include "Foundation/Platform/Nls/Utf.h"

#include <atomic>

#include "Foundation/Platform/Nls/UtfKernels.h"

namespace platform {
namespace {

using detail::UtfKernels;

constinit std::atomic<const UtfKernels*> kernels_in_use{&detail::kPlainKernels};

// Relaxed is enough: the kernels themselves are constants.
const UtfKernels& Kernels() noexcept {
    return *kernels_in_use.load(std::memory_order_relaxed);
}

}  // namespace

UtfProgress Utf8ToUtf16(const char* text, std::size_t length, char16_t* out,
                        std::size_t capacity) noexcept {
    return Kernels().decode(text, length, out, capacity);
}

UtfProgress Utf16ToUtf8(const char16_t* text, std::size_t length, char* out,
                        std::size_t capacity) noexcept {
    return Kernels().encode(text, length, out, capacity);
}

UtfProgress Utf16LengthOfUtf8(const char* text, std::size_t length) noexcept {
    return Kernels().decoded_length(text, length);
}

UtfProgress Utf8LengthOfUtf16(const char16_t* text, std::size_t length) noexcept {
    return Kernels().encoded_length(text, length);
}

std::size_t AsciiPrefix(const char* text, std::size_t length) noexcept {
    return Kernels().ascii_bytes(text, length);
}

std::size_t AsciiPrefix(const char16_t* text, std::size_t length) noexcept {
    return Kernels().ascii_units(text, length);
}

void WidenAscii(const char* text, std::size_t length, char16_t* out) noexcept {
    Kernels().widen(text, length, out);
}

void NarrowAscii(const char16_t* text, std::size_t length, char* out) noexcept {
    Kernels().narrow(text, length, out);
}

int LimitUtfKernels(int) noexcept {
    return 0;
}

}  // namespace platform
