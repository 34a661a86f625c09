// Languages and locales by what a user types: the catalogue as a list, and texts of a locale.
#ifndef TOOLS_ZELKOR_LOCALENAMES_H
#define TOOLS_ZELKOR_LOCALENAMES_H

#include <Foundation/Core/String/UString.h>
#include <Foundation/Platform/Types.h>

#include <string>
#include <string_view>
#include <vector>

namespace zelkor::cli {

[[nodiscard]] std::u16string ToText(const CT_UString& text);
[[nodiscard]] std::u16string ToText(std::string_view ascii);

// A value of CT_LocaleInfo; empty when there is none.
[[nodiscard]] std::u16string Value(LCID lcid, unsigned int type);
// "German (Switzerland)", "DE-CH", "0x0807"
[[nodiscard]] std::u16string NameOf(LCID lcid);
[[nodiscard]] std::u16string CodeOf(LCID lcid);
[[nodiscard]] std::u16string Hexadecimal(LCID lcid);

struct LocaleEntry {
    std::u16string code;
    LCID lcid;
    std::u16string name;
};
// Every language by name, each followed by its own sub-languages.
[[nodiscard]] std::vector<LocaleEntry> Catalogue();
// Whether the code, the name or a name in the language's own words contains the word, in any case.
[[nodiscard]] bool Mentions(const LocaleEntry& entry, const std::string& word);

// The locale of a code, a display name or a number; anything else ends the command with bad usage.
[[nodiscard]] LCID ParseLocale(const std::string& word);

}  // namespace zelkor::cli

#endif
