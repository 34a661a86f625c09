// Formatted output under any format: nothing is written or read outside, an area of any size holds
// the beginning of the whole text, and integers and texts come out as the C library's do.
#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "Foundation/Platform/Runtime.h"

namespace platform = zelkor::platform;

namespace {

constexpr std::size_t kArguments = 64;

// Text in either width: as 8-bit text it ends behind the first letter.
constexpr std::array<char16_t, 6> kText{u't', u'\u00E9', u'x', u'\u4E00', u'!', 0};

void Require(bool holds) {
    if (!holds) std::abort();
}

template <typename Char>
std::size_t Whole(Char* out, std::size_t capacity, const Char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const std::size_t length = platform::FormatWhole(out, capacity, format, arguments);
    va_end(arguments);
    return length;
}

// Every argument is the address of the text: good for %s and %S, a number for everything else. The
// doubles fill the registers that floating-point directives read first.
template <typename Char, std::size_t... kIndex>
std::size_t WholeOfAny(Char* out, std::size_t capacity, const Char* format,
                       std::index_sequence<kIndex...>) {
    return Whole(out, capacity, format, 1.5, -2e-300, 0.1, 1e22, 0.0, -1.0 / 3, 5e-324, 1e308,
                 (static_cast<void>(kIndex), kText.data())...);
}

template <typename Char>
void FormatAnything(const std::uint8_t* data, std::size_t size) {
    std::vector<Char> format;
    std::size_t needed = 0;  // arguments, at most: a long double takes two places
    for (std::size_t i = 0; i + sizeof(Char) <= size; i += sizeof(Char)) {
        Char unit;
        std::memcpy(&unit, data + i, sizeof(Char));
        if (unit == '%') needed += 2;
        if (unit == '*') needed += 1;
        if (unit == 0 || needed > kArguments) break;
        format.push_back(unit);
    }
    format.push_back(0);
    format.shrink_to_fit();
    constexpr auto kIndices = std::make_index_sequence<kArguments>();
    const std::size_t length = WholeOfAny<Char>(nullptr, 0, format.data(), kIndices);
    const std::size_t capacity = std::min<std::size_t>(length, 5000);
    std::vector<Char> exact(capacity, Char{0x7E});
    Require(WholeOfAny(exact.data(), capacity, format.data(), kIndices) == length);
    std::vector<Char> half(capacity / 2, Char{0x7E});
    Require(WholeOfAny(half.data(), half.size(), format.data(), kIndices) == length);
    Require(std::equal(half.begin(), half.end(), exact.begin()));
}

// A directive of the part where the C library agrees, and a number for it, out of the input.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
    unsigned Next() {
        if (size_ == 0) return 0;
        --size_;
        return *data_++;
    }

private:
    const std::uint8_t* data_;
    std::size_t size_;
};

void CompareWithTheLibrary(Input input) {
    std::string format = "<%";
    const unsigned flags = input.Next();
    const char letter = "diuxXocs"[input.Next() % 8];
    const bool text = letter == 's' || letter == 'c';
    for (unsigned i = 0; i < 5; ++i) {
        if ((flags >> i & 1) != 0 && !(text && i > 0)) format += "-+ #0"[i];
    }
    if ((flags & 0x20) != 0) format += std::to_string(input.Next() % 60);
    if ((flags & 0x40) != 0) format += '.' + std::to_string(input.Next() % 60);
    format += letter;
    format += '>';
    std::uint32_t number = 0;
    for (int i = 0; i < 4; ++i) number = number << 8 | input.Next();
    if (letter == 'c') number = number % 127 + 1;
    const std::u16string wide_format(format.begin(), format.end());

    std::array<char, 128> wanted, narrow;
    std::array<char16_t, 128> wide;
    int length;
    const int value = static_cast<int>(number);
    if (letter == 's') {
        const std::string bytes = std::to_string(number);
        const std::u16string units(bytes.begin(), bytes.end());
        length = std::snprintf(wanted.data(), wanted.size(), format.c_str(), bytes.c_str());
        Require(platform::PrintText(narrow.data(), narrow.size(), format.c_str(), bytes.c_str()) ==
                length);
        Require(platform::PrintText(wide.data(), wide.size(), wide_format.c_str(), units.c_str()) ==
                length);
    } else {
        length = std::snprintf(wanted.data(), wanted.size(), format.c_str(), value);
        Require(platform::PrintText(narrow.data(), narrow.size(), format.c_str(), value) == length);
        Require(platform::PrintText(wide.data(), wide.size(), wide_format.c_str(), value) ==
                length);
    }
    Require(std::strcmp(wanted.data(), narrow.data()) == 0);
    Require(std::equal(wanted.begin(), wanted.begin() + length + 1, wide.begin()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 400) return 0;
    FormatAnything<char>(data, size);
    FormatAnything<char16_t>(data, size);
    CompareWithTheLibrary(Input(data, size));
    return 0;
}
