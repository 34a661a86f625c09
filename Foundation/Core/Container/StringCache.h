// CT_StringCache: a bounded cache from one UTF-16 text to another, in buckets of a few pairs each;
// within a bucket the pair used last stands first and a new pair displaces the one used longest
// ago.
//
// Texts are zero-terminated; the cache keeps copies. A null text is found nowhere and not inserted.
// Errors: records none. Running out of memory throws CT_SmartHeapException and leaves the cache as
// it was.
// Threads: one object, one thread; looking up changes the order.
#ifndef FOUNDATION_CORE_CONTAINER_STRINGCACHE_H
#define FOUNDATION_CORE_CONTAINER_STRINGCACHE_H

#include <cstdint>

#include "Foundation/Platform/Export.h"

class ZELKOR_API CT_StringCache {
public:
    // 251 buckets of 4 pairs.
    CT_StringCache() : CT_StringCache(251 * 4, 4) {}
    // Buckets of `ways` pairs, as many as the next prime at or above size / ways. With fewer than
    // `ways` pairs the cache has no storage: it keeps nothing.
    CT_StringCache(std::uint32_t size, std::uint32_t ways) { v_Set(size, ways); }
    CT_StringCache(const CT_StringCache&) = delete;
    CT_StringCache& operator=(const CT_StringCache&) = delete;
    ~CT_StringCache();

    // Empties the cache and makes it anew as the constructor does.
    void v_Set(std::uint32_t size, std::uint32_t ways);

    // The text kept for the key, or null; its pair stands first in the bucket then. The text
    // belongs to the cache and is good until the pair is displaced or removed.
    [[nodiscard]] const char16_t* qcuz_Lookup(const char16_t* key);
    // Puts a pair behind those of its bucket, or in the place of the last one when the bucket is
    // full. A pair of the same key is not replaced: the one that stands first is found.
    void v_Insert(const char16_t* key, const char16_t* value);
    // Removes the pair that a lookup would find.
    void v_Remove(const char16_t* key);
    // Removes all pairs.
    void v_Clear() noexcept;

    // Pairs there is room for, and those of one bucket.
    [[nodiscard]] std::uint32_t n_GetSize() const noexcept { return size_; }
    [[nodiscard]] std::uint32_t n_GetCollisions() const noexcept { return ways_; }
    // The bucket of a key, from 0; 0 without storage and of null.
    [[nodiscard]] std::uint32_t n_Hash(const char16_t* key) const noexcept;
    // As CT_VoidHashTable::n_GetNextPrim.
    [[nodiscard]] static std::uint32_t sn_GetNextPrim(std::uint32_t n) noexcept;

private:
    struct Pair {
        char16_t* texts;  // the key, its terminator, the value; null when the pair is empty
        std::uint32_t hash;
        std::uint32_t value_at;  // in units
    };
    // The pairs of the bucket of a key with that hash.
    [[nodiscard]] Pair* Bucket(std::uint32_t hash) const noexcept;
    struct Place {
        Pair* bucket = nullptr;
        Pair* pair = nullptr;  // null when the key is not there
    };
    [[nodiscard]] Place Find(const char16_t* key) const noexcept;

    Pair* pairs_ = nullptr;
    std::uint32_t size_ = 0;
    std::uint32_t ways_ = 0;
    std::uint32_t buckets_ = 0;
    std::uint64_t reciprocal_ = 0;  // of the number of buckets
};

#endif
