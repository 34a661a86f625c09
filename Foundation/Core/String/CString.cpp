#include "Foundation/Core/String/CString.h"

#include <algorithm>

#include "Foundation/Core/Buffer/Internal/Blocks.h"
#include "Foundation/Core/String/Internal/StringCore.h"
#include "Foundation/Core/String/StringConvert.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Memory.h"
#include "Foundation/Platform/Runtime.h"

namespace platform = zelkor::platform;

using zelkor::detail::As;
using zelkor::detail::IsExactly;
using zelkor::detail::PageInUse;
using zelkor::detail::View;

namespace {

using Core = zelkor::detail::StringCore<char>;
using WideCore = zelkor::detail::StringCore<char16_t>;

constinit _SHI_Pool pool(sizeof(CT_CString), 1024);

}  // namespace

CT_CString::CT_CString(const char* text, std::uint32_t length, std::uint32_t code_page) {
    CT_CString::vv_Init(text, length, code_page);
}

CT_CString::CT_CString(const char16_t* text, std::uint32_t length, std::uint32_t code_page)
    : code_page_(code_page) {
    CT_CString::vv_Init(text, length);
}

CT_CString::CT_CString(const CT_String* other, std::uint32_t code_page) : code_page_(code_page) {
    CT_CString::vv_Init(other);
}

CT_CString::CT_CString(const CT_UString* other, std::uint32_t code_page)
    : CT_CString(static_cast<const CT_String*>(other), code_page) {}

CT_CString::CT_CString(const CT_CString* other)
    : CT_CString(static_cast<const CT_String*>(other)) {}

CT_CString::CT_CString(const CT_Type* type) : CT_String(type) {
    if (CT_Type::sb_InConstruct(this)) CT_Type::sv_Enter(this, &sco_Type);
    if (this == &sco_Object) sco_Type.v_Enter();
}

void CT_CString::v_LeavePrototype() noexcept {
    if (this == &sco_Object) CT_Type::sv_ToDestruct(&sco_Type);
    CT_Type::sb_InDestruct(this);
}

void* CT_CString::operator new(std::size_t size) {
    return zelkor::detail::NewObject(pool, size);
}

void CT_CString::operator delete(void* block, std::size_t size) noexcept {
    zelkor::detail::DeleteObject(pool, block, size);
}

_SHI_Pool* CT_CString::spso_GetMemPool() noexcept {
    return &pool;
}

const CT_Type* CT_CString::spcco_GetType() noexcept {
    return &sco_Type;
}

const CT_Type* CT_CString::vpcco_GetType() const {
    return &sco_Type;
}

void* CT_CString::vpv_IsA(const CT_Type* type) const {
    return type == &sco_Type ? const_cast<CT_CString*>(this) : nullptr;
}

void* CT_CString::vpv_IsKindOf(const CT_Type* type) const {
    return sco_Type.pv_CastTo(this, type);
}

void CT_CString::vv_SetSize(std::uint32_t length, BOOL keep) {
    Core::SetSize(buffer_, length, keep != FALSE);
}

void CT_CString::vv_SetMinSize(std::uint32_t length, BOOL keep) {
    if (vn_GetMaximumLength() < length) vv_SetSize(length, keep);
}

void CT_CString::vv_ToLower() {
    if (n_GetLength() != 0) platform::LowerText(qcz_Get(), n_GetLength());
}

void CT_CString::vv_ToUpper() {
    if (n_GetLength() != 0) platform::UpperText(qcz_Get(), n_GetLength());
}

void CT_CString::vv_Remove(std::uint32_t count, std::uint32_t at) {
    Core::Remove(buffer_, count, at);
}

void CT_CString::vv_Update() {
    Core::Update(buffer_);
}

void CT_CString::vv_Strip(const CT_String* set) {
    if (set == nullptr) {
        vv_StripLeft();
        vv_StripRight();
    } else {
        const CT_CString narrow(set, code_page_);
        Core::Strip(buffer_, View(narrow));
    }
}

void CT_CString::vv_StripRight() {
    Core::StripRight(buffer_);
}

void CT_CString::vv_StripLeft() {
    Core::StripLeft(buffer_);
}

int CT_CString::vi_Compare(const CT_String* other, std::uint32_t from, std::uint32_t length,
                           std::uint32_t at) const {
    const bool whole = (from | at) == 0 && length == kToEnd;
    if (other != nullptr && whole && IsExactly<CT_CString>(*other)) [[likely]] {
        return Core::Compare(buffer_, *other->pcco_GetBuffer());
    }
    return i_ComparePart(other, from, length, at);
}

int CT_CString::i_ComparePart(const CT_String* other, std::uint32_t from, std::uint32_t length,
                              std::uint32_t at) const {
    if (other == nullptr) return vi_Compare("", length, at);
    if (const auto* const narrow = As<CT_CString>(other)) {
        return Core::Compare(Core::Tail(View(*this), at), Core::Tail(View(*narrow), from), length);
    }
    const auto* const wide = As<CT_UString>(other);
    if (wide == nullptr) return vi_Compare("", length, at);
    const char16_t* const text = WideCore::Tail(View(*wide), from).data();
    std::u16string_view part = WideCore::UpToZero(text, length);
    if (part.size() == length && length != 0 && (part.back() & 0xFC00) == 0xD800) {
        part = {text, part.size() + 1};  // the other half of a pair; else it changes nothing
    }
    return i_CompareWide(part, length, at);
}

int CT_CString::vi_Compare(const char16_t* text, std::uint32_t length, std::uint32_t at) const {
    return i_CompareWide(WideCore::UpToZero(text, length), length, at);
}

// Each unit gives a byte at least, so that `length` units are all that can be compared; where the
// length has cut the text, what they give is. Text that cannot be converted is empty.
int CT_CString::i_CompareWide(std::u16string_view text, std::uint32_t length,
                              std::uint32_t at) const {
    CT_CString narrow;
    const std::size_t most = std::min<std::size_t>(text.size(), kToEnd - 1);
    CT_StringConvert::si_WideToMulti(&narrow, text.data(), static_cast<std::uint32_t>(most),
                                     PageInUse(code_page_));
    const bool cut = text.size() >= length && narrow.n_GetLength() != 0;
    return Core::Compare(Core::Tail(View(*this), at), View(narrow),
                         cut ? std::min(length, narrow.n_GetLength()) : length);
}

int CT_CString::vi_Compare(const char* text, std::uint32_t length, std::uint32_t at) const {
    return Core::Compare(Core::Tail(View(*this), at), text, length);
}

void CT_CString::vv_Translate(const CT_String* from, const CT_String* to) {
    const CT_CString narrow_from(from, code_page_);
    const CT_CString narrow_to(to, code_page_);
    Core::Translate(buffer_, View(narrow_from), View(narrow_to));
}

void CT_CString::vv_SetLength(std::uint32_t length) {
    Core::SetLength(buffer_, length);
}

void CT_CString::vv_SetGrowth(std::uint32_t growth) {
    buffer_.v_SetGrowth(growth);
}

std::uint32_t CT_CString::vn_GetGrowth() const {
    return buffer_.n_GetGrowth();
}

void CT_CString::vv_Init(const CT_Buffer* buffer) {
    buffer_.v_Set(buffer);
}

void CT_CString::vv_Init(const char16_t* text, std::uint32_t length) {
    if (text == nullptr || length == 0 || (length == kToEnd && *text == 0)) return vv_Init();
    CT_StringConvert::si_WideToMulti(this, text, length, PageInUse(code_page_));
}

void CT_CString::vv_Init(const char* text, std::uint32_t length, std::uint32_t code_page) {
    Core::Assign(buffer_, Core::Of(text, length));
    code_page_ = code_page;
}

void CT_CString::vv_Init(const CT_String* other) {
    if (other == this) return;
    if (other == nullptr) return vv_Init();
    if (const auto* const narrow = As<CT_CString>(other)) {
        vv_Init(&narrow->buffer_);
        code_page_ = narrow->code_page_;
    } else if (const auto* const wide = As<CT_UString>(other)) {
        if (code_page_ == 0xFFFFFFFF) code_page_ = 0;
        vv_Init(wide->qcuz_Get(), wide->n_GetLength());
    }
}

void CT_CString::vv_Init(std::uint32_t capacity) {
    Core::SetSize(buffer_, capacity, false);
}

void CT_CString::vv_Init() {
    buffer_.v_SetSize(0, FALSE);
}

void CT_CString::vv_Replace(char character, std::uint32_t count, std::uint32_t at) {
    Core::Fill(buffer_, character, count, at);
}

void CT_CString::vv_SetAt(char character, std::uint32_t index) {
    Core::SetAt(buffer_, character, index);
}

std::uint32_t CT_CString::vn_Find(char character, std::uint32_t from) const {
    return Core::Find(View(*this), character, from);
}

std::uint32_t CT_CString::vn_Find(const CT_CString* text, std::uint32_t from) const {
    return text == nullptr ? kNotFound : Core::Find(View(*this), View(*text), from);
}

BOOL CT_CString::vb_Match(const CT_CString* pattern) const {
    return b_RMatch(View(*this), View(pattern));
}

void CT_CString::vv_Format(const CT_CString* format, va_list arguments) {
    Core::Format(buffer_, format == nullptr ? nullptr : format->qccz_Get(), arguments);
}

void CT_CString::vv_Format(const CT_CString* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vv_Format(format, arguments);
    va_end(arguments);
}

std::uint32_t CT_CString::n_Find(const char* text, std::uint32_t from) const {
    return text == nullptr ? kNotFound : Core::Find(View(*this), std::string_view(text), from);
}

BOOL CT_CString::b_Match(const char* pattern) const {
    return b_RMatch(View(*this), Core::Of(pattern, kToEnd));
}

BOOL CT_CString::b_StartsWith(const char* text) const {
    return text != nullptr && View(*this).starts_with(text);
}

BOOL CT_CString::b_EndsWith(const char* text) const {
    return text != nullptr && View(*this).ends_with(text);
}

void CT_CString::v_Append(const char* text, std::uint32_t length) {
    Core::Append(buffer_, Core::Of(text, length));
}

void CT_CString::v_Append(const CT_CString* text) {
    Core::Append(buffer_, View(text));
}

void CT_CString::v_Append(const char16_t* text, std::uint32_t length) {
    const CT_CString narrow(text, length, code_page_);
    if (narrow.n_GetLength() == 0) return;
    v_Append(&narrow);
    code_page_ = narrow.code_page_;
}

void CT_CString::v_Append(const CT_UString* text) {
    if (text != nullptr) v_Append(text->qcuz_Get(), text->n_GetLength());
}

void CT_CString::v_Insert(const char* text, std::uint32_t length, std::uint32_t at) {
    v_StringInsert(text, length, at);
}

void CT_CString::v_Insert(const CT_CString* text, std::uint32_t length, std::uint32_t at) {
    const std::string_view inserted = View(text).substr(0, length);
    v_StringInsert(inserted.data(), static_cast<std::uint32_t>(inserted.size()), at);
}

void CT_CString::v_Replace(const char* text, std::uint32_t length, std::uint32_t at) {
    v_StringReplace(text, length, at);
}

void CT_CString::v_Replace(const CT_CString* text, std::uint32_t from, std::uint32_t length,
                           std::uint32_t at) {
    const std::string_view written = Core::Tail(View(text), from).substr(0, length);
    v_StringReplace(written.data(), static_cast<std::uint32_t>(written.size()), at);
}

void CT_CString::v_Format(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    v_Format(format, arguments);
    va_end(arguments);
}

void CT_CString::v_Format(const char* format, va_list arguments) {
    Core::Format(buffer_, format, arguments);
}

void CT_CString::v_StringInsert(const char* text, std::uint32_t length, std::uint32_t at) {
    Core::Insert(buffer_, Core::Of(text, length), at);
}

void CT_CString::v_StringReplace(const char* text, std::uint32_t length, std::uint32_t at) {
    Core::Replace(buffer_, Core::Of(text, length), at);
}

BOOL CT_CString::b_RMatch(std::string_view text, std::string_view pattern) {
    return Core::Match(text, pattern) ? TRUE : FALSE;
}

void CT_CString::v_AppendSlow(char character) {
    Core::AppendUnit(buffer_, character);
}
