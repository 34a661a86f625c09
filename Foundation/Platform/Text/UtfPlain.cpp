// The kernels for any processor: one character at a time, ASCII eight bytes at a time.
#include "Foundation/Platform/Text/Internal/UtfKernels.h"
#include "Foundation/Platform/Text/Internal/UtfScalar.h"

namespace zelkor::platform::detail {
namespace {

UtfProgress Decode(const char* text, std::size_t length, char16_t* out,
                   std::size_t capacity) noexcept {
    UtfProgress done{0, 0};
    while (done.taken < length) {
        const char* rest = text + done.taken;
        if (Byte(rest[0]) < 0x80 && length - done.taken >= 8 && capacity - done.written >= 8 &&
            AreEightAscii(rest)) {
            WidenEight(rest, out + done.written);
            done.taken += 8;
            done.written += 8;
            continue;
        }
        const UtfCharacter next = ReadUtf8(rest, length - done.taken);
        if (next.length == 0 || capacity - done.written < (next.value < 0x10000 ? 1u : 2u)) break;
        done.written += WriteUtf16(next.value, out + done.written);
        done.taken += next.length;
    }
    return done;
}

UtfProgress Encode(const char16_t* text, std::size_t length, char* out,
                   std::size_t capacity) noexcept {
    UtfProgress done{0, 0};
    while (done.taken < length) {
        const char16_t* rest = text + done.taken;
        if (rest[0] < 0x80 && length - done.taken >= 4 && capacity - done.written >= 4 &&
            AreFourAscii(rest)) {
            NarrowFour(rest, out + done.written);
            done.taken += 4;
            done.written += 4;
            continue;
        }
        const UtfCharacter next = ReadUtf16(rest, length - done.taken);
        if (next.length == 0 || capacity - done.written < Utf8Size(next.value)) break;
        done.written += WriteUtf8(next.value, out + done.written);
        done.taken += next.length;
    }
    return done;
}

UtfProgress DecodedLength(const char* text, std::size_t length) noexcept {
    UtfProgress done{0, 0};
    while (done.taken < length) {
        const char* rest = text + done.taken;
        if (Byte(rest[0]) < 0x80 && length - done.taken >= 8 && AreEightAscii(rest)) {
            done.taken += 8;
            done.written += 8;
            continue;
        }
        const UtfCharacter next = ReadUtf8(rest, length - done.taken);
        if (next.length == 0) break;
        done.taken += next.length;
        done.written += next.value < 0x10000 ? 1 : 2;
    }
    return done;
}

UtfProgress EncodedLength(const char16_t* text, std::size_t length) noexcept {
    UtfProgress done{0, 0};
    while (done.taken < length) {
        const UtfCharacter next = ReadUtf16(text + done.taken, length - done.taken);
        if (next.length == 0) break;
        done.taken += next.length;
        done.written += Utf8Size(next.value);
    }
    return done;
}

std::size_t AsciiBytes(const char* text, std::size_t length) noexcept {
    std::size_t count = 0;
    while (length - count >= 8 && AreEightAscii(text + count)) count += 8;
    while (count < length && Byte(text[count]) < 0x80) ++count;
    return count;
}

std::size_t AsciiUnits(const char16_t* text, std::size_t length) noexcept {
    std::size_t count = 0;
    while (length - count >= 4 && AreFourAscii(text + count)) count += 4;
    while (count < length && text[count] < 0x80) ++count;
    return count;
}

void Widen(const char* text, std::size_t length, char16_t* out) noexcept {
    for (std::size_t i = 0; i < length; ++i) out[i] = static_cast<unsigned char>(text[i]);
}

void Narrow(const char16_t* text, std::size_t length, char* out) noexcept {
    for (std::size_t i = 0; i < length; ++i) out[i] = static_cast<char>(text[i]);
}

}  // namespace

constinit const UtfKernels kPlainKernels{Decode,     Encode,     DecodedLength, EncodedLength,
                                         AsciiBytes, AsciiUnits, Widen,         Narrow};

}  // namespace zelkor::platform::detail
