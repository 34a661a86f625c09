// The code pages: whole tables against sums of their sources, block paths against one character at
// a time, and the rules of calls and of the algorithmic pages against recorded answers.
#include "Foundation/Platform/Nls/CodePages.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "Foundation/Platform/LastError.h"

namespace {

using namespace std::string_literals;
using platform::LastError;
using platform::MultiByteToWideChar;
using platform::WideCharToMultiByte;

// A copy of the text on the heap with no byte to spare, so that an overrun is seen.
template <typename Element>
std::unique_ptr<Element[]> Exact(const std::basic_string<Element>& text) {
    auto copy = std::make_unique<Element[]>(text.size());
    std::copy(text.begin(), text.end(), copy.get());
    return copy;
}

// What one call gave: the result, cut to what was written, and the error; kept from a failed call
// is what it wrote before the first untouched element.
template <typename Element>
struct Answer {
    int result;
    std::uint32_t error;
    std::basic_string<Element> written;
};
constexpr char16_t kUntouchedUnit = 0xFDD0;

Answer<char16_t> Decode(std::uint32_t page, std::uint32_t flags, const std::string& text,
                        std::size_t capacity) {
    const auto source = Exact(text);
    const auto out = std::make_unique<char16_t[]>(capacity);
    std::fill_n(out.get(), capacity, kUntouchedUnit);
    platform::SetLastError(0);
    const int result =
        MultiByteToWideChar(page, flags, source.get(), static_cast<int>(text.size()),
                            capacity == 0 ? nullptr : out.get(), static_cast<int>(capacity));
    return {
        result,
        LastError(),
        {out.get(), capacity != 0 && result != 0 ? static_cast<std::size_t>(result) : capacity}};
}

Answer<char> Encode(std::uint32_t page, std::uint32_t flags, const std::u16string& text,
                    std::size_t capacity, const char* default_char = nullptr,
                    BOOL* used_default = nullptr) {
    const auto source = Exact(text);
    const auto out = std::make_unique<char[]>(capacity);
    platform::SetLastError(0);
    const int result = WideCharToMultiByte(page, flags, source.get(), static_cast<int>(text.size()),
                                           capacity == 0 ? nullptr : out.get(),
                                           static_cast<int>(capacity), default_char, used_default);
    return {
        result,
        LastError(),
        {out.get(), capacity != 0 && result != 0 ? static_cast<std::size_t>(result) : capacity}};
}

// Asks for the size and converts into exactly that; a text without a result stays empty.
std::u16string Decoded(std::uint32_t page, const std::string& text) {
    const int size = Decode(page, 0, text, 0).result;
    if (size == 0) return {};
    const auto answer = Decode(page, 0, text, static_cast<std::size_t>(size));
    EXPECT_EQ(answer.result, size);
    return answer.written;
}

std::string Encoded(std::uint32_t page, const std::u16string& text) {
    const int size = Encode(page, 0, text, 0).result;
    EXPECT_LE(static_cast<std::size_t>(size), platform::MaxBytes(page, text.size()));
    if (size == 0) return {};
    const auto answer = Encode(page, 0, text, static_cast<std::size_t>(size));
    EXPECT_EQ(answer.result, size);
    return answer.written;
}

bool IsLead(const platform::CodePageInfo& info, unsigned int byte) {
    for (int i = 0; i < 12 && info.lead_bytes[i] != 0; i += 2) {
        if (byte >= info.lead_bytes[i] && byte <= info.lead_bytes[i + 1]) return true;
    }
    return false;
}

// Bytes of a code: one, or lead and trail.
std::string Bytes(unsigned int code) {
    std::string bytes;
    if (code > 0xFF) bytes += static_cast<char>(code >> 8);
    return bytes += static_cast<char>(code & 0xFF);
}

// FNV-1a with each number as one step.
void AddToSum(std::uint32_t& sum, unsigned int code, unsigned int unit, bool code_first) {
    for (const unsigned int number : {code_first ? code : unit, code_first ? unit : code}) {
        sum = (sum ^ number) * 0x01000193u;
    }
}

// Sums of every row of every table page, made from the sources by codepages.py --sums.
struct WholePage {
    std::uint32_t page;
    char16_t default_unit;
    std::uint32_t decode_sum;
    std::uint32_t encode_sum;
};
constexpr WholePage kWholePages[] = {
    {437, 0x003F, 0xEDC44492, 0x31777840},   {646, 0x003F, 0xA02AFC17, 0x9179F3C5},
    {720, 0x003F, 0xFC7266BA, 0x886B8730},   {850, 0x003F, 0xD6C1F3B4, 0x69059096},
    {862, 0x003F, 0x870128DC, 0xB26FCF2E},   {874, 0x003F, 0xCEC09133, 0x0556E19F},
    {932, 0x30FB, 0xA50F8605, 0x5EBA86B6},   {936, 0x003F, 0x23EC04DF, 0x4FB9528F},
    {949, 0x003F, 0x5418BF52, 0xBD857700},   {950, 0x003F, 0x50B01CFB, 0xFD2811A4},
    {1250, 0x003F, 0xC44E2135, 0xB4019809},  {1251, 0x003F, 0xBF2A1453, 0x8866B2D3},
    {1252, 0x003F, 0xFF9FCA47, 0xBEB357DB},  {1253, 0x003F, 0xF882A21A, 0x6153BCAC},
    {1254, 0x003F, 0x84B07A4D, 0x680FD8E9},  {1255, 0x003F, 0x75130152, 0x6BD4C8FC},
    {1256, 0x003F, 0x589807D4, 0xE10B995A},  {1257, 0x003F, 0x16BA1DD5, 0x8AB311BD},
    {1258, 0x003F, 0x49E93FF2, 0xC9F54F4C},  {1361, 0x003F, 0x1C3B7CD5, 0x590DB90D},
    {10000, 0x003F, 0xAC7060EF, 0x80AE9CEF}, {10001, 0x30FB, 0xDBCF4521, 0xE14965B8},
    {10002, 0x003F, 0x031D45D3, 0xBCF171F3}, {10003, 0x003F, 0xF1DE17B0, 0x2ABB86CE},
    {10004, 0x003F, 0xDF8C7C9C, 0x28714F8E}, {10005, 0x003F, 0xD68854CE, 0xB90A2D6D},
    {10006, 0x003F, 0xAE56F400, 0x8F78804A}, {10007, 0x003F, 0x494E4D63, 0x1FE3D533},
    {10008, 0x003F, 0x4105297D, 0xD0E6AF20}, {10010, 0x003F, 0x2C539869, 0x6F17589D},
    {10017, 0x003F, 0x7C99A508, 0xFD9B056A}, {10021, 0x003F, 0x8754E0B6, 0xEF3D3F0C},
    {10029, 0x003F, 0x48ACD04A, 0x9F11D30C}, {10079, 0x003F, 0x2149B99C, 0x42ED1FDA},
    {10081, 0x003F, 0xA69990F3, 0x7BDE7BD7}, {10082, 0x003F, 0xDDD9040B, 0xE6ABE2FF},
    {20127, 0x003F, 0xA02AFC17, 0x9179F3C5}, {20866, 0x003F, 0x90A6D3F7, 0x5E0D070F},
    {20932, 0x30FB, 0x9F0DB03A, 0x070B0020}, {28591, 0x003F, 0x0EF7AFC5, 0x0EF7AFC5},
    {28592, 0x003F, 0x61FB4D56, 0x9A50D404}, {28593, 0x003F, 0xC1E34BBF, 0x53EA76F7},
    {28594, 0x003F, 0xCDAC605D, 0xE8E77E41}, {28595, 0x003F, 0x1A5663D5, 0xD6364859},
    {28596, 0x003F, 0x2644DF06, 0xF367A458}, {28597, 0x003F, 0xC1CF1332, 0x708AC280},
    {28598, 0x003F, 0xC957BADB, 0x29B3BDF7}, {28599, 0x003F, 0xDC4D1296, 0x0116FE90},
    {51932, 0x30FB, 0x9589B52F, 0x64A069C7},
};

TEST(CodePagesTest, EveryRowOfEveryTablePageIsThere) {
    for (const auto& [page, default_unit, decode_sum, encode_sum] : kWholePages) {
        SCOPED_TRACE(page);
        platform::CodePageInfo info;
        ASSERT_TRUE(platform::GetCodePageInfo(page, &info));
        std::uint32_t encoded = 0x811C9DC5;
        std::vector<std::string> code_of(0x10000);
        for (unsigned int unit = 0; unit < 0x10000; ++unit) {
            BOOL used_default = FALSE;
            const std::u16string text(1, static_cast<char16_t>(unit));
            const std::string bytes = Encode(page, 0, text, 2, nullptr, &used_default).written;
            if (used_default) continue;
            unsigned int code = 0;
            for (const char byte : bytes) code = code << 8 | static_cast<unsigned char>(byte);
            AddToSum(encoded, code, unit, false);
            code_of[unit] = bytes;
            ASSERT_EQ(Decoded(page, bytes), text);
        }
        EXPECT_EQ(encoded, encode_sum);

        std::uint32_t decoded = 0x811C9DC5;
        for (unsigned int code = 0; code < 0x10000; ++code) {
            const bool pair = code > 0xFF && IsLead(info, code >> 8) && (code & 0xFF) != 0;
            if (!pair && (code > 0xFF || IsLead(info, code))) continue;
            const std::u16string units = Decoded(page, Bytes(code));
            ASSERT_EQ(units.size(), 1u);
            if (units[0] != default_unit || code_of[default_unit] == Bytes(code)) {
                AddToSum(decoded, code, units[0], true);
            }
        }
        EXPECT_EQ(decoded, decode_sum);
    }
}

// Runs of one kind after another, of lengths around the block size: what the fast paths must get
// right at each seam.
std::string RunsOfBytes(const platform::CodePageInfo& info, std::mt19937& random) {
    const auto below = [&random](unsigned int bound) {
        return static_cast<unsigned int>(random() % bound);
    };
    std::string text;
    while (text.size() < 400) {
        const unsigned int kind = below(6);
        for (unsigned int left = 1 + below(20); left != 0; --left) {
            unsigned int byte = below(0x100);
            if (kind <= 1) byte &= 0x7F;
            text += static_cast<char>(byte);
            if (kind >= 3 && IsLead(info, byte)) text += static_cast<char>(0x40 + below(0xBF));
        }
        if (kind == 5) text += '\0';
    }
    return text;
}

TEST(CodePagesTest, LongTextsConvertAsTheirCharactersDo) {
    std::mt19937 random(20);  // a fixed seed
    for (const WholePage& row : kWholePages) {
        SCOPED_TRACE(row.page);
        platform::CodePageInfo info;
        ASSERT_TRUE(platform::GetCodePageInfo(row.page, &info));
        for (int round = 0; round < 20; ++round) {
            const std::string text = RunsOfBytes(info, random);
            std::u16string units;
            bool valid = true;
            for (std::size_t at = 0; at < text.size();) {
                const bool lead = IsLead(info, static_cast<unsigned char>(text[at]));
                const bool pair = lead && at + 1 < text.size() && text[at + 1] != '\0';
                const std::string character = text.substr(at, pair ? 2 : 1);
                units += Decoded(row.page, character);
                valid = valid && Decode(row.page, 8, character, 1).result == 1;
                at += character.size();
            }
            ASSERT_EQ(Decoded(row.page, text), units);
            EXPECT_EQ(Decode(row.page, 8, text, 0).error, valid ? 0u : 1113u);

            std::string bytes;
            for (char16_t& unit : units) {
                if (random() % 32 == 0) unit = static_cast<char16_t>(random());
                bytes += Encoded(row.page, std::u16string(1, unit));
            }
            ASSERT_EQ(Encoded(row.page, units), bytes);
        }
    }
}

TEST(CodePagesTest, WhatFitsIsWrittenBeforeTheCallFails) {
    const std::u16string text =
        u"Aa\u3042\u4E9Cx\u30A2\u3042\u3044\u4E9C plain text in between \u3042\u3042"
        u"\u3042\u3042\u3042\u3042\u3042\u3042\u3042\u3042\u3042\u3042\u3042\u3042y";
    for (const std::uint32_t page : {932u, 936u, 1252u, 51932u, 50220u, 52936u, 65000u, 65001u}) {
        SCOPED_TRACE(page);
        const std::string bytes = Encoded(page, text);
        for (std::size_t capacity = 1; capacity < bytes.size(); ++capacity) {
            const auto cut = Encode(page, 0, text, capacity);
            ASSERT_EQ(cut.error, 122u) << capacity;
            const std::size_t written = cut.written.find_last_not_of('\0') + 1;
            EXPECT_EQ(cut.written.substr(0, written), bytes.substr(0, written)) << capacity;
            EXPECT_GE(written + 8, capacity);
        }
        const std::u16string units = Decoded(page, bytes);
        for (std::size_t capacity = 1; capacity < units.size(); ++capacity) {
            const auto cut = Decode(page, 0, bytes, capacity);
            ASSERT_EQ(cut.error, 122u) << capacity;
            EXPECT_EQ(cut.written, units.substr(0, capacity));
        }
    }
}

// Answers of calls that decode, an error in place of the units where it is not 0.
TEST(CodePagesTest, DecodingFollowsTheRulesOfEachPage) {
    struct Case {
        std::uint32_t page, flags;
        std::string bytes;
        std::u16string units;
        std::uint32_t error;
    };
    const Case cases[] = {
        // Lead bytes at the end, before a zero byte, and before a byte without a row.
        {932, 0, "A\x82", u"A\u30FB", 0},
        {932, 1, "\x82\0"s, u"\u30FB\0"s, 0},
        {932, 0,
         "\x81\xFF"
         "A",
         u"\u30FBA", 0},
        {936, 0,
         "\xA1\xFF"
         "A",
         u"?A", 0},
        {949, 0, "\xB0 ", u"?", 0},
        {936, 8, "\xB0", u"", 1113},
        {932, 8, "\x82\0"s, u"", 1113},
        // Private-use units: of single bytes refused, of pairs accepted.
        {932, 8, "\xFE", u"", 1113},
        {1255, 8, "\xFF", u"", 1113},
        {949, 9, "\xC9\xA1\xFE\xA1", u"\uE000\uE05E", 0},
        {932, 0, "\xA0\xFD\xFE\xFF\x80", u"\uF8F0\uF8F1\uF8F2\uF8F3\u0080", 0},
        // Rows that really mean the default unit; 20127 drops the high bit, but BF is refused.
        {932, 8, "?\x81\x45", u"?\u30FB", 0},
        {20127, 0, "\xC1\xBF", u"A?", 0},
        {20127, 8, "\xC1", u"A", 0},
        {20127, 8, "\xBF", u"", 1113},
        {1252, 8, "\x80\x81\x90\x9D", u"\u20AC\u0081\u0090\u009D", 0},
        {1255, 0, "\xCA", u"\u05BA", 0},
        {10005, 0, "\xCB\xDE", u"\u05B8\u05B8", 0},
        {10008, 0, "\xA1\xAC\xA1\xCE", u"\u2225\u2225", 0},
        {10021, 0, "\x7F", u"?", 0},
        {950, 0, "\x81\x40\xFA\x40", u"\uEEB8\uE000", 0},
        {1361, 0, "\x88\x61\\", u"\uAC00\\", 0},
        {20932, 0, "\xB0\x21\xA1\xC1", u"\u4E02\u301C", 0},
        {51932, 1, "\x8E\xB1\xA1\xC1\xA2\xB9", u"\uFF71\uFF5E\u30FB", 0},
        {646, 1, "us", u"us", 0},
        {42, 0, "A\x1F\xFF", u"\uF041\u001F\uF0FF", 0},
        // Flags and pages.
        {1252, 0x10, "A", u"", 1004},
        {42, 1, "A", u"", 1004},
        {65000, 8, "A", u"", 1004},
        {65001, 1, "A", u"", 1004},
        {50220, 1, "A", u"", 1004},
        {1200, 0, "A", u"", 87},
        {1201, 0x10, "A", u"", 87},
        {54936, 0, "A", u"", 87},
        // UTF-8: one U+FFFD for each ill-formed piece.
        {65001, 8, "A\xC3\xA9\xF0\x9F\x98\x80", u"A\u00E9\xD83D\xDE00", 0},
        {65001, 0, "\xC1\xBF", u"\uFFFD\uFFFD", 0},
        {65001, 0, "\xED\xB0\x80", u"\uFFFD\uFFFD", 0},
        {65001, 0, "\xE0\x9F\xBF", u"\uFFFD\uFFFD", 0},
        {65001, 0, "\xF0\x82\x82\xAC", u"\uFFFD\uFFFD\uFFFD", 0},
        {65001, 0, "\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD", 0},
        {65001, 0, "\xF8\x88\x80\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD", 0},
        {65001, 0,
         "A\x80\x80"
         "B",
         u"A\uFFFD\uFFFDB", 0},
        {65001, 0, "\xE2(\xA1", u"\uFFFD(\uFFFD", 0},
        {65001, 0,
         "\xE2\x82(\xF0\x9F\x98"
         "A",
         u"\uFFFD(\uFFFD"
         u"A",
         0},
        {65001, 0, "A\xF0\x9F\x98", u"A\uFFFD", 0},
        {65001, 0,
         "\xF0"
         "A",
         u"\uFFFD"
         u"A",
         0},
        {65001, 8, "plain text that ends \xC3", u"", 1113},
        {65001, 0, "\xEF\xBB\xBF", u"\uFEFF", 0},
        // UTF-7: left-over bits end with the run, but not when a byte from 80 up ends it.
        {65000, 0, "+AOk", u"\u00E9", 0},
        {65000, 0, "+2D3eAA-", u"\xD83D\xDE00", 0},
        {65000, 0, "+-+AOkA6Q-x~\\", u"+\u00E9\u00E9x~\\", 0},
        {65000, 0, "+", u"", 0},
        {65000, 0, "+A\xE9", u"\u00E9", 0},
        {65000, 0, "+AE!+AEE-", u"!A", 0},
        {65000, 0, "+AE\xE9+E-", u"\u00E9A", 0},
        // ISO-2022-JP.
        {50220, 0, "\x1B$B$\"\x1B(BA", u"\u3042A", 0},
        {50220, 0, "\x1B(I1\x1B$(D0!\x1B(J1",
         u"\uFF71\u4E02"
         u"1",
         0},
        {50220, 0,
         "\x0E"
         "1\x0F"
         "1\xB1\x1B&@\xE0",
         u"\uFF71"
         u"1\uFF71?",
         0},
        {50220, 0, "\x1B$@\"/$\x1B(B", u"???", 0},
        {50220, 0, "\x1BX\x1B$B*1", u"\x1BX\uFF71", 0},
        // HZ.
        {52936, 0, "~{Dc:C~}~~", u"\u4F60\u597D~", 0},
        {52936, 0, "A~\n~{\n\xC4\xE3~}~x~", u"A\n\u4F60~x?", 0},
        {52936, 0, "~{D  cD~~Dz", u"\u3000c\u5B81??", 0},
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
        std::uint32_t error;
    };
    const Case cases[] = {
        {1252, 0x400, u"A\u00E9\u3042\u20AC", nullptr, 1, "A\xE9?\x80", 0},
        {1252, 0, u"A?", "#", 0, "A?", 0},
        {1255, 0, u"\u3042\u20AC", "##", 1, "#\x80", 0},
        {1255, 0, u"\u3042", "", 1, "\0"s, 0},
        {1252, 0, u"\xD83D\xDE00", nullptr, 1, "??", 0},
        {932, 0x220, u"A\u00E9\u3042\u2252", "\x81\xA1", 1, "A\x81\xA1\x82\xA0\x81\xE0", 0},
        {932, 0, u"\u30FB\uE000\u2160", nullptr, 0, "\x81\x45\xF0\x40\x87\x54", 0},
        {950, 0, u"\u5341\u256D", nullptr, 0, "\xA4\x51\xA2\x7E", 0},
        {10002, 0, u"\u2026", nullptr, 0, "\xFF", 0},
        {51932, 0, u"\u222A\uFF71\u4E00", nullptr, 0, "\xA2\xC0\x8E\xB1\xB0\xEC", 0},
        {20127, 0, u"A\u00C1", nullptr, 1, "A?", 0},
        {42, 0, u"\uF041\u001F", nullptr, -1, "A\x1F", 0},
        {42, 0, u"A", nullptr, -1, "", 1113},
        {65001, 0,
         u"\u00E9\xD83D"
         u"A\xDE00",
         nullptr, -1,
         "\xC3\xA9\xEF\xBF\xBD"
         "A\xEF\xBF\xBD",
         0},
        {65001, 0x80, u"\xD83D\xDE00", nullptr, -1, "\xF0\x9F\x98\x80", 0},
        {65001, 0x80, u"A\xDE00", nullptr, -1, "", 1113},
        {65000, 0, u"\u00E9x~\\+\u00E9-", nullptr, -1, "+AOk-x+AH4AXA-+-+AOk--", 0},
        {65000, 0, u"\u4F60\u597D\u5417\xD83D", nullptr, -1, "+T2BZfVQX2D0-", 0},
        {50220, 0, u"\u3042A\uFF71", nullptr, -1, "\x1B$B$\"\x1B(BA\x1B$B%\"\x1B(B", 0},
        {50220, 0, u"\u4E02\uAC00\u4E9C", nullptr, -1, "\x1B$(D0!\x1B(B?\x1B$B0!\x1B(B", 0},
        {52936, 0, u"\u4F60\u597D~\u20AC\n", nullptr, -1, "~{Dc:C~}~~?\n", 0},
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

TEST(CodePagesTest, PageInformationNamesSizesAndLeadBytes) {
    struct Case {
        std::uint32_t page;
        unsigned int size;
        std::vector<unsigned char> leads;
    };
    for (const auto& [page, size, leads] : {Case{1252, 1, {}},
                                            {932, 2, {0x81, 0x9F, 0xE0, 0xFC}},
                                            {1361, 2, {0x84, 0xD3, 0xD8, 0xDE, 0xE0, 0xF9}},
                                            {51932, 2, {0x8E, 0x8E, 0xA1, 0xFE}},
                                            {2, 1, {}},
                                            {50220, 5, {}},
                                            {65001, 4, {}}}) {
        SCOPED_TRACE(page);
        platform::CodePageInfo info;
        ASSERT_TRUE(platform::GetCodePageInfo(page, &info));
        EXPECT_EQ(info.max_char_size, size);
        EXPECT_EQ(info.default_char[0], '?');
        std::vector<unsigned char> padded = leads;
        padded.resize(12);
        EXPECT_EQ(std::vector<unsigned char>(info.lead_bytes, info.lead_bytes + 12), padded);
    }
    platform::CodePageInfo info;
    EXPECT_FALSE(platform::GetCodePageInfo(1200, &info));
    EXPECT_EQ(LastError(), 87u);
    for (const std::uint32_t page : {646u, 51932u, 65000u, 42u}) {
        EXPECT_TRUE(platform::IsValidCodePage(page)) << page;
    }
    for (const std::uint32_t page : {0u, 1u, 2u, 3u, 1200u, 1201u, 866u, 65002u}) {
        EXPECT_FALSE(platform::IsValidCodePage(page)) << page;
    }
}

TEST(CodePagesTest, SystemPagesComeFromTheLanguageOfTheEnvironment) {
    struct Case {
        const char* all;
        const char* lang;
        std::uint32_t ansi, oem;
    };
    for (const auto& [all, lang, ansi, oem] : {Case{"", "", 1252, 437},
                                               {"C.UTF-8", "de_DE", 1252, 437},
                                               {"", "de_DE.UTF-8", 1252, 850},
                                               {"", "en_US.UTF-8", 1252, 437},
                                               {"", "en_GB", 1252, 850},
                                               {"ja_JP.UTF-8", "de_DE", 932, 932},
                                               {"zh_TW", "", 950, 950},
                                               {"zh", "", 936, 936},
                                               {"ar_EG", "", 1256, 720},
                                               {"sr_RS@latin", "", 1250, 1250},
                                               {"sr_RS", "", 1251, 1251},
                                               {"ru_RU.KOI8-R", "", 1251, 1251}}) {
        SCOPED_TRACE(std::string(all) + "|" + lang);
        setenv("LC_ALL", all, 1);
        unsetenv("LC_CTYPE");
        setenv("LANG", lang, 1);
        platform::SetSystemCodePages(0, 0);
        EXPECT_EQ(platform::AnsiCodePage(), ansi);
        EXPECT_EQ(platform::OemCodePage(), oem);
    }
    platform::SetSystemCodePages(1251, 437);
    EXPECT_EQ(Decoded(0, "\xC0"), u"\u0410");
    EXPECT_EQ(Decoded(1, "\xC0"), u"\u2514");
    EXPECT_EQ(Decoded(2, "\xC0"), u"\u00BF");
    EXPECT_EQ(Decoded(3, "\xC0"), u"\u0410");
    platform::SetSystemCodePages(1252, 437);
}

}  // namespace
