// CT_HashFunction: hash functions for CT_VoidHashTable: texts, string objects and numbers.
//
// Each takes the key and a table size and answers a slot from 1 to the table size; of a table
// without slots 0.
// Texts are hashed unit by unit up to the terminating zero (the ELF variant of the PJW hash,
// "System V Application Binary Interface", 28 bits wide); an empty one gives slot 1. 8-bit units
// count as signed numbers. NoCase functions fold the letters A to Z alone. Null pointers count as
// empty texts and the number 0. The letters behind a name tell what the key pointer leads to, as in
// CT_Compare:
//
//   QCZ QCCZ QUZ QCUZ      the text itself, 8-bit or UTF-16
//   PQCZ PQCCZ PQUZ PQCUZ  a pointer to the text
//   PCO PCCO, PPCO PPCCO   the string object, a pointer to it
//
// Each pair of names differs in the constness of the target alone and behaves the same.
// Errors: only the CT_String functions, which make a UTF-16 copy of 8-bit text, can fail, as that
// conversion does. Threads: any.
#ifndef FOUNDATION_CORE_CONTAINER_HASHFUNCTION_H
#define FOUNDATION_CORE_CONTAINER_HASHFUNCTION_H

#include <concepts>
#include <cstdint>

#include "Foundation/Platform/Export.h"

class ZELKOR_API CT_HashFunction {
public:
    static unsigned int sn_HashCaseQCCZ(const void* key, unsigned int size);
    static unsigned int sn_HashNoCaseQCCZ(const void* key, unsigned int size);
    static unsigned int sn_HashCaseQCUZ(const void* key, unsigned int size);
    static unsigned int sn_HashNoCaseQCUZ(const void* key, unsigned int size);
    static unsigned int sn_HashCaseQCZ(const void* key, unsigned int size);
    static unsigned int sn_HashNoCaseQCZ(const void* key, unsigned int size);
    static unsigned int sn_HashCaseQUZ(const void* key, unsigned int size);
    static unsigned int sn_HashNoCaseQUZ(const void* key, unsigned int size);

    static unsigned int sn_HashCasePQCZ(const void* key, unsigned int size);
    static unsigned int sn_HashNoCasePQCZ(const void* key, unsigned int size);
    static unsigned int sn_HashCasePQCCZ(const void* key, unsigned int size);
    static unsigned int sn_HashNoCasePQCCZ(const void* key, unsigned int size);
    static unsigned int sn_HashCasePQUZ(const void* key, unsigned int size);
    static unsigned int sn_HashNoCasePQUZ(const void* key, unsigned int size);
    static unsigned int sn_HashCasePQCUZ(const void* key, unsigned int size);
    static unsigned int sn_HashNoCasePQCUZ(const void* key, unsigned int size);

    // 32-bit numbers: the value modulo the size, plus 1. The first two take the value itself, as a
    // number or in the low 32 bits of the key pointer; the third a pointer to it.
    template <std::integral Number>
    static unsigned int sn_HashN(Number value, unsigned int size) {
        return size == 0 ? 0 : static_cast<std::uint32_t>(value) % size + 1;
    }
    template <std::integral Number>
    static unsigned int sn_HashN4(Number value, unsigned int size) {
        return sn_HashN(value, size);
    }
    static unsigned int sn_HashN(const void* key, unsigned int size);
    static unsigned int sn_HashN4(const void* key, unsigned int size);
    static unsigned int sn_HashPN4(const void* key, unsigned int size);

    static unsigned int sn_HashCStringPCO(const void* key, unsigned int size);
    static unsigned int sn_HashCStringPCCO(const void* key, unsigned int size);
    static unsigned int sn_HashCStringPPCO(const void* key, unsigned int size);
    static unsigned int sn_HashCStringPPCCO(const void* key, unsigned int size);
    static unsigned int sn_HashCStringNoCasePCO(const void* key, unsigned int size);
    static unsigned int sn_HashCStringNoCasePCCO(const void* key, unsigned int size);
    static unsigned int sn_HashCStringNoCasePPCO(const void* key, unsigned int size);
    static unsigned int sn_HashCStringNoCasePPCCO(const void* key, unsigned int size);

    static unsigned int sn_HashUStringPCO(const void* key, unsigned int size);
    static unsigned int sn_HashUStringPCCO(const void* key, unsigned int size);
    static unsigned int sn_HashUStringPPCO(const void* key, unsigned int size);
    static unsigned int sn_HashUStringPPCCO(const void* key, unsigned int size);
    static unsigned int sn_HashUStringNoCasePCO(const void* key, unsigned int size);
    static unsigned int sn_HashUStringNoCasePCCO(const void* key, unsigned int size);
    static unsigned int sn_HashUStringNoCasePPCO(const void* key, unsigned int size);
    static unsigned int sn_HashUStringNoCasePPCCO(const void* key, unsigned int size);

    static unsigned int sn_HashStringPCO(const void* key, unsigned int size);
    static unsigned int sn_HashStringPCCO(const void* key, unsigned int size);
    static unsigned int sn_HashStringPPCO(const void* key, unsigned int size);
    static unsigned int sn_HashStringPPCCO(const void* key, unsigned int size);
    static unsigned int sn_HashStringNoCasePCO(const void* key, unsigned int size);
    static unsigned int sn_HashStringNoCasePCCO(const void* key, unsigned int size);
    static unsigned int sn_HashStringNoCasePPCO(const void* key, unsigned int size);
    static unsigned int sn_HashStringNoCasePPCCO(const void* key, unsigned int size);
};

#endif
