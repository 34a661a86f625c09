// CT_VoidSortedArray: a CT_VoidArray in the order of a comparison function, with binary search.
//
// Units, sharing and null arguments: as CT_VoidArray; positions count from 1, 0 means none. Without
// a comparison function nothing is sorted, inserted, found or equal.
// Always holds: compare(item i, item i + 1) <= 0. A comparison function that contradicts itself
// gives some order of the same items. Sorting a hostile order takes quadratic time, never a deep
// stack.
// Errors: records none. Running out of memory throws CT_SmartHeapException and leaves the array as
// it was. An exception out of the comparison function passes through; out of v_QuickSort it leaves
// the items permuted, out of v_SetAt the old item removed.
// Threads: one object, one thread.
#ifndef FOUNDATION_CORE_CONTAINER_VOIDSORTEDARRAY_H
#define FOUNDATION_CORE_CONTAINER_VOIDSORTEDARRAY_H

#include <cstddef>
#include <cstdint>

#include "Foundation/Core/Container/VoidArray.h"

class ZELKOR_API CT_VoidSortedArray {
public:
    // Negative when `a` sorts before `b`, 0 when they are equal, positive when after. The pointers
    // lead to items, without promise of their alignment beyond that of items stored back to back.
    using CompareFunction = int (*)(const void* a, const void* b);

    CT_VoidSortedArray(std::uint32_t itemSize, CompareFunction compare, std::uint32_t growth,
                       std::uint32_t capacity);
    // Takes the array's items and item size, and sorts; the source keeps its order.
    CT_VoidSortedArray(const CT_VoidArray* array, CompareFunction compare);
    // Shares the other's storage.
    explicit CT_VoidSortedArray(const CT_VoidSortedArray* other) noexcept;
    CT_VoidSortedArray(const CT_VoidSortedArray& other) noexcept = default;
    // As v_Set(&other): the own item size and comparison stay.
    CT_VoidSortedArray& operator=(const CT_VoidSortedArray& other) noexcept;
    ~CT_VoidSortedArray() = default;

    static void* operator new(std::size_t size);
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* block, std::size_t size) noexcept;
    static void operator delete(void*, void*) noexcept {}
    [[nodiscard]] static _SHI_Pool* spso_GetMemPool() noexcept;

    // Empties the array, see CT_VoidArray.
    void v_Set(std::uint32_t growth, std::uint32_t capacity, BOOL keepStorage);
    // Shares the other's storage, which is taken to be in this array's order.
    void v_Set(const CT_VoidSortedArray* other) noexcept;
    // Takes the array's items and sorts.
    void v_Set(const CT_VoidArray* array);

    void v_SetGrowth(std::uint32_t growth) noexcept { array_.v_SetGrowth(growth); }
    [[nodiscard]] std::uint32_t n_GetGrowth() const noexcept { return array_.n_GetGrowth(); }
    void v_SetSize(std::uint32_t capacity) { array_.v_SetSize(capacity); }
    [[nodiscard]] std::uint32_t n_GetCount() const noexcept { return array_.n_GetCount(); }
    [[nodiscard]] std::uint32_t n_GetMaxItems() const noexcept { return array_.n_GetMaxItems(); }
    [[nodiscard]] std::uint32_t n_GetItemSize() const noexcept { return array_.n_GetItemSize(); }
    [[nodiscard]] CompareFunction pf_GetCompare() const noexcept { return compare_; }
    [[nodiscard]] const CT_VoidArray* pcco_GetArray() const noexcept { return &array_; }

    // Inserts at the sorted place: directly before the equal item that the search met, if any.
    void v_Insert(const void* item);
    void v_GetAt(void* out, std::uint32_t index) const noexcept;
    // Removes item `index`, then inserts the new item at its sorted place.
    void v_SetAt(const void* item, std::uint32_t index);
    void v_RemoveAt(std::uint32_t index) { array_.v_RemoveAt(index); }
    void v_RemoveAt(void* out, std::uint32_t index);

    // Position of an equal item, any one of several, else 0.
    [[nodiscard]] std::uint32_t n_Find(const void* item) const;

    // Sorts the whole array anew; equal items may change their order among each other, in the same
    // way on every system. The depth of the call stack stays below 32 levels whatever the order.
    void v_QuickSort();

    // TRUE when counts, item sizes and comparison functions agree and compare gives 0 for each pair
    // of items at the same position.
    [[nodiscard]] BOOL b_IsEqual(const CT_VoidSortedArray* other) const;

private:
    // The place of an equal item, or where the item belongs, with whether it was found.
    struct Place {
        std::uint32_t index;
        bool found;
    };
    [[nodiscard]] Place Search(const void* item) const;
    [[nodiscard]] const std::byte* At(std::uint32_t index) const noexcept {
        return array_.Items() + array_.Offset(index);
    }

    CT_VoidArray array_;
    CompareFunction compare_;
};

#endif
