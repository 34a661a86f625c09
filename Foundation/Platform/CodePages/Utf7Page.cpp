// Page 65000, UTF-7: units outside a set of direct characters travel as base-64 runs between '+'
// and '-'. The encoder always writes the closing '-'; the decoder knows no error.
#include <array>
#include <string_view>

#include "Foundation/Platform/CodePages/Internal/CodePageDetail.h"

namespace zelkor::platform::nls {
namespace {

constexpr std::string_view kDigits =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view kDirectMarks("'(),-./:?\0\t\n\r ", 14);
constexpr unsigned char kNoDigit = 0xFF;

// The six bits of each base-64 byte.
constexpr auto kDigitValues = [] {
    std::array<unsigned char, 256> values{};
    values.fill(kNoDigit);
    for (std::size_t i = 0; i < kDigits.size(); ++i) {
        values[static_cast<unsigned char>(kDigits[i])] = static_cast<unsigned char>(i);
    }
    return values;
}();

// The units that are written as they are.
constexpr auto kDirect = [] {
    std::array<bool, 0x80> direct{};
    for (const char byte : kDigits.substr(0, 62)) direct[static_cast<unsigned char>(byte)] = true;
    for (const char byte : kDirectMarks) direct[static_cast<unsigned char>(byte)] = true;
    return direct;
}();

bool IsDirect(char16_t unit) noexcept {
    return unit < kDirect.size() && kDirect[unit];
}

// The bits on their way between units and base-64 digits, the newest lowest.
void AddBits(ShiftState& state, std::uint32_t value, unsigned int width) noexcept {
    state.bits = state.bits << width | value;
    state.bit_count = static_cast<std::uint8_t>(state.bit_count + width);
}
std::uint32_t TakeBits(ShiftState& state, unsigned int width) noexcept {
    state.bit_count = static_cast<std::uint8_t>(state.bit_count - width);
    const std::uint32_t value = state.bits >> state.bit_count;
    state.bits &= (1u << state.bit_count) - 1u;
    return value;
}

class Decoder {
public:
    Decoder(const Decoding& call, Piece& piece) noexcept
        : call_(call), piece_(piece), state_(piece.state), sink_(call.out, call.capacity) {}

    Outcome Run() noexcept {
        while (at_ < call_.length && !sink_.IsFull()) {
            if (state_.in_run) {
                TakeRun();
            } else if (call_.text[at_] != '+') {
                TakeDirect();
            } else if (!TakePlus()) {
                break;
            }
        }
        if (piece_.last && state_.in_run && at_ == call_.length) EndRun(true);
        piece_.state = state_;
        return sink_.Result(at_);
    }

private:
    void TakeDirect() noexcept {
        const unsigned char byte = call_.text[at_];
        if (byte >= 0x80) piece_.Fault(at_);
        sink_.Put(byte);
        ++at_;
    }

    // False, with nothing taken, where the piece ends behind the '+'.
    bool TakePlus() noexcept {
        const bool cut = at_ + 1 == call_.length;
        if (cut && !piece_.last) return false;
        if (!cut && call_.text[at_ + 1] == '-') {
            sink_.Put(u'+');
            at_ += 2;
            return true;
        }
        ++at_;
        state_.in_run = true;
        state_.run_is_empty = true;
        return true;
    }

    void TakeRun() noexcept {
        for (; at_ < call_.length; ++at_) {
            const unsigned char byte = call_.text[at_];
            const unsigned char digit = kDigitValues[byte];
            if (digit == kNoDigit) {
                EndRun(byte < 0x80);
                if (byte == '-') ++at_;
                return;
            }
            AddBits(state_, digit, 6);
            if (state_.bit_count < 16) continue;
            sink_.Put(static_cast<char16_t>(TakeBits(state_, 16)));
            state_.run_is_empty = false;
        }
    }

    // Left-over bits are dropped, but stay in front of the next run when a byte from 80 up ended
    // this one. They are what fills up the last digit, unless something is wrong: told at the byte
    // behind the run, since its digits may lie in an earlier piece. A bare '+' never does.
    void EndRun(bool drop_bits) noexcept {
        const bool sound = !state_.run_is_empty && state_.bit_count < 6 && state_.bits == 0;
        const bool bare = state_.run_is_empty && state_.bit_count == 0;
        if (!sound) piece_.Fault((bare || at_ == call_.length) && at_ != 0 ? at_ - 1 : at_);
        state_.in_run = false;
        if (!drop_bits) return;
        state_.bits = 0;
        state_.bit_count = 0;
    }

    const Decoding& call_;
    Piece& piece_;
    ShiftState state_;
    UnitSink sink_;
    std::size_t at_ = 0;
};

class Encoder {
public:
    Encoder(const Encoding& call, Piece& piece) noexcept
        : call_(call), piece_(piece), state_(piece.state), sink_(call.out, call.capacity) {}

    Outcome Run() noexcept {
        std::size_t at = 0;
        for (; at < call_.length && !sink_.IsFull(); ++at) {
            const char16_t unit = call_.text[at];
            if (unit == u'+') {
                EndRun();
                sink_.Put({'+', '-'});
            } else if (IsDirect(unit)) {
                EndRun();
                sink_.Put(static_cast<unsigned char>(unit));
            } else {
                PutInRun(unit);
            }
        }
        if (piece_.last) EndRun();
        piece_.state = state_;
        return sink_.Result(at);
    }

private:
    void PutDigit() noexcept {
        sink_.Put(static_cast<unsigned char>(kDigits[TakeBits(state_, 6)]));
    }

    void PutInRun(char16_t unit) noexcept {
        if (!state_.in_run) sink_.Put('+');
        state_.in_run = true;
        AddBits(state_, unit, 16);
        while (state_.bit_count >= 6) PutDigit();
    }

    void EndRun() noexcept {
        if (!state_.in_run) return;
        state_.in_run = false;
        if (state_.bit_count != 0) {
            AddBits(state_, 0, 6u - state_.bit_count);
            PutDigit();
        }
        sink_.Put('-');
    }

    const Encoding& call_;
    Piece& piece_;
    ShiftState state_;
    ByteSink sink_;
};

}  // namespace

Outcome DecodeUtf7(const Decoding& call, Piece& piece) noexcept {
    return Decoder(call, piece).Run();
}

Outcome EncodeUtf7(const Encoding& call, Piece& piece) noexcept {
    return Encoder(call, piece).Run();
}

}  // namespace zelkor::platform::nls
