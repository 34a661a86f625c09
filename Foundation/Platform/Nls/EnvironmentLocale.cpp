// The locale that the process environment asks for.
#include <cstdlib>

#include "Foundation/Platform/Nls/LocaleDetail.h"

namespace platform::nls {

EnvironmentLocale ReadEnvironmentLocale() noexcept {
    std::string_view locale;
    for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && *value != '\0') {
            locale = value;
            break;
        }
    }
    const std::string_view name = locale.substr(0, locale.find_first_of(".@"));
    if (name == "C" || name == "POSIX") return {};
    const auto behind = [](std::string_view text, char mark) {
        const std::size_t at = text.find(mark);
        return at == std::string_view::npos ? std::string_view{} : text.substr(at + 1);
    };
    return {name, name.substr(0, name.find('_')), behind(name, '_'), behind(locale, '@')};
}

}  // namespace platform::nls
