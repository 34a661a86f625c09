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

constexpr UnitMap::Range Shift(char16_t first, char16_t last, char16_t first_becomes) {
    return {first, last, static_cast<std::uint16_t>(first_becomes - first)};
}

constexpr UnitMap LowerMap() {
    return {kLowerStage,
            kCaseBlocks,
            0x0100,
            kFirstAboveLower,
            {Shift(u'A', u'Z', u'a'), Shift(0xC0, 0xD6, 0xE0), Shift(0xD8, 0xDE, 0xF8)}};
}
constexpr UnitMap UpperMap() {
    return {kUpperStage,
            kCaseBlocks,
            0x00FF,
            kFirstAboveUpper,
            {Shift(u'a', u'z', u'A'), Shift(0xE0, 0xF6, 0xC0), Shift(0xF8, 0xFE, 0xD8)}};
}
constexpr UnitMap BaseMap() {
    return {kBaseStage, kMappingBlocks, 0x00C0, kFirstAboveBase, {}};
}
constexpr UnitMap DigitMap() {
    return {kDigitStage, kMappingBlocks, 0x00B2, kFirstAboveDigit, {}};
}
constexpr UnitMap ZoneMap() {
    return {kZoneStage, kMappingBlocks, kFirstAboveZone, kFirstAboveZone, {}};
}
// Both kana mappings widen ASCII but for the backslash.
constexpr UnitMap KanaMap(const std::uint8_t* stage, char16_t first_above) {
    return {stage,
            kMappingBlocks,
            0x00A2,
            first_above,
            {Shift(u' ', u' ', 0x3000), Shift(u'!', u'[', 0xFF01), Shift(u']', u'~', 0xFF3D)}};
}
constexpr UnitMap KatakanaMap() {
    return KanaMap(kKatakanaStage, kFirstAboveKatakana);
}
constexpr UnitMap HiraganaMap() {
    return KanaMap(kHiraganaStage, kFirstAboveHiragana);
}
static_assert(LowerMap().RangesHold() && UpperMap().RangesHold() && BaseMap().RangesHold() &&
              DigitMap().RangesHold() && ZoneMap().RangesHold() && KatakanaMap().RangesHold() &&
              HiraganaMap().RangesHold());

// The decomposition of a unit, empty when it has none.
std::u16string_view DecompositionOf(char16_t unit) {
    const unsigned int block = kDecompositionStage[unit >> kMappingShift];
    const unsigned int number =
        kDecompositionBlocks[(block << kMappingShift) + (unit & ((1U << kMappingShift) - 1))];
    if (number == 0) return {};
    const auto& units = kDecompositions[number - 1];
    return {units, units[2] == 0 ? 2U : 3U};
}

// Appends to a string in few large pieces.
class Gatherer {
public:
    explicit Gatherer(CT_UString& out) : out_(out) {}

    void Add(std::u16string_view units) {
        if (units.size() > std::size(area_) - used_) Flush();
        if (units.size() > std::size(area_)) {
            out_.v_Append(units.data(), static_cast<std::uint32_t>(units.size()));
        } else {
            std::ranges::copy(units, area_ + used_);
            used_ += units.size();
        }
    }
    void Flush() {
        out_.v_Append(area_, static_cast<std::uint32_t>(used_));
        used_ = 0;
    }

private:
    CT_UString& out_;
    char16_t area_[512];
    std::size_t used_ = 0;
};

}  // namespace

char16_t CT_CharMappings::su_ToBase(char16_t unit) {
    return BaseMap()(unit);
}
char16_t CT_CharMappings::su_FoldDigit(char16_t unit) {
    return DigitMap()(unit);
}
char16_t CT_CharMappings::su_FoldCZone(char16_t unit) {
    return ZoneMap()(unit);
}
char16_t CT_CharMappings::su_HiraganaToKatakana(char16_t unit) {
    return KatakanaMap()(unit);
}
char16_t CT_CharMappings::su_KatakanaToHiragana(char16_t unit) {
    return HiraganaMap()(unit);
}

void CT_CharMappings::sv_ToLower(CT_UString* text) {
    sv_MapString(text, LowerMap());
}
void CT_CharMappings::sv_ToUpper(CT_UString* text) {
    sv_MapString(text, UpperMap());
}
void CT_CharMappings::sv_ToBase(CT_UString* text) {
    sv_MapString(text, BaseMap());
}
void CT_CharMappings::sv_FoldDigit(CT_UString* text) {
    sv_MapString(text, DigitMap());
}
void CT_CharMappings::sv_FoldCZone(CT_UString* text) {
    sv_MapString(text, ZoneMap());
}
void CT_CharMappings::sv_HiraganaToKatakana(CT_UString* text) {
    sv_MapString(text, KatakanaMap());
}
void CT_CharMappings::sv_KatakanaToHiragana(CT_UString* text) {
    sv_MapString(text, HiraganaMap());
}

unsigned int CT_CharMappings::sn_Decompose(char16_t unit, CT_UString* out) {
    const std::u16string_view units = DecompositionOf(unit);
    if (units.empty()) return 1;
    const auto count = static_cast<unsigned int>(units.size());
    if (out != nullptr) out->vv_Init(units.data(), count);
    return count;
}

void CT_CharMappings::sv_Decompose(const CT_UString* source, CT_UString* destination) {
    if (source == nullptr || destination == nullptr) return;
    const CT_UString kept(*source);  // they may be one string
    const std::u16string_view text = View(kept);
    const UnitMap bases = BaseMap();  // just what is decomposed has another base letter
    destination->vv_SetSize(kept.n_GetLength(), FALSE);
    Gatherer gatherer(*destination);
    for (std::size_t from = 0; from < text.size();) {
        const std::size_t at = platform::FindMapped(text.data(), from, text.size(), bases);
        gatherer.Add(text.substr(from, at - from));
        if (at != text.size()) gatherer.Add(DecompositionOf(text[at]));
        from = at + 1;
    }
    gatherer.Flush();
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
