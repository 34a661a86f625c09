// CT_CharProperties: UTF-16 detection, membership in code pages, sequences.
#include "Foundation/Core/Character/CharProperties.h"

#include <gtest/gtest.h>

#include <string>

#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Nls/CodePages.h"

namespace {

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
          {"Latin-1 without a blank", Bytes(u"Größe"), FALSE, TRUE},
          {"digits", Bytes(u"1234567890"), TRUE, TRUE},
          {"zero units", std::string(8, '\0'), FALSE, FALSE},
          {"illegal unit", Bytes(u"a b\xFFFF"), FALSE, FALSE},
          {"8-bit text", "some text of English words, lines\r\n"s, FALSE, FALSE},
          {"8-bit text of even size", "Bush hid the facts"s, FALSE, FALSE},
          {"UTF-8 mark", "\xEF\xBB\xBF"s, FALSE, FALSE}}) {
        SCOPED_TRACE(what);
        const auto size = static_cast<unsigned int>(bytes.size());
        EXPECT_EQ(CT_CharProperties::sb_IsTextUnicode(bytes.data(), size), is);
        EXPECT_EQ(CT_CharProperties::sb_IsTextLikelyUnicode(bytes.data(), size), likely);
    }
}

TEST(CharPropertiesTest, MembershipFollowsTheListsAndTheStrictRoundTrip) {
    struct Case {
        char16_t character;
        unsigned int page;
        BOOL held;
    };
    for (const auto [character, page, held] : {Case{0x0081, 1252, TRUE},
                                               {0x20AC, 1252, TRUE},
                                               {0x0100, 1252, FALSE},
                                               {0x05BA, 1255, TRUE},
                                               {0x0104, 1250, TRUE},
                                               {0x0000, 1258, TRUE},
                                               {0xFFFF, 1258, FALSE},
                                               {0x3042, 932, TRUE},
                                               {0x3042, 1361, TRUE},
                                               {0xAC00, 949, TRUE},
                                               {0xAC00, 932, FALSE},
                                               {0x00E9, 437, TRUE},
                                               {0xFFFF, 0, TRUE},
                                               {0xD800, 65001, TRUE},
                                               {0x0100, 1200, TRUE},
                                               {u'a', 50220, FALSE},
                                               {u'a', 52936, FALSE},
                                               {u'a', 1201, FALSE},
                                               {u'a', 9999, FALSE}}) {
        EXPECT_EQ(CT_CharProperties::sb_IsInCodepage(character, page), held)
            << std::hex << +character << std::dec << " in " << page;
    }
}

// The lists must hold just what the tables of the conversion decode to, undefined bytes from 0xA0
// on left out, and that in so many runs.
TEST(CharPropertiesTest, ListsAgreeWithTheConversionTables) {
    constexpr int kRuns[] = {60, 25, 22, 29, 26, 28, 44, 56, 41};
    for (unsigned int page = 1250; page <= 1258; ++page) {
        SCOPED_TRACE(page);
        std::u16string decoded;
        for (int byte = 0; byte <= 0xFF; ++byte) {
            const char text = static_cast<char>(byte);
            char16_t unit;
            if (platform::MultiByteToWideChar(page, platform::kErrorOnInvalidChars, &text, 1, &unit,
                                              1) == 1) {
                decoded += unit;
            }
        }
        unsigned int listed = 0;
        int runs = 0;
        bool before = false;
        for (unsigned int unit = 0; unit <= 0xFFFF; ++unit) {
            const bool held = CT_CharProperties::sb_IsInCodepage(char16_t(unit), page) != FALSE;
            runs += held && !before;
            before = held;
            if (!held) continue;
            ++listed;
            EXPECT_NE(decoded.find(static_cast<char16_t>(unit)), std::u16string::npos) << unit;
        }
        EXPECT_EQ(listed, decoded.size());
        EXPECT_EQ(runs, kRuns[page - 1250]);
    }
}

TEST(CharPropertiesTest, SequencesEndWithTheCountOrTheText) {
    struct Case {
        const char16_t* text;
        std::uint32_t start, count;
        BOOL passes;
    };
    for (const auto [text, start, count, passes] : {Case{u"abc1", 0, 3, TRUE},
                                                    {u"abc1", 0, 4, FALSE},
                                                    {u"1abc", 1, 3, TRUE},
                                                    {u"abc", 0, 10, TRUE},
                                                    {u"abc", 2, ~0U, TRUE},
                                                    {u"abc", 3, 1, FALSE},
                                                    {u"abc", ~0U, 1, FALSE},
                                                    {u"abc", 0, 0, FALSE},
                                                    {u"", 0, 1, FALSE},
                                                    {nullptr, 0, 1, FALSE}}) {
        using CT = CT_CharProperties;
        EXPECT_EQ(CT::sb_IsSequenceOf(text, CT::sb_IsAlpha, start, count), passes);
        const CT_UString string(text);
        EXPECT_EQ(
            CT::sb_IsSequenceOf(text == nullptr ? nullptr : &string, CT::sb_IsAlpha, start, count),
            passes);
    }
}

}  // namespace
