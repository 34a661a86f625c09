// The default locales of the process, out of its environment, and the locale of each thread.
#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <initializer_list>
#include <string_view>
#include <type_traits>

#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Locales/Internal/LocaleDetail.h"
#include "Foundation/Platform/Locales/Locales.h"
#include "Foundation/Platform/ThreadLocal.h"

namespace zelkor::platform {
namespace {

constexpr LCID kNoLanguage = 0x0409;

// Names of the environment that do not lead to the first row of their language and territory. An
// empty territory or modifier fits every one; the first that fits counts.
struct SpecialName {
    char language[4], territory[3], modifier[9];
    LCID lcid;
};
constexpr auto kSpecialNames = std::to_array<SpecialName>(
    {{"az", "", "cyrillic", 0x082C}, {"cy", "", "", 0x0452},      {"fil", "", "", 0x0464},
     {"in", "", "", 0x0421},         {"iw", "", "", 0x040D},      {"mt", "", "", 0x043A},
     {"no", "", "", 0x0414},         {"se", "", "", 0x043B},      {"sr", "BA", "latin", 0x181A},
     {"sr", "BA", "", 0x1C1A},       {"sr", "", "latin", 0x081A}, {"sr", "", "", 0x0C1A},
     {"st", "", "", 0x0430},         {"tl", "", "", 0x0464},      {"uz", "", "cyrillic", 0x0843},
     {"xh", "", "", 0x0434},         {"zh", "HK", "", 0x0C04},    {"zh", "MO", "", 0x0C04},
     {"zh", "SG", "", 0x1004},       {"zh", "TW", "", 0x0404},    {"zh", "", "", 0x0804},
     {"zu", "", "", 0x0435}});

// One of the defaults: the locale in force and the one found at load.
class DefaultLocale {
public:
    void Take(LCID lcid) noexcept {
        found_.store(lcid, std::memory_order_relaxed);
        Set(0);
    }
    void Set(LCID lcid) noexcept {
        if (lcid == 0) lcid = found_.load(std::memory_order_relaxed);
        current_.store(lcid, std::memory_order_relaxed);
    }
    [[nodiscard]] LCID Get() const noexcept { return current_.load(std::memory_order_relaxed); }

private:
    std::atomic<LCID> current_{kNoLanguage}, found_{kNoLanguage};
};
constinit DefaultLocale user_default;
constinit DefaultLocale system_default;
ZELKOR_THREAD_LOCAL LCID thread_locale = 0;  // 0: the user's default

// Without regard to the case of A to Z.
template <typename Text>
bool Same(Text text, std::string_view name) noexcept {
    const auto lower = [](auto unit) -> char32_t {
        const char32_t point = static_cast<std::make_unsigned_t<decltype(unit)>>(unit);
        return point >= U'A' && point <= U'Z' ? point | 0x20 : point;
    };
    return std::ranges::equal(text, name, {}, lower, lower);
}

// The parts of a name, empty where they are missing.
struct LocaleName {
    std::string_view language, territory, modifier;
};

LocaleName SplitName(std::string_view name) noexcept {
    const auto behind = [](std::string_view text, const char* marks) {
        const std::size_t at = text.find_first_of(marks);
        return at == std::string_view::npos ? std::string_view{} : text.substr(at + 1);
    };
    const std::string_view locale = name.substr(0, name.find_first_of(".@"));
    return {locale.substr(0, locale.find_first_of("_-")), behind(locale, "_-"), behind(name, "@")};
}

// The locale of the first variable that is set; 0x0409 when that names no language.
LCID FirstOf(EnvironmentVariable variable, std::initializer_list<const char*> names) noexcept {
    for (const char* name : names) {
        const char* value = variable(name);
        if (value == nullptr || *value == '\0') continue;
        const LCID lcid = LocaleOfName(value);
        return lcid == 0 ? kNoLanguage : lcid;
    }
    return kNoLanguage;
}

}  // namespace

LCID LocaleOfName(std::string_view name) noexcept {
    const LocaleName wanted = SplitName(name);
    const auto fits = [](std::string_view given, std::string_view rule) {
        return rule.empty() || Same(rule, given);
    };
    for (const SpecialName& special : kSpecialNames) {
        if (Same(std::string_view(special.language), wanted.language) &&
            fits(wanted.territory, special.territory) && fits(wanted.modifier, special.modifier)) {
            return special.lcid;
        }
    }
    LCID nearest = 0;
    for (std::uint32_t row = 0; row < nls::kLocaleRows; ++row) {
        if (!Same(nls::TextAt(row, *nls::ColumnOf(kLocaleIsoLanguage)), wanted.language)) continue;
        const LCID lcid = nls::kRowLanguages[row];
        if (Same(nls::TextAt(row, *nls::ColumnOf(kLocaleIsoCountry)), wanted.territory)) {
            return lcid;
        }
        if (nearest == 0) nearest = lcid;
    }
    return nearest;
}

void TakeEnvironment(EnvironmentVariable variable) noexcept {
    if (variable == nullptr) {
        variable = [](const char* name) -> const char* { return std::getenv(name); };
    }
    system_default.Take(FirstOf(variable, {"LC_ALL", "LC_CTYPE", "LANG"}));
    user_default.Take(
        FirstOf(variable, {"LC_ALL", "LC_TIME", "LC_NUMERIC", "LC_MONETARY", "LANG"}));
    nls::TakeSystemPages(system_default.Get());
}

LCID GetSystemDefaultLCID() noexcept {
    return system_default.Get();
}

LCID GetUserDefaultLCID() noexcept {
    return user_default.Get();
}

LANGID GetSystemDefaultLangID() noexcept {
    return static_cast<LANGID>(GetSystemDefaultLCID());
}

LANGID GetUserDefaultLangID() noexcept {
    return static_cast<LANGID>(GetUserDefaultLCID());
}

void SetDefaultLocales(LCID user, LCID system) noexcept {
    user_default.Set(user);
    system_default.Set(system);
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

}  // namespace zelkor::platform
