#include "Foundation/Core/Language/LocaleInfo.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "Foundation/Core/Container/StringOrdinalMap.h"
#include "Foundation/Core/Language/Codepage.h"
#include "Foundation/Core/Language/Internal/AnsiCodePages.h"
#include "Foundation/Core/Language/Internal/ProprietaryLocales.h"
#include "Foundation/Core/String/Internal/PlatformName.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Locales/Locales.h"
#include "Foundation/Platform/Runtime.h"

namespace platform = zelkor::platform;

using zelkor::detail::ProprietaryLocale;

namespace {

using Text = std::u16string_view;

constexpr std::size_t kLongestValue = 127;
constexpr unsigned int kUtf16Page = 1200;

constinit zelkor::detail::AnsiCodePages ansi_code_pages;

// ---- Values -------------------------------------------------------------------------------------

bool IsInstalled(LCID lcid) {
    return platform::IsValidLocale(lcid, platform::kLocaleInstalled);
}

struct Value {
    Text text;  // constant, followed by a zero
    bool of_platform;
};

std::optional<Value> FindValue(LCID lcid, std::uint32_t type) {
    lcid = platform::WithoutDefaults(lcid);
    const ProprietaryLocale own(lcid);
    if (own.IsOne() && !IsInstalled(lcid)) {
        if (const auto text = own.Value(type & 0xFFFF)) return Value{*text, false};
        lcid = own.Fallback();
        if (lcid == 0 || (ProprietaryLocale(lcid).IsOne() && !IsInstalled(lcid))) return {};
    }
    const auto text = platform::LocaleText(lcid, type);
    if (!text || text->size() > kLongestValue) return {};
    return Value{*text, true};
}

// The information types whose text is a number.
bool IsNumeric(std::uint32_t type) {
    struct Range {
        std::uint32_t first, last;
    };
    static constexpr auto kRanges = std::to_array<Range>({{0x0001, 0x0001},
                                                          {0x0005, 0x0005},
                                                          {0x0009, 0x000B},
                                                          {0x000D, 0x000D},
                                                          {0x0011, 0x0012},
                                                          {0x0019, 0x001C},
                                                          {0x0021, 0x0027},
                                                          {0x0052, 0x0057},
                                                          {0x1004, 0x1005},
                                                          {0x1009, 0x1009},
                                                          {0x100B, 0x100D},
                                                          {0x1010, 0x1010}});
    return std::ranges::any_of(
        kRanges, [type](Range range) { return type >= range.first && type <= range.last; });
}

// The distinct values of one type, as sv_CollectValues gathers them on one thread. The one being
// filled is `current`.
struct Collection {
    explicit Collection(CT_LocaleInfo::et_Type wanted) : type(wanted) { current = this; }
    ~Collection() { current = nullptr; }
    Collection(const Collection&) = delete;
    Collection& operator=(const Collection&) = delete;

    static constinit thread_local Collection* current;
    CT_LocaleInfo::et_Type type;
    CT_StringOrdinalMap values;
};
constinit thread_local Collection* Collection::current = nullptr;

// ---- Code pages and character sets --------------------------------------------------------------

// For locales of which the platform knows nothing.
unsigned int AnsiPageByLanguage(unsigned int language_id) {
    const unsigned int sub = language_id >> 10;
    switch (language_id & 0x3FF) {
        case 0x01:
        case 0x29:
            return 1256;
        case 0x02:
        case 0x19:
        case 0x22:
        case 0x23:
            return 1251;
        case 0x04:
            return sub == 1 || sub == 3 ? 950 : 936;
        case 0x05:
        case 0x0E:
        case 0x15:
        case 0x18:
        case 0x1A:
        case 0x1B:
        case 0x24:
        case 0x38:
            return 1250;
        case 0x08:
            return 1253;
        case 0x0D:
            return 1255;
        case 0x11:
            return 932;
        case 0x12:
            return sub == 2 ? 1361 : 949;
        case 0x1E:
            return 874;
        case 0x1F:
            return 1254;
        case 0x25:
        case 0x26:
        case 0x27:
            return 1257;
        case 0x2A:
            return 1258;
        default:
            return 1252;
    }
}

constexpr unsigned int kDefaultCharset = 1;
constexpr unsigned int kNoCharset = 0xFFFFFFFF;  // stands for ISO 8859-3, which has none

// A code page, its character set and the language that stands for both.
struct Script {
    unsigned int code_page;
    unsigned int charset;
    unsigned int language;
};
constexpr auto kScripts = std::to_array<Script>({{874, 222, 1054},
                                                 {932, 128, 1041},
                                                 {936, 134, 2052},
                                                 {949, 129, 1042},
                                                 {950, 136, 1028},
                                                 {1250, 238, 1029},
                                                 {1251, 204, 1049},
                                                 {1252, 0, 1033},
                                                 {1253, 161, 1032},
                                                 {1254, 162, 1055},
                                                 {1255, 177, 1037},
                                                 {1256, 178, 1025},
                                                 {1257, 186, 1063},
                                                 {1258, 163, 1066},
                                                 {1361, 130, 2066},
                                                 {28593, kNoCharset, 1082}});

const Script* ScriptBy(unsigned int Script::*field, unsigned int value) {
    const auto script = std::ranges::find(kScripts, value, field);
    return script == kScripts.end() ? nullptr : &*script;
}

}  // namespace

void CT_LocaleInfo::sv_Exit() {
    ansi_code_pages.Clear();
}

// ---- Locales ------------------------------------------------------------------------------------

unsigned int CT_LocaleInfo::sn_GetSystemDefaultLCID() {
    return platform::GetSystemDefaultLCID();
}

unsigned int CT_LocaleInfo::sn_GetUserDefaultLCID() {
    return platform::GetUserDefaultLCID();
}

unsigned int CT_LocaleInfo::sn_GetSystemDefaultLangID() {
    return platform::GetSystemDefaultLangID();
}

unsigned int CT_LocaleInfo::sn_GetUserDefaultLangID() {
    return platform::GetUserDefaultLangID();
}

BOOL CT_LocaleInfo::sb_IsSupported(LCID lcid) {
    return platform::IsValidLocale(lcid, platform::kLocaleSupported);
}

BOOL CT_LocaleInfo::sb_IsInstalled(LCID lcid) {
    return IsInstalled(lcid);
}

BOOL CT_LocaleInfo::sb_IsProprietary(LCID lcid) {
    return ProprietaryLocale(lcid).IsOne() && !IsInstalled(lcid);
}

unsigned int CT_LocaleInfo::sn_MakeLocaleID(unsigned int language_id, unsigned int sort_order) {
    return sort_order << 16 | language_id;
}

unsigned int CT_LocaleInfo::sn_GetPrimaryLangID(unsigned int language_id) {
    return language_id & 0x3FF;
}

unsigned int CT_LocaleInfo::sn_GetSubLangID(unsigned int language_id) {
    return (language_id & 0xFFFF) >> 10;
}

// ---- Values -------------------------------------------------------------------------------------

BOOL CT_LocaleInfo::sb_GetLocaleInfo(LCID lcid, et_Type type, CT_UString* value) {
    const auto found = FindValue(lcid, type);
    if (!found || value == nullptr) return FALSE;
    value->v_Set(found->text.data(), static_cast<std::uint32_t>(found->text.size()));
    if (found->of_platform) zelkor::detail::PassPlatform(value);
    return TRUE;
}

BOOL CT_LocaleInfo::sb_GetLocaleInfo(LCID lcid, et_Type type, char16_t* buffer, unsigned int size) {
    const auto found = FindValue(lcid, type);
    if (!found || (buffer == nullptr && size != 0)) return FALSE;
    Text text = found->text;
    CT_UString passed;
    if (found->of_platform && zelkor::detail::IsOlderFamily()) {
        sb_GetLocaleInfo(lcid, type, &passed);
        text = zelkor::detail::View(passed);
    }
    const std::size_t copied = text.copy(buffer, size);
    if (copied < size) buffer[copied] = 0;
    return TRUE;
}

BOOL CT_LocaleInfo::sb_GetLocaleInfo(LCID lcid, et_Type type, unsigned int* number) {
    if (number == nullptr || !IsNumeric(type)) return FALSE;
    const auto found = FindValue(lcid, type);
    if (!found) return FALSE;
    *number = static_cast<unsigned int>(platform::ReadInteger(found->text.data()));
    return TRUE;
}

void CT_LocaleInfo::sv_CollectValues(et_Type type, char16_t separator, CT_UString* values) {
    if (values == nullptr) return;
    values->vv_Init();
    Collection found(type);
    platform::EnumSystemLocales(&sb_CollectLocaleInfo, platform::kLocaleInstalled);
    for (std::uint32_t position = 1; position <= found.values.n_GetCount(); ++position) {
        if (position > 1) values->v_Append(separator);  // which ignores a zero
        values->v_Append(found.values.pcco_Get(position));
    }
}

BOOL CT_LocaleInfo::sb_CollectLocaleInfo(char16_t* lcid_text) {
    constexpr int kHexadecimal = 16;
    const auto lcid = static_cast<LCID>(platform::ReadLong(lcid_text, kHexadecimal).value);
    CT_UString value;
    Collection& found = *Collection::current;
    if (sb_GetLocaleInfo(lcid, found.type, &value) && found.values.n_Get(&value) == 0) {
        found.values.v_Insert(&value, CT_StringOrdinalMap::kEnd);
    }
    return TRUE;
}

// ---- Code pages and character sets --------------------------------------------------------------

unsigned int CT_LocaleInfo::sn_GetDefaultANSICodePage(LCID lcid) {
    if (const unsigned int known = ansi_code_pages.Find(lcid)) return known;
    unsigned int code_page = 0;
    if (!sb_GetLocaleInfo(lcid, kAnsiCodePage, &code_page)) {
        code_page = AnsiPageByLanguage(lcid & 0xFFFF);
    } else if (code_page == 0) {
        code_page = kUtf16Page;
    }
    // What stands for the default locales may change.
    if (sn_GetPrimaryLangID(lcid) != 0) ansi_code_pages.Keep(lcid, code_page);
    return code_page;
}

unsigned int CT_LocaleInfo::sn_GetDefaultCharset(LCID lcid) {
    const Script* script = ScriptBy(&Script::code_page, sn_GetDefaultANSICodePage(lcid));
    return script == nullptr || script->charset == kNoCharset ? kDefaultCharset : script->charset;
}

unsigned int CT_LocaleInfo::sn_GetDefaultCPLocale(unsigned int code_page) {
    const Script* script = ScriptBy(&Script::code_page, code_page);
    return script == nullptr ? sn_GetSystemDefaultLangID() : script->language;
}

unsigned int CT_LocaleInfo::sn_GetDefaultCharsetLocale(unsigned int charset) {
    const Script* script = ScriptBy(&Script::charset, charset);
    return script == nullptr ? sn_GetSystemDefaultLangID() : script->language;
}

BOOL CT_LocaleInfo::sb_IsUnicodeOnly(LCID lcid) {
    const unsigned int code_page = sn_GetDefaultANSICodePage(lcid);
    return code_page == kUtf16Page || code_page == 1201 || code_page == 65001;
}

BOOL CT_LocaleInfo::sb_IsRTL(LCID lcid) {
    const unsigned int sub = sn_GetSubLangID(lcid);
    switch (sn_GetPrimaryLangID(lcid)) {
        case 0x01:
        case 0x0D:
        case 0x29:
        case 0x59:
        case 0x5A:
        case 0x65:
            return TRUE;
        case 0x20:  // Urdu, but not that of India
            return sub == 1;
        case 0x60:  // Kashmiri, but not in Devanagari
            return sub != 2;
        default:
            return FALSE;
    }
}

BOOL CT_LocaleInfo::sb_IsValidCodePage(unsigned int number) {
    return CT_Codepage::sb_IsValidCodePage(number);
}
