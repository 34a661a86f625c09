// The kernels for every x86-64 processor. Without byte shuffles, units and bytes are pushed
// together by storing all of them in turn and moving on past those that count.
#define UTF_INSTRUCTIONS "sse2"

#include "Foundation/Platform/Text/Internal/UtfAscii.h"

namespace zelkor::platform::detail {
namespace {

struct VectorSse2 : Vector128 {
    using Half = VectorSse2;

    UTF_PART static bool AnySet(Raw v) { return TopBits(EqualBytes(v, Zero())) != kAllBits; }
    UTF_PART static Raw Is(Raw v, int value) { return EqualBytes(v, Bytes(value)); }

    // Trail bytes where none belongs or none where one does, then what the second byte of a
    // character must not be. Only top bits count.
    UTF_PART static Raw Errors(const Window<VectorSse2>& window) {
        const Raw due =
            LessOrZero(window.lead, 0xC0 - 0x80) | SecondIsLaterTrail<VectorSse2>(window);
        const Raw below_a0 = SignedLess(window.second, Bytes(0xA0));
        Raw errors = due ^ Trails<VectorSse2>(window.second);
        errors = errors | Is(window.lead & Bytes(0xFE), 0xC0) | (Is(window.lead, 0xE0) & below_a0) |
                 (Is(window.lead, 0xED) & ~below_a0);
        if (HasFourByteLead<VectorSse2>(window)) {
            const Raw below_90 = SignedLess(window.second, Bytes(0x90));
            errors = errors | LessOrZero(window.lead, 0xF5 - 0x80) |
                     (Is(window.lead, 0xF0) & below_90) | (Is(window.lead, 0xF4) & ~below_90);
        }
        return errors & Bytes(0x80);
    }

    UTF_PART static char16_t* Keep(const PlacedUnits<VectorSse2>& placed, char16_t* to) {
        alignas(16) char16_t units[kBytes];
        Store(units, _mm_unpacklo_epi8(placed.low, placed.high));
        Store(units + kUnits, _mm_unpackhi_epi8(placed.low, placed.high));
        const std::uint32_t kept = TopBits(placed.kept);
        for (std::size_t i = 0; i < kBytes; ++i) {
            *to = units[i];
            to += kept >> i & 1;
        }
        return to;
    }

    UTF_PART static char* JoinTwoBytes(Raw words, Raw one, char* to) {
        alignas(16) std::uint16_t bytes[kUnits];
        Store(bytes, words);
        const std::uint32_t ones = TopBits(_mm_packs_epi16(one, Zero()));
        for (std::size_t i = 0; i < kUnits; ++i) {
            std::memcpy(to, &bytes[i], 2);
            to += 2 - (ones >> i & 1);
        }
        return to;
    }

    // Four units of 32 bits: 0, lead, middle and last byte, moved so that the used ones come first.
    UTF_PART static Raw Aligned(Raw bytes, Raw one, Raw two) {
        const Raw at_most_two = Select(one, _mm_srli_epi32(bytes, 24), _mm_srli_epi32(bytes, 16));
        return Select(two, at_most_two, _mm_srli_epi32(bytes, 8));
    }
    UTF_PART static char* JoinThreeBytes(const UnitBytes<VectorSse2>& bytes,
                                         const Sized<VectorSse2>& source, char* to) {
        alignas(16) std::uint32_t characters[kUnits];
        alignas(16) std::uint16_t sizes[kUnits];
        Store(characters, Aligned(_mm_unpacklo_epi16(bytes.front, bytes.back),
                                  _mm_unpacklo_epi16(source.one, source.one),
                                  _mm_unpacklo_epi16(source.two, source.two)));
        Store(characters + 4, Aligned(_mm_unpackhi_epi16(bytes.front, bytes.back),
                                      _mm_unpackhi_epi16(source.one, source.one),
                                      _mm_unpackhi_epi16(source.two, source.two)));
        Store(sizes, AddUnits(Units(3), AddUnits(source.one, source.two)));
        for (std::size_t i = 0; i < kUnits; ++i) {
            std::memcpy(to, &characters[i], 4);
            to += sizes[i];
        }
        return to;
    }
};

}  // namespace

constinit const UtfKernels kSse2Kernels = KernelsOver<VectorSse2>();

}  // namespace zelkor::platform::detail
