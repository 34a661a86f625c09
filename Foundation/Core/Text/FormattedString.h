// CT_FormattedString: records of tagged values in a text, <Width=12><Scale=1.500000><Name=Main>.
//
// Keys and values must not hold "<", ">" or "=": there is no escape, and nothing is checked. Of
// items with the same key the last one counts. Texts are zero-terminated UTF-16, CT_UString
// pointers or CT_UStrings; null is empty. Without a string or number to write to nothing is done,
// and reading answers FALSE. Errors: records none; running out of memory throws
// CT_SmartHeapException and changes nothing. Threads: any; nothing is kept between calls.
#ifndef FOUNDATION_CORE_TEXT_FORMATTEDSTRING_H
#define FOUNDATION_CORE_TEXT_FORMATTEDSTRING_H

#include "Foundation/Core/String/TextArgument.h"
#include "Foundation/Core/String/UString.h"

class ZELKOR_API CT_FormattedString {
    using Text = zelkor::detail::TextArgument;

public:
    CT_FormattedString() = delete;

    // out = prefix<key=value>. The texts may be those of `out`.
    static void sv_AddData(Text prefix, Text key, Text value, CT_UString* out);
    // Appends one item.
    static void sv_AddData(CT_UString& record, Text key, Text value);
    // The value as %d, and as %f with six decimals.
    static void sv_AddDataI(CT_UString& record, Text key, int value);
    static void sv_AddDataI(Text prefix, Text key, int value, CT_UString* out);
    static void sv_AddDataR(CT_UString& record, Text key, double value);
    static void sv_AddDataR(Text prefix, Text key, double value, CT_UString* out);

    // The value of a key, up to an "=" in it; FALSE and an empty value when the key is absent.
    static BOOL sb_GetData(Text record, Text key, CT_UString* value);
    // TRUE when the key is there. The number changes only when the value begins with one, after
    // white space; integers lose what is beyond 32 bits.
    static BOOL sb_GetDataI(Text record, Text key, int* value);
    static BOOL sb_GetDataR(Text record, Text key, double* value);
};

#endif
