// CT_StringConvert: conversion between 8-bit text of a code page and UTF-16 text, into strings.
//
// Units: lengths are bytes (8-bit side) and UTF-16 units (wide side); 0xFFFFFFFF means up to the
// terminating zero; of a text given with another length nothing behind it is read. Code page 0 is
// the system's default 8-bit code page. Null or empty text gives an empty string and 0, without an
// error; without a target the result is 0.
// Errors: the system error of the platform (87 for a code page it does not know or an argument the
// page refuses, 1113 for bytes that give no character at all, as a UTF-7 shift that is cut off),
// with its location; the target is then empty and the result 0.
#ifndef FOUNDATION_CORE_STRING_STRINGCONVERT_H
#define FOUNDATION_CORE_STRING_STRINGCONVERT_H

#include <cstdint>

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_CString;
class CT_UString;

class ZELKOR_API CT_StringConvert {
public:
    CT_StringConvert() = delete;

    // The number of UTF-16 units now in `out`. Invalid bytes give the page's replacement; a text
    // that decodes to a single zero character gives "?".
    static int si_MultiToWide(CT_UString* out, const char* text, std::uint32_t length,
                              std::uint32_t code_page);
    // The string's text by its own code page.
    static int si_MultiToWide(CT_UString* out, const CT_CString* text);

    // The number of bytes now in `out`, whose code page becomes the one in use: `code_page`, but
    // 1252 for 1200. Characters that the page lacks give `default_character` (null: the page's
    // own), and *used_default (may be null) tells whether there were any.
    static int si_WideToMulti(CT_CString* out, const char16_t* text, std::uint32_t length,
                              std::uint32_t code_page, const char* default_character = nullptr,
                              BOOL* used_default = nullptr);
    static int si_WideToMulti(CT_CString* out, const CT_UString* text, std::uint32_t code_page,
                              const char* default_character = nullptr,
                              BOOL* used_default = nullptr);
};

#endif
