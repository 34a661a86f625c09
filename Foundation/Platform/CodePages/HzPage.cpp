// Page 52936, HZ: 7-bit text in which "~{" and "~}" enclose the double-byte part of page 936 with
// the high bits taken off, and "~~" is a tilde.
#include "Foundation/Platform/CodePages/Internal/CodePageDetail.h"

namespace zelkor::platform::nls {
namespace {

constexpr std::uint32_t kBasePage = 936;
constexpr char16_t kDefaultUnit = u'?';
constexpr char16_t kNoUnit = 0xFFFF;  // no character; no code of the page stands for U+FFFF

bool IsRowByte(unsigned int byte) noexcept {
    return byte >= 0xA1 && byte <= 0xF7;
}
bool IsCellByte(unsigned int byte) noexcept {
    return byte >= 0xA1 && byte <= 0xFE;
}

class Decoder {
public:
    Decoder(const Decoding& call, Piece& piece) noexcept
        : call_(call),
          piece_(piece),
          sink_(call.out, call.capacity),
          chinese_(piece.state.set != 0) {}

    Outcome Run() noexcept {
        while (at_ < call_.length && !sink_.IsFull()) {
            if (!piece_.last && IsCut()) break;
            if (call_.text[at_] == '~' && TakeEscape()) continue;
            if (chinese_) {
                TakeChinese();
            } else {
                const unsigned char byte = call_.text[at_];
                Put(byte <= 0x80 ? base_.Single(byte) : kNoUnit);
                ++at_;
            }
        }
        piece_.state.set = chinese_ ? 1 : 0;
        return sink_.Result(at_);
    }

private:
    // Whether the next byte is the last one and does not stand for itself.
    [[nodiscard]] bool IsCut() const noexcept {
        const unsigned char byte = call_.text[at_];
        return at_ + 1 == call_.length && (byte == '~' || (chinese_ && byte >= 0x20));
    }

    void Put(char16_t unit) noexcept {
        if (unit == kNoUnit) piece_.Fault(at_);
        sink_.Put(unit == kNoUnit ? kDefaultUnit : unit);
    }

    // Takes what a tilde begins; false when the tilde is an ordinary byte.
    bool TakeEscape() noexcept {
        if (at_ + 1 == call_.length) {
            Put(kNoUnit);
            ++at_;
            return true;
        }
        switch (call_.text[at_ + 1]) {
            case '{':
                chinese_ = true;
                break;
            case '}':
                chinese_ = false;
                break;
            case '\n':
                break;
            case '~':
                if (chinese_) return false;
                sink_.Put(u'~');
                break;
            default:
                return false;
        }
        at_ += 2;
        return true;
    }

    void TakeChinese() noexcept {
        const unsigned char first = call_.text[at_];
        const bool single = first < 0x20;
        const bool cut = !single && at_ + 1 == call_.length;
        if (single) {
            sink_.Put(first);
        } else {
            Put(cut ? kNoUnit : Pair(first, call_.text[at_ + 1]));
        }
        at_ += single || cut ? 1 : 2;
    }

    // The character of two bytes. A blank in the place of either makes them a fault, but a legible
    // one.
    [[nodiscard]] char16_t Pair(unsigned char first, unsigned char second) noexcept {
        const unsigned char row = first | 0x80;
        const unsigned char cell = second | 0x80;
        const bool both = (first ^ second) < 0x80;  // both with the high bit or both without
        if (both && IsRowByte(row) && IsCellByte(cell)) {
            return base_.IsDefinedPair(row, cell) ? base_.Pair(row, cell) : kNoUnit;
        }
        const bool blank_first = first == 0x20 && second != 0;
        const bool blank_second = second == 0x20 && first >= 0x21 && first <= 0x7D;
        if (!blank_first && !blank_second) return kNoUnit;
        piece_.Fault(at_);
        return blank_first ? second : u'\u3000';
    }

    const Decoding& call_;
    Piece& piece_;
    UnitSink sink_;
    DoubleByteView base_{*FindTablePage(kBasePage)};
    std::size_t at_ = 0;
    bool chinese_;
};

}  // namespace

Outcome DecodeHz(const Decoding& call, Piece& piece) noexcept {
    return Decoder(call, piece).Run();
}

Outcome EncodeHz(const Encoding& call, Piece& piece) noexcept {
    const DoubleByteView base(*FindTablePage(kBasePage));
    ByteSink sink(call.out, call.capacity);
    bool chinese = piece.state.set != 0;
    std::size_t at = 0;
    for (; at < call.length && !sink.IsFull(); ++at) {
        const char16_t unit = call.text[at];
        const std::uint16_t code = base.Code(unit);
        if (unit >= 0x80 && code != kMissingCode && IsRowByte(FirstByte(code)) &&
            IsCellByte(SecondByte(code))) {
            if (!chinese) sink.Put({'~', '{'});
            chinese = true;
            sink.Put({static_cast<unsigned char>(FirstByte(code) & 0x7F),
                      static_cast<unsigned char>(SecondByte(code) & 0x7F)});
            continue;
        }
        if (chinese) sink.Put({'~', '}'});
        chinese = false;
        if (unit >= 0x80) piece.Fault(at);
        if (unit == u'~') sink.Put('~');
        sink.Put(static_cast<unsigned char>(unit < 0x80 ? unit : kDefaultUnit));
    }
    if (chinese && piece.last) sink.Put({'~', '}'});
    piece.state.set = chinese ? 1 : 0;
    return sink.Result(at);
}

}  // namespace zelkor::platform::nls
