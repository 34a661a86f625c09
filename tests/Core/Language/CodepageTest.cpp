// CT_Codepage: identities, look-ups and tests of code pages.
#include "Foundation/Core/Language/Codepage.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "Foundation/Core/Error/ErrorManager.h"
#include "Foundation/Core/File/WinFile.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/CodePages/CodePages.h"
#include "Items.h"
#include "Support/TempFolder.h"
#include "Support/Text.h"

namespace platform = zelkor::platform;

namespace {

using Value = CT_Codepage::et_Codepage;

std::u16string Name(Value value) {
    const char16_t* name = CT_Codepage(value).qcuz_Get();
    return name == nullptr ? u"(none)" : name;
}

TEST(CodepageTest, NamesAreFoundInAnyCaseAndGiveTheirOwnValue) {
    for (const auto& [name, result] : test::Items(
             "LATIN1=12 1252|iso-8859-1=12 1252|iso-8859-8=16 1255|csGB2312=6 936|"
             "utf-16be=34 1201|UTF-16LE=33 1200|Unicode=9 1200|us-ascii=0 646|shift_jis=5 932|"
             "ISO-2022-KR=20 1361|x-euc-jp=29 51932|utf-7=31 65000|Macintosh Croatia=50 10082|"
             "=57 0|ISO-8859-15=57 0|utf-8 =57 0")) {
        const CT_UString text(test::Utf16(name).c_str());
        const CT_Codepage page(&text);
        EXPECT_EQ(std::to_string(page.eo_Get()) + " " + std::to_string(page.n_Get()), result)
            << name;
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
    for (const auto& [number, value] :
         test::Items("1200=9|1201=34|1255=15|65001=32|0=57|437=57|20127=57|28591=57|10021=46|"
                     "4294967295=57")) {
        const CT_Codepage page(static_cast<unsigned int>(std::stoul(number)));
        EXPECT_EQ(std::to_string(page.eo_Get()), value) << number;
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
    EXPECT_FALSE(CT_Codepage(CT_Codepage::kUtf16BigEndian).b_IsUnicode());
    EXPECT_FALSE(CT_Codepage(CT_Codepage::kUnknown).b_IsValid());
    EXPECT_FALSE(CT_Codepage(CT_Codepage::kMacThai).b_IsMacCodepage());
    EXPECT_EQ(CT_Codepage(CT_Codepage::kPseudoThread).n_Get(), 3u);
    EXPECT_TRUE(CT_Codepage(CT_Codepage::kSystemAnsi).b_IsSame(CT_Codepage::kWindows1252));
    EXPECT_FALSE(CT_Codepage(CT_Codepage::kSystemAnsi).b_IsEqual(CT_Codepage::kWindows1252));
    platform::SetSystemCodePages(1252, 437);
}

TEST(CodepageTest, LeadBytesComeFromEveryRangeOfThePage) {
    // The first byte of each range and the one after its last.
    for (const auto& [number, bounds] :
         test::Items("932=129 160 224 253 |936=129 255 |949=129 255 |950=129 255 |"
                     "1361=132 212 216 223 224 250 |1252=|65001=|1200=")) {
        std::string found;
        BOOL inside = FALSE;
        for (unsigned int byte = 0; byte <= 0xFF; ++byte) {
            const BOOL lead = CT_Codepage::sb_IsDBCSLeadByte(
                static_cast<unsigned int>(std::stoul(number)), static_cast<unsigned char>(byte));
            if (lead != inside) found += std::to_string(byte) + ' ';
            inside = lead;
        }
        EXPECT_EQ(found, bounds) << number;
    }
    EXPECT_TRUE(CT_Codepage(CT_Codepage::kBig5).b_IsDBCS());
    for (const unsigned int number : {1252u, 65001u, 1200u, 99999u}) {
        EXPECT_FALSE(CT_Codepage::sb_IsDBCS(number)) << number;
    }
}

TEST(CodepageTest, TextIsSupportedWhenItComesBackUnchanged) {
    for (const auto& [pages, text] : test::Items(
             "1252 1250 65001 1200 932 646 =|1252 1250 65001 1200 =Grüße €|1250 65001 1200 =Łódź|"
             "65001 1200 932 =日本語ｶﾅ|65001 1200 =한국|1252 1250 65001 1200 932 646 =plain")) {
        std::string supporting;
        const CT_UString string(test::Utf16(text).c_str());
        for (const unsigned int number : {1252u, 1250u, 65001u, 1200u, 932u, 646u}) {
            const bool supported = CT_Codepage(number).b_IsStringSupported(&string);
            if (supported) supporting += std::to_string(number) + ' ';
        }
        EXPECT_EQ(supporting, pages) << text;
    }
    // A comparison up to the zero saw no difference.
    const CT_UString behind_zero(u"a\0\u0100", 3);
    EXPECT_FALSE(CT_Codepage(CT_Codepage::kWindows1252).b_IsStringSupported(&behind_zero));
    EXPECT_FALSE(CT_Codepage(CT_Codepage::kWindows1252).b_IsStringSupported(nullptr));
    EXPECT_EQ(CT_Codepage().eo_Get(), CT_Codepage::kNotSet);
    EXPECT_EQ(CT_Codepage(static_cast<const CT_Codepage*>(nullptr)).eo_Get(),
              CT_Codepage::kUnknown);
    const CT_UString surrogate(u"\xD800");
    EXPECT_TRUE(CT_Codepage(CT_Codepage::kUtf8).b_IsStringSupported(&surrogate));
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
