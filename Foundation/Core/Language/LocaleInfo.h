// CT_LocaleInfo: what the platform knows about locales, completed by the library's own data for
// Maltese, Tagalog, Sami, Sotho, Xhosa and Zulu; default code pages, character sets and writing
// direction of locales.
//
// A LCID is a LANGID in the low 16 bits and the sort order in bits 16 to 19.
// Errors: none recorded; failure, a null result among it, gives FALSE and leaves the result as it
// was.
// Threads: everything may be called from any thread.
#ifndef FOUNDATION_CORE_LANGUAGE_LOCALEINFO_H
#define FOUNDATION_CORE_LANGUAGE_LOCALEINFO_H

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_Exit;
class CT_UString;

class ZELKOR_API CT_LocaleInfo {
public:
    // The platform's locale information types; values beside these are passed through as well.
    // "Number" marks those whose text is a decimal number, which the number form can read.
    enum et_Type : unsigned int {
        kLanguageId = 0x0001,  // hexadecimal, four digits
        kLanguage = 0x0002,    // in the user's language: English here
        kEnglishLanguage = 0x1001,
        kAbbrevLanguage = 0x0003,  // three letters
        kNativeLanguage = 0x0004,
        kCountryCode = 0x0005,  // number: the telephone prefix
        kCountry = 0x0006,
        kEnglishCountry = 0x1002,
        kAbbrevCountry = 0x0007,
        kNativeCountry = 0x0008,
        kDefaultLanguageId = 0x0009,   // hexadecimal
        kDefaultCountryCode = 0x000A,  // number
        kOemCodePage = 0x000B,         // number
        kAnsiCodePage = 0x1004,        // number; 0 where only Unicode has the script
        kMacCodePage = 0x1011,
        kListSeparator = 0x000C,
        kMeasure = 0x000D,  // number: 0 metric, 1 of the United States
        kDecimalSeparator = 0x000E,
        kThousandSeparator = 0x000F,
        kGrouping = 0x0010,        // digits per group from the right; a 0 repeats: "3;2;0"
        kFractionDigits = 0x0011,  // number
        kLeadingZero = 0x0012,     // number: 1 writes 0.7, 0 writes .7
        kNegativeOrder = 0x1010,   // number: 0 (1), 1 -1, 2 - 1, 3 1-, 4 1 -
        kNativeDigits = 0x0013,    // ten characters
        kCurrencySymbol = 0x0014,
        kIntlCurrencySymbol = 0x0015,  // ISO 4217
        kMonetaryDecimalSeparator = 0x0016,
        kMonetaryThousandSeparator = 0x0017,
        kMonetaryGrouping = 0x0018,
        kCurrencyDigits = 0x0019,         // number
        kIntlCurrencyDigits = 0x001A,     // number
        kPositiveCurrencyOrder = 0x001B,  // number: 0 $1, 1 1$, 2 $ 1, 3 1 $
        kNegativeCurrencyOrder = 0x001C,  // number
        kDateSeparator = 0x001D,
        kTimeSeparator = 0x001E,
        kShortDate = 0x001F,         // picture
        kLongDate = 0x0020,          // picture
        kTimeFormat = 0x1003,        // picture
        kShortDateOrder = 0x0021,    // number: 0 month first, 1 day first, 2 year first
        kLongDateOrder = 0x0022,     // number
        k24HourClock = 0x0023,       // number
        kTimeMarkPosition = 0x1005,  // number
        kFourDigitYear = 0x0024,     // number
        kHourLeadingZero = 0x0025,   // number
        kDayLeadingZero = 0x0026,    // number
        kMonthLeadingZero = 0x0027,  // number
        kMorningMark = 0x0028,
        kAfternoonMark = 0x0029,
        kCalendarType = 0x1009,      // number
        kOptionalCalendar = 0x100B,  // number
        kFirstDayOfWeek = 0x100C,    // number: 0 is Monday
        kFirstWeekOfYear = 0x100D,   // number: 0 with 1 January, 1 first full, 2 first of 4 days
        kDayName1 = 0x002A,          // Monday; up to kDayName7
        kDayName7 = 0x0030,
        kAbbrevDayName1 = 0x0031,
        kAbbrevDayName7 = 0x0037,
        kMonthName1 = 0x0038,  // January; up to kMonthName12
        kMonthName12 = 0x0043,
        kMonthName13 = 0x100E,
        kAbbrevMonthName1 = 0x0044,
        kAbbrevMonthName12 = 0x004F,
        kAbbrevMonthName13 = 0x100F,
        kPositiveSign = 0x0050,
        kNegativeSign = 0x0051,
        kPositiveSignPosition = 0x0052,  // number, as all up to kNegativeSymbolSpace
        kNegativeSignPosition = 0x0053,
        kPositiveSymbolPrecedes = 0x0054,
        kPositiveSymbolSpace = 0x0055,
        kNegativeSymbolPrecedes = 0x0056,
        kNegativeSymbolSpace = 0x0057,
        kFontSignature = 0x0058,
        kIso639Language = 0x0059,
        kIso3166Country = 0x005A,
    };

    CT_LocaleInfo() = delete;

    // The locales that the process environment named at load: the system's, to which its code pages
    // belong, by LC_ALL, LC_CTYPE or LANG; the user's, for formats, by LC_ALL, LC_TIME, LC_NUMERIC,
    // LC_MONETARY or LANG. They may be of those that the library has data for itself.
    [[nodiscard]] static unsigned int sn_GetSystemDefaultLCID();
    [[nodiscard]] static unsigned int sn_GetUserDefaultLCID();
    [[nodiscard]] static unsigned int sn_GetSystemDefaultLangID();
    [[nodiscard]] static unsigned int sn_GetUserDefaultLangID();

    // Whether the platform knows the locale, and has its data at hand.
    [[nodiscard]] static BOOL sb_IsSupported(LCID lcid);
    [[nodiscard]] static BOOL sb_IsInstalled(LCID lcid);
    // Whether the library answers for the locale itself: it has data and the platform has not.
    [[nodiscard]] static BOOL sb_IsProprietary(LCID lcid);

    [[nodiscard]] static unsigned int sn_MakeLocaleID(unsigned int language_id,
                                                      unsigned int sort_order);
    [[nodiscard]] static unsigned int sn_GetPrimaryLangID(unsigned int language_id);
    [[nodiscard]] static unsigned int sn_GetSubLangID(unsigned int language_id);

    // One item of a locale. What the library's own list of a locale lacks comes from the locale it
    // falls back to (Sami: Finnish; Sotho, Xhosa, Zulu: English of South Africa). FALSE for a
    // locale or item that is not there, and for values of more than 127 units. On the older
    // platform family the platform's values go through code page 0.
    static BOOL sb_GetLocaleInfo(LCID lcid, et_Type type, CT_UString* value);
    // Copies at most `size` units. The terminator is one of them: a value of exactly `size` units
    // or more has none.
    static BOOL sb_GetLocaleInfo(LCID lcid, et_Type type, char16_t* buffer, unsigned int size);
    // Only for the types marked as numbers, and those of language and default language; FALSE for
    // all others. The text is read as decimal digits, 0 when it has none.
    static BOOL sb_GetLocaleInfo(LCID lcid, et_Type type, unsigned int* number);

    // Every distinct value of one type over the installed locales, in the order in which the
    // locales are enumerated, with the separator between them (0: none).
    static void sv_CollectValues(et_Type type, char16_t separator, CT_UString* values);

    // The code page of the locale's 8-bit text: the platform's answer, else one that goes with the
    // script; 1200 where only Unicode has it. Answers are kept until the library is unloaded.
    [[nodiscard]] static unsigned int sn_GetDefaultANSICodePage(LCID lcid);
    // The character set number of that code page; 1 (default) for Unicode.
    [[nodiscard]] static unsigned int sn_GetDefaultCharset(LCID lcid);
    // The locale that stands for a code page or a character set; others give the system's default
    // language. Johab (1361; 130) gives 2066, the catalogue's Korean (Johab), so that the answer
    // leads back to Korean.
    [[nodiscard]] static unsigned int sn_GetDefaultCPLocale(unsigned int code_page);
    [[nodiscard]] static unsigned int sn_GetDefaultCharsetLocale(unsigned int charset);

    // Whether the locale's text needs Unicode: its default code page is 1200, 1201 or 65001.
    [[nodiscard]] static BOOL sb_IsUnicodeOnly(LCID lcid);
    // Arabic, Hebrew, Farsi, Sindhi, Syriac, Divehi; Urdu of Pakistan; Kashmiri but for the
    // sub-language 2.
    [[nodiscard]] static BOOL sb_IsRTL(LCID lcid);
    [[nodiscard]] static BOOL sb_IsValidCodePage(unsigned int number);

private:
    static void sv_Exit();
    static BOOL sb_CollectLocaleInfo(char16_t* lcid_text);

    static CT_Exit sco_Exit;
};

#endif
