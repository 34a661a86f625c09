// Page 54936, GB18030: ASCII, the pairs of page 936, some of them with other units, and sequences
// of four bytes for all other characters. The second and fourth byte of those are digits 30 to 39;
// the four count from 0 on, first byte highest. What is no character gives the default unit for its
// first byte alone.
#include <algorithm>
#include <iterator>

#include "Foundation/Platform/CodePages/Internal/CodePageDetail.h"
#include "Foundation/Platform/Text/Internal/UtfScalar.h"
#include "Foundation/Platform/Text/Utf.h"

namespace zelkor::platform::nls {
namespace {

constexpr std::uint32_t kPage = 54936;
constexpr char16_t kDefaultUnit = u'?';
constexpr unsigned char kDefaultByte = '?';
constexpr std::uint32_t kFirstSupplementary = 189000;  // index of U+10000
constexpr std::uint32_t kCellsPerRow = 1260;           // of a first and a second byte
constexpr std::uint32_t kPlanes = 0x10;                // of 0x10000 characters each

bool IsDigit(unsigned char byte) noexcept {
    return byte >= 0x30 && byte <= 0x39;
}
bool IsLead(unsigned char byte) noexcept {
    return byte >= 0x81 && byte <= 0xFE;
}

// Finds the run of a number. Most texts stay in one run for long, so that it is tried again first.
class Runs {
public:
    // U+0000 when no character has the index.
    [[nodiscard]] std::uint32_t Character(std::uint32_t index) noexcept {
        if (index >= kFirstSupplementary) {
            const std::uint32_t beyond = index - kFirstSupplementary;
            return beyond < kPlanes << 16 ? 0x10000 + beyond : 0;
        }
        if (index - run_->index > static_cast<std::uint32_t>(run_->last - run_->first)) {
            run_ = std::ranges::upper_bound(kGbRuns, index, {}, &GbRun::index) - 1;
        }
        const std::uint32_t unit = run_->first + (index - run_->index);
        return unit <= run_->last ? unit : 0;
    }

    // Index of a unit that has no pair.
    [[nodiscard]] std::uint32_t Index(char16_t unit) noexcept {
        if (unit < run_->first || unit > run_->last) {
            run_ = std::ranges::upper_bound(kGbRuns, unit, {}, &GbRun::first) - 1;
        }
        return static_cast<std::uint32_t>(run_->index + (unit - run_->first));
    }

private:
    const GbRun* run_ = kGbRuns;
};

class Decoder {
public:
    explicit Decoder(const Decoding& call) noexcept : call_(call) {}

    Outcome Run() noexcept {
        for (;;) {
            TakeSharedPairs();
            do {
                if (at_ == call_.length) return {count_, kErrorSuccess, at_};
                const Character character = Next();
                if (!character.defined && call_.strict) {
                    return {count_, kErrorNoUnicodeTranslation, at_};
                }
                char16_t units[2];
                const std::size_t count = detail::WriteUtf16(character.value, units);
                if (call_.capacity - count_ < count) {
                    return {count_, kErrorInsufficientBuffer, at_};
                }
                if (call_.out != nullptr) {
                    call_.out[count_] = units[0];
                    if (count == 2) call_.out[count_ + 1] = units[1];
                }
                count_ += count;
                at_ += character.size;
            } while (at_ == call_.length || IsFourNext());
        }
    }

private:
    struct Character {
        std::uint32_t value;
        std::size_t size;
        bool defined;
    };
    static constexpr Character kNone{kDefaultUnit, 1, false};

    void TakeSharedPairs() noexcept {
        Decoding rest = call_;
        rest.text += at_;
        rest.length -= at_;
        if (rest.out != nullptr) rest.out += count_;
        rest.capacity -= count_;
        const Outcome done = DecodeSharedPairs(page_, rest);
        at_ += done.taken;
        count_ += done.count;
    }

    [[nodiscard]] bool IsFourNext() const noexcept {
        return call_.length - at_ >= 4 && IsLead(call_.text[at_]) && IsDigit(call_.text[at_ + 1]);
    }

    [[nodiscard]] Character Next() noexcept {
        const unsigned char* const text = call_.text + at_;
        const std::size_t left = call_.length - at_;
        if (text[0] < 0x80) return {text[0], 1, true};
        if (left < 2 || !IsLead(text[0])) return kNone;
        if (!IsDigit(text[1])) return Pair(text[0], text[1]);
        if (left < 4 || !IsLead(text[2]) || !IsDigit(text[3])) return kNone;
        const std::uint32_t row = (text[0] - 0x81u) * 10 + (text[1] - 0x30u);
        const std::uint32_t cell = (text[2] - 0x81u) * 10 + (text[3] - 0x30u);
        const std::uint32_t value = runs_.Character(row * kCellsPerRow + cell);
        return value == 0 ? kNone : Character{value, 4, true};
    }

    [[nodiscard]] Character Pair(unsigned char lead, unsigned char trail) const noexcept {
        if (!view_.IsDefinedPair(lead, trail)) return kNone;
        const char16_t unit = view_.Pair(lead, trail);
        const auto* const patch = std::ranges::lower_bound(kGbPatches, unit, {}, &GbPatch::unit936);
        const bool patched = patch != std::end(kGbPatches) && patch->unit936 == unit;
        return {patched ? patch->unit : unit, 2, true};
    }

    const Decoding& call_;
    const TablePage& page_ = *FindTablePage(kPage);
    DoubleByteView view_{page_};
    Runs runs_;
    std::size_t at_ = 0;
    std::size_t count_ = 0;
};

// Positions live in locals where bytes are written: stores of bytes might change members, as far as
// a compiler knows.
class Encoder {
public:
    explicit Encoder(const Encoding& call) noexcept
        : call_(call), left_(call.out == nullptr ? kUnlimited : call.capacity) {}

    Outcome Run() noexcept {
        for (;;) {
            TakeAscii();
            TakePairs();
            if (at_ == call_.length) return {count_, kErrorSuccess, at_};
            const std::uint32_t error = TakeCharacter();
            if (error != kErrorSuccess) return {count_, error, at_};
        }
    }

private:
    void TakeAscii() noexcept {
        const char16_t* const text = call_.text + at_;
        const std::size_t most = std::min(call_.length - at_, left_);
        if (most < 4 || !detail::AreFourAscii(text)) return;
        const std::size_t run = AsciiPrefix(text, most);
        if (call_.out != nullptr)
            NarrowAscii(text, run, reinterpret_cast<char*>(call_.out) + count_);
        Advance(run, run);
    }

    // Units of one or two bytes, as long as there is room to spare and no long run of ASCII.
    void TakePairs() noexcept {
        const DoubleByteView view = view_;
        const char16_t* const text = call_.text;
        unsigned char* const out = call_.out;
        std::size_t at = at_;
        std::size_t count = count_;
        const std::size_t limit = count_ + left_;
        while (at < call_.length && limit - count >= 2) {
            const std::uint16_t code = view.Code(text[at]);
            if (code == kMissingCode) break;
            if (out != nullptr) {
                out[count] = FirstByte(code);
                out[count + 1] = SecondByte(code);
            }
            count += IsPairCode(code) ? 2 : 1;
            ++at;
            if (!IsPairCode(code) && call_.length - at >= 4 && detail::AreFourAscii(text + at))
                break;
        }
        Advance(at - at_, count - count_);
    }

    // Any one character; an error when it has no code or does not fit.
    std::uint32_t TakeCharacter() noexcept {
        const char16_t* const text = call_.text + at_;
        const auto [value, units] = detail::ReadUtf16(text, call_.length - at_);
        if (units == 0 && call_.strict) return kErrorNoUnicodeTranslation;
        const std::uint16_t code = view_.Code(text[0]);
        unsigned char bytes[4] = {kDefaultByte};
        std::size_t size = 1;
        if (code != kMissingCode) {
            bytes[0] = FirstByte(code);
            bytes[1] = SecondByte(code);
            size = IsPairCode(code) ? 2 : 1;
        } else if (units != 0) {
            SplitIndex(units == 1 ? runs_.Index(text[0]) : value - 0x10000 + kFirstSupplementary,
                       bytes);
            size = 4;
        }
        if (left_ < size) return kErrorInsufficientBuffer;
        if (call_.out != nullptr) {
            for (std::size_t i = 0; i < size; ++i) call_.out[count_ + i] = bytes[i];
        }
        Advance(std::max<std::size_t>(units, 1), size);
        return kErrorSuccess;
    }

    static void SplitIndex(std::uint32_t index, unsigned char* bytes) noexcept {
        const std::uint32_t row = index / kCellsPerRow;
        const std::uint32_t cell = index % kCellsPerRow;
        bytes[0] = static_cast<unsigned char>(0x81 + row / 10);
        bytes[1] = static_cast<unsigned char>(0x30 + row % 10);
        bytes[2] = static_cast<unsigned char>(0x81 + cell / 10);
        bytes[3] = static_cast<unsigned char>(0x30 + cell % 10);
    }

    void Advance(std::size_t units, std::size_t bytes) noexcept {
        at_ += units;
        count_ += bytes;
        left_ -= bytes;
    }

    const Encoding& call_;
    DoubleByteView view_{*FindTablePage(kPage)};
    Runs runs_;
    std::size_t left_;
    std::size_t at_ = 0;
    std::size_t count_ = 0;
};

}  // namespace

bool IsCutGb18030(const unsigned char* text, std::size_t length) noexcept {
    return IsLead(text[0]) && (length == 1 || (IsDigit(text[1]) && length == 2) ||
                               (length == 3 && IsDigit(text[1]) && IsLead(text[2])));
}

Outcome DecodeGb18030(const Decoding& call) noexcept {
    return Decoder(call).Run();
}

Outcome EncodeGb18030(const Encoding& call) noexcept {
    return Encoder(call).Run();
}

}  // namespace zelkor::platform::nls
