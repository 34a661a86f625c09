// Page 65000, UTF-7: units outside a set of direct characters travel as base-64 runs between '+'
// and '-'. The encoder always writes the closing '-'; the decoder knows no error.
#include <array>
#include <string_view>

#include "Foundation/Platform/Nls/CodePageDetail.h"

namespace platform::nls {
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

// Bits on their way between units and base-64 digits, the newest lowest.
struct BitStore {
    std::uint32_t bits = 0;
    unsigned int count = 0;

    void Add(std::uint32_t value, unsigned int width) noexcept {
        bits = bits << width | value;
        count += width;
    }
    std::uint32_t Take(unsigned int width) noexcept {
        count -= width;
        const std::uint32_t value = bits >> count;
        bits &= (1u << count) - 1u;
        return value;
    }
};

// Reads the run behind a '+' and returns the position behind it. Left-over bits are dropped, but
// stay in front of the next run when a byte from 80 up ended this one.
std::size_t DecodeRun(const Decoding& call, std::size_t at, BitStore& store,
                      UnitSink& sink) noexcept {
    for (; at < call.length; ++at) {
        const unsigned char byte = call.text[at];
        const unsigned char digit = kDigitValues[byte];
        if (digit == kNoDigit) {
            if (byte < 0x80) store = {};
            return byte == '-' ? at + 1 : at;
        }
        store.Add(digit, 6);
        if (store.count >= 16) sink.Put(static_cast<char16_t>(store.Take(16)));
    }
    return at;
}

// Writes the run of units that begins at `at` and returns the position behind it.
std::size_t EncodeRun(const Encoding& call, std::size_t at, ByteSink& sink) noexcept {
    const auto put_digit = [&sink](std::uint32_t digit) {
        sink.Put(static_cast<unsigned char>(kDigits[digit]));
    };
    BitStore store;
    sink.Put('+');
    for (; at < call.length && call.text[at] != u'+' && !IsDirect(call.text[at]); ++at) {
        store.Add(call.text[at], 16);
        while (store.count >= 6) put_digit(store.Take(6));
    }
    if (store.count != 0) {
        store.Add(0, 6 - store.count);
        put_digit(store.Take(6));
    }
    sink.Put('-');
    return at;
}

}  // namespace

Outcome DecodeUtf7(const Decoding& call) noexcept {
    UnitSink sink(call.out, call.capacity);
    BitStore store;
    std::size_t at = 0;
    while (at < call.length && !sink.IsFull()) {
        const unsigned char byte = call.text[at++];
        if (byte != '+') {
            sink.Put(byte);
        } else if (at < call.length && call.text[at] == '-') {
            sink.Put(u'+');
            ++at;
        } else {
            at = DecodeRun(call, at, store, sink);
        }
    }
    return sink.Result();
}

Outcome EncodeUtf7(const Encoding& call) noexcept {
    ByteSink sink(call.out, call.capacity);
    std::size_t at = 0;
    while (at < call.length && !sink.IsFull()) {
        const char16_t unit = call.text[at];
        if (unit == u'+') {
            sink.Put({'+', '-'});
            ++at;
        } else if (IsDirect(unit)) {
            sink.Put(static_cast<unsigned char>(unit));
            ++at;
        } else {
            at = EncodeRun(call, at, sink);
        }
    }
    return sink.Result();
}

}  // namespace platform::nls
