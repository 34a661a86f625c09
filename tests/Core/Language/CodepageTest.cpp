// CT_Codepage: identities, look-ups and tests of code pages.
#include "Foundation/Core/Language/Codepage.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "Foundation/Core/Error/ErrorManager.h"
#include "Foundation/Core/File/WinFile.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Nls/CodePages.h"
#include "Support/TempFolder.h"

namespace {

using Value = CT_Codepage::et_Codepage;

Value FromName(const char16_t* name) {
    const CT_UString text(name);
    return CT_Codepage(&text).eo_Get();
}

std::u16string Name(Value value) {
    const char16_t* name = CT_Codepage(value).qcuz_Get();
    return name == nullptr ? u"(none)" : name;
}

TEST(CodepageTest, NamesAreFoundInAnyCaseAndGiveTheirOwnValue) {
    struct Case {
        const char16_t* name;
        unsigned int value;
        unsigned int number;
    };
    for (const auto& [name, value, number] : {Case{u"LATIN1", 12, 1252},
                                              {u"iso-8859-1", 12, 1252},
                                              {u"iso-8859-8", 16, 1255},
                                              {u"csGB2312", 6, 936},
                                              {u"utf-16be", 34, 1201},
                                              {u"UTF-16LE", 33, 1200},
                                              {u"Unicode", 9, 1200},
                                              {u"us-ascii", 0, 646},
                                              {u"shift_jis", 5, 932},
                                              {u"ISO-2022-KR", 20, 1361},
                                              {u"x-euc-jp", 29, 51932},
                                              {u"utf-7", 31, 65000},
                                              {u"Macintosh Croatia", 50, 10082},
                                              {u"", 57, 0},
                                              {u"ISO-8859-15", 57, 0},
                                              {u"utf-8 ", 57, 0}}) {
        SCOPED_TRACE(testing::PrintToString(std::u16string(name)));
        EXPECT_EQ(FromName(name), value);
        EXPECT_EQ(CT_Codepage(static_cast<Value>(value)).n_Get(), number);
    }
}

TEST(CodepageTest, EveryMainNameLeadsBackToAValueWithTheSameNumber) {
    for (unsigned int value = 0; value <= 50; ++value) {
        SCOPED_TRACE(value);
        const CT_Codepage page(static_cast<Value>(value));
        ASSERT_NE(page.qcuz_Get(), nullptr);
        const CT_UString name(page.qcuz_Get());
        EXPECT_TRUE(page.b_IsSame(CT_Codepage(&name)));
        EXPECT_TRUE(page.b_IsSame(CT_Codepage(CT_Codepage(page.n_Get()).eo_Get())));
    }
}

TEST(CodepageTest, NumbersGiveTheFirstValueThatHasThem) {
    struct Case {
        unsigned int number, value;
    };
    for (const auto [number, value] : {Case{1200, 9},
                                       {1201, 34},
                                       {1255, 15},
                                       {65001, 32},
                                       {0, 57},
                                       {437, 57},
                                       {20127, 57},
                                       {28591, 57},
                                       {10021, 46},
                                       {0xFFFFFFFF, 57}}) {
        SCOPED_TRACE(number);
        EXPECT_EQ(CT_Codepage(number).eo_Get(), value);
    }
}

TEST(CodepageTest, NamesOfSharedPseudoAndSystemPages) {
    platform::SetSystemCodePages(1252, 850);
    EXPECT_EQ(Name(CT_Codepage::kIso8859_8), u"windows-1255");
    EXPECT_EQ(Name(CT_Codepage::kUtf16), u"Unicode");
    EXPECT_EQ(Name(CT_Codepage::kUtf16BigEndian), u"UTF-16-BE");
    EXPECT_EQ(Name(CT_Codepage::kSystemAnsi), u"windows-1252");
    EXPECT_EQ(Name(CT_Codepage::kSystemOem), u"windows-850");
    for (const Value value :
         {CT_Codepage::kPseudoAnsi, CT_Codepage::kPseudoOem, CT_Codepage::kPseudoMac,
          CT_Codepage::kPseudoThread, CT_Codepage::kUnknown, CT_Codepage::kNotSet}) {
        EXPECT_EQ(Name(value), u"(none)") << value;
    }
    EXPECT_EQ(CT_Codepage(CT_Codepage::kPseudoThread).n_Get(), 3u);
    EXPECT_TRUE(CT_Codepage(CT_Codepage::kSystemAnsi).b_IsSame(CT_Codepage::kWindows1252));
    EXPECT_FALSE(CT_Codepage(CT_Codepage::kSystemAnsi).b_IsEqual(CT_Codepage::kWindows1252));
    platform::SetSystemCodePages(1252, 437);
}

TEST(CodepageTest, ClassesCountTheValuesTheyShould) {
    std::string windows, mac, unicode, wide, valid;
    for (unsigned int value = 0; value <= 58; ++value) {
        const CT_Codepage page(static_cast<Value>(value));
        const std::string number = std::to_string(value) + " ";
        if (page.b_IsWindowsCodepage()) windows += number;
        if (page.b_IsMacCodepage()) mac += number;
        if (page.b_IsUnicode()) unicode += number;
        if (page.b_Is16BitUnicode()) wide += number;
        if (!page.b_IsValid()) valid += number;
    }
    EXPECT_EQ(windows, "4 5 6 7 8 10 11 12 13 14 15 17 18 19 51 54 55 ");
    EXPECT_EQ(mac, "35 36 37 38 39 40 41 42 43 44 45 47 48 49 50 ");
    EXPECT_EQ(unicode, "9 31 32 33 ");
    EXPECT_EQ(wide, "9 33 ");
    EXPECT_EQ(valid, "57 58 ");
    EXPECT_EQ(CT_Codepage().eo_Get(), CT_Codepage::kNotSet);
}

TEST(CodepageTest, LeadBytesComeFromEveryRangeOfThePage) {
    struct Case {
        unsigned int number;
        unsigned char byte;
        BOOL lead;
    };
    for (const auto [number, byte, lead] : {Case{932, 0x80, FALSE},
                                            {932, 0x81, TRUE},
                                            {932, 0x9F, TRUE},
                                            {932, 0xA0, FALSE},
                                            {932, 0xE0, TRUE},
                                            {932, 0xFC, TRUE},
                                            {932, 0xFD, FALSE},
                                            {936, 0xFE, TRUE},
                                            {1361, 0xDF, FALSE},
                                            {1252, 0x81, FALSE},
                                            {65001, 0xC3, FALSE},
                                            {1200, 0x81, FALSE}}) {
        EXPECT_EQ(CT_Codepage::sb_IsDBCSLeadByte(number, byte), lead) << number << " " << +byte;
    }
    EXPECT_TRUE(CT_Codepage(CT_Codepage::kBig5).b_IsDBCS());
    for (const unsigned int number : {1252u, 65001u, 1200u, 99999u}) {
        EXPECT_FALSE(CT_Codepage::sb_IsDBCS(number)) << number;
    }
}

TEST(CodepageTest, TextIsSupportedWhenItComesBackUnchanged) {
    struct Case {
        Value page;
        const char16_t* text;
        BOOL supported;
    };
    for (const auto& [page, text, supported] : {Case{CT_Codepage::kWindows1252, u"Grüße €", TRUE},
                                                {CT_Codepage::kWindows1252, u"Łódź", FALSE},
                                                {CT_Codepage::kWindows1250, u"Łódź", TRUE},
                                                {CT_Codepage::kShiftJis, u"日本語ｶﾅ", TRUE},
                                                {CT_Codepage::kShiftJis, u"한국", FALSE},
                                                {CT_Codepage::kUtf8, u"\xD800", TRUE},
                                                {CT_Codepage::kUtf16, u"한국", TRUE},
                                                {CT_Codepage::kUsAscii, u"plain", TRUE},
                                                {CT_Codepage::kUsAscii, u"é", FALSE},
                                                {CT_Codepage::kWindows1252, u"", TRUE}}) {
        const CT_UString string(text);
        EXPECT_EQ(CT_Codepage(page).b_IsStringSupported(&string), supported)
            << page << " " << testing::PrintToString(std::u16string(text));
    }
    EXPECT_FALSE(CT_Codepage(CT_Codepage::kWindows1252).b_IsCharSupported(u'\u0100'));
    EXPECT_FALSE(CT_ErrorManager::spco_Get()->b_IsSetError());
    EXPECT_FALSE(CT_Codepage(CT_Codepage::kUtf16BigEndian).b_IsCharSupported(u'a'));
    EXPECT_EQ(CT_ErrorManager::spco_Get()->n_GetErrorCode(), 87u);
    CT_ErrorManager::spco_Get()->v_ClearError();
}

TEST(CodepageTest, EncodingIsGuessedFromTheFirstBytesAndLeavesNoError) {
    using namespace std::string_literals;
    struct Case {
        std::optional<std::string> bytes;
        unsigned int value;
    };
    const test::TempFolder folder;
    const std::u16string name = folder.Name(u"guess.txt");
    const CT_UString path(name.c_str());
    for (const auto& [bytes, value] : {Case{"\xEF\xBB\xBFtext"s, 32},
                                       {"\xFF\xFE\x41\0"s, 33},
                                       {"\xFF\xFE"s, 55},
                                       {"a\0b\0c\0 \0d\0"s, 33},
                                       {"plain text"s, 55},
                                       {""s, 55},
                                       {std::nullopt, 55}}) {
        folder.Remove(u"guess.txt");
        if (bytes) folder.Write(u"guess.txt", *bytes);
        SCOPED_TRACE(bytes.value_or("(no file)"));
        EXPECT_EQ(CT_Codepage::sco_GuessEncoding(&path).eo_Get(), value);
        EXPECT_FALSE(CT_ErrorManager::spco_Get()->b_IsSetError());
    }
    folder.Write(u"guess.txt", "\xEF\xBB\xBFtext");
    CT_ErrorManager::spco_Get()->v_SetError(1u, u"before");
    EXPECT_EQ(CT_Codepage::sco_GuessEncoding(&path).eo_Get(), 55u);
    EXPECT_EQ(CT_ErrorManager::spco_Get()->n_GetErrorCode(), 1u);
    CT_ErrorManager::spco_Get()->v_ClearError();
}

}  // namespace
