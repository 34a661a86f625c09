// TextArgument: how the text classes take UTF-16 text that they only read: zero-terminated text,
// a string, or a pointer to one; null counts as empty. Borrowed for the length of the call.
#ifndef FOUNDATION_CORE_STRING_TEXTARGUMENT_H
#define FOUNDATION_CORE_STRING_TEXTARGUMENT_H

#include <cstddef>
#include <string_view>

#include "Foundation/Core/String/UString.h"

namespace zelkor::detail {

class TextArgument {
public:
    TextArgument(std::nullptr_t) noexcept {}
    TextArgument(const char16_t* text) noexcept {
        if (text != nullptr) view_ = text;
    }
    TextArgument(const CT_UString* text) noexcept : view_(View(text)) {}
    TextArgument(const CT_UString& text) noexcept : view_(View(text)) {}

    // A zero stands behind the last character; a string may hold others inside.
    [[nodiscard]] std::u16string_view Get() const noexcept { return view_; }

private:
    std::u16string_view view_ = u"";
};

}  // namespace zelkor::detail

#endif
