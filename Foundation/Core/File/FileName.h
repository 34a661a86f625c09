// CT_FileName: a file name held as path, name and extension, and put back together.
//
// "/" and "\" both separate when a name is taken apart; joining writes "\". Nothing here asks the
// file system, and nothing is folded: ".." and doubled separators inside a path stay as given.
// A null text counts as an empty one.
// Errors: records none. Threads: one object, one thread.
#ifndef FOUNDATION_CORE_FILE_FILENAME_H
#define FOUNDATION_CORE_FILE_FILENAME_H

#include <string_view>

#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class ZELKOR_API CT_FileName {
public:
    CT_FileName() = default;
    explicit CT_FileName(const CT_FileName* other);
    explicit CT_FileName(const CT_UString* full_name);
    explicit CT_FileName(const char16_t* full_name);

    // Empties, copies, or takes a full name apart at its last separator. A separator that is the
    // first character of the full name stays in the name: "/a.b" has no path and the name "/a".
    void v_Set();
    void v_Set(const CT_FileName* other);
    void v_Set(const CT_UString* full_name);
    void v_Set(const char16_t* full_name);

    // The path without its trailing separators: "C:\" is kept as "C:", a lone separator as nothing.
    void v_SetPath(const CT_UString* path);
    void v_SetPath(const char16_t* path);

    // Sets name and extension, which begins behind the last period (".profile" is all extension).
    void v_SetName(const CT_UString* name);
    void v_SetName(const char16_t* name);

    // Replaces the extension only; given without a period.
    void v_SetExt(const CT_UString* extension);
    void v_SetExt(const char16_t* extension);

    // Each writes into the caller's string and answers whether there was such a part. Only
    // b_GetFullName leaves the string as it was when it answers FALSE (no path and no name).
    BOOL b_GetPath(CT_UString* path) const;
    BOOL b_GetPathEndedWithSlash(CT_UString* path) const;  // "\" alone for an empty path
    BOOL b_GetName(CT_UString* name) const;  // with extension; empty when the name is empty
    BOOL b_GetNameIgnoreExt(CT_UString* name) const;
    BOOL b_GetExt(CT_UString* extension) const;
    BOOL b_GetFullName(CT_UString* full_name) const;

private:
    void Parse(std::u16string_view full_name);
    void TakePath(std::u16string_view path);
    void TakeName(std::u16string_view name);

    CT_UString path_;       // without a trailing separator
    CT_UString name_;       // without extension
    CT_UString extension_;  // without the period
};

#endif
