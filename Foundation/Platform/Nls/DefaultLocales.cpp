// The default locales of the process, out of its environment, and the locale of each thread.
#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>

#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Nls/LocaleDetail.h"
#include "Foundation/Platform/Nls/Locales.h"
#include "Foundation/Platform/ThreadLocal.h"

namespace platform {
namespace {

constexpr LCID kNoLanguage = 0x0409;

// Names of the environment that do not lead to the first row of their language and territory. An
// empty territory or modifier fits every one; the first that fits counts.
struct SpecialName {
    char language[3], territory[3], modifier[9];
    LCID lcid;
};
constexpr auto kSpecialNames = std::to_array<SpecialName>({{"az", "", "cyrillic", 0x082C},
                                                           {"cy", "", "", 0x0452},
                                                           {"in", "", "", 0x0421},
                                                           {"iw", "", "", 0x040D},
                                                           {"no", "", "", 0x0414},
                                                           {"sr", "BA", "latin", 0x181A},
                                                           {"sr", "BA", "", 0x1C1A},
                                                           {"sr", "", "latin", 0x081A},
                                                           {"sr", "", "", 0x0C1A},
                                                           {"uz", "", "cyrillic", 0x0843},
                                                           {"zh", "HK", "", 0x0C04},
                                                           {"zh", "MO", "", 0x0C04},
                                                           {"zh", "SG", "", 0x1004},
                                                           {"zh", "TW", "", 0x0404},
                                                           {"zh", "", "", 0x0804}});

// 0 until the first question.
constinit std::atomic<LCID> user_default{0};
constinit std::atomic<LCID> system_default{0};
FOUNDATION_THREAD_LOCAL LCID thread_locale = 0;  // 0: the user's default

bool Equal(std::u16string_view text, std::string_view ascii) noexcept {
    return std::ranges::equal(text, ascii, [](char16_t unit, char byte) {
        return unit == static_cast<unsigned char>(byte);
    });
}

// A name of the environment is language_TERRITORY.charset@modifier; all but the language may be
// missing.
struct EnvironmentName {
    std::string_view language, territory, modifier;
};

EnvironmentName ReadEnvironment() noexcept {
    std::string_view locale;
    for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value == nullptr || *value == '\0') continue;
        locale = value;
        break;
    }
    const auto behind = [](std::string_view text, char mark) {
        const std::size_t at = text.find(mark);
        return at == std::string_view::npos ? std::string_view{} : text.substr(at + 1);
    };
    const std::string_view name = locale.substr(0, locale.find_first_of(".@"));
    return {name.substr(0, name.find('_')), behind(name, '_'), behind(locale, '@')};
}

LCID LocaleOf(const EnvironmentName& wanted) noexcept {
    const auto fits = [](std::string_view given, std::string_view rule) {
        return rule.empty() || rule == given;
    };
    for (const SpecialName& name : kSpecialNames) {
        if (name.language == wanted.language && fits(wanted.territory, name.territory) &&
            fits(wanted.modifier, name.modifier)) {
            return name.lcid;
        }
    }
    LCID nearest = 0;
    for (std::uint32_t row = 0; row < nls::kLocaleRows; ++row) {
        if (!Equal(nls::TextAt(row, *nls::ColumnOf(kLocaleIsoLanguage)), wanted.language)) continue;
        const LCID lcid = nls::kRowLanguages[row];
        if (Equal(nls::TextAt(row, *nls::ColumnOf(kLocaleIsoCountry)), wanted.territory))
            return lcid;
        if (nearest == 0) nearest = lcid;
    }
    return nearest == 0 ? kNoLanguage : nearest;
}

LCID Asked(std::atomic<LCID>& kept) noexcept {
    LCID lcid = kept.load(std::memory_order_relaxed);
    if (lcid != 0) return lcid;
    const LCID fresh = nls::EnvironmentLocale();
    // Another thread, or SetDefaultLocales, may have been faster; its answer stays.
    return kept.compare_exchange_strong(lcid, fresh, std::memory_order_relaxed) ? fresh : lcid;
}

}  // namespace

LCID nls::EnvironmentLocale() noexcept {
    return LocaleOf(ReadEnvironment());
}

LCID GetSystemDefaultLCID() noexcept {
    return Asked(system_default);
}

LCID GetUserDefaultLCID() noexcept {
    return Asked(user_default);
}

LANGID GetSystemDefaultLangID() noexcept {
    return static_cast<LANGID>(GetSystemDefaultLCID());
}

LANGID GetUserDefaultLangID() noexcept {
    return static_cast<LANGID>(GetUserDefaultLCID());
}

void SetDefaultLocales(LCID user, LCID system) noexcept {
    user_default.store(user, std::memory_order_relaxed);
    system_default.store(system, std::memory_order_relaxed);
}

LCID GetThreadLocale() noexcept {
    return thread_locale == 0 ? GetUserDefaultLCID() : thread_locale;
}

bool SetThreadLocale(LCID lcid) noexcept {
    const LCID found = ResolveLocale(lcid);
    if (found == 0) {
        SetLastError(kErrorInvalidParameter);
        return false;
    }
    thread_locale = lcid == 0 ? 0 : found;
    return true;
}

}  // namespace platform
