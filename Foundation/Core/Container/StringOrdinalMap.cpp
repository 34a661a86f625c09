#include "Foundation/Core/Container/StringOrdinalMap.h"

#include <algorithm>

#include "Foundation/Core/Container/Internal/TextItems.h"
#include "Foundation/Core/String/CString.h"

using zelkor::detail::OwnedStrings;
using zelkor::detail::TextItems;
using zelkor::detail::View;

namespace {

constinit _SHI_Pool pool(sizeof(CT_StringOrdinalMap), 16);

}  // namespace

_SHI_Pool* CT_StringOrdinalMap::spso_GetMemPool() noexcept {
    return &pool;
}

void CT_StringOrdinalMap::v_Set(std::uint32_t growth) {
    OwnedStrings fresh(growth);
    strings_.Swap(fresh);
}

void CT_StringOrdinalMap::v_Set(const CT_StringOrdinalMap* other) {
    if (other == nullptr) return v_Set(kDefaultGrowth);
    OwnedStrings copy(other->strings_);
    strings_.Swap(copy);
}

std::uint32_t CT_StringOrdinalMap::n_Insert(Text string, std::uint32_t position) {
    strings_.Insert(string.Get(), std::clamp(position, 1u, n_GetCount() + 1));
    return n_GetCount();
}

void CT_StringOrdinalMap::v_SetAt(Text string, std::uint32_t position) {
    if (strings_.Has(position)) strings_.SetAt(string.Get(), position);
}

void CT_StringOrdinalMap::v_RemoveAt(std::uint32_t position) {
    if (strings_.Has(position)) strings_.RemoveAt(position);
}

void CT_StringOrdinalMap::v_Append(const CT_StringOrdinalMap* other, std::uint32_t count) {
    if (other == nullptr) return;
    strings_.Append(other->strings_, count);
}

void CT_StringOrdinalMap::v_Map2String(CT_UString* out, char16_t separator) const {
    if (out == nullptr) return;
    CT_UString text;
    text.vv_SetGrowth(out->vn_GetGrowth());
    for (std::uint32_t i = 1; i <= n_GetCount(); ++i) {
        text.v_Append(strings_.At(i));
        text.v_Append(&separator, 1);
    }
    *out = std::move(text);
}

void CT_StringOrdinalMap::v_Map2String(CT_CString* out, char separator) const {
    if (out == nullptr) return;
    CT_CString text(out->n_GetCodePage());
    text.vv_SetGrowth(out->vn_GetGrowth());
    for (std::uint32_t i = 1; i <= n_GetCount(); ++i) {
        text.v_Append(strings_.At(i));
        text.v_Append(&separator, 1);
    }
    *out = std::move(text);
}

void CT_StringOrdinalMap::v_String2Map(const CT_UString* in, char16_t separator) {
    OwnedStrings fresh(kDefaultGrowth);
    TextItems items(in == nullptr ? std::u16string_view() : View(*in), separator);
    for (std::u16string_view item; items.Next(item) && !item.empty();) fresh.Append(item);
    strings_.Swap(fresh);
}

void CT_StringOrdinalMap::v_String2Map(const CT_CString* in, char separator) {
    const CT_UString wide(in);
    v_String2Map(&wide, static_cast<unsigned char>(separator));
}
