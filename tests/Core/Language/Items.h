// Tables of tests as one text, and large tables as one number.
#ifndef TESTS_CORE_LANGUAGE_ITEMS_H
#define TESTS_CORE_LANGUAGE_ITEMS_H

#include <cstdint>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace test {

// "key=value|key=value|..."
inline std::vector<std::pair<std::string, std::string>> Items(const std::string& table) {
    std::vector<std::pair<std::string, std::string>> items;
    std::istringstream input(table);
    for (std::string item; std::getline(input, item, '|');) {
        const std::size_t equals = item.rfind('=');
        items.emplace_back(item.substr(0, equals), item.substr(equals + 1));
    }
    return items;
}

// FNV-1a, for tables that were compared with their definition line by line: tells any change since.
inline std::uint64_t Hash(const std::string& text) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3;
    return hash;
}

}  // namespace test

#endif
