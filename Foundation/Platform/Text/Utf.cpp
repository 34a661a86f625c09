// Chooses the kernels at the first call and hands every call to them.
#include "Foundation/Platform/Text/Utf.h"

#include <algorithm>
#include <atomic>

#include "Foundation/Platform/Text/Internal/UtfKernels.h"

namespace zelkor::platform {
namespace {

using detail::UtfKernels;

constexpr int kNoLimit = 3;

// Null until the first call. Relaxed is enough: the kernels themselves are constants.
constinit std::atomic<const UtfKernels*> kernels_in_use{nullptr};

#if defined(__x86_64__)
// The highest level that this processor has.
int ProcessorLevel() noexcept {
    __builtin_cpu_init();
    const bool popcnt = __builtin_cpu_supports("popcnt") != 0;
    if (popcnt && __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi")) return 3;
    return popcnt && __builtin_cpu_supports("sse4.1") ? 2 : 1;
}

constexpr const UtfKernels* kLevels[] = {&detail::kPlainKernels, &detail::kSse2Kernels,
                                         &detail::kSse41Kernels, &detail::kAvx2Kernels};
#else
int ProcessorLevel() noexcept {
    return 0;
}

constexpr const UtfKernels* kLevels[] = {&detail::kPlainKernels};
#endif

const UtfKernels& Kernels() noexcept {
    const UtfKernels* kernels = kernels_in_use.load(std::memory_order_relaxed);
    if (kernels == nullptr) [[unlikely]] {
        LimitUtfKernels(kNoLimit);
        kernels = kernels_in_use.load(std::memory_order_relaxed);
    }
    return *kernels;
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

int LimitUtfKernels(int level) noexcept {
    const int used = std::clamp(level, 0, ProcessorLevel());
    kernels_in_use.store(kLevels[used], std::memory_order_relaxed);
    return used;
}

}  // namespace zelkor::platform
