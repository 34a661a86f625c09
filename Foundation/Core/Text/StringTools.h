// CT_StringTools: replacing, finding characters of a set, comparing parts, fixed-point numbers.
//
// Positions count characters from 0; 0xFFFFFFFF means none. UTF-16 text that is only read is given
// as zero-terminated text, a CT_UString pointer or a CT_UString; null is empty. Without a string to
// change nothing is done.
// Errors: records none (but conversions of 8-bit text may: see CT_StringConvert); running out of
// memory throws CT_SmartHeapException and changes nothing.
// Threads: any; nothing is kept between calls.
#ifndef FOUNDATION_CORE_TEXT_STRINGTOOLS_H
#define FOUNDATION_CORE_TEXT_STRINGTOOLS_H

#include <cstdint>

#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/TextArgument.h"
#include "Foundation/Core/String/UString.h"

class ZELKOR_API CT_StringTools {
    using Text = zelkor::detail::TextArgument;

public:
    static constexpr std::uint32_t kNotFound = 0xFFFFFFFF;

    CT_StringTools() = delete;

    // Replaces the first occurrence and returns its position. An empty text is found at 0.
    static std::uint32_t sn_Replace(CT_UString* string, Text find, Text replacement);
    static std::uint32_t sn_Replace(CT_CString* string, const CT_CString* find,
                                    const CT_CString* replacement);
    // Replaces the occurrences that a search from left to right finds one behind the other, in
    // linear time; what a replacement brings in is not replaced again. An empty `find` changes
    // nothing. The texts may be those of the string itself.
    static void sv_ReplaceAll(CT_UString* string, Text find, Text replacement);

    // First position, going in `direction` (1 or -1) from `from`, whose character is (FindNot: is
    // not) among `characters`. From behind the text there is nothing to find forwards; backwards
    // the search begins at the last character, but from 0xFFFFFFFF, one before 0, it finds nothing.
    [[nodiscard]] static std::uint32_t sn_FindAny(Text characters, Text text, std::uint32_t from,
                                                  int direction);
    [[nodiscard]] static std::uint32_t sn_FindNot(Text characters, Text text, std::uint32_t from,
                                                  int direction);

    // Compares a from offset_a with b from offset_b, over at most `count` characters (0: no limit)
    // and not beyond a zero; with `case_sensitive` 0 in lower case (CT_CharMappings). The result is
    // the difference of the last two characters compared, 0 when all are equal. 8-bit text is
    // converted by code page 0, strings by their own; offsets count characters of the UTF-16 text.
    // Null texts are empty, and an offset behind the end of a converted text or a string is the
    // end; an offset of UTF-16 text must lie within it. Texts given with a count need no zero: of
    // UTF-16 text nothing behind the last two characters compared is read, of 8-bit text nothing
    // behind the `count` characters from the offset on.
    [[nodiscard]] static int si_CompareStrings(const char16_t* a, const char16_t* b,
                                               int case_sensitive, std::uint32_t count = 0,
                                               std::uint32_t offset_a = 0,
                                               std::uint32_t offset_b = 0);
    [[nodiscard]] static int si_CompareStrings(const char* a, const char* b, int case_sensitive,
                                               std::uint32_t count = 0, std::uint32_t offset_a = 0,
                                               std::uint32_t offset_b = 0);
    [[nodiscard]] static int si_CompareStrings(const CT_String* a, const CT_String* b,
                                               int case_sensitive, std::uint32_t count = 0,
                                               std::uint32_t offset_a = 0,
                                               std::uint32_t offset_b = 0);

    // Writes the value, read as a signed 32-bit number, right-aligned into a field of `width`
    // characters, its last `decimals` digits behind the decimal separator (padded with zeros, and
    // with a 0 before the separator where no digit is left), a group separator between every three
    // digits before it (0: none). A minus sign stands before the first digit, never behind a group
    // separator. What does not fit is dropped on the left. Width 0xFFFFFFFF means a field of 16
    // whose leading blanks are left out. A decimal separator of 0 is left out.
    static void sv_FormatNumber(CT_UString* out, std::uint32_t value, std::uint32_t width,
                                char16_t group_separator, char16_t decimal_separator,
                                std::uint32_t decimals);
    // The code page of `out` stays.
    static void sv_FormatNumber(CT_CString* out, std::uint32_t value, std::uint32_t width,
                                char group_separator, char decimal_separator,
                                std::uint32_t decimals);

private:
    // Where a search in that direction ends: 0xFFFFFFFF backwards, the length forwards.
    [[nodiscard]] static std::uint32_t sv_CheckOffset(std::uint32_t length, int direction);
};

#endif
