// The tables of the code pages: each whole page against a sum of its source, the block paths
// against one character at a time, and texts that do not fit.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "Foundation/Platform/CodePages/CodePages.h"
#include "tests/Platform/CodePageCalls.h"

namespace platform = zelkor::platform;

namespace {

using test::Decode;
using test::Decoded;
using test::Encode;
using test::Encoded;

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
    {708, 0x003F, 0xF37E0C5C, 0xF4E3A01A},   {720, 0x003F, 0xFC7266BA, 0x886B8730},
    {737, 0x003F, 0xC6F01996, 0x11305A8C},   {775, 0x003F, 0x5DA8DB4A, 0xEB299504},
    {850, 0x003F, 0xD6C1F3B4, 0x69059096},   {852, 0x003F, 0xBDFBE003, 0x37212A4B},
    {855, 0x003F, 0xC6F6FCC8, 0xC0507456},   {857, 0x003F, 0xF079BCAD, 0xD37ED845},
    {858, 0x003F, 0x7C9B18FF, 0x39AFBE57},   {860, 0x003F, 0xC86EB697, 0xAF1C5B87},
    {861, 0x003F, 0xC5762697, 0x2C9DBB4F},   {862, 0x003F, 0x870128DC, 0xB26FCF2E},
    {863, 0x003F, 0x4F3D75CB, 0x4AD9CC67},   {864, 0x003F, 0xB7C51966, 0x0D3CB7E0},
    {865, 0x003F, 0x16F4805E, 0x1465465C},   {866, 0x003F, 0xFBCFA109, 0xCCEBE3AD},
    {869, 0x003F, 0xC40A19EB, 0x5181C817},   {874, 0x003F, 0xCEC09133, 0x0556E19F},
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
    {20932, 0x30FB, 0x9F0DB03A, 0x070B0020}, {20949, 0x003F, 0x22CB20DD, 0x844FEA3D},
    {21866, 0x003F, 0x226DAE2F, 0x02898967}, {28591, 0x003F, 0x0EF7AFC5, 0x0EF7AFC5},
    {28592, 0x003F, 0x61FB4D56, 0x9A50D404}, {28593, 0x003F, 0xC1E34BBF, 0x53EA76F7},
    {28594, 0x003F, 0xCDAC605D, 0xE8E77E41}, {28595, 0x003F, 0x1A5663D5, 0xD6364859},
    {28596, 0x003F, 0x2644DF06, 0xF367A458}, {28597, 0x003F, 0xC1CF1332, 0x708AC280},
    {28598, 0x003F, 0xC957BADB, 0x29B3BDF7}, {28599, 0x003F, 0xDC4D1296, 0x0116FE90},
    {28603, 0x003F, 0x2E18B40C, 0x9CD60102}, {28605, 0x003F, 0x3DC6895F, 0x1C1ECF47},
    {51932, 0x30FB, 0x9589B52F, 0x64A069C7}};

TEST(CodePageTablesTest, EveryRowOfEveryTablePageIsThere) {
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

// Every unit has one code, so that decoding what encoding gave proves the sum for both directions.
TEST(CodePageTablesTest, EveryUnitOfGb18030IsThere) {
    constexpr std::uint32_t kGb18030 = 54936;
    std::uint32_t encoded = 0x811C9DC5;
    for (char32_t unit = 0; unit < 0x10000; ++unit) {
        if (unit >= 0xD800 && unit < 0xE000) continue;
        const std::u16string text(1, static_cast<char16_t>(unit));
        const std::string bytes = Encoded(kGb18030, text);
        unsigned int code = 0;
        for (const char byte : bytes) code = code << 8 | static_cast<unsigned char>(byte);
        AddToSum(encoded, code, unit, false);
        ASSERT_EQ(Decoded(kGb18030, bytes), text);
    }
    EXPECT_EQ(encoded, 0x4D648E95u);
    for (unsigned int high = 0xD800; high < 0xDC00; ++high) {
        const std::u16string text{static_cast<char16_t>(high), static_cast<char16_t>(high + 0x400)};
        ASSERT_EQ(Decoded(kGb18030, Encoded(kGb18030, text)), text);
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

TEST(CodePageTablesTest, LongTextsConvertAsTheirCharactersDo) {
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

TEST(CodePageTablesTest, WhatFitsIsWrittenBeforeTheCallFails) {
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
    // Invalid text behind what fits is the graver error; double-byte pages told 122.
    for (const std::uint32_t page : {1255u, 932u, 936u, 51932u}) {
        EXPECT_EQ(Decode(page, 8, "ABC\xFF", 2).error, 1113u) << page;
    }
}

}  // namespace
