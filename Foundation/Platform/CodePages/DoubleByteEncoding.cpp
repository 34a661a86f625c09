// Double-byte pages, units to bytes: one table load chain per unit and no branch on its size.
// Blocks of 16 ASCII units are narrowed as they are.
#include <algorithm>

#include "Foundation/Platform/CodePages/Internal/CodePageDetail.h"
#include "Foundation/Platform/Text/Internal/SimdBlocks.h"

namespace zelkor::platform::nls {
namespace {

constexpr int kBlockUnits = 16;

// Looks codes up. Held by value where bytes are written: stores of bytes might change what a
// pointer leads to, as far as a compiler knows.
class CodeSource {
public:
    CodeSource(const TablePage& page, std::uint16_t default_code) noexcept
        : view_(page), default_code_(default_code) {}

    std::uint16_t operator()(char16_t unit) noexcept {
        const std::uint16_t code = view_.Code(unit);
        if (code != kMissingCode) [[likely]]
            return code;
        used_default_ = true;
        return default_code_;
    }

    [[nodiscard]] bool UsedDefault() const noexcept { return used_default_; }

private:
    DoubleByteView view_;
    std::uint16_t default_code_;
    bool used_default_ = false;
};

std::size_t SizeOf(std::uint16_t code) noexcept {
    return IsPairCode(code) ? 2 : 1;
}

#if FOUNDATION_SSE2

// Two blocks of units, if all of them are ASCII; every page encodes those as they are.
class AsciiUnits {
public:
    explicit AsciiUnits(const char16_t* text) noexcept
        : first_(LoadBlock(text)), second_(LoadBlock(text + kBlock / 2)) {}

    explicit operator bool() const noexcept {
        const __m128i high = _mm_and_si128(_mm_or_si128(first_, second_),
                                           _mm_set1_epi16(static_cast<short>(0xFF80)));
        return _mm_movemask_epi8(_mm_cmpeq_epi16(high, _mm_setzero_si128())) == 0xFFFF;
    }
    void Narrow(unsigned char* out) const noexcept {
        StoreBlock(_mm_packus_epi16(first_, second_), out);
    }

private:
    __m128i first_;
    __m128i second_;
};

#else

struct AsciiUnits {
    explicit AsciiUnits(const char16_t*) noexcept {}
    explicit operator bool() const noexcept { return false; }
    void Narrow(unsigned char*) const noexcept {}
};

#endif

// Converts while text and room last for whole blocks.
void EncodeBlocks(CodeSource& source, const Encoding& call, std::size_t& taken,
                  std::size_t& written) noexcept {
    CodeSource code_of = source;
    const char16_t* text = call.text;
    const char16_t* const end = call.text + call.length;
    unsigned char* out = call.out;
    const unsigned char* const limit = call.out + call.capacity;
    while (end - text >= kBlockUnits && limit - out >= 2 * kBlockUnits) {
        if (const AsciiUnits ascii(text); ascii) {
            ascii.Narrow(out);
            text += kBlockUnits;
            out += kBlockUnits;
            continue;
        }
        for (int i = 0; i < kBlockUnits / 2; ++i) {
            const std::uint16_t code = code_of(*text++);
            out[0] = FirstByte(code);
            out[1] = SecondByte(code);
            out += SizeOf(code);
        }
    }
    source = code_of;
    taken = static_cast<std::size_t>(text - call.text);
    written = static_cast<std::size_t>(out - call.out);
}

std::size_t Measure(CodeSource& code_of, const Encoding& call) noexcept {
    std::size_t size = 0;
    std::size_t at = 0;
    while (at < call.length) {
        if (call.length - at >= kBlockUnits && AsciiUnits(call.text + at)) {
            at += kBlockUnits;
            size += kBlockUnits;
            continue;
        }
        const std::size_t end = std::min(call.length, at + kBlockUnits / 2);
        for (; at < end; ++at) size += SizeOf(code_of(call.text[at]));
    }
    return size;
}

Outcome Write(CodeSource& code_of, const Encoding& call) noexcept {
    std::size_t at = 0;
    std::size_t count = 0;
    EncodeBlocks(code_of, call, at, count);
    for (; at < call.length; ++at) {
        const std::uint16_t code = code_of(call.text[at]);
        if (call.capacity - count < SizeOf(code)) return {count, kErrorInsufficientBuffer};
        call.out[count++] = FirstByte(code);
        if (IsPairCode(code)) call.out[count++] = SecondByte(code);
    }
    return {count, kErrorSuccess};
}

}  // namespace

Outcome EncodeDoubleByte(const TablePage& page, Encoding& call) noexcept {
    CodeSource code_of(page, call.default_code);
    const Outcome outcome =
        call.out == nullptr ? Outcome{Measure(code_of, call), kErrorSuccess} : Write(code_of, call);
    call.used_default = code_of.UsedDefault();
    return outcome;
}

}  // namespace zelkor::platform::nls
