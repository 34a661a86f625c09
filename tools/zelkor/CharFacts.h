// What the library knows of a character, as texts for a person and for programs.
#ifndef TOOLS_ZELKOR_CHARFACTS_H
#define TOOLS_ZELKOR_CHARFACTS_H

#include <string>
#include <vector>

namespace zelkor::cli {

// One property. Empty values: the character does not have it.
struct Fact {
    // Characters are values as Labelled gives them.
    enum class Kind { kText, kTexts, kNumbers, kCharacter, kCharacters };

    const char* label;
    const char* key;  // of the JSON form
    Kind kind;
    std::vector<std::string> values;
    const char* summary = nullptr;  // shown to a person in place of many values
};

// "U+00E9"; six digits at most.
[[nodiscard]] std::string CodeOf(char32_t code);

// UTF-8 of a code point that is no surrogate.
[[nodiscard]] std::string Utf8Of(char32_t code);

// The code, and behind a blank what can be shown of the character: marks on a circle, nothing of
// controls, surrogates and the like.
[[nodiscard]] std::string Labelled(char32_t code);

// For a character beyond U+FFFF only its two UTF-16 units and what they are.
[[nodiscard]] std::vector<Fact> FactsOf(char32_t code);

}  // namespace zelkor::cli

#endif
