// What the library knows of a character, as texts for a person and for programs.
#ifndef TOOLS_ZELKOR_CHARFACTS_H
#define TOOLS_ZELKOR_CHARFACTS_H

#include <string>
#include <vector>

namespace zelkor {

// One property. Empty values: the character does not have it.
struct Fact {
    enum class Kind { kText, kList, kNumbers };

    const char* name;
    Kind kind;
    std::vector<std::string> values;
};

// "U+00E9"; six digits at most.
[[nodiscard]] std::string CodeOf(char32_t code);

// UTF-8 of a code point that is no surrogate.
[[nodiscard]] std::string Utf8Of(char32_t code);

// For a character beyond U+FFFF only its two UTF-16 units and what they are.
[[nodiscard]] std::vector<Fact> FactsOf(char32_t code);

}  // namespace zelkor

#endif
