#include "Foundation/Core/Language/Codepage.h"

#include <algorithm>
#include <string_view>

#include "Foundation/Core/Language/Internal/CodepageTable.h"
#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/CodePages/CodePages.h"
#include "Foundation/Platform/Runtime.h"

namespace platform = zelkor::platform;

using zelkor::detail::CodepageRow;
using zelkor::detail::kCodepageRows;

namespace {

template <typename Field, typename Value>
const CodepageRow* FindRow(Field field, Value wanted) {
    const auto row = std::ranges::find(kCodepageRows, wanted, field);
    return row == kCodepageRows.end() ? nullptr : &*row;
}

// The number of a pseudo page, or 0 for the values without one.
unsigned int NumberWithoutRow(CT_Codepage::et_Codepage value) {
    switch (value) {
        case CT_Codepage::kPseudoOem:
            return 1;
        case CT_Codepage::kPseudoMac:
            return 2;
        case CT_Codepage::kPseudoThread:
            return 3;
        case CT_Codepage::kSystemAnsi:
            return platform::AnsiCodePage();
        case CT_Codepage::kSystemOem:
            return platform::OemCodePage();
        default:
            return 0;
    }
}

}  // namespace

CT_Codepage::CT_Codepage(et_Codepage value) {
    v_Init(value);
}
CT_Codepage::CT_Codepage(unsigned int number) {
    v_Init(number);
}
CT_Codepage::CT_Codepage(const CT_UString* name) {
    v_Init(name);
}
CT_Codepage::CT_Codepage(const CT_Codepage* other) {
    v_Init(other);
}

void CT_Codepage::v_Set() {
    v_Init();
}
void CT_Codepage::v_Set(et_Codepage value) {
    v_Init(value);
}
void CT_Codepage::v_Set(unsigned int number) {
    v_Init(number);
}
void CT_Codepage::v_Set(const CT_UString* name) {
    v_Init(name);
}
void CT_Codepage::v_Set(const CT_Codepage* other) {
    v_Init(other);
}

unsigned int CT_Codepage::n_Get() const {
    return sn_Codepage(value_);
}

const char16_t* CT_Codepage::qcuz_Get() const {
    if (value_ < kIso8859_8) return kCodepageRows[value_].name;
    const CodepageRow* row = FindRow(&CodepageRow::number, n_Get());
    return row == nullptr ? nullptr : row->name;
}

BOOL CT_Codepage::b_IsValid() const {
    return value_ < kUnknown;
}

BOOL CT_Codepage::b_IsValidAndInstalled() const {
    return b_IsValid() && platform::IsValidCodePage(n_Get());
}

BOOL CT_Codepage::b_IsWindowsCodepage() const {
    return (value_ >= kWindows874 && value_ <= kBig5) ||
           (value_ >= kWindows1250 && value_ <= kWindows1255) ||
           (value_ >= kWindows1256 && value_ <= kWindows1258) || value_ == kPseudoAnsi ||
           value_ == kPseudoThread || value_ == kSystemAnsi;
}

BOOL CT_Codepage::b_IsMacCodepage() const {
    return value_ >= kMacRoman && value_ <= kMacCroatia && value_ != kMacThai;
}

BOOL CT_Codepage::b_IsUnicode() const {
    return value_ == kUnicode || value_ == kUtf7 || value_ == kUtf8 || value_ == kUtf16;
}

BOOL CT_Codepage::b_Is16BitUnicode() const {
    return value_ == kUnicode || value_ == kUtf16;
}

BOOL CT_Codepage::b_IsDBCS() const {
    return sb_IsDBCS(n_Get());
}

BOOL CT_Codepage::b_IsDBCSLeadByte(unsigned char byte) const {
    return sb_IsDBCSLeadByte(n_Get(), byte);
}

BOOL CT_Codepage::b_IsEqual(const CT_Codepage& other) const {
    return value_ == other.value_;
}

BOOL CT_Codepage::b_IsSame(const CT_Codepage& other) const {
    return n_Get() == other.n_Get();
}

BOOL CT_Codepage::b_IsStringSupported(const CT_UString* text) const {
    if (b_IsUnicode()) return TRUE;
    if (text == nullptr) return FALSE;
    const CT_CString encoded(text, n_Get());
    const CT_UString decoded(&encoded);
    // Zero characters inside the text must not end the comparison.
    const std::u16string_view before(text->qcuz_Get(), text->n_GetLength());
    return before == std::u16string_view(decoded.qcuz_Get(), decoded.n_GetLength());
}

BOOL CT_Codepage::b_IsCharSupported(char16_t unit) const {
    const CT_UString text(&unit, 1);
    return b_IsStringSupported(&text);
}

BOOL CT_Codepage::sb_IsDBCS(unsigned int number) {
    platform::CodePageInfo info;
    return platform::GetCodePageInfo(number, &info) && info.max_char_size != 1 &&
           (info.lead_bytes[0] != 0 || info.lead_bytes[1] != 0);
}

BOOL CT_Codepage::sb_IsDBCSLeadByte(unsigned int number, unsigned char byte) {
    platform::CodePageInfo info;
    if (!platform::GetCodePageInfo(number, &info)) return FALSE;
    for (std::size_t i = 0; i + 1 < std::size(info.lead_bytes); i += 2) {
        const unsigned char first = info.lead_bytes[i];
        const unsigned char last = info.lead_bytes[i + 1];
        if (first == 0 && last == 0) break;
        if (byte >= first && byte <= last) return TRUE;
    }
    return FALSE;
}

BOOL CT_Codepage::sb_IsValidCodePage(unsigned int number) {
    return platform::IsValidCodePage(number);
}

void CT_Codepage::v_Init() {
    value_ = kNotSet;
}
void CT_Codepage::v_Init(et_Codepage value) {
    value_ = value;
}
void CT_Codepage::v_Init(unsigned int number) {
    value_ = seo_Codepage(number);
}
void CT_Codepage::v_Init(const CT_UString* name) {
    value_ = seo_Codepage(name);
}
void CT_Codepage::v_Init(const CT_Codepage* other) {
    value_ = other == nullptr ? kUnknown : other->value_;
}

CT_Codepage::et_Codepage CT_Codepage::seo_Codepage(unsigned int number) {
    const CodepageRow* row = FindRow(&CodepageRow::number, number);
    return row == nullptr ? kUnknown : static_cast<et_Codepage>(row->value);
}

CT_Codepage::et_Codepage CT_Codepage::seo_Codepage(const CT_UString* name) {
    if (name == nullptr) return kUnknown;
    const auto row = std::ranges::find_if(kCodepageRows, [name](const CodepageRow& candidate) {
        return platform::CompareNoCase(candidate.name, name->qcuz_Get()) == 0;
    });
    return row == kCodepageRows.end() ? kUnknown : static_cast<et_Codepage>(row->value);
}

unsigned int CT_Codepage::sn_Codepage(et_Codepage value) {
    const CodepageRow* row = FindRow(&CodepageRow::value, static_cast<unsigned int>(value));
    return row == nullptr ? NumberWithoutRow(value) : row->number;
}
