// The three character-type tables of CT_CharProperties and the predicates on them.
#include "Foundation/Core/Character/CharProperties.h"
#include "Foundation/Core/Character/Internal/Tables/TypeTable.h"

namespace {

using zelkor::detail::TypeRecord;

const TypeRecord& TypesOf(char16_t unit) {
    using namespace zelkor::detail;
    const unsigned int block = kTypeStage[unit >> kTypeShift];
    return kTypeRecords[kTypeBlocks[(block << kTypeShift) + (unit & ((1U << kTypeShift) - 1))]];
}

bool HasType(char16_t unit, unsigned int flag) {
    return (TypesOf(unit).character & flag) != 0;
}
bool HasProcessing(char16_t unit, unsigned int flag) {
    return (TypesOf(unit).processing & flag) != 0;
}
bool LayoutIs(char16_t unit, CT_CharProperties::et_LayoutProperty layout) {
    return TypesOf(unit).layout == layout;
}
bool LayoutIsWithin(char16_t unit, CT_CharProperties::et_LayoutProperty first,
                    CT_CharProperties::et_LayoutProperty last) {
    return TypesOf(unit).layout >= first && TypesOf(unit).layout <= last;
}

}  // namespace

// 0 for any value that is no class.
unsigned short CT_CharProperties::sn2_GetCharacterInfo(et_PropertyClass property_class,
                                                       char16_t unit) {
    switch (property_class) {
        case kCharacterType:
            return TypesOf(unit).character;
        case kLayout:
            return TypesOf(unit).layout;
        case kTextProcessing:
            return TypesOf(unit).processing;
    }
    return 0;
}

BOOL CT_CharProperties::sb_IsBlank(char16_t unit) {
    return unit == u'\n' || unit == u' ' || HasType(unit, 0x0040);
}
BOOL CT_CharProperties::sb_IsSpace(char16_t unit) {
    return HasType(unit, 0x0008);
}
BOOL CT_CharProperties::sb_IsXDigit(char16_t unit) {
    return HasType(unit, 0x0080);
}

BOOL CT_CharProperties::sb_LayoutLeftToRight(char16_t unit) {
    return LayoutIs(unit, kLeftToRight);
}
BOOL CT_CharProperties::sb_LayoutRightToLeft(char16_t unit) {
    return LayoutIs(unit, kRightToLeft);
}
BOOL CT_CharProperties::sb_LayoutEuropeNumber(char16_t unit) {
    return LayoutIs(unit, kEuropeNumber);
}
BOOL CT_CharProperties::sb_LayoutEuropeSeparator(char16_t unit) {
    return LayoutIs(unit, kEuropeSeparator);
}
BOOL CT_CharProperties::sb_LayoutEuropeTerminator(char16_t unit) {
    return LayoutIs(unit, kEuropeTerminator);
}
BOOL CT_CharProperties::sb_LayoutArabicNumber(char16_t unit) {
    return LayoutIs(unit, kArabicNumber);
}
BOOL CT_CharProperties::sb_LayoutCommonSeparator(char16_t unit) {
    return LayoutIs(unit, kCommonSeparator);
}
BOOL CT_CharProperties::sb_LayoutBlockSeparator(char16_t unit) {
    return LayoutIs(unit, kBlockSeparator);
}
BOOL CT_CharProperties::sb_LayoutSegmentSeparator(char16_t unit) {
    return LayoutIs(unit, kSegmentSeparator);
}
BOOL CT_CharProperties::sb_LayoutWhitespace(char16_t unit) {
    return LayoutIs(unit, kWhitespace);
}
BOOL CT_CharProperties::sb_LayoutOtherNeutral(char16_t unit) {
    return LayoutIs(unit, kOtherNeutral);
}
BOOL CT_CharProperties::sb_LayoutStrongDirectionality(char16_t unit) {
    return LayoutIs(unit, kLeftToRight);
}
BOOL CT_CharProperties::sb_LayoutWeakDirectionality(char16_t unit) {
    return LayoutIsWithin(unit, kEuropeNumber, kCommonSeparator);
}
BOOL CT_CharProperties::sb_LayoutNeutralDirectionality(char16_t unit) {
    return LayoutIsWithin(unit, kBlockSeparator, kOtherNeutral);
}
BOOL CT_CharProperties::sb_LayoutNoDirectionality(char16_t unit) {
    return LayoutIs(unit, kNoDirectionality);
}

BOOL CT_CharProperties::sb_IsTPNonspacing(char16_t unit) {
    return HasProcessing(unit, 0x0001);
}
BOOL CT_CharProperties::sb_IsTPDiacritic(char16_t unit) {
    return HasProcessing(unit, 0x0002);
}
BOOL CT_CharProperties::sb_IsTPVowelMark(char16_t unit) {
    return HasProcessing(unit, 0x0004);
}
BOOL CT_CharProperties::sb_IsTPSymbol(char16_t unit) {
    return HasProcessing(unit, 0x0008);
}
BOOL CT_CharProperties::sb_IsTPKatakana(char16_t unit) {
    return HasProcessing(unit, 0x0010);
}
BOOL CT_CharProperties::sb_IsTPHiragana(char16_t unit) {
    return HasProcessing(unit, 0x0020);
}
BOOL CT_CharProperties::sb_IsTPHalfwidth(char16_t unit) {
    return HasProcessing(unit, 0x0040);
}
BOOL CT_CharProperties::sb_IsTPFullwidth(char16_t unit) {
    return HasProcessing(unit, 0x0080);
}
BOOL CT_CharProperties::sb_IsTPIdeograph(char16_t unit) {
    return HasProcessing(unit, 0x0100);
}
BOOL CT_CharProperties::sb_IsTPKashida(char16_t unit) {
    return HasProcessing(unit, 0x0200);
}
BOOL CT_CharProperties::sb_IsTPLexical(char16_t unit) {
    return HasProcessing(unit, 0x0400);
}
BOOL CT_CharProperties::sb_IsTPAlpha(char16_t unit) {
    return HasProcessing(unit, 0x8000);
}
