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

namespace test::hash {

using F = CT_HashFunction;
using C = CT_Compare;
using Table = CT_VoidHashTable;

// What a key pointer leads to; At: to a pointer to that.
enum Form { kText, kTextAt, kCStr, kCStrAt, kWide, kWideAt, kUStr, kUStrAt, kStr, kStrAt, kInt };

// The functions for keys of one form.
struct Functions {
    template <typename Exact, typename Folding>
    Functions(Exact exact, Folding folding, Table::HashFunction hash, Table::HashFunction hash_twin,
              Table::HashFunction folding_hash, Table::HashFunction folding_twin)
        : hashes{{hash, hash_twin}, {folding_hash, folding_twin}},
          compares{reinterpret_cast<Table::CompareFunction>(exact),
                   reinterpret_cast<Table::CompareFunction>(folding)} {}
    Table::HashFunction hashes[2][2];    // [folds case][twin]
    Table::CompareFunction compares[2];  // [folds case]
};
inline const Functions kFunctions[] = {
    {&C::si_CompareCaseQCCZ, &C::si_CompareNoCaseQCZ, &F::sn_HashCaseQCCZ, &F::sn_HashCaseQCZ,
     &F::sn_HashNoCaseQCCZ, &F::sn_HashNoCaseQCZ},
    {&C::si_CompareCasePQCZ, &C::si_CompareNoCasePQCCZ, &F::sn_HashCasePQCCZ, &F::sn_HashCasePQCZ,
     &F::sn_HashNoCasePQCCZ, &F::sn_HashNoCasePQCZ},
    {&C::si_CompareCStringPCCO, &C::si_CompareCStringNoCasePCO, &F::sn_HashCStringPCCO,
     &F::sn_HashCStringPCO, &F::sn_HashCStringNoCasePCCO, &F::sn_HashCStringNoCasePCO},
    {&C::si_CompareCStringPPCO, &C::si_CompareCStringNoCasePPCCO, &F::sn_HashCStringPPCCO,
     &F::sn_HashCStringPPCO, &F::sn_HashCStringNoCasePPCCO, &F::sn_HashCStringNoCasePPCO},
    {&C::si_CompareCaseQUZ, &C::si_CompareNoCaseQCUZ, &F::sn_HashCaseQCUZ, &F::sn_HashCaseQUZ,
     &F::sn_HashNoCaseQCUZ, &F::sn_HashNoCaseQUZ},
    {&C::si_CompareCasePQCUZ, &C::si_CompareNoCasePQUZ, &F::sn_HashCasePQCUZ, &F::sn_HashCasePQUZ,
     &F::sn_HashNoCasePQCUZ, &F::sn_HashNoCasePQUZ},
    {&C::si_CompareUStringPCCO, &C::si_CompareUStringNoCasePCO, &F::sn_HashUStringPCCO,
     &F::sn_HashUStringPCO, &F::sn_HashUStringNoCasePCCO, &F::sn_HashUStringNoCasePCO},
    {&C::si_CompareUStringPPCCO, &C::si_CompareUStringNoCasePPCO, &F::sn_HashUStringPPCCO,
     &F::sn_HashUStringPPCO, &F::sn_HashUStringNoCasePPCCO, &F::sn_HashUStringNoCasePPCO},
    {&C::si_CompareStringPCCO, &C::si_CompareStringNoCasePCO, &F::sn_HashStringPCCO,
     &F::sn_HashStringPCO, &F::sn_HashStringNoCasePCCO, &F::sn_HashStringNoCasePCO},
    {&C::si_CompareStringPPCO, &C::si_CompareStringNoCasePPCCO, &F::sn_HashStringPPCCO,
     &F::sn_HashStringPPCO, &F::sn_HashStringNoCasePPCCO, &F::sn_HashStringNoCasePPCO},
    {&C::si_ComparePN4, &C::si_ComparePI, &F::sn_HashPN4, &Table::sn_HashInteger, &F::sn_HashPN4,
     &Table::sn_HashInteger},
};

// One text of Latin-1 characters.
struct KeyText {
    explicit KeyText(const std::string& of)
        : text(of),
          bytes(of + std::string(20, '\0')),
          cstring(of.c_str(), CT_CString::kToEnd, 1252) {
        for (const char byte : bytes) units += static_cast<unsigned char>(byte);
        units_at = units.c_str();
        ustring = CT_UString(units_at);
        number = static_cast<std::uint32_t>(std::hash<std::string>()(text));
    }
    KeyText(const KeyText&) = delete;

    const void* Key(Form form) const {
        const void* const keys[] = {bytes_at,  &bytes_at,  cstring_at, &cstring_at,
                                    units_at,  &units_at,  ustring_at, &ustring_at,
                                    string_at, &string_at, &number};
        return keys[form];
    }
    // The hash before a table size comes in.
    std::uint32_t Hash(Form form, bool folds) const {
        if (form == kInt) return number;
        std::uint32_t hash = 0;
        for (const char byte : text) {
            const int unit =
                form >= kWide ? static_cast<unsigned char>(byte) : static_cast<signed char>(byte);
            hash = hash * 16 + static_cast<std::uint32_t>(
                                   folds && unit >= 'a' && unit <= 'z' ? unit - 32 : unit);
            const std::uint32_t top = hash & 0xF0000000;
            if (top != 0) hash = (hash ^ (top >> 24)) & 0x0FFFFFFF;
        }
        return hash;
    }

    std::string text, bytes;  // without and with zeros behind it
    CT_CString cstring;
    std::u16string units;  // with zeros
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

}  // namespace test::hash

#endif
