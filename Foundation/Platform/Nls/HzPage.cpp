// Page 52936, HZ: 7-bit text in which "~{" and "~}" enclose the double-byte part of page 936 with
// the high bits taken off, and "~~" is a tilde.
#include "Foundation/Platform/Nls/CodePageDetail.h"

namespace platform::nls {
namespace {

constexpr std::uint32_t kBasePage = 936;
constexpr char16_t kDefaultUnit = u'?';

bool IsRowByte(unsigned int byte) noexcept {
    return byte >= 0xA1 && byte <= 0xF7;
}
bool IsCellByte(unsigned int byte) noexcept {
    return byte >= 0xA1 && byte <= 0xFE;
}

class Decoder {
public:
    explicit Decoder(const Decoding& call) noexcept : call_(call), sink_(call.out, call.capacity) {}

    Outcome Run() noexcept {
        while (at_ < call_.length && !sink_.IsFull()) {
            if (call_.text[at_] == '~' && TakeEscape()) continue;
            if (chinese_) {
                TakeChinese();
            } else {
                const unsigned char byte = call_.text[at_++];
                sink_.Put(byte <= 0x80 ? base_.Single(byte) : kDefaultUnit);
            }
        }
        return sink_.Result();
    }

private:
    // Takes what a tilde begins; false when the tilde is an ordinary byte.
    bool TakeEscape() noexcept {
        if (at_ + 1 == call_.length) {
            sink_.Put(kDefaultUnit);
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
        const unsigned char first = call_.text[at_++];
        if (first < 0x20) return sink_.Put(first);
        if (at_ == call_.length) return sink_.Put(kDefaultUnit);
        sink_.Put(Pair(first, call_.text[at_++]));
    }

    [[nodiscard]] char16_t Pair(unsigned char first, unsigned char second) const noexcept {
        const unsigned char row = first | 0x80;
        const unsigned char cell = second | 0x80;
        const bool both = (first ^ second) < 0x80;  // both with the high bit or both without
        if (both && IsRowByte(row) && IsCellByte(cell)) return base_.Pair(row, cell);
        if (first == 0x20 && second != 0) return second;
        if (second == 0x20 && first >= 0x21 && first <= 0x7D) return u'\u3000';
        return kDefaultUnit;
    }

    const Decoding& call_;
    UnitSink sink_;
    DoubleByteView base_{*FindTablePage(kBasePage)};
    std::size_t at_ = 0;
    bool chinese_ = false;
};

}  // namespace

Outcome DecodeHz(const Decoding& call) noexcept {
    return Decoder(call).Run();
}

Outcome EncodeHz(const Encoding& call) noexcept {
    const DoubleByteView base(*FindTablePage(kBasePage));
    ByteSink sink(call.out, call.capacity);
    bool chinese = false;
    for (std::size_t at = 0; at < call.length && !sink.IsFull(); ++at) {
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
        if (unit == u'~') sink.Put('~');
        sink.Put(static_cast<unsigned char>(unit < 0x80 ? unit : kDefaultUnit));
    }
    if (chinese) sink.Put({'~', '}'});
    return sink.Result();
}

}  // namespace platform::nls
