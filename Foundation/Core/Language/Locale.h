// CT_Locale: a locale identifier (LCID: language and sort order) together with a code page, as a
// value of two words.
//
// A LCID is a LANGID in the low 16 bits and the sort order in bits 16 to 19.
// Errors: none recorded; the constructor from a code throws CT_Exception.
// Threads: plain values, any thread.
#ifndef FOUNDATION_CORE_LANGUAGE_LOCALE_H
#define FOUNDATION_CORE_LANGUAGE_LOCALE_H

#include "Foundation/Core/Language/Codepage.h"
#include "Foundation/Core/Language/Language.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_UString;

class ZELKOR_API CT_Locale {
public:
    // The 4-bit number of the LCID; what 1 and up mean depends on the language (phone book,
    // technical, stroke count, ...).
    enum et_SortOrder : unsigned int { kSortDefault = 0, kSortAlternate = 1 };
    enum et_DefaultType : unsigned int { kThreadLocale = 0, kInvalidLocale = 1 };

    // The calling thread's locale; or LCID 0 with the code page kNotSet.
    explicit CT_Locale(et_DefaultType type = kThreadLocale);
    // Where no code page is given, and where kNotSet is, the locale gets the value of its default
    // ANSI code page.
    explicit CT_Locale(LCID lcid);
    // The default locale of a code page: CT_LocaleInfo::sn_GetDefaultCPLocale of its number.
    explicit CT_Locale(CT_Codepage::et_Codepage code_page);
    CT_Locale(unsigned int language_id, et_SortOrder sort_order,
              CT_Codepage::et_Codepage code_page);
    CT_Locale(CT_Language::et_Primary primary, CT_Language::et_Sub sub, et_SortOrder sort_order,
              CT_Codepage::et_Codepage code_page);
    // From a code in any case: of 2 or 3 characters a language (its default sub-language), of 5 a
    // language and a country as CT_Language::sb_GetLanguages reads them. Any other length, null and
    // what the catalogue lacks throw CT_Exception 22; no error is recorded.
    explicit CT_Locale(const CT_UString* code);
    CT_Locale(const CT_Locale&) = default;
    CT_Locale& operator=(const CT_Locale&) = default;

    [[nodiscard]] std::uint32_t n4_GetLCID() const { return lcid_; }
    // Leaves the code page as it is.
    void v_SetLCID(std::uint32_t lcid) { lcid_ = lcid; }
    [[nodiscard]] unsigned int n_GetLanguageID() const { return lcid_ & 0xFFFF; }
    [[nodiscard]] CT_Language::et_Primary eo_GetPrimary() const;
    [[nodiscard]] CT_Language::et_Sub eo_GetSub() const;
    [[nodiscard]] et_SortOrder eo_GetSortOrder() const {
        return static_cast<et_SortOrder>(lcid_ >> 16 & 0xF);
    }
    [[nodiscard]] CT_Codepage co_GetCodepage() const { return code_page_; }
    [[nodiscard]] CT_Codepage::et_Codepage eo_GetCodepage() const { return code_page_.eo_Get(); }
    void v_SetCodepage(const CT_Codepage& code_page) { code_page_ = code_page; }

    // Whether the catalogue knows the language, and as another than kNeutral.
    [[nodiscard]] BOOL b_IsValidLCID() const;
    [[nodiscard]] BOOL b_IsValidCodepage() const { return code_page_.b_IsValid(); }
    [[nodiscard]] BOOL b_IsValid() const;
    void v_SetToInvalid();
    [[nodiscard]] BOOL b_IsRtl() const;

    // A LCID for the platform's calls: Gaelic becomes the neutral language with the default
    // sub-language, the sub-languages neutral and system default become system default. The sort
    // order stays.
    [[nodiscard]] std::uint32_t n4_GetSafeLcid() const;

    // The number of the Macintosh code page of a locale's script; 1200 where only Unicode has it.
    [[nodiscard]] static unsigned int sn4_DefaultMacCodepageFromLocale(std::uint32_t lcid);

private:
    [[nodiscard]] static unsigned int sn_DefaultCodepageFromLocale(std::uint32_t lcid);
    [[nodiscard]] static std::uint32_t sn4_DefaultLcidFromCodepage(unsigned int number);
    void v_SetDefaultCodepage();

    std::uint32_t lcid_;
    CT_Codepage code_page_;
};

#endif
