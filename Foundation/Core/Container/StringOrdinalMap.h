// CT_StringOrdinalMap: a list of strings whose positions, from 1, serve as ordinals.
//
// Strings are copied in and owned; searched linearly. Texts are zero-terminated UTF-16, CT_UString
// pointers or CT_UStrings, and may be those of the map itself. What is asked of a position that is
// not there is null, empty or not done.
// Errors: records none, but for conversions of 8-bit text (see CT_StringConvert). Running out of
// memory throws CT_SmartHeapException and changes nothing.
// Threads: one object, one thread at a time.
#ifndef FOUNDATION_CORE_CONTAINER_STRINGORDINALMAP_H
#define FOUNDATION_CORE_CONTAINER_STRINGORDINALMAP_H

#include <concepts>
#include <cstdint>

#include "Foundation/Core/Base/HeapObject.h"
#include "Foundation/Core/Container/OwnedStrings.h"

class CT_CString;

class ZELKOR_API CT_StringOrdinalMap : public zelkor::detail::PoolObject<CT_StringOrdinalMap> {
    using Text = zelkor::detail::TextArgument;

public:
    static constexpr std::uint32_t kDefaultGrowth = 8;
    static constexpr std::uint32_t kEnd = 0xFFFFFFFF;  // as a position to insert before
    static constexpr std::uint32_t kAll = 0xFFFFFFFF;  // as a count

    explicit CT_StringOrdinalMap(std::uint32_t growth = kDefaultGrowth) : strings_(growth) {}
    CT_StringOrdinalMap(const CT_StringOrdinalMap& other) = default;
    explicit CT_StringOrdinalMap(const CT_StringOrdinalMap* other) : CT_StringOrdinalMap() {
        v_Set(other);
    }
    template <std::same_as<int> Growth>  // and not null when it is the literal 0
    explicit CT_StringOrdinalMap(Growth growth)
        : CT_StringOrdinalMap(static_cast<std::uint32_t>(growth)) {}
    CT_StringOrdinalMap& operator=(const CT_StringOrdinalMap& other) {
        v_Set(&other);
        return *this;
    }

    [[nodiscard]] static _SHI_Pool* spso_GetMemPool() noexcept;

    // Empties the map and sets its growth; takes copies of the other's strings (null: none).
    void v_Set(std::uint32_t growth);
    void v_Set(const CT_StringOrdinalMap* other);
    template <std::same_as<int> Growth>
    void v_Set(Growth growth) {
        v_Set(static_cast<std::uint32_t>(growth));
    }
    [[nodiscard]] std::uint32_t n_GetCount() const noexcept { return strings_.Count(); }

    // Insert a copy before a position; one behind the end (0xFFFFFFFF) appends, 0 counts as 1.
    // n_Insert answers the new count.
    void v_Insert(Text string, std::uint32_t position) { n_Insert(string, position); }
    std::uint32_t n_Insert(Text string, std::uint32_t position);
    void v_SetAt(Text string, std::uint32_t position);
    void v_RemoveAt(std::uint32_t position);

    // Position of the first equal string, 0 when there is none.
    [[nodiscard]] std::uint32_t n_Get(Text string) const noexcept {
        return strings_.Search(string.Get());
    }
    // Good until that string is changed or removed.
    [[nodiscard]] const CT_UString* pcco_Get(std::uint32_t position) const noexcept {
        return strings_.Find(position);
    }
    [[nodiscard]] const char16_t* qcuz_Get(std::uint32_t position) const noexcept {
        return zelkor::detail::UnitsOf(pcco_Get(position));
    }

    // Appends copies of the other's first `count` strings; the other may be this map.
    void v_Append(const CT_StringOrdinalMap* other, std::uint32_t count);

    // Each string with the separator behind it.
    void v_Map2String(CT_UString* out, char16_t separator) const;
    // In the code page of `out`, as CT_CString takes UTF-16 text in; the separator is a byte.
    void v_Map2String(CT_CString* out, char separator) const;
    // The items of the text up to the first empty one; the growth becomes 8. 8-bit text is
    // converted by its own code page, and the separator is the character of the byte's number.
    void v_String2Map(const CT_UString* in, char16_t separator);
    void v_String2Map(const CT_CString* in, char separator);

private:
    zelkor::detail::OwnedStrings strings_;
};

#endif
