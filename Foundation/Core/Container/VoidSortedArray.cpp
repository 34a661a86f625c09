#include "Foundation/Core/Container/VoidSortedArray.h"

#include <algorithm>

#include "Foundation/Core/Container/Internal/ContainerDetail.h"

using namespace zelkor::detail;

namespace {

constinit _SHI_Pool pool(sizeof(CT_VoidSortedArray), 64);

// The quicksort over items at positions lo..hi. The order it leaves equal items in is fixed by the
// choice of the middle item as pivot and by the order of the exchanges; the two parts of a range
// can be sorted in either order, so the smaller one is taken first and the stack stays low.
class Sorter {
public:
    Sorter(std::byte* items, std::uint32_t size, CT_VoidSortedArray::CompareFunction compare)
        : items_(items), size_(size), compare_(compare) {}

    void Sort(std::uint32_t lo, std::uint32_t hi) const {
        while (lo < hi) {
            Swap(lo, Middle(lo, hi));
            const auto [last, all_equal] = Partition(lo, hi);
            if (all_equal) return FinishEqual(lo + 1, hi);
            Swap(lo, last);
            if (last - lo < hi - last) {
                if (last > lo) Sort(lo, last - 1);
                lo = last + 1;
            } else {
                Sort(last + 1, hi);
                hi = last - 1;
            }
        }
    }

private:
    struct Parted {
        std::uint32_t last;  // the last item known to sort before the pivot, which is at lo
        bool all_equal;
    };

    static std::uint32_t Middle(std::uint32_t lo, std::uint32_t hi) { return lo + (hi - lo) / 2; }
    std::byte* At(std::uint32_t position) const {
        return items_ + std::size_t{position - 1} * size_;
    }

    Parted Partition(std::uint32_t lo, std::uint32_t hi) const {
        Parted parted{lo, true};
        for (std::uint32_t i = lo + 1; i <= hi; ++i) {
            const int order = compare_(At(lo), At(i));
            parted.all_equal = parted.all_equal && order == 0;
            if (order > 0) Swap(++parted.last, i);
        }
        return parted;
    }

    // What sorting a range of equal items comes to, without comparing them again.
    void FinishEqual(std::uint32_t lo, std::uint32_t hi) const {
        for (; lo < hi; ++lo) Swap(lo, Middle(lo, hi));
    }

    void Swap(std::uint32_t a, std::uint32_t b) const {
        if (a == b) return;
        if (size_ == 8) return SwapAs<std::uint64_t>(a, b);
        if (size_ == 4) return SwapAs<std::uint32_t>(a, b);
        std::swap_ranges(At(a), At(a) + size_, At(b));
    }
    template <typename T>
    void SwapAs(std::uint32_t a, std::uint32_t b) const {
        T first, second;
        std::memcpy(&first, At(a), sizeof(T));
        std::memcpy(&second, At(b), sizeof(T));
        std::memcpy(At(a), &second, sizeof(T));
        std::memcpy(At(b), &first, sizeof(T));
    }

    std::byte* items_;
    std::uint32_t size_;
    CT_VoidSortedArray::CompareFunction compare_;
};

}  // namespace

CT_VoidSortedArray::CT_VoidSortedArray(std::uint32_t itemSize, CompareFunction compare,
                                       std::uint32_t growth, std::uint32_t capacity)
    : array_(itemSize, growth, capacity), compare_(compare) {}

CT_VoidSortedArray::CT_VoidSortedArray(const CT_VoidArray* array, CompareFunction compare)
    : array_(array), compare_(compare) {
    v_QuickSort();
}

CT_VoidSortedArray::CT_VoidSortedArray(const CT_VoidSortedArray* other) noexcept
    : array_(other == nullptr ? nullptr : &other->array_),
      compare_(other == nullptr ? nullptr : other->compare_) {}

CT_VoidSortedArray& CT_VoidSortedArray::operator=(const CT_VoidSortedArray& other) noexcept {
    v_Set(&other);
    return *this;
}

void* CT_VoidSortedArray::operator new(std::size_t size) {
    return NewObject(pool, size);
}

void CT_VoidSortedArray::operator delete(void* block, std::size_t size) noexcept {
    DeleteObject(pool, block, size);
}

_SHI_Pool* CT_VoidSortedArray::spso_GetMemPool() noexcept {
    return &pool;
}

void CT_VoidSortedArray::v_Set(std::uint32_t growth, std::uint32_t capacity, BOOL keepStorage) {
    array_.v_Set(growth, capacity, keepStorage);
}

void CT_VoidSortedArray::v_Set(const CT_VoidSortedArray* other) noexcept {
    array_.v_Set(other == nullptr ? nullptr : &other->array_);
}

void CT_VoidSortedArray::v_Set(const CT_VoidArray* array) {
    CT_VoidSortedArray sorted(this);
    sorted.array_.v_Set(array);
    sorted.v_QuickSort();
    v_Set(&sorted);
}

void CT_VoidSortedArray::v_Insert(const void* item) {
    if (item != nullptr && compare_ != nullptr) array_.v_InsertAt(item, Search(item).index);
}

void CT_VoidSortedArray::v_GetAt(void* out, std::uint32_t index) const noexcept {
    if (out != nullptr) CopyItem(out, At(index), n_GetItemSize());
}

void CT_VoidSortedArray::v_SetAt(const void* item, std::uint32_t index) {
    if (item == nullptr || compare_ == nullptr) return;
    // The share keeps an item of the own storage in its place while that changes.
    const CT_Buffer hold = array_.HoldIfOwn(item, true);
    v_RemoveAt(index);
    v_Insert(item);
}

void CT_VoidSortedArray::v_RemoveAt(void* out, std::uint32_t index) {
    v_GetAt(out, index);
    v_RemoveAt(index);
}

std::uint32_t CT_VoidSortedArray::n_Find(const void* item) const {
    if (item == nullptr || compare_ == nullptr) return 0;
    const auto [index, found] = Search(item);
    return found ? index : 0;
}

void CT_VoidSortedArray::v_QuickSort() {
    const std::uint32_t count = n_GetCount();
    if (count < 2 || compare_ == nullptr) return;
    auto* const items = static_cast<std::byte*>(array_.buffer_.qv_Get());
    Sorter(items, n_GetItemSize(), compare_).Sort(1, count);
}

BOOL CT_VoidSortedArray::b_IsEqual(const CT_VoidSortedArray* other) const {
    if (other == nullptr) return FALSE;
    const std::uint32_t count = n_GetCount();
    if (count != other->n_GetCount() || n_GetItemSize() != other->n_GetItemSize() ||
        compare_ != other->compare_ || (compare_ == nullptr && count != 0)) {
        return FALSE;
    }
    for (std::uint32_t index = 1; index <= count; ++index) {
        if (compare_(At(index), other->At(index)) != 0) return FALSE;
    }
    return TRUE;
}

CT_VoidSortedArray::Place CT_VoidSortedArray::Search(const void* item) const {
    std::uint32_t lo = 1;
    std::uint32_t hi = n_GetCount();
    while (lo <= hi) {
        const std::uint32_t middle = lo + (hi - lo) / 2;
        const int order = compare_(At(middle), item);
        if (order == 0) return {middle, true};
        if (order < 0) {
            lo = middle + 1;
        } else {
            hi = middle - 1;
        }
    }
    return {lo, false};
}
