// Words and items of a text, found in the plainest way.
#ifndef TESTS_CORE_STRING_PLAINSPLIT_H
#define TESTS_CORE_STRING_PLAINSPLIT_H

#include <string>
#include <string_view>
#include <vector>

namespace test {

struct Place {
    std::size_t begin, length;
};

// The parts of a text between separators; words are those that are not empty.
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

}  // namespace test

#endif
