// Any text as a language code, as a display name, as the code of a locale and as a name of the
// environment: what is understood leads back to itself through the text that the library makes of
// it, or to a locale that answers.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "Foundation/Core/Exception/Exception.h"
#include "Foundation/Core/Exception/ExceptionManager.h"
#include "Foundation/Core/Language/Language.h"
#include "Foundation/Core/Language/Locale.h"
#include "Foundation/Core/Language/LocaleInfo.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Locales/Locales.h"

namespace platform = zelkor::platform;

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

void ReadCode(const CT_UString& code) {
    CT_Language::et_Primary primary = CT_Language::kNeutral, again = CT_Language::kNeutral;
    CT_Language::et_Sub sub = CT_Language::kSubNeutral, sub_again = CT_Language::kSubNeutral;
    if (!CT_Language::sb_GetLanguages(&primary, &sub, &code)) return;
    CT_UString made;
    CT_Language::sv_MakeLanguageCode(&made, primary, sub);
    Require(CT_Language::sb_GetLanguages(&again, &sub_again, &made));
    Require(again == primary && sub_again == sub);
}

void ReadName(const CT_UString& name) {
    const unsigned int id = CT_Language::sn_GetLanguageID(name.qcuz_Get());
    CT_UString made;
    CT_Language::sv_MakeLanguageString(&made, CT_Language::seo_GetPrimary(id),
                                       CT_Language::seo_GetSub(id));
    // "Neutral (Neutral)" is read as 0, whose name is "Neutral", which is read as its default.
    Require(id == 0 || CT_Language::sn_GetLanguageID(made.qcuz_Get()) == id);
}

void ReadLocale(const CT_UString& code) {
    const std::uint32_t length = code.n_GetLength();
    try {
        const CT_Locale locale(&code);
        Require(length == 2 || length == 3 || length == 5);
        Require(locale.b_IsValidCodepage());
    } catch (const CT_Exception& exception) {
        Require(exception.n_GetCode() == 22);
        CT_ExceptionManager::spco_Get()->v_Clear();
    }
}

void ReadEnvironmentName(std::string_view name) {
    const LCID lcid = platform::LocaleOfName(name);
    Require(lcid == 0 || CT_LocaleInfo::sb_IsInstalled(lcid) ||
            CT_LocaleInfo::sb_IsProprietary(lcid));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CT_UString text;
    for (std::size_t i = 0; i + 1 < size; i += 2) {
        char16_t unit;
        std::memcpy(&unit, data + i, sizeof unit);
        text.v_Append(unit);
    }
    ReadCode(text);
    ReadName(text);
    ReadLocale(text);
    ReadEnvironmentName({reinterpret_cast<const char*>(data), size});
    return 0;
}
