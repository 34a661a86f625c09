// Which pairs of hash and comparison functions a table knows to agree.

#include <algorithm>
#include <array>

#include "Foundation/Core/Container/HashFunction.h"
#include "Foundation/Core/Container/Internal/HashDetail.h"
#include "Foundation/Core/Container/VoidHashTable.h"
#include "Foundation/Core/String/Compare.h"

using namespace zelkor::detail;

namespace {

// What a key consists of: the value, or with At a pointer to it.
enum class Kind : std::uint8_t {
    kNumber,
    kBytes,
    kBytesAt,
    kUnits,
    kUnitsAt,
    kCString,
    kCStringAt,
    kUString,
    kUStringAt,
    kString,
    kStringAt,
};
using enum Kind;

constexpr bool kExact = false;
constexpr bool kFolds = true;

struct KnownHash {
    CT_VoidHashTable::HashFunction function;
    Kind kind;
    bool folds;
};

using F = CT_HashFunction;
constexpr auto kHashes = std::to_array<KnownHash>({
    {&CT_VoidHashTable::sn_HashInteger, kNumber, kExact},
    {&F::sn_HashPN4, kNumber, kExact},
    {&F::sn_HashCaseQCCZ, kBytes, kExact},
    {&F::sn_HashCaseQCZ, kBytes, kExact},
    {&F::sn_HashNoCaseQCCZ, kBytes, kFolds},
    {&F::sn_HashNoCaseQCZ, kBytes, kFolds},
    {&F::sn_HashCasePQCCZ, kBytesAt, kExact},
    {&F::sn_HashCasePQCZ, kBytesAt, kExact},
    {&F::sn_HashNoCasePQCCZ, kBytesAt, kFolds},
    {&F::sn_HashNoCasePQCZ, kBytesAt, kFolds},
    {&F::sn_HashCaseQCUZ, kUnits, kExact},
    {&F::sn_HashCaseQUZ, kUnits, kExact},
    {&F::sn_HashNoCaseQCUZ, kUnits, kFolds},
    {&F::sn_HashNoCaseQUZ, kUnits, kFolds},
    {&F::sn_HashCasePQCUZ, kUnitsAt, kExact},
    {&F::sn_HashCasePQUZ, kUnitsAt, kExact},
    {&F::sn_HashNoCasePQCUZ, kUnitsAt, kFolds},
    {&F::sn_HashNoCasePQUZ, kUnitsAt, kFolds},
    {&F::sn_HashCStringPCCO, kCString, kExact},
    {&F::sn_HashCStringPCO, kCString, kExact},
    {&F::sn_HashCStringNoCasePCCO, kCString, kFolds},
    {&F::sn_HashCStringNoCasePCO, kCString, kFolds},
    {&F::sn_HashCStringPPCCO, kCStringAt, kExact},
    {&F::sn_HashCStringPPCO, kCStringAt, kExact},
    {&F::sn_HashCStringNoCasePPCCO, kCStringAt, kFolds},
    {&F::sn_HashCStringNoCasePPCO, kCStringAt, kFolds},
    {&F::sn_HashUStringPCCO, kUString, kExact},
    {&F::sn_HashUStringPCO, kUString, kExact},
    {&F::sn_HashUStringNoCasePCCO, kUString, kFolds},
    {&F::sn_HashUStringNoCasePCO, kUString, kFolds},
    {&F::sn_HashUStringPPCCO, kUStringAt, kExact},
    {&F::sn_HashUStringPPCO, kUStringAt, kExact},
    {&F::sn_HashUStringNoCasePPCCO, kUStringAt, kFolds},
    {&F::sn_HashUStringNoCasePPCO, kUStringAt, kFolds},
    {&F::sn_HashStringPCCO, kString, kExact},
    {&F::sn_HashStringPCO, kString, kExact},
    {&F::sn_HashStringNoCasePCCO, kString, kFolds},
    {&F::sn_HashStringNoCasePCO, kString, kFolds},
    {&F::sn_HashStringPPCCO, kStringAt, kExact},
    {&F::sn_HashStringPPCO, kStringAt, kExact},
    {&F::sn_HashStringNoCasePPCCO, kStringAt, kFolds},
    {&F::sn_HashStringNoCasePPCO, kStringAt, kFolds},
});

struct KnownCompare {
    bool (*is)(CT_VoidHashTable::CompareFunction function);
    CT_VoidHashTable::CompareFunction call;  // the function behind untyped parameters
    Kind kind;
    bool folds;
};

template <auto kFunction, typename Item>
int Call(const void* stored, const void* wanted) {
    return kFunction(static_cast<Item*>(const_cast<void*>(stored)),
                     static_cast<Item*>(const_cast<void*>(wanted)));
}
template <auto kFunction, typename Item>
constexpr KnownCompare Row(int (*)(Item*, Item*), Kind kind, bool folds) {
    using Plain = void (*)();
    return {[](CT_VoidHashTable::CompareFunction function) {
                return reinterpret_cast<Plain>(function) == reinterpret_cast<Plain>(kFunction);
            },
            &Call<kFunction, Item>, kind, folds};
}
template <auto kFunction>
constexpr KnownCompare Row(Kind kind, bool folds) {
    return Row<kFunction>(kFunction, kind, folds);
}

using C = CT_Compare;
constexpr auto kComparisons = std::to_array<KnownCompare>({
    Row<&CT_VoidHashTable::si_CompareInteger>(kNumber, kExact),
    Row<&C::si_ComparePN>(kNumber, kExact),
    Row<&C::si_ComparePN4>(kNumber, kExact),
    Row<&C::si_ComparePI>(kNumber, kExact),
    Row<&C::si_CompareCaseQCCZ>(kBytes, kExact),
    Row<&C::si_CompareCaseQCZ>(kBytes, kExact),
    Row<&C::si_CompareNoCaseQCCZ>(kBytes, kFolds),
    Row<&C::si_CompareNoCaseQCZ>(kBytes, kFolds),
    Row<&C::si_CompareCasePQCCZ>(kBytesAt, kExact),
    Row<&C::si_CompareCasePQCZ>(kBytesAt, kExact),
    Row<&C::si_CompareNoCasePQCCZ>(kBytesAt, kFolds),
    Row<&C::si_CompareNoCasePQCZ>(kBytesAt, kFolds),
    Row<&C::si_CompareCaseQCUZ>(kUnits, kExact),
    Row<&C::si_CompareCaseQUZ>(kUnits, kExact),
    Row<&C::si_CompareNoCaseQCUZ>(kUnits, kFolds),
    Row<&C::si_CompareNoCaseQUZ>(kUnits, kFolds),
    Row<&C::si_CompareCasePQCUZ>(kUnitsAt, kExact),
    Row<&C::si_CompareCasePQUZ>(kUnitsAt, kExact),
    Row<&C::si_CompareNoCasePQCUZ>(kUnitsAt, kFolds),
    Row<&C::si_CompareNoCasePQUZ>(kUnitsAt, kFolds),
    Row<&C::si_CompareCStringPCCO>(kCString, kExact),
    Row<&C::si_CompareCStringPCO>(kCString, kExact),
    Row<&C::si_CompareCStringNoCasePCCO>(kCString, kFolds),
    Row<&C::si_CompareCStringNoCasePCO>(kCString, kFolds),
    Row<&C::si_CompareCStringPPCCO>(kCStringAt, kExact),
    Row<&C::si_CompareCStringPPCO>(kCStringAt, kExact),
    Row<&C::si_CompareCStringNoCasePPCCO>(kCStringAt, kFolds),
    Row<&C::si_CompareCStringNoCasePPCO>(kCStringAt, kFolds),
    Row<&C::si_CompareUStringPCCO>(kUString, kExact),
    Row<&C::si_CompareUStringPCO>(kUString, kExact),
    Row<&C::si_CompareUStringNoCasePCCO>(kUString, kFolds),
    Row<&C::si_CompareUStringNoCasePCO>(kUString, kFolds),
    Row<&C::si_CompareUStringPPCCO>(kUStringAt, kExact),
    Row<&C::si_CompareUStringPPCO>(kUStringAt, kExact),
    Row<&C::si_CompareUStringNoCasePPCCO>(kUStringAt, kFolds),
    Row<&C::si_CompareUStringNoCasePPCO>(kUStringAt, kFolds),
    Row<&C::si_CompareStringPCCO>(kString, kExact),
    Row<&C::si_CompareStringPCO>(kString, kExact),
    Row<&C::si_CompareStringNoCasePCCO>(kString, kFolds),
    Row<&C::si_CompareStringNoCasePCO>(kString, kFolds),
    Row<&C::si_CompareStringPPCCO>(kStringAt, kExact),
    Row<&C::si_CompareStringPPCO>(kStringAt, kExact),
    Row<&C::si_CompareStringNoCasePPCCO>(kStringAt, kFolds),
    Row<&C::si_CompareStringNoCasePPCO>(kStringAt, kFolds),
});

template <bool folds>
auto HashOfKind(Kind kind) -> std::uint32_t (*)(const void*) {
    switch (kind) {
        case kBytes:
            return &HashTarget<char, folds>;
        case kBytesAt:
            return &HashTargetOf<char, folds>;
        case kUnits:
            return &HashTarget<char16_t, folds>;
        case kUnitsAt:
            return &HashTargetOf<char16_t, folds>;
        case kCString:
            return &HashTarget<CT_CString, folds>;
        case kCStringAt:
            return &HashTargetOf<CT_CString, folds>;
        case kUString:
            return &HashTarget<CT_UString, folds>;
        case kUStringAt:
            return &HashTargetOf<CT_UString, folds>;
        case kString:
            return &HashTarget<CT_String, folds>;
        case kStringAt:
            return &HashTargetOf<CT_String, folds>;
        default:
            return &ValueAt<std::uint32_t>;
    }
}

}  // namespace

CT_VoidHashTable::Rules CT_VoidHashTable::RulesOf(HashFunction hash,
                                                  CompareFunction compare) noexcept {
    Rules rules{Rules::Path::kForeign, false, nullptr, compare};
    const auto* const order = std::ranges::find_if(
        kComparisons, [compare](const KnownCompare& known) { return known.is(compare); });
    if (order != kComparisons.end()) rules.compare = order->call;
    const auto* const known = std::ranges::find(kHashes, hash, &KnownHash::function);
    if (known == kHashes.end()) return rules;

    rules.path = Rules::Path::kKnown;
    rules.hash = known->folds ? HashOfKind<true>(known->kind) : HashOfKind<false>(known->kind);
    // Keys that are equal but for case have equal hashes only where the hash folds case too.
    if (order == kComparisons.end() || order->kind != known->kind) return rules;
    rules.filters = known->folds || !order->folds;
    if (known->kind == kNumber) rules.path = Rules::Path::kNumber;
    if (known->kind == kUnitsAt && !known->folds && !order->folds) {
        rules.path = Rules::Path::kUnitsAt;
        rules.slot_bits = kHashBits;
    }
    return rules;
}
