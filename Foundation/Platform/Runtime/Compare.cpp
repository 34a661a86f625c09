#include <algorithm>
#include <cstring>
#include <string>

#include "Foundation/Platform/Runtime.h"

namespace platform {
namespace {

template <typename Char>
unsigned Code(Char unit) noexcept {
    return static_cast<std::make_unsigned_t<Char>>(unit);
}
template <>
unsigned Code(char16_t unit) noexcept {
    return unit;
}

constexpr unsigned Lower(unsigned code) noexcept {
    return code - u'A' < 26u ? code + 32 : code;
}

int Sign(int value) noexcept {
    return (value > 0) - (value < 0);
}

// A count that no text reaches.
constexpr auto kUnbounded = static_cast<std::size_t>(-1);

template <typename Char>
int CompareUnits(const Char* a, const Char* b, std::size_t count) noexcept {
    for (; count != 0; --count, ++a, ++b) {
        if (*a != *b) return Code(*a) < Code(*b) ? -1 : 1;
        if (*a == 0) return 0;
    }
    return 0;
}

template <typename Char>
int CompareLowered(const Char* a, const Char* b, std::size_t count) noexcept {
    for (; count != 0; --count, ++a, ++b) {
        const unsigned left = Lower(Code(*a));
        const unsigned right = Lower(Code(*b));
        if (left != right) return static_cast<int>(left) - static_cast<int>(right);
        if (left == 0) return 0;
    }
    return 0;
}

// Units that two texts share from their start, whole blocks only. The inner loop has no exit, so
// that compilers turn it into vector instructions.
std::size_t EqualBlocks(const char16_t* a, const char16_t* b, std::size_t length) noexcept {
    constexpr std::size_t kBlock = 16;
    std::size_t done = 0;
    for (; length - done >= kBlock; done += kBlock) {
        unsigned difference = 0;
        for (std::size_t i = done; i < done + kBlock; ++i) {
            difference |= static_cast<unsigned>(ToLower(a[i]) ^ ToLower(b[i]));
        }
        if (difference != 0) break;
    }
    return done;
}

}  // namespace

int CompareText(const char16_t* a, const char16_t* b) noexcept {
    return CompareUnits(a, b, kUnbounded);
}

int CompareText(const char* a, const char* b) noexcept {
    return Sign(std::strcmp(a, b));
}

int CompareText(const char16_t* a, const char16_t* b, std::size_t count) noexcept {
    return CompareUnits(a, b, count);
}

int CompareText(const char* a, const char* b, std::size_t count) noexcept {
    return Sign(std::strncmp(a, b, count));
}

int CompareNoCase(const char16_t* a, const char16_t* b) noexcept {
    return CompareLowered(a, b, kUnbounded);
}

int CompareNoCase(const char* a, const char* b) noexcept {
    return CompareLowered(a, b, kUnbounded);
}

int CompareNoCase(const char16_t* a, const char16_t* b, std::size_t count) noexcept {
    return CompareLowered(a, b, count);
}

int CompareNoCase(const char* a, const char* b, std::size_t count) noexcept {
    return CompareLowered(a, b, count);
}

int CompareNoCase(std::u16string_view a, std::u16string_view b) noexcept {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = EqualBlocks(a.data(), b.data(), common); i < common; ++i) {
        const int difference = ToLower(a[i]) - ToLower(b[i]);
        if (difference != 0) return difference;
    }
    if (a.size() > common) return ToLower(a[common]);
    return b.size() > common ? -ToLower(b[common]) : 0;
}

std::size_t TextLength(const char16_t* text) noexcept {
    return std::char_traits<char16_t>::length(text);
}

}  // namespace platform
