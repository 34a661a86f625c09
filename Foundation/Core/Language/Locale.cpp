#include "Foundation/Core/Language/Locale.h"

#include <algorithm>
#include <optional>

#include "Foundation/Core/Exception/Exception.h"
#include "Foundation/Core/Exception/ExceptionManager.h"
#include "Foundation/Core/Language/LocaleInfo.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Locales/Locales.h"
#include "Foundation/Platform/Runtime.h"

namespace platform = zelkor::platform;

namespace {

constexpr unsigned int kBadArgument = 22;

using Language = CT_Language;

// The language identifier of a code; nothing when its length is wrong or the catalogue lacks it.
std::optional<unsigned int> ReadCode(const CT_UString* code) {
    Language::et_Primary primary;
    Language::et_Sub sub = Language::kSubDefault;
    const std::uint32_t length = code == nullptr ? 0 : code->n_GetLength();
    if (length == 2 || length == 3) {
        char16_t upper[4] = {};
        std::ranges::transform(zelkor::detail::View(*code), upper,
                               [](char16_t unit) { return platform::ToUpper(unit); });
        if (Language::sb_GetPrimary(&primary, upper)) {
            return Language::sn_MakeLanguageID(primary, sub);
        }
    } else if (length == 5 && Language::sb_GetLanguages(&primary, &sub, code)) {
        return Language::sn_MakeLanguageID(primary, sub);
    }
    return {};
}

[[noreturn]] void ThrowBadCode(unsigned int line = __builtin_LINE()) {
    const CT_Exception exception(kBadArgument);
    if (CT_ExceptionManager* manager = CT_ExceptionManager::spco_Get()) {
        manager->v_AddLocation(__FILE__, line, exception.n_GetCode(), exception.qcuz_GetText());
    }
    throw exception;
}

}  // namespace

CT_Locale::CT_Locale(et_DefaultType type) : lcid_(0) {
    if (type == kInvalidLocale) return;
    lcid_ = platform::GetThreadLocale();
    v_SetDefaultCodepage();
}

CT_Locale::CT_Locale(LCID lcid) : lcid_(lcid) {
    v_SetDefaultCodepage();
}

CT_Locale::CT_Locale(CT_Codepage::et_Codepage code_page)
    : lcid_(sn4_DefaultLcidFromCodepage(CT_Codepage(code_page).n_Get())), code_page_(code_page) {}

CT_Locale::CT_Locale(unsigned int language_id, et_SortOrder sort_order,
                     CT_Codepage::et_Codepage code_page)
    : lcid_(CT_LocaleInfo::sn_MakeLocaleID(language_id, sort_order)), code_page_(code_page) {
    if (code_page == CT_Codepage::kNotSet) v_SetDefaultCodepage();
}

CT_Locale::CT_Locale(CT_Language::et_Primary primary, CT_Language::et_Sub sub,
                     et_SortOrder sort_order, CT_Codepage::et_Codepage code_page)
    : CT_Locale(CT_Language::sn_MakeLanguageID(primary, sub), sort_order, code_page) {}

CT_Locale::CT_Locale(const CT_UString* code) : lcid_(0) {
    const auto language_id = ReadCode(code);
    if (!language_id) ThrowBadCode();
    lcid_ = *language_id;
    v_SetDefaultCodepage();
}

CT_Language::et_Primary CT_Locale::eo_GetPrimary() const {
    return CT_Language::seo_GetPrimary(n_GetLanguageID());
}

CT_Language::et_Sub CT_Locale::eo_GetSub() const {
    return CT_Language::seo_GetSub(n_GetLanguageID());
}

BOOL CT_Locale::b_IsValidLCID() const {
    return eo_GetPrimary() != CT_Language::kNeutral;
}

BOOL CT_Locale::b_IsValid() const {
    return b_IsValidLCID() && b_IsValidCodepage();
}

void CT_Locale::v_SetToInvalid() {
    lcid_ = 0;
    code_page_.v_Set();
}

BOOL CT_Locale::b_IsRtl() const {
    return CT_LocaleInfo::sb_IsRTL(lcid_);
}

std::uint32_t CT_Locale::n4_GetSafeLcid() const {
    CT_Language::et_Primary primary;
    CT_Language::et_Sub sub;
    CT_Language::sv_GetLanguages(n_GetLanguageID(), &primary, &sub);
    if (primary == CT_Language::kGaelic) {
        primary = CT_Language::kNeutral;
        sub = CT_Language::kSubDefault;
    } else if (sub == CT_Language::kSubNeutral) {
        sub = CT_Language::kSubSysDefault;
    }
    return CT_LocaleInfo::sn_MakeLocaleID(CT_Language::sn_MakeLanguageID(primary, sub),
                                          eo_GetSortOrder());
}

unsigned int CT_Locale::sn4_DefaultMacCodepageFromLocale(std::uint32_t lcid) {
    CT_Language::et_Primary primary;
    CT_Language::et_Sub sub;
    CT_Language::sv_GetLanguages(lcid & 0xFFFF, &primary, &sub);
    switch (primary) {
        case Language::kArabic:
        case Language::kUrdu:
        case Language::kFarsi:
            return 10004;
        case Language::kBulgarian:
        case Language::kRussian:
        case Language::kBelarusian:
        case Language::kKazakh:
        case Language::kKyrgyz:
        case Language::kTatar:
        case Language::kMongolian:
            return 10007;
        case Language::kChinese:
            return sub <= Language::kSubDefault || sub == Language::kChineseTaiwan ||
                           sub == Language::kChineseHongKong
                       ? 10002
                       : 10008;
        case Language::kCzech:
        case Language::kHungarian:
        case Language::kPolish:
        case Language::kSlovak:
        case Language::kSlovenian:
        case Language::kEstonian:
        case Language::kLatvian:
        case Language::kLithuanian:
            return 10029;
        case Language::kGreek:
            return 10006;
        case Language::kHebrew:
            return 10005;
        case Language::kIcelandic:
        case Language::kFaeroese:
            return 10079;
        case Language::kJapanese:
            return 10001;
        case Language::kKorean:
            return 10003;
        case Language::kRomanian:
            return 10010;
        case Language::kSerboCroatian:
            return sub == Language::kSerbianCyrillic ? 10007 : 10082;
        case Language::kThai:
            return 10021;
        case Language::kTurkish:
            return 10081;
        case Language::kUkrainian:
            return 10017;
        case Language::kMaltese:
            return 1200;
        default:
            return primary >= Language::kGeorgian && primary <= Language::kTswana ? 1200 : 10000;
    }
}

unsigned int CT_Locale::sn_DefaultCodepageFromLocale(std::uint32_t lcid) {
    return CT_LocaleInfo::sn_GetDefaultANSICodePage(lcid);
}

std::uint32_t CT_Locale::sn4_DefaultLcidFromCodepage(unsigned int number) {
    return CT_LocaleInfo::sn_GetDefaultCPLocale(number);
}

void CT_Locale::v_SetDefaultCodepage() {
    code_page_.v_Set(sn_DefaultCodepageFromLocale(lcid_));
}
