// CT_StringNumberMap: a list of strings paired with 32-bit numbers.
//
// Strings are copied in and owned; pairs are searched linearly, and numbers need not be unique: the
// first pair counts. Texts are zero-terminated UTF-16, CT_UString pointers or CT_UStrings, and may
// be those of the map itself. Positions count from 1. What is asked of a number or position that is
// not there is 0, null, empty or not done. Errors: records none. Running out of memory throws
// CT_SmartHeapException and changes nothing. Threads: one object, one thread at a time.
#ifndef FOUNDATION_CORE_CONTAINER_STRINGNUMBERMAP_H
#define FOUNDATION_CORE_CONTAINER_STRINGNUMBERMAP_H

#include <concepts>
#include <cstdint>

#include "Foundation/Core/Base/HeapObject.h"
#include "Foundation/Core/Container/OwnedStrings.h"

class ZELKOR_API CT_StringNumberMap : public zelkor::detail::PoolObject<CT_StringNumberMap> {
    using Text = zelkor::detail::TextArgument;

public:
    static constexpr std::uint32_t kDefaultGrowth = 8;
    static constexpr std::uint32_t kAll = 0xFFFFFFFF;  // as a count

    explicit CT_StringNumberMap(std::uint32_t growth = kDefaultGrowth);
    CT_StringNumberMap(const CT_StringNumberMap& other);
    explicit CT_StringNumberMap(const CT_StringNumberMap* other) : CT_StringNumberMap() {
        v_Set(other);
    }
    template <std::same_as<int> Growth>  // and not null when it is the literal 0
    explicit CT_StringNumberMap(Growth growth)
        : CT_StringNumberMap(static_cast<std::uint32_t>(growth)) {}
    CT_StringNumberMap& operator=(const CT_StringNumberMap& other) {
        v_Set(&other);
        return *this;
    }

    [[nodiscard]] static _SHI_Pool* spso_GetMemPool() noexcept;

    // Empties the map and sets its growth; takes copies of the other's pairs (null: none).
    void v_Set(std::uint32_t growth);
    void v_Set(const CT_StringNumberMap* other);
    template <std::same_as<int> Growth>
    void v_Set(Growth growth) {
        v_Set(static_cast<std::uint32_t>(growth));
    }
    [[nodiscard]] std::uint32_t n_GetCount() const noexcept { return strings_.Count(); }

    // Appends the pair.
    void v_Insert(Text string, std::uint32_t number);
    // Gives the first pair with the number a new string.
    void v_Update(Text string, std::uint32_t number);
    void v_SetAt(Text string, std::uint32_t position);
    void v_SetAt(std::uint32_t number, std::uint32_t position);
    // Removes the first pair with the number.
    void v_Remove(std::uint32_t number);
    void v_RemoveAt(std::uint32_t position);

    // Number of the first pair with that string, 0 when there is none.
    [[nodiscard]] std::uint32_t n_Get(Text string) const noexcept {
        return n_GetAt(strings_.Search(string.Get()));
    }
    // String of the first pair with that number; good until it is changed or removed.
    [[nodiscard]] const CT_UString* pcco_Get(std::uint32_t number) const noexcept {
        return pcco_GetAt(numbers_.n_Find(number));
    }
    [[nodiscard]] const char16_t* qcuz_Get(std::uint32_t number) const noexcept {
        return zelkor::detail::UnitsOf(pcco_Get(number));
    }
    [[nodiscard]] std::uint32_t n_GetAt(std::uint32_t position) const noexcept {
        return strings_.Has(position) ? numbers_.o_GetAt(position) : 0;
    }
    [[nodiscard]] const CT_UString* pcco_GetAt(std::uint32_t position) const noexcept {
        return strings_.Find(position);
    }
    [[nodiscard]] const char16_t* qcuz_GetAt(std::uint32_t position) const noexcept {
        return zelkor::detail::UnitsOf(pcco_GetAt(position));
    }

    // Appends copies of the other's first `count` pairs; the other may be this map.
    void v_Append(const CT_StringNumberMap* other, std::uint32_t count);

    // One record for each pair: the number, four bytes from the lowest on, then the characters of
    // the string in the same order of bytes and a zero character.
    void v_Map2Buffer(CT_Buffer* out) const;
    // Reads such records, or with `unicode` FALSE ones with 8-bit text of code page 0 and a zero
    // byte; the growth becomes 8. A number that is cut off ends the reading, a string without its
    // zero reaches to the end of the buffer.
    void v_Buffer2Map(const CT_Buffer* in, BOOL unicode);

private:
    void Swap(CT_StringNumberMap& other) noexcept;

    zelkor::detail::OwnedStrings strings_;
    CT_Array<std::uint32_t> numbers_;
};

#endif
