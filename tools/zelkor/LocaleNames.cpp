#include "LocaleNames.h"

#include <Foundation/Core/Language/Language.h>
#include <Foundation/Core/Language/Locale.h>
#include <Foundation/Core/Language/LocaleInfo.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <optional>

#include "Console.h"

namespace zelkor {

namespace {

using Info = CT_LocaleInfo;
using Text = std::u16string;

// 1031, 0x407, 0407; nothing when it does not begin with a digit. The base follows from the zero.
std::optional<unsigned long> ReadNumber(const std::string& word) {
    if (word[0] < '0' || word[0] > '9') return {};
    std::size_t used = 0;
    unsigned long number = 0xFFFFFFFF;
    try {
        number = std::stoul(word, &used, word[0] == '0' ? 16 : 10);
    } catch (const std::exception&) {
        used = 0;
    }
    return used == word.size() ? number : 0xFFFFFFFF;
}

// A language's code means its default sub-language, as it does for CT_Locale.
LCID Identify(CT_Language::et_Primary primary, CT_Language::et_Sub sub) {
    if (sub == CT_Language::kSubNeutral) sub = CT_Language::kSubDefault;
    return CT_Language::sn_MakeLanguageID(primary, sub);
}

// The form in which names and codes are compared: lower case, '-' between the parts of a code.
Text Comparable(const Text& text) {
    CT_UString changed(text.data(), static_cast<unsigned int>(text.size()));
    changed.vv_ToLower();
    Text result = ToText(changed);
    std::ranges::replace(result, u'_', u'-');
    return result;
}

// By the display name of a row of the catalogue, the language's name for itself, or the ISO codes
// of language and country, which are not always those of the catalogue (he, hr-HR).
std::optional<LCID> FindNamed(const Text& word) {
    const Text wanted = Comparable(word);
    for (const LocaleEntry& entry : Catalogue()) {
        const Text language = Value(entry.lcid, Info::kIso639Language);
        const Text both = language + u'-' + Value(entry.lcid, Info::kIso3166Country);
        const Text own = Value(entry.lcid, Info::kNativeLanguage);
        for (const Text& name : {entry.name, own, language, both}) {
            if (!name.empty() && Comparable(name) == wanted) return entry.lcid;
        }
    }
    return {};
}

std::optional<LCID> FindLocale(const std::string& word) {
    if (const auto number = word.empty() ? std::nullopt : ReadNumber(word)) {
        const auto lcid = static_cast<LCID>(*number);
        const bool known = CT_Locale(lcid).b_IsValidLCID() || Info::sb_IsSupported(lcid);
        return *number <= 0xFFFFF && known ? std::optional(lcid) : std::nullopt;
    }
    const CT_UString text = FromUtf8(word);
    CT_Language::et_Primary primary = CT_Language::kNeutral;
    CT_Language::et_Sub sub = CT_Language::kSubDefault;
    if (CT_Language::sb_GetLanguages(&primary, &sub, &text)) return Identify(primary, sub);
    return FindNamed(ToText(text));
}

}  // namespace

Text ToText(const CT_UString& text) {
    return {text.qcuz_Get(), text.n_GetLength()};
}

Text ToText(std::string_view ascii) {
    return {ascii.begin(), ascii.end()};
}

Text Value(LCID lcid, unsigned int type) {
    CT_UString value;
    Info::sb_GetLocaleInfo(lcid, static_cast<Info::et_Type>(type), &value);
    return ToText(value);
}

Text NameOf(LCID lcid) {
    CT_UString name;
    CT_Language::sv_MakeLanguageString(&name, CT_Language::seo_GetPrimary(lcid),
                                       CT_Language::seo_GetSub(lcid));
    return ToText(name);
}

Text CodeOf(LCID lcid) {
    CT_UString code;
    CT_Language::sv_MakeLanguageCode(&code, CT_Language::seo_GetPrimary(lcid),
                                     CT_Language::seo_GetSub(lcid));
    return ToText(code);
}

Text Hexadecimal(LCID lcid) {
    char text[12];
    std::snprintf(text, sizeof text, "0x%04X", lcid);
    return ToText(text);
}

std::vector<LocaleEntry> Catalogue() {
    std::vector<CT_Language::et_Primary> languages;
    for (unsigned int value = 1; value <= CT_Language::sn_GetPrimaryCount(); ++value) {
        languages.push_back(static_cast<CT_Language::et_Primary>(value));
    }
    std::ranges::sort(languages, {}, [](CT_Language::et_Primary language) {
        return Text(CT_Language::sqcuz_GetLanguage(language));
    });
    std::vector<LocaleEntry> entries;
    for (const auto language : languages) {
        entries.push_back({CT_Language::sqcuz_GetLanguageCode(language),
                           CT_Language::sn_MakeLanguageID(language, CT_Language::kSubDefault),
                           CT_Language::sqcuz_GetLanguage(language)});
        for (unsigned int at = 1; at <= CT_Language::sn_GetSubCount(language); ++at) {
            const LCID lcid =
                CT_Language::sn_MakeLanguageID(language, CT_Language::seo_GetSubAt(language, at));
            entries.push_back({CodeOf(lcid), lcid, NameOf(lcid)});
        }
    }
    return entries;
}

bool Mentions(const LocaleEntry& entry, const std::string& word) {
    const Text wanted = Comparable(ToText(FromUtf8(word)));
    const Text own =
        Value(entry.lcid, Info::kNativeLanguage) + u' ' + Value(entry.lcid, Info::kNativeCountry);
    return Comparable(entry.code + u' ' + entry.name + u' ' + own).find(wanted) != Text::npos;
}

LCID ParseLocale(const std::string& word) {
    // de_DE.UTF-8 and ca_ES@euro, as the environment has them; but a name may have full stops too.
    for (const std::string& locale : {word, word.substr(0, word.find_first_of(".@"))}) {
        if (const auto found = FindLocale(locale)) return *found;
    }
    throw Failure("'" + word +
                      "' is no language code, name or locale number; "
                      "zelkor locale --list shows all, --list WORD looks for one",
                  2);
}

}  // namespace zelkor
