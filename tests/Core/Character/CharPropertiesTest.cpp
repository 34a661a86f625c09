// CT_CharProperties: UTF-16 detection, membership in code pages, sequences.
#include "Foundation/Core/Character/CharProperties.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/CodePages/CodePages.h"

namespace platform = zelkor::platform;

namespace {

using CT = CT_CharProperties;
using namespace std::string_literals;

// Bytes of a UTF-16 text in either byte order.
std::string Bytes(std::u16string_view text, bool big_endian = false) {
    std::string bytes;
    for (const char16_t unit : text) {
        const char low = static_cast<char>(unit & 0xFF);
        const char high = static_cast<char>(unit >> 8);
        bytes += big_endian ? high : low;
        bytes += big_endian ? low : high;
    }
    return bytes;
}

TEST(CharPropertiesTest, Utf16IsToldFromOtherBytes) {
    struct Case {
        const char* what;
        std::string bytes;
        BOOL is, likely;
    };
    for (const auto& [what, bytes, is, likely] :
         {Case{"nothing", ""s, FALSE, FALSE},
          {"one byte", "a"s, FALSE, FALSE},
          {"little-endian mark", "\xFF\xFE"s, TRUE, TRUE},
          {"big-endian mark", "\xFE\xFF"s, TRUE, TRUE},
          {"mark, odd size", Bytes(u"\xFEFFHello") + "x", TRUE, TRUE},
          {"ASCII as units", Bytes(u"abc"), TRUE, TRUE},
          {"big-endian ASCII", Bytes(u"abc", true), FALSE, FALSE},
          {"words", Bytes(u"line one\r\nline two"), TRUE, TRUE},
          {"words, odd size", Bytes(u"line one") + "x", FALSE, FALSE},
          {"Greek with a blank", Bytes(u"αβγ δ"), TRUE, TRUE},
          {"Latin-1 without a blank", Bytes(u"Größe"), TRUE, TRUE},
          {"Cyrillic without a blank", Bytes(u"Привет"), TRUE, TRUE},
          {"Thai without a blank", Bytes(u"สวัสดี"), TRUE, TRUE},
          {"Malayalam U+0D0A", Bytes(u"ഊഞ്ഞാലാ"), TRUE, TRUE},
          {"kana", Bytes(u"カタカナのひらがな"), TRUE, TRUE},
          {"ideographs and a line feed", Bytes(u"中文\n"), TRUE, TRUE},
          {"ideographs", Bytes(u"中文测试"), FALSE, FALSE},
          {"ASCII with its terminator", Bytes(u"abc\0"s), TRUE, TRUE},
          {"the last ASCII unit", Bytes(u"\x7F"), TRUE, TRUE},
          {"the first beyond ASCII", Bytes(u"\x80"), FALSE, TRUE},
          {"steady bytes of 8-bit text", " A~A\fA\032A.A"s, FALSE, FALSE},
          {"steady bytes, one of them 7F", " A\177A\fA\032A.A"s, TRUE, TRUE},
          {"steady bytes, one of them 1F", "\037A~A\fA\032A.A"s, TRUE, TRUE},
          {"beyond the first 256 units", Bytes(std::u16string(256, u'a') + u"\xFFFF\0"s), TRUE,
           TRUE},
          {"within them", Bytes(std::u16string(255, u'a') + u"\xFFFF."), FALSE, FALSE},
          {"digits", Bytes(u"1234567890"), TRUE, TRUE},
          {"zero units", std::string(8, '\0'), FALSE, FALSE},
          {"illegal unit", Bytes(u"a b\xFFFF."), FALSE, FALSE},
          {"8-bit line end in one unit", "\020a\r\n\020a"s, FALSE, FALSE},
          {"8-bit Cyrillic", "\xCF\xF0\xE8\xE2\xE5\xF2\x20\xEC\xE8\xF0"s, FALSE, FALSE},
          {"Shift-JIS kana", "1\x82\xA0\x82\xA2\x82\xA4\x82\xA6\x82\xA8."s, FALSE, FALSE},
          {"ISO-2022-JP kana", "\x1B$B$\"$$$&$(\x1B(B"s, FALSE, FALSE},
          {"8-bit text", "some text of English words, lines\r\n"s, FALSE, FALSE},
          {"8-bit text of even size", "Bush hid the facts"s, FALSE, FALSE},
          {"UTF-8 mark", "\xEF\xBB\xBF"s, FALSE, FALSE}}) {
        SCOPED_TRACE(what);
        const auto size = static_cast<unsigned int>(bytes.size());
        EXPECT_EQ(CT::sb_IsTextUnicode(bytes.data(), size), is);
        EXPECT_EQ(CT::sb_IsTextLikelyUnicode(bytes.data(), size), likely);
    }
}

TEST(CharPropertiesTest, MembershipFollowsTheStrictRoundTripButWhereEverythingIsHeld) {
    struct Case {
        std::vector<unsigned int> pages;
        std::u16string_view held, not_held;
    };
    const Case cases[] = {{{0, 1200, 65000, 65001}, u"a\uFFFF\xD800", u""},
                          {{1201, 9999, 50220, 52936, 54936}, u"", u"a"},
                          {{437}, u"a\u00E9", u"\u0416"},
                          {{866}, u"a\u0416", u"\u00E9"},
                          {{932}, u"a\u3042", u"\uAC00"},
                          {{949}, u"a\uAC00", u"\u00E9"},
                          {{1252}, u"\u0081\u20AC", u"\u0100"},
                          {{1361}, u"a\u3042", u"\xD800"}};
    for (const auto& [pages, held, not_held] : cases) {
        for (const unsigned int page : pages) {
            SCOPED_TRACE(page);
            for (const char16_t u : held) EXPECT_TRUE(CT::sb_IsInCodepage(u, page)) << +u;
            for (const char16_t u : not_held) EXPECT_FALSE(CT::sb_IsInCodepage(u, page)) << +u;
        }
    }
}

// The lists must hold just what the tables of the conversion decode to, undefined bytes from 0xA0
// on left out.
TEST(CharPropertiesTest, ListsAgreeWithTheConversionTables) {
    for (unsigned int page = 1250; page <= 1258; ++page) {
        SCOPED_TRACE(page);
        std::set<char16_t> decoded, listed;
        for (int byte = 0; byte <= 0xFF; ++byte) {
            const char text = static_cast<char>(byte);
            char16_t unit;
            if (platform::MultiByteToWideChar(page, platform::kErrorOnInvalidChars, &text, 1, &unit,
                                              1) == 1) {
                decoded.insert(unit);
            }
        }
        for (unsigned int unit = 0; unit <= 0xFFFF; ++unit) {
            if (CT::sb_IsInCodepage(char16_t(unit), page)) listed.insert(char16_t(unit));
        }
        EXPECT_EQ(listed, decoded);
    }
}

TEST(CharPropertiesTest, SequencesEndWithTheCountOrTheText) {
    struct Case {
        const char16_t* text;
        std::uint32_t start, count;
        BOOL passes;
    };
    constexpr Case kCases[] = {
        {u"abc1", 0, 3, TRUE},   {u"abc1", 0, 4, FALSE}, {u"1abc", 1, 3, TRUE},
        {u"abc", 0, 10, TRUE},   {u"abc", 2, ~0U, TRUE}, {u"abc", 3, 1, FALSE},
        {u"abc", ~0U, 1, FALSE}, {u"abc", 0, 0, FALSE},  {u"", 0, 1, FALSE}};
    for (const auto [text, start, count, passes] : kCases) {
        const CT_UString string(text);
        EXPECT_EQ(CT::sb_IsSequenceOf(text, CT::sb_IsAlpha, start, count), passes);
        EXPECT_EQ(CT::sb_IsSequenceOf(&string, CT::sb_IsAlpha, start, count), passes);
    }
    EXPECT_FALSE(CT::sb_IsSequenceOf(static_cast<const char16_t*>(nullptr), CT::sb_IsAlpha, 0, 1));
    EXPECT_FALSE(CT::sb_IsSequenceOf(static_cast<CT_UString*>(nullptr), CT::sb_IsAlpha, 0, 1));
}

}  // namespace
