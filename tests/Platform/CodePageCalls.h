// Calls of the code pages on buffers of exact size, and what they answered.
#ifndef TESTS_PLATFORM_CODEPAGECALLS_H
#define TESTS_PLATFORM_CODEPAGECALLS_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>

#include "Foundation/Platform/CodePages/CodePages.h"
#include "Foundation/Platform/LastError.h"

namespace test {

// A copy of the text on the heap with no byte to spare, so that an overrun is seen.
template <typename Element>
std::unique_ptr<Element[]> Exact(const std::basic_string<Element>& text) {
    auto copy = std::make_unique<Element[]>(text.size());
    std::copy(text.begin(), text.end(), copy.get());
    return copy;
}

// What one call gave. `written` is the result, or the whole buffer of a call that failed.
template <typename Element>
struct Answer {
    int result;
    std::uint32_t error;
    std::basic_string<Element> written;
};
inline Answer<char16_t> Decode(std::uint32_t page, std::uint32_t flags, const std::string& text,
                               std::size_t capacity) {
    const auto source = Exact(text);
    const auto out = std::make_unique<char16_t[]>(capacity);
    zelkor::platform::SetLastError(0);
    const int result = zelkor::platform::MultiByteToWideChar(
        page, flags, source.get(), static_cast<int>(text.size()),
        capacity == 0 ? nullptr : out.get(), static_cast<int>(capacity));
    return {
        result,
        zelkor::platform::LastError(),
        {out.get(), capacity != 0 && result != 0 ? static_cast<std::size_t>(result) : capacity}};
}

inline Answer<char> Encode(std::uint32_t page, std::uint32_t flags, const std::u16string& text,
                           std::size_t capacity, const char* default_char = nullptr,
                           BOOL* used_default = nullptr) {
    const auto source = Exact(text);
    const auto out = std::make_unique<char[]>(capacity);
    zelkor::platform::SetLastError(0);
    const int result = zelkor::platform::WideCharToMultiByte(
        page, flags, source.get(), static_cast<int>(text.size()),
        capacity == 0 ? nullptr : out.get(), static_cast<int>(capacity), default_char,
        used_default);
    return {
        result,
        zelkor::platform::LastError(),
        {out.get(), capacity != 0 && result != 0 ? static_cast<std::size_t>(result) : capacity}};
}

// Asks for the size and converts into exactly that; a text without a result stays empty.
inline std::u16string Decoded(std::uint32_t page, const std::string& text) {
    const int size = Decode(page, 0, text, 0).result;
    if (size == 0) return {};
    const auto answer = Decode(page, 0, text, static_cast<std::size_t>(size));
    EXPECT_EQ(answer.result, size);
    return answer.written;
}

inline std::string Encoded(std::uint32_t page, const std::u16string& text) {
    const int size = Encode(page, 0, text, 0).result;
    EXPECT_LE(static_cast<std::size_t>(size), zelkor::platform::MaxBytes(page, text.size()));
    if (size == 0) return {};
    const auto answer = Encode(page, 0, text, static_cast<std::size_t>(size));
    EXPECT_EQ(answer.result, size);
    return answer.written;
}

}  // namespace test

#endif
