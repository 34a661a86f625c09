#include "Foundation/Core/File/FileName.h"

#include "Foundation/Core/File/Internal/FileDetail.h"

namespace {

using zelkor::detail::Assign;
using zelkor::detail::kSeparators;
using zelkor::detail::View;

BOOL Give(const CT_UString& part, CT_UString* out) {
    if (out == nullptr) return FALSE;
    out->v_Set(&part);
    return part.vn_GetLength() != 0 ? TRUE : FALSE;
}

}  // namespace

CT_FileName::CT_FileName(const CT_FileName* other) {
    v_Set(other);
}

CT_FileName::CT_FileName(const CT_UString* full_name) {
    Parse(View(full_name));
}

CT_FileName::CT_FileName(const char16_t* full_name) {
    Parse(View(full_name));
}

void CT_FileName::v_Set() {
    path_.vv_Init();
    name_.vv_Init();
    extension_.vv_Init();
}

void CT_FileName::v_Set(const CT_FileName* other) {
    if (other == nullptr) return v_Set();
    path_.v_Set(&other->path_);
    name_.v_Set(&other->name_);
    extension_.v_Set(&other->extension_);
}

void CT_FileName::v_Set(const CT_UString* full_name) {
    Parse(View(full_name));
}

void CT_FileName::v_Set(const char16_t* full_name) {
    Parse(View(full_name));
}

void CT_FileName::v_SetPath(const CT_UString* path) {
    TakePath(View(path));
}

void CT_FileName::v_SetPath(const char16_t* path) {
    TakePath(View(path));
}

void CT_FileName::v_SetName(const CT_UString* name) {
    TakeName(View(name));
}

void CT_FileName::v_SetName(const char16_t* name) {
    TakeName(View(name));
}

void CT_FileName::v_SetExt(const CT_UString* extension) {
    Assign(extension_, View(extension));
}

void CT_FileName::v_SetExt(const char16_t* extension) {
    Assign(extension_, View(extension));
}

BOOL CT_FileName::b_GetPath(CT_UString* path) const {
    return Give(path_, path);
}

BOOL CT_FileName::b_GetPathEndedWithSlash(CT_UString* path) const {
    const BOOL found = Give(path_, path);
    if (path != nullptr) path->v_Append(u'\\');
    return found;
}

BOOL CT_FileName::b_GetName(CT_UString* name) const {
    const BOOL found = Give(name_, name);
    if (found && extension_.vn_GetLength() != 0) {
        name->v_Append(u'.');
        name->v_Append(&extension_);
    }
    return found;
}

BOOL CT_FileName::b_GetNameIgnoreExt(CT_UString* name) const {
    return Give(name_, name);
}

BOOL CT_FileName::b_GetExt(CT_UString* extension) const {
    return Give(extension_, extension);
}

BOOL CT_FileName::b_GetFullName(CT_UString* full_name) const {
    if (full_name == nullptr) return FALSE;
    if (path_.vn_GetLength() == 0) {
        if (name_.vn_GetLength() == 0) return FALSE;
        return b_GetName(full_name);
    }
    CT_UString name;
    const BOOL named = b_GetName(&name);
    full_name->v_Set(&path_);
    if (named) {
        full_name->v_Append(u'\\');
        full_name->v_Append(&name);
    }
    return TRUE;
}

void CT_FileName::Parse(std::u16string_view full_name) {
    const std::size_t separator = full_name.find_last_of(kSeparators);
    const bool split = separator != std::u16string_view::npos && separator != 0;
    TakePath(split ? full_name.substr(0, separator) : std::u16string_view());
    TakeName(split ? full_name.substr(separator + 1) : full_name);
}

void CT_FileName::TakePath(std::u16string_view path) {
    // npos + 1 is 0: nothing but separators leaves nothing
    Assign(path_, path.substr(0, path.find_last_not_of(kSeparators) + 1));
}

void CT_FileName::TakeName(std::u16string_view name) {
    const std::size_t period = name.find_last_of(u'.');
    if (period == std::u16string_view::npos) {
        Assign(name_, name);
        extension_.vv_Init();
        return;
    }
    Assign(extension_, name.substr(period + 1));
    Assign(name_, name.substr(0, period));
}
