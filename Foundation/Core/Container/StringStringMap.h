// CT_StringStringMap: a list of pairs of strings, searched linearly by either one.
//
// Strings are copied in and owned; they need not be unique: the first pair counts. Texts are
// zero-terminated UTF-16, CT_UString pointers or CT_UStrings, and may be those of the map itself.
// Positions count from 1. What is asked of a position that is not there is null or not done.
// Errors: records none. Running out of memory throws CT_SmartHeapException and changes nothing.
// Threads: one object, one thread at a time.
#ifndef FOUNDATION_CORE_CONTAINER_STRINGSTRINGMAP_H
#define FOUNDATION_CORE_CONTAINER_STRINGSTRINGMAP_H

#include <concepts>
#include <cstdint>

#include "Foundation/Core/Base/HeapObject.h"
#include "Foundation/Core/Container/OwnedStrings.h"

class ZELKOR_API CT_StringStringMap : public zelkor::detail::PoolObject<CT_StringStringMap> {
    using Text = zelkor::detail::TextArgument;

public:
    static constexpr std::uint32_t kDefaultGrowth = 4;
    static constexpr std::uint32_t kAll = 0xFFFFFFFF;  // as a count

    explicit CT_StringStringMap(std::uint32_t growth = kDefaultGrowth)
        : first_(growth), second_(growth) {}
    CT_StringStringMap(const CT_StringStringMap& other) = default;
    explicit CT_StringStringMap(const CT_StringStringMap* other) : CT_StringStringMap() {
        v_Set(other);
    }
    template <std::same_as<int> Growth>  // and not null when it is the literal 0
    explicit CT_StringStringMap(Growth growth)
        : CT_StringStringMap(static_cast<std::uint32_t>(growth)) {}
    CT_StringStringMap& operator=(const CT_StringStringMap& other) {
        v_Set(&other);
        return *this;
    }

    [[nodiscard]] static _SHI_Pool* spso_GetMemPool() noexcept;

    // Empties the map and sets its growth; takes copies of the other's pairs (null: none).
    void v_Set(std::uint32_t growth);
    void v_Set(const CT_StringStringMap* other);
    template <std::same_as<int> Growth>
    void v_Set(Growth growth) {
        v_Set(static_cast<std::uint32_t>(growth));
    }
    [[nodiscard]] std::uint32_t n_GetCount() const noexcept { return first_.Count(); }

    // Appends the pair.
    void v_Insert(Text first, Text second);
    // Strings given out are good until they are removed. Both are null when there is no such pair.
    void v_GetAt(const CT_UString** first, const CT_UString** second,
                 std::uint32_t position) const noexcept;
    void v_RemoveAt(std::uint32_t position);

    // The other string of the first pair with that first (second) string, null when there is none.
    [[nodiscard]] const CT_UString* pcco_GetString2(Text first) const noexcept {
        return second_.Find(first_.Search(first.Get()));
    }
    [[nodiscard]] const CT_UString* pcco_GetString1(Text second) const noexcept {
        return first_.Find(second_.Search(second.Get()));
    }

    // Appends copies of the other's first `count` pairs; the other may be this map.
    void v_Append(const CT_StringStringMap* other, std::uint32_t count);

    // For each pair: first string, pair separator, second string, record separator.
    void v_Map2String(CT_UString* out, char16_t pair_separator, char16_t record_separator) const;
    // The records of the text up to the first empty one: item 1 and item 2 of each by the pair
    // separator, empty where there is no such item. The growth becomes 4.
    void v_String2Map(const CT_UString* in, char16_t pair_separator, char16_t record_separator);

private:
    void Swap(CT_StringStringMap& other) noexcept;

    zelkor::detail::OwnedStrings first_;
    zelkor::detail::OwnedStrings second_;
};

#endif
