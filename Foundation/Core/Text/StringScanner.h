// CT_StringScanner: words and items of a text.
//
// Words are the longest runs of characters that are not among the separators. Items are what single
// separator characters divide: there is one more than separators, and items may be empty. Both
// count from 1. Texts and separators are zero-terminated UTF-16, CT_UString pointers or
// CT_UStrings; null is empty, and without a string to change nothing is done. Errors: records none;
// running out of memory throws CT_SmartHeapException and changes nothing. Threads: any; nothing is
// kept between calls. Each call takes one pass over the text, sixteen bytes at a time; to walk a
// whole text, step through it with CT_UStringForwardIterator.
#ifndef FOUNDATION_CORE_TEXT_STRINGSCANNER_H
#define FOUNDATION_CORE_TEXT_STRINGSCANNER_H

#include <cstdint>
#include <string_view>

#include "Foundation/Core/String/TextArgument.h"
#include "Foundation/Core/String/UString.h"

class ZELKOR_API CT_StringScanner {
    using Text = zelkor::detail::TextArgument;

public:
    CT_StringScanner() = delete;

    [[nodiscard]] static std::uint32_t n_WordCount(Text text, Text separators) {
        return n_WordCountU(text.Get(), separators.Get());
    }
    // Empty when there are fewer than `n` words. `out` may be the string that is read.
    static void v_SubWord(CT_UString* out, Text text, Text separators, std::uint32_t n) {
        v_SubWordU(out, text.Get(), separators.Get(), n);
    }
    // Takes word `n` out and leaves the separators around it; nothing when there are fewer.
    static void v_RemoveWord(CT_UString* text, Text separators, std::uint32_t n) {
        v_RemoveWordU(text, separators.Get(), n);
    }

    // An empty text has one item.
    [[nodiscard]] static std::uint32_t n_ItemCount(Text text, char16_t separator) {
        return n_ItemCountU(text.Get(), separator);
    }
    // Empty when there are fewer than `n` items. `out` may be the string that is read.
    static void v_Item(CT_UString* out, Text text, char16_t separator, std::uint32_t n) {
        v_ItemU(out, text.Get(), separator, n);
    }
    // Takes the characters of item `n` out and leaves the separators; nothing when there are fewer.
    static void v_RemoveItem(CT_UString* text, char16_t separator, std::uint32_t n) {
        v_RemoveItemU(text, separator, n);
    }

private:
    static std::uint32_t n_WordCountU(std::u16string_view text, std::u16string_view separators);
    static void v_SubWordU(CT_UString* out, std::u16string_view text,
                           std::u16string_view separators, std::uint32_t n);
    static void v_RemoveWordU(CT_UString* text, std::u16string_view separators, std::uint32_t n);
    static std::uint32_t n_ItemCountU(std::u16string_view text, char16_t separator);
    static void v_ItemU(CT_UString* out, std::u16string_view text, char16_t separator,
                        std::uint32_t n);
    static void v_RemoveItemU(CT_UString* text, char16_t separator, std::uint32_t n);
};

#endif
