// CT_Locale and CT_LocaleInfo: every locale number through the accessors, the library's own data,
// what stands in where the platform knows nothing, and use from several threads.
#include "Foundation/Core/Language/Locale.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "Foundation/Core/Exception/Exception.h"
#include "Foundation/Core/Exception/ExceptionManager.h"
#include "Foundation/Core/Language/LocaleInfo.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/CodePages/CodePages.h"
#include "Foundation/Platform/Locales/Locales.h"
#include "Items.h"
#include "Support/Errors.h"
#include "Support/Platform.h"
#include "Support/Text.h"

namespace platform = zelkor::platform;

namespace {

using Info = CT_LocaleInfo;

constexpr LCID kUnknownSort = 0xF0000;  // no locale has it, so the platform knows none of these

Info::et_Type Type(unsigned int type) {
    return static_cast<Info::et_Type>(type);
}

// "(none)" when there is no answer.
std::string Value(LCID lcid, unsigned int type) {
    CT_UString value;
    if (!Info::sb_GetLocaleInfo(lcid, Type(type), &value)) return "(none)";
    return test::Utf8({value.qcuz_Get(), value.n_GetLength()});
}

// "1 2=10|4=20" as the value of each key up to 0xFFFF, and `other` for all that are not mentioned.
std::vector<unsigned int> Keys(const std::string& table, unsigned int other) {
    std::vector<unsigned int> values(0x10000, other);
    for (const auto& [keys, value] : test::Items(table)) {
        std::istringstream input(keys);
        for (unsigned int key; input >> key;)
            values[key] = static_cast<unsigned>(std::stoul(value));
    }
    return values;
}

TEST(LocaleTest, EveryNumberHasItsPartsAndASafeForm) {
    for (LCID lcid = 0; lcid <= 0x1FFFF; ++lcid) {
        SCOPED_TRACE(lcid);
        CT_Locale locale(CT_Locale::kInvalidLocale);
        locale.v_SetLCID(lcid);
        const unsigned int id = lcid % 0x10000, language = id % 0x400, sub = id / 0x400;
        const unsigned int primary = CT_Language::seo_GetPrimary(id);
        ASSERT_EQ(Info::sn_MakeLocaleID(locale.n_GetLanguageID(), locale.eo_GetSortOrder()), lcid);
        ASSERT_EQ(Info::sn_GetPrimaryLangID(lcid) | Info::sn_GetSubLangID(lcid) << 10, id);
        ASSERT_EQ(locale.b_IsValidLCID(), primary != 0);
        ASSERT_FALSE(locale.b_IsValid());  // it has no code page

        const bool grouped = CT_Language::sn_GetSubCount(locale.eo_GetPrimary()) != 0;
        unsigned int safe = language | (locale.eo_GetSub() > 2 ? sub : grouped ? 2 : 1) << 10;
        if (primary == 0) safe = id == 0x400 ? 0x400 : 0x800;
        if (primary == 54) safe = 0x400;
        ASSERT_EQ(locale.n4_GetSafeLcid(), lcid / 0x10000 * 0x10000 + safe);
    }
    for (const auto& [lcid, page] :
         test::Items("1028=10002|2052=10008|3076=10002|4100=10008|4=10002|"
                     "1050=10082|3098=10007|1031=10000|0=10000|"
                     "1025=10004|1049=10007|1045=10029|1032=10006|1037=10005|1041=10001|1042=10003|"
                     "1055=10081")) {
        const auto id = static_cast<LCID>(std::stoul(lcid));
        EXPECT_EQ(CT_Locale::sn4_DefaultMacCodepageFromLocale(id), std::stoul(page)) << id;
    }
    // The scripts of all rows are compared with their letters; these two depend on the
    // sub-language.
    for (const LCID right : {0x0420u, 0x0460u, 0x0C60u}) EXPECT_TRUE(CT_Locale(right).b_IsRtl());
    for (const LCID left : {0x0020u, 0x0820u, 0x0860u}) EXPECT_FALSE(CT_Locale(left).b_IsRtl());
}

// The languages of each page beside 1252, where the platform does not know the locale; asked twice,
// so that what was kept is seen too, and of more locales than are kept.
TEST(LocaleTest, EveryUnknownLocaleHasThePageOfItsScript) {
    const auto pages = Keys(
        "1 41=1256|2 25 34 35=1251|5 14 21 24 26 27 36 56=1250|8=1253|13=1255|17=932|30=874|"
        "31=1254|42=1258|37 38 39=1257",
        1252);
    const auto charsets = Keys(
        "1252=0|1250=238|1251=204|1253=161|1254=162|1255=177|1256=178|1257=186|1258=163|1361=130|"
        "874=222|932=128|936=134|949=129|950=136",
        1);
    for (int round = 0; round < 2; ++round) {
        for (unsigned int id = 0; id <= 0xFFFF; ++id) {
            const unsigned int sub = id / 0x400;
            unsigned int page = pages[id % 0x400];
            if (id % 0x400 == 4) page = sub == 1 || sub == 3 ? 950 : 936;
            if (id % 0x400 == 18) page = sub == 2 ? 1361 : 949;
            ASSERT_EQ(Info::sn_GetDefaultANSICodePage(kUnknownSort | id), page) << id;
            ASSERT_EQ(Info::sn_GetDefaultCharset(kUnknownSort | id), charsets[page]) << id;
            ASSERT_FALSE(Info::sb_IsUnicodeOnly(kUnknownSort | id));
        }
    }
}

TEST(LocaleTest, WhatPagesAndCharacterSetsLackGoesToTheSystemsLanguage) {
    platform::SetDefaultLocales(0x0407, 0x0409);
    for (const unsigned int page : {0u, 437u, 1200u, 65001u}) {
        EXPECT_EQ(Info::sn_GetDefaultCPLocale(page), 0x0409u) << page;
    }
    for (const unsigned int charset : {1u, 2u, 77u, 255u}) {
        EXPECT_EQ(Info::sn_GetDefaultCharsetLocale(charset), 0x0409u) << charset;
    }
    platform::SetDefaultLocales(0, 0);
    EXPECT_EQ(Info::sn_GetDefaultCPLocale(28593), 0x043Au);  // Maltese, which has no character set
    EXPECT_EQ(Info::sn_GetDefaultCharsetLocale(0xFFFFFFFF), 0x043Au);
    EXPECT_EQ(CT_Locale(CT_Codepage::kIso2022Kr).eo_GetSub(), CT_Language::kKoreanJohab);
    EXPECT_TRUE(Info::sb_IsValidCodePage(1252));
    EXPECT_FALSE(Info::sb_IsValidCodePage(99999));
}

TEST(LocaleTest, EveryInstalledLocaleHasAPageThatExists) {
    for (std::uint32_t at = 0; at < platform::LocaleCount(); ++at) {
        const LCID lcid = platform::LocaleAt(at);
        SCOPED_TRACE(lcid);
        EXPECT_TRUE(Info::sb_IsInstalled(lcid) && Info::sb_IsSupported(lcid));
        EXPECT_FALSE(Info::sb_IsProprietary(lcid));
        const unsigned int page = Info::sn_GetDefaultANSICodePage(lcid);
        const std::string own = Value(lcid, Info::kAnsiCodePage);
        EXPECT_EQ(std::to_string(page), own == "0" ? "1200" : own);
        EXPECT_EQ(Info::sb_IsUnicodeOnly(lcid), page == 1200);
        EXPECT_TRUE(CT_Locale(lcid).b_IsValidCodepage());
        EXPECT_EQ(Info::sn_GetDefaultANSICodePage(lcid), page);
        // A page and its character set stand for one language, which has that page.
        const LCID of_page = Info::sn_GetDefaultCPLocale(page);
        if (page == 1200) continue;
        EXPECT_EQ(Info::sn_GetDefaultANSICodePage(of_page), page);
        EXPECT_EQ(Info::sn_GetDefaultCharsetLocale(Info::sn_GetDefaultCharset(lcid)), of_page);
        EXPECT_EQ(Value(lcid, 0x7777), "(none)");
    }
}

// ---- The library's own data ---------------------------------------------------------------------

TEST(LocaleTest, OwnLocalesAnswerFromTheirListAndThenFromAnotherLocale) {
    constexpr std::pair<LCID, LCID> kFallbacks[] = {{0x043A, 0},      {0x0464, 0},
                                                    {0x043B, 0x040B}, {0x0430, 0x1C09},
                                                    {0x0434, 0x1C09}, {0x0435, 0x1C09}};
    for (const auto& [lcid, fallback] : kFallbacks) {
        SCOPED_TRACE(lcid);
        EXPECT_TRUE(Info::sb_IsProprietary(lcid));
        EXPECT_FALSE(Info::sb_IsProprietary(lcid | 0x10000));
        int own = 0, others = 0;
        for (unsigned int type = 0; type <= 0xFFFF; ++type) {
            const std::string value = Value(lcid, type);
            const std::string other = fallback == 0 ? "(none)" : Value(fallback, type);
            own += value != other;
            others += value == other && value != "(none)";
        }
        EXPECT_GT(own, 4);
        EXPECT_EQ(others != 0, fallback != 0);
    }
    EXPECT_EQ(Value(0x043A, Info::kMonthName1), "Jannar");
    EXPECT_EQ(Value(0x0435, Info::kDecimalSeparator), Value(7177, Info::kDecimalSeparator));
    EXPECT_NE(Value(0x0435, Info::kDecimalSeparator), "(none)");
    EXPECT_EQ(Info::sn_GetDefaultANSICodePage(0x043A), 1252u);
}

// Of a user whose language the library describes itself.
TEST(LocaleTest, OwnLocalesCanBeTheDefault) {
    platform::SetDefaultLocales(0x043A, 0x0435);
    EXPECT_EQ(CT_Locale().n4_GetLCID(), 0x043Au);
    EXPECT_EQ(CT_Locale().co_GetCodepage().n_Get(), 1252u);
    for (const LCID user : {0x0000u, 0x0400u}) EXPECT_EQ(Value(user, Info::kMonthName1), "Jannar");
    EXPECT_EQ(Value(0x0800, Info::kLanguage), "Zulu");
    EXPECT_EQ(Value(0x0800, Info::kMonthName1), "January");  // from where it falls back to
    platform::SetDefaultLocales(0, 0);
}

TEST(LocaleTest, BuffersReceiveAtMostTheirSize) {
    for (unsigned int size = 0; size <= 8; ++size) {
        std::vector<char16_t> buffer(size, u'#');  // of exact size, for the sanitizers
        EXPECT_TRUE(Info::sb_GetLocaleInfo(0x043A, Info::kMonthName1, buffer.data(), size));
        std::u16string expected(u"Jannar\0#", 8);
        EXPECT_EQ(std::u16string(buffer.begin(), buffer.end()), expected.substr(0, size));
    }
    char16_t untouched = u'#';
    EXPECT_FALSE(Info::sb_GetLocaleInfo(0x043A, Type(0x7777), &untouched, 1));
    EXPECT_FALSE(Info::sb_GetLocaleInfo(kUnknownSort | 0x0407, Info::kMonthName1, &untouched, 1));
    EXPECT_EQ(untouched, u'#');
    EXPECT_FALSE(Info::sb_GetLocaleInfo(0x0407, Info::kMonthName1, nullptr, 1));
    EXPECT_FALSE(
        Info::sb_GetLocaleInfo(0x0407, Info::kMonthName1, static_cast<CT_UString*>(nullptr)));
    EXPECT_FALSE(Info::sb_GetLocaleInfo(0x0407, Info::kMeasure, static_cast<unsigned*>(nullptr)));
    Info::sv_CollectValues(Info::kMeasure, u';', nullptr);
}

TEST(LocaleTest, OlderPlatformsLetOnlyTheirCodePageThrough) {
    const test::ForcedVersion older(1, 4, 10);
    platform::SetSystemCodePages(1252, 437);
    char16_t buffer[8] = {};
    EXPECT_TRUE(Info::sb_GetLocaleInfo(0x0419, Type(0x3C), buffer, 8));
    EXPECT_EQ(test::Utf8(buffer), "???");
    EXPECT_EQ(Value(0x0419, 0x3C), "???");
    EXPECT_EQ(Value(0x0407, 0x3A), "M\u00E4rz");
    EXPECT_EQ(Value(0x043A, 0x3D), "\u0120unju");  // the library's own data
}

TEST(LocaleTest, NumbersAreReadOfNumericTypesOnly) {
    std::string numeric;
    for (unsigned int type = 0; type <= 0x1100; ++type) {
        unsigned int number = 0xABCD;
        const bool found = Info::sb_GetLocaleInfo(0x043A, Type(type), &number);
        if (found) {
            numeric += std::to_string(type) + " ";
            EXPECT_EQ(std::to_string(number), Value(0x043A, type));
        } else {
            EXPECT_EQ(number, 0xABCDu);
        }
    }
    EXPECT_EQ(numeric,
              "1 5 9 10 11 13 17 18 25 26 27 28 33 34 35 36 37 38 39 82 83 84 85 86 87 "
              "4100 4101 4105 4107 4108 4109 4112 ");
    unsigned int number = 0;
    EXPECT_FALSE(Info::sb_GetLocaleInfo(kUnknownSort, Info::kFractionDigits, &number));
}

// ---- Collecting values --------------------------------------------------------------------------

std::string Collected(unsigned int type, char16_t separator) {
    CT_UString values(u"old");
    Info::sv_CollectValues(Type(type), separator, &values);
    return test::Utf8(values.qcuz_Get());
}

std::string Expected(unsigned int type, const std::string& separator) {
    std::set<std::string> seen;
    std::string joined;
    for (std::uint32_t at = 0; at < platform::LocaleCount(); ++at) {
        const LCID lcid = platform::LocaleAt(at);
        if (lcid > 0xFFFF || !Info::sb_IsInstalled(lcid)) continue;
        const std::string value = Value(lcid, type);
        if (value == "(none)" || !seen.insert(value).second) continue;
        joined += (seen.size() == 1 ? "" : separator) + value;
    }
    return joined;
}

TEST(LocaleTest, ValuesAreCollectedOnManyThreadsAtOnce) {
    EXPECT_EQ(Collected(Info::kDecimalSeparator, 0), Expected(Info::kDecimalSeparator, ""));
    EXPECT_EQ(Collected(0x7777, u','), "");
    std::vector<std::thread> threads;
    for (unsigned int i = 0; i < 4; ++i) {
        threads.emplace_back([i] {
            for (unsigned int type = 0x2A + i; type < 0x32; type += 4) {
                EXPECT_EQ(Collected(type, u'|'), Expected(type, "|"));
            }
            for (LCID lcid = 0; lcid < 0x3000; ++lcid) {
                ASSERT_EQ(Info::sn_GetDefaultANSICodePage(kUnknownSort | 0x401E), 874u);
                const unsigned int page = Info::sn_GetDefaultANSICodePage(lcid);
                ASSERT_EQ(page, Info::sn_GetDefaultANSICodePage(lcid));
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
}

TEST(LocaleTest, ExhaustedMemoryIsReportedAndLeavesNothingBehind) {
    EXPECT_GT(test::FailEachAllocation([] {
                  CT_UString values;
                  Info::sv_CollectValues(Info::kDecimalSeparator, u';', &values);
              }),
              3u);
}

// ---- The value ----------------------------------------------------------------------------------

TEST(LocaleTest, LocalesAreMadeFromPartsAndPages) {
    const auto expect = [](const CT_Locale& locale, std::uint32_t lcid, unsigned int page) {
        EXPECT_EQ(locale.n4_GetLCID(), lcid);
        EXPECT_EQ(locale.co_GetCodepage().n_Get(), page) << lcid;
        EXPECT_EQ(locale.b_IsValidCodepage(), page != 0);
    };
    expect(CT_Locale(CT_Locale::kInvalidLocale), 0, 0);
    expect(CT_Locale(0x0419u), 0x0419, 1251);
    expect(CT_Locale(CT_Codepage::kShiftJis), 0x0411, 932);
    expect(CT_Locale(0x0807u, CT_Locale::kSortAlternate, CT_Codepage::kUtf8), 0x10807, 65001);
    expect(CT_Locale(0x0408u, CT_Locale::kSortDefault, CT_Codepage::kNotSet), 0x0408, 1253);
    expect(CT_Locale(CT_Language::kPolish, CT_Language::kSubDefault, CT_Locale::kSortDefault,
                     CT_Codepage::kNotSet),
           0x0415, 1250);
    ASSERT_TRUE(platform::SetThreadLocale(0x041F));
    expect(CT_Locale(), 0x041F, 1254);
    CT_Locale locale(CT_Locale::kThreadLocale);
    EXPECT_TRUE(platform::SetThreadLocale(0));
    EXPECT_TRUE(locale.b_IsValid());
    locale.v_SetCodepage(CT_Codepage::kUnknown);
    EXPECT_FALSE(locale.b_IsValid());
    locale.v_SetToInvalid();
    expect(locale, 0, 0);
    EXPECT_EQ(locale.eo_GetCodepage(), CT_Codepage::kNotSet);
}

TEST(LocaleTest, LocalesAreReadFromCodesOrThrow) {
    for (const auto& [code, result] :
         test::Items("de=1031 1252|DE-CH=2055 1252|de_ch=2055 1252|en-00=9 1252|kok=1111 1200|"
                     "RU=1049 1251|SH-YU=3098 1251|=22|d=22|XX=22|DECH=22|DE-XX=22|KOK-IN=22")) {
        const CT_UString text(test::Utf16(code).c_str());
        std::string found;
        try {
            const CT_Locale locale(&text);
            found = std::to_string(locale.n4_GetLCID()) + " " +
                    std::to_string(locale.co_GetCodepage().n_Get());
        } catch (const CT_Exception& exception) {
            found = std::to_string(exception.n_GetCode());
            EXPECT_EQ(CT_ExceptionManager::spco_Get()->n_GetCurrentCode(), 22u);
            CT_ExceptionManager::spco_Get()->v_Clear();
        }
        EXPECT_EQ(found, result) << code;
        EXPECT_TRUE(test::NoError());
    }
    EXPECT_THROW(CT_Locale(static_cast<const CT_UString*>(nullptr)), CT_Exception);
    CT_ExceptionManager::spco_Get()->v_Clear();
}

}  // namespace
