// Texts in every form that a key can have, and the hash as it is defined.
#ifndef TESTS_CORE_CONTAINER_HASHSUPPORT_H
#define TESTS_CORE_CONTAINER_HASHSUPPORT_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <deque>
#include <random>
#include <string>
#include <vector>

#include "Foundation/Core/Container/HashFunction.h"
#include "Foundation/Core/Container/VoidHashTable.h"
#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/Compare.h"
#include "Foundation/Core/String/UString.h"
#include "Support/Memory.h"

namespace test {

// What a key pointer leads to; At: to a pointer to that.
enum class Form {
    kBytes,
    kBytesAt,
    kCString,
    kCStringAt,
    kUnits,
    kUnitsAt,
    kUString,
    kUStringAt,
    kString,
    kStringAt,
    kNumber
};
using enum Form;

// One text of Latin-1 characters.
struct KeyText {
    explicit KeyText(const std::string& text)
        : bytes(text), cstring(text.c_str(), CT_CString::kToEnd, 1252) {
        for (const char byte : text) units += static_cast<unsigned char>(byte);
        padded = units + std::u16string(20, u'\0');
        ustring = CT_UString(units.c_str());
        units_at = padded.c_str();
        number = static_cast<std::uint32_t>(std::hash<std::string>()(text));
    }
    KeyText(const KeyText&) = delete;

    const void* Key(Form form) const {
        const void* const keys[] = {bytes_at,  &bytes_at,  cstring_at, &cstring_at,
                                    units_at,  &units_at,  ustring_at, &ustring_at,
                                    string_at, &string_at, &number};
        return keys[static_cast<std::size_t>(form)];
    }
    // The hash before a table size comes in.
    std::uint32_t Hash(Form form, bool folds) const {
        if (form == kNumber) return number;
        const bool wide = form >= kUnits;
        std::uint32_t hash = 0;
        for (const char byte : bytes) {
            const int unit =
                wide ? static_cast<unsigned char>(byte) : static_cast<signed char>(byte);
            hash = hash * 16 + static_cast<std::uint32_t>(
                                   folds && unit >= 'a' && unit <= 'z' ? unit - 32 : unit);
            const std::uint32_t top = hash & 0xF0000000;
            if (top != 0) hash = (hash ^ (top >> 24)) & 0x0FFFFFFF;
        }
        return hash;
    }

    std::string bytes;
    CT_CString cstring;
    std::u16string units, padded;
    CT_UString ustring;
    std::uint32_t number;
    const char* bytes_at = bytes.c_str();
    const char16_t* units_at;
    const CT_CString* cstring_at = &cstring;
    const CT_UString* ustring_at = &ustring;
    const CT_String* string_at = &cstring;  // of the kind that is converted
};

// Numbers that --gtest_random_seed decides; `seed` is shown where they lead to a failure.
class Random {
public:
    const int seed = testing::UnitTest::GetInstance()->random_seed();

    // A number below `limit`.
    std::uint32_t operator()(std::size_t limit = std::size_t{1} << 32) {
        return static_cast<std::uint32_t>(numbers_() % limit);
    }
    std::string Text(std::size_t most) {
        std::string text((*this)(most + 1), ' ');
        for (char& byte : text) byte = "abAB\xE9"[(*this)(5)];
        return text;
    }

private:
    std::mt19937 numbers_{static_cast<std::uint32_t>(seed)};
};

}  // namespace test

#endif
