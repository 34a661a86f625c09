#include <algorithm>

#include "Foundation/Platform/Runtime.h"

namespace zelkor::platform {

void LowerText(char16_t* text, std::size_t length) noexcept {
    std::transform(text, text + length, text, [](char16_t unit) { return ToLower(unit); });
}

void UpperText(char16_t* text, std::size_t length) noexcept {
    std::transform(text, text + length, text, [](char16_t unit) { return ToUpper(unit); });
}

void LowerText(char* text, std::size_t length) noexcept {
    std::transform(text, text + length, text, [](char byte) { return ToLower(byte); });
}

void UpperText(char* text, std::size_t length) noexcept {
    std::transform(text, text + length, text, [](char byte) { return ToUpper(byte); });
}

}  // namespace zelkor::platform
