#include "Foundation/Core/Container/StringStringMap.h"

#include "Foundation/Core/Container/Internal/TextItems.h"

using zelkor::detail::TextItems;
using zelkor::detail::View;

namespace {

constinit _SHI_Pool pool(sizeof(CT_StringStringMap), 16);

}  // namespace

_SHI_Pool* CT_StringStringMap::spso_GetMemPool() noexcept {
    return &pool;
}

void CT_StringStringMap::v_Set(std::uint32_t growth) {
    CT_StringStringMap fresh(growth);
    Swap(fresh);
}

void CT_StringStringMap::v_Set(const CT_StringStringMap* other) {
    if (other == nullptr) return v_Set(kDefaultGrowth);
    CT_StringStringMap copy(*other);
    Swap(copy);
}

void CT_StringStringMap::v_Insert(Text first, Text second) {
    first_.Append(first.Get());
    try {
        second_.Append(second.Get());
    } catch (...) {
        first_.RemoveAt(first_.Count());
        throw;
    }
}

void CT_StringStringMap::v_GetAt(const CT_UString** first, const CT_UString** second,
                                 std::uint32_t position) const noexcept {
    if (first != nullptr) *first = first_.Find(position);
    if (second != nullptr) *second = second_.Find(position);
}

void CT_StringStringMap::v_RemoveAt(std::uint32_t position) {
    if (!first_.Has(position)) return;
    first_.RemoveAt(position);
    second_.RemoveAt(position);
}

void CT_StringStringMap::v_Append(const CT_StringStringMap* other, std::uint32_t count) {
    if (other == nullptr) return;
    const std::uint32_t before = n_GetCount();
    first_.Append(other->first_, count);
    try {
        second_.Append(other->second_, count);
    } catch (...) {
        first_.Truncate(before);
        throw;
    }
}

void CT_StringStringMap::v_Map2String(CT_UString* out, char16_t pair_separator,
                                      char16_t record_separator) const {
    if (out == nullptr) return;
    CT_UString text;
    text.vv_SetGrowth(out->vn_GetGrowth());
    for (std::uint32_t i = 1; i <= n_GetCount(); ++i) {
        text.v_Append(first_.At(i));
        text.v_Append(&pair_separator, 1);
        text.v_Append(second_.At(i));
        text.v_Append(&record_separator, 1);
    }
    *out = std::move(text);
}

void CT_StringStringMap::v_String2Map(const CT_UString* in, char16_t pair_separator,
                                      char16_t record_separator) {
    CT_StringStringMap fresh;
    TextItems records(in == nullptr ? std::u16string_view() : View(*in), record_separator);
    for (std::u16string_view record; records.Next(record) && !record.empty();) {
        TextItems items(record, pair_separator);
        std::u16string_view first, second;
        items.Next(first);
        items.Next(second);
        fresh.first_.Append(first);
        fresh.second_.Append(second);
    }
    Swap(fresh);
}

void CT_StringStringMap::Swap(CT_StringStringMap& other) noexcept {
    first_.Swap(other.first_);
    second_.Swap(other.second_);
}
