// CT_StringValueCollection: values of three types, each under a key of its own, in the order in
// which the keys came.
//
// Keys and strings are copied in and owned, ending at a zero character; keys are unique and never
// empty. Keys are zero-terminated UTF-16, CT_UString pointers or CT_UStrings. Positions count
// from 1. Errors: records none. Running out of memory throws CT_SmartHeapException and changes
// nothing. Threads: one object, one thread at a time.
//
// The text form is for storing; docs/formats/string-maps.md describes it.
#ifndef FOUNDATION_CORE_CONTAINER_STRINGVALUECOLLECTION_H
#define FOUNDATION_CORE_CONTAINER_STRINGVALUECOLLECTION_H

#include <concepts>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>

#include "Foundation/Core/Base/HeapObject.h"
#include "Foundation/Core/Container/Array.h"
#include "Foundation/Core/String/TextArgument.h"
#include "Foundation/Core/String/UString.h"

class ZELKOR_API CT_StringValueCollection : public zelkor::detail::HeapObject {
    using Text = zelkor::detail::TextArgument;
    template <typename T>
    static constexpr bool kOtherInteger =
        std::same_as<T, unsigned int> || std::same_as<T, long> || std::same_as<T, unsigned long> ||
        std::same_as<T, long long> || std::same_as<T, unsigned long long>;

public:
    // The numbers are part of the text form.
    enum et_Type { kNone = 0, kString = 1, kInteger = 2, kDouble = 3 };

    struct st_Element;

    CT_StringValueCollection() = default;
    CT_StringValueCollection(const CT_StringValueCollection& other);
    explicit CT_StringValueCollection(const CT_StringValueCollection* other)
        : CT_StringValueCollection() {
        v_Set(other);
    }
    CT_StringValueCollection& operator=(const CT_StringValueCollection& other) {
        v_Set(&other);
        return *this;
    }
    ~CT_StringValueCollection() { v_Clear(); }

    // Remove all elements; v_Set then copies those of the other (null: none).
    void v_Set() noexcept { v_Clear(); }
    void v_Clear() noexcept;
    void v_Set(const CT_StringValueCollection* other);
    void v_Set(const CT_StringValueCollection& other) { v_Set(&other); }
    [[nodiscard]] std::uint32_t n_GetCount() const noexcept { return elements_.n_GetCount(); }

    // Add a new key, or with `overwrite` give a present one this value and type. FALSE for an empty
    // key, and for a present one without `overwrite`.
    BOOL b_Add(Text key, Text value, BOOL overwrite);
    BOOL b_Add(Text key, int value, BOOL overwrite);
    BOOL b_Add(Text key, double value, BOOL overwrite);
    // The other integers are kept as int; FALSE, and nothing changes, for one that int cannot hold.
    template <typename Integer>
    requires(kOtherInteger<Integer>) BOOL b_Add(Text key, Integer value, BOOL overwrite) {
        return std::in_range<int>(value) ? b_Add(key, static_cast<int>(value), overwrite) : FALSE;
    }
    // Give a present key this value and type; FALSE when it is absent.
    BOOL b_SetValue(Text key, Text value);
    BOOL b_SetValue(Text key, int value);
    BOOL b_SetValue(Text key, double value);
    template <typename Integer>
    requires(kOtherInteger<Integer>) BOOL b_SetValue(Text key, Integer value) {
        return std::in_range<int>(value) ? b_SetValue(key, static_cast<int>(value)) : FALSE;
    }

    // TRUE when the key is there with that type; else FALSE, and `out` is empty or 0.
    BOOL b_GetValue(Text key, CT_UString& out) const;
    BOOL b_GetValue(Text key, int& out) const noexcept;
    BOOL b_GetValue(Text key, double& out) const noexcept;
    BOOL b_GetValueAt(std::uint32_t position, CT_UString& out) const;
    BOOL b_GetValueAt(std::uint32_t position, int& out) const noexcept;
    BOOL b_GetValueAt(std::uint32_t position, double& out) const noexcept;
    // 0, and an empty key, for a position outside 1..count.
    [[nodiscard]] et_Type eo_GetTypeAt(std::uint32_t position) const noexcept;
    void v_GetKeyAt(std::uint32_t position, CT_UString& out) const;

    [[nodiscard]] BOOL b_KeyExists(Text key) const noexcept;
    // TRUE when the key was there.
    BOOL b_Remove(Text key);

    // Takes copies of the other's elements with new keys, in order, and with `overwrite` all of
    // those with present ones.
    void v_Merge(const CT_StringValueCollection* other, BOOL overwrite);
    void v_Merge(const CT_StringValueCollection& other, BOOL overwrite) {
        v_Merge(&other, overwrite);
    }

    // For each element: key|T value| where T is the character of the type's number plus 1. A
    // backslash stands before every "|" of a key or string. An integer is the hexadecimal digits of
    // the bytes 02 04 00 and its four bytes, a double those of 03 08 00 and its eight, lowest
    // first.
    void v_Serialize(CT_UString& out) const;
    // Takes the elements of such a text; of equal keys the last value counts. FALSE, and an empty
    // collection, when the text is not well-formed. A key or string that ends in a backslash cannot
    // be read back.
    BOOL b_Deserialize(const CT_UString& in);

private:
    using Elements = CT_Array<st_Element*>;

    [[nodiscard]] st_Element* Find(std::u16string_view key) const noexcept;
    [[nodiscard]] const st_Element* Find(Text key, et_Type type) const noexcept;
    [[nodiscard]] const st_Element* At(std::uint32_t position) const noexcept;
    [[nodiscard]] const st_Element* At(std::uint32_t position, et_Type type) const noexcept;
    void Append(std::unique_ptr<st_Element> element);
    void KeepLastValues();
    template <typename Value>
    BOOL Put(std::u16string_view key, Value value, bool add, bool overwrite);

    Elements elements_;
};

// An element; only the value that the type names counts.
struct CT_StringValueCollection::st_Element : zelkor::detail::HeapObject {
    et_Type type = kNone;
    CT_UString key;
    CT_UString string_value;
    std::int32_t integer_value = 0;
    double double_value = 0;
};

#endif
