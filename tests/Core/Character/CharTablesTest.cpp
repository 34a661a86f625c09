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
    test::Fingerprint names;
    const auto add = [&](const char16_t* name) {
        for (const char16_t unit : std::u16string_view(name)) names.Add(unit);
    };
    for (unsigned int number = 1; number <= CT::kUnassigned; ++number) {
        const auto block = static_cast<CT::et_UnicodeBlock>(number);
        add(CT::sqcuz_UnicodeBlockName(block));
        names.Add(CT::seo_GetScript(block));
    }
    for (unsigned int number = 0; number <= CT::kUnknown; ++number) {
        add(CT::sqcuz_UnicodePropertyName(static_cast<CT::et_UnicodeProperty>(number)));
    }
    EXPECT_EQ(names.Get(), 0x901C9D92B610B851U);
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

TEST(CharTablesTest, PunctuationClassesHoldJustTheirCharacters) {
    constexpr CT::CharacterTest kClasses[] = {CT::sb_IsApostrophe,
                                              CT::sb_IsColon,
                                              CT::sb_IsComma,
                                              CT::sb_IsDot,
                                              CT::sb_IsExclamation,
                                              CT::sb_IsHyphen,
                                              CT::sb_IsQuestion,
                                              CT::sb_IsSemicolon,
                                              CT::sb_IsBrace,
                                              CT::sb_IsTabulator,
                                              CT::sb_IsParagraph,
                                              CT::sb_IsOpeningBracket,
                                              CT::sb_IsClosingBracket,
                                              CT::sb_IsBracket,
                                              CT::sb_IsOpeningParenthesis,
                                              CT::sb_IsClosingParenthesis,
                                              CT::sb_IsParenthesis,
                                              CT::sb_IsQuote,
                                              CT::sb_IsSingleQuote,
                                              CT::sb_IsDoubleQuote,
                                              CT::sb_IsOpeningQuote,
                                              CT::sb_IsClosingQuote,
                                              CT::sb_IsPercent,
                                              CT::sb_IsStop,
                                              CT::sb_IsSurrounder,
                                              CT::sb_IsVowel};
    EXPECT_EQ(test::FingerprintOfAllUnits([&](char16_t unit) {
                  unsigned int classes = 0;
                  for (const auto is : kClasses) classes = classes << 1 | (is(unit) != FALSE);
                  return classes;
              }),
              0x6A44D0E34C7FD6DBU);
}

// How many characters may not begin a line and how many may not end one; and which, by fingerprint.
TEST(CharTablesTest, LinesBreakByTheRulesOfTheLanguage) {
    struct Rule {
        std::vector<unsigned int> language_ids;
        int starts, ends;
        std::uint64_t fingerprint;
    };
    for (const auto& [language_ids, starts, ends, fingerprint] :
         {Rule{{0x0404, 0x0004, 0x0C04}, 60, 26, 0xC7EFEAF527F2D2E9},
          {{0x0804, 0x1004}, 44, 26, 0xD530CC7863C9BCFB},
          {{0x0411, 0x0011}, 85, 22, 0x1797395123A07D6F},
          {{0x0412, 0x0812}, 35, 17, 0x19551189EB751EE2},
          {{0x0409, 0x0000}, 0, 0, test::FingerprintOfAllUnits([](char16_t) { return 0; })}}) {
        for (const unsigned int id : language_ids) {
            SCOPED_TRACE(id);
            int no_starts = 0, no_ends = 0;
            EXPECT_EQ(test::FingerprintOfAllUnits([&](char16_t unit) {
                          const int no_start = CT::sb_CanStartLine(unit, id) == FALSE;
                          const int no_end = CT::sb_CanEndLine(unit, id) == FALSE;
                          no_starts += no_start;
                          no_ends += no_end;
                          return 2 * no_start + no_end;
                      }),
                      fingerprint);
            EXPECT_EQ(no_starts, starts);
            EXPECT_EQ(no_ends, ends);
        }
    }
}

}  // namespace
