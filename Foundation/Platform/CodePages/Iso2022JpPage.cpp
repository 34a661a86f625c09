// Page 50220, ISO-2022-JP: 7-bit text in which escape sequences choose between ASCII, half-width
// katakana, JIS X 0208 and JIS X 0212. Characters come from page 20932, where a pair with the high
// bit in its second byte is JIS X 0208 and one without is JIS X 0212.
#include <array>
#include <string_view>

#include "Foundation/Platform/CodePages/Internal/CodePageDetail.h"

namespace zelkor::platform::nls {
namespace {

constexpr std::uint32_t kBasePage = 20932;
constexpr char16_t kDefaultUnit = u'?';
constexpr char16_t kNoUnit = 0xFFFF;  // no character; no code of the page stands for U+FFFF
constexpr unsigned char kEscape = 0x1B;
constexpr char16_t kFirstHalfWidth = 0xFF61;
constexpr char16_t kLastHalfWidth = 0xFF9F;

enum class Set : unsigned char { kAscii, kKana, kX0208, kX0212, kNone };

struct Selection {
    char bytes[4];  // behind ESC
    Set set;        // kNone: swallowed without effect
};
constexpr auto kSelections = std::to_array<Selection>({{"(B", Set::kAscii},
                                                       {"(J", Set::kAscii},
                                                       {"(H", Set::kAscii},
                                                       {"(I", Set::kKana},
                                                       {"$@", Set::kX0208},
                                                       {"$B", Set::kX0208},
                                                       {"$(D", Set::kX0212},
                                                       {"&@", Set::kNone}});

// JIS X 0208 codes of the full-width forms of FF61 to FF9F; voiced marks are not joined.
constexpr auto kFullWidth = std::to_array<std::uint16_t>(
    {0x2123, 0x2156, 0x2157, 0x2122, 0x2126, 0x2572, 0x2521, 0x2523, 0x2525, 0x2527, 0x2529,
     0x2563, 0x2565, 0x2567, 0x2543, 0x213C, 0x2522, 0x2524, 0x2526, 0x2528, 0x252A, 0x252B,
     0x252D, 0x252F, 0x2531, 0x2533, 0x2535, 0x2537, 0x2539, 0x253B, 0x253D, 0x253F, 0x2541,
     0x2544, 0x2546, 0x2548, 0x254A, 0x254B, 0x254C, 0x254D, 0x254E, 0x254F, 0x2552, 0x2555,
     0x2558, 0x255B, 0x255E, 0x255F, 0x2560, 0x2561, 0x2562, 0x2564, 0x2566, 0x2568, 0x2569,
     0x256A, 0x256B, 0x256C, 0x256D, 0x256F, 0x2573, 0x212B, 0x212C});
static_assert(kFullWidth.size() == kLastHalfWidth - kFirstHalfWidth + 1);

char16_t HalfWidth(unsigned int katakana) noexcept {  // 21 to 5F
    return static_cast<char16_t>(kFirstHalfWidth + katakana - 0x21);
}
bool IsKatakana(unsigned int byte) noexcept {
    return byte >= 0x21 && byte <= 0x5F;
}

class Decoder {
public:
    Decoder(const Decoding& call, Piece& piece) noexcept
        : call_(call),
          piece_(piece),
          sink_(call.out, call.capacity),
          set_(static_cast<Set>(piece.state.set)),
          saved_(static_cast<Set>(piece.state.saved_set)) {}

    Outcome Run() noexcept {
        while (at_ < call_.length && !sink_.IsFull() && TakeCharacter()) continue;
        piece_.state.set = static_cast<std::uint8_t>(set_);
        piece_.state.saved_set = static_cast<std::uint8_t>(saved_);
        return sink_.Result(at_);
    }

private:
    // False, without a byte taken, where the piece cuts a character or an escape sequence.
    bool TakeCharacter() noexcept {
        const unsigned char byte = call_.text[at_];
        if (byte == kEscape) return TakeEscape();
        if (byte == 0x0E) {
            saved_ = set_;
            set_ = Set::kKana;
        } else if (byte == 0x0F) {
            set_ = saved_;
        } else if (set_ == Set::kX0208 || set_ == Set::kX0212) {
            return TakePair(byte);
        } else {
            Put(Single(byte));
        }
        ++at_;
        return true;
    }

    bool TakeEscape() noexcept {
        const std::string_view rest(reinterpret_cast<const char*>(call_.text) + at_ + 1,
                                    call_.length - at_ - 1);
        for (const Selection& selection : kSelections) {
            const std::string_view bytes = selection.bytes;
            if (!piece_.last && rest.size() < bytes.size() && bytes.starts_with(rest)) return false;
            if (!rest.starts_with(bytes)) continue;
            at_ += 1 + bytes.size();
            if (selection.set != Set::kNone) set_ = saved_ = selection.set;
            return true;
        }
        piece_.Fault(at_);
        sink_.Put(kEscape);
        ++at_;
        return true;
    }

    bool TakePair(unsigned char first) noexcept {
        const bool cut = at_ + 1 == call_.length;
        if (cut && !piece_.last) return false;
        Put(cut ? kNoUnit : Pair(first, call_.text[at_ + 1]));
        at_ += cut ? 1 : 2;
        return true;
    }

    void Put(char16_t unit) noexcept {
        if (unit == kNoUnit) piece_.Fault(at_);
        sink_.Put(unit == kNoUnit ? kDefaultUnit : unit);
    }

    [[nodiscard]] char16_t Single(unsigned char byte) const noexcept {
        if (IsKatakana(byte - 0x80u)) return HalfWidth(byte - 0x80u);
        if (set_ == Set::kAscii) return byte < 0x80 ? byte : kNoUnit;
        return IsKatakana(byte) ? HalfWidth(byte) : kNoUnit;
    }

    [[nodiscard]] char16_t Pair(unsigned char first, unsigned char second) const noexcept {
        if (first >= 0x80 || second >= 0x80) return kNoUnit;
        if (set_ == Set::kX0208 && first == 0x2A && IsKatakana(second)) return HalfWidth(second);
        const unsigned char lead = first | 0x80;
        const unsigned char trail = set_ == Set::kX0208 ? second | 0x80 : second;
        return base_.IsDefinedPair(lead, trail) ? base_.Pair(lead, trail) : kNoUnit;
    }

    const Decoding& call_;
    Piece& piece_;
    UnitSink sink_;
    DoubleByteView base_{*FindTablePage(kBasePage)};
    std::size_t at_ = 0;
    Set set_;
    Set saved_;
};

class Encoder {
public:
    Encoder(const Encoding& call, Piece& piece) noexcept
        : call_(call),
          piece_(piece),
          sink_(call.out, call.capacity),
          set_(static_cast<Set>(piece.state.set)) {}

    Outcome Run() noexcept {
        for (; at_ < call_.length && !sink_.IsFull(); ++at_) Put(call_.text[at_]);
        if (piece_.last) Select(Set::kAscii);
        piece_.state.set = static_cast<std::uint8_t>(set_);
        return sink_.Result(at_);
    }

private:
    void Put(char16_t unit) noexcept {
        if (unit >= kFirstHalfWidth && unit <= kLastHalfWidth) {
            piece_.Fault(at_);
            return PutPair(Set::kX0208, kFullWidth[unit - kFirstHalfWidth]);
        }
        const std::uint16_t code = base_.Code(unit);
        if (code == kMissingCode || !IsPairCode(code)) {
            Select(Set::kAscii);
            if (unit >= 0x80 || unit == 0x0E || unit == 0x0F || unit == kEscape) piece_.Fault(at_);
            return sink_.Put(static_cast<unsigned char>(unit < 0x80 ? unit : kDefaultUnit));
        }
        const unsigned int jis = (FirstByte(code) & 0x7Fu) << 8 | (SecondByte(code) & 0x7Fu);
        PutPair(SecondByte(code) >= 0x80 ? Set::kX0208 : Set::kX0212, jis);
    }

    void PutPair(Set set, unsigned int jis) noexcept {
        Select(set);
        sink_.Put({static_cast<unsigned char>(jis >> 8), static_cast<unsigned char>(jis & 0xFF)});
    }

    void Select(Set set) noexcept {
        if (set == set_) return;
        set_ = set;
        if (set == Set::kAscii) sink_.Put({kEscape, '(', 'B'});
        if (set == Set::kX0208) sink_.Put({kEscape, '$', 'B'});
        if (set == Set::kX0212) sink_.Put({kEscape, '$', '(', 'D'});
    }

    const Encoding& call_;
    Piece& piece_;
    ByteSink sink_;
    DoubleByteView base_{*FindTablePage(kBasePage)};
    std::size_t at_ = 0;
    Set set_;
};

}  // namespace

Outcome DecodeIso2022Jp(const Decoding& call, Piece& piece) noexcept {
    return Decoder(call, piece).Run();
}

Outcome EncodeIso2022Jp(const Encoding& call, Piece& piece) noexcept {
    return Encoder(call, piece).Run();
}

}  // namespace zelkor::platform::nls
