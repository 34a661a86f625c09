#include "Foundation/Core/Container/StringValueCollection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "Core/String/PlainTexts.h"
#include "Support/Memory.h"
#include "Support/Text.h"

namespace {

using Collection = CT_StringValueCollection;
using Text = std::u16string;

using test::Of;
using test::String;

std::string Shown(const CT_UString& text) {
    return test::Utf8(Of(text));
}
std::string Shown(auto number) {
    return std::to_string(number);
}

// The value of one type, which both ways of asking must give in place of what was there.
template <typename Value>
std::string Get(const Collection& collection, std::uint32_t i, const CT_UString& key, int type) {
    Value by_position(7), by_key(7);
    const BOOL found = collection.eo_GetTypeAt(i) == type;
    EXPECT_EQ(collection.b_GetValueAt(i, by_position), found);
    EXPECT_EQ(collection.b_GetValue(key, by_key), found);
    EXPECT_EQ(Shown(by_position), Shown(by_key));
    return ':' + Shown(by_key);
}

// Every element as key:type:value of each type.
std::vector<std::string> All(const Collection& collection) {
    std::vector<std::string> all;
    for (std::uint32_t i = 1; i <= collection.n_GetCount(); ++i) {
        CT_UString key;
        collection.v_GetKeyAt(i, key);
        all.push_back(Shown(key) + ':' + std::to_string(collection.eo_GetTypeAt(i)) +
                      Get<CT_UString>(collection, i, key, 1) + Get<int>(collection, i, key, 2) +
                      Get<double>(collection, i, key, 3));
    }
    return all;
}

Collection Sample() {
    Collection collection;
    collection.b_Add(u"text", u"x|y", FALSE);
    collection.b_Add(u"integer", -2, FALSE);
    collection.b_Add(u"real", 0.5, FALSE);
    return collection;
}
const std::vector<std::string> kSample = {"text:1:x|y:0:0.000000", "integer:2::-2:0.000000",
                                          "real:3::0:0.500000"};

TEST(StringValueCollectionTest, TakesEveryIntegerThatAnIntHolds) {
    CT_StringValueCollection values;
    EXPECT_TRUE(values.b_Add(u"u", 5u, FALSE));
    EXPECT_TRUE(values.b_Add(u"l", -5L, FALSE));
    EXPECT_FALSE(values.b_Add(u"big", 0x80000000u, TRUE));
    EXPECT_FALSE(values.b_SetValue(u"u", 1LL << 32));
    EXPECT_TRUE(values.b_SetValue(u"l", 7ul));
    int u = 0, l = 0;
    EXPECT_TRUE(values.b_GetValue(u"u", u) && values.b_GetValue(u"l", l));
    EXPECT_EQ(u * 10 + l, 57);
    values.v_Merge(nullptr, TRUE);
    EXPECT_EQ(values.n_GetCount(), 2u);
    values.v_Set(static_cast<const CT_StringValueCollection*>(nullptr));
    EXPECT_EQ(values.n_GetCount(), 0u);
}

TEST(StringValueCollectionTest, KeysAreUniqueAndNeverEmpty) {
    Collection collection = Sample();
    EXPECT_FALSE(collection.b_Add(u"", 1, TRUE));
    EXPECT_FALSE(collection.b_Add(nullptr, u"", TRUE));
    EXPECT_FALSE(collection.b_Add(u"text", 1.5, FALSE));
    EXPECT_FALSE(collection.b_SetValue(u"none", 1));
    EXPECT_EQ(All(collection), kSample);
    EXPECT_TRUE(collection.b_Add(u"text", 7, TRUE));
    EXPECT_TRUE(collection.b_SetValue(u"real", u""));
    EXPECT_TRUE(collection.b_SetValue(CT_UString(u"integer"), 2.5));
    EXPECT_THAT(All(collection), testing::ElementsAre("text:2::7:0.000000", "integer:3::0:2.500000",
                                                      "real:1::0:0.000000"));
    EXPECT_TRUE(collection.b_KeyExists(u"real"));
    EXPECT_TRUE(collection.b_Remove(u"real"));
    EXPECT_FALSE(collection.b_Remove(u"real"));
    EXPECT_FALSE(collection.b_KeyExists(u"real"));
    CT_UString out(u"before");
    for (const std::uint32_t none : {0u, 3u, 0xFFFFFFFFu}) {
        EXPECT_EQ(collection.eo_GetTypeAt(none), Collection::kNone);
        collection.v_GetKeyAt(none, out);
        EXPECT_EQ(Of(out), u"");
    }
    // A zero character ends keys and strings.
    EXPECT_TRUE(collection.b_Add(String(Text(u"k\0x", 3)), String(Text(u"v\0x", 3)), FALSE));
    EXPECT_TRUE(collection.b_GetValue(u"k", out));
    EXPECT_EQ(Of(out), u"v");
    collection.v_Clear();
    EXPECT_EQ(collection.n_GetCount(), 0u);
}

TEST(StringValueCollectionTest, MergesInOrder) {
    Collection other;
    other.b_Add(u"new", 1, FALSE);
    other.b_Add(u"text", 3, FALSE);
    for (const BOOL overwrite : {FALSE, TRUE}) {
        Collection merged = Sample();
        merged.v_Merge(other, overwrite);
        merged.v_Merge(merged, TRUE);
        auto wanted = kSample;
        if (overwrite != FALSE) wanted[0] = "text:2::3:0.000000";
        wanted.push_back("new:2::1:0.000000");
        EXPECT_EQ(All(merged), wanted);
        merged.v_Set(other);
        merged.v_Set(merged);
        EXPECT_EQ(All(merged), All(other));
    }
}

TEST(StringValueCollectionTest, StoresEveryValueAsText) {
    Collection collection, read = Sample();
    const Text long_text(5000, u'|');
    collection.b_Add(long_text.c_str(), long_text.c_str(), FALSE);
    collection.b_Add(u"|\\ \u4E00", u"\\\\a", FALSE);
    Text key = u"r";
    using Real = std::numeric_limits<double>;
    for (const double real :
         {-0.0, 1.0 / 3, 5e-324, -Real::max(), -Real::infinity(), -Real::quiet_NaN()}) {
        collection.b_Add((key += u'r').c_str(), real, FALSE);
    }
    collection.b_Add(u"min", std::numeric_limits<int>::min(), FALSE);
    CT_UString text, again;
    collection.v_Serialize(text);
    EXPECT_TRUE(read.b_Deserialize(text));
    EXPECT_EQ(All(read), All(collection));
    read.v_Serialize(again);
    EXPECT_EQ(Of(again), Of(text));
    EXPECT_TRUE(read.b_Deserialize(CT_UString()));
    EXPECT_EQ(read.n_GetCount(), 0u);
}

// Texts and the elements they give, none where they are malformed; a single one is written as the
// same text. Here "!" is the bar, and "$", "#" and "@" are U+0002 to U+0004.
TEST(StringValueCollectionTest, RefusesMalformedTexts) {
    for (const auto& row : test::Table(R"(a!#02040001000000!|a:2::1:0.000000
a!@0308000000000000000440!|a:3::0:2.500000 / a!$!|a:1::0:0.000000
a!$x!b!$y!a!#02040001000000!b!$z!a!$w!|a:1:w:0:0.000000|b:1:z:0:0.000000
\\!!$x\\!y!|\!:1:x\!y:0:0.000000 / \!\!a!$\!\!\x!|!!a:1:!!\x:0:0.000000
a\!$x! / a / ! / a! / a!! / !$x! / a!$x / a!$x\! / a!%x! / a!5x! / a!\!x! / a!$x!b / a!$x!!
a!#0204000100000! / a!#020400010000000! / a!#02040001000g00! / a!#0204000100000a!
a!#02050001000000! / a!#02040101000000! / a!#٠2040001000000! / a!@02040001000000!
a!#0308000000000000000440! / a!@0308010000000000000440!)")) {
        SCOPED_TRACE(row[0]);
        Text text = test::Utf16(row[0]);
        for (char16_t& unit : text) {
            const std::size_t mark = std::u16string_view(u"$#@").find(unit);
            if (mark < 3) unit = static_cast<char16_t>(mark + 2);
            if (unit == u'!') unit = u'|';
        }
        std::vector<std::string> wanted(row.begin() + 1, row.end());
        for (std::string& element : wanted) std::ranges::replace(element, '!', '|');
        Collection collection = Sample();
        EXPECT_EQ(collection.b_Deserialize(String(text)), !wanted.empty());
        EXPECT_EQ(All(collection), wanted);
        CT_UString again;
        collection.v_Serialize(again);
        EXPECT_TRUE(wanted.size() != 1 || Of(again) == text);
    }
    Collection collection = Sample();
    EXPECT_FALSE(collection.b_Deserialize(String(Text(u"\0a|\u0002x|", 6))));
    EXPECT_EQ(collection.n_GetCount(), 0u);
}

TEST(StringValueCollectionTest, ChangesAndLeaksNothingWithoutMemory) {
    CT_UString text;
    Collection other = Sample();
    other.b_Add(u"more", u"a text that is too long for a small block to hold it", FALSE);
    other.v_Serialize(text);
    text.v_Append(&text);
    const std::function<void(Collection&)> changes[] = {
        [](auto& collection) { collection.b_Add(u"integer", u"value", TRUE); },
        [](auto& collection) { collection.b_Add(u"key", 7, FALSE); },
        [&](auto& collection) { collection.v_Merge(other, TRUE); },
        [&](auto& collection) { collection.v_Set(other); },
        [&](auto& collection) { collection.b_Deserialize(text); },
        [](auto& collection) {
            CT_UString out;
            collection.v_Serialize(out);
        }};
    for (const auto& change : changes) {
        SCOPED_TRACE(&change - changes);
        EXPECT_GT(test::ExpectUnchangedWithoutMemory(Sample, change, All), 0u);
    }
}

}  // namespace
