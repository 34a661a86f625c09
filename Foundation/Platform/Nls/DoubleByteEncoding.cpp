// Double-byte pages, units to bytes: one table load chain per unit and no branch on its size.
// Blocks of 16 ASCII units are narrowed as they are.
#include <cstring>

#include "Foundation/Platform/Nls/CodePageDetail.h"
#include "Foundation/Platform/Nls/SimdBlocks.h"

namespace platform::nls {
namespace {

constexpr std::size_t kUnits = 8;  // converted without looking at the room in between

class Encoder {
public:
    Encoder(const TablePage& page, Encoding& call) noexcept
        : view_(page), call_(call), ascii_(page.identity != 0) {}

    Outcome Run() noexcept {
        std::size_t at = RunBlocks();
        for (; at < call_.length; ++at) {
            const std::uint16_t code = Code(call_.text[at]);
            if (call_.capacity - count_ < (IsPairCode(code) ? 2u : 1u)) {
                return {count_, kErrorInsufficientBuffer};
            }
            call_.out[count_++] = FirstByte(code);
            if (IsPairCode(code)) call_.out[count_++] = SecondByte(code);
        }
        return {count_, kErrorSuccess};
    }

    Outcome Measure() noexcept {
        for (std::size_t at = 0; at < call_.length; ++at) {
            count_ += IsPairCode(Code(call_.text[at])) ? 2u : 1u;
        }
        return {count_, kErrorSuccess};
    }

private:
    std::uint16_t Code(char16_t unit) noexcept {
        const std::uint16_t code = view_.Code(unit);
        if (code != kMissingCode) [[likely]]
            return code;
        call_.used_default = true;
        return call_.default_code;
    }

    // Converts while text and room last for whole blocks; returns the units taken.
    std::size_t RunBlocks() noexcept {
        std::size_t at = 0;
        while (call_.length - at >= 2 * kUnits && call_.capacity - count_ >= 4 * kUnits) {
            if (ascii_ && NarrowBlock(at)) {
                at += 2 * kUnits;
                count_ += 2 * kUnits;
                continue;
            }
            for (const std::size_t end = at + kUnits; at < end; ++at) {
                const std::uint16_t code = Code(call_.text[at]);
                const unsigned char bytes[2] = {FirstByte(code), SecondByte(code)};
                std::memcpy(call_.out + count_, bytes, 2);
                count_ += 1u + IsPairCode(code);
            }
        }
        return at;
    }

    // Writes the 16 units at `at` as bytes when all of them are ASCII.
    bool NarrowBlock([[maybe_unused]] std::size_t at) noexcept {
#if FOUNDATION_SSE2
        const __m128i first = LoadBlock(call_.text + at);
        const __m128i second = LoadBlock(call_.text + at + kUnits);
        const __m128i high =
            _mm_and_si128(_mm_or_si128(first, second), _mm_set1_epi16(static_cast<short>(0xFF80)));
        if (_mm_movemask_epi8(_mm_cmpeq_epi16(high, _mm_setzero_si128())) != 0xFFFF) return false;
        StoreBlock(_mm_packus_epi16(first, second), call_.out + count_);
        return true;
#else
        return false;
#endif
    }

    DoubleByteView view_;
    Encoding& call_;
    bool ascii_;
    std::size_t count_ = 0;
};

}  // namespace

Outcome EncodeDoubleByte(const TablePage& page, Encoding& call) noexcept {
    Encoder encoder(page, call);
    return call.out == nullptr ? encoder.Measure() : encoder.Run();
}

}  // namespace platform::nls
