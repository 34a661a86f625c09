// Strings as standard ones, and the words and items of a text found in the plainest way.
#ifndef TESTS_CORE_STRING_PLAINTEXTS_H
#define TESTS_CORE_STRING_PLAINTEXTS_H

#include <string>
#include <string_view>
#include <vector>

#include "Foundation/Core/String/UString.h"

namespace test {

inline CT_UString String(std::u16string_view text) {
    return CT_UString(text.data(), static_cast<std::uint32_t>(text.size()));
}
inline std::u16string Of(const CT_UString& string) {
    return std::u16string(string.qcuz_Get(), string.n_GetLength());
}

// The parts of a text between separators; words are those that are not empty.
struct Place {
    std::size_t begin, length;
};
inline std::vector<Place> Split(std::u16string_view text, std::u16string_view separators,
                                bool words) {
    std::vector<Place> parts;
    std::size_t begin = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i < text.size() && separators.find(text[i]) == separators.npos) continue;
        if (!words || i > begin) parts.push_back({begin, i - begin});
        begin = i + 1;
    }
    return parts;
}

// All occurrences from left to right, those that a replacement brings in left alone.
inline std::u16string Replaced(std::u16string text, std::u16string_view find,
                               std::u16string_view replacement) {
    std::size_t at = 0;
    while (!find.empty() && (at = text.find(find, at)) != text.npos) {
        text.replace(at, find.size(), replacement);
        at += replacement.size();
    }
    return text;
}

}  // namespace test

#endif
