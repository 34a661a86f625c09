// Replacing, comparing parts, fixed-point numbers, tagged records.
#include "Foundation/Core/String/StringTools.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <random>
#include <string>

#include "Core/String/StringTexts.h"
#include "Foundation/Core/Character/CharMappings.h"
#include "Foundation/Core/String/FormattedString.h"
#include "Support/Memory.h"

namespace {

using Text = std::u16string;

Text Of(const CT_UString& string) {
    return Text(string.qcuz_Get(), string.n_GetLength());
}

Text Replaced(Text text, const Text& find, const Text& replacement) {
    std::size_t at = 0;
    while (!find.empty() && (at = text.find(find, at)) != Text::npos) {
        text.replace(at, find.size(), replacement);
        at += replacement.size();
    }
    return text;
}

TEST(StringToolsTest, ReplacesAllFromLeftToRightAndNothingTwice) {
    const Text finds[] = {u"", u"a", u"ab", u"aa", u"bab", u"abbaabba", u"z"};
    const Text replacements[] = {u"", u"x", u"aa", u"ab", u"abab", u"a longer text than any"};
    std::mt19937 random(7);
    for (const std::size_t length : {0, 1, 3, 16, 40, 200}) {
        Text text;
        while (text.size() < length) text += u"aab\u4E00"[random() % (text.size() % 2 + 2)];
        for (const Text& find : finds) {
            for (const Text& replacement : replacements) {
                SCOPED_TRACE(testing::Message() << length << ' ' << test::Utf8(find) << ' '
                                                << test::Utf8(replacement));
                const Text wanted = Replaced(text, find, replacement);
                CT_UString alone(text.c_str());
                const CT_UString original = alone;
                CT_UString shared = alone;
                CT_StringTools::sv_ReplaceAll(&shared, find.c_str(), replacement.c_str());
                EXPECT_EQ(Of(shared), wanted);
                EXPECT_EQ(Of(original), text);
                alone = CT_UString(text.c_str());
                CT_StringTools::sv_ReplaceAll(&alone, find.c_str(), replacement.c_str());
                EXPECT_EQ(Of(alone), wanted);
                EXPECT_EQ(alone.qcuz_Get()[alone.n_GetLength()], 0);

                CT_UString first(text.c_str());
                const std::size_t at = text.find(find);
                EXPECT_EQ(CT_StringTools::sn_Replace(&first, find.c_str(), replacement.c_str()),
                          static_cast<std::uint32_t>(at));
                EXPECT_EQ(Of(first), at == Text::npos
                                         ? text
                                         : Text(text).replace(at, find.size(), replacement));
            }
        }
    }
}

TEST(StringToolsTest, ReplacesWithTextsOfTheStringItself) {
    CT_UString text(u"aba");
    CT_StringTools::sv_ReplaceAll(&text, u"b", text);
    EXPECT_EQ(Of(text), u"aabaa");
    CT_StringTools::sv_ReplaceAll(&text, u"ab", text.qcuz_Get() + 4);  // "a", the end of the text
    EXPECT_EQ(Of(text), u"aaaa");
    CT_StringTools::sv_ReplaceAll(&text, text, u"");
    EXPECT_EQ(Of(text), u"");

    CT_CString narrow("one two two");
    const CT_CString two("two"), three("three");
    EXPECT_EQ(CT_StringTools::sn_Replace(&narrow, &two, &three), 4u);
    EXPECT_STREQ(narrow.qccz_Get(), "one three two");
    EXPECT_EQ(CT_StringTools::sn_Replace(&narrow, &narrow, &two), 0u);
    EXPECT_EQ(CT_StringTools::sn_Replace(&narrow, &three, nullptr), CT_StringTools::kNotFound);
    EXPECT_STREQ(narrow.qccz_Get(), "two");
}

int Compared(Text a, Text b, bool exact, std::uint32_t count) {
    a += u'\0';
    b += u'\0';
    for (std::size_t i = 0; count == 0 || i < count; ++i) {
        const int left = exact ? a[i] : CT_CharMappings::su_ToLower(a[i]);
        const int right = exact ? b[i] : CT_CharMappings::su_ToLower(b[i]);
        if (left != right || left == 0) return left - right;
    }
    return 0;
}

TEST(StringToolsTest, ComparesPartsInEveryForm) {
    const Text texts[] = {u"",
                          u"abc",
                          u"ABD",
                          u"aBc and more than sixteen letters",
                          u"AbC AND MORE THAN SIXTEEN LETTERS",
                          u"AbC AND MORE THAN SIXTEEN letters\u00C4",
                          u"abc and more than sixteen letters\u00E4"};
    using Tools = CT_StringTools;
    for (const Text& a : texts) {
        for (const Text& b : texts) {
            for (const std::uint32_t count : {0u, 1u, 2u, 3u, 20u, 99u}) {
                for (std::uint32_t from = 0; from <= std::min<std::size_t>(a.size(), 4); ++from) {
                    for (const bool exact : {false, true}) {
                        const int wanted = Compared(a.substr(from), b, exact, count);
                        SCOPED_TRACE(test::Utf8(a) + '/' + test::Utf8(b));
                        const CT_UString wide_a(a.c_str()), wide_b(b.c_str());
                        const CT_CString narrow_a(&wide_a, 1252u), narrow_b(&wide_b, 1252u);
                        ASSERT_EQ(
                            Tools::si_CompareStrings(a.c_str(), b.c_str(), exact, count, from, 0),
                            wanted);
                        ASSERT_EQ(
                            Tools::si_CompareStrings(&wide_b, &narrow_a, exact, count, 0, from),
                            -wanted);
                        ASSERT_EQ(Tools::si_CompareStrings(narrow_a.qccz_Get(), narrow_b.qccz_Get(),
                                                           exact, count, from, 0),
                                  wanted);
                    }
                }
            }
        }
    }
    EXPECT_EQ(Tools::si_CompareStrings(static_cast<const char16_t*>(nullptr), u"b", 1), -u'b');
    const CT_UString shorter(u"ab");
    EXPECT_EQ(Tools::si_CompareStrings(&shorter, &shorter, 1, 0, 99, 2), 0);
}

TEST(StringToolsTest, WritesFixedPointNumbers) {
    constexpr std::uint32_t kWhole = 0xFFFFFFFF;
    struct Case {
        std::uint32_t value, width;
        char group, decimal;
        std::uint32_t decimals;
        const char* text;
    };
    for (const Case& c : {Case{1234567, kWhole, ',', '.', 2, "12,345.67"},
                          {5, kWhole, ',', '.', 2, "0.05"},
                          {1234567, kWhole, ',', '.', 0, "1,234,567"},
                          {0, kWhole, ',', '.', 0, "0"},
                          {0, kWhole, ',', '.', 3, "0.000"},
                          {123, kWhole, ',', '.', 3, "0.123"},
                          {1234, kWhole, '\0', '.', 1, "123.4"},
                          {1234, kWhole, ',', '\0', 1, "1234"},
                          {0x7FFFFFFF, kWhole, '.', ',', 2, "21.474.836,47"},
                          {0x80000000, kWhole, ',', '.', 0, "-2,147,483,648"},
                          {0xFFFFFFFF, kWhole, ',', '.', 2, "-0.01"},
                          {static_cast<std::uint32_t>(-123456), kWhole, ',', '.', 0, "-123,456"},
                          {1, kWhole, ',', '.', 20, "0000000000000001"},
                          {1234567, 12, ',', '.', 2, "   12,345.67"},
                          {1234567, 4, ',', '.', 0, ",567"},
                          {1234567, 3, ',', '.', 2, ".67"},
                          {7, 0, ',', '.', 0, ""},
                          {7, 40, ',', '.', 38, "0.00000000000000000000000000000000000007"}}) {
        SCOPED_TRACE(c.text);
        CT_UString wide(u"before");
        CT_CString narrow("before", CT_String::kToEnd, 1251);
        CT_StringTools::sv_FormatNumber(&wide, c.value, c.width, static_cast<char16_t>(c.group),
                                        static_cast<char16_t>(c.decimal), c.decimals);
        CT_StringTools::sv_FormatNumber(&narrow, c.value, c.width, c.group, c.decimal, c.decimals);
        EXPECT_EQ(test::Ascii<test::Wide>(wide), c.text);
        EXPECT_EQ(test::Ascii<test::Narrow>(narrow), c.text);
        EXPECT_EQ(narrow.n_GetCodePage(), 1251u);
    }
}

TEST(StringToolsTest, ChangesNothingWithoutMemory) {
    const std::function<void(CT_UString&)> changes[] = {
        [](auto& text) { CT_StringTools::sv_ReplaceAll(&text, u"e", u"a long replacement"); },
        [](auto& text) { CT_StringTools::sv_ReplaceAll(&text, u"te", u""); },
        [](auto& text) { CT_StringTools::sn_Replace(&text, u"text", text); },
        [](auto& text) { CT_StringTools::sv_FormatNumber(&text, 1, 50, u',', u'.', 3); },
        [](auto& text) { CT_FormattedString::sv_AddDataR(text, u"Scale", 1.5); },
        [](auto& text) { CT_FormattedString::sv_AddData(text, text, text, &text); }};
    for (const auto& change : changes) {
        SCOPED_TRACE(&change - changes);
        CT_UString shared;  // as strings often are
        const auto make = [&] { return shared = CT_UString(u"a text of seventeen"); };
        EXPECT_GT(test::ExpectUnchangedWithoutMemory(make, change, Of), 0u);
        EXPECT_EQ(Of(shared), u"a text of seventeen");
    }
}

TEST(FormattedStringTest, WritesAndReadsTaggedValues) {
    CT_UString record;
    CT_FormattedString::sv_AddDataI(record, u"A", 5);
    CT_FormattedString::sv_AddDataR(record, u"B", 0.5);
    CT_FormattedString::sv_AddData(record, u"Name", CT_UString(u"Main"));
    EXPECT_EQ(Of(record), u"<A=5><B=0.500000><Name=Main>");
    CT_UString next(u"next");
    CT_FormattedString::sv_AddDataI(&record, u"A", -7, &record);
    CT_FormattedString::sv_AddDataR(record.qcuz_Get(), u"Big", -1e300, &next);
    CT_FormattedString::sv_AddData(next, next.qcuz_Get() + next.n_GetLength(), u"", &next);
    EXPECT_EQ(Of(record), u"<A=5><B=0.500000><Name=Main><A=-7>");
    EXPECT_EQ(next.n_GetLength(), record.n_GetLength() + 315 + 3);

    int integer = 99;
    double real = 99;
    EXPECT_TRUE(CT_FormattedString::sb_GetDataI(record, u"A", &integer));
    EXPECT_EQ(integer, -7);
    EXPECT_TRUE(CT_FormattedString::sb_GetDataR(&record, u"B", &real));
    EXPECT_EQ(real, 0.5);
    EXPECT_TRUE(CT_FormattedString::sb_GetDataR(next, u"Big", &real));
    EXPECT_EQ(real, -1e300);
    EXPECT_FALSE(CT_FormattedString::sb_GetDataI(record, u"Nam", &integer));
    EXPECT_FALSE(CT_FormattedString::sb_GetDataR(record, u"a", &real));
    EXPECT_EQ(integer, -7);
    EXPECT_EQ(real, -1e300);
}

// A value, and what it is as an integer and as a real; kNone: left alone.
TEST(FormattedStringTest, ReadsValuesAsTheRuntimeScansThem) {
    constexpr int kNone = -777;
    struct Case {
        const char16_t* record;
        bool found;
        const char16_t* value;
        double integer, real;
    };
    for (const Case& c : {Case{u"<K=1><K=2><L=3>", true, u"2", 2, 2},
                          {u"<K=>", true, u"", kNone, kNone},
                          {u"<K=5=6>", true, u"5", 5, 5},
                          {u"<=K==5>", true, u"5", 5, 5},
                          {u"K=5", true, u"5", 5, 5},
                          {u">K<", true, u"", kNone, kNone},
                          {u"<KK=5><k=6>", false, u"", kNone, kNone},
                          {u"", false, u"", kNone, kNone},
                          {u"<K= 010>", true, u" 010", 10, 10},
                          {u"<K=x>", true, u"x", kNone, kNone},
                          {u"<K=1e3>", true, u"1e3", 1, 1000},
                          {u"<K=1e>", true, u"1e", 1, kNone},
                          {u"<K=1e+>", true, u"1e+", 1, kNone},
                          {u"<K=-1.5.2>", true, u"-1.5.2", -1, -1.5},
                          {u"<K=.5>", true, u".5", kNone, .5},
                          {u"<K=0x10>", true, u"0x10", 0, 0},
                          {u"<K=+7>", true, u"+7", 7, 7},
                          {u"<K=- 7>", true, u"- 7", kNone, kNone},
                          {u"<K=2147483648>", true, u"2147483648", -2147483648., 2147483648.},
                          {u"<K=-2147483649>", true, u"-2147483649", 2147483647, -2147483649.},
                          {u"<K=4294967296>", true, u"4294967296", 0, 4294967296.}}) {
        SCOPED_TRACE(test::Utf8(c.record));
        CT_UString value(u"before");
        int integer = kNone;
        double real = kNone;
        EXPECT_EQ(CT_FormattedString::sb_GetData(c.record, u"K", &value), c.found);
        EXPECT_EQ(CT_FormattedString::sb_GetDataI(c.record, u"K", &integer), c.found);
        EXPECT_EQ(CT_FormattedString::sb_GetDataR(c.record, u"K", &real), c.found);
        EXPECT_EQ(Of(value), c.value);
        EXPECT_EQ(integer, c.integer);
        EXPECT_EQ(real, c.real);
        CT_UString own(c.record);
        EXPECT_EQ(CT_FormattedString::sb_GetData(own, u"K", &own), c.found);
        EXPECT_EQ(Of(own), c.value);
    }
}

}  // namespace
