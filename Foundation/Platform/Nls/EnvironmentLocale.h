// The locale that the process environment asks for. Not for callers outside Nls.
#ifndef FOUNDATION_PLATFORM_NLS_ENVIRONMENTLOCALE_H
#define FOUNDATION_PLATFORM_NLS_ENVIRONMENTLOCALE_H

#include <string_view>

namespace platform::nls {

// A locale name is language_TERRITORY.charset@modifier; all but the language may be missing.
struct EnvironmentLocale {
    std::string_view name;  // language, and territory if there is one
    std::string_view language;
    std::string_view territory;
    std::string_view modifier;
};

// From the first of LC_ALL, LC_CTYPE and LANG that is set. The language is empty when there is
// none, and for the locales "C" and "POSIX". Borrowed from the environment.
[[nodiscard]] EnvironmentLocale ReadEnvironmentLocale() noexcept;

}  // namespace platform::nls

#endif
