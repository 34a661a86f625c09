// Runs of ASCII over a vector type: their length, widening and narrowing. Ends of runs overlap the
// vector before them where there is one.
#ifndef FOUNDATION_PLATFORM_TEXT_INTERNAL_UTFASCII_H
#define FOUNDATION_PLATFORM_TEXT_INTERNAL_UTFASCII_H

#include "Foundation/Platform/Text/Internal/UtfDecode.h"
#include "Foundation/Platform/Text/Internal/UtfEncode.h"
#include "Foundation/Platform/Text/Internal/UtfKernels.h"

namespace zelkor::platform::detail {
namespace {

template <class V>
UTF_KERNEL std::size_t AsciiBytes(const char* text, std::size_t length) noexcept {
    using Half = typename V::Half;
    std::size_t count = 0;
    while (length - count >= kBlock && AreAscii<V>(text + count)) count += kBlock;
    while (count < length && length >= Half::kBytes) {
        if (length - count < Half::kBytes) count = length - Half::kBytes;
        const std::uint32_t others = Half::TopBits(Half::Load(text + count));
        if (others != 0) return count + static_cast<std::size_t>(__builtin_ctz(others));
        count += Half::kBytes;
    }
    while (count < length && Byte(text[count]) < 0x80) ++count;
    return count;
}

template <class V>
UTF_KERNEL std::size_t AsciiUnits(const char16_t* text, std::size_t length) noexcept {
    using Half = typename V::Half;
    std::size_t count = 0;
    while (length - count >= kBlock && AreAscii<V>(text + count, kBlock)) count += kBlock;
    while (count < length && length >= Half::kUnits) {
        if (length - count < Half::kUnits) count = length - Half::kUnits;
        const Sized<Half> source(Half::Load(text + count));
        const std::uint32_t others = Half::TopBits(source.one) ^ Half::kAllBits;
        if (others != 0) return count + static_cast<std::size_t>(__builtin_ctz(others)) / 2;
        count += Half::kUnits;
    }
    while (count < length && text[count] < 0x80) ++count;
    return count;
}

template <class V>
UTF_KERNEL void Widen(const char* text, std::size_t length, char16_t* out) noexcept {
    using Half = typename V::Half;
    std::size_t at = 0;
    for (; length - at >= V::kBytes; at += V::kBytes) V::Widen(V::Load(text + at), out + at);
    while (at < length && length >= Half::kBytes) {
        if (length - at < Half::kBytes) at = length - Half::kBytes;
        Half::Widen(Half::Load(text + at), out + at);
        at += Half::kBytes;
    }
    for (; at < length; ++at) out[at] = static_cast<unsigned char>(text[at]);
}

template <class V>
UTF_KERNEL void Narrow(const char16_t* text, std::size_t length, char* out) noexcept {
    using Half = typename V::Half;
    std::size_t at = 0;
    for (; length - at >= V::kBytes; at += V::kBytes) {
        V::Narrow(V::Load(text + at), V::Load(text + at + V::kUnits), out + at);
    }
    while (at < length && length >= Half::kBytes) {
        if (length - at < Half::kBytes) at = length - Half::kBytes;
        Half::Narrow(Half::Load(text + at), Half::Load(text + at + Half::kUnits), out + at);
        at += Half::kBytes;
    }
    for (; at < length; ++at) out[at] = static_cast<char>(text[at]);
}

template <class V>
constexpr UtfKernels KernelsOver() {
    return {Decode<V>,     Encode<V>,     DecodedLength<V>, EncodedLength<V>,
            AsciiBytes<V>, AsciiUnits<V>, Widen<V>,         Narrow<V>};
}

}  // namespace
}  // namespace zelkor::platform::detail

#endif
