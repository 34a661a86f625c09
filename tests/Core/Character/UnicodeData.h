// The character database of Unicode 2.0 as published, for tests that derive whole tables from it.
// It may be passed on together with the notice beside it, data/UnicodeData-2.0.14-ReadMe.txt.
#ifndef TESTS_CORE_CHARACTER_UNICODEDATA_H
#define TESTS_CORE_CHARACTER_UNICODEDATA_H

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace test {

// One character's fields; all empty for what is not assigned.
struct UnicodeCharacter {
    std::string name, category, bidi, tag, digit, number;
    std::vector<char16_t> parts;  // of its decomposition, a compatibility one when it has a tag
    char16_t lower = 0;

    [[nodiscard]] bool IsAssigned() const { return !name.empty(); }
};

inline UnicodeCharacter ParseCharacter(const std::vector<std::string>& fields) {
    const auto unit = [](const std::string& hex) {
        return static_cast<char16_t>(std::stoul(hex, nullptr, 16));
    };
    UnicodeCharacter character{fields[1], fields[2], fields[4], "", fields[7], fields[8], {}, 0};
    std::istringstream parts(fields[5]);
    for (std::string part; parts >> part;) {
        if (part[0] == '<') {
            character.tag = part;
        } else {
            character.parts.push_back(unit(part));
        }
    }
    if (!fields[13].empty()) character.lower = unit(fields[13]);
    return character;
}

// By code unit.
inline const std::vector<UnicodeCharacter>& UnicodeData() {
    static const auto characters = [] {
        std::vector<UnicodeCharacter> all(0x10000);
        std::ifstream file(ZELKOR_UNICODE_DATA);
        std::size_t first = 0;
        for (std::string line, field; std::getline(file, line);) {
            std::vector<std::string> fields;
            std::istringstream stream(line + ';');
            while (std::getline(stream, field, ';')) fields.push_back(field);
            const std::size_t code = std::stoul(fields[0], nullptr, 16);
            // An area is given by two lines, its first and its last character.
            if (!fields[1].ends_with(", Last>")) first = code;
            std::fill(all.begin() + static_cast<std::ptrdiff_t>(first),
                      all.begin() + static_cast<std::ptrdiff_t>(code) + 1, ParseCharacter(fields));
        }
        return all;
    }();
    return characters;
}

// FNV-1a over numbers, each taken whole: what a table or a set of units should hold, in one word.
class Fingerprint {
public:
    void Add(std::uint64_t value) { hash_ = (hash_ ^ value) * 1099511628211U; }
    [[nodiscard]] std::uint64_t Get() const { return hash_; }

private:
    std::uint64_t hash_ = 14695981039346656037U;
};

template <typename Property>
std::uint64_t FingerprintOfAllUnits(Property property) {
    Fingerprint fingerprint;
    for (unsigned int unit = 0; unit <= 0xFFFF; ++unit) {
        fingerprint.Add(static_cast<std::uint64_t>(property(static_cast<char16_t>(unit))));
    }
    return fingerprint.Get();
}

}  // namespace test

#endif
