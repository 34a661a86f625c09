#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "Foundation/Platform/Runtime.h"
#include "Support/Text.h"

namespace platform = zelkor::platform;

namespace {

using platform::CompareNoCase;
using platform::CompareText;

TEST(RuntimeCompareTest, FoldsTheLettersAToZAlone) {
    struct Case {
        std::u16string a, b;
        int no_case, binary;
    };
    for (const auto& [a, b, no_case, binary] : {Case{u"ABC", u"abc", 0, -1},
                                                {u"A", u"_", 2, -1},
                                                {u"a", u"_", 2, 1},
                                                {u"Z", u"[", 31, -1},
                                                {u"@", u"`", -32, -1},
                                                {u"", u"a", -97, -1},
                                                {u"A", u"", 97, 1},
                                                {u"", u"", 0, 0},
                                                {u"\u00c9", u"\u00e9", -32, -1},
                                                {u"\u0130", u"i", 199, 1},
                                                {u"\uff21", u"\uff41", -32, -1},
                                                {u"ab", u"abc", -99, -1},
                                                {u"a\u00e9", u"A\u00c9", 32, 1},
                                                {u"\xd800", u"\uffff", -10239, -1}}) {
        SCOPED_TRACE(test::Utf8(a + u" / " + b));
        EXPECT_EQ(CompareNoCase(a.c_str(), b.c_str()), no_case);
        EXPECT_EQ(CompareText(a.c_str(), b.c_str()), binary);
        // Views of known length agree with zero-terminated texts, behind whole blocks as well.
        for (const std::size_t before : {0u, 15u, 16u, 40u}) {
            const std::u16string left = std::u16string(before, u'q') + a;
            const std::u16string right = std::u16string(before, u'Q') + b;
            EXPECT_EQ(CompareNoCase(std::u16string_view(left), std::u16string_view(right)), no_case)
                << before;
        }
    }
}

// Texts of every length that are the same but for case, with one place changed, also to a zero.
TEST(RuntimeCompareTest, EveryPlaceOfALongTextCounts) {
    for (std::size_t length = 1; length <= 210; length += length < 40 ? 1 : 17) {
        std::string a(length, 'q'), b(length, 'Q');
        for (std::size_t at = 0; at < length; ++at) {
            for (const auto& [other, expected] : {std::pair{'Z', 'q' - 'z'}, {'\0', int{'q'}}}) {
                b[at] = other;
                const std::u16string wide_a(a.begin(), a.end()), wide_b(b.begin(), b.end());
                EXPECT_EQ(CompareNoCase(a.c_str(), b.c_str()), expected) << length << ", " << at;
                EXPECT_EQ(CompareNoCase(std::string_view(a), std::string_view(b)), expected);
                EXPECT_EQ(CompareNoCase(std::u16string_view(wide_a), std::u16string_view(wide_b)),
                          expected);
                a[at] = other;  // a zero in both ends the comparison, whatever follows
                if (other == '\0' && at + 1 < length) a[length - 1] = 'x';
                EXPECT_EQ(CompareNoCase(a.c_str(), b.c_str()), 0);
                EXPECT_EQ(CompareNoCase(std::string_view(a), std::string_view(b)), 0);
                a.assign(length, 'q');
                b[at] = 'Q';
            }
        }
    }
}

TEST(RuntimeCompareTest, CountsBoundTheComparison) {
    EXPECT_EQ(CompareNoCase(u"abX", u"ABy", 2), 0);
    EXPECT_EQ(CompareNoCase(u"abX", u"ABy", 3), -1);
    EXPECT_EQ(CompareNoCase(u"ab", u"AB", 9), 0);
    EXPECT_EQ(CompareNoCase("abX", "ABy", 2), 0);
    EXPECT_EQ(CompareText(u"abx", u"aby", 2), 0);
    EXPECT_EQ(CompareText(u"abx", u"aby", 3), -1);
    EXPECT_EQ(CompareText("b", "a", 0), 0);
}

TEST(RuntimeCompareTest, BytesCompareUnsigned) {
    EXPECT_EQ(CompareText("\xE9", "z"), 1);
    EXPECT_EQ(CompareNoCase("\xE9", "z"), 0xE9 - 'z');
    EXPECT_EQ(CompareNoCase("\xFF", ""), 0xFF);
    EXPECT_EQ(CompareNoCase("\xC9", "\xE9"), -32);
    EXPECT_EQ(CompareNoCase("ABC", "abc"), 0);
}

TEST(RuntimeCaseTest, MapsAsciiLettersInPlace) {
    std::u16string text = u"@AZ[`az{\u00C9\u00E9\u0130\u0131";
    platform::LowerText(text.data(), text.size());
    EXPECT_EQ(text, u"@az[`az{\u00C9\u00E9\u0130\u0131");
    platform::UpperText(text.data(), text.size() - 6);  // the length bounds it
    EXPECT_EQ(text, u"@AZ[`Az{\u00C9\u00E9\u0130\u0131");
    std::string bytes = "@AZ[`az{\xC9\xE9";
    platform::UpperText(bytes.data(), bytes.size());
    EXPECT_EQ(bytes, "@AZ[`AZ{\xC9\xE9");
    platform::LowerText(bytes.data(), bytes.size());
    EXPECT_EQ(bytes, "@az[`az{\xC9\xE9");
}

TEST(RuntimeSpaceTest, WideTextHasMoreWhiteSpaceThanBytes) {
    std::u16string spaces;
    std::string bytes;
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        if (platform::IsSpace(static_cast<char16_t>(unit))) spaces += static_cast<char16_t>(unit);
        if (unit <= 0xFF && platform::IsSpace(static_cast<char>(unit))) {
            bytes += static_cast<char>(unit);
        }
    }
    EXPECT_EQ(spaces,
              u"\t\n\v\f\r \u00A0\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008"
              u"\u2009\u200A\u200B\u3000\uFEFF");
    EXPECT_EQ(bytes, "\t\n\v\f\r ");
}

TEST(RuntimeNumberTest, ReadsIntegersUpToTheFirstForeignUnit) {
    struct Case {
        std::u16string text;
        std::int32_t value;
    };
    for (const auto& [text, value] : {Case{u"", 0},
                                      {u"-12", -12},
                                      {u"+12", 12},
                                      {u"\t\n 12", 12},
                                      {u"\u00a0\u300012", 12},
                                      {u"- 5", 0},
                                      {u"--5", 0},
                                      {u"0x10", 0},
                                      {u"010", 10},
                                      {u"12.7", 12},
                                      {u"2147483647", 2147483647},
                                      {u"-2147483648", std::numeric_limits<int>::min()},
                                      {u"2147483648", 2147483647},
                                      {u"-99999999999999999999", std::numeric_limits<int>::min()},
                                      {u"\uff11\u0662", 12},
                                      {u"\u066A\u065F", 0}}) {
        EXPECT_EQ(platform::ReadInteger(text.c_str()), value) << test::Utf8(text);
        EXPECT_EQ(platform::ReadInteger64((text + u" ").c_str()) < 0, value < 0);
    }
    EXPECT_EQ(platform::ReadInteger(" -17x"), -17);
    EXPECT_EQ(platform::ReadInteger("\xA0"
                                    "17"),
              0);
    EXPECT_EQ(platform::ReadInteger64("-9223372036854775808"), INT64_MIN);
    EXPECT_EQ(platform::ReadInteger64(u"9223372036854775808"), INT64_MAX);
}

TEST(RuntimeNumberTest, ReadsIntegersInAnyBase) {
    struct Case {
        const char16_t* text;
        int base;
        std::int32_t value;
        std::size_t consumed;
        bool out_of_range;
    };
    for (const auto& [text, base, value, consumed, out_of_range] :
         {Case{u" 5x", 10, 5, 2, false},
          {u"x", 10, 0, 0, false},
          {u"  -", 10, 0, 0, false},
          {u"0x1F", 0, 31, 4, false},
          {u"-0X1f", 16, -31, 5, false},
          {u"0xg", 0, 0, 1, false},
          {u"019", 0, 1, 2, false},
          {u"zz9", 36, 46629, 3, false},
          {u"12", 2, 1, 1, false},
          {u"4294967296", 10, 2147483647, 10, true},
          {u"-2147483649", 0, std::numeric_limits<int>::min(), 11, true},
          {u"5", 1, 0, 0, false},
          {u"5", 37, 0, 0, false}}) {
        SCOPED_TRACE(test::Utf8(text));
        const auto read = platform::ReadLong(text, base);
        EXPECT_EQ(read.value, value);
        EXPECT_EQ(read.consumed, consumed);
        EXPECT_EQ(read.out_of_range, out_of_range);
        EXPECT_EQ(platform::ReadLong(test::Utf8(text).c_str(), base).value, value);
    }
}

TEST(RuntimeNumberTest, ReadsRealNumbersExactly) {
    const double infinity = std::numeric_limits<double>::infinity();
    struct Case {
        std::string text;
        double value;
        std::size_t consumed;
    };
    // Half a unit above 1 rounds to even; any digit behind it, however far, rounds up.
    const std::string half = "1.00000000000000011102230246251565404236316680908203125";
    for (const auto& [text, value, consumed] :
         {Case{" 2.5", 2.5, 4},
          {"-1.5e3x", -1500, 6},
          {".5", 0.5, 2},
          {"5.", 5, 2},
          {".", 0, 0},
          {"", 0, 0},
          {"1e+", 1, 1},
          {"1d3", 1000, 3},
          {"1.5.2", 1.5, 3},
          {"0x1p3", 0, 1},
          {"inf", 0, 0},
          {"1e400", infinity, 5},
          {"-1e99999999999999999999", -infinity, 23},
          {"1e-400", 0, 6},
          {"000000.0000000000001e13", 1, 23},
          {half, 1, half.size()},
          {half + std::string(2000, '0') + "1", std::nextafter(1.0, 2.0), half.size() + 2001},
          {"1" + std::string(1000, '0') + "e-1000", 1, 1007}}) {
        SCOPED_TRACE(text);
        const auto read = platform::ReadDouble(text.c_str());
        EXPECT_EQ(read.value, value);
        EXPECT_EQ(read.consumed, consumed);
        EXPECT_EQ(platform::ReadDouble(test::Utf16(text).c_str()).value, value);
    }
}

}  // namespace
