#include "Foundation/Core/Container/StringCache.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "Foundation/Core/Container/Internal/ContainerDetail.h"
#include "Foundation/Core/Container/Internal/HashDetail.h"
#include "Foundation/Core/Container/VoidHashTable.h"

namespace platform = zelkor::platform;

using namespace zelkor::detail;

namespace {

// Both texts with their terminators in one block, and where the second begins.
struct TwoTexts {
    char16_t* texts;
    std::uint32_t second_at;
};

TwoTexts CopyTexts(const char16_t* first, const char16_t* second) {
    const std::size_t first_size = platform::TextLength(first) + 1;
    const std::size_t second_size = platform::TextLength(second) + 1;
    if (first_size > 0xFFFFFFFF) ReportExhausted();
    void* const block = platform::Allocate((first_size + second_size) * sizeof(char16_t));
    if (block == nullptr) ReportExhausted();
    auto* const texts = static_cast<char16_t*>(block);
    std::memcpy(texts, first, first_size * sizeof(char16_t));
    std::memcpy(texts + first_size, second, second_size * sizeof(char16_t));
    return {texts, static_cast<std::uint32_t>(first_size)};
}

}  // namespace

CT_StringCache::~CT_StringCache() {
    v_Clear();
    platform::Free(pairs_);
}

void CT_StringCache::v_Set(std::uint32_t size, std::uint32_t ways) {
    const std::uint32_t wanted = ways == 0 ? 0 : size / ways;
    const std::uint32_t buckets = sn_GetNextPrim(wanted);
    const std::uint64_t pairs = std::uint64_t{buckets} * ways;
    if (pairs > 0xFFFFFFFF || buckets < wanted) ReportExhausted();
    Pair* fresh = nullptr;
    if (pairs != 0) {
        fresh = static_cast<Pair*>(platform::AllocateZeroed(pairs * sizeof(Pair)));
        if (fresh == nullptr) ReportExhausted();
    }
    v_Clear();
    platform::Free(std::exchange(pairs_, fresh));
    size_ = static_cast<std::uint32_t>(pairs);
    ways_ = ways;
    buckets_ = buckets;
    reciprocal_ = buckets == 0 ? 0 : Reciprocal(buckets);
}

const char16_t* CT_StringCache::qcuz_Lookup(const char16_t* key) {
    const auto [bucket, pair] = Find(key);
    if (pair == nullptr) return nullptr;
    if (pair != bucket) std::rotate(bucket, pair, pair + 1);
    return bucket->texts + bucket->value_at;
}

void CT_StringCache::v_Insert(const char16_t* key, const char16_t* value) {
    if (key == nullptr || value == nullptr || size_ == 0) return;
    const auto [texts, value_at] = CopyTexts(key, value);
    const Pair pair{texts, HashText<false>(key), value_at};
    Pair* const bucket = Bucket(pair.hash);
    Pair* const place = std::find_if(bucket, bucket + ways_ - 1,
                                     [](const Pair& taken) { return taken.texts == nullptr; });
    // The key or the value may be the very text that goes.
    platform::Free(std::exchange(*place, pair).texts);
}

void CT_StringCache::v_Remove(const char16_t* key) {
    const auto [bucket, pair] = Find(key);
    if (pair == nullptr) return;
    platform::Free(pair->texts);
    Pair* const end = bucket + ways_;
    std::copy(pair + 1, end, pair);
    end[-1] = {};
}

void CT_StringCache::v_Clear() noexcept {
    for (Pair* pair = pairs_; pair != pairs_ + size_; ++pair) {
        platform::Free(std::exchange(*pair, {}).texts);
    }
}

std::uint32_t CT_StringCache::n_Hash(const char16_t* key) const noexcept {
    return size_ == 0 || key == nullptr ? 0
                                        : Remainder(HashText<false>(key), buckets_, reciprocal_);
}

std::uint32_t CT_StringCache::sn_GetNextPrim(std::uint32_t n) noexcept {
    return CT_VoidHashTable::n_GetNextPrim(n);
}

CT_StringCache::Pair* CT_StringCache::Bucket(std::uint32_t hash) const noexcept {
    return pairs_ + std::size_t{Remainder(hash, buckets_, reciprocal_)} * ways_;
}

CT_StringCache::Place CT_StringCache::Find(const char16_t* key) const noexcept {
    if (key == nullptr || size_ == 0) return {};
    const auto [hash, length] = HashAndLength<false>(key);
    Pair* const bucket = Bucket(hash);
    for (Pair* pair = bucket; pair != bucket + ways_ && pair->texts != nullptr; ++pair) {
        if (pair->hash == hash && pair->value_at == length + 1 &&
            std::memcmp(pair->texts, key, length * sizeof(*key)) == 0) {
            return {bucket, pair};
        }
    }
    return {};
}
