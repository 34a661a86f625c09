// The rules of calls, of the algorithmic pages and of damaged text, against recorded answers.
#include "Foundation/Platform/CodePages/CodePages.h"

#include <gtest/gtest.h>

#include <string>

#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Locales/Locales.h"
#include "tests/Platform/CodePageCalls.h"
#include "tests/Support/Text.h"

namespace platform = zelkor::platform;

namespace {

using namespace std::string_literals;
using platform::LastError;
using platform::MultiByteToWideChar;
using platform::WideCharToMultiByte;
using test::Decode;
using test::Decoded;
using test::Encode;

// Answers of calls that decode, an error in place of the units where it is not 0.
TEST(CodePagesTest, DecodingFollowsTheRulesOfEachPage) {
    struct Case {
        std::uint32_t page, flags;
        std::string bytes;
        std::u16string units;
        std::uint32_t error = 0;
    };
    const Case cases[] = {
        // Lead bytes at the end, before a zero byte, and before a byte without a row.
        {932, 0, "A\x82", u"A\u30FB"},
        {932, 1, "\x82\0"s, u"\u30FB\0"s},
        {932, 0, "\x81\377A", u"\u30FBA"},
        {936, 0, "\xA1\377A", u"?A"},
        {949, 0, "\xB0 ", u"?"},
        {936, 8, "\xB0", u"", 1113},
        {932, 8, "\x82\0"s, u"", 1113},
        // Private-use units: of single bytes refused, of pairs accepted.
        {932, 8, "\xFE", u"", 1113},
        {1255, 8, "\xFF", u"", 1113},
        {949, 9, "\xC9\xA1\xFE\xA1", u"\uE000\uE05E"},
        {932, 0, "\xA0\xFD\xFE\xFF\x80", u"\uF8F0\uF8F1\uF8F2\uF8F3\u0080"},
        // Rows that really mean the default unit; 20127 drops the high bit, but BF is refused.
        {932, 8, "?\x81\x45", u"?\u30FB"},
        {20127, 0, "\xC1\xBF", u"A?"},
        {20127, 8, "\xC1", u"A"},
        {20127, 8, "\xBF", u"", 1113},
        {1252, 8, "\x80\x81\x90\x9D", u"\u20AC\u0081\u0090\u009D"},
        {1255, 0, "\xCA", u"\u05BA"},
        {10005, 0, "\xCB\xDE", u"\u05B8\u05B8"},
        {10008, 0, "\xA1\xAC\xA1\xCE", u"\u2225\u2225"},
        {10021, 0, "\x7F", u"?"},
        {950, 0, "\x81\x40\xFA\x40", u"\uEEB8\uE000"},
        {1361, 0, "\x88\x61\\", u"\uAC00\\"},
        {20932, 0, "\xB0\x21\xA1\xC1", u"\u4E02\u301C"},
        {51932, 1, "\x8E\xB1\xA1\xC1\xA2\xB9", u"\uFF71\uFF5E\u30FB"},
        {646, 1, "us", u"us"},
        {42, 0, "A\x1F\xFF", u"\uF041\u001F\uF0FF"},
        // Flags and pages.
        {1252, 0x10, "A", u"", 1004},
        {42, 1, "A", u"", 1004},
        {65000, 8, "A", u"", 1004},
        {65001, 1, "A", u"", 1004},
        {50220, 1, "A", u"", 1004},
        {1200, 0, "A", u"", 87},
        {1201, 0x10, "A", u"", 87},
        // UTF-8: one U+FFFD for each ill-formed piece.
        {65001, 8, "A\xC3\xA9\xF0\x9F\x98\x80", u"A\u00E9\xD83D\xDE00"},
        {65001, 0, "\xC1\xBF", u"\uFFFD\uFFFD"},
        {65001, 0, "\xED\xB0\x80", u"\uFFFD\uFFFD"},
        {65001, 0, "\xE0\x9F\xBF", u"\uFFFD\uFFFD"},
        {65001, 0, "\xF0\x82\x82\xAC", u"\uFFFD\uFFFD\uFFFD"},
        {65001, 0, "\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD"},
        {65001, 0, "\xF8\x88\x80\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
        {65001, 0, "A\x80\200B", u"A\uFFFD\uFFFDB"},
        {65001, 0, "\xE2(\xA1", u"\uFFFD(\uFFFD"},
        {65001, 0, "\xE2\x82(\xF0\x9F\230A", u"\uFFFD(\uFFFDA"},
        {65001, 0, "A\xF0\x9F\x98", u"A\uFFFD"},
        {65001, 0, "\360A", u"\uFFFDA"},
        {65001, 8, "plain text that ends \xC3", u"", 1113},
        {65001, 0, "\xEF\xBB\xBF", u"\uFEFF"},
        // GB18030: pairs, four bytes, U+10FFFF; what is none costs its first byte alone.
        {54936, 8, "A\xA2\xE3\xFE\x9F\xA1\xA1\x81\x30\x84\x36", u"A\u20AC\u4DAE\u3000\u00A5"},
        {54936, 8, "\x81\x30\x81\x30\x84\x31\xA4\x39\xE3\x32\x9A\x35", u"\u0080\uFFFF\xDBFF\xDFFF",
         0},
        {54936, 0, "\x80\xFFz\x84\x31\xA5\x30z\xE3\x32\x9A\x36", u"??z?1?0z?2?6"},
        {54936, 0, "\xB0\x7F\x81\x30\xB0\xA1\x81\x30\x81", u"?\x7F?0\u554A?0?"},
        {54936, 8, "\x81\x30\x81", u"", 1113},
        {54936, 1, "A", u"", 1004},
        // UTF-7: left-over bits end with the run, but not when a byte from 80 up ends it.
        {65000, 0, "+AOk", u"\u00E9"},
        {65000, 0, "+2D3eAA-", u"\xD83D\xDE00"},
        {65000, 0, "+-+AOkA6Q-x~\\", u"+\u00E9\u00E9x~\\"},
        {65000, 0, "+", u""},
        {65000, 0, "+A\xE9", u"\u00E9"},
        {65000, 0, "+AE!+AEE-", u"!A"},
        {65000, 0, "+AE\xE9+E-", u"\u00E9A"},
        // ISO-2022-JP.
        {50220, 0, "\x1B$B$\"\x1B(BA", u"\u3042A"},
        {50220, 0, "\x1B(I1\x1B$(D0!\x1B(J1", u"\uFF71\u4E021"},
        {50220, 0, "\0161\0171\xB1\x1B&@\xE0", u"\uFF711\uFF71?"},
        {50220, 0, "\x1B$@\"/$\x1B(B", u"???"},
        {50220, 0, "\x1BX\x1B$B*1", u"\x1BX\uFF71"},
        // HZ.
        {52936, 0, "~{Dc:C~}~~", u"\u4F60\u597D~"},
        {52936, 0, "A~\n~{\n\xC4\xE3~}~x~", u"A\n\u4F60~x?"},
        {52936, 0, "~{D  cD~~Dz", u"\u3000c\u5B81??"},
    };
    for (const auto& [page, flags, bytes, units, error] : cases) {
        SCOPED_TRACE(testing::Message() << page << " " << testing::PrintToString(bytes));
        const auto size = Decode(page, flags, bytes, 0);
        EXPECT_EQ(size.error, error);
        EXPECT_EQ(size.result, static_cast<int>(units.size()));
        const auto answer = Decode(page, flags, bytes, 64);
        EXPECT_EQ(answer.error, error);
        if (answer.result != 0) {
            EXPECT_EQ(answer.written, units);
        }
    }
}

TEST(CodePagesTest, EncodingFollowsTheRulesOfEachPage) {
    struct Case {
        std::uint32_t page, flags;
        std::u16string units;
        const char* default_char;
        int used;  // -1: not asked for
        std::string bytes;
        std::uint32_t error = 0;
    };
    const Case cases[] = {
        {1252, 0x400, u"A\u00E9\u3042\u20AC", nullptr, 1, "A\xE9?\x80"},
        {1252, 0, u"A?", "#", 0, "A?"},
        {1255, 0, u"\u3042\u20AC", "##", 1, "#\x80"},
        {1255, 0, u"\u3042", "", 1, "\0"s},
        {1252, 0, u"\xD83D\xDE00", nullptr, 1, "??"},
        {932, 0x220, u"A\u00E9\u3042\u2252", "\x81\xA1", 1, "A\x81\xA1\x82\xA0\x81\xE0"},
        {932, 0, u"\u30FB\uE000\u2160", nullptr, 0, "\x81\x45\xF0\x40\x87\x54"},
        {950, 0, u"\u5341\u256D", nullptr, 0, "\xA4\x51\xA2\x7E"},
        {10002, 0, u"\u2026", nullptr, 0, "\xFF"},
        {51932, 0, u"\u222A\uFF71\u4E00", nullptr, 0, "\xA2\xC0\x8E\xB1\xB0\xEC"},
        {20127, 0, u"A\u00C1", nullptr, 1, "A?"},
        {42, 0, u"\uF041\u001F", nullptr, -1, "A\x1F"},
        {42, 0, u"A", nullptr, -1, "", 1113},
        {65001, 0, u"\u00E9\xD83Dz\xDE00", nullptr, -1, "\xC3\xA9\xEF\xBF\xBDz\xEF\xBF\xBD"},
        {65001, 0x80, u"\xD83D\xDE00", nullptr, -1, "\xF0\x9F\x98\x80"},
        {65001, 0x80, u"A\xDE00", nullptr, -1, "", 1113},
        {65000, 0, u"\u00E9x~\\+\u00E9-", nullptr, -1, "+AOk-x+AH4AXA-+-+AOk--"},
        {65000, 0, u"\u4F60\u597D\u5417\xD83D", nullptr, -1, "+T2BZfVQX2D0-"},
        {50220, 0, u"\u3042A\uFF71", nullptr, -1, "\x1B$B$\"\x1B(BA\x1B$B%\"\x1B(B"},
        {50220, 0, u"\u4E02\uAC00\u4E9C", nullptr, -1, "\x1B$(D0!\x1B(B?\x1B$B0!\x1B(B"},
        {52936, 0, u"\u4F60\u597D~\u20AC\n", nullptr, -1, "~{Dc:C~}~~?\n"},
        {54936, 0, u"A\u20AC\u00A5\U0001F600\xDE00\u0080", nullptr, -1,
         "A\xA2\xE3\x81\x30\x84\x36\x94\x39\xFC\x36?\x81\x30\x81\x30"},
        {54936, 0x80, u"A\xD83D", nullptr, -1, "", 1113},
        {54936, 0, u"A", "?", -1, "", 87},
        {54936, 0x400, u"A", nullptr, -1, "", 1004},
        {1252, 0x800, u"A", nullptr, -1, "", 1004},
        {65001, 0x400, u"A", nullptr, -1, "", 1004},
        {50220, 0x400, u"A", nullptr, -1, "", 1004},
        {65001, 0x400, u"A", "?", -1, "", 87},
        {65000, 0, u"A", nullptr, 0, "", 87},
        {1201, 0, u"A", nullptr, -1, "", 87},
    };
    for (const auto& [page, flags, units, default_char, used, bytes, error] : cases) {
        SCOPED_TRACE(testing::Message() << page << " " << testing::PrintToString(bytes));
        for (const std::size_t capacity : {std::size_t{0}, std::size_t{64}}) {
            BOOL used_default = 7;
            const auto answer = Encode(page, flags, units, capacity, default_char,
                                       used == -1 ? nullptr : &used_default);
            EXPECT_EQ(answer.error, error);
            EXPECT_EQ(answer.result, static_cast<int>(bytes.size()));
            if (used != -1 && error == 0) {
                EXPECT_EQ(used_default, used);
            }
            if (answer.result != 0 && capacity != 0) {
                EXPECT_EQ(answer.written, bytes);
            }
        }
    }
}

TEST(CodePagesTest, CallsWithoutSenseFail) {
    char16_t units[4] = u"AB";
    char bytes[4] = "AB";
    const auto fails = [](int result) { return result == 0 && LastError() == 87; };
    EXPECT_TRUE(fails(MultiByteToWideChar(1252, 0, nullptr, 1, units, 4)));
    EXPECT_TRUE(fails(MultiByteToWideChar(1252, 0, bytes, 0, units, 4)));
    EXPECT_TRUE(fails(MultiByteToWideChar(1252, 0, bytes, 1, nullptr, 4)));
    EXPECT_TRUE(fails(MultiByteToWideChar(1252, 0, bytes, 1, units, -1)));
    EXPECT_TRUE(fails(WideCharToMultiByte(1252, 0, units, 0, bytes, 4, nullptr, nullptr)));
    EXPECT_TRUE(fails(WideCharToMultiByte(1252, 0, units, 1, nullptr, 4, nullptr, nullptr)));
    // A negative length takes the terminator along.
    EXPECT_EQ(MultiByteToWideChar(932, 0, bytes, -1, units, 4), 3);
    EXPECT_EQ(WideCharToMultiByte(932, 0, units, -1, bytes, 4, nullptr, nullptr), 3);
}

// Page, largest size of a character, bounds of the lead bytes.
TEST(CodePagesTest, PageInformationNamesSizesAndLeadBytes) {
    platform::CodePageInfo info;
    for (const auto& fields : test::Table(R"(1252|1| / 932|2|129 159 224 252  / 2|1| / 50220|5|
1361|2|132 211 216 222 224 249  / 51932|2|142 142 161 254  / 54936|4| / 65001|4|
20949|2|161 172 176 200 202 253 )")) {
        SCOPED_TRACE(fields[0]);
        ASSERT_TRUE(platform::GetCodePageInfo(static_cast<unsigned>(std::stoul(fields[0])), &info));
        EXPECT_EQ(std::to_string(info.max_char_size), fields[1]);
        EXPECT_EQ(info.default_char[0], '?');
        std::string leads;
        for (const int byte : info.lead_bytes) leads += byte == 0 ? "" : std::to_string(byte) + ' ';
        EXPECT_EQ(leads, fields[2]);
    }
    EXPECT_FALSE(platform::GetCodePageInfo(1200, &info));
    EXPECT_EQ(LastError(), 87u);
    for (const std::uint32_t page : {646u, 51932u, 65000u, 42u, 866u}) {
        EXPECT_TRUE(platform::IsValidCodePage(page)) << page;
    }
    for (const std::uint32_t page : {0u, 1u, 2u, 3u, 1200u, 1201u, 867u, 65002u}) {
        EXPECT_FALSE(platform::IsValidCodePage(page)) << page;
    }
}

// LC_ALL, LANG, ANSI page, OEM page.
TEST(CodePagesTest, SystemPagesComeFromTheLanguageOfTheEnvironment) {
    for (const auto& fields :
         test::Table(R"(||1252|437 / C.UTF-8|de_DE|1252|437 / |de_DE.UTF-8|1252|850
|en_US.UTF-8|1252|437 / |en_GB|1252|850 / ja_JP.UTF-8|de_DE|932|932 / zh_TW||950|950
zh||936|936 / ar_EG||1256|720 / sr_RS@latin||1250|852 / sr_RS||1251|855 / ru_RU.KOI8-R||1251|866)")) {
        SCOPED_TRACE(testing::PrintToString(fields));
        static std::string lc_all, language;
        lc_all = fields[0];
        language = fields[1];
        platform::TakeEnvironment([](const char* name) {
            if (std::string_view(name) == "LC_ALL") return lc_all.c_str();
            return std::string_view(name) == "LANG" ? language.c_str() : nullptr;
        });
        EXPECT_EQ(std::to_string(platform::AnsiCodePage()), fields[2]);
        EXPECT_EQ(std::to_string(platform::OemCodePage()), fields[3]);
    }
    platform::SetSystemCodePages(1251, 437);
    EXPECT_EQ(Decoded(0, "\xC0"), u"\u0410");
    EXPECT_EQ(Decoded(1, "\xC0"), u"\u2514");
    EXPECT_EQ(Decoded(2, "\xC0"), u"\u00BF");
    EXPECT_EQ(Decoded(3, "\xC0"), u"\u0410");
    platform::TakeEnvironment();
}

}  // namespace
