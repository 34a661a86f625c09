// OwnedStrings: the array of string pointers beneath the string maps. It owns the strings, each one
// made on its own, and copies them deeply. For the library's containers.
//
// Positions count from 1 and must be in range. Every change has its memory before it begins, so
// that running out of it, which throws CT_SmartHeapException, changes nothing.
#ifndef FOUNDATION_CORE_CONTAINER_OWNEDSTRINGS_H
#define FOUNDATION_CORE_CONTAINER_OWNEDSTRINGS_H

#include <cstdint>
#include <string_view>

#include "Foundation/Core/Container/Array.h"
#include "Foundation/Core/String/TextArgument.h"
#include "Foundation/Core/String/UString.h"

namespace zelkor::detail {

class ZELKOR_API OwnedStrings {
public:
    explicit OwnedStrings(std::uint32_t growth) : strings_(growth, 0) {}
    OwnedStrings(const OwnedStrings& other);
    OwnedStrings& operator=(const OwnedStrings&) = delete;
    ~OwnedStrings() { Truncate(0); }

    [[nodiscard]] std::uint32_t Count() const noexcept { return strings_.n_GetCount(); }
    // Whether there is a string at this position.
    [[nodiscard]] bool Has(std::uint32_t position) const noexcept { return position - 1 < Count(); }
    [[nodiscard]] const CT_UString* At(std::uint32_t position) const noexcept {
        return strings_.o_GetAt(position);
    }
    // Null, or an empty text, out of range.
    [[nodiscard]] const CT_UString* Find(std::uint32_t position) const noexcept {
        return Has(position) ? At(position) : nullptr;
    }
    // The first string that is equal as the string class compares, 0 when there is none.
    [[nodiscard]] std::uint32_t Search(std::u16string_view wanted) const noexcept;

    void Append(std::u16string_view text);
    // Copies of the other's first `count` strings; the other may be this one.
    void Append(const OwnedStrings& other, std::uint32_t count);
    void Insert(std::u16string_view text, std::uint32_t position);
    void SetAt(std::u16string_view text, std::uint32_t position);
    void RemoveAt(std::uint32_t position) noexcept;
    // Removes the strings behind the first `count`.
    void Truncate(std::uint32_t count) noexcept;
    void Swap(OwnedStrings& other) noexcept;

private:
    CT_Array<CT_UString*> strings_;
};

// The characters of a string, "" for none.
[[nodiscard]] inline const char16_t* UnitsOf(const CT_UString* text) noexcept {
    return text == nullptr ? u"" : text->qcuz_Get();
}

}  // namespace zelkor::detail

#endif
