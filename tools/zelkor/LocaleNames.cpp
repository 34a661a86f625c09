#include "LocaleNames.h"

#include <Foundation/Core/Character/CharMappings.h>
#include <Foundation/Core/Language/Language.h>
#include <Foundation/Core/Language/LocaleInfo.h>
#include <Foundation/Platform/Locales/Locales.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <optional>

#include "Console.h"

namespace zelkor::cli {

namespace {

using Info = CT_LocaleInfo;
using Text = std::u16string;

// Numbers that stand for what the process runs in.
constexpr LCID kUserDefault = 0x0400;
constexpr LCID kSystemDefault = 0x0800;
constexpr LCID kLargest = 0xFFFFF;

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

// The unit that stands for it in any case. The library's mappings are pairs of a capital and a
// small letter; these have no partner, or one that came later.
char16_t Fold(char16_t unit) {
    constexpr char16_t kAlone[][2] = {{u'\u00B5', u'\u03BC'}, {u'\u0130', u'i'},
                                      {u'\u017F', u's'},      {u'\u03C2', u'\u03C3'},
                                      {u'\u1E9E', u'\u00DF'}, {u'\u04C0', u'\u04CF'}};
    for (const auto& [from, to] : kAlone) {
        if (unit == from) return to;
    }
    // Georgian capitals
    if (unit >= u'\u1C90' && unit <= u'\u1CBF') return static_cast<char16_t>(unit - 0xBC0);
    return CT_CharMappings::su_ToLower(unit);
}

// The form in which names and codes are compared: decomposed, in one case, '-' between the parts of
// a code.
Text Comparable(const Text& text) {
    Text folded = text;
    for (char16_t& unit : folded) unit = unit == u'_' ? u'-' : Fold(unit);
    CT_UString apart(folded.data(), static_cast<unsigned int>(folded.size()));
    CT_CharMappings::sv_Decompose(&apart);
    return ToText(apart);
}

// By the display name of a row of the catalogue or by what the language calls itself, with its
// country or without.
std::optional<LCID> FindNamed(const Text& word) {
    const Text wanted = Comparable(word);
    for (const LocaleEntry& entry : Catalogue()) {
        const Text own = Value(entry.lcid, Info::kNativeLanguage);
        const Text country = Value(entry.lcid, Info::kNativeCountry);
        for (const Text& name : {entry.name, own, own + u" (" + country + u')'}) {
            if (!name.empty() && Comparable(name) == wanted) return entry.lcid;
        }
    }
    return {};
}

// What the library reads as a display name beyond those of the catalogue: "german( switzerland )",
// "English (Default)", "Bulgarian (Bulgaria)". A country that the language lacks is a slip.
std::optional<LCID> ReadDisplayName(const CT_UString& text) {
    const LCID lcid = CT_Language::sn_GetLanguageID(text.qcuz_Get());
    const auto primary = CT_Language::seo_GetPrimary(lcid);
    if (primary == CT_Language::kNeutral) return {};
    constexpr const char16_t* kBlanks = u" \t";
    const Text name = ToText(text);
    const std::size_t open = std::min(name.find(u'('), name.size());
    const std::size_t first = name.find_first_not_of(kBlanks, open + 1);
    if (open >= name.size() || first == Text::npos) return lcid;
    Text country = name.substr(first, name.find(u')', first) - first);
    country.erase(country.find_last_not_of(kBlanks) + 1);
    CT_Language::et_Sub sub = CT_Language::kSubDefault;
    const bool known =
        country.empty() || CT_Language::sn_GetSubCount(primary) == 0 ||
        CT_Language::sb_GetSubCountry(&sub, country.c_str(), primary) != FALSE ||
        CT_Language::sb_GetSubCountry(&sub, country.c_str(), CT_Language::kNeutral) != FALSE;
    return known ? std::optional(lcid) : std::nullopt;
}

// The parts of a locale's name as the environment has them, language_TERRITORY.charset@modifier,
// but in any case and with "-" too.
struct EnvironmentName {
    std::string language, territory, rest;
    bool exact = false;  // as the environment writes it

    [[nodiscard]] std::string Name() const {
        return language + (territory.empty() ? "" : '_' + territory) + rest;
    }
};

std::optional<EnvironmentName> ReadEnvironmentName(const std::string& word) {
    const auto letters = [](std::string_view text, char first, char last) {
        return std::ranges::all_of(text, [=](char c) { return c >= first && c <= last; });
    };
    const auto change = [](std::string& text, char first, char last) {
        for (char& c : text) c = c >= first && c <= last ? static_cast<char>(c ^ 0x20) : c;
    };
    const std::size_t end = std::min(word.find_first_of(".@"), word.size());
    const std::size_t middle = std::min(word.find_first_of("_-"), end);
    EnvironmentName name{word.substr(0, middle),
                         word.substr(std::min(middle + 1, end), end - std::min(middle + 1, end)),
                         word.substr(end), false};
    name.exact = letters(name.language, 'a', 'z') && letters(name.territory, 'A', 'Z') &&
                 (middle == end || word[middle] == '_');
    change(name.language, 'A', 'Z');
    change(name.territory, 'a', 'z');
    const bool good = (name.language.size() == 2 || name.language.size() == 3) &&
                      letters(name.language, 'a', 'z') && letters(name.territory, 'A', 'Z') &&
                      (middle == end || name.territory.size() == 2);
    return good ? std::optional(name) : std::nullopt;
}

// A name that the environment may have means what it means there, whatever the catalogue has.
std::optional<LCID> FindInEnvironment(const EnvironmentName& name) {
    const LCID lcid = platform::LocaleOfName(name.Name());
    if (lcid == 0) return {};
    if (name.exact || name.territory.empty()) return lcid;
    // in another form it is no name of the environment: a country that is not there is a slip
    const bool there = Value(lcid, Info::kIso3166Country) == ToText(name.territory) ||
                       lcid != platform::LocaleOfName(name.language);
    return there ? std::optional(lcid) : std::nullopt;
}

// By a code of the catalogue, "DE" or "DE-CH". The library takes any word that begins with one.
std::optional<LCID> FindCode(const std::string& word, const CT_UString& text) {
    const std::size_t separator = word.find_first_of("-_");
    if (separator == std::string::npos ? word.size() > 3 : separator > 3) return {};
    CT_Language::et_Primary primary = CT_Language::kNeutral;
    CT_Language::et_Sub sub = CT_Language::kSubDefault;
    if (!CT_Language::sb_GetLanguages(&primary, &sub, &text)) return {};
    return primary == CT_Language::kNeutral ? std::nullopt : std::optional(Identify(primary, sub));
}

std::optional<LCID> FindLocale(const std::string& word) {
    if (const auto number = word.empty() ? std::nullopt : ReadNumber(word)) {
        if (*number > kLargest) return {};
        const auto lcid = static_cast<LCID>(*number);
        if (lcid == 0 || lcid == kUserDefault) return Info::sn_GetUserDefaultLCID();
        if (lcid == kSystemDefault) return Info::sn_GetSystemDefaultLCID();
        const bool known = Info::sb_IsSupported(lcid) || Info::sb_IsProprietary(lcid);
        return known ? std::optional(lcid) : std::nullopt;
    }
    const auto environment = ReadEnvironmentName(word);
    if (environment && environment->exact) {
        if (const auto found = FindInEnvironment(*environment)) return found;
    }
    const CT_UString text = FromUtf8(word);
    if (const auto found = FindCode(word, text)) return found;
    if (environment) {
        if (const auto found = FindInEnvironment(*environment)) return found;
    }
    if (const auto found = FindNamed(ToText(text))) return found;
    return ReadDisplayName(text);
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
    if (CT_Language::seo_GetPrimary(lcid) == CT_Language::kNeutral) {
        return Value(lcid, Info::kEnglishLanguage);
    }
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

}  // namespace zelkor::cli
