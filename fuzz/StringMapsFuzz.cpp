// The stored forms of string maps and value collections, read from any bytes: what is refused
// leaves nothing, and what is read comes back from the form it is written in.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "Foundation/Core/Container/StringNumberMap.h"
#include "Foundation/Core/Container/StringOrdinalMap.h"
#include "Foundation/Core/Container/StringStringMap.h"
#include "Foundation/Core/Container/StringValueCollection.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

bool Equal(const CT_UString& left, const CT_UString& right) {
    return zelkor::detail::View(left) == zelkor::detail::View(right);
}

void CheckValues(const CT_UString& text) {
    CT_StringValueCollection values, again;
    values.b_Add(u"before", 1, FALSE);
    if (!values.b_Deserialize(text)) return Require(values.n_GetCount() == 0);
    // A zero character ends keys and strings, which then may end in a backslash.
    if (text.vn_Find(u'\0') != CT_UString::kNotFound) return;
    CT_UString written, rewritten;
    values.v_Serialize(written);
    Require(again.b_Deserialize(written) && again.n_GetCount() == values.n_GetCount());
    again.v_Serialize(rewritten);
    Require(Equal(written, rewritten));
    again.v_Merge(values, TRUE);
    Require(again.n_GetCount() == values.n_GetCount());
}

void CheckMaps(const CT_UString& text) {
    CT_StringOrdinalMap ordinals, ordinals_again;
    ordinals.v_String2Map(&text, u';');
    CT_UString written;
    ordinals.v_Map2String(&written, u';');
    ordinals_again.v_String2Map(&written, u';');
    Require(ordinals.n_GetCount() == ordinals_again.n_GetCount());
    CT_StringStringMap pairs, pairs_again;
    pairs.v_String2Map(&text, u'=', u';');
    pairs.v_Map2String(&written, u'=', u';');
    pairs_again.v_String2Map(&written, u'=', u';');
    Require(pairs.n_GetCount() == pairs_again.n_GetCount());
}

void CheckNumbers(const CT_Buffer& bytes, BOOL unicode) {
    CT_StringNumberMap numbers, again;
    numbers.v_Buffer2Map(&bytes, unicode);
    CT_Buffer written, rewritten;
    numbers.v_Map2Buffer(&written);
    again.v_Buffer2Map(&written, TRUE);
    again.v_Map2Buffer(&rewritten);
    Require(written.n_GetUsedSize() == rewritten.n_GetUsedSize() &&
            written.b_IsEqual(&rewritten, 0, CT_Buffer::kToEnd, 0));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 4000) return 0;
    std::u16string units(size / 2, u'\0');
    std::memcpy(units.data(), data, units.size() * sizeof(char16_t));
    const CT_UString text(units.data(), static_cast<std::uint32_t>(units.size()));
    CheckValues(text);
    CheckMaps(text);
    const CT_Buffer bytes(data, static_cast<std::uint32_t>(size), 1);
    CheckNumbers(bytes, TRUE);
    CheckNumbers(bytes, FALSE);
    return 0;
}
