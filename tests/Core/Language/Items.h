// Tables of tests as one text.
#ifndef TESTS_CORE_LANGUAGE_ITEMS_H
#define TESTS_CORE_LANGUAGE_ITEMS_H

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

}  // namespace test

#endif
