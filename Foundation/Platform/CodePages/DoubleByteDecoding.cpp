// Double-byte pages, bytes to units: a lead byte and the byte behind it are one unit.
//
// The fast way looks at 16 bytes at once: how many of them, from the first on, are pairs with a
// lead byte of the page's fast range, or else ASCII. Eight cells are fetched whatever that number
// is, so that only the ends of long runs are branches. Whatever stops it is decoded the plain way.
// Strict decoding compares the eight cells with the default unit on the way.
#include <algorithm>
#include <bit>

#include "Foundation/Platform/CodePages/Internal/CodePageDetail.h"
#include "Foundation/Platform/Text/Internal/SimdBlocks.h"

namespace zelkor::platform::nls {
namespace {

// What is refused. kShared is for GB18030, which takes its pairs from page 936 but for a few, all
// of them in a range of private-use units: it also stops at those.
enum class Mode { kLoose, kStrict, kShared };

constexpr char16_t kFirstPatched = 0xE76C;
constexpr char16_t kPatchedSpan = 0xE863 - 0xE76C;

bool MayBePatched(char16_t unit) noexcept {
    return unit - kFirstPatched >= 0 && unit - kFirstPatched <= kPatchedSpan;
}

// One character: what it gives and how many bytes it takes.
struct Character {
    char16_t unit;
    unsigned char size;
    bool defined;  // not refused by strict decoding
};

class Decoder {
public:
    Decoder(const TablePage& page, const Decoding& call) noexcept
        : page_(page), view_(page), call_(call) {}

    template <bool writing, Mode mode>
    Outcome Run() noexcept {
        while (at_ < call_.length) {
            RunBlocks<writing, mode>();
            // Further characters that no block begins with need not be tried as one.
            bool suits_blocks = false;
            while (at_ < call_.length && !suits_blocks) {
                if (count_ == call_.capacity) return {count_, kErrorInsufficientBuffer, at_};
                const Character character = Next(at_);
                if (IsRefused<mode>(character)) return {count_, kErrorNoUnicodeTranslation, at_};
                if constexpr (writing) call_.out[count_] = character.unit;
                ++count_;
                at_ += character.size;
                suits_blocks = call_.length - at_ >= kBlock && SuitsBlocks(call_.text[at_]);
            }
        }
        return {count_, kErrorSuccess, at_};
    }

private:
    [[nodiscard]] bool SuitsBlocks(unsigned char byte) const noexcept {
        const auto row = static_cast<std::uint8_t>((byte ^ page_.fast_flip) - page_.fast_first);
        return byte < 0x80 || row < page_.fast_count;
    }

    template <Mode mode>
    [[nodiscard]] static bool IsRefused(const Character& character) noexcept {
        if (mode == Mode::kLoose) return false;
        return !character.defined || (mode == Mode::kShared && MayBePatched(character.unit));
    }

    [[nodiscard]] Character Next(std::size_t at) const noexcept {
        const unsigned char byte = call_.text[at];
        if (!view_.IsLead(byte)) {
            const char16_t unit = view_.Single(byte);
            return {
                unit, 1,
                !IsPrivateUse(unit) && (unit != page_.default_unit || byte == page_.default_code)};
        }
        // A lead byte that is last or stands before a zero byte stands for itself alone.
        const unsigned char trail = at + 1 < call_.length ? call_.text[at + 1] : 0;
        if (trail == 0) return {page_.default_unit, 1, false};
        return {view_.Pair(byte, trail), 2, view_.IsDefinedPair(byte, trail)};
    }

#if FOUNDATION_SSE2
    // Converts runs of fast pairs and of ASCII; returns where neither comes next, or near an end.
    template <bool writing, Mode mode>
    void RunBlocks() noexcept;
    [[nodiscard]] bool HasRoom(std::size_t at, std::size_t count) const noexcept {
        return call_.length - at >= kBlock && call_.capacity - count >= kBlock;
    }
#else
    template <bool, Mode>
    void RunBlocks() noexcept {}
#endif

    const TablePage& page_;
    DoubleByteView view_;
    const Decoding& call_;
    std::size_t at_ = 0;
    std::size_t count_ = 0;
};

#if FOUNDATION_SSE2

__m128i Repeat(std::uint8_t even, std::uint8_t odd) noexcept {
    return _mm_set1_epi16(static_cast<short>(even | odd << 8));
}

// Eight pairs at once: lead bytes at even places.
class PairBlock {
public:
    explicit PairBlock(const TablePage& page) noexcept
        : cells_(kCells + page.cells),
          flip_(Repeat(page.fast_flip, 0)),
          first_(Repeat(page.fast_first, page.first_trail)),
          last_(Repeat(static_cast<std::uint8_t>(page.fast_count - 1), page.trail_count)),
          columns_(_mm_set1_epi16(static_cast<short>(page.trail_count + 1))),
          default_unit_(_mm_set1_epi16(static_cast<short>(page.default_unit))),
          default_code_(_mm_set1_epi16(static_cast<short>(page.default_code))) {}

    // Finds the cells of the block's eight pairs. The ones of what is no fast pair are of no use,
    // but within the page.
    void Locate(__m128i block) noexcept {
        block_ = block;
        const __m128i offsets = _mm_sub_epi8(_mm_xor_si128(block, flip_), first_);
        const __m128i places = _mm_min_epu8(offsets, last_);
        const __m128i rows = _mm_and_si128(places, _mm_set1_epi16(0xFF));
        places_ = _mm_add_epi16(_mm_mullo_epi16(rows, columns_), _mm_srli_epi16(places, 8));

        leads_ = _mm_cmpeq_epi8(places, offsets);
    }

    // The units of the located cells.
    [[nodiscard]] __m128i Fetch() const noexcept {
        std::uint16_t places[8];
        StoreBlock(places_, places);
        __m128i low = _mm_cvtsi32_si128(cells_[places[0]]);
        __m128i high = _mm_cvtsi32_si128(cells_[places[4]]);
        low = _mm_insert_epi16(low, cells_[places[1]], 1);
        high = _mm_insert_epi16(high, cells_[places[5]], 1);
        low = _mm_insert_epi16(low, cells_[places[2]], 2);
        high = _mm_insert_epi16(high, cells_[places[6]], 2);
        low = _mm_insert_epi16(low, cells_[places[3]], 3);
        high = _mm_insert_epi16(high, cells_[places[7]], 3);
        return _mm_unpacklo_epi64(low, high);
    }

    // How many fast pairs the block begins with. Strictly, their units must be there too.
    [[nodiscard]] unsigned int Pairs() const noexcept {
        const __m128i zeros = _mm_cmpeq_epi8(block_, _mm_setzero_si128());
        return CountPairs(zeros);
    }
    template <Mode mode>
    [[nodiscard]] unsigned int AcceptedPairs(__m128i units) const noexcept {
        __m128i refused = _mm_andnot_si128(_mm_cmpeq_epi16(block_, default_code_),
                                           _mm_cmpeq_epi16(units, default_unit_));
        if constexpr (mode == Mode::kShared) {
            const __m128i first = _mm_set1_epi16(static_cast<short>(kFirstPatched));
            const __m128i beyond = _mm_subs_epu16(_mm_sub_epi16(units, first),
                                                  _mm_set1_epi16(static_cast<short>(kPatchedSpan)));
            refused = _mm_or_si128(refused, _mm_cmpeq_epi16(beyond, _mm_setzero_si128()));
        }
        return CountPairs(refused);
    }

private:
    // Pairs before the first one whose lead byte is not fast or that has a refused byte.
    [[nodiscard]] unsigned int CountPairs(__m128i refused) const noexcept {
        const __m128i leads = _mm_or_si128(leads_, Repeat(0, 0xFF));
        const __m128i pairs = _mm_andnot_si128(refused, leads);
        const auto others = ~static_cast<unsigned int>(_mm_movemask_epi8(pairs));
        return static_cast<unsigned int>(std::countr_zero(others)) / 2;  // at most 16: bits above
    }

    const char16_t* cells_;
    __m128i flip_;
    __m128i first_;
    __m128i last_;
    __m128i columns_;
    __m128i default_unit_;
    __m128i default_code_;
    __m128i block_{};
    __m128i places_{};
    __m128i leads_{};
};

// Positions live in locals here: stores of blocks might change members, as far as a compiler knows.
template <bool writing, Mode mode>
void Decoder::RunBlocks() noexcept {
    if (!HasRoom(at_, count_)) return;
    const unsigned char* const text = call_.text;
    char16_t* const out = call_.out;
    PairBlock pairs(page_);
    std::size_t at = at_;
    std::size_t count = count_;
    std::size_t before = at;
    do {
        before = at;
        while (HasRoom(at, count)) {
            pairs.Locate(LoadBlock(text + at));
            unsigned int taken;
            if constexpr (mode == Mode::kLoose) {
                taken = pairs.Pairs();
                if constexpr (writing) StoreBlock(pairs.Fetch(), out + count);
            } else {
                const __m128i units = pairs.Fetch();
                taken = pairs.AcceptedPairs<mode>(units);
                if constexpr (writing) StoreBlock(units, out + count);
            }
            if (taken != kBlock / 2) {
                at += 2 * taken;
                count += taken;
                break;
            }
            at += kBlock;
            count += kBlock / 2;
        }
        while (HasRoom(at, count)) {
            const __m128i block = LoadBlock(text + at);
            const auto high = static_cast<unsigned int>(_mm_movemask_epi8(block));
            if constexpr (writing) StoreWidened(block, out + count);
            const auto taken =
                high == 0 ? kBlock : static_cast<std::size_t>(std::countr_zero(high));
            at += taken;
            count += taken;
            if (high != 0) break;
        }
    } while (at != before && HasRoom(at, count));
    at_ = at;
    count_ = count;
}

#endif

template <Mode mode>
Outcome Run(const TablePage& page, const Decoding& call) noexcept {
    Decoder decoder(page, call);
    return call.out == nullptr ? decoder.Run<false, mode>() : decoder.Run<true, mode>();
}

}  // namespace

Outcome DecodeDoubleByte(const TablePage& page, const Decoding& call) noexcept {
    return call.strict ? Run<Mode::kStrict>(page, call) : Run<Mode::kLoose>(page, call);
}

Outcome DecodeSharedPairs(const TablePage& page, const Decoding& call) noexcept {
    return Run<Mode::kShared>(page, call);
}

}  // namespace zelkor::platform::nls
