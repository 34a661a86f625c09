// Replacing, comparing parts, fixed-point numbers, tagged records, numbers of locales.
#include "Foundation/Core/Text/StringTools.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <limits>
#include <random>
#include <string>

#include "Core/String/PlainTexts.h"
#include "Core/String/StringTexts.h"
#include "Foundation/Core/Character/CharMappings.h"
#include "Foundation/Core/Text/FormatString.h"
#include "Foundation/Core/Text/FormattedString.h"
#include "Foundation/Core/Text/StringScanner.h"
#include "Foundation/Platform/Locales/Locales.h"
#include "Support/Memory.h"

namespace platform = zelkor::platform;

namespace {

using Text = std::u16string;
using test::Of;

TEST(StringToolsTest, ReplacesAllFromLeftToRightAndNothingTwice) {
    const Text finds[] = {u"", u"a", u"ab", u"aa", u"bab", u"abbaabba", u"z"};
    const Text replacements[] = {u"", u"x", u"aa", u"ab", u"abab", u"a longer text than any"};
    std::mt19937 random(7);
    for (const std::size_t length : std::array<std::size_t, 6>{0, 1, 3, 16, 40, 200}) {
        Text text;
        while (text.size() < length) text += u"aabc"[random() % (text.size() % 2 + 2)];
        for (const Text& find : finds) {
            for (const Text& replacement : replacements) {
                SCOPED_TRACE(testing::Message() << length << ' ' << test::Utf8(find) << ' '
                                                << test::Utf8(replacement));
                const Text wanted = test::Replaced(text, find, replacement);
                CT_UString alone(text.c_str()), first(text.c_str()), shared(first);
                CT_StringTools::sv_ReplaceAll(&alone, find.c_str(), replacement.c_str());
                CT_StringTools::sv_ReplaceAll(&shared, find.c_str(), replacement.c_str());
                EXPECT_EQ(test::Utf8(wanted), test::Ascii<test::Wide>(alone));
                EXPECT_EQ(Of(shared), wanted);
                EXPECT_EQ(Of(first), text);
                const auto at = static_cast<std::uint32_t>(text.find(find));
                EXPECT_EQ(CT_StringTools::sn_Replace(&first, find.c_str(), replacement.c_str()),
                          at);
                Text once = text;
                if (at != CT_StringTools::kNotFound) once.replace(at, find.size(), replacement);
                EXPECT_EQ(Of(first), once);
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
    const Text lower = u"abc and more than sixteen letters",
               upper = u"ABC AND MORE THAN SIXTEEN LETTERS";
    const Text texts[] = {u"", u"abc", u"ABD", lower, upper, lower + u"\u00E4", upper + u"\u00C4"};
    using Tools = CT_StringTools;
    std::mt19937 random(5);
    for (int i = 0; i < 5000; ++i) {
        const Text &a = texts[random() % 7], &b = texts[random() % 7];
        const auto count = static_cast<std::uint32_t>(random() % 2 * (random() % 50));
        const auto from = static_cast<std::uint32_t>(random() % (a.size() + 1));
        const bool exact = random() % 2 == 0;
        const int wanted = Compared(a.substr(from), b, exact, count);
        const CT_UString wide_a(a.c_str()), wide_b(b.c_str());
        const CT_CString narrow_a(&wide_a, 1252u), narrow_b(&wide_b, 1252u);
        SCOPED_TRACE(test::Utf8(a) + '/' + test::Utf8(b));
        ASSERT_EQ(Tools::si_CompareStrings(a.c_str(), b.c_str(), exact, count, from), wanted);
        ASSERT_EQ(Tools::si_CompareStrings(&wide_b, &narrow_a, exact, count, 0, from), -wanted);
        ASSERT_EQ(
            Tools::si_CompareStrings(narrow_a.qccz_Get(), narrow_b.qccz_Get(), exact, count, from),
            wanted);
    }
    EXPECT_EQ(Tools::si_CompareStrings(static_cast<const char16_t*>(nullptr), u"b", 1), -u'b');
    const CT_UString shorter(u"ab");
    EXPECT_EQ(Tools::si_CompareStrings(&shorter, &shorter, 1, 0, 99, 2), 0);
}

// Value, width, group separator, decimal separator (0: none), decimals, text.
TEST(StringToolsTest, WritesFixedPointNumbers) {
    for (
        const auto& fields : test::Table(
            R"(1234567|-1|,|.|2|12,345.67 / 5|-1|,|.|2|0.05 / 1234567|-1|,|.|0|1,234,567 / 0|-1|,|.|0|0
0|-1|,|.|3|0.000 / 123|-1|,|.|3|0.123 / 1234|-1|0|.|1|123.4 / 1234|-1|,|0|1|1234
2147483647|-1|.|,|2|21.474.836,47 / -2147483648|-1|,|.|0|-2,147,483,648 / -1|-1|,|.|2|-0.01
-123456|-1|,|.|0|-123,456 / 1|-1|,|.|20|0000000000000001 / 1234567|12|,|.|2|   12,345.67
1234567|4|,|.|0|,567 / 1234567|3|,|.|2|.67 / 7|0|,|.|0| / 7|22|,|.|20|0.00000000000000000007)")) {
        SCOPED_TRACE(testing::PrintToString(fields));
        const auto number = [&](std::size_t field) {
            return static_cast<std::uint32_t>(std::stol(fields[field]));
        };
        const char group = fields[2] == "0" ? '\0' : fields[2][0];
        const char decimal = fields[3] == "0" ? '\0' : fields[3][0];
        CT_UString wide(u"before");
        CT_CString narrow("before", CT_String::kToEnd, 1251);
        CT_StringTools::sv_FormatNumber(&wide, number(0), number(1), static_cast<char16_t>(group),
                                        static_cast<char16_t>(decimal), number(4));
        CT_StringTools::sv_FormatNumber(&narrow, number(0), number(1), group, decimal, number(4));
        EXPECT_EQ(test::Ascii<test::Wide>(wide), fields[5]);
        EXPECT_EQ(test::Ascii<test::Narrow>(narrow), fields[5]);
        EXPECT_EQ(narrow.n_GetCodePage(), 1251u);
    }
}

TEST(StringToolsTest, ChangesNothingWithoutMemory) {
    const std::function<void(CT_UString&)> changes[] = {
        [](auto& text) { CT_StringTools::sv_ReplaceAll(&text, u"e", u"a long replacement"); },
        [](auto& text) { CT_StringTools::sv_ReplaceAll(&text, u"te", u""); },
        [](auto& text) { CT_StringTools::sn_Replace(&text, u"text", text); },
        [](auto& text) { CT_StringScanner::v_SubWord(&text, u"a word of some length", u".", 1); },
        [](auto& text) { CT_StringScanner::v_RemoveItem(&text, u' ', 2); },
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
    CT_UString next(u"next");
    CT_FormattedString::sv_AddDataI(&record, u"A", -7, &record);
    CT_FormattedString::sv_AddDataR(record.qcuz_Get(), u"Big", -1e300, &next);
    CT_FormattedString::sv_AddData(next, next.qcuz_Get() + next.n_GetLength(), u"", &next);
    EXPECT_EQ(Of(record), u"<A=5><B=0.500000><Name=Main><A=-7>");
    EXPECT_EQ(next.n_GetLength(), record.n_GetLength() + 315 + 3);
}

// A record, the value of K in it, and that as an integer and as a real; -777: left alone.
TEST(FormattedStringTest, ReadsValuesAsTheRuntimeScansThem) {
    for (const auto& fields : test::Table(
             R"(<K=1><K=2><L=3>|2|2|2 / <K=>||-777|-777 / <K=5=6>|5|5|5 / <=K==5>|5|5|5 / K=5|5|5|5
>K<||-777|-777 / <KK=5><k=6> /  / <K= 010>| 010|10|10 / <K=x>|x|-777|-777
<K=1e3>|1e3|1|1000 / <K=-1e300>|-1e300|-1|-1e300 / <K=1e>|1e|1|-777 / <K=1e+>|1e+|1|-777 / <K=-1.5.2>|-1.5.2|-1|-1.5
<K=5e4e>|5e4e|5|50000 / <K=1D2d>|1D2d|1|100 / <K=1d>|1d|1|-777
<K=.5>|.5|-777|.5 / <K=0x10>|0x10|0|0 / <K=+7>|+7|7|7 / <K=- 7>|- 7|-777|-777
<K=2147483648>|2147483648|-2147483648|2147483648
<K=-2147483649>|-2147483649|2147483647|-2147483649 / <K=4294967296>|4294967296|0|4294967296)")) {
        SCOPED_TRACE(testing::PrintToString(fields));
        const bool found = fields.size() > 1;
        CT_UString record(test::Utf16(fields[0]).c_str());
        int integer = -777;
        double real = -777;
        EXPECT_EQ(CT_FormattedString::sb_GetDataI(record, u"K", &integer), found);
        EXPECT_EQ(CT_FormattedString::sb_GetDataR(record, u"K", &real), found);
        EXPECT_EQ(CT_FormattedString::sb_GetData(record, u"K", &record), found);
        EXPECT_EQ(test::Ascii<test::Wide>(record), found ? fields[1] : "");
        EXPECT_EQ(integer, found ? std::stoi(fields[2]) : -777);
        EXPECT_EQ(real, found ? std::stod(fields[3]) : -777);
    }
}

TEST(StringToolsTest, WithoutAStringNothingIsDone) {
    CT_UString* const none = nullptr;
    int integer = 7;
    EXPECT_EQ(CT_StringTools::sn_Replace(none, u"a", u"b"), CT_StringTools::kNotFound);
    CT_StringTools::sv_ReplaceAll(none, u"a", u"b");
    CT_StringTools::sv_FormatNumber(none, 5, 9, u',', u'.', 2);
    CT_StringScanner::v_SubWord(none, u"a b", u" ", 1);
    CT_StringScanner::v_Item(none, u"a b", u' ', 1);
    CT_StringScanner::v_RemoveWord(none, u" ", 1);
    CT_StringScanner::v_RemoveItem(none, u' ', 1);
    CT_FormattedString::sv_AddData(u"", u"K", u"1", none);
    CT_FormattedString::sv_AddDataI(u"", u"K", 1, none);
    CT_FormattedString::sv_AddDataR(u"", u"K", 1, none);
    EXPECT_FALSE(CT_FormattedString::sb_GetData(u"<K=1>", u"K", none));
    EXPECT_FALSE(CT_FormattedString::sb_GetDataI(u"<K=1>", u"K", nullptr));
    EXPECT_FALSE(CT_FormattedString::sb_GetDataI(nullptr, u"K", &integer));
    EXPECT_FALSE(CT_FormattedString::sb_GetDataR(u"<K=1>", u"K", nullptr));
    EXPECT_FALSE(CT_FormatString::sb_FormatNumber(none, 5u, 0, 2, 3u));
    EXPECT_FALSE(CT_FormatString::sb_FormatNumber(none, 5, 0, 2, u"3;0"));
}

std::string Formatted(auto value, LCID locale, std::uint32_t decimals, auto grouping) {
    CT_UString out(u"before");
    const BOOL done = CT_FormatString::sb_FormatNumber(&out, value, locale, decimals, grouping);
    EXPECT_EQ(done, out.n_GetLength() != 0);
    return test::Ascii<test::Wide>(out);
}

TEST(FormatStringTest, FollowsTheLocale) {
    platform::SetDefaultLocales(0x0407, 0x0409);
    EXPECT_EQ(Formatted(1234567u, 0, 2, 3u), "1.234.567,00");
    EXPECT_EQ(Formatted(-1234.5f, 0, 1, u"3;0"), "-1.234,5");
    platform::SetDefaultLocales(0, 0);
    EXPECT_EQ(Formatted(4294967295u, 0x0409, 0, u"3;2;0"), "4,29,49,67,295");
    EXPECT_EQ(Formatted(1234567u, 0x0409, 1, u"3"), "1234,567.0");
    EXPECT_EQ(Formatted(-0.125f, 0x0401, 2, 3u), "0.13-");
    EXPECT_EQ(Formatted(-1234.5f, 0x041A, 1, 3u), "- 1.234,5");
    EXPECT_EQ(Formatted(-0.0f, 0x0409, 2, 3u), "0.00");
    EXPECT_EQ(Formatted(0.5f, 0x043A, 1, 3u), "0,5");  // Maltese, from the library's own list
    using Limits = std::numeric_limits<float>;
    EXPECT_EQ(Formatted(Limits::lowest(), 0x0409, 9, 1u).size(), 1u + 39 + 38 + 10);
    for (const float value : {Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN()}) {
        EXPECT_EQ(Formatted(value, 0x0409, 2, 3u), "");
    }
    EXPECT_EQ(Formatted(5, 0x0409, 2, 3), "5.00");
    EXPECT_EQ(Formatted(std::numeric_limits<long long>::min(), 0x0409, 0, u"3;0"),
              "-9,223,372,036,854,775,808");
    EXPECT_EQ(Formatted(~0ul, 0x0409, 0, 0), "18446744073709551615");
    EXPECT_EQ(Formatted(-1234.25, 0x0407, 1, 3), "-1.234,3");
    EXPECT_EQ(Formatted(std::numeric_limits<double>::max(), 0x0409, 9, 1u).size(), 309u + 308 + 10);
    EXPECT_EQ(Formatted(5u, 0x0409, 10, 3u), "");
    EXPECT_EQ(Formatted(5u, 0x0409, 0, u"3;"), "");
    EXPECT_EQ(Formatted(5u, 0xFFFF, 0, 3u), "");
}

}  // namespace
