#include "Foundation/Core/String/UString.h"

#include <algorithm>

#include "Foundation/Core/Buffer/Internal/Blocks.h"
#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/Internal/StringCore.h"
#include "Foundation/Core/String/StringConvert.h"
#include "Foundation/Platform/Memory.h"
#include "Foundation/Platform/Runtime.h"

namespace platform = zelkor::platform;

using zelkor::detail::As;
using zelkor::detail::IsExactly;
using zelkor::detail::View;
using zelkor::detail::Widen;
using zelkor::detail::WidenSome;

namespace {

using Core = zelkor::detail::StringCore<char16_t>;

constinit _SHI_Pool pool(sizeof(CT_UString), 1024);

}  // namespace

namespace zelkor::detail {

CT_UString Widen(std::string_view text, std::uint32_t code_page) {
    CT_UString wide;
    const std::size_t most = std::min<std::size_t>(text.size(), CT_String::kToEnd - 1);
    CT_StringConvert::si_MultiToWide(&wide, text.data(), static_cast<std::uint32_t>(most),
                                     code_page);
    return wide;
}

// Hardly a character of any page takes more than eight bytes; where that is not enough everything
// is converted.
CT_UString WidenSome(std::string_view text, std::uint64_t count, std::uint32_t code_page) {
    const std::uint64_t most = count * 8 + 64;
    if (most < text.size()) {
        CT_UString wide = Widen(text.substr(0, most), code_page);
        // The last few may come of a character that is cut.
        if (wide.n_GetLength() >= count + 8) return wide;
    }
    return Widen(text, code_page);
}

}  // namespace zelkor::detail

CT_UString::CT_UString(std::uint32_t capacity) {
    CT_UString::vv_Init(capacity);
}

CT_UString::CT_UString(const char* text, std::uint32_t length, std::uint32_t code_page) {
    CT_UString::vv_Init(text, length, code_page);
}

CT_UString::CT_UString(const char16_t* text, std::uint32_t length) {
    CT_UString::vv_Init(text, length);
}

CT_UString::CT_UString(const CT_String* other) {
    CT_UString::vv_Init(other);
}

CT_UString::CT_UString(const CT_Type* type) : CT_String(type) {
    if (CT_Type::sb_InConstruct(this)) CT_Type::sv_Enter(this, &sco_Type);
    if (this == &sco_Object) sco_Type.v_Enter();
}

void CT_UString::v_LeavePrototype() noexcept {
    if (this == &sco_Object) CT_Type::sv_ToDestruct(&sco_Type);
    CT_Type::sb_InDestruct(this);
}

void* CT_UString::operator new(std::size_t size) {
    return zelkor::detail::NewObject(pool, size);
}

void CT_UString::operator delete(void* block, std::size_t size) noexcept {
    zelkor::detail::DeleteObject(pool, block, size);
}

_SHI_Pool* CT_UString::spso_GetMemPool() noexcept {
    return &pool;
}

const CT_Type* CT_UString::spcco_GetType() noexcept {
    return &sco_Type;
}

const CT_Type* CT_UString::vpcco_GetType() const {
    return &sco_Type;
}

void* CT_UString::vpv_IsA(const CT_Type* type) const {
    return type == &sco_Type ? const_cast<CT_UString*>(this) : nullptr;
}

void* CT_UString::vpv_IsKindOf(const CT_Type* type) const {
    return sco_Type.pv_CastTo(this, type);
}

void CT_UString::vv_SetSize(std::uint32_t length, BOOL keep) {
    Core::SetSize(buffer_, length, keep != FALSE);
}

void CT_UString::vv_SetMinSize(std::uint32_t length, BOOL keep) {
    if (vn_GetMaximumLength() < length) vv_SetSize(length, keep);
}

void CT_UString::vv_ToLower() {
    if (n_GetLength() != 0) platform::LowerText(quz_Get(), n_GetLength());
}

void CT_UString::vv_ToUpper() {
    if (n_GetLength() != 0) platform::UpperText(quz_Get(), n_GetLength());
}

void CT_UString::vv_Remove(std::uint32_t count, std::uint32_t at) {
    Core::Remove(buffer_, count, at);
}

void CT_UString::vv_Update() {
    Core::Update(buffer_);
}

void CT_UString::vv_Strip(const CT_String* set) {
    if (set == nullptr) {
        vv_StripLeft();
        vv_StripRight();
    } else {
        const CT_UString wide(set);
        Core::Strip(buffer_, View(wide));
    }
}

void CT_UString::vv_StripRight() {
    Core::StripRight(buffer_);
}

void CT_UString::vv_StripLeft() {
    Core::StripLeft(buffer_);
}

int CT_UString::vi_Compare(const CT_String* other, std::uint32_t from, std::uint32_t length,
                           std::uint32_t at) const {
    const bool whole = (from | at) == 0 && length == kToEnd;
    if (other != nullptr && whole && IsExactly<CT_UString>(*other)) [[likely]] {
        return Core::Compare(buffer_, *other->pcco_GetBuffer());
    }
    return i_ComparePart(other, from, length, at);
}

int CT_UString::i_ComparePart(const CT_String* other, std::uint32_t from, std::uint32_t length,
                              std::uint32_t at) const {
    if (other == nullptr) return vi_Compare(u"", length, at);
    if (const auto* const wide = As<CT_UString>(other)) {
        return Core::Compare(Core::Tail(View(*this), at), Core::Tail(View(*wide), from), length);
    }
    const auto* const narrow = As<CT_CString>(other);
    if (narrow == nullptr) return vi_Compare(u"", length, at);
    using Narrow = zelkor::detail::StringCore<char>;
    const auto text = Narrow::Of(Narrow::Tail(View(*narrow), from).data(), kToEnd);
    const CT_UString converted =
        WidenSome(text, length, zelkor::detail::PageInUse(narrow->n_GetCodePage()));
    return Core::Compare(Core::Tail(View(*this), at), View(converted), length);
}

int CT_UString::vi_Compare(const char16_t* text, std::uint32_t length, std::uint32_t at) const {
    return Core::Compare(Core::Tail(View(*this), at), text, length);
}

int CT_UString::vi_Compare(const char* text, std::uint32_t length, std::uint32_t at) const {
    const CT_UString wide = Widen(zelkor::detail::DefaultPageText(text, length), 0);
    return Core::Compare(Core::Tail(View(*this), at), View(wide), length);
}

void CT_UString::vv_Translate(const CT_String* from, const CT_String* to) {
    const CT_UString wide_from(from);
    const CT_UString wide_to(to);
    Core::Translate(buffer_, View(wide_from), View(wide_to));
}

void CT_UString::vv_SetLength(std::uint32_t length) {
    Core::SetLength(buffer_, length);
}

void CT_UString::vv_SetGrowth(std::uint32_t growth) {
    buffer_.v_SetGrowth(growth * 2);
}

std::uint32_t CT_UString::vn_GetGrowth() const {
    return buffer_.n_GetGrowth() / 2;
}

void CT_UString::vv_Init(const CT_Buffer* buffer) {
    buffer_.v_Set(buffer);
}

void CT_UString::vv_Init(const char16_t* text, std::uint32_t length) {
    Core::Assign(buffer_, Core::Of(text, length));
}

void CT_UString::vv_Init(const char* text, std::uint32_t length, std::uint32_t code_page) {
    if (text == nullptr || length == 0 || (length == kToEnd && *text == 0)) return vv_Init();
    CT_StringConvert::si_MultiToWide(this, text, length, code_page);
}

void CT_UString::vv_Init(const CT_String* other) {
    if (other == this) return;
    if (other == nullptr) return vv_Init();
    if (const auto* const wide = As<CT_UString>(other)) return vv_Init(&wide->buffer_);
    if (const auto* const narrow = As<CT_CString>(other)) {
        vv_Init(narrow->qccz_Get(), narrow->n_GetLength(), narrow->n_GetCodePage());
    }
}

void CT_UString::vv_Init(std::uint32_t capacity) {
    Core::SetSize(buffer_, capacity, false);
}

void CT_UString::vv_Init() {
    buffer_.v_SetSize(0, FALSE);
}

void CT_UString::vv_Replace(char16_t character, std::uint32_t count, std::uint32_t at) {
    Core::Fill(buffer_, character, count, at);
}

void CT_UString::vv_SetAt(char16_t character, std::uint32_t index) {
    Core::SetAt(buffer_, character, index);
}

std::uint32_t CT_UString::vn_Find(char16_t character, std::uint32_t from) const {
    return Core::Find(View(*this), character, from);
}

std::uint32_t CT_UString::vn_Find(const CT_UString* text, std::uint32_t from) const {
    return text == nullptr ? kNotFound : Core::Find(View(*this), View(*text), from);
}

BOOL CT_UString::vb_Match(const CT_UString* pattern) const {
    return b_RMatch(View(*this), View(pattern));
}

void CT_UString::vv_Format(const CT_UString* format, va_list arguments) {
    Core::Format(buffer_, format == nullptr ? nullptr : format->qcuz_Get(), arguments);
}

void CT_UString::vv_Format(const CT_UString* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vv_Format(format, arguments);
    va_end(arguments);
}

std::uint32_t CT_UString::n_Find(const char16_t* text, std::uint32_t from) const {
    return text == nullptr ? kNotFound : Core::Find(View(*this), std::u16string_view(text), from);
}

BOOL CT_UString::b_Match(const char16_t* pattern) const {
    return b_RMatch(View(*this), Core::Of(pattern, kToEnd));
}

BOOL CT_UString::b_StartsWith(const char16_t* text) const {
    return text != nullptr && View(*this).starts_with(text);
}

BOOL CT_UString::b_EndsWith(const char16_t* text) const {
    return text != nullptr && View(*this).ends_with(text);
}

void CT_UString::v_Append(const char16_t* text, std::uint32_t length) {
    Core::Append(buffer_, Core::Of(text, length));
}

void CT_UString::v_Append(const CT_UString* text) {
    Core::Append(buffer_, View(text));
}

void CT_UString::v_Append(const CT_CString* text) {
    const CT_UString wide(text);
    v_Append(&wide);
}

void CT_UString::v_Insert(const char16_t* text, std::uint32_t length, std::uint32_t at) {
    v_StringInsert(text, length, at);
}

void CT_UString::v_Insert(const CT_UString* text, std::uint32_t length, std::uint32_t at) {
    const std::u16string_view inserted = View(text).substr(0, length);
    v_StringInsert(inserted.data(), static_cast<std::uint32_t>(inserted.size()), at);
}

void CT_UString::v_ReplaceSlow(const char16_t* text, std::uint32_t length, std::uint32_t at) {
    v_StringReplace(text, length, at);
}

void CT_UString::v_Replace(const CT_UString* text, std::uint32_t from, std::uint32_t length,
                           std::uint32_t at) {
    const std::u16string_view written = Core::Tail(View(text), from).substr(0, length);
    v_StringReplace(written.data(), static_cast<std::uint32_t>(written.size()), at);
}

void CT_UString::v_Format(const char16_t* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    v_Format(format, arguments);
    va_end(arguments);
}

void CT_UString::v_Format(const char16_t* format, va_list arguments) {
    Core::Format(buffer_, format, arguments);
}

void CT_UString::v_StringInsert(const char16_t* text, std::uint32_t length, std::uint32_t at) {
    Core::Insert(buffer_, Core::Of(text, length), at);
}

void CT_UString::v_StringReplace(const char16_t* text, std::uint32_t length, std::uint32_t at) {
    Core::Replace(buffer_, Core::Of(text, length), at);
}

BOOL CT_UString::b_RMatch(std::u16string_view text, std::u16string_view pattern) {
    return Core::Match(text, pattern) ? TRUE : FALSE;
}

void CT_UString::v_AppendSlow(char16_t character) {
    Core::AppendUnit(buffer_, character);
}
