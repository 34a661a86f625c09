// The tables of CT_CharProperties, every unit: against the published character database where they
// follow from it, else by a fingerprint of the published values. Predicates against the tables.
#include <gtest/gtest.h>

#include <string_view>

#include "Core/Character/UnicodeData.h"
#include "Foundation/Core/Character/CharProperties.h"

namespace {

using CT = CT_CharProperties;
using test::UnicodeData;

constexpr unsigned int kUnits = 0x10000;

constexpr std::string_view kCategories[] = {
    "Mn", "Mc", "Me", "Nd", "Nl", "No", "Zs", "Zl", "Zp", "Cc", "Cf", "Cs", "Co", "Cn", "Lu",
    "Ll", "Lt", "Lm", "Lo", "Pc", "Pd", "Ps", "Pe", "Po", "Sm", "Sc", "Sk", "So", "--"};

TEST(CharTablesTest, CategoriesAreThoseOfTheDatabaseAndSomeGapsAreFilled) {
    int filled = 0;
    for (unsigned int code = 0; code < kUnits; ++code) {
        SCOPED_TRACE(code);
        const CT::et_UnicodeProperty category = CT::seo_GetUnicodeProperty(char16_t(code));
        if (UnicodeData()[code].IsAssigned()) {
            ASSERT_EQ(kCategories[category], UnicodeData()[code].category);
        } else if (category != CT::kUnknown && code != 0xFFFC) {
            ++filled;
            std::size_t before = code, after = code;
            while (!UnicodeData()[before].IsAssigned()) --before;
            while (after < 0xFFFF && !UnicodeData()[after].IsAssigned()) ++after;
            EXPECT_EQ(kCategories[category], UnicodeData()[before].category);
            EXPECT_EQ(kCategories[category], UnicodeData()[after].category);
        }
    }
    EXPECT_EQ(filled, 261);
    for (const auto& [unit, category] : {std::pair{u'\u038B', 14},
                                         {u'\u1F5A', 14},
                                         {u'\u05EB', 18},
                                         {u'\u098D', 18},
                                         {u'\u3130', 18},
                                         {u'\uFBC3', 18},
                                         {u'\u0A43', 0},
                                         {u'\uFB07', 15},
                                         {u'\u242A', 27},
                                         {u'\u31E6', 27},
                                         {u'\uFFF0', 27},
                                         {u'\uFFFC', 27},
                                         {u'\u20AC', 28},
                                         {u'\u9FA6', 28},
                                         {u'\uFFFE', 28}}) {
        EXPECT_EQ(CT::seo_GetUnicodeProperty(unit), static_cast<unsigned int>(category)) << +unit;
    }
}

TEST(CharTablesTest, NumericValuesAreThoseOfTheDatabase) {
    int count = 0;
    for (unsigned int code = 0; code < kUnits; ++code) {
        const std::string& number = UnicodeData()[code].number;
        short numerator = -9, denominator = -9;
        CT::sv_NumericValue(char16_t(code), numerator, denominator);
        const auto slash = number.find('/');
        const int below = slash == std::string::npos ? 1 : std::stoi(number.substr(slash + 1));
        EXPECT_EQ(numerator, number.empty() ? 0 : std::stoi(number)) << code;
        EXPECT_EQ(denominator, number.empty() ? 0 : below) << code;
        count += denominator != 0;
    }
    EXPECT_EQ(count, 350);
}

TEST(CharTablesTest, LayoutIsTheDirectionalityOfTheDatabase) {
    constexpr std::string_view kDirections[] = {"",   "L",  "R", "EN", "ES", "ET",
                                                "AN", "CS", "B", "S",  "WS", "ON"};
    for (unsigned int code = 0; code < kUnits; ++code) {
        const auto& character = UnicodeData()[code];
        const bool none = code == 0xFEFF || (character.category == "Cc" && character.bidi == "ON");
        const CT::et_LayoutProperty layout = CT::seo_GetLayoutInformation(char16_t(code));
        EXPECT_EQ(kDirections[layout], none ? "" : character.bidi) << code;
    }
}

TEST(CharTablesTest, CharacterTypesAreThePublishedOnes) {
    EXPECT_EQ(test::FingerprintOfAllUnits(CT::sn2_GetCharacterInformation), 0xED79FE1A06DCDA1D);
    EXPECT_EQ(test::FingerprintOfAllUnits(CT::sn2_GetTextProcessingInformation),
              0xCF3DD232CAF50AE5);
    struct Row {
        char16_t unit;
        unsigned int type, processing;
    };
    constexpr unsigned int kAny = ~0U;
    for (const auto [unit, type, processing] :
         {Row{0x0009, 0x0068, kAny}, {0x000A, 0x0028, kAny},   {0x0020, 0x0048, 0x0048},
          {0x0030, 0x0084, kAny},    {0x0041, 0x0181, 0x8040}, {0x0061, 0x0182, kAny},
          {0x00A0, 0x0048, kAny},    {0x00D7, 0x0010, kAny},   {0x00E9, 0x0102, 0x8003},
          {0x0100, 0x0101, kAny},    {0x0101, 0x0102, kAny},   {0x0640, 0x0010, 0x0601},
          {0x0660, 0x0004, kAny},    {0x2028, 0x0010, kAny},   {0x3000, 0x0048, 0x0088},
          {0x3042, kAny, 0x8020},    {0x30A2, kAny, 0x8090},   {0x4E00, 0x0100, 0x8100},
          {0xFEFF, 0x0048, kAny},    {0xFF21, 0x0181, 0x8080}, {0xFF71, kAny, 0x8050}}) {
        SCOPED_TRACE(+unit);
        EXPECT_EQ(type == kAny ? kAny : CT::sn2_GetCharacterInformation(unit), type);
        EXPECT_EQ(processing == kAny ? kAny : CT::sn2_GetTextProcessingInformation(unit),
                  processing);
    }
}

TEST(CharTablesTest, BlocksCoverEveryUnitAndHaveNamesAndGroups) {
    EXPECT_EQ(test::FingerprintOfAllUnits(CT::seo_GetUnicodeBlock), 0x0089222811F27BD7U);
    EXPECT_EQ(CT::seo_GetUnicodeBlock(0xFEFF), CT::kSpecials1);
    EXPECT_EQ(CT::seo_GetUnicodeBlock(0xD7A4), CT::kUnassigned);
    test::Fingerprint names, categories, groups;
    for (unsigned int number = 0; number <= CT::kUnassigned; ++number) {
        const auto block = static_cast<CT::et_UnicodeBlock>(number);
        groups.Add(CT::seo_GetScript(block));
        if (number == 0) continue;
        for (const char16_t unit : std::u16string_view(CT::sqcuz_UnicodeBlockName(block))) {
            names.Add(unit);
        }
    }
    for (unsigned int number = 0; number <= CT::kUnknown; ++number) {
        const auto category = static_cast<CT::et_UnicodeProperty>(number);
        for (const char16_t unit : std::u16string_view(CT::sqcuz_UnicodePropertyName(category))) {
            categories.Add(unit);
        }
    }
    EXPECT_EQ(groups.Get(), 0xEDAD8C6617E69AC5);
    EXPECT_EQ(names.Get(), 0x3FE502CC1F2F8F3EU);
    EXPECT_EQ(categories.Get(), 0xE6A6CA001865AC81);
    for (const unsigned int number : {0U, 71U, ~0U}) {
        const auto block = static_cast<CT::et_UnicodeBlock>(number);
        EXPECT_EQ(std::u16string_view(CT::sqcuz_UnicodeBlockName(block)), u"Unknown");
        EXPECT_EQ(CT::seo_GetScript(block), 7U);
    }
    for (const unsigned int number : {28U, 29U, ~0U}) {
        const auto category = static_cast<CT::et_UnicodeProperty>(number);
        EXPECT_EQ(std::u16string_view(CT::sqcuz_UnicodePropertyName(category)), u"Unknown");
    }
    EXPECT_EQ(CT::sqcuz_GetCharacterName(u'A'), nullptr);
}

TEST(CharTablesTest, PredicatesTestTheCategoryTypeLayoutOrProcessing) {
    struct Categories {
        CT::CharacterTest test;
        std::string_view names;
    };
    const Categories by_category[] = {
        {CT::sb_IsUpper, "Lu"},
        {CT::sb_IsLower, "Ll"},
        {CT::sb_IsDigit, "Nd"},
        {CT::sb_IsNumeric, "Nd Nl No"},
        {CT::sb_IsAlpha, "Lu Ll Lt Lm Lo"},
        {CT::sb_IsAlDig, "Nd Lu Ll Lt Lm Lo"},
        {CT::sb_IsAlNum, "Nd Nl No Lu Ll Lt Lm Lo"},
        {CT::sb_IsPunct, "Pc Pd Ps Pe Po"},
        {CT::sb_IsCntrl, "Cc"},
        {CT::sb_IsPrint,
         "Mn Mc Me Nd Nl No Zs Zl Zp Cf Cs Co Lu Ll Lt Lm Lo Pc Pd Ps Pe Po Sm Sc "
         "Sk So --"},
        {CT::sb_IsGraph, "Mn Mc Me Nd Nl No Cs Co Lu Ll Lt Lm Lo Pc Pd Ps Pe Po Sm Sc Sk So"}};
    const CT::CharacterTest by_layout[] = {
        CT::sb_LayoutNoDirectionality, CT::sb_LayoutLeftToRight,     CT::sb_LayoutRightToLeft,
        CT::sb_LayoutEuropeNumber,     CT::sb_LayoutEuropeSeparator, CT::sb_LayoutEuropeTerminator,
        CT::sb_LayoutArabicNumber,     CT::sb_LayoutCommonSeparator, CT::sb_LayoutBlockSeparator,
        CT::sb_LayoutSegmentSeparator, CT::sb_LayoutWhitespace,      CT::sb_LayoutOtherNeutral};
    const CT::CharacterTest by_processing[] = {
        CT::sb_IsTPNonspacing, CT::sb_IsTPDiacritic, CT::sb_IsTPVowelMark, CT::sb_IsTPSymbol,
        CT::sb_IsTPKatakana,   CT::sb_IsTPHiragana,  CT::sb_IsTPHalfwidth, CT::sb_IsTPFullwidth,
        CT::sb_IsTPIdeograph,  CT::sb_IsTPKashida,   CT::sb_IsTPLexical};
    for (unsigned int code = 0; code < kUnits; ++code) {
        const auto unit = char16_t(code);
        SCOPED_TRACE(code);
        const std::string_view category = kCategories[CT::seo_GetUnicodeProperty(unit)];
        for (const auto& [test, names] : by_category) {
            ASSERT_EQ(test(unit) != FALSE, names.find(category) != std::string_view::npos);
        }
        const unsigned int type = CT::sn2_GetCharacterInformation(unit);
        ASSERT_EQ(CT::sb_IsBlank(unit) != FALSE, (type & 0x40) != 0 || unit == 10 || unit == 32);
        ASSERT_EQ(CT::sb_IsSpace(unit) != FALSE, (type & 0x08) != 0);
        ASSERT_EQ(CT::sb_IsXDigit(unit) != FALSE, (type & 0x80) != 0);
        const unsigned int layout = CT::sn2_GetLayoutInformation(unit);
        for (unsigned int i = 0; i < std::size(by_layout); ++i) {
            ASSERT_EQ(by_layout[i](unit) != FALSE, layout == i);
        }
        ASSERT_EQ(CT::sb_LayoutStrongDirectionality(unit) != FALSE, layout == 1);
        ASSERT_EQ(CT::sb_LayoutWeakDirectionality(unit) != FALSE, layout >= 3 && layout <= 7);
        ASSERT_EQ(CT::sb_LayoutNeutralDirectionality(unit) != FALSE, layout >= 8);
        const unsigned int processing = CT::sn2_GetTextProcessingInformation(unit);
        for (unsigned int i = 0; i < std::size(by_processing); ++i) {
            ASSERT_EQ(by_processing[i](unit) != FALSE, (processing >> i & 1) != 0);
        }
        ASSERT_EQ(CT::sb_IsTPAlpha(unit) != FALSE, (processing & 0x8000) != 0);
    }
}

// How many units pass a test, and which, by their fingerprint in ascending order.
template <typename Test>
std::pair<int, std::uint64_t> UnitsThatPass(Test passes) {
    test::Fingerprint fingerprint;
    int count = 0;
    for (unsigned int code = 0; code < kUnits; ++code) {
        if (!passes(char16_t(code))) continue;
        fingerprint.Add(code);
        ++count;
    }
    return {count, fingerprint.Get()};
}

TEST(CharTablesTest, PunctuationClassesHoldJustTheirCharacters) {
    struct Class {
        CT::CharacterTest test;
        int count;
        std::uint64_t fingerprint;
    };
    int row = 0;
    for (const auto& [test, count, fingerprint] :
         {Class{CT::sb_IsApostrophe, 4, 0xA3639067D57B6EA1},
          {CT::sb_IsColon, 6, 0xF943ECED0A334DD0},
          {CT::sb_IsComma, 9, 0x59E8F854553A1158},
          {CT::sb_IsDot, 8, 0xDB40328117BFFFA6},
          {CT::sb_IsExclamation, 8, 0xB35860191C9F56F8},
          {CT::sb_IsHyphen, 6, 0x1D1EBE776C478FC8},
          {CT::sb_IsQuestion, 7, 0x42D5D12DB61CF4E3},
          {CT::sb_IsSemicolon, 4, 0xB1FC904ED73B089A},
          {CT::sb_IsBrace, 8, 0xAAEAC85359E78FAD},
          {CT::sb_IsTabulator, 1, 0xAF63C44C8601C3C4},
          {CT::sb_IsParagraph, 2, 0x40E71707E4FD8649},
          {CT::sb_IsOpeningBracket, 25, 0xA1FC199EF31ABCD4},
          {CT::sb_IsClosingBracket, 25, 0x5F19D6E827267261},
          {CT::sb_IsBracket, 50, 0x5F6CE860C4055052},
          {CT::sb_IsOpeningParenthesis, 3, 0xA4216C17A035C4E6},
          {CT::sb_IsClosingParenthesis, 3, 0xA73DE417A4CF0409},
          {CT::sb_IsParenthesis, 6, 0xEF6B64A2CAB12E5E},
          {CT::sb_IsQuote, 21, 0xB57319E06251F186},
          {CT::sb_IsSingleQuote, 12, 0xEF6863F61C9038E2},
          {CT::sb_IsDoubleQuote, 10, 0x7B150B8AF1D1C18E},
          {CT::sb_IsOpeningQuote, 4, 0x6D58DE4E7D4EBD65},
          {CT::sb_IsClosingQuote, 4, 0xBF5F460D48906B62},
          {CT::sb_IsPercent, 4, 0xB72CC86A9B04617B},
          {CT::sb_IsStop, 32, 0x74AC88A591539082},
          {CT::sb_IsSurrounder, 87, 0x213DA3F52EABF716},
          {CT::sb_IsVowel, 30, 0x679119D257DF5693}}) {
        EXPECT_EQ(UnitsThatPass(test), std::pair(count, fingerprint)) << "row " << row;
        ++row;
    }
}

TEST(CharTablesTest, LinesBreakByTheRulesOfTheLanguage) {
    struct Lists {
        unsigned int language_id;
        int starts;
        std::uint64_t start_fingerprint;
        int ends;
        std::uint64_t end_fingerprint;
    };
    const std::uint64_t none = test::Fingerprint().Get();
    const Lists traditional = {0x0404, 60, 0x97FCBFAAE6572CEB, 26, 0x4413D4F8FFB4682F};
    const Lists simplified = {0x0804, 44, 0x51D32315DF87FF4F, 26, 0x07A4249459AD849A};
    const Lists japanese = {0x0411, 85, 0x09F3538DB3752CCF, 22, 0xEAE2643F6DB76BF3};
    const Lists korean = {0x0412, 35, 0x41CEEC9FA4719110, 17, 0x767D8F49C9CECB2F};
    const auto with = [](Lists lists, unsigned int language_id) {
        lists.language_id = language_id;
        return lists;
    };
    for (const auto& [language_id, starts, start_fingerprint, ends, end_fingerprint] :
         {traditional,
          with(traditional, 0x0004),
          with(traditional, 0x0C04),
          simplified,
          with(simplified, 0x1004),
          japanese,
          with(japanese, 0x0011),
          korean,
          with(korean, 0x0812),
          {0x0409, 0, none, 0, none},
          {0x0000, 0, none, 0, none}}) {
        SCOPED_TRACE(language_id);
        const unsigned int id = language_id;
        EXPECT_EQ(UnitsThatPass([id](char16_t unit) { return !CT::sb_CanStartLine(unit, id); }),
                  std::pair(starts, start_fingerprint));
        EXPECT_EQ(UnitsThatPass([id](char16_t unit) { return !CT::sb_CanEndLine(unit, id); }),
                  std::pair(ends, end_fingerprint));
    }
}

}  // namespace
