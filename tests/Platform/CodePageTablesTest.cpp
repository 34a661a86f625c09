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

// The two sums of every row of a table page, of decoding and of encoding, made from the sources by
// codepages.py --sums and added.
struct WholePage {
    std::uint32_t page, sum;
};
constexpr WholePage kWholePages[] = {
    {437, 0x1F3BBCD2},   {646, 0x31A4EFDC},   {708, 0xE861AC76},   {720, 0x84DDEDEA},
    {737, 0xD8207422},   {775, 0x48D2704E},   {850, 0x3FC7844A},   {852, 0xF51D0A4E},
    {855, 0x8747711E},   {857, 0xC3F894F2},   {858, 0xB64AD756},   {860, 0x778B121E},
    {861, 0xF213E1E6},   {862, 0x3970F80A},   {863, 0x9A174232},   {864, 0xC501D146},
    {865, 0x2B59C6BA},   {866, 0xC8BB84B6},   {869, 0x158BE202},   {874, 0xD41772D2},
    {932, 0x03CA0CBB},   {936, 0x73A5576E},   {949, 0x119E3652},   {950, 0x4DD82E9F},
    {1250, 0x784FB93E},  {1251, 0x4790C726},  {1252, 0xBE532222},  {1253, 0x59D65EC6},
    {1254, 0xECC05336},  {1255, 0xE0E7CA4E},  {1256, 0x39A3A12E},  {1257, 0xA16D2F92},
    {1258, 0x13DE8F3E},  {1361, 0x754935E2},  {10000, 0x2D1EFDDE}, {10001, 0xBD18AAD9},
    {10002, 0xC00EB7C6}, {10003, 0x1C999E7E}, {10004, 0x07FDCC2A}, {10005, 0x8F92823B},
    {10006, 0x3DCF744A}, {10007, 0x69322296}, {10008, 0x11EBD89D}, {10010, 0x9B6AF106},
    {10017, 0x7A34AA72}, {10021, 0x76921FC2}, {10029, 0xE7BEA356}, {10079, 0x6436D976},
    {10081, 0x22780CCA}, {10082, 0xC484E70A}, {20127, 0x31A4EFDC}, {20866, 0xEEB3DB06},
    {20932, 0xA618B05A}, {20949, 0xA71B0B1A}, {21866, 0x24F73796}, {28591, 0x1DEF5F8A},
    {28592, 0xFC4C215A}, {28593, 0x15CDC2B6}, {28594, 0xB693DE9E}, {28595, 0xF08CAC2E},
    {28596, 0x19AC835E}, {28597, 0x3259D5B2}, {28598, 0xF30B78D2}, {28599, 0xDD641126},
    {28603, 0xCAEEB50E}, {28605, 0x59E558A6}, {51932, 0xFA2A1EF6}};

TEST(CodePageTablesTest, EveryRowOfEveryTablePageIsThere) {
    for (const auto [page, sum] : kWholePages) {
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
        const bool japanese = page == 932 || page == 10001 || page == 20932 || page == 51932;
        const char16_t default_unit = japanese ? u'\u30FB' : u'?';
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
        EXPECT_EQ(decoded + encoded, sum);
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
