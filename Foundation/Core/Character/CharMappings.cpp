#include "Foundation/Core/Character/CharMappings.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "Foundation/Core/Character/Tables/MappingTables.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Nls/UnitMaps.h"

namespace {

using namespace foundation::detail;
using platform::UnitMap;

static_assert(kCaseShift == UnitMap::kShift && kMappingShift == UnitMap::kShift);

constexpr UnitMap LowerMap() {
    return {kLowerStage, kCaseBlocks, true, u'A', u'Z', 'a' - 'A'};
}
constexpr UnitMap UpperMap() {
    return {kUpperStage, kCaseBlocks, true, u'a', u'z', 'A' - 'a'};
}
// The base letter, digit and compatibility-zone maps leave ASCII as it is.
constexpr UnitMap AsciiKeepingMap(const std::uint8_t* stage) {
    return {stage, kMappingBlocks, true};
}
constexpr UnitMap KanaMap(const std::uint8_t* stage) {
    return {stage, kMappingBlocks};
}

// The decomposition of a unit, empty when it has none.
std::u16string_view DecompositionOf(char16_t unit) {
    const auto* const found =
        std::ranges::lower_bound(kDecompositions, unit, {}, &Decomposition::code);
    if (found == std::end(kDecompositions) || found->code != unit) return {};
    return {found->units, found->units[2] == 0 ? 2U : 3U};
}

}  // namespace

char16_t CT_CharMappings::su_ToBase(char16_t unit) {
    return AsciiKeepingMap(kBaseStage)(unit);
}
char16_t CT_CharMappings::su_FoldDigit(char16_t unit) {
    return AsciiKeepingMap(kDigitStage)(unit);
}
char16_t CT_CharMappings::su_FoldCZone(char16_t unit) {
    return AsciiKeepingMap(kZoneStage)(unit);
}
char16_t CT_CharMappings::su_HiraganaToKatakana(char16_t unit) {
    return KanaMap(kKatakanaStage)(unit);
}
char16_t CT_CharMappings::su_KatakanaToHiragana(char16_t unit) {
    return KanaMap(kHiraganaStage)(unit);
}

void CT_CharMappings::sv_ToLower(CT_UString* text) {
    sv_MapString(text, LowerMap());
}
void CT_CharMappings::sv_ToUpper(CT_UString* text) {
    sv_MapString(text, UpperMap());
}
void CT_CharMappings::sv_ToBase(CT_UString* text) {
    sv_MapString(text, AsciiKeepingMap(kBaseStage));
}
void CT_CharMappings::sv_FoldDigit(CT_UString* text) {
    sv_MapString(text, AsciiKeepingMap(kDigitStage));
}
void CT_CharMappings::sv_FoldCZone(CT_UString* text) {
    sv_MapString(text, AsciiKeepingMap(kZoneStage));
}
void CT_CharMappings::sv_HiraganaToKatakana(CT_UString* text) {
    sv_MapString(text, KanaMap(kKatakanaStage));
}
void CT_CharMappings::sv_KatakanaToHiragana(CT_UString* text) {
    sv_MapString(text, KanaMap(kHiraganaStage));
}

unsigned int CT_CharMappings::sn_Decompose(char16_t unit, CT_UString* out) {
    const std::u16string_view units = DecompositionOf(unit);
    if (units.empty()) return 1;
    const auto count = static_cast<unsigned int>(units.size());
    if (out != nullptr) out->vv_Init(units.data(), count);
    return count;
}

void CT_CharMappings::sv_Decompose(const CT_UString* source, CT_UString* destination) {
    // Only what has another base letter is decomposed; everything between goes over in one piece.
    if (source == nullptr || destination == nullptr) return;
    const CT_UString text(*source);
    const char16_t* const units = text.qcuz_Get();
    const std::uint32_t length = text.n_GetLength();
    const UnitMap bases = AsciiKeepingMap(kBaseStage);
    destination->vv_SetSize(length, FALSE);
    for (std::uint32_t at = 0; at < length;) {
        const auto next =
            static_cast<std::uint32_t>(platform::FindMapped(units, at, length, bases));
        if (next != at) destination->v_Append(units + at, next - at);
        if (next == length) break;
        const std::u16string_view parts = DecompositionOf(units[next]);
        destination->v_Append(parts.data(), static_cast<std::uint32_t>(parts.size()));
        at = next + 1;
    }
}

void CT_CharMappings::sv_Decompose(CT_UString* text) {
    sv_Decompose(text, text);
}

void CT_CharMappings::sv_MapString(CT_UString* text, const platform::UnitMap& map) {
    if (text == nullptr) return;
    const std::uint32_t length = text->n_GetLength();
    const std::size_t first = platform::FindMapped(text->qcuz_Get(), 0, length, map);
    if (first != length) platform::MapUnits(text->quz_Get(), first, length, map);
}
