#include "Foundation/Core/Container/HashFunction.h"

#include <bit>

#include "Foundation/Core/Container/Internal/HashDetail.h"

using namespace zelkor::detail;

namespace {

template <typename Target, bool kFolds>
unsigned int Slot(const void* key, unsigned int size) {
    return CT_HashFunction::sn_HashN(HashTarget<Target, kFolds>(key), size);
}
template <typename Target, bool kFolds>
unsigned int SlotOf(const void* key, unsigned int size) {
    return CT_HashFunction::sn_HashN(HashTargetOf<Target, kFolds>(key), size);
}

}  // namespace

unsigned int CT_HashFunction::sn_HashCaseQCCZ(const void* key, unsigned int size) {
    return Slot<char, false>(key, size);
}

unsigned int CT_HashFunction::sn_HashNoCaseQCCZ(const void* key, unsigned int size) {
    return Slot<char, true>(key, size);
}

unsigned int CT_HashFunction::sn_HashCaseQCUZ(const void* key, unsigned int size) {
    return Slot<char16_t, false>(key, size);
}

unsigned int CT_HashFunction::sn_HashNoCaseQCUZ(const void* key, unsigned int size) {
    return Slot<char16_t, true>(key, size);
}

unsigned int CT_HashFunction::sn_HashCaseQCZ(const void* key, unsigned int size) {
    return Slot<char, false>(key, size);
}

unsigned int CT_HashFunction::sn_HashNoCaseQCZ(const void* key, unsigned int size) {
    return Slot<char, true>(key, size);
}

unsigned int CT_HashFunction::sn_HashCaseQUZ(const void* key, unsigned int size) {
    return Slot<char16_t, false>(key, size);
}

unsigned int CT_HashFunction::sn_HashNoCaseQUZ(const void* key, unsigned int size) {
    return Slot<char16_t, true>(key, size);
}

unsigned int CT_HashFunction::sn_HashCasePQCZ(const void* key, unsigned int size) {
    return SlotOf<char, false>(key, size);
}

unsigned int CT_HashFunction::sn_HashNoCasePQCZ(const void* key, unsigned int size) {
    return SlotOf<char, true>(key, size);
}

unsigned int CT_HashFunction::sn_HashCasePQCCZ(const void* key, unsigned int size) {
    return SlotOf<char, false>(key, size);
}

unsigned int CT_HashFunction::sn_HashNoCasePQCCZ(const void* key, unsigned int size) {
    return SlotOf<char, true>(key, size);
}

unsigned int CT_HashFunction::sn_HashCasePQUZ(const void* key, unsigned int size) {
    return SlotOf<char16_t, false>(key, size);
}

unsigned int CT_HashFunction::sn_HashNoCasePQUZ(const void* key, unsigned int size) {
    return SlotOf<char16_t, true>(key, size);
}

unsigned int CT_HashFunction::sn_HashCasePQCUZ(const void* key, unsigned int size) {
    return SlotOf<char16_t, false>(key, size);
}

unsigned int CT_HashFunction::sn_HashNoCasePQCUZ(const void* key, unsigned int size) {
    return SlotOf<char16_t, true>(key, size);
}

unsigned int CT_HashFunction::sn_HashN(const void* key, unsigned int size) {
    return sn_HashN(std::bit_cast<std::uintptr_t>(key), size);
}

unsigned int CT_HashFunction::sn_HashN4(const void* key, unsigned int size) {
    return sn_HashN4(std::bit_cast<std::uintptr_t>(key), size);
}

unsigned int CT_HashFunction::sn_HashPN4(const void* key, unsigned int size) {
    return sn_HashN(key == nullptr ? 0 : ValueAt<std::uint32_t>(key), size);
}

unsigned int CT_HashFunction::sn_HashCStringPCO(const void* key, unsigned int size) {
    return Slot<CT_CString, false>(key, size);
}

unsigned int CT_HashFunction::sn_HashCStringPCCO(const void* key, unsigned int size) {
    return Slot<CT_CString, false>(key, size);
}

unsigned int CT_HashFunction::sn_HashCStringPPCO(const void* key, unsigned int size) {
    return SlotOf<CT_CString, false>(key, size);
}

unsigned int CT_HashFunction::sn_HashCStringPPCCO(const void* key, unsigned int size) {
    return SlotOf<CT_CString, false>(key, size);
}

unsigned int CT_HashFunction::sn_HashCStringNoCasePCO(const void* key, unsigned int size) {
    return Slot<CT_CString, true>(key, size);
}

unsigned int CT_HashFunction::sn_HashCStringNoCasePCCO(const void* key, unsigned int size) {
    return Slot<CT_CString, true>(key, size);
}

unsigned int CT_HashFunction::sn_HashCStringNoCasePPCO(const void* key, unsigned int size) {
    return SlotOf<CT_CString, true>(key, size);
}

unsigned int CT_HashFunction::sn_HashCStringNoCasePPCCO(const void* key, unsigned int size) {
    return SlotOf<CT_CString, true>(key, size);
}

unsigned int CT_HashFunction::sn_HashUStringPCO(const void* key, unsigned int size) {
    return Slot<CT_UString, false>(key, size);
}

unsigned int CT_HashFunction::sn_HashUStringPCCO(const void* key, unsigned int size) {
    return Slot<CT_UString, false>(key, size);
}

unsigned int CT_HashFunction::sn_HashUStringPPCO(const void* key, unsigned int size) {
    return SlotOf<CT_UString, false>(key, size);
}

unsigned int CT_HashFunction::sn_HashUStringPPCCO(const void* key, unsigned int size) {
    return SlotOf<CT_UString, false>(key, size);
}

unsigned int CT_HashFunction::sn_HashUStringNoCasePCO(const void* key, unsigned int size) {
    return Slot<CT_UString, true>(key, size);
}

unsigned int CT_HashFunction::sn_HashUStringNoCasePCCO(const void* key, unsigned int size) {
    return Slot<CT_UString, true>(key, size);
}

unsigned int CT_HashFunction::sn_HashUStringNoCasePPCO(const void* key, unsigned int size) {
    return SlotOf<CT_UString, true>(key, size);
}

unsigned int CT_HashFunction::sn_HashUStringNoCasePPCCO(const void* key, unsigned int size) {
    return SlotOf<CT_UString, true>(key, size);
}

unsigned int CT_HashFunction::sn_HashStringPCO(const void* key, unsigned int size) {
    return Slot<CT_String, false>(key, size);
}

unsigned int CT_HashFunction::sn_HashStringPCCO(const void* key, unsigned int size) {
    return Slot<CT_String, false>(key, size);
}

unsigned int CT_HashFunction::sn_HashStringPPCO(const void* key, unsigned int size) {
    return SlotOf<CT_String, false>(key, size);
}

unsigned int CT_HashFunction::sn_HashStringPPCCO(const void* key, unsigned int size) {
    return SlotOf<CT_String, false>(key, size);
}

unsigned int CT_HashFunction::sn_HashStringNoCasePCO(const void* key, unsigned int size) {
    return Slot<CT_String, true>(key, size);
}

unsigned int CT_HashFunction::sn_HashStringNoCasePCCO(const void* key, unsigned int size) {
    return Slot<CT_String, true>(key, size);
}

unsigned int CT_HashFunction::sn_HashStringNoCasePPCO(const void* key, unsigned int size) {
    return SlotOf<CT_String, true>(key, size);
}

unsigned int CT_HashFunction::sn_HashStringNoCasePPCCO(const void* key, unsigned int size) {
    return SlotOf<CT_String, true>(key, size);
}
