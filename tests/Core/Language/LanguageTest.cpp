// CT_Language: its conversions both ways, and the readers of foreign text.
#include "Foundation/Core/Language/Language.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <string>
#include <vector>

#include "Foundation/Core/String/UString.h"
#include "Items.h"
#include "Support/Text.h"

namespace {

using Primary = CT_Language::et_Primary;
using Sub = CT_Language::et_Sub;

constexpr unsigned int kPrimaries = 90;
constexpr unsigned int kSubs = 99;

struct Pair {
    Primary primary;
    Sub sub;
    auto operator<=>(const Pair&) const = default;
};

std::string Utf8(const char16_t* text) {
    return text == nullptr ? "(null)" : test::Utf8(text);
}

std::string NameOf(Primary primary, Sub sub) {
    CT_UString text(u"old");
    CT_Language::sv_MakeLanguageString(&text, primary, sub);
    return Utf8(text.qcuz_Get());
}

std::string CodeOf(Primary primary, Sub sub) {
    CT_UString text(u"old");
    CT_Language::sv_MakeLanguageCode(&text, primary, sub);
    return Utf8(text.qcuz_Get());
}

// "primary/sub", "-" and what was written nevertheless when the code is not known.
std::string Read(const std::string& code) {
    const CT_UString text(test::Utf16(code).c_str());
    Primary primary = static_cast<Primary>(777);
    Sub sub = static_cast<Sub>(777);
    const bool found = CT_Language::sb_GetLanguages(&primary, &sub, &text);
    return (found ? "" : "- ") + std::to_string(primary) + "/" + std::to_string(sub);
}

unsigned int IdOf(const std::string& name) {
    return CT_Language::sn_GetLanguageID(test::Utf16(name).c_str());
}

std::string Cased(std::string text, int (*change)(int)) {
    for (char& c : text) c = static_cast<char>(change(c));
    return text;
}

// Every language with each of its own sub-languages, as the public operations list them.
std::vector<Pair> OwnPairs() {
    std::vector<Pair> pairs;
    for (unsigned int value = 0; value <= CT_Language::sn_GetPrimaryCount(); ++value) {
        const auto primary = static_cast<Primary>(value);
        for (unsigned int at = 1; at <= CT_Language::sn_GetSubCount(primary); ++at) {
            pairs.push_back({primary, CT_Language::seo_GetSubAt(primary, at)});
        }
    }
    return pairs;
}

TEST(LanguageTest, EveryRowLeadsBackFromItsIdentifierCodeAndName) {
    EXPECT_EQ(CT_Language::sn_GetPrimaryCount(), 89u);
    EXPECT_EQ(OwnPairs().size(), kSubs);
    for (const auto [primary, sub] : OwnPairs()) {
        const std::string name = NameOf(primary, sub);
        const std::string code = CodeOf(primary, sub);
        SCOPED_TRACE(code + " " + name);
        const unsigned int id = CT_Language::sn_MakeLanguageID(primary, sub);
        EXPECT_EQ(CT_Language::seo_GetPrimary(id), primary);
        EXPECT_EQ(CT_Language::seo_GetSub(id), sub);
        const std::string both = std::to_string(primary) + "/" + std::to_string(sub);
        if (sub != CT_Language::kSubNeutral) {
            EXPECT_EQ(Read(code), both);
            EXPECT_EQ(Read(Cased(code, std::tolower)), both);
            EXPECT_EQ(IdOf(name), id);
        }
        Sub found = CT_Language::kSubNeutral;
        const std::string country = Cased(Utf8(CT_Language::sqcuz_GetCountry(sub)), std::toupper);
        EXPECT_TRUE(CT_Language::sb_GetSubCountry(&found, test::Utf16(country).c_str(), primary));
        EXPECT_EQ(found, sub);
        if (primary == CT_Language::kSerboCroatian) continue;
        EXPECT_EQ(IdOf(Cased(name, std::toupper)), sub == CT_Language::kSubNeutral ? 0x400 : id);
    }
    for (unsigned int value = 0; value < kPrimaries; ++value) {
        const auto primary = static_cast<Primary>(value);
        SCOPED_TRACE(value);
        const bool grouped = CT_Language::sn_GetSubCount(primary) != 0;
        const std::string code = Utf8(CT_Language::sqcuz_GetLanguageCode(primary));
        EXPECT_EQ(Read(code), std::to_string(value) + (grouped ? "/0" : "/1"));
        EXPECT_EQ(CodeOf(primary, CT_Language::kSubNeutral), code);
        Primary found = CT_Language::kSwahili;
        EXPECT_TRUE(CT_Language::sb_GetPrimary(&found, test::Utf16(code).c_str()));
        EXPECT_EQ(found, primary);
        EXPECT_FALSE(
            CT_Language::sb_GetPrimary(&found, test::Utf16(Cased(code, std::tolower)).c_str()));
        const std::string name = Utf8(CT_Language::sqcuz_GetLanguage(primary));
        EXPECT_TRUE(CT_Language::sb_GetPrimaryLanguage(
            &(found = CT_Language::kSwahili), test::Utf16(Cased(name, std::toupper)).c_str()));
        EXPECT_EQ(found, primary);
        EXPECT_EQ(CT_Language::seo_GetSubAt(primary, 0), CT_Language::kSubDefault);
        EXPECT_EQ(CT_Language::seo_GetSubAt(primary, 21), CT_Language::kSubDefault);
    }
}

// Each identifier against a map of the rows, made by the opposite direction.
TEST(LanguageTest, AllIdentifiersGiveTheirRowOrWhatStandsForIt) {
    std::map<unsigned int, Pair> rows, languages;
    for (const auto [primary, sub] : OwnPairs()) {
        const unsigned int id = CT_Language::sn_MakeLanguageID(primary, sub);
        EXPECT_TRUE(rows.insert({id, {primary, sub}}).second) << id;
    }
    for (unsigned int value = 0; value < kPrimaries; ++value) {
        const auto primary = static_cast<Primary>(value);
        languages[CT_Language::sn_MakeLanguageID(primary, CT_Language::kSubNeutral)] = {
            primary, CT_Language::sn_GetSubCount(primary) != 0 ? CT_Language::kSubNeutral
                                                               : CT_Language::kSubDefault};
    }
    for (unsigned int id = 0; id <= 0xFFFF; ++id) {
        const auto language = languages.find(id & 0x3FF);
        const Pair other = language == languages.end() ? Pair{} : language->second;
        const Pair expected = rows.contains(id) ? rows.at(id) : other;
        Pair found{};
        CT_Language::sv_GetLanguages(id, &found.primary, &found.sub);
        ASSERT_EQ(found, expected) << id;
        ASSERT_EQ(CT_Language::seo_GetPrimary(id | 0x30000), expected.primary) << id;
        ASSERT_EQ(CT_Language::seo_GetSub(id | 0x30000), expected.sub) << id;
    }
}

TEST(LanguageTest, AnySubLanguageGoesWithAnyLanguage) {
    const std::vector<Pair> own = OwnPairs();
    for (unsigned int p = 0; p < kPrimaries + 2; ++p) {
        for (unsigned int s = 0; s < kSubs + 2; ++s) {
            const Pair pair{static_cast<Primary>(p), static_cast<Sub>(s)};
            const unsigned int id = CT_Language::sn_MakeLanguageID(pair.primary, pair.sub);
            if (p >= kPrimaries) {
                ASSERT_EQ(NameOf(pair.primary, pair.sub) + CodeOf(pair.primary, pair.sub), "");
                ASSERT_EQ(id, 0u);
            } else if (s <= 2 || std::ranges::find(own, pair) == own.end()) {
                ASSERT_EQ(id >> 10, s <= 2 ? s : 1);
                ASSERT_EQ(id & 0x3FF, CT_Language::sn_MakeLanguageID(pair.primary, Sub{}));
            }
        }
    }
    EXPECT_TRUE(CT_Language::sb_IsBiDiLanguage(0x040Du));
    EXPECT_FALSE(CT_Language::sb_IsBiDiLanguage(0x0420u)) << "Urdu is not counted";
    EXPECT_EQ(CT_Language::sqcuz_GetLanguage(static_cast<Primary>(90)), nullptr);
    EXPECT_EQ(CT_Language::sqcuz_GetCountryCode(static_cast<Sub>(99)), nullptr);
    EXPECT_EQ(CT_Language::sn_GetSubCount(static_cast<Primary>(90)), 0u);
    EXPECT_EQ(CT_Language::seo_GetSubAt(static_cast<Primary>(90), 1), CT_Language::kSubNeutral);
}

TEST(LanguageTest, NamesAndCodesOfUnusualPairs) {
    for (const auto& [pair, text] : test::Items(
             "9/1=English (Default), EN-01|9/2=English (SysDefault), EN-02|9/0=English, EN|"
             "9/24=English (Switzerland), EN-CH|9/99=English, EN|4/21=Chinese (Hong Kong S.A.R.), "
             "ZH-HK|2/19=Bulgarian, BG|0/1=Neutral (Default), NE-01|26/0=Croatian, SH|"
             "26/1=Croatian, SH-01|26/2=Croatian, SH-HR|26/94=Croatian, SH-HR|"
             "26/79=Serbian (Cyrillic), SH-YU|26/28=Croatian, SH-HR|26/500=Croatian, SH-HR|"
             "26/95=Bosnian (Latin, Bosnia and Herzegovina), SH-B2")) {
        const auto primary = static_cast<Primary>(std::stoi(pair));
        const auto sub = static_cast<Sub>(std::stoi(pair.substr(pair.find('/') + 1)));
        EXPECT_EQ(NameOf(primary, sub) + ", " + CodeOf(primary, sub), text) << pair;
    }
}

TEST(LanguageTest, CodesAreSplitAtTheFirstCharacterThatIsNoLetter) {
    for (const auto& [code, result] : test::Items(
             "en-us=9/28|EN_US=9/28|EN US=9/28|EN=9/0|BG=2/1|BG-XX=2/1|KOK_IN=79/1|KOKXIN=79/1|"
             "KOK=79/1|EN-00=9/0|EN-01=9/1|DE-CH=7/24|SH-B4=26/96|NE-02=0/2|NE-00=0/0|"
             "EN-02=- 9/777|EN-XX=- 9/777|EN--US=- 9/777|EN-USA=- 9/777|EN-US-long=- 9/777|"
             "=- 777/777|E=- 777/777|-EN=- 777/777|E-US=- 777/777|EN-=- 777/777|KOK-=- 777/777|"
             "ENGLISH=- 777/777|DECH=- 777/777|\u00C4N-US=- 777/777|EN\u4E00US=- 777/777")) {
        EXPECT_EQ(Read(code), result) << code;
    }
    Primary primary{};
    Sub sub{};
    EXPECT_FALSE(CT_Language::sb_GetLanguages(&primary, &sub, nullptr));
    const CT_UString swiss(u"DE-CH");
    EXPECT_FALSE(CT_Language::sb_GetLanguages(nullptr, &sub, &swiss));
    EXPECT_FALSE(CT_Language::sb_GetLanguages(&primary, nullptr, &swiss));
    EXPECT_FALSE(CT_Language::sb_GetPrimary(nullptr, u"DE"));
    EXPECT_FALSE(CT_Language::sb_GetPrimaryLanguage(nullptr, u"German"));
    EXPECT_FALSE(CT_Language::sb_GetSubCountry(nullptr, u"Austria", CT_Language::kGerman));
    CT_Language::sv_MakeLanguageString(nullptr, primary, sub);
    CT_Language::sv_MakeLanguageCode(nullptr, primary, sub);
    CT_Language::sv_GetLanguages(0x0807, nullptr, &sub);
    EXPECT_EQ(sub, CT_Language::kGermanSwitzerland);
    CT_Language::sv_GetLanguages(0x0807, &primary, nullptr);
    EXPECT_EQ(primary, CT_Language::kGerman);
    for (const char16_t* none : {static_cast<const char16_t*>(nullptr), u""}) {
        EXPECT_FALSE(CT_Language::sb_GetPrimary(&primary, none));
        EXPECT_FALSE(CT_Language::sb_GetPrimaryLanguage(&primary, none));
        EXPECT_FALSE(CT_Language::sb_GetSubCountry(&sub, none, CT_Language::kGerman));
        EXPECT_EQ(CT_Language::sn_GetLanguageID(none), 0x0400u);
    }
}

TEST(LanguageTest, NamesAreReadWithoutRegardToCaseAndSpace) {
    for (const auto& [name, id] : test::Items(
             "german ( switzerland )=807|\t GERMAN(Switzerland=807|((German)(Austria))=C07|"
             "German=407|German (Default)=407|German (Narnia)=407|German ( ) (Austria)=407|"
             "Klingon=400|Klingon (SysDefault)=800|Neutral (Neutral)=0|Bulgarian (Taiwan)=402|"
             "Croatian=41A|croatian=400|Croatian =400|Serbian (Cyrillic)=C1A|Serbo-Croatian=41A|"
             "Serbo-Croatian (Croatian)=41A|Chinese (Hong Kong S.A.R.)=C04|"
             "German\u3000(\u00A0Switzerland\u2003)=807")) {
        EXPECT_EQ(IdOf(name), std::stoul(id, nullptr, 16)) << name;
    }
}

}  // namespace
