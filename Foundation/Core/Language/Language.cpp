#include "Foundation/Core/Language/Language.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "Foundation/Core/Language/Internal/Tables/LanguageTable.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Locales/Locales.h"
#include "Foundation/Platform/Runtime.h"

namespace platform = zelkor::platform;

using zelkor::detail::kPrimaryRows;
using zelkor::detail::kSubRows;
using zelkor::detail::PrimaryRow;
using zelkor::detail::SubRow;

namespace {

using Primary = CT_Language::et_Primary;
using Sub = CT_Language::et_Sub;
using Text = std::u16string_view;

constexpr std::uint8_t kNoRow = 0xFF;

// ---- The catalogue's indexes, made while compiling ----------------------------------------------

// Row by the value of a field; the values are unique.
template <std::size_t kSize, typename Rows, typename Field>
consteval std::array<std::uint8_t, kSize> IndexRows(const Rows& rows, Field field) {
    std::array<std::uint8_t, kSize> index{};
    index.fill(kNoRow);
    for (std::size_t row = 0; row < rows.size(); ++row) {
        std::uint8_t& place = index.at(rows[row].*field);
        if (place != kNoRow) throw "two rows with one value";
        place = static_cast<std::uint8_t>(row);
    }
    return index;
}

constexpr auto kRowOfPrimary = IndexRows<kPrimaryRows.size()>(kPrimaryRows, &PrimaryRow::value);
constexpr auto kRowOfNumber = IndexRows<0x82>(kPrimaryRows, &PrimaryRow::number);
constexpr auto kRowOfSub = IndexRows<kSubRows.size()>(kSubRows, &SubRow::value);

struct Group {
    std::uint8_t first;
    std::uint8_t count;
};

// The sub-languages of every primary row.
consteval auto FindGroups() {
    std::array<Group, kPrimaryRows.size()> groups{};
    std::size_t grouped = 0;
    for (std::size_t row = 0; row < groups.size(); ++row) {
        const std::uint16_t number = kPrimaryRows[row].number;
        std::size_t first = 0;
        while (first < kSubRows.size() && kSubRows[first].primary_number != number) ++first;
        std::size_t end = first;
        while (end < kSubRows.size() && kSubRows[end].primary_number == number) ++end;
        groups[row] = {static_cast<std::uint8_t>(first), static_cast<std::uint8_t>(end - first)};
        grouped += end - first;
    }
    if (grouped != kSubRows.size()) throw "a language's rows are not consecutive";
    return groups;
}

constexpr auto kGroups = FindGroups();

// The units of a code as one number, in the upper three quarters; 0 for a longer text.
constexpr std::uint64_t CodeKey(Text code) {
    if (code.size() > 3) return 0;
    std::uint64_t key = 0;
    for (std::size_t i = 0; i < code.size(); ++i) key |= std::uint64_t{code[i]} << (48 - 16 * i);
    return key;
}

// The codes in order, each with its row in the lowest quarter.
consteval auto SortCodes() {
    std::array<std::uint64_t, kPrimaryRows.size()> codes{};
    for (std::size_t row = 0; row < codes.size(); ++row) {
        codes[row] = CodeKey(kPrimaryRows[row].code) | row;
    }
    std::ranges::sort(codes);
    for (std::size_t at = 1; at < codes.size(); ++at) {
        if (codes[at - 1] >> 16 == codes[at] >> 16) throw "two languages with one code";
    }
    return codes;
}

constexpr auto kCodes = SortCodes();

// ---- Rows ---------------------------------------------------------------------------------------

const PrimaryRow* RowOf(Primary primary) {
    return primary < kRowOfPrimary.size() ? &kPrimaryRows[kRowOfPrimary[primary]] : nullptr;
}

const PrimaryRow* RowOfNumber(unsigned int number) {
    if (number >= kRowOfNumber.size() || kRowOfNumber[number] == kNoRow) return nullptr;
    return &kPrimaryRows[kRowOfNumber[number]];
}

// Null when no language has the code, as it stands.
const PrimaryRow* RowCoded(Text code) {
    const std::uint64_t key = CodeKey(code);
    const auto found = std::ranges::lower_bound(kCodes, key);
    if (found == kCodes.end() || *found >> 16 != key >> 16) return nullptr;
    return &kPrimaryRows[*found & 0xFFFF];
}

const SubRow* RowOf(Sub sub) {
    return sub < kRowOfSub.size() ? &kSubRows[kRowOfSub[sub]] : nullptr;
}

// Empty for a language without sub-languages and for a null row.
std::span<const SubRow> GroupOf(const PrimaryRow* row) {
    if (row == nullptr) return {};
    const Group group = kGroups[static_cast<std::size_t>(row - kPrimaryRows.data())];
    return std::span(kSubRows).subspan(group.first, group.count);
}

std::span<const SubRow> GroupOf(Primary primary) {
    return GroupOf(RowOf(primary));
}

// The sub-language that stands for "none given" or "not known".
Sub NeutralSub(std::span<const SubRow> group) {
    return group.empty() ? CT_Language::kSubDefault : CT_Language::kSubNeutral;
}

// Most rows begin with another letter, and are not compared further.
template <typename Rows, typename Row = typename Rows::value_type>
const Row* RowNamed(const Rows& rows, Text name) {
    if (name.empty()) return nullptr;  // no row has an empty name
    const auto row = std::ranges::find_if(rows, [name](const auto& candidate) {
        constexpr int kCaseBit = 0x20;
        return ((candidate.name[0] ^ name[0]) & ~kCaseBit) == 0 &&
               platform::CompareNoCase(Text(candidate.name), name) == 0;
    });
    return row == rows.end() ? nullptr : &*row;
}

// ---- The languages of Serbo-Croatian, which have names of their own -----------------------------

struct OwnName {
    Sub sub;
    Text name;
};

// Any other sub-language is plain Croatian, the last row.
constexpr auto kOwnNames = std::to_array<OwnName>({
    {CT_Language::kSerbianLatin, u"Serbian (Latin)"},
    {CT_Language::kSerbianCyrillic, u"Serbian (Cyrillic)"},
    {CT_Language::kBosnianLatin, u"Bosnian (Latin, Bosnia and Herzegovina)"},
    {CT_Language::kSerbianCyrillicBosnia, u"Serbian (Cyrillic, Bosnia and Herzegovina)"},
    {CT_Language::kSerbianLatinBosnia, u"Serbian (Latin, Bosnia and Herzegovina)"},
    {CT_Language::kCroatianBosnia, u"Croatian (Bosnia and Herzegovina)"},
    {CT_Language::kCroatian, u"Croatian"},
});

Text OwnNameOf(Sub sub) {
    const auto own = std::ranges::find(kOwnNames, sub, &OwnName::sub);
    return own == kOwnNames.end() ? kOwnNames.back().name : own->name;
}

// ---- Texts --------------------------------------------------------------------------------------

void Assign(CT_UString* text, Text value) {
    text->v_Set(value.data(), static_cast<std::uint32_t>(value.size()));
}

// The next run of characters that are not parentheses, without white space around it. Removes it
// from `rest`.
Text NextPart(Text& rest) {
    constexpr Text kParentheses = u"()";
    rest.remove_prefix(std::min(rest.find_first_not_of(kParentheses), rest.size()));
    Text part = rest.substr(0, rest.find_first_of(kParentheses));
    rest.remove_prefix(part.size());
    const auto blank = [](char16_t unit) { return platform::IsSpace(unit); };
    const auto first = std::ranges::find_if_not(part, blank);
    part.remove_prefix(static_cast<std::size_t>(first - part.begin()));
    while (!part.empty() && blank(part.back())) part.remove_suffix(1);
    return part;
}

struct CodeParts {
    Text language;
    Text country;  // empty: none given
};

// Up to four characters are looked at for the end of the language. The last one looked at separates
// when something follows it.
CodeParts SplitCode(Text code) {
    std::size_t looked_at = 0;
    while (looked_at < std::min<std::size_t>(code.size(), 4) &&
           platform::IsCharAlpha(code[looked_at++])) {
    }
    if (looked_at == code.size()) return {code, {}};
    return {code.substr(0, looked_at - 1), code.substr(looked_at)};
}

}  // namespace

// ---- Walking the catalogue ----------------------------------------------------------------------

unsigned int CT_Language::sn_GetPrimaryCount() {
    return static_cast<unsigned int>(kPrimaryRows.size() - 1);
}

unsigned int CT_Language::sn_GetSubCount(et_Primary primary) {
    return static_cast<unsigned int>(GroupOf(primary).size());
}

CT_Language::et_Sub CT_Language::seo_GetSubAt(et_Primary primary, unsigned int index) {
    if (index == 0) return kSubDefault;
    const PrimaryRow* row = RowOf(primary);
    if (row == nullptr) return kSubNeutral;
    const std::span group = GroupOf(row);
    return index > group.size() ? kSubDefault : group[index - 1].value;
}

// ---- Names and codes of the parts ---------------------------------------------------------------

const char16_t* CT_Language::sqcuz_GetLanguageCode(et_Primary primary) {
    const PrimaryRow* row = RowOf(primary);
    return row == nullptr ? nullptr : row->code;
}

const char16_t* CT_Language::sqcuz_GetLanguage(et_Primary primary) {
    const PrimaryRow* row = RowOf(primary);
    return row == nullptr ? nullptr : row->name;
}

const char16_t* CT_Language::sqcuz_GetCountryCode(et_Sub sub) {
    const SubRow* row = RowOf(sub);
    return row == nullptr ? nullptr : row->code;
}

const char16_t* CT_Language::sqcuz_GetCountry(et_Sub sub) {
    const SubRow* row = RowOf(sub);
    return row == nullptr ? nullptr : row->name;
}

BOOL CT_Language::sb_GetPrimary(et_Primary* primary, const char16_t* code) {
    const PrimaryRow* row = code == nullptr ? nullptr : RowCoded(code);
    if (row == nullptr || primary == nullptr) return FALSE;
    *primary = row->value;
    return TRUE;
}

BOOL CT_Language::sb_GetPrimaryLanguage(et_Primary* primary, const char16_t* name) {
    const PrimaryRow* row = name == nullptr ? nullptr : RowNamed(kPrimaryRows, name);
    if (row == nullptr || primary == nullptr) return FALSE;
    *primary = row->value;
    return TRUE;
}

BOOL CT_Language::sb_GetSubCountry(et_Sub* sub, const char16_t* name, et_Primary primary) {
    const SubRow* row = name == nullptr ? nullptr : RowNamed(GroupOf(primary), name);
    if (row == nullptr || sub == nullptr) return FALSE;
    *sub = row->value;
    return TRUE;
}

// ---- Language identifiers -----------------------------------------------------------------------

unsigned int CT_Language::sn_MakeLanguageID(et_Primary primary, et_Sub sub) {
    const PrimaryRow* row = RowOf(primary);
    if (row == nullptr) return 0;
    if (sub <= kSubSysDefault) return row->number | sub << 10;
    const std::span group = GroupOf(row);
    const auto own = std::ranges::find(group, sub, &SubRow::value);
    const unsigned int sub_number = own == group.end() ? 1u : own->number;
    return row->number | sub_number << 10;
}

void CT_Language::sv_GetLanguages(unsigned int language_id, et_Primary* primary, et_Sub* sub) {
    if (primary != nullptr) *primary = seo_GetPrimary(language_id);
    if (sub != nullptr) *sub = seo_GetSub(language_id);
}

CT_Language::et_Primary CT_Language::seo_GetPrimary(unsigned int language_id) {
    const PrimaryRow* row = RowOfNumber(language_id & 0x3FF);
    return row == nullptr ? kNeutral : row->value;
}

CT_Language::et_Sub CT_Language::seo_GetSub(unsigned int language_id) {
    const PrimaryRow* row = RowOfNumber(language_id & 0x3FF);
    if (row == nullptr) return kSubNeutral;
    const std::span group = GroupOf(row);
    const auto own = std::ranges::find(group, language_id >> 10 & 0x3F, &SubRow::number);
    return own == group.end() ? NeutralSub(group) : own->value;
}

// ---- Display names and codes of the whole -------------------------------------------------------

void CT_Language::sv_MakeLanguageString(CT_UString* text, et_Primary primary, et_Sub sub) {
    if (text == nullptr) return;
    if (primary == kSerboCroatian) return Assign(text, OwnNameOf(sub));
    const PrimaryRow* row = RowOf(primary);
    Assign(text, row == nullptr ? Text() : Text(row->name));
    const SubRow* country = RowOf(sub);
    if (GroupOf(row).empty() || sub == kSubNeutral || country == nullptr) return;
    text->v_Append(u" (");
    text->v_Append(country->name);
    text->v_Append(u')');
}

unsigned int CT_Language::sn_GetLanguageID(const char16_t* text) {
    Text rest = text == nullptr ? Text() : Text(text);
    const auto own = std::ranges::find(kOwnNames, rest, &OwnName::name);
    if (own != kOwnNames.end()) return sn_MakeLanguageID(kSerboCroatian, own->sub);

    const PrimaryRow* language = RowNamed(kPrimaryRows, NextPart(rest));
    const et_Primary primary = language == nullptr ? kNeutral : language->value;
    const SubRow* country = RowNamed(GroupOf(primary), NextPart(rest));
    return sn_MakeLanguageID(primary, country == nullptr ? kSubDefault : country->value);
}

void CT_Language::sv_MakeLanguageCode(CT_UString* text, et_Primary primary, et_Sub sub) {
    if (text == nullptr) return;
    const PrimaryRow* row = RowOf(primary);
    Assign(text, row == nullptr ? Text() : Text(row->code));
    if (primary == kSerboCroatian && sub > kSubDefault &&
        std::ranges::find(kOwnNames, sub, &OwnName::sub) == kOwnNames.end()) {
        sub = kCroatian;
    }
    const SubRow* country = RowOf(sub);
    if (GroupOf(row).empty() || sub == kSubNeutral || country == nullptr) return;
    text->v_Append(u'-');
    text->v_Append(country->code);
}

BOOL CT_Language::sb_GetLanguages(et_Primary* primary, et_Sub* sub, const CT_UString* code) {
    if (primary == nullptr || sub == nullptr) return FALSE;
    if (code == nullptr || code->n_GetLength() < 2) return FALSE;
    // No code of the catalogue is longer than 3 characters, so that a longer part is never found.
    char16_t upper[9] = {};
    const Text whole = zelkor::detail::View(*code).substr(0, std::size(upper) - 1);
    std::ranges::transform(whole, upper, [](char16_t unit) { return platform::ToUpper(unit); });
    const CodeParts parts = SplitCode(Text(upper, whole.size()));

    const PrimaryRow* row = RowCoded(parts.language);
    if (row == nullptr) return FALSE;
    *primary = row->value;

    const std::span group = GroupOf(row);
    if (parts.country.empty() || group.empty()) {
        *sub = NeutralSub(group);
    } else if (parts.country == u"01") {
        *sub = kSubDefault;
    } else if (parts.country == u"00") {
        *sub = kSubNeutral;
    } else {
        const auto own = std::ranges::find(
            group, parts.country, [](const SubRow& candidate) { return Text(candidate.code); });
        if (own == group.end()) return FALSE;
        *sub = own->value;
    }
    return TRUE;
}

// ---- Classes of languages -----------------------------------------------------------------------

BOOL CT_Language::sb_IsFarEastLanguage(et_Primary primary) {
    return primary == kChinese || primary == kJapanese || primary == kKorean || primary == kThai;
}

BOOL CT_Language::sb_IsBiDiLanguage(et_Primary primary) {
    return primary == kArabic || primary == kHebrew || primary == kFarsi || primary == kDivehi ||
           primary == kSyriac;
}

BOOL CT_Language::sb_IsBiDiLanguage(unsigned int language_id) {
    return sb_IsBiDiLanguage(seo_GetPrimary(language_id));
}

BOOL CT_Language::sb_IsZELKORDefined(et_Primary primary, et_Sub /*sub*/) {
    return primary == kMaltese || primary == kGaelic || primary == kTagalog;
}
