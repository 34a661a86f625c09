// CT_CharProperties: properties of text that need no language: whether bytes look like UTF-16, and
// whether a code page holds a character.
//
// Errors: none recorded. Threads: pure functions of constant tables, any thread.
#ifndef FOUNDATION_CORE_CHARACTER_CHARPROPERTIES_H
#define FOUNDATION_CORE_CHARACTER_CHARPROPERTIES_H

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class FOUNDATION_API CT_CharProperties {
public:
    CT_CharProperties() = delete;

    // Whether `size` bytes look like UTF-16 text. On the NT platform family the platform's tests of
    // ASCII as 16-bit units, controls and byte-order marks decide, in both byte orders, with those
    // for an odd size and illegal units (mask 0x3DD); a text with a byte-order mark is UTF-16. The
    // likely form asks all tests of the platform, the statistical ones too. On the older family
    // only a byte-order mark counts, and for the likely form a zero byte; an odd size never does.
    [[nodiscard]] static BOOL sb_IsTextUnicode(const void* data, unsigned int size);
    [[nodiscard]] static BOOL sb_IsTextLikelyUnicode(const void* data, unsigned int size);

    // Whether a code page (by its Windows number) holds the character. For 1250 to 1258 built-in
    // lists answer, where an undefined byte below 0xA0 counts as the C1 control of its number; 0,
    // 1200 and 65000 and above hold everything; any other page is asked by a strict round trip.
    [[nodiscard]] static BOOL sb_IsInCodepage(char16_t character, unsigned int code_page);
};

#endif
