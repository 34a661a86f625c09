#include "Foundation/Platform/Nls/TextDetection.h"

#include <algorithm>
#include <cstdlib>
#include <span>

namespace platform {

namespace {

using Bytes = std::span<const unsigned char>;

// The units of a block in one byte order; an odd last byte is left out.
struct Units {
    Bytes bytes;
    bool reverse;

    [[nodiscard]] std::size_t count() const { return bytes.size() / 2; }
    [[nodiscard]] unsigned int low(std::size_t i) const { return bytes[2 * i + (reverse ? 1 : 0)]; }
    [[nodiscard]] unsigned int high(std::size_t i) const {
        return bytes[2 * i + (reverse ? 0 : 1)];
    }
    [[nodiscard]] unsigned int operator[](std::size_t i) const { return high(i) << 8 | low(i); }

    template <typename Test>
    [[nodiscard]] bool any(Test test) const {
        for (std::size_t i = 0; i < count(); ++i) {
            if (test((*this)[i])) return true;
        }
        return false;
    }
};

bool IsAscii16(const Units& units) {
    return !units.any([](unsigned int unit) { return unit == 0 || unit > 0x7F; });
}

// The ideographic blank counts in the little-endian order only: reversed it is the digit 0.
bool HasControls(const Units& units) {
    return units.any([&units](unsigned int unit) {
        return unit == 0x09 || unit == 0x0A || unit == 0x0D || unit == 0x20 ||
               (unit == 0x3000 && !units.reverse);
    });
}

bool HasIllegalUnits(const Units& units) {
    const auto first = units[0];
    return first == 0xFFFF || first == 0 || first == 0x0D0A ||
           Units{units.bytes.subspan(2), units.reverse}.any([](unsigned int unit) {
               return unit == 0 || unit == 0x0D0A || unit == 0xFFFE || unit == 0xFFFF;
           });
}

bool IsAscii(const Bytes& bytes) {
    return std::ranges::all_of(bytes, [](unsigned char byte) { return byte > 0 && byte < 0x80; });
}

// Text of one script keeps its high bytes steady while its low bytes move about. 8-bit ASCII text
// may do so by chance and is left out.
bool VariesLikeText(const Units& units) {
    if (IsAscii(units.bytes)) return false;
    long low = 0;
    long high = 0;
    for (std::size_t i = 1; i < std::min<std::size_t>(units.count(), 256); ++i) {
        low += std::abs(static_cast<long>(units.low(i)) - static_cast<long>(units.low(i - 1)));
        high += std::abs(static_cast<long>(units.high(i)) - static_cast<long>(units.high(i - 1)));
    }
    return 3 * high < low;
}

}  // namespace

std::uint32_t UnicodeTests(const void* data, std::size_t size, std::uint32_t requested) noexcept {
    if (size < 2) return 0;
    const Bytes bytes(static_cast<const unsigned char*>(data), size);
    const Units forward{bytes, false};
    const Units reverse{bytes, true};
    std::uint32_t held = 0;
    const auto run = [&](std::uint32_t test, auto&& holds) {
        if ((requested & test) != 0 && holds()) held |= test;
    };
    run(kUnicodeAscii16, [&] { return IsAscii16(forward); });
    run(kUnicodeStatistics, [&] { return VariesLikeText(forward); });
    run(kUnicodeControls, [&] { return HasControls(forward); });
    run(kUnicodeSignature, [&] { return forward[0] == 0xFEFF; });
    run(kUnicodeReverseAscii16, [&] { return IsAscii16(reverse); });
    run(kUnicodeReverseStatistics, [&] { return VariesLikeText(reverse); });
    run(kUnicodeReverseControls, [&] { return HasControls(reverse); });
    run(kUnicodeReverseSignature, [&] { return reverse[0] == 0xFEFF; });
    run(kUnicodeIllegalChars, [&] { return HasIllegalUnits(forward); });
    run(kUnicodeOddLength, [&] { return size % 2 != 0; });
    run(kUnicodeNullBytes, [&] { return std::ranges::find(bytes, 0) != bytes.end(); });
    return held;
}

bool IsTextUnicode(const void* data, std::size_t size, std::uint32_t requested) noexcept {
    constexpr std::uint32_t kMarks = kUnicodeSignature | kUnicodeReverseSignature;
    constexpr std::uint32_t kReverse =
        kUnicodeReverseAscii16 | kUnicodeReverseStatistics | kUnicodeReverseControls;
    const std::uint32_t held = UnicodeTests(data, size, requested);
    if ((held & kMarks) != 0) return true;
    if ((held & (kUnicodeIllegalChars | kUnicodeOddLength | kReverse)) != 0) return false;
    return held != 0;
}

}  // namespace platform
