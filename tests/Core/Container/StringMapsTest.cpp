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

namespace {

using testing::ElementsAre;
using Text = std::u16string;
using Texts = std::vector<Text>;

Text Of(const CT_UString* string) {
    return string == nullptr ? u"(none)" : Text(string->qcuz_Get(), string->n_GetLength());
}
CT_UString String(const Text& text) {
    return CT_UString(text.data(), static_cast<std::uint32_t>(text.size()));
}

Texts All(const CT_StringOrdinalMap& map) {
    Texts texts;
    for (std::uint32_t i = 1; i <= map.n_GetCount(); ++i) texts.push_back(Of(map.pcco_Get(i)));
    return texts;
}
Texts All(const CT_StringNumberMap& map) {
    Texts texts;
    for (std::uint32_t i = 1; i <= map.n_GetCount(); ++i) {
        texts.push_back(Of(map.pcco_GetAt(i)) + static_cast<char16_t>(u'0' + map.n_GetAt(i)));
    }
    return texts;
}
Texts All(const CT_StringStringMap& map) {
    Texts texts;
    for (std::uint32_t i = 1; i <= map.n_GetCount(); ++i) {
        const CT_UString *first = nullptr, *second = nullptr;
        map.v_GetAt(&first, &second, i);
        texts.push_back(Of(first) + u'=' + Of(second));
    }
    return texts;
}

CT_StringOrdinalMap Ordinals(const Texts& texts) {
    CT_StringOrdinalMap map;
    for (const Text& text : texts) map.v_Insert(String(text), CT_StringOrdinalMap::kEnd);
    return map;
}

TEST(StringOrdinalMapTest, InsertsFindsAndRemovesByPosition) {
    CT_StringOrdinalMap map(3);
    EXPECT_EQ(map.n_Insert(u"b", 0xFFFFFFFF), 1u);
    EXPECT_EQ(map.n_Insert(CT_UString(u"a"), 1), 2u);
    EXPECT_EQ(map.n_Insert(map.pcco_Get(2), 99), 3u);
    map.v_Insert(u"", 2);
    map.v_Insert(nullptr, 0);
    EXPECT_THAT(All(map), ElementsAre(u"", u"a", u"", u"b", u"b"));
    EXPECT_EQ(map.n_Get(u"b"), 4u);
    EXPECT_EQ(map.n_Get(map.pcco_Get(3)), 1u);
    EXPECT_EQ(map.n_Get(u"c"), 0u);
    map.v_SetAt(map.qcuz_Get(2), 4);
    map.v_RemoveAt(1);
    map.v_RemoveAt(2);
    for (const std::uint32_t none : {0u, 4u, 0xFFFFFFFFu}) {
        map.v_RemoveAt(none);
        map.v_SetAt(u"x", none);
        EXPECT_EQ(map.pcco_Get(none), nullptr);
        EXPECT_STREQ(map.qcuz_Get(none) == nullptr ? "null" : "", "");
    }
    EXPECT_THAT(All(map), ElementsAre(u"a", u"a", u"b"));

    const CT_StringOrdinalMap copy(map);
    map.v_Append(&map, 2);
    map.v_Append(&copy, 0xFFFFFFFF);
    map.v_SetAt(u"z", 1);
    EXPECT_THAT(All(map), ElementsAre(u"z", u"a", u"b", u"a", u"a", u"a", u"a", u"b"));
    EXPECT_THAT(All(copy), ElementsAre(u"a", u"a", u"b"));
    map.v_Set(&copy);
    map.v_Set(&map);
    EXPECT_THAT(All(map), ElementsAre(u"a", u"a", u"b"));
    map.v_Set(2u);
    EXPECT_EQ(map.n_GetCount(), 0u);
}

// A map, its text with ';', and what reading that text gives.
TEST(StringOrdinalMapTest, TextEndsAtTheFirstEmptyItem) {
    struct Case {
        Texts map;
        Text text;
        Texts read;
    };
    const Text long_item(3000, u'\u00E9');
    for (const Case& c : {Case{{}, u"", {}},
                          {{u"a", u"b"}, u"a;b;", {u"a", u"b"}},
                          {{u"a", u"", u"b"}, u"a;;b;", {u"a"}},
                          {{u"", u"b"}, u";b;", {}},
                          {{u"a;b"}, u"a;b;", {u"a", u"b"}},
                          {{long_item, u"x"}, long_item + u";x;", {long_item, u"x"}}}) {
        const CT_StringOrdinalMap map = Ordinals(c.map);
        CT_UString text(u"before");
        map.v_Map2String(&text, u';');
        EXPECT_EQ(Of(&text), c.text);
        CT_CString narrow(1252u);
        map.v_Map2String(&narrow, ';');
        EXPECT_EQ(narrow.n_GetCodePage(), 1252u);
        EXPECT_EQ(narrow.n_GetLength(), c.text.size());
        CT_StringOrdinalMap read = Ordinals({u"before"});
        read.v_String2Map(&text, u';');
        EXPECT_EQ(All(read), c.read);
        read = Ordinals({u"before"});
        read.v_String2Map(&narrow, ';');
        EXPECT_EQ(All(read), c.read);
    }
    CT_StringOrdinalMap map;
    const CT_UString open(u"a;b");
    map.v_String2Map(&open, u';');
    EXPECT_THAT(All(map), ElementsAre(u"a", u"b"));
    map.v_String2Map(map.pcco_Get(2), u';');  // a text of its own
    EXPECT_THAT(All(map), ElementsAre(u"b"));
    const CT_CString high("a\xE9z", 3, 1252);  // the separator is the character of its number
    map.v_String2Map(&high, '\xE9');
    EXPECT_THAT(All(map), ElementsAre(u"a", u"z"));
}

TEST(StringNumberMapTest, FirstPairCounts) {
    CT_StringNumberMap map;
    map.v_Insert(u"x", 1);
    map.v_Insert(CT_UString(u"y"), 2);
    map.v_Insert(u"x", 3);
    map.v_Insert(u"", 2);
    EXPECT_EQ(map.n_Get(u"x"), 1u);
    EXPECT_EQ(map.n_Get(u"z"), 0u);
    EXPECT_EQ(Of(map.pcco_Get(2)), u"y");
    EXPECT_EQ(map.pcco_Get(9), nullptr);
    EXPECT_EQ(map.qcuz_GetAt(4)[0], 0);
    map.v_Update(u"new", 2);
    map.v_Update(u"none", 9);
    map.v_SetAt(map.pcco_GetAt(1), 3);
    map.v_SetAt(u"last", 4);
    map.v_SetAt(7, 4);
    const CT_StringNumberMap copy(map);
    map.v_Remove(3);
    map.v_Remove(9);
    map.v_RemoveAt(5);
    map.v_SetAt(8, 5);
    EXPECT_THAT(All(map), ElementsAre(u"x1", u"new2", u"last7"));
    EXPECT_THAT(All(copy), ElementsAre(u"x1", u"new2", u"x3", u"last7"));
    map.v_Append(&map, 1);
    map.v_Append(&copy, 2);
    map.v_RemoveAt(1);
    EXPECT_THAT(All(map), ElementsAre(u"new2", u"last7", u"x1", u"x1", u"new2"));
    map.v_Set(&copy);
    EXPECT_EQ(All(map), All(copy));
    map.v_Set(1u);
    EXPECT_EQ(map.n_GetCount() + map.n_GetAt(1), 0u);
}

// Bytes, and the pairs that they are as wide and as 8-bit records.
TEST(StringNumberMapTest, ReadsRecordsCutAtAnyByte) {
    CT_StringNumberMap map;
    map.v_Insert(u"ab", 7);
    CT_Buffer buffer;
    map.v_Map2Buffer(&buffer);
    const std::string_view bytes(static_cast<const char*>(buffer.qcv_Get()),
                                 buffer.n_GetUsedSize());
    EXPECT_EQ(bytes, std::string_view("\x07\0\0\0a\0b\0\0\0", 10));
    map.v_Insert(u"", 1);
    map.v_Insert(u"\u4E00", 2);
    map.v_Map2Buffer(&buffer);
    const Texts whole = All(map);
    const std::vector<Texts> cut_records = {{},      {},      {},       {},       {u"7"},  {u"7"},
                                            {u"a7"}, {u"a7"}, {u"ab7"}, {u"ab7"}, {u"ab7"}};
    for (std::uint32_t size = 0; size <= buffer.n_GetUsedSize(); ++size) {
        SCOPED_TRACE(size);
        CT_Buffer cut(buffer.qcv_Get(), size, 1);
        CT_StringNumberMap read(&map);
        read.v_Buffer2Map(&cut, TRUE);
        if (size < cut_records.size()) {
            EXPECT_EQ(All(read), cut_records[size]);
        }
    }
    map.v_Buffer2Map(&buffer, TRUE);
    EXPECT_EQ(All(map), whole);
    const CT_Buffer narrow("\x07\0\0\0ab\0\x01\0\0\0\0\x02\0\0\0z", 17, 32);
    map.v_Buffer2Map(&narrow, FALSE);
    EXPECT_THAT(All(map), ElementsAre(u"ab7", u"1", u"z2"));
}

TEST(StringStringMapTest, FindsEitherStringOfAPair) {
    CT_StringStringMap map;
    map.v_Insert(u"red", u"rot");
    map.v_Insert(CT_UString(u"blue"), CT_UString(u"blau"));
    map.v_Insert(u"red", u"blau");
    EXPECT_EQ(Of(map.pcco_GetString2(u"red")), u"rot");
    EXPECT_EQ(Of(map.pcco_GetString1(u"blau")), u"blue");
    EXPECT_EQ(map.pcco_GetString2(u"rot"), nullptr);
    map.v_Insert(map.pcco_GetString1(u"rot"), map.pcco_GetString2(u"blue"));
    const CT_StringStringMap copy(map);
    map.v_RemoveAt(1);
    map.v_RemoveAt(4);
    map.v_Append(&map, 1);
    map.v_Append(&copy, 1);
    EXPECT_THAT(All(map),
                ElementsAre(u"blue=blau", u"red=blau", u"red=blau", u"blue=blau", u"red=rot"));
    const CT_UString *first = &*map.pcco_GetString1(u"rot"), *second = first;
    map.v_GetAt(&first, &second, 6);
    EXPECT_TRUE(first == nullptr && second == nullptr);
    map.v_Set(&copy);
    EXPECT_EQ(All(map), All(copy));
    map.v_Set(2u);
    EXPECT_EQ(map.n_GetCount(), 0u);
}

TEST(StringStringMapTest, TextEndsAtTheFirstEmptyRecord) {
    CT_StringStringMap map;
    map.v_Insert(u"red", u"rot");
    map.v_Insert(u"blue", u"blau");
    CT_UString text;
    map.v_Map2String(&text, u'=', u';');
    EXPECT_EQ(Of(&text), u"red=rot;blue=blau;");
    struct Case {
        const char16_t* text;
        Texts read;
    };
    for (const Case& c : {Case{text.qcuz_Get(), {u"red=rot", u"blue=blau"}},
                          {u"a=b;;c=d;", {u"a=b"}},
                          {u"a;=b;c=d=e;=", {u"a=", u"=b", u"c=d", u"="}},
                          {u"", {}}}) {
        const CT_UString in(c.text);
        map.v_String2Map(&in, u'=', u';');
        EXPECT_EQ(All(map), c.read);
    }
}

template <typename Map>
void ExpectUnchangedWithoutMemory(const Map& original,
                                  std::initializer_list<std::function<void(Map&)>> changes) {
    for (const auto& change : changes) {
        SCOPED_TRACE(&change - changes.begin());
        const auto make = [&] { return Map(original); };
        EXPECT_GT(test::ExpectUnchangedWithoutMemory(make, change,
                                                     [](const Map& map) { return All(map); }),
                  0u);
        test::FailEachAllocation([&] {
            Map map(original);
            change(map);
        });
    }
}

TEST(StringMapsTest, ChangeAndLeakNothingWithoutMemory) {
    const Text item(50, u'i');
    const CT_UString text((item + u"=" + item + u";" + item + u";").c_str());
    const CT_CString narrow(&text, 1252u);
    const CT_StringOrdinalMap ordinals = Ordinals(Texts(7, item));
    ExpectUnchangedWithoutMemory<CT_StringOrdinalMap>(
        ordinals,
        {[&](auto& map) { map.v_Insert(item.c_str(), 3); },
         [&](auto& map) { map.v_SetAt((item + item).c_str(), 3); },
         [&](auto& map) { map.v_Set(&ordinals); }, [&](auto& map) { map.v_Append(&map, 9); },
         [&](auto& map) { map.v_String2Map(&text, u';'); },
         [&](auto& map) { map.v_String2Map(&narrow, ';'); }});
    CT_StringNumberMap numbers(1);
    CT_StringStringMap pairs(1);
    for (std::uint32_t i = 1; i < 8; ++i) {
        numbers.v_Insert(item.c_str(), i);
        pairs.v_Insert(item.c_str(), item.c_str());
    }
    CT_Buffer buffer;
    numbers.v_Map2Buffer(&buffer);
    ExpectUnchangedWithoutMemory<CT_StringNumberMap>(
        numbers,
        {[&](auto& map) { map.v_Insert(item.c_str(), 3); }, [](auto& map) { map.v_RemoveAt(1); },
         [&](auto& map) { map.v_Set(&numbers); }, [&](auto& map) { map.v_Append(&map, 9); },
         [&](auto& map) { map.v_Buffer2Map(&buffer, TRUE); },
         [&](auto& map) { map.v_Buffer2Map(&buffer, FALSE); }});
    ExpectUnchangedWithoutMemory<CT_StringStringMap>(
        pairs, {[&](auto& map) { map.v_Insert(item.c_str(), item.c_str()); },
                [&](auto& map) { map.v_Set(&pairs); }, [&](auto& map) { map.v_Append(&map, 9); },
                [&](auto& map) { map.v_String2Map(&text, u'=', u';'); }});
    test::FailEachAllocation([&] {
        CT_UString out, both;
        CT_CString out8;
        CT_Buffer bytes;
        ordinals.v_Map2String(&out, u';');
        ordinals.v_Map2String(&out8, ';');
        pairs.v_Map2String(&both, u'=', u';');
        numbers.v_Map2Buffer(&bytes);
    });
}

}  // namespace
