// Slow, obvious UTF-8 and UTF-16 conversion that the kernels are compared with: a sequence is well
// formed when encoding the character it spells gives the same sequence again.
#ifndef TESTS_PLATFORM_UTFREFERENCE_H
#define TESTS_PLATFORM_UTFREFERENCE_H

#include <cstddef>
#include <string>
#include <string_view>

namespace test {

inline std::string ReferenceUtf8(char32_t value) {
    if (value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) return {};
    if (value < 0x80) return {static_cast<char>(value)};
    const std::size_t trails = value < 0x800 ? 1 : value < 0x10000 ? 2 : 3;
    std::string bytes;
    for (std::size_t i = 0; i < trails; ++i, value >>= 6) {
        bytes.insert(bytes.begin(), static_cast<char>(0x80 | (value & 0x3F)));
    }
    constexpr char32_t kLeads[] = {0, 0xC0, 0xE0, 0xF0};
    bytes.insert(bytes.begin(), static_cast<char>(kLeads[trails] | value));
    return bytes;
}

inline std::u16string ReferenceUtf16(char32_t value) {
    if (value < 0x10000) return {static_cast<char16_t>(value)};
    return {static_cast<char16_t>(0xD800 | (value - 0x10000) >> 10),
            static_cast<char16_t>(0xDC00 | (value & 0x3FF))};
}

// What a conversion takes of its source, and what it writes.
template <class Text>
struct Converted {
    std::size_t taken = 0;
    Text text;
};

inline Converted<std::u16string> ReferenceDecode(std::string_view source, std::size_t capacity) {
    Converted<std::u16string> done;
    while (done.taken < source.size()) {
        const std::string_view rest = source.substr(done.taken);
        const auto lead = static_cast<unsigned char>(rest[0]);
        const std::size_t size = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        char32_t value = size == 1 ? lead : lead & (0x7Fu >> size);
        for (const char trail : rest.substr(1, size - 1)) {
            value = value << 6 | (static_cast<unsigned char>(trail) & 0x3Fu);
        }
        if (ReferenceUtf8(value) != rest.substr(0, size)) break;
        const std::u16string units = ReferenceUtf16(value);
        if (done.text.size() + units.size() > capacity) break;
        done.text += units;
        done.taken += size;
    }
    return done;
}

inline Converted<std::string> ReferenceEncode(std::u16string_view source, std::size_t capacity) {
    Converted<std::string> done;
    while (done.taken < source.size()) {
        const char32_t first = source[done.taken];
        const char32_t second = done.taken + 1 < source.size() ? source[done.taken + 1] : u' ';
        char32_t value = first;
        if (first >= 0xD800 && first <= 0xDBFF && second >= 0xDC00 && second <= 0xDFFF) {
            value = 0x10000 + (first - 0xD800) * 0x400 + (second - 0xDC00);
        }
        const std::string bytes = ReferenceUtf8(value);
        if (bytes.empty() || done.text.size() + bytes.size() > capacity) break;
        done.text += bytes;
        done.taken += value < 0x10000 ? 1 : 2;
    }
    return done;
}

}  // namespace test

#endif
