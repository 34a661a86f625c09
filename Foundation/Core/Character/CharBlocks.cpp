// The blocks of Unicode 2.0 for CT_CharProperties (ranges, names, script groups), and the names of
// the general categories.
#include <algorithm>
#include <iterator>

#include "Foundation/Core/Character/CharProperties.h"

namespace {

using CT = CT_CharProperties;

struct Block {
    char16_t first, last;
    CT::et_UnicodeBlock block;
};

constexpr Block kBlocks[] = {
    {0x0000, 0x007F, CT::kBasicLatin},
    {0x0080, 0x00FF, CT::kLatin1Supplement},
    {0x0100, 0x017F, CT::kLatinExtendedA},
    {0x0180, 0x024F, CT::kLatinExtendedB},
    {0x0250, 0x02AF, CT::kIPAExtensions},
    {0x02B0, 0x02FF, CT::kSpacingModifierLetters},
    {0x0300, 0x036F, CT::kCombiningDiacriticalMarks},
    {0x0370, 0x03FF, CT::kGreek},
    {0x0400, 0x04FF, CT::kCyrillic},
    {0x0500, 0x052F, CT::kUnassigned},
    {0x0530, 0x058F, CT::kArmenian},
    {0x0590, 0x05FF, CT::kHebrew},
    {0x0600, 0x06FF, CT::kArabic},
    {0x0700, 0x08FF, CT::kUnassigned},
    {0x0900, 0x097F, CT::kDevanagari},
    {0x0980, 0x09FF, CT::kBengali},
    {0x0A00, 0x0A7F, CT::kGurmukhi},
    {0x0A80, 0x0AFF, CT::kGujarati},
    {0x0B00, 0x0B7F, CT::kOriya},
    {0x0B80, 0x0BFF, CT::kTamil},
    {0x0C00, 0x0C7F, CT::kTelugu},
    {0x0C80, 0x0CFF, CT::kKannada},
    {0x0D00, 0x0D7F, CT::kMalayalam},
    {0x0D80, 0x0DFF, CT::kUnassigned},
    {0x0E00, 0x0E7F, CT::kThai},
    {0x0E80, 0x0EFF, CT::kLao},
    {0x0F00, 0x0FBF, CT::kTibetan},
    {0x0FC0, 0x109F, CT::kUnassigned},
    {0x10A0, 0x10FF, CT::kGeorgian},
    {0x1100, 0x11FF, CT::kHangulJamo},
    {0x1200, 0x1DFF, CT::kUnassigned},
    {0x1E00, 0x1EFF, CT::kLatinExtendedAdditional},
    {0x1F00, 0x1FFF, CT::kGreekExtended},
    {0x2000, 0x206F, CT::kGeneralPunctuation},
    {0x2070, 0x209F, CT::kSuperscriptsAndSubscripts},
    {0x20A0, 0x20CF, CT::kCurrencySymbols},
    {0x20D0, 0x20FF, CT::kCombiningMarksForSymbols},
    {0x2100, 0x214F, CT::kLetterlikeSymbols},
    {0x2150, 0x218F, CT::kNumberForms},
    {0x2190, 0x21FF, CT::kArrows},
    {0x2200, 0x22FF, CT::kMathematicalOperators},
    {0x2300, 0x23FF, CT::kMiscellaneousTechnical},
    {0x2400, 0x243F, CT::kControlPictures},
    {0x2440, 0x245F, CT::kOpticalCharacterRecognition},
    {0x2460, 0x24FF, CT::kEnclosedAlphanumerics},
    {0x2500, 0x257F, CT::kBoxDrawing},
    {0x2580, 0x259F, CT::kBlockElements},
    {0x25A0, 0x25FF, CT::kGeometricShapes},
    {0x2600, 0x26FF, CT::kMiscellaneousSymbols},
    {0x2700, 0x27BF, CT::kDingbats},
    {0x27C0, 0x2FFF, CT::kUnassigned},
    {0x3000, 0x303F, CT::kCJKSymbolsAndPunctuation},
    {0x3040, 0x309F, CT::kHiragana},
    {0x30A0, 0x30FF, CT::kKatakana},
    {0x3100, 0x312F, CT::kBopomofo},
    {0x3130, 0x318F, CT::kHangulCompatibilityJamo},
    {0x3190, 0x319F, CT::kKanbun},
    {0x31A0, 0x31FF, CT::kUnassigned},
    {0x3200, 0x32FF, CT::kEnclosedCJKLettersAndMonths},
    {0x3300, 0x33FF, CT::kCJKCompatibility},
    {0x3400, 0x4DFF, CT::kUnassigned},
    {0x4E00, 0x9FFF, CT::kCJKUnifiedIdeographs},
    {0xA000, 0xABFF, CT::kUnassigned},
    {0xAC00, 0xD7A3, CT::kHangulSyllables},
    {0xD7A4, 0xD7FF, CT::kUnassigned},
    {0xD800, 0xDB7F, CT::kHighSurrogates},
    {0xDB80, 0xDBFF, CT::kHighPrivateUseSurrogates},
    {0xDC00, 0xDFFF, CT::kLowSurrogates},
    {0xE000, 0xF8FF, CT::kPrivateUse},
    {0xF900, 0xFAFF, CT::kCJKCompatibilityIdeographs},
    {0xFB00, 0xFB4F, CT::kAlphabeticPresentationForms},
    {0xFB50, 0xFDFF, CT::kArabicPresentationFormsA},
    {0xFE00, 0xFE1F, CT::kUnassigned},
    {0xFE20, 0xFE2F, CT::kCombiningHalfMarks},
    {0xFE30, 0xFE4F, CT::kCJKCompatibilityForms},
    {0xFE50, 0xFE6F, CT::kSmallFormVariants},
    {0xFE70, 0xFEFE, CT::kArabicPresentationFormsB},
    {0xFEFF, 0xFEFF, CT::kSpecials1},
    {0xFF00, 0xFFEF, CT::kHalfwidthAndFullwidthForms},
    {0xFFF0, 0xFFFF, CT::kSpecials2},
};

constexpr bool CoverEveryUnit() {
    unsigned int next = 0;
    for (const auto [first, last, block] : kBlocks) {
        if (first != next || last < first) return false;
        next = last + 1U;
    }
    return next == 0x10000;
}
static_assert(CoverEveryUnit(), "each row starts where the one before ends");

// In the order of their numbers, from 1 on. Fixed widths: a table of pointers would have to be
// relocated when the library is loaded.
struct BlockInfo {
    char16_t name[29];
    CT::et_Script script;
};
constexpr BlockInfo kBlockInfo[] = {
    {u"BasicLatin", CT::kScriptLatinGreek},
    {u"Latin1Supplement", CT::kScriptLatinGreek},
    {u"LatinExtendedA", CT::kScriptLatinGreek},
    {u"LatinExtendedB", CT::kScriptLatinGreek},
    {u"IPAExtensions", CT::kScriptPhonetic},
    {u"SpacingModifierLetters", CT::kScriptPhonetic},
    {u"CombiningDiacriticalMarks", CT::kScriptCommon},
    {u"Greek", CT::kScriptLatinGreek},
    {u"Cyrillic", CT::kScriptOther},
    {u"Armenian", CT::kScriptOther},
    {u"Hebrew", CT::kScriptOther},
    {u"Arabic", CT::kScriptArabic},
    {u"Devanagari", CT::kScriptOther},
    {u"Bengali", CT::kScriptOther},
    {u"Gurmukhi", CT::kScriptOther},
    {u"Gujarati", CT::kScriptOther},
    {u"Oriya", CT::kScriptOther},
    {u"Tamil", CT::kScriptOther},
    {u"Telugu", CT::kScriptOther},
    {u"Kannada", CT::kScriptOther},
    {u"Malayalam", CT::kScriptOther},
    {u"Thai", CT::kScriptOther},
    {u"Lao", CT::kScriptOther},
    {u"Tibetan", CT::kScriptOther},
    {u"Georgian", CT::kScriptOther},
    {u"HangulJamo", CT::kScriptEastAsian},
    {u"LatinExtendedAdditional", CT::kScriptLatinGreek},
    {u"GreekExtended", CT::kScriptLatinGreek},
    {u"GeneralPunctuation", CT::kScriptCommon},
    {u"SuperscriptsAndSubscripts", CT::kScriptCommon},
    {u"CurrencySymbols", CT::kScriptCommon},
    {u"CombiningMarksForSymbols", CT::kScriptCommon},
    {u"LetterlikeSymbols", CT::kScriptOther},
    {u"NumberForms", CT::kScriptCommon},
    {u"Arrows", CT::kScriptOther},
    {u"MathematicalOperators", CT::kScriptOther},
    {u"MiscellaneousTechnical", CT::kScriptOther},
    {u"ControlPictures", CT::kScriptOther},
    {u"OpticalCharacterRecognition", CT::kScriptOther},
    {u"EnclosedAlphanumerics", CT::kScriptCjkSigns},
    {u"BoxDrawing", CT::kScriptOther},
    {u"BlockElements", CT::kScriptOther},
    {u"GeometricShapes", CT::kScriptOther},
    {u"MiscellaneousSymbols", CT::kScriptOther},
    {u"Dingbats", CT::kScriptOther},
    {u"CJKSymbolsAndPunctuation", CT::kScriptCjkSigns},
    {u"Hiragana", CT::kScriptEastAsian},
    {u"Katakana", CT::kScriptEastAsian},
    {u"Bopomofo", CT::kScriptEastAsian},
    {u"HangulCompatibilityJamo", CT::kScriptEastAsian},
    {u"Kanbun", CT::kScriptEastAsian},
    {u"EnclosedCJKLettersAndMonths", CT::kScriptCjkSigns},
    {u"CJKCompatibility", CT::kScriptEastAsian},
    {u"CJKUnifiedIdeographs", CT::kScriptEastAsian},
    {u"HangulSyllables", CT::kScriptEastAsian},
    {u"HighSurrogates", CT::kScriptPrivate},
    {u"HighPrivateUseSurrogates", CT::kScriptPrivate},
    {u"LowSurrogates", CT::kScriptPrivate},
    {u"PrivateUse", CT::kScriptPrivate},
    {u"CJKCompatibilityIdeographs", CT::kScriptEastAsian},
    {u"AlphabeticPresentationForms", CT::kScriptOther},
    {u"ArabicPresentationFormsA", CT::kScriptArabic},
    {u"CombiningHalfMarks", CT::kScriptCommon},
    {u"CJKCompatibilityForms", CT::kScriptEastAsian},
    {u"SmallFormVariants", CT::kScriptCommon},
    {u"ArabicPresentationFormsB", CT::kScriptArabic},
    {u"HalfwidthAndFullwidthForms", CT::kScriptEastAsian},
    {u"Specials1", CT::kScriptCjkSigns},
    {u"Specials2", CT::kScriptCjkSigns},
    {u"Unassigned", CT::kScriptCjkSigns},
};
static_assert(std::size(kBlockInfo) == CT::kUnassigned);

constexpr char16_t kPropertyNames[][24] = {
    u"MarkNonSpacing",
    u"MarkSpacingCombining",
    u"MarkEnclosing",
    u"NumberDecimalDigit",
    u"NumberLetter",
    u"NumberOther",
    u"SeparatorSpace",
    u"SeparatorLine",
    u"SeparatorParagraph",
    u"OtherControl",
    u"OtherFormat",
    u"OtherSurrogate",
    u"OtherPrivateUse",
    u"OtherNotAssigned",
    u"LetterUppercase",
    u"LetterLowercase",
    u"LetterTitlecase",
    u"LetterModifier",
    u"LetterOther",
    u"PunctuationConnector",
    u"PunctuationDash",
    u"PunctuationOpen",
    u"PunctuationClose",
    u"PunctuationOther",
    u"SymbolMath",
    u"SymbolCurrency",
    u"SymbolModifier",
    u"SymbolOther",
    u"Unknown",
};
static_assert(std::size(kPropertyNames) == CT::kUnknown + 1);

constexpr bool IsBlock(CT::et_UnicodeBlock block) {
    return block >= CT::kBasicLatin && block <= CT::kUnassigned;
}

}  // namespace

const char16_t* CT_CharProperties::sqcuz_UnicodePropertyName(et_UnicodeProperty property) {
    return kPropertyNames[std::min(property, kUnknown)];
}

const char16_t* CT_CharProperties::sqcuz_UnicodeBlockName(et_UnicodeBlock block) {
    return IsBlock(block) ? kBlockInfo[block - kBasicLatin].name : kPropertyNames[kUnknown];
}

CT_CharProperties::et_UnicodeBlock CT_CharProperties::seo_GetUnicodeBlock(char16_t unit) {
    return std::ranges::lower_bound(kBlocks, unit, {}, &Block::last)->block;
}

CT_CharProperties::et_Script CT_CharProperties::seo_GetScript(et_UnicodeBlock block) {
    return IsBlock(block) ? kBlockInfo[block - kBasicLatin].script : kScriptCommon;
}
