// The string maps: what they hold, their stored forms, and what is left when memory runs out.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "Foundation/Core/Container/StringNumberMap.h"
#include "Foundation/Core/Container/StringOrdinalMap.h"
#include "Foundation/Core/Container/StringStringMap.h"
#include "Foundation/Core/String/CString.h"
#include "Support/Memory.h"
#include "Support/Text.h"

namespace {

using testing::ElementsAre;
using Texts = std::vector<std::string>;

std::string Of(const CT_UString* string) {
    return string == nullptr ? "(none)" : test::Utf8({string->qcuz_Get(), string->n_GetLength()});
}
CT_UString String(const std::string& text) {
    return CT_UString(test::Utf16(text).c_str());
}

// One item of each map as a text, and how a map gets such an item.
std::string At(const CT_StringOrdinalMap& map, std::uint32_t i) {
    return Of(map.pcco_Get(i));
}
std::string At(const CT_StringNumberMap& map, std::uint32_t i) {
    return Of(map.pcco_GetAt(i)) + '=' + std::to_string(map.n_GetAt(i));
}
std::string At(const CT_StringStringMap& map, std::uint32_t i) {
    const CT_UString *first = nullptr, *second = nullptr;
    map.v_GetAt(&first, &second, i);
    return Of(first) + '=' + Of(second);
}
void Add(CT_StringOrdinalMap& map, const std::string& text) {
    map.v_Insert(String(text), CT_StringOrdinalMap::kEnd);
}
void Add(CT_StringNumberMap& map, const std::string& text) {
    map.v_Insert(String(text), 7);
}
void Add(CT_StringStringMap& map, const std::string& text) {
    map.v_Insert(String(text), String(text + text));
}

template <typename Map>
Texts All(const Map& map) {
    Texts texts;
    for (std::uint32_t i = 1; i <= map.n_GetCount(); ++i) texts.push_back(At(map, i));
    return texts;
}
template <typename Map>
Map Make(const Texts& texts) {
    Map map(3);
    for (const std::string& text : texts) Add(map, text);
    return map;
}

template <typename Map>
class StringMapsTest : public testing::Test {};
using Maps = testing::Types<CT_StringOrdinalMap, CT_StringNumberMap, CT_StringStringMap>;
TYPED_TEST_SUITE(StringMapsTest, Maps);

TYPED_TEST(StringMapsTest, CopiesAreIndependentAndMayBeOfThemselves) {
    auto map = Make<TypeParam>({"a", "", "b"});
    const TypeParam copy(&map);
    Texts wanted = All(copy);
    for (const std::uint32_t position : {0u, 4u, 0xFFFFFFFFu, 2u}) map.v_RemoveAt(position);
    wanted.erase(wanted.begin() + 1);
    map.v_Append(&map, 1);
    map.v_Append(&copy, 2);
    map.v_Append(&map, TypeParam::kAll);
    wanted.insert(wanted.end(), {wanted[0], At(copy, 1), At(copy, 2)});
    const Texts once = wanted;
    wanted.insert(wanted.end(), once.begin(), once.end());
    EXPECT_EQ(All(map), wanted);
    map = copy;
    map.v_Set(&map);
    EXPECT_EQ(All(map), All(copy));
    map.v_Set(1u);
    EXPECT_EQ(map.n_GetCount(), 0u);
}

TEST(StringOrdinalMapTest, InsertsAndFindsByPosition) {
    CT_StringOrdinalMap map;
    EXPECT_EQ(map.n_Insert(u"b", 0xFFFFFFFF), 1u);
    EXPECT_EQ(map.n_Insert(u"a", 1), 2u);
    EXPECT_EQ(map.n_Insert(map.pcco_Get(2), 99), 3u);
    map.v_Insert(nullptr, 0);
    EXPECT_THAT(All(map), ElementsAre("", "a", "b", "b"));
    EXPECT_EQ(map.n_Get(u"b"), 3u);
    EXPECT_EQ(map.n_Get(map.pcco_Get(1)), 1u);
    EXPECT_EQ(map.n_Get(u"c"), 0u);
    map.v_SetAt(map.qcuz_Get(2), 4);
    map.v_SetAt(u"x", 5);
    EXPECT_THAT(All(map), ElementsAre("", "a", "b", "a"));
    EXPECT_EQ(map.pcco_Get(5), nullptr);
    EXPECT_EQ(map.qcuz_Get(0)[0], 0);
}

TEST(StringOrdinalMapTest, TextEndsAtTheFirstEmptyItem) {
    const std::string long_item(3000, 'i');
    const struct {
        Texts items, read;
    } cases[] = {
        {{}, {}},        {{"a", "b"}, {"a", "b"}}, {{"a", "", "b"}, {"a"}},
        {{"", "b"}, {}}, {{"a;b"}, {"a", "b"}},    {{long_item, "\u00E9"}, {long_item, "\u00E9"}}};
    for (const auto& [items, read] : cases) {
        const auto map = Make<CT_StringOrdinalMap>(items);
        std::string joined;
        for (const std::string& item : items) joined += item + ';';
        CT_UString wide(u"before");
        CT_CString narrow(1252u);
        map.v_Map2String(&wide, u';');
        map.v_Map2String(&narrow, ';');
        EXPECT_EQ(Of(&wide), joined);
        EXPECT_EQ(narrow.n_GetCodePage(), 1252u);
        EXPECT_EQ(narrow.n_GetLength(), wide.n_GetLength());
        auto from_wide = Make<CT_StringOrdinalMap>({"before"}), from_narrow = from_wide;
        from_wide.v_String2Map(&wide, u';');
        from_narrow.v_String2Map(&narrow, ';');
        EXPECT_EQ(All(from_wide), read);
        EXPECT_EQ(All(from_narrow), read);
    }
    auto map = Make<CT_StringOrdinalMap>({"a;b"});
    map.v_String2Map(map.pcco_Get(1), u';');
    EXPECT_THAT(All(map), ElementsAre("a", "b"));
    const CT_CString high("a\xE9z", 3, 1252);  // the separator is the character of its number
    map.v_String2Map(&high, '\xE9');
    EXPECT_THAT(All(map), ElementsAre("a", "z"));
}

TEST(StringNumberMapTest, FirstPairCounts) {
    auto map = Make<CT_StringNumberMap>({"x", "y", "x", ""});
    for (std::uint32_t i = 2; i <= 4; ++i) map.v_SetAt(i % 3, i);
    EXPECT_THAT(All(map), ElementsAre("x=7", "y=2", "x=0", "=1"));
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
    EXPECT_THAT(All(map), ElementsAre("x=7", "new=2", "x=1"));
}

TEST(StringNumberMapTest, ReadsRecordsCutAtAnyByte) {
    auto map = Make<CT_StringNumberMap>({"ab", "", "\u4E00"});
    CT_Buffer buffer;
    map.v_Map2Buffer(&buffer);
    const std::string_view bytes(static_cast<const char*>(buffer.qcv_Get()), 10);
    EXPECT_EQ(bytes, std::string_view("\x07\0\0\0a\0b\0\0\0", 10));
    const Texts whole = All(map);
    for (std::uint32_t size = 0; size < 14; ++size) {
        const CT_Buffer cut(buffer.qcv_Get(), size, 1);
        map.v_Buffer2Map(&cut, TRUE);
        const std::string text = std::string("ab").substr(0, size < 4 ? 0 : (size - 4) / 2);
        EXPECT_EQ(All(map), size < 4 ? Texts() : Texts{text + "=7"}) << size;
    }
    map.v_Buffer2Map(&buffer, TRUE);
    EXPECT_EQ(All(map), whole);
    const CT_Buffer narrow("\x07\0\0\0ab\0\x01\0\0\0\0\x02\0\0\0z", 17, 32);
    map.v_Buffer2Map(&narrow, FALSE);
    EXPECT_THAT(All(map), ElementsAre("ab=7", "=1", "z=2"));
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
    for (const Texts& row : {Texts{Of(&text), "red=rot", "blue=blau"},
                             {"a=b;;c=d;", "a=b"},
                             {"a;=b;c=d=e;=", "a=", "=b", "c=d", "="},
                             {""}}) {
        const CT_UString in = String(row[0]);
        map.v_String2Map(&in, u'=', u';');
        EXPECT_EQ(All(map), Texts(row.begin() + 1, row.end()));
    }
}

// The stored forms written and read again.
void Store(CT_StringOrdinalMap& map) {
    CT_UString wide;
    CT_CString narrow(1252u);
    map.v_Map2String(&wide, u';');
    map.v_Map2String(&narrow, ';');
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

TYPED_TEST(StringMapsTest, ChangeAndLeakNothingWithoutMemory) {
    const std::string item(40, 'i');
    const auto original = Make<TypeParam>(Texts(7, item));
    const std::function<void(TypeParam&)> changes[] = {
        [&](TypeParam& map) { Add(map, item); }, [&](TypeParam& map) { map.v_Set(&original); },
        [](TypeParam& map) { map.v_Append(&map, 9); }, [](TypeParam& map) { map.v_RemoveAt(1); },
        [](TypeParam& map) { Store(map); }};
    for (const auto& change : changes) {
        const auto run = [&] {
            TypeParam map(original);
            change(map);
        };
        test::ExpectUnchangedWithoutMemory([&] { return TypeParam(original); }, change,
                                           All<TypeParam>);
        EXPECT_GT(test::FailEachAllocation(run), 7u);
    }
}

}  // namespace
