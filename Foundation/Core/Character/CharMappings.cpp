#include "Foundation/Core/Character/CharMappings.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "Foundation/Core/Character/Internal/Tables/MappingTables.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Text/UnitMaps.h"

namespace platform = zelkor::platform;

namespace {

using namespace zelkor::detail;
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

// A unit's row among the decompositions: three units, and how many of them count.
const auto& DecompositionRow(char16_t unit) {
    const unsigned int block = kDecompositionStage[unit >> kMappingShift];
    return kDecompositions[kDecompositionBlocks[(block << kMappingShift) +
                                                (unit & ((1U << kMappingShift) - 1))]];
}

constexpr bool IsHighSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}

// Whether none of four units is above U+007F.
bool AreAscii(const char16_t* units) {
    std::uint64_t four;
    std::memcpy(&four, units, sizeof four);
    return (four & 0xFF80'FF80'FF80'FF80U) == 0;
}

// A text's decomposition in pieces, each from so many units, or from one more when the last is a
// high surrogate. A zero after such a one ends no pair and is left out.
class Decomposer {
public:
    explicit Decomposer(std::u16string_view text) : text_(text) {}

    // The next piece, empty at the end; good until the next call.
    std::u16string_view Next() {
        const std::size_t stop = std::min(from_ + kPiece, text_.size());
        const char16_t* const text = text_.data();
        char16_t* to = area_;
        std::size_t i = from_;
        while (i < stop) {
            if (stop - i >= 4 && AreAscii(text + i)) {
                std::copy_n(text + i, 4, to);
                i += 4;
                to += 4;
                continue;
            }
            const char16_t unit = text[i++];
            const auto& row = DecompositionRow(unit);
            std::copy_n(row, 4, to);  // no branch; what does not count is written over
            *to = row[0] == 0 ? unit : row[0];
            to += row[3];
            if (IsHighSurrogate(unit) && i < text_.size()) {
                if (text[i] != 0) *to++ = text[i];
                ++i;
            }
        }
        from_ = i;
        return {area_, to};
    }

private:
    static constexpr std::size_t kPiece = 256;

    std::u16string_view text_;
    std::size_t from_ = 0;
    char16_t area_[3 * kPiece + 4];
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
    const auto& row = DecompositionRow(unit);
    if (out != nullptr && row[3] > 1) out->vv_Init(row, row[3]);
    return row[3];
}

void CT_CharMappings::sv_Decompose(const CT_UString* source, CT_UString* destination) {
    if (source == nullptr || destination == nullptr) return;
    const CT_UString kept(*source);  // they may be one string
    destination->vv_SetSize(kept.n_GetLength(), FALSE);
    Decomposer decomposer(View(kept));
    for (auto piece = decomposer.Next(); !piece.empty(); piece = decomposer.Next()) {
        destination->v_Append(piece.data(), static_cast<std::uint32_t>(piece.size()));
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
