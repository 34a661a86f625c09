// CT_Language: the catalogue of languages and sub-languages (countries, scripts) with their
// language identifiers (LANGID), English display names such as "German (Switzerland)" and codes
// such as DE-CH, and the conversions between all of them in both directions.
//
// Everything is static. A LANGID is the primary language in the low 10 bits and the sub-language's
// number in the 6 bits above; the high half of a longer identifier is ignored. Texts handed out are
// borrowed, constant and zero-terminated; texts handed in may be null and are then not found. A
// null result gives FALSE, or is left out. Errors: none recorded; a failed look-up gives FALSE, 0,
// a null text or kNeutral. Threads: constant data, any thread.
#ifndef FOUNDATION_CORE_LANGUAGE_LANGUAGE_H
#define FOUNDATION_CORE_LANGUAGE_LANGUAGE_H

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_UString;

class ZELKOR_API CT_Language {
public:
    // The library's own numbering, kept in files and settings: the values never change. They are
    // not the platform's primary language numbers.
    enum et_Primary : unsigned int {
        kNeutral = 0,
        kArabic = 1,
        kBulgarian = 2,
        kCatalan = 3,
        kChinese = 4,
        kCzech = 5,
        kDanish = 6,
        kGerman = 7,
        kGreek = 8,
        kEnglish = 9,
        kSpanish = 10,
        kFinnish = 11,
        kFrench = 12,
        kHebrew = 13,
        kHungarian = 14,
        kIcelandic = 15,
        kItalian = 16,
        kJapanese = 17,
        kKorean = 18,
        kDutch = 19,
        kNorwegian = 20,
        kPolish = 21,
        kPortuguese = 22,
        kRhaetoRomance = 23,
        kRomanian = 24,
        kRussian = 25,
        kSerboCroatian = 26,
        kSlovak = 27,
        kAlbanian = 28,
        kSwedish = 29,
        kThai = 30,
        kTurkish = 31,
        kUrdu = 32,
        kIndonesian = 33,
        kUkrainian = 34,
        kBelarusian = 35,
        kSlovenian = 36,
        kEstonian = 37,
        kLatvian = 38,
        kLithuanian = 39,
        kMaori = 40,
        kFarsi = 41,
        kVietnamese = 42,
        kArmenian = 43,
        kAzeri = 44,
        kBasque = 45,
        kSorbian = 46,
        kMacedonian = 47,
        kTsonga = 48,
        kXhosa = 49,
        kZulu = 50,
        kAfrikaans = 51,
        kFaeroese = 52,
        kMaltese = 53,
        kGaelic = 54,
        kMalay = 55,
        kKazakh = 56,
        kSwahili = 57,
        kTagalog = 58,
        kKyrgyz = 59,
        kUzbek = 60,
        kTatar = 61,
        kMongolian = 62,
        kGalician = 63,
        kSotho = 64,
        kSami = 65,
        kGeorgian = 66,
        kHindi = 67,
        kBengali = 68,
        kPunjabi = 69,
        kGujarati = 70,
        kOriya = 71,
        kTamil = 72,
        kTelugu = 73,
        kKannada = 74,
        kMalayalam = 75,
        kAssamese = 76,
        kMarathi = 77,
        kSanskrit = 78,
        kKonkani = 79,
        kManipuri = 80,
        kSindhi = 81,
        kKashmiri = 82,
        kNepali = 83,
        kDivehi = 84,
        kWelsh = 85,
        kSyriac = 86,
        kNorthernSotho = 87,
        kQuechua = 88,
        kTswana = 89,
    };

    // Each belongs to one primary language, but for the first three, which belong to kNeutral and
    // are accepted with every language: they are the platform's sub-languages 0, 1 and 2.
    enum et_Sub : unsigned int {
        kSubNeutral = 0,
        kSubDefault = 1,
        kSubSysDefault = 2,
        kArabicSaudiArabia = 3,
        kArabicIraq = 4,
        kArabicEgypt = 5,
        kArabicLibya = 6,
        kArabicAlgeria = 7,
        kArabicMorocco = 8,
        kArabicTunisia = 9,
        kArabicOman = 10,
        kArabicYemen = 11,
        kArabicSyria = 12,
        kArabicJordan = 13,
        kArabicLebanon = 14,
        kArabicKuwait = 15,
        kArabicUae = 16,
        kArabicBahrain = 17,
        kArabicQatar = 18,
        kChineseTaiwan = 19,
        kChinesePrc = 20,
        kChineseHongKong = 21,
        kChineseSingapore = 22,
        kGermanGermany = 23,
        kGermanSwitzerland = 24,
        kGermanAustria = 25,
        kGermanLuxembourg = 26,
        kGermanLiechtenstein = 27,
        kEnglishUnitedStates = 28,
        kEnglishUnitedKingdom = 29,
        kEnglishAustralia = 30,
        kEnglishCanada = 31,
        kEnglishNewZealand = 32,
        kEnglishIreland = 33,
        kEnglishSouthAfrica = 34,
        kEnglishJamaica = 35,
        kEnglishCaribbean = 36,
        kEnglishBelize = 37,
        kEnglishTrinidad = 38,
        kSpanishSpain = 39,
        kSpanishMexico = 40,
        kSpanishInternationalSort = 41,
        kSpanishGuatemala = 42,
        kSpanishCostaRica = 43,
        kSpanishPanama = 44,
        kSpanishDominicanRepublic = 45,
        kSpanishVenezuela = 46,
        kSpanishColombia = 47,
        kSpanishPeru = 48,
        kSpanishArgentina = 49,
        kSpanishEcuador = 50,
        kSpanishChile = 51,
        kSpanishUruguay = 52,
        kSpanishParaguay = 53,
        kSpanishBolivia = 54,
        kSpanishElSalvador = 55,
        kSpanishHonduras = 56,
        kSpanishNicaragua = 57,
        kSpanishPuertoRico = 58,
        kFrenchFrance = 59,
        kFrenchBelgium = 60,
        kFrenchCanada = 61,
        kFrenchSwitzerland = 62,
        kFrenchLuxembourg = 63,
        kItalianItaly = 64,
        kItalianSwitzerland = 65,
        kKoreanKorea = 66,
        kKoreanJohab = 67,
        kDutchNetherlands = 68,
        kDutchBelgium = 69,
        kNorwegianBokmal = 70,
        kNorwegianNynorsk = 71,
        kPortugueseBrazil = 72,
        kPortuguesePortugal = 73,
        kRomanianRomania = 74,
        kRomanianMoldova = 75,
        kRussianRussia = 76,
        kRussianMoldova = 77,
        kSerbianLatin = 78,
        kSerbianCyrillic = 79,
        kSwedishSweden = 80,
        kSwedishFinland = 81,
        kGaelicIreland = 82,
        kGaelicWales = 83,
        kGaelicScotland = 84,
        kMalayMalaysia = 85,
        kMalayBrunei = 86,
        kUzbekLatin = 87,
        kUzbekCyrillic = 88,
        kAzeriLatin = 89,
        kAzeriCyrillic = 90,
        kQuechuaBolivia = 91,
        kQuechuaEcuador = 92,
        kQuechuaPeru = 93,
        kCroatian = 94,
        kBosnianLatin = 95,
        kSerbianCyrillicBosnia = 96,
        kSerbianLatinBosnia = 97,
        kCroatianBosnia = 98,
    };

    CT_Language() = delete;

    // ---- Walking the catalogue ----

    // Primary languages without kNeutral: 89. They are the values 1 to 89.
    [[nodiscard]] static unsigned int sn_GetPrimaryCount();
    // Sub-languages of a language; 0 for one without any and for an unknown value.
    [[nodiscard]] static unsigned int sn_GetSubCount(et_Primary primary);
    // Index 0 is kSubDefault, 1 to sn_GetSubCount are the language's own; a larger index, or a
    // language without sub-languages, gives kSubDefault again, an unknown language kSubNeutral.
    [[nodiscard]] static et_Sub seo_GetSubAt(et_Primary primary, unsigned int index);

    // ---- Names and codes of the parts ----

    // "DE", "German"; null for unknown values.
    [[nodiscard]] static const char16_t* sqcuz_GetLanguageCode(et_Primary primary);
    [[nodiscard]] static const char16_t* sqcuz_GetLanguage(et_Primary primary);
    // "CH", "Switzerland"; null for unknown values.
    [[nodiscard]] static const char16_t* sqcuz_GetCountryCode(et_Sub sub);
    [[nodiscard]] static const char16_t* sqcuz_GetCountry(et_Sub sub);

    // TRUE and the value when found; FALSE leaves it as it was. Codes are matched exactly (they are
    // upper case), names without regard to the case of A to Z.
    static BOOL sb_GetPrimary(et_Primary* primary, const char16_t* code);
    static BOOL sb_GetPrimaryLanguage(et_Primary* primary, const char16_t* name);
    // Among the sub-languages of one language.
    static BOOL sb_GetSubCountry(et_Sub* sub, const char16_t* name, et_Primary primary);

    // ---- Language identifiers ----

    // kSubNeutral, kSubDefault and kSubSysDefault give the platform's sub-languages 0, 1 and 2; a
    // sub-language that is not the language's own gives 1; an unknown language gives 0.
    [[nodiscard]] static unsigned int sn_MakeLanguageID(et_Primary primary, et_Sub sub);
    // An unknown language gives kNeutral and kSubNeutral. An unknown sub-language gives kSubNeutral
    // when the language has sub-languages and kSubDefault when it has none.
    static void sv_GetLanguages(unsigned int language_id, et_Primary* primary, et_Sub* sub);
    [[nodiscard]] static et_Primary seo_GetPrimary(unsigned int language_id);
    [[nodiscard]] static et_Sub seo_GetSub(unsigned int language_id);

    // ---- Display names and codes of the whole ----

    // "German (Switzerland)"; the language's name alone for kSubNeutral and for a language without
    // sub-languages. An unknown language gives an empty text, an unknown sub-language the
    // language's name alone. The languages of kSerboCroatian have names of their own.
    static void sv_MakeLanguageString(CT_UString* text, et_Primary primary, et_Sub sub);
    // Reads such a name, without regard to case and to white space around its two parts, except
    // that the names under kSerboCroatian must match exactly. An unknown language counts as
    // kNeutral and an unknown country as kSubDefault, so that anything unknown gives 0x0400.
    [[nodiscard]] static unsigned int sn_GetLanguageID(const char16_t* text);
    // "DE-CH"; the language's code alone where sv_MakeLanguageString gives its name alone. Unknown
    // values as there. Under kSerboCroatian a sub-language of another language gives SH-HR.
    static void sv_MakeLanguageCode(CT_UString* text, et_Primary primary, et_Sub sub);
    // Reads such a code in any case. The first character that is not a letter separates, whatever
    // it is; without one, the fourth letter does (ENGLISH is ENG and ISH). A code without country
    // gives what sv_GetLanguages gives for sub-language 0; so does a country "00"; "01" and every
    // country of a language without sub-languages give kSubDefault. FALSE for codes shorter than 2
    // characters, unknown languages (both values stay) and unknown countries (the language is set).
    static BOOL sb_GetLanguages(et_Primary* primary, et_Sub* sub, const CT_UString* code);

    // ---- Classes of languages ----

    // Chinese, Japanese, Korean and Thai.
    [[nodiscard]] static BOOL sb_IsFarEastLanguage(et_Primary primary);
    // Arabic, Hebrew, Farsi, Divehi and Syriac; Urdu is not counted (CT_LocaleInfo::sb_IsRTL does).
    [[nodiscard]] static BOOL sb_IsBiDiLanguage(et_Primary primary);
    [[nodiscard]] static BOOL sb_IsBiDiLanguage(unsigned int language_id);
    // Maltese, Gaelic and Tagalog, whatever the sub-language.
    [[nodiscard]] static BOOL sb_IsZELKORDefined(et_Primary primary, et_Sub sub);
};

#endif
