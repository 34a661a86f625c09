// UTF-8 and UTF-16 one character at a time: the plain kernels, and the ends of texts that the block
// kernels leave over. Well-formedness is that of The Unicode Standard, table 3-7.
#ifndef FOUNDATION_PLATFORM_TEXT_INTERNAL_UTFSCALAR_H
#define FOUNDATION_PLATFORM_TEXT_INTERNAL_UTFSCALAR_H

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "Foundation/Platform/Text/Utf.h"

namespace zelkor::platform::detail {

// A character and how many source elements it takes; length 0: ill-formed, unpaired or cut.
struct UtfCharacter {
    std::uint32_t value;
    std::size_t length;
};

inline std::uint32_t Byte(char element) noexcept {
    return static_cast<unsigned char>(element);
}
inline bool IsTrail(char element) noexcept {
    return (Byte(element) & 0xC0) == 0x80;
}
inline bool IsHighSurrogate(std::uint32_t unit) noexcept {
    return (unit & 0xFC00) == 0xD800;
}
inline bool IsLowSurrogate(std::uint32_t unit) noexcept {
    return (unit & 0xFC00) == 0xDC00;
}

inline std::size_t Utf8Size(std::uint32_t value) noexcept {
    return value < 0x80 ? 1 : value < 0x800 ? 2 : value < 0x10000 ? 3 : 4;
}

// The first character of text[0, length); length is at least 1.
inline UtfCharacter ReadUtf8(const char* text, std::size_t length) noexcept {
    constexpr UtfCharacter kNone{0, 0};
    const std::uint32_t lead = Byte(text[0]);
    if (lead < 0x80) return {lead, 1};
    if (lead < 0xC2 || length < 2 || !IsTrail(text[1])) return kNone;
    const std::uint32_t second = Byte(text[1]) & 0x3F;
    if (lead < 0xE0) return {(lead & 0x1F) << 6 | second, 2};
    if (length < 3 || !IsTrail(text[2])) return kNone;
    const std::uint32_t third = Byte(text[2]) & 0x3F;
    if (lead < 0xF0) {
        const std::uint32_t value = (lead & 0xF) << 12 | second << 6 | third;
        return value < 0x800 || (value & 0xF800) == 0xD800 ? kNone : UtfCharacter{value, 3};
    }
    if (length < 4 || !IsTrail(text[3])) return kNone;
    const std::uint32_t value =
        (lead & 0xF) << 18 | second << 12 | third << 6 | (Byte(text[3]) & 0x3F);
    return value < 0x10000 || value > 0x10FFFF ? kNone : UtfCharacter{value, 4};
}

inline UtfCharacter ReadUtf16(const char16_t* text, std::size_t length) noexcept {
    const std::uint32_t unit = text[0];
    if ((unit & 0xF800) != 0xD800) return {unit, 1};
    if (IsLowSurrogate(unit) || length < 2 || !IsLowSurrogate(text[1])) return {0, 0};
    return {0x10000 + ((unit & 0x3FF) << 10) + (text[1] & 0x3FFu), 2};
}

inline std::size_t WriteUtf16(std::uint32_t value, char16_t* out) noexcept {
    if (value < 0x10000) {
        out[0] = static_cast<char16_t>(value);
        return 1;
    }
    out[0] = static_cast<char16_t>(0xD7C0 + (value >> 10));
    out[1] = static_cast<char16_t>(0xDC00 + (value & 0x3FF));
    return 2;
}

inline std::size_t WriteUtf8(std::uint32_t value, char* out) noexcept {
    const auto trail = [value](int shift) {
        return static_cast<char>(0x80 | ((value >> shift) & 0x3F));
    };
    if (value < 0x80) {
        out[0] = static_cast<char>(value);
        return 1;
    }
    if (value < 0x800) {
        out[0] = static_cast<char>(0xC0 | value >> 6);
        out[1] = trail(0);
        return 2;
    }
    if (value < 0x10000) {
        out[0] = static_cast<char>(0xE0 | value >> 12);
        out[1] = trail(6);
        out[2] = trail(0);
        return 3;
    }
    out[0] = static_cast<char>(0xF0 | value >> 18);
    out[1] = trail(12);
    out[2] = trail(6);
    out[3] = trail(0);
    return 4;
}

// Eight bytes (four units) at once, where a text has that many.
inline bool AreEightAscii(const char* text) noexcept {
    std::uint64_t word;
    std::memcpy(&word, text, sizeof word);
    return (word & 0x8080808080808080) == 0;
}
inline bool AreFourAscii(const char16_t* text) noexcept {
    std::uint64_t word;
    std::memcpy(&word, text, sizeof word);
    return (word & 0xFF80FF80FF80FF80) == 0;
}
inline void WidenEight(const char* text, char16_t* out) noexcept {
    for (int i = 0; i < 8; ++i) out[i] = static_cast<unsigned char>(text[i]);
}
inline void NarrowFour(const char16_t* text, char* out) noexcept {
    for (int i = 0; i < 4; ++i) out[i] = static_cast<char>(text[i]);
}

}  // namespace zelkor::platform::detail

#endif
