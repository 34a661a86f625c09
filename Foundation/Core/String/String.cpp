#include "Foundation/Core/String/String.h"

#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/Internal/StringCore.h"

CT_String::CT_String(const CT_Type* /*type*/) {
    if (CT_Type::sb_InConstruct(this)) CT_Type::sv_Enter(this, &sco_Type);
    if (this == &sco_Object) sco_Type.v_Enter();
}

void CT_String::v_LeavePrototype() noexcept {
    if (this == &sco_Object) CT_Type::sv_ToDestruct(&sco_Type);
    CT_Type::sb_InDestruct(this);
}

const CT_Type* CT_String::spcco_GetType() noexcept {
    return &sco_Type;
}

const CT_Type* CT_String::vpcco_GetType() const {
    return &sco_Type;
}

void* CT_String::vpv_IsA(const CT_Type* type) const {
    return type == &sco_Type ? const_cast<CT_String*>(this) : nullptr;
}

void* CT_String::vpv_IsKindOf(const CT_Type* type) const {
    return sco_Type.pv_CastTo(this, type);
}

void CT_String::vv_SetSize(std::uint32_t, BOOL) {}
void CT_String::vv_SetMinSize(std::uint32_t, BOOL) {}
void CT_String::vv_ToLower() {}
void CT_String::vv_ToUpper() {}
void CT_String::vv_Remove(std::uint32_t, std::uint32_t) {}
void CT_String::vv_Update() {}
void CT_String::vv_Strip(const CT_String*) {}
void CT_String::vv_StripRight() {}
void CT_String::vv_StripLeft() {}

int CT_String::vi_Compare(const CT_String*, std::uint32_t, std::uint32_t, std::uint32_t) const {
    return 0;
}

int CT_String::vi_Compare(const char16_t*, std::uint32_t, std::uint32_t) const {
    return 0;
}

int CT_String::vi_Compare(const char*, std::uint32_t, std::uint32_t) const {
    return 0;
}

void CT_String::vv_Translate(const CT_String*, const CT_String*) {}
void CT_String::vv_SetLength(std::uint32_t) {}

std::uint32_t CT_String::vn_GetLength() const {
    return 0;
}

std::uint32_t CT_String::vn_GetMaximumLength() const {
    return 0;
}

void CT_String::vv_SetGrowth(std::uint32_t) {}

std::uint32_t CT_String::vn_GetGrowth() const {
    return 0;
}

void CT_String::vv_Init(const CT_Buffer*) {}
void CT_String::vv_Init(const char16_t*, std::uint32_t) {}
void CT_String::vv_Init(const char*, std::uint32_t, std::uint32_t) {}
void CT_String::vv_Init(const CT_String*) {}
void CT_String::vv_Init(std::uint32_t) {}
void CT_String::vv_Init() {}

void CT_String::v_Set(const char* text, std::uint32_t length, std::uint32_t code_page) {
    if (code_page == kOwnCodePage) {
        const auto* const own = zelkor::detail::As<CT_CString>(this);
        code_page = own == nullptr ? 0 : own->n_GetCodePage();
    }
    vv_Init(text, length, code_page);
}

// The cut keeps the block; vv_SetLength(0) would take a small one.
void CT_String::v_Set(std::uint32_t length, BOOL keep) {
    if (keep != FALSE && vn_GetMaximumLength() >= length) {
        vv_Remove(kToEnd, 0);
    } else {
        vv_Init(length);
    }
}
