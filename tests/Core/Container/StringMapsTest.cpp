// The string maps: what they hold, their stored forms, and what is left when memory runs out.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "Core/String/PlainTexts.h"
#include "Foundation/Core/Container/StringNumberMap.h"
#include "Foundation/Core/Container/StringOrdinalMap.h"
#include "Foundation/Core/Container/StringStringMap.h"
#include "Foundation/Core/String/CString.h"
#include "Support/Memory.h"
#include "Support/Text.h"

namespace {

std::string Of(const CT_UString* string) {
    return string == nullptr ? "(none)" : test::Utf8(test::Of(*string));
}
CT_UString String(std::string_view text) {
    return test::String(test::Utf16(text));
}

// One item of each map as a text, how a map gets an item, and its stored forms written and read.
std::string At(const CT_StringOrdinalMap& map, std::uint32_t i) {
    return Of(map.pcco_Get(i));
}
std::string At(const CT_StringNumberMap& map, std::uint32_t i) {
    return Of(map.pcco_GetAt(i)) + std::to_string(map.n_GetAt(i));
}
std::string At(const CT_StringStringMap& map, std::uint32_t i) {
    const CT_UString *first = nullptr, *second = nullptr;
    map.v_GetAt(&first, &second, i);
    return Of(first) + '=' + Of(second);
}
void Add(CT_StringOrdinalMap& map, const CT_UString& text) {
    map.v_Insert(text, CT_StringOrdinalMap::kEnd);
}
void Add(CT_StringNumberMap& map, const CT_UString& text) {
    map.v_Insert(text, 7);
}
void Add(CT_StringStringMap& map, const CT_UString& text) {
    map.v_Insert(text, u"of a length that takes a block");
}
void Store(CT_StringOrdinalMap& map) {
    CT_UString wide;
    CT_CString narrow(1252u);
    narrow.vv_SetGrowth(7);
    map.v_Map2String(&wide, u';');
    map.v_Map2String(&narrow, ';');
    EXPECT_EQ(narrow.n_GetLength(), wide.n_GetLength());
    EXPECT_EQ(narrow.n_GetCodePage() + narrow.vn_GetGrowth(), 1252u + 7);
    map.v_String2Map(&wide, u';');
    map.v_String2Map(&narrow, ';');
}
void Store(CT_StringNumberMap& map) {
    CT_Buffer buffer;
    map.v_Map2Buffer(&buffer);
    map.v_Buffer2Map(&buffer, TRUE);
}
void Store(CT_StringStringMap& map) {
    CT_UString text;
    map.v_Map2String(&text, u'=', u';');
    map.v_String2Map(&text, u'=', u';');
}

// The items with a comma behind each.
template <typename Map>
std::string All(const Map& map) {
    std::string all;
    for (std::uint32_t i = 1; i <= map.n_GetCount(); ++i) all += At(map, i) + ',';
    return all;
}
template <typename Map>
Map Make(std::string_view texts) {
    Map map(0);
    const auto table = test::Table(texts);
    for (const std::string& text : table[0]) Add(map, String(text));
    return map;
}

template <typename Map>
class StringMapsTest : public testing::Test {};
using Maps = testing::Types<CT_StringOrdinalMap, CT_StringNumberMap, CT_StringStringMap>;
TYPED_TEST_SUITE(StringMapsTest, Maps);

TYPED_TEST(StringMapsTest, CopiesAreIndependentAndMayBeOfThemselves) {
    auto map = Make<TypeParam>("a||b");
    const TypeParam copy(&map);
    for (const std::uint32_t position : {0u, 4u, 0xFFFFFFFFu, 2u}) map.v_RemoveAt(position);
    EXPECT_EQ(All(map), All(Make<TypeParam>("a|b")));
    map.v_Append(&map, 1);
    map.v_Append(&copy, 2);
    map.v_Append(&map, TypeParam::kAll);
    EXPECT_EQ(All(map), All(Make<TypeParam>("a|b|a|a||a|b|a|a|")));
    map = copy;
    map.v_Set(&map);
    EXPECT_EQ(All(map), All(Make<TypeParam>("a||b")));
    Store(map);  // an empty item ends the text of the ordinal map alone
    EXPECT_EQ(map.n_GetCount(), (std::is_same_v<TypeParam, CT_StringOrdinalMap>) ? 1u : 3u);
    map.v_Set(0);
    EXPECT_EQ(map.n_GetCount(), 0u);
}

TYPED_TEST(StringMapsTest, TakeNullForAnEmptyMap) {
    const auto map = std::make_unique<TypeParam>(nullptr);
    Add(*map, String("a"));
    map->v_Append(nullptr, 1);
    EXPECT_EQ(map->n_GetCount(), 1u);
    map->v_Set(nullptr);
    EXPECT_EQ(map->n_GetCount(), 0u);
}

TEST(StringOrdinalMapTest, StoresInPagesThatCannotBeStoredIn) {
    const auto map = Make<CT_StringOrdinalMap>("a|b");
    for (const std::uint32_t page : {1200u, 0xFFFFFFFFu}) {
        CT_CString stored(page);
        map.v_Map2String(&stored, ';');
        CT_StringOrdinalMap read;
        read.v_String2Map(&stored, ';');
        EXPECT_EQ(All(read), "a,b,");
    }
}

TYPED_TEST(StringMapsTest, ChangeAndLeakNothingWithoutMemory) {
    const CT_UString item(u"an item of a length that takes a block of its own");
    auto original = Make<TypeParam>("1|2|3|4|5|6");
    Add(original, item);
    const std::function<void(TypeParam&)> changes[] = {
        [&](TypeParam& map) { Add(map, item); }, [&](TypeParam& map) { map.v_Set(&original); },
        [](TypeParam& map) { map.v_Append(&map, 9); }, [](TypeParam& map) { map.v_RemoveAt(1); },
        [](TypeParam& map) { Store(map); }};
    std::uint64_t failures = 0;
    for (const auto& change : changes) {
        const auto make = [&] { return TypeParam(original); };
        failures += test::ExpectUnchangedWithoutMemory(make, change, All<TypeParam>);
    }
    EXPECT_GT(failures, 25u);
}

TEST(StringOrdinalMapTest, InsertsAndFindsByPosition) {
    CT_StringOrdinalMap map;
    EXPECT_EQ(map.n_Insert(u"b", 0xFFFFFFFF), 1u);
    EXPECT_EQ(map.n_Insert(u"a", 1), 2u);
    EXPECT_EQ(map.n_Insert(map.pcco_Get(2), 99), 3u);
    map.v_Insert(nullptr, 0);
    EXPECT_EQ(All(map), ",a,b,b,");
    EXPECT_EQ(map.n_Get(u"b"), 3u);
    EXPECT_EQ(map.n_Get(map.pcco_Get(1)), 1u);
    EXPECT_EQ(map.n_Get(u"c"), 0u);
    map.v_SetAt(map.qcuz_Get(2), 4);
    map.v_SetAt(u"x", 5);
    EXPECT_EQ(All(map), ",a,b,a,");
    EXPECT_EQ(map.pcco_Get(5), nullptr);
    EXPECT_EQ(map.qcuz_Get(0)[0], 0);
}

TEST(StringOrdinalMapTest, ReadsItemsUpToTheFirstEmptyOne) {
    CT_StringOrdinalMap map;
    for (const auto& row :
         test::Table("| / a;b;|a,b, / a;;b;|a, / ;b;| / a;b|a,b, / a;\u00E9|a,\u00E9,")) {
        const CT_UString text = String(row[0]);
        const CT_CString narrow(&text, 1252u);
        map.v_String2Map(&text, u';');
        EXPECT_EQ(All(map), row[1]);
        map.v_String2Map(&narrow, ';');
        EXPECT_EQ(All(map), row[1]);
    }
    map.v_SetAt(u"x;y", 1);
    map.v_String2Map(map.pcco_Get(1), u';');
    EXPECT_EQ(All(map), "x,y,");
    const CT_CString high("a\xE9z", 3, 1252);  // the separator is the character of its number
    map.v_String2Map(&high, '\xE9');
    EXPECT_EQ(All(map), "a,z,");
}

TEST(StringNumberMapTest, FirstPairCounts) {
    auto map = Make<CT_StringNumberMap>("x|y|x|");
    for (std::uint32_t i = 2; i <= 4; ++i) map.v_SetAt(i % 3, i);
    EXPECT_EQ(All(map), "x7,y2,x0,1,");
    EXPECT_EQ(map.n_Get(u"x"), 7u);
    EXPECT_EQ(map.n_Get(u"z"), 0u);
    EXPECT_EQ(Of(map.pcco_Get(2)), "y");
    EXPECT_EQ(map.pcco_Get(9), nullptr);
    EXPECT_EQ(map.qcuz_Get(1)[0] + map.qcuz_GetAt(9)[0], 0);
    map.v_Update(u"new", 2);
    map.v_Update(u"none", 9);
    map.v_SetAt(map.pcco_GetAt(1), 4);
    map.v_SetAt(8, 5);
    map.v_Remove(0);
    map.v_Remove(9);
    EXPECT_EQ(All(map), "x7,new2,x1,");
    // Strings and numbers stay side by side, as the next pair shows.
    const auto append = [](CT_StringNumberMap& pairs) { pairs.v_Append(&pairs, 2); };
    const auto read = [](CT_StringNumberMap pairs) {
        pairs.v_Insert(u"z", 5);
        return All(pairs);
    };
    EXPECT_GT(test::ExpectUnchangedWithoutMemory([&] { return map; }, append, read), 1u);
}

TEST(StringNumberMapTest, ReadsRecordsCutAtAnyByte) {
    auto map = Make<CT_StringNumberMap>("ab||\u4E00");
    CT_Buffer buffer;
    map.v_Map2Buffer(&buffer);
    const std::string_view bytes(static_cast<const char*>(buffer.qcv_Get()), 10);
    EXPECT_EQ(bytes, std::string_view("\x07\0\0\0a\0b\0\0\0", 10));
    for (std::uint32_t size = 0; size < 14; ++size) {
        const CT_Buffer cut(buffer.qcv_Get(), size, 1);
        map.v_Buffer2Map(&cut, TRUE);
        const std::string text = std::string("ab").substr(0, size < 4 ? 0 : (size - 4) / 2);
        EXPECT_EQ(All(map), size < 4 ? "" : text + "7,") << size;
    }
    map.v_Buffer2Map(&buffer, TRUE);
    EXPECT_EQ(All(map), "ab7,7,\u4E007,");
    const CT_Buffer narrow("\x07\0\0\0ab\0\x01\0\0\0\0\x02\0\0\0z", 17, 32);
    map.v_Buffer2Map(&narrow, FALSE);
    EXPECT_EQ(All(map), "ab7,1,z2,");
}

TEST(StringStringMapTest, FindsEitherStringAndStoresPairsAsText) {
    CT_StringStringMap map;
    map.v_Insert(u"red", u"rot");
    map.v_Insert(u"blue", u"blau");
    CT_UString text;
    map.v_Map2String(&text, u'=', u';');
    EXPECT_EQ(Of(&text), "red=rot;blue=blau;");
    map.v_Insert(u"red", map.pcco_GetString2(u"blue"));
    EXPECT_EQ(Of(map.pcco_GetString2(u"red")), "rot");
    EXPECT_EQ(Of(map.pcco_GetString1(map.pcco_GetString2(u"blue"))), "blue");
    EXPECT_EQ(map.pcco_GetString1(u"red"), nullptr);
    EXPECT_EQ(At(map, 4), "(none)=(none)");
    for (const auto& row : test::Table("red=rot;blue=blau;|red=rot,blue=blau, / a=b;;c=d;|a=b,\n"
                                       "a;=b;c=d=e;=|a=,=b,c=d,=, / |")) {
        text = String(row[0]);
        map.v_String2Map(&text, u'=', u';');
        EXPECT_EQ(All(map), row[1]);
    }
}

}  // namespace
