#include "Foundation/Core/Text/FormattedString.h"

#include <array>

#include "Foundation/Platform/Runtime.h"
#include "Foundation/Platform/UnitSet.h"

namespace platform = zelkor::platform;

namespace {

using View = std::u16string_view;
using platform::kNoHit;
using platform::UnitSet;

constexpr UnitSet kBrackets(u"<>");
constexpr UnitSet kEquals(u"=");
constexpr UnitSet kExponents(u"eEdD");

// Places for any double with six decimals.
using NumberText = std::array<char16_t, 512>;

View Print(NumberText& area, int value) {
    const int length = platform::PrintText(area.data(), area.size(), u"%d", value);
    return {area.data(), static_cast<std::size_t>(length)};
}

View Print(NumberText& area, double value) {
    const int length = platform::PrintText(area.data(), area.size(), u"%f", value);
    return {area.data(), static_cast<std::size_t>(length)};
}

void Append(CT_UString& text, View part) {
    text.v_Append(part.data(), static_cast<std::uint32_t>(part.size()));
}

// prefix<key=value> with the growth of the string that it is for.
CT_UString Item(const CT_UString& target, View prefix, View key, View value) {
    CT_UString item;
    item.vv_SetGrowth(target.vn_GetGrowth());
    item.vv_Init(static_cast<std::uint32_t>(prefix.size() + key.size() + value.size() + 3));
    Append(item, prefix);
    item.v_Append(u'<');
    Append(item, key);
    item.v_Append(u'=');
    Append(item, value);
    item.v_Append(u'>');
    return item;
}

void AddTo(CT_UString& record, View key, View value) {
    const CT_UString item = Item(record, View(), key, value);
    record.v_Append(&item);
}

// The value of the last item with the key, nothing when there is none. Items are the words between
// "<" and ">", key and value the first and the second word of an item by "=".
bool FindValue(View record, View key, View& value) {
    for (View rest = record;;) {
        const std::size_t last = kBrackets.LastOther(rest);
        if (last == kNoHit) return false;
        const std::size_t before = kBrackets.LastMember(rest.substr(0, last));
        const std::size_t begin = before == kNoHit ? 0 : before + 1;
        View item = rest.substr(begin, last + 1 - begin);
        rest = rest.substr(0, begin);
        item.remove_prefix(kEquals.FirstOther(item));
        const View item_key = item.substr(0, kEquals.FirstMember(item));
        if (item_key != key) continue;
        item.remove_prefix(item_key.size());
        item.remove_prefix(kEquals.FirstOther(item));
        value = item.substr(0, kEquals.FirstMember(item));
        return true;
    }
}

// As the runtime's scanning of %d: what passes 32 bits loses its high bits.
bool ReadInteger(View text, int& value) {
    while (!text.empty() && platform::IsSpace(text.front())) text.remove_prefix(1);
    const bool negative = text.starts_with(u'-');
    if (negative || text.starts_with(u'+')) text.remove_prefix(1);
    const auto is_digit = [](char16_t unit) { return unit >= u'0' && unit <= u'9'; };
    if (text.empty() || !is_digit(text.front())) return false;
    std::uint32_t magnitude = 0;
    for (; !text.empty() && is_digit(text.front()); text.remove_prefix(1)) {
        magnitude = magnitude * 10 + (text.front() - u'0');
    }
    value = static_cast<int>(negative ? 0 - magnitude : magnitude);
    return true;
}

// As the runtime's scanning of %lf, which takes an exponent's letter without digits for no number
// at all. What follows the value is no part of a number: a bracket, "=" or the end of the record.
bool ReadReal(View text, double& value) {
    const platform::ReadReal read = platform::ReadDouble(text.data());
    const View number = text.substr(0, read.consumed);
    const bool has_exponent = kExponents.FirstMember(number) != number.size();
    if (number.empty() || (!has_exponent && kExponents.Has(text.data()[number.size()]))) {
        return false;
    }
    value = read.value;
    return true;
}

}  // namespace

void CT_FormattedString::sv_AddData(Text prefix, Text key, Text value, CT_UString* out) {
    if (out != nullptr) *out = Item(*out, prefix.Get(), key.Get(), value.Get());
}

void CT_FormattedString::sv_AddData(CT_UString& record, Text key, Text value) {
    AddTo(record, key.Get(), value.Get());
}

void CT_FormattedString::sv_AddDataI(CT_UString& record, Text key, int value) {
    NumberText area;
    AddTo(record, key.Get(), Print(area, value));
}

void CT_FormattedString::sv_AddDataI(Text prefix, Text key, int value, CT_UString* out) {
    if (out == nullptr) return;
    NumberText area;
    *out = Item(*out, prefix.Get(), key.Get(), Print(area, value));
}

void CT_FormattedString::sv_AddDataR(CT_UString& record, Text key, double value) {
    NumberText area;
    AddTo(record, key.Get(), Print(area, value));
}

void CT_FormattedString::sv_AddDataR(Text prefix, Text key, double value, CT_UString* out) {
    if (out == nullptr) return;
    NumberText area;
    *out = Item(*out, prefix.Get(), key.Get(), Print(area, value));
}

BOOL CT_FormattedString::sb_GetData(Text record, Text key, CT_UString* value) {
    View found;
    if (!FindValue(record.Get(), key.Get(), found)) {
        if (value != nullptr) value->vv_Init();
        return FALSE;
    }
    if (value == nullptr) return FALSE;
    value->v_Set(found.data(), static_cast<std::uint32_t>(found.size()));
    return TRUE;
}

BOOL CT_FormattedString::sb_GetDataI(Text record, Text key, int* value) {
    View found;
    if (value == nullptr || !FindValue(record.Get(), key.Get(), found)) return FALSE;
    ReadInteger(found, *value);
    return TRUE;
}

BOOL CT_FormattedString::sb_GetDataR(Text record, Text key, double* value) {
    View found;
    if (value == nullptr || !FindValue(record.Get(), key.Get(), found)) return FALSE;
    ReadReal(found, *value);
    return TRUE;
}
