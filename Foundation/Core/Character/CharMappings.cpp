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
    return {kLowerStage, kCaseBlocks, kFirstAboveLower, true, u'A', u'Z', 'a' - 'A'};
}
constexpr UnitMap UpperMap() {
    return {kUpperStage, kCaseBlocks, kFirstAboveUpper, true, u'a', u'z', 'A' - 'a'};
}
constexpr UnitMap BaseMap() {
    return {kBaseStage, kMappingBlocks, kFirstAboveBase, true};
}
constexpr UnitMap DigitMap() {
    return {kDigitStage, kMappingBlocks, kFirstAboveDigit, true};
}
constexpr UnitMap ZoneMap() {
    return {kZoneStage, kMappingBlocks, kFirstAboveZone, true};
}
constexpr UnitMap KatakanaMap() {
    return {kKatakanaStage, kMappingBlocks, kFirstAboveKatakana};
}
constexpr UnitMap HiraganaMap() {
    return {kHiraganaStage, kMappingBlocks, kFirstAboveHiragana};
}

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
