// CT_CharProperties: properties of single UTF-16 units as Unicode 2.0 has them: general category,
// block, numeric value, the character types of the Windows platform, classes of punctuation, line
// breaking in Chinese, Japanese and Korean, membership in code pages. Also whether bytes look like
// UTF-16 text.
//
// A unit is a character of the Basic Multilingual Plane; surrogates have properties of their own
// and are never combined. No answer depends on the locale.
// Errors: none recorded. Threads: pure functions of constant tables, any thread.
#ifndef FOUNDATION_CORE_CHARACTER_CHARPROPERTIES_H
#define FOUNDATION_CORE_CHARACTER_CHARPROPERTIES_H

#include "Foundation/Core/Character/Tables/CategoryTable.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_UString;

class ZELKOR_API CT_CharProperties {
public:
    // General categories. kUnknown is what Unicode 2.0 does not assign (U+20AC is such a unit); a
    // gap in a run of one category may carry that category. kOtherNotAssigned is never answered.
    enum et_UnicodeProperty : unsigned int {
        kMarkNonSpacing = 0,
        kMarkSpacingCombining = 1,
        kMarkEnclosing = 2,
        kNumberDecimalDigit = 3,
        kNumberLetter = 4,
        kNumberOther = 5,
        kSeparatorSpace = 6,
        kSeparatorLine = 7,
        kSeparatorParagraph = 8,
        kOtherControl = 9,
        kOtherFormat = 10,
        kOtherSurrogate = 11,
        kOtherPrivateUse = 12,
        kOtherNotAssigned = 13,
        kLetterUppercase = 14,
        kLetterLowercase = 15,
        kLetterTitlecase = 16,
        kLetterModifier = 17,
        kLetterOther = 18,
        kPunctuationConnector = 19,
        kPunctuationDash = 20,
        kPunctuationOpen = 21,
        kPunctuationClose = 22,
        kPunctuationOther = 23,
        kSymbolMath = 24,
        kSymbolCurrency = 25,
        kSymbolModifier = 26,
        kSymbolOther = 27,
        kUnknown = 28,
    };

    // The blocks of Unicode 2.0, in order; kUnassigned is what lies in none.
    enum et_UnicodeBlock : unsigned int {
        kBasicLatin = 1,
        kLatin1Supplement = 2,
        kLatinExtendedA = 3,
        kLatinExtendedB = 4,
        kIPAExtensions = 5,
        kSpacingModifierLetters = 6,
        kCombiningDiacriticalMarks = 7,
        kGreek = 8,
        kCyrillic = 9,
        kArmenian = 10,
        kHebrew = 11,
        kArabic = 12,
        kDevanagari = 13,
        kBengali = 14,
        kGurmukhi = 15,
        kGujarati = 16,
        kOriya = 17,
        kTamil = 18,
        kTelugu = 19,
        kKannada = 20,
        kMalayalam = 21,
        kThai = 22,
        kLao = 23,
        kTibetan = 24,
        kGeorgian = 25,
        kHangulJamo = 26,
        kLatinExtendedAdditional = 27,
        kGreekExtended = 28,
        kGeneralPunctuation = 29,
        kSuperscriptsAndSubscripts = 30,
        kCurrencySymbols = 31,
        kCombiningMarksForSymbols = 32,
        kLetterlikeSymbols = 33,
        kNumberForms = 34,
        kArrows = 35,
        kMathematicalOperators = 36,
        kMiscellaneousTechnical = 37,
        kControlPictures = 38,
        kOpticalCharacterRecognition = 39,
        kEnclosedAlphanumerics = 40,
        kBoxDrawing = 41,
        kBlockElements = 42,
        kGeometricShapes = 43,
        kMiscellaneousSymbols = 44,
        kDingbats = 45,
        kCJKSymbolsAndPunctuation = 46,
        kHiragana = 47,
        kKatakana = 48,
        kBopomofo = 49,
        kHangulCompatibilityJamo = 50,
        kKanbun = 51,
        kEnclosedCJKLettersAndMonths = 52,
        kCJKCompatibility = 53,
        kCJKUnifiedIdeographs = 54,
        kHangulSyllables = 55,
        kHighSurrogates = 56,
        kHighPrivateUseSurrogates = 57,
        kLowSurrogates = 58,
        kPrivateUse = 59,
        kCJKCompatibilityIdeographs = 60,
        kAlphabeticPresentationForms = 61,
        kArabicPresentationFormsA = 62,
        kCombiningHalfMarks = 63,
        kCJKCompatibilityForms = 64,
        kSmallFormVariants = 65,
        kArabicPresentationFormsB = 66,
        kHalfwidthAndFullwidthForms = 67,
        kSpecials1 = 68,
        kSpecials2 = 69,
        kUnassigned = 70,
    };

    // Groups of blocks.
    enum et_Script : unsigned int {
        kScriptLatinGreek = 0,  // Latin but for the phonetic extensions, and Greek
        kScriptPhonetic = 1,    // phonetic and modifier letters
        kScriptEastAsian = 2,   // Chinese, Japanese and Korean
        kScriptArabic = 3,
        kScriptPrivate = 4,   // surrogates and private use
        kScriptOther = 5,     // all other alphabets, and most symbols
        kScriptCjkSigns = 6,  // East Asian and enclosed signs, specials, units in no block
        kScriptCommon = 7,    // marks, general punctuation, currency and number forms; no block
    };

    enum et_PropertyClass : unsigned int { kCharacterType = 0, kLayout = 1, kTextProcessing = 2 };

    // Directionality, numbered as the platform's class CT_CTYPE2.
    enum et_LayoutProperty : unsigned int {
        kNoDirectionality = 0,
        kLeftToRight = 1,
        kRightToLeft = 2,
        kEuropeNumber = 3,
        kEuropeSeparator = 4,
        kEuropeTerminator = 5,
        kArabicNumber = 6,
        kCommonSeparator = 7,
        kBlockSeparator = 8,
        kSegmentSeparator = 9,
        kWhitespace = 10,
        kOtherNeutral = 11,
    };

    // Plain function that tests one character, such as the predicates of this class.
    using CharacterTest = BOOL (*)(char16_t unit);

    [[nodiscard]] static constexpr et_UnicodeProperty seo_GetUnicodeProperty(char16_t unit) {
        using namespace zelkor::detail;
        const unsigned int block = kCategoryStage[unit >> kCategoryShift];
        return static_cast<et_UnicodeProperty>(
            kCategoryBlocks[(block << kCategoryShift) + (unit & ((1U << kCategoryShift) - 1))]);
    }
    // "LetterUppercase", "LatinExtendedA"; "Unknown" for any value that is none.
    [[nodiscard]] static const char16_t* sqcuz_UnicodePropertyName(et_UnicodeProperty property);
    [[nodiscard]] static const char16_t* sqcuz_UnicodeBlockName(et_UnicodeBlock block);
    // Always null: the library holds no names of characters.
    [[nodiscard]] static const char16_t* sqcuz_GetCharacterName(char16_t unit);
    [[nodiscard]] static et_UnicodeBlock seo_GetUnicodeBlock(char16_t unit);
    [[nodiscard]] static et_Script seo_GetScript(et_UnicodeBlock block);
    // 1 and 2 for U+00BD; 0 and 0 for a character without a numeric value.
    static void sv_NumericValue(char16_t unit, short& numerator, short& denominator);

    // The platform's classes: flags of CT_CTYPE1, a value of CT_CTYPE2, flags of CT_CTYPE3.
    [[nodiscard]] static unsigned short sn2_GetCharacterInformation(char16_t unit) {
        return sn2_GetCharacterInfo(kCharacterType, unit);
    }
    [[nodiscard]] static unsigned short sn2_GetLayoutInformation(char16_t unit) {
        return sn2_GetCharacterInfo(kLayout, unit);
    }
    [[nodiscard]] static et_LayoutProperty seo_GetLayoutInformation(char16_t unit) {
        return static_cast<et_LayoutProperty>(sn2_GetLayoutInformation(unit));
    }
    [[nodiscard]] static unsigned short sn2_GetTextProcessingInformation(char16_t unit) {
        return sn2_GetCharacterInfo(kTextProcessing, unit);
    }

    // By general category. Whatever is no control is printable, unassigned units too; those, format
    // and separator characters are not graphic.
    [[nodiscard]] static constexpr BOOL sb_IsUpper(char16_t unit) {
        return seo_GetUnicodeProperty(unit) == kLetterUppercase;
    }
    [[nodiscard]] static constexpr BOOL sb_IsLower(char16_t unit) {
        return seo_GetUnicodeProperty(unit) == kLetterLowercase;
    }
    [[nodiscard]] static constexpr BOOL sb_IsDigit(char16_t unit) {
        return seo_GetUnicodeProperty(unit) == kNumberDecimalDigit;
    }
    [[nodiscard]] static constexpr BOOL sb_IsNumeric(char16_t unit) {
        return HasCategory(unit, kNumbers);
    }
    [[nodiscard]] static constexpr BOOL sb_IsAlpha(char16_t unit) {
        return HasCategory(unit, kLetters);
    }
    [[nodiscard]] static constexpr BOOL sb_IsAlDig(char16_t unit) {
        return HasCategory(unit, kLetters | Bit(kNumberDecimalDigit));
    }
    [[nodiscard]] static constexpr BOOL sb_IsAlNum(char16_t unit) {
        return HasCategory(unit, kLetters | kNumbers);
    }
    [[nodiscard]] static constexpr BOOL sb_IsPunct(char16_t unit) {
        return HasCategory(unit, Bits(kPunctuationConnector, kPunctuationOther));
    }
    [[nodiscard]] static constexpr BOOL sb_IsCntrl(char16_t unit) {
        return seo_GetUnicodeProperty(unit) == kOtherControl;
    }
    [[nodiscard]] static constexpr BOOL sb_IsPrint(char16_t unit) { return !sb_IsCntrl(unit); }
    [[nodiscard]] static constexpr BOOL sb_IsGraph(char16_t unit) {
        return !HasCategory(
            unit, Bits(kSeparatorSpace, kOtherFormat) | Bit(kOtherNotAssigned) | Bit(kUnknown));
    }

    // By character type; the line feed counts as a blank too.
    [[nodiscard]] static BOOL sb_IsBlank(char16_t unit);
    [[nodiscard]] static BOOL sb_IsSpace(char16_t unit);
    [[nodiscard]] static BOOL sb_IsXDigit(char16_t unit);

    // By layout. Right to left does not count as strong.
    [[nodiscard]] static BOOL sb_LayoutLeftToRight(char16_t unit);
    [[nodiscard]] static BOOL sb_LayoutRightToLeft(char16_t unit);
    [[nodiscard]] static BOOL sb_LayoutEuropeNumber(char16_t unit);
    [[nodiscard]] static BOOL sb_LayoutEuropeSeparator(char16_t unit);
    [[nodiscard]] static BOOL sb_LayoutEuropeTerminator(char16_t unit);
    [[nodiscard]] static BOOL sb_LayoutArabicNumber(char16_t unit);
    [[nodiscard]] static BOOL sb_LayoutCommonSeparator(char16_t unit);
    [[nodiscard]] static BOOL sb_LayoutBlockSeparator(char16_t unit);
    [[nodiscard]] static BOOL sb_LayoutSegmentSeparator(char16_t unit);
    [[nodiscard]] static BOOL sb_LayoutWhitespace(char16_t unit);
    [[nodiscard]] static BOOL sb_LayoutOtherNeutral(char16_t unit);
    [[nodiscard]] static BOOL sb_LayoutStrongDirectionality(char16_t unit);
    [[nodiscard]] static BOOL sb_LayoutWeakDirectionality(char16_t unit);
    [[nodiscard]] static BOOL sb_LayoutNeutralDirectionality(char16_t unit);
    [[nodiscard]] static BOOL sb_LayoutNoDirectionality(char16_t unit);

    // By text processing.
    [[nodiscard]] static BOOL sb_IsTPNonspacing(char16_t unit);
    [[nodiscard]] static BOOL sb_IsTPDiacritic(char16_t unit);
    [[nodiscard]] static BOOL sb_IsTPVowelMark(char16_t unit);
    [[nodiscard]] static BOOL sb_IsTPSymbol(char16_t unit);
    [[nodiscard]] static BOOL sb_IsTPKatakana(char16_t unit);
    [[nodiscard]] static BOOL sb_IsTPHiragana(char16_t unit);
    [[nodiscard]] static BOOL sb_IsTPHalfwidth(char16_t unit);
    [[nodiscard]] static BOOL sb_IsTPFullwidth(char16_t unit);
    [[nodiscard]] static BOOL sb_IsTPIdeograph(char16_t unit);
    [[nodiscard]] static BOOL sb_IsTPKashida(char16_t unit);
    [[nodiscard]] static BOOL sb_IsTPLexical(char16_t unit);
    [[nodiscard]] static BOOL sb_IsTPAlpha(char16_t unit);

    // By lists of characters, in ASCII, typographic, Armenian, Arabic and East Asian forms. The
    // ASCII apostrophe is a single quote but no quote, and so no double quote.
    [[nodiscard]] static BOOL sb_IsApostrophe(char16_t unit);
    [[nodiscard]] static BOOL sb_IsColon(char16_t unit);
    [[nodiscard]] static BOOL sb_IsComma(char16_t unit);
    [[nodiscard]] static BOOL sb_IsDot(char16_t unit);
    [[nodiscard]] static BOOL sb_IsExclamation(char16_t unit);
    [[nodiscard]] static BOOL sb_IsHyphen(char16_t unit);
    [[nodiscard]] static BOOL sb_IsQuestion(char16_t unit);
    [[nodiscard]] static BOOL sb_IsSemicolon(char16_t unit);
    [[nodiscard]] static BOOL sb_IsBrace(char16_t unit);
    [[nodiscard]] static BOOL sb_IsTabulator(char16_t unit);
    [[nodiscard]] static BOOL sb_IsParagraph(char16_t unit);
    [[nodiscard]] static BOOL sb_IsOpeningBracket(char16_t unit);
    [[nodiscard]] static BOOL sb_IsClosingBracket(char16_t unit);
    [[nodiscard]] static BOOL sb_IsBracket(char16_t unit);
    [[nodiscard]] static BOOL sb_IsOpeningParenthesis(char16_t unit);
    [[nodiscard]] static BOOL sb_IsClosingParenthesis(char16_t unit);
    [[nodiscard]] static BOOL sb_IsParenthesis(char16_t unit);
    [[nodiscard]] static BOOL sb_IsQuote(char16_t unit);
    [[nodiscard]] static BOOL sb_IsSingleQuote(char16_t unit);
    [[nodiscard]] static BOOL sb_IsDoubleQuote(char16_t unit);
    [[nodiscard]] static BOOL sb_IsOpeningQuote(char16_t unit);
    [[nodiscard]] static BOOL sb_IsClosingQuote(char16_t unit);
    [[nodiscard]] static BOOL sb_IsPercent(char16_t unit);
    // A colon, dot, exclamation, question mark or semicolon.
    [[nodiscard]] static BOOL sb_IsStop(char16_t unit);
    // A bracket, parenthesis, quote or apostrophe; also < and > and the full-width = (but not =).
    [[nodiscard]] static BOOL sb_IsSurrounder(char16_t unit);
    // a, e, i, o, u and their capitals, and the vowels of hiragana and katakana, small ones too.
    [[nodiscard]] static BOOL sb_IsVowel(char16_t unit);

    // Whether `count` characters from `start` on pass the test, or all up to the end of the text
    // when there are fewer. FALSE for a null text, count 0, or a start at or beyond the end.
    [[nodiscard]] static BOOL sb_IsSequenceOf(const char16_t* text, CharacterTest test,
                                              std::uint32_t start, std::uint32_t count);
    [[nodiscard]] static BOOL sb_IsSequenceOf(const CT_UString* text, CharacterTest test,
                                              std::uint32_t start, std::uint32_t count);

    // Whether a line may begin or end with the character, in Chinese (traditional for Taiwan, Hong
    // Kong, and where the language identifier names no country; simplified for all others),
    // Japanese and Korean. TRUE for any other language.
    [[nodiscard]] static BOOL sb_CanStartLine(char16_t unit, unsigned int language_id);
    [[nodiscard]] static BOOL sb_CanEndLine(char16_t unit, unsigned int language_id);

    // Whether `size` bytes look like UTF-16 text. On the NT platform family the platform's tests of
    // ASCII as 16-bit units, statistics, controls and byte-order marks decide, in both byte orders,
    // with those for an odd size and illegal units (mask 0x3FF); a text with a byte-order mark is
    // UTF-16. They look at the first 256 units; the last unit of a block may be its terminator. The
    // likely form asks all tests of the platform, also whether there is a zero byte. On the older
    // family only a byte-order mark counts, and for the likely form a zero byte; an odd size never
    // does.
    [[nodiscard]] static BOOL sb_IsTextUnicode(const void* data, unsigned int size);
    [[nodiscard]] static BOOL sb_IsTextLikelyUnicode(const void* data, unsigned int size);

    // Whether a code page (by its Windows number) holds the character. For 1250 to 1258 built-in
    // lists answer, where an undefined byte below 0xA0 counts as the C1 control of its number; 0,
    // 1200 and 65000 and above hold everything; any other page is asked by a strict round trip.
    [[nodiscard]] static BOOL sb_IsInCodepage(char16_t character, unsigned int code_page);

private:
    [[nodiscard]] static constexpr unsigned int Bit(et_UnicodeProperty property) {
        return 1U << property;
    }
    [[nodiscard]] static constexpr unsigned int Bits(et_UnicodeProperty first,
                                                     et_UnicodeProperty last) {
        return (2U << last) - (1U << first);
    }
    [[nodiscard]] static constexpr BOOL HasCategory(char16_t unit, unsigned int properties) {
        return (properties >> seo_GetUnicodeProperty(unit)) & 1;
    }
    static constexpr unsigned int kNumbers = 7U << kNumberDecimalDigit;
    static constexpr unsigned int kLetters = 31U << kLetterUppercase;

    // 0 for any value that is no class.
    [[nodiscard]] static unsigned short sn2_GetCharacterInfo(et_PropertyClass property_class,
                                                             char16_t unit);
};

#endif
