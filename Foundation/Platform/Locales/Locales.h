// Locales: which there are, the default ones, and what the system knows about each. All data is
// built in (docs/locales.md says where it comes from); none goes through the C library's locale.
//
// A locale is given by its LCID. Beside the rows of the table, every question takes
//   0 and 0x0400   the user's default locale
//   0x0800         the system's default locale
//   a primary language with sub-language 0
//                  that language's first sub-language
//   0x007F         the invariant locale, which belongs to no language and is not enumerated
// Sort orders other than 0 are known only for the locales that have one (EnumSystemLocales).
//
// Texts are UTF-16 and constant; they live as long as the program. Errors go to LastError, which
// success leaves alone. Threads: any. Nothing allocates.
#ifndef FOUNDATION_PLATFORM_LOCALES_LOCALES_H
#define FOUNDATION_PLATFORM_LOCALES_LOCALES_H

#include <cstdint>
#include <optional>
#include <string_view>

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

namespace zelkor::platform {

// ---- Default locales --------------------------------------------------------------------------

// Taken from the process environment while the library is loaded, before there can be threads of
// it, and never again. Of the variables that are set and not empty
//   the first of LC_ALL, LC_CTYPE and LANG                           is the system's default, whose
//                                                                    ANSI and OEM pages are used
//   the first of LC_ALL, LC_TIME, LC_NUMERIC, LC_MONETARY and LANG   is the user's, for formats
// 0x0409 where none is set or names a language (C and POSIX do not). Maltese, Tagalog, Sami, Sotho,
// Xhosa and Zulu are named as well, though the table has no rows for them: CT_LocaleInfo answers.
[[nodiscard]] ZELKOR_API LCID GetSystemDefaultLCID() noexcept;
[[nodiscard]] ZELKOR_API LCID GetUserDefaultLCID() noexcept;
[[nodiscard]] ZELKOR_API LANGID GetSystemDefaultLangID() noexcept;
[[nodiscard]] ZELKOR_API LANGID GetUserDefaultLangID() noexcept;

// The default that 0, 0x0400 or 0x0800 stands for; any other locale as it is.
[[nodiscard]] inline LCID WithoutDefaults(LCID lcid) noexcept {
    if (lcid == 0 || lcid == 0x0400) return GetUserDefaultLCID();
    return lcid == 0x0800 ? GetSystemDefaultLCID() : lcid;
}

// Sets both for the process, unchecked; 0 puts back what was found at load.
ZELKOR_API void SetDefaultLocales(LCID user, LCID system) noexcept;

// The locale that a name of the environment stands for: language_TERRITORY.charset@modifier, of
// which all but the language may be missing; in any case of A to Z, and with "-" for "_". A
// territory that has no row gives the language's first, or the one that is usual for it (zh 0x0804,
// sr 0x0C1A). 0 for C, POSIX and languages that are not known.
[[nodiscard]] ZELKOR_API LCID LocaleOfName(std::string_view name) noexcept;

// What happens at load: the defaults and the configured pages are those of the variables. Tests
// give their own in place of the environment (null where one is not set), and take the
// environment's again at the end.
using EnvironmentVariable = const char* (*)(const char* name);
ZELKOR_API void TakeEnvironment(EnvironmentVariable variable = nullptr) noexcept;

// The calling thread's locale: the user's default until the thread sets another.
[[nodiscard]] ZELKOR_API LCID GetThreadLocale() noexcept;
// False with last error 87 for a locale that is not supported. 0x0400 and 0x0800 are replaced by
// what they stand for; 0 has the thread follow the user's default again.
ZELKOR_API bool SetThreadLocale(LCID lcid) noexcept;

// ---- Which locales there are ------------------------------------------------------------------

inline constexpr std::uint32_t kLocaleInstalled = 1;
inline constexpr std::uint32_t kLocaleSupported = 2;
inline constexpr std::uint32_t kLocaleAlternateSorts = 4;

// Whether questions about the locale are answered. What is supported is installed as well; other
// values than 1 and 2 of `which` give false.
[[nodiscard]] ZELKOR_API bool IsValidLocale(LCID lcid, std::uint32_t which) noexcept;

// The row that answers for the locale, 0 when none does: 0x0009 gives 0x0409, 0x00010407 itself. A
// sub-language that the table lacks is not answered by another one, which may be in another script.
[[nodiscard]] ZELKOR_API LCID ResolveLocale(LCID lcid) noexcept;

// Hands each locale's LCID, as eight hexadecimal digits in upper case, to `use` until that answers
// FALSE: those with sort order 0 for kLocaleInstalled or kLocaleSupported; those with other sort
// orders for kLocaleAlternateSorts; both when both are asked for. False with last error
//   87    no callback
//   1004  no such flag
using LocaleUse = BOOL (*)(char16_t* lcid);
ZELKOR_API bool EnumSystemLocales(LocaleUse use, std::uint32_t which);

// The same as numbers, with whatever the caller wants handed along.
[[nodiscard]] ZELKOR_API std::uint32_t LocaleCount() noexcept;
[[nodiscard]] ZELKOR_API LCID LocaleAt(std::uint32_t index) noexcept;  // index below the count

// ---- What is known about a locale --------------------------------------------------------------

// LCTYPE numbers that the library itself speaks of. Known are 0x0001 to 0x005A and 0x1001 to
// 0x1014.
enum : std::uint32_t {
    kLocaleLanguage = 0x0001,     // LANGID as four hexadecimal digits
    kLocaleOemCodePage = 0x000B,  // 1 for languages without one
    kLocaleList = 0x000C,
    kLocaleMeasure = 0x000D,
    kLocaleDecimal = 0x000E,
    kLocaleThousand = 0x000F,
    kLocaleGrouping = 0x0010,
    kLocaleDigits = 0x0011,
    kLocaleLeadingZero = 0x0012,
    kLocaleNativeDigits = 0x0013,
    kLocaleShortDate = 0x001F,
    kLocaleLongDate = 0x0020,
    kLocaleBeforeNoon = 0x0028,
    kLocaleAfterNoon = 0x0029,
    kLocaleDayName1 = 0x002A,  // Monday; seven of them
    kLocaleShortDayName1 = 0x0031,
    kLocaleMonthName1 = 0x0038,  // January; twelve, the thirteenth is 0x100E
    kLocaleShortMonthName1 = 0x0044,
    kLocaleNegativeSign = 0x0051,
    kLocaleFontSignature = 0x0058,  // sixteen units of numbers, see LocaleSignature
    kLocaleIsoLanguage = 0x0059,
    kLocaleIsoCountry = 0x005A,
    kLocaleTimeFormat = 0x1003,
    kLocaleAnsiCodePage = 0x1004,  // 0 for languages without one
    kLocaleYearMonth = 0x1006,
    kLocaleCalendarType = 0x1009,
    kLocaleOptionalCalendar = 0x100B,  // "0" for none
    kLocaleMonthName13 = 0x100E,
    kLocaleShortMonthName13 = 0x100F,
    kLocaleNegativeNumber = 0x1010,
};
// Flags beside the number. The first two change nothing here.
inline constexpr std::uint32_t kLocaleNoUserOverride = 0x80000000;
inline constexpr std::uint32_t kLocaleUseAnsiPage = 0x40000000;
inline constexpr std::uint32_t kLocaleReturnNumber = 0x20000000;  // numeric types: as a number
inline constexpr std::uint32_t kLocaleGenitiveNames =
    0x10000000;  // month names beside a day number

// The text, which may be empty; nothing for an unknown locale or type. Types with a number are
// decimal text (0x0001 and 0x0009: hexadecimal). A zero unit follows the text. Takes the flag
// kLocaleGenitiveNames and ignores the others; the last error is not touched.
[[nodiscard]] ZELKOR_API std::optional<std::u16string_view> LocaleText(LCID lcid,
                                                                       std::uint32_t type) noexcept;

// The value of a numeric type; nothing for other types and unknown locales.
[[nodiscard]] ZELKOR_API std::optional<std::uint32_t> LocaleNumber(LCID lcid,
                                                                   std::uint32_t type) noexcept;

// As the system's GetLocaleInfoW: writes the text with its zero into `out`, which holds `capacity`
// units, and returns the units written; capacity 0 asks for the units needed. kLocaleFontSignature
// and kLocaleReturnNumber write sixteen units and two (a 32-bit number, low half first), without a
// zero. Returns 0 on failure with the last error set:
//   87    an unknown locale, a negative capacity, or a capacity without a buffer
//   122   the result does not fit; nothing has been written
//   1004  an unknown type, kLocaleReturnNumber with a type that is no number, kLocaleGenitiveNames
//         with one that is no month name
[[nodiscard]] ZELKOR_API int GetLocaleInfo(LCID lcid, std::uint32_t type, char16_t* out,
                                           int capacity) noexcept;

// What the texts of a locale need of a font, bit by bit as fonts state it in their OS/2 table.
struct LocaleSignature {
    std::uint32_t unicode_ranges[4];
    std::uint32_t default_code_pages[2];  // the ANSI page in the low half, the OEM page in the high
    std::uint32_t code_pages[2];          // all that can write the language
};
[[nodiscard]] ZELKOR_API std::optional<LocaleSignature> GetLocaleSignature(LCID lcid) noexcept;

// ---- Calendars ---------------------------------------------------------------------------------

// 1 Gregorian, 2 Gregorian (US English), 3 Japanese eras, 4 Taiwan, 5 Tangun, 6 Hijri, 7 Thai,
// 8 Hebrew.
inline constexpr std::uint32_t kCalendarCount = 8;
inline constexpr std::uint32_t kAllCalendars = 0xFFFFFFFF;

// CALTYPE numbers that the library itself speaks of. Known are 0x0001 to 0x0030.
enum : std::uint32_t {
    kCalendarNumber = 0x01,
    kCalendarName = 0x02,
    kCalendarEraOffset = 0x03,  // Gregorian year in which the era begins, as decimal text
    kCalendarEraName = 0x04,
    kCalendarShortDate = 0x05,
    kCalendarLongDate = 0x06,
    kCalendarDayName1 = 0x07,
    kCalendarShortDayName1 = 0x0E,
    kCalendarMonthName1 = 0x15,  // of the calendar: Muharram, Tishri; thirteen of them
    kCalendarShortMonthName1 = 0x22,
    kCalendarYearMonth = 0x2F,
    kCalendarTwoDigitYearMax = 0x30,  // last of the hundred years that two digits stand for
};

// The text in the locale's language, as LocaleText. Each calendar is known in every locale, whether
// that uses it or not. Types 3 and 4 are those of the current era. Takes kLocaleGenitiveNames.
[[nodiscard]] ZELKOR_API std::optional<std::u16string_view> CalendarText(
    LCID lcid, std::uint32_t calendar, std::uint32_t type) noexcept;

// Eras of a calendar, the current one first; 0 for an unknown calendar.
[[nodiscard]] ZELKOR_API std::uint32_t CalendarEraCount(std::uint32_t calendar) noexcept;
struct CalendarEra {
    std::uint16_t year, month, day;  // Gregorian, the first day of it; 0 where nothing limits it
    std::int32_t offset;             // Gregorian year minus year of the era; 0 in Hijri and Hebrew
    std::u16string_view name;
};
// Requires index < CalendarEraCount(calendar). The names are those of the calendar's own language.
[[nodiscard]] ZELKOR_API CalendarEra CalendarEraAt(std::uint32_t calendar,
                                                   std::uint32_t index) noexcept;

// As the system's GetCalendarInfoW. With kLocaleReturnNumber (types 1, 3 and 0x30) the value goes
// to *number, `out` is null and `capacity` 0; the result is then 2. Otherwise `number` is null and
// the result and the errors are those of GetLocaleInfo; 87 for an unknown calendar too.
[[nodiscard]] ZELKOR_API int GetCalendarInfo(LCID lcid, std::uint32_t calendar, std::uint32_t type,
                                             char16_t* out, int capacity,
                                             std::uint32_t* number) noexcept;

// Hands the texts of one type to `use` until that answers FALSE: of one calendar, or with
// kAllCalendars of the locale's own calendar and then of its optional one. Types 3 and 4 give every
// era, the current one first. False with the errors of GetCalendarInfo.
using CalendarUse = BOOL (*)(const char16_t* text);
ZELKOR_API bool EnumCalendarInfo(CalendarUse use, LCID lcid, std::uint32_t calendar,
                                 std::uint32_t type);

// ---- Characters --------------------------------------------------------------------------------

// Whether the unit is a letter of any script, by the system's character types (Unicode 2.1).
[[nodiscard]] ZELKOR_API bool IsCharAlpha(char16_t unit) noexcept;

}  // namespace zelkor::platform

#endif
