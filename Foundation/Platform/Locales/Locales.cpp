#include "Foundation/Platform/Locales/Locales.h"

#include <algorithm>
#include <array>

#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Locales/Internal/LocaleDetail.h"

namespace zelkor::platform {
namespace {

using nls::FindRow;

constexpr LCID kInvariant = 0x007F;
constexpr std::uint32_t kSortNameType = 0x1013;
constexpr int kSignatureUnits = 16;

// The locales that have a sort order beside the ordinary one.
struct AlternateSort {
    LCID lcid;
    const char16_t name[13];
};
constexpr auto kAlternateSorts = std::to_array<AlternateSort>({{0x00010404, u"Unicode"},
                                                               {0x00010407, u"Phone Book"},
                                                               {0x0001040E, u"Technical"},
                                                               {0x00010411, u"Unicode"},
                                                               {0x00010412, u"Unicode"},
                                                               {0x00010437, u"Modern"},
                                                               {0x00010804, u"Unicode"},
                                                               {0x00020804, u"Stroke Count"},
                                                               {0x00021004, u"Stroke Count"},
                                                               {0x00030404, u"Bopomofo"}});

const AlternateSort* FindAlternate(LCID lcid) noexcept {
    const auto found = std::ranges::find(kAlternateSorts, lcid, &AlternateSort::lcid);
    return found == kAlternateSorts.end() ? nullptr : &*found;
}

// Sign orders, code pages, country codes and the like; 0x01 and 0x09 are hexadecimal.
constexpr bool IsNumeric(std::uint32_t type) noexcept {
    constexpr auto kTypes = std::to_array<std::uint32_t>(
        {0x0001, 0x0005, 0x0009, 0x000A, 0x000B, 0x000D, 0x0011, 0x0012, 0x0019,
         0x001A, 0x001B, 0x001C, 0x0021, 0x0022, 0x0023, 0x0024, 0x0025, 0x0026,
         0x0027, 0x0052, 0x0053, 0x0054, 0x0055, 0x0056, 0x0057, 0x1004, 0x1005,
         0x1009, 0x100A, 0x100B, 0x100C, 0x100D, 0x1010, 0x1011, 0x1012, 0x1014});
    return std::ranges::binary_search(kTypes, type);
}

// The value of a numeric type.
std::uint32_t NumberIn(std::u16string_view text, std::uint32_t type) noexcept {
    return nls::NumberOf(text, type == 0x0001 || type == 0x0009 ? 16 : 10);
}

constexpr bool IsMonthName(std::uint32_t type) noexcept {
    return type >= kLocaleMonthName1 && type < kLocaleMonthName1 + 12;
}

// Whether the type, of which only the number is left, may carry the flags.
constexpr bool TakesFlags(std::uint32_t type, std::uint32_t flags) noexcept {
    if ((flags & kLocaleReturnNumber) != 0 && !IsNumeric(type)) return false;
    return (flags & kLocaleGenitiveNames) == 0 || IsMonthName(type) || type == kLocaleMonthName13;
}

int Refuse(std::uint32_t error) noexcept {
    SetLastError(error);
    return 0;
}

// Units without a zero after them.
int CopyUnits(std::u16string_view units, char16_t* out, int capacity) noexcept {
    const int needed = static_cast<int>(units.size());
    if (capacity == 0) return needed;
    if (capacity < needed) return Refuse(kErrorInsufficientBuffer);
    std::ranges::copy(units, out);
    return needed;
}

void WriteHexadecimal(LCID lcid, char16_t (&out)[9]) noexcept {
    for (unsigned i = 0; i < 8; ++i) out[i] = u"0123456789ABCDEF"[lcid >> (28 - 4 * i) & 0xF];
    out[8] = 0;
}

}  // namespace

namespace nls {

std::optional<std::uint32_t> FindRow(LCID lcid) noexcept {
    lcid = WithoutDefaults(lcid);
    if (lcid > 0xFFFF) {
        if (FindAlternate(lcid) == nullptr) return std::nullopt;
        lcid &= 0xFFFF;
    }
    const std::uint32_t primary = lcid & 0x3FF;
    if (primary >= kPrimaryLanguages) return std::nullopt;
    const std::uint32_t first = kFirstRows[primary];
    const std::uint32_t count = kFirstRows[primary + 1] - first;
    const std::uint32_t sub = lcid >> 10;
    if (sub >= 1 && sub <= count) return first + sub - 1;
    if (lcid == kInvariant) return kInvariantRow;
    if (count == 0 || sub != 0) return std::nullopt;
    return first;
}

int CopyText(std::u16string_view text, char16_t* out, int capacity) noexcept {
    return CopyUnits({text.data(), text.size() + 1}, out, capacity);
}

std::uint32_t NumberOf(std::u16string_view text, std::uint32_t base) noexcept {
    const bool negative = text.starts_with(u'-');
    std::uint32_t number = 0;
    for (const char16_t unit : text.substr(negative ? 1 : 0)) {
        number = number * base + static_cast<std::uint32_t>(unit <= u'9' ? unit - u'0' : unit - 55);
    }
    return negative ? 0 - number : number;
}

}  // namespace nls

bool IsValidLocale(LCID lcid, std::uint32_t which) noexcept {
    return (which == kLocaleInstalled || which == kLocaleSupported) && FindRow(lcid).has_value();
}

LCID ResolveLocale(LCID lcid) noexcept {
    lcid = WithoutDefaults(lcid);  // once: another thread may be changing the defaults
    const std::optional<std::uint32_t> row = FindRow(lcid);
    return row ? (lcid & 0xFFFF0000) | nls::kRowLanguages[*row] : 0;
}

std::uint32_t LocaleCount() noexcept {
    return nls::kLocaleRows;
}

LCID LocaleAt(std::uint32_t index) noexcept {
    return nls::kRowLanguages[index];
}

bool EnumSystemLocales(LocaleUse use, std::uint32_t which) {
    if (use == nullptr) return Refuse(kErrorInvalidParameter) != 0;
    constexpr std::uint32_t kAll = kLocaleInstalled | kLocaleSupported | kLocaleAlternateSorts;
    if (which == 0 || (which & ~kAll) != 0) return Refuse(kErrorInvalidFlags) != 0;
    char16_t text[9];
    if ((which & ~kLocaleAlternateSorts) != 0) {
        for (std::uint32_t row = 0; row < nls::kLocaleRows; ++row) {
            WriteHexadecimal(nls::kRowLanguages[row], text);
            if (use(text) == FALSE) return true;
        }
    }
    if ((which & kLocaleAlternateSorts) != 0) {
        for (const AlternateSort& sort : kAlternateSorts) {
            WriteHexadecimal(sort.lcid, text);
            if (use(text) == FALSE) return true;
        }
    }
    return true;
}

std::optional<std::u16string_view> LocaleText(LCID lcid, std::uint32_t type) noexcept {
    const std::uint32_t number = type & ~nls::kTypeFlags;
    const std::optional<std::uint32_t> column = nls::ColumnOf(number);
    if (!column || !TakesFlags(number, type & kLocaleGenitiveNames)) return std::nullopt;
    lcid = WithoutDefaults(lcid);
    const std::optional<std::uint32_t> row = FindRow(lcid);
    if (!row) return std::nullopt;
    if (number == kLocaleFontSignature) {
        return std::u16string_view(nls::kLocaleSignatures[*row], kSignatureUnits);
    }
    if (number == kSortNameType) {
        if (const AlternateSort* sort = FindAlternate(lcid)) return sort->name;
    }
    if ((type & kLocaleGenitiveNames) != 0 && IsMonthName(number)) {
        return nls::TextAt(*row, nls::kGenitiveMonthColumn + number - kLocaleMonthName1);
    }
    return nls::TextAt(*row, *column);
}

std::optional<std::uint32_t> LocaleNumber(LCID lcid, std::uint32_t type) noexcept {
    const std::uint32_t number = type & ~nls::kTypeFlags;
    if (!IsNumeric(number)) return std::nullopt;
    const std::optional<std::u16string_view> text = LocaleText(lcid, number);
    if (!text) return std::nullopt;
    return NumberIn(*text, number);
}

int GetLocaleInfo(LCID lcid, std::uint32_t type, char16_t* out, int capacity) noexcept {
    if (capacity < 0 || (capacity > 0 && out == nullptr)) return Refuse(kErrorInvalidParameter);
    const std::uint32_t number = type & ~nls::kTypeFlags;
    if (!nls::ColumnOf(number) || !TakesFlags(number, type & nls::kTypeFlags)) {
        return Refuse(kErrorInvalidFlags);
    }
    const std::optional<std::u16string_view> text = LocaleText(lcid, type);
    if (!text) return Refuse(kErrorInvalidParameter);
    if ((type & kLocaleReturnNumber) != 0) {
        const std::uint32_t value = NumberIn(*text, number);
        const char16_t units[] = {static_cast<char16_t>(value & 0xFFFF),
                                  static_cast<char16_t>(value >> 16)};
        return CopyUnits({units, 2}, out, capacity);
    }
    return number == kLocaleFontSignature ? CopyUnits(*text, out, capacity)
                                          : nls::CopyText(*text, out, capacity);
}

std::optional<LocaleSignature> GetLocaleSignature(LCID lcid) noexcept {
    const std::optional<std::u16string_view> units = LocaleText(lcid, kLocaleFontSignature);
    if (!units) return std::nullopt;
    const auto word = [&units](std::size_t index) {
        return (*units)[2 * index] | static_cast<std::uint32_t>((*units)[2 * index + 1]) << 16;
    };
    return LocaleSignature{
        {word(0), word(1), word(2), word(3)}, {word(4), word(5)}, {word(6), word(7)}};
}

}  // namespace zelkor::platform
