// How a key is found.

#include <algorithm>
#include <cstring>

#include "Foundation/Core/Container/Internal/HashDetail.h"
#include "Foundation/Core/Container/VoidHashTable.h"

using namespace zelkor::detail;

namespace {

// Texts are told apart by their hash and, in the four bits that it leaves, their length as far as
// it is below 15. So the start of a stored text can be compared without looking for its end.
constexpr std::size_t kLongText = 15;

constexpr std::uint32_t TextTag(const HashedText& text) noexcept {
    return text.hash | static_cast<std::uint32_t>(std::min(text.length, kLongText)) << 28;
}

// Whether two texts are equal that agree in their tags; `wanted` is `length` units long.
bool IsSameText(const char16_t* stored, const char16_t* wanted, std::size_t length) noexcept {
    if (std::memcmp(stored, wanted, std::min(length, kLongText) * sizeof(*wanted)) != 0)
        return false;
    if (length < kLongText) return true;
    for (std::size_t at = kLongText; stored[at] == wanted[at]; ++at) {
        if (wanted[at] == 0) return true;
    }
    return false;
}

}  // namespace

template <bool kFilters, typename Matches>
inline CT_VoidHashTable::Place CT_VoidHashTable::FindIn(std::uint32_t hash, Matches matches) const {
    const std::uint32_t index = IndexOf(hash);
    st_HashItem** const head = &slots_[index];
    if (kFilters && !slots_.MayHold(index, hash)) return {hash, head, nullptr};
    st_HashItem** link = head;
    while (*link != nullptr && !matches(*link)) link = &(*link)->following;
    return {hash, head, *link == nullptr ? nullptr : link};
}

inline CT_VoidHashTable::Place CT_VoidHashTable::FindHere(const void* key) const {
    if (rules_.path == Rules::Path::kUnitsAt) {
        const auto* const text = ValueAt<const char16_t*>(key);
        const HashedText hashed = HashAndLength<false>(text);
        const std::uint32_t tag = TextTag(hashed);
        return FindIn<true>(tag, [text, tag, length = hashed.length](const st_HashItem* item) {
            return item->hash == tag &&
                   IsSameText(ValueAt<const char16_t*>(item->pcv_GetKey()), text, length);
        });
    }
    if (rules_.path == Rules::Path::kNumber) {
        const auto number = ValueAt<std::uint32_t>(key);
        return FindIn<true>(number,
                            [number](const st_HashItem* item) { return item->hash == number; });
    }
    const std::uint32_t hash =
        rules_.path == Rules::Path::kKnown ? rules_.hash(key) : hash_(key, n_GetTableSize()) - 1;
    const auto matches = [this, key, hash](const st_HashItem* item) {
        if (rules_.filters && item->hash != hash) return false;
        return rules_.compare(item->pcv_GetKey(), key) == 0;
    };
    return rules_.filters ? FindIn<true>(hash, matches) : FindIn<false>(hash, matches);
}

CT_VoidHashTable::Place CT_VoidHashTable::Find(const void* key) const {
    return FindHere(key);
}

const CT_VoidHashTable::st_HashItem* CT_VoidHashTable::LookupOther(const void* key) const {
    if (count_ == 0) return nullptr;
    st_HashItem** const link = FindHere(key).link;
    return link == nullptr ? nullptr : *link;
}
