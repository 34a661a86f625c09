// What is known about the calendars of a locale.
#include <algorithm>
#include <array>
#include <span>

#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Locales/Internal/LocaleDetail.h"
#include "Foundation/Platform/Locales/Locales.h"

namespace zelkor::platform {
namespace {

using nls::TextAt;

enum : std::uint32_t {
    kGregorian = 1,
    kGregorianEnglish = 2,
    kJapanese = 3,
    kTangun = 5,
    kHijri = 6,
    kHebrew = 8,
};
constexpr LCID kEnglish = 0x0409;

struct Era {
    std::uint16_t year, month, day;
    std::int16_t offset;
    const char16_t name[6];
    const char16_t first_year[6];  // as text
};
// Each calendar's eras, the current one first, in the order of the calendar numbers.
constexpr auto kEras = std::to_array<Era>({{0, 0, 0, 0, u"A.D.", u"1"},
                                           {0, 0, 0, 0, u"A.D.", u"1"},
                                           {2019, 5, 1, 2018, u"令和", u"2019"},
                                           {1989, 1, 8, 1988, u"平成", u"1989"},
                                           {1926, 12, 25, 1925, u"昭和", u"1926"},
                                           {1912, 7, 30, 1911, u"大正", u"1912"},
                                           {1868, 1, 1, 1867, u"明治", u"1868"},
                                           {1912, 1, 1, 1911, u"中華民國", u"1912"},
                                           {0, 0, 0, -2333, u"단기", u"-2332"},
                                           {0, 0, 0, 0, u"A.H.", u"622"},
                                           {0, 0, 0, -543, u"พ.ศ.", u"-542"},
                                           {0, 0, 0, 0, u"A.M.", u"-3760"}});
constexpr std::array<std::uint8_t, kCalendarCount + 1> kFirstEras{0, 1, 2, 7, 8, 9, 10, 11, 12};

// Last of the hundred years that two digits stand for: to the Gregorian year 2029, or within an
// era.
constexpr char16_t kTwoDigitMaxima[kCalendarCount][5] = {u"2029", u"2029", u"99",   u"99",
                                                         u"4362", u"1451", u"2572", u"5790"};
constexpr char16_t kNumbers[kCalendarCount][2] = {u"1", u"2", u"3", u"4", u"5", u"6", u"7", u"8"};

std::span<const Era> ErasOf(std::uint32_t calendar) noexcept {
    if (calendar - 1 >= kCalendarCount) return {};
    return std::span(kEras).subspan(kFirstEras[calendar - 1],
                                    kFirstEras[calendar] - kFirstEras[calendar - 1]);
}

constexpr bool IsWithin(std::uint32_t type, std::uint32_t first, std::uint32_t count) noexcept {
    return type >= first && type < first + count;
}

constexpr bool IsNumeric(std::uint32_t type) noexcept {
    return type == kCalendarNumber || type == kCalendarEraOffset ||
           type == kCalendarTwoDigitYearMax;
}

constexpr bool IsMonthName(std::uint32_t type) noexcept {
    return IsWithin(type, kCalendarMonthName1, 13);
}

constexpr bool TakesFlags(std::uint32_t type, std::uint32_t flags) noexcept {
    if ((flags & kLocaleReturnNumber) != 0 && !IsNumeric(type)) return false;
    return (flags & kLocaleGenitiveNames) == 0 || IsMonthName(type);
}

constexpr bool IsKnown(std::uint32_t type) noexcept {
    return IsWithin(type, kCalendarNumber, kCalendarTwoDigitYearMax);
}

// A type of the locale itself.
std::u16string_view Own(std::uint32_t row, std::uint32_t type) noexcept {
    return TextAt(row, *nls::ColumnOf(type));
}

// A date picture: the locale's, or for the calendars of eras the one whose year is that of an era.
std::u16string_view Picture(std::uint32_t row, std::uint32_t calendar, std::uint32_t type,
                            std::uint32_t era_column) noexcept {
    return calendar >= kJapanese && calendar <= kTangun ? TextAt(row, era_column) : Own(row, type);
}

std::u16string_view OtherMonth(std::uint32_t row, std::uint32_t column) noexcept {
    return &nls::kMonthTexts[nls::kMonthOffsets[row][column]];
}

// Whether the months of the calendar, which is not the Hebrew one, are not those of the locale's
// own types: the Hijri ones in most locales, all others where the locale counts by Hijri.
bool HasOtherMonths(std::uint32_t row, std::uint32_t calendar) noexcept {
    const char16_t own = Own(row, kLocaleCalendarType)[0];
    return (calendar == kHijri) != (own == kNumbers[kHijri - 1][0]);
}

std::u16string_view Month(std::uint32_t row, std::uint32_t calendar, std::uint32_t index,
                          bool genitive) noexcept {
    if (calendar == kHebrew) return OtherMonth(row, nls::kHebrewColumn + index);
    if (index == 12) return u"";
    if (HasOtherMonths(row, calendar)) return OtherMonth(row, nls::kOtherColumn + index);
    return genitive ? TextAt(row, nls::kGenitiveMonthColumn + index)
                    : Own(row, kLocaleMonthName1 + index);
}

std::u16string_view ShortMonth(std::uint32_t row, std::uint32_t calendar,
                               std::uint32_t index) noexcept {
    if (calendar == kHebrew) return OtherMonth(row, nls::kShortHebrewColumn + index);
    if (index == 12) return u"";
    if (HasOtherMonths(row, calendar)) return OtherMonth(row, nls::kShortOtherColumn + index);
    return Own(row, kLocaleShortMonthName1 + index);
}

// Requires a known calendar and type.
std::u16string_view Text(std::uint32_t row, std::uint32_t calendar, std::uint32_t type,
                         bool genitive) noexcept {
    if (type == kCalendarName) return TextAt(row, nls::kCalendarNameColumn + calendar - 1);
    if (calendar == kGregorianEnglish) row = *nls::FindRow(kEnglish);
    switch (type) {
        case kCalendarNumber:
            return kNumbers[calendar - 1];
        case kCalendarEraOffset:
            return ErasOf(calendar)[0].first_year;
        case kCalendarEraName:
            return calendar <= kGregorianEnglish ? TextAt(row, nls::kEraNameColumn)
                                                 : ErasOf(calendar)[0].name;
        case kCalendarShortDate:
            return Picture(row, calendar, kLocaleShortDate, nls::kEraShortDateColumn);
        case kCalendarLongDate:
            return Picture(row, calendar, kLocaleLongDate, nls::kEraLongDateColumn);
        case kCalendarYearMonth:
            return Picture(row, calendar, kLocaleYearMonth, nls::kEraYearMonthColumn);
        case kCalendarTwoDigitYearMax:
            return kTwoDigitMaxima[calendar - 1];
        default:
            break;
    }
    if (IsWithin(type, kCalendarDayName1, 7)) {
        return Own(row, kLocaleDayName1 + type - kCalendarDayName1);
    }
    if (IsWithin(type, kCalendarShortDayName1, 7)) {
        return Own(row, kLocaleShortDayName1 + type - kCalendarShortDayName1);
    }
    return IsMonthName(type) ? Month(row, calendar, type - kCalendarMonthName1, genitive)
                             : ShortMonth(row, calendar, type - kCalendarShortMonthName1);
}

int Refuse(std::uint32_t error) noexcept {
    SetLastError(error);
    return 0;
}

// Hands over one type of one calendar; false when `use` has had enough.
bool Hand(CalendarUse use, LCID lcid, std::uint32_t calendar, std::uint32_t type) {
    if (type != kCalendarEraOffset && type != kCalendarEraName) {
        return use(CalendarText(lcid, calendar, type)->data()) != FALSE;
    }
    const std::span eras = ErasOf(calendar);
    if (eras.size() == 1) return use(CalendarText(lcid, calendar, type)->data()) != FALSE;
    return std::ranges::all_of(eras, [=](const Era& era) {
        return use(type == kCalendarEraName ? era.name : era.first_year) != FALSE;
    });
}

}  // namespace

std::optional<std::u16string_view> CalendarText(LCID lcid, std::uint32_t calendar,
                                                std::uint32_t type) noexcept {
    const std::uint32_t number = type & ~nls::kTypeFlags;
    const std::optional<std::uint32_t> row = nls::FindRow(lcid);
    if (!row || calendar - 1 >= kCalendarCount || !IsKnown(number) ||
        !TakesFlags(number, type & kLocaleGenitiveNames)) {
        return std::nullopt;
    }
    return Text(*row, calendar, number, (type & kLocaleGenitiveNames) != 0);
}

std::uint32_t CalendarEraCount(std::uint32_t calendar) noexcept {
    return static_cast<std::uint32_t>(ErasOf(calendar).size());
}

CalendarEra CalendarEraAt(std::uint32_t calendar, std::uint32_t index) noexcept {
    const Era& era = ErasOf(calendar)[index];
    return {era.year, era.month, era.day, era.offset, era.name};
}

int GetCalendarInfo(LCID lcid, std::uint32_t calendar, std::uint32_t type, char16_t* out,
                    int capacity, std::uint32_t* number) noexcept {
    const bool as_number = (type & kLocaleReturnNumber) != 0;
    if (as_number ? number == nullptr || out != nullptr || capacity != 0
                  : number != nullptr || capacity < 0 || (capacity > 0 && out == nullptr)) {
        return Refuse(kErrorInvalidParameter);
    }
    const std::uint32_t plain = type & ~nls::kTypeFlags;
    if (!IsKnown(plain) || !TakesFlags(plain, type & nls::kTypeFlags)) {
        return Refuse(kErrorInvalidFlags);
    }
    const std::optional<std::u16string_view> text = CalendarText(lcid, calendar, type);
    if (!text) return Refuse(kErrorInvalidParameter);
    if (!as_number) return nls::CopyText(*text, out, capacity);
    *number = nls::NumberOf(*text);
    return 2;
}

bool EnumCalendarInfo(CalendarUse use, LCID lcid, std::uint32_t calendar, std::uint32_t type) {
    lcid = WithoutDefaults(lcid);  // once: another thread may be changing the defaults
    const bool all = calendar == kAllCalendars;
    const std::uint32_t first =
        all ? LocaleNumber(lcid, kLocaleCalendarType).value_or(0) : calendar;
    if (use == nullptr) return Refuse(kErrorInvalidParameter) != 0;
    if (GetCalendarInfo(lcid, first, type, nullptr, 0, nullptr) == 0) return false;
    if (!Hand(use, lcid, first, type) || !all) return true;
    const std::uint32_t second = LocaleNumber(lcid, kLocaleOptionalCalendar).value_or(0);
    if (second != 0) Hand(use, lcid, second, type);
    return true;
}

}  // namespace zelkor::platform
