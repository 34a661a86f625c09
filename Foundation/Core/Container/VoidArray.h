// CT_VoidArray: a contiguous array of items of one byte size, kept in a shared CT_Buffer.
//
// Units: positions count items from 1, and 0 means "none" in results; sizes, counts, growth and
// capacity are items. Items are copied byte for byte. As a count kRest means "up to the last item".
// Copies share their storage until one of them writes. An item or a source may lie in the array's
// own storage.
// Positions must lie between 1 and the count (count + 1 as an insertion place), and the arrays of a
// range operation must agree in item size; neither is checked. Removing, and the ranges of sources,
// end at the last item. A null item or source does nothing, is found nowhere and equals nothing; a
// null container to share makes an empty array.
// Errors: records none. Running out of memory, or asking for 4 GiB, throws CT_SmartHeapException
// and leaves the array as it was.
// Threads: arrays that share storage may live in different threads; one object, one thread.
#ifndef FOUNDATION_CORE_CONTAINER_VOIDARRAY_H
#define FOUNDATION_CORE_CONTAINER_VOIDARRAY_H

#include <cstddef>
#include <cstdint>

#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class ZELKOR_API CT_VoidArray {
public:
    static constexpr std::uint32_t kDefaultGrowth = 8;
    static constexpr std::uint32_t kRest = 0xFFFFFFFF;  // as a count

    // Item sizes are fixed for the object's life. An item size or a growth of 0 counts as 1.
    explicit CT_VoidArray(std::uint32_t itemSize);
    CT_VoidArray(std::uint32_t itemSize, std::uint32_t growth, std::uint32_t capacity);
    // Share the other storage; its growth step comes along.
    CT_VoidArray(const CT_Buffer* buffer, std::uint32_t itemSize) noexcept;
    explicit CT_VoidArray(const CT_VoidArray* other) noexcept;
    CT_VoidArray(const CT_VoidArray& other) noexcept = default;
    // Shares the other storage; the own item size stays.
    CT_VoidArray& operator=(const CT_VoidArray& other) noexcept;
    ~CT_VoidArray() = default;

    static void* operator new(std::size_t size);
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* block, std::size_t size) noexcept;
    static void operator delete(void*, void*) noexcept {}
    [[nodiscard]] static _SHI_Pool* spso_GetMemPool() noexcept;

    // Empties the array. With `keepStorage` unshared storage of at least `capacity` items is kept.
    void v_Set(std::uint32_t growth, std::uint32_t capacity, BOOL keepStorage);
    // Share the other storage; the own item size stays.
    void v_Set(const CT_VoidArray* other) noexcept;
    void v_Set(const CT_Buffer* buffer) noexcept;

    void v_SetGrowth(std::uint32_t growth) noexcept;
    [[nodiscard]] std::uint32_t n_GetGrowth() const noexcept {
        return buffer_.n_GetGrowth() / item_size_;
    }
    // Sets the capacity (rounded up as the buffer rounds); the leading items that fit as a whole
    // stay.
    void v_SetSize(std::uint32_t capacity);

    [[nodiscard]] std::uint32_t n_GetCount() const noexcept {
        return buffer_.n_GetUsedSize() / item_size_;
    }
    [[nodiscard]] std::uint32_t n_GetMaxItems() const noexcept {
        return buffer_.n_GetMaximumSize() / item_size_;
    }
    [[nodiscard]] std::uint32_t n_GetItemSize() const noexcept { return item_size_; }
    [[nodiscard]] const CT_Buffer* pcco_GetBuffer() const noexcept { return &buffer_; }

    void v_GetAt(void* out, int index) const noexcept;
    void v_SetAt(const void* item, int index);

    // Append one item, or `n` copies of it.
    void v_Insert(const void* item);
    void v_Insert(const void* item, std::uint32_t n);
    void v_InsertAt(const void* item, std::uint32_t index);
    void v_RemoveAt(std::uint32_t index);
    // Removes the items first..last; nothing when last is below first.
    void v_Remove(std::uint32_t first, std::uint32_t last);

    // Copy or move the items first..first+n-1 before position `at`. Moving to a place inside the
    // range or at one of its ends changes nothing.
    void v_AtInsertCopy(std::uint32_t first, std::uint32_t n, std::uint32_t at);
    void v_AtInsertMove(std::uint32_t first, std::uint32_t n, std::uint32_t at);
    // The same with the items of another array; moving takes them out of `source`.
    void v_AtInsertCopy(const CT_VoidArray* source, std::uint32_t first, std::uint32_t n,
                        std::uint32_t at);
    void v_AtInsertMove(CT_VoidArray* source, std::uint32_t first, std::uint32_t n,
                        std::uint32_t at);

    // Overwrites from position `at` on; the array grows when the items reach past its end.
    void v_Replace(const CT_VoidArray* source, std::uint32_t first, std::uint32_t n,
                   std::uint32_t at);
    void v_Insert(const CT_VoidArray* source, std::uint32_t first, std::uint32_t n,
                  std::uint32_t at);
    void v_Append(const CT_VoidArray* source, std::uint32_t first, std::uint32_t n);

    // Position of the first item that is equal byte for byte, else 0.
    [[nodiscard]] std::uint32_t n_Find(const void* item) const noexcept;
    // TRUE when item sizes, counts and all bytes agree.
    [[nodiscard]] BOOL b_IsEqual(const CT_VoidArray* other) const noexcept;

private:
    friend class CT_VoidSortedArray;

    // Bytes of `items` items; more than 32 bits can count becomes a size no buffer grants.
    [[nodiscard]] std::uint32_t Bytes(std::uint64_t items) const noexcept;
    // The offset of an item, whose position is known to be inside the storage.
    [[nodiscard]] std::uint32_t Offset(std::uint32_t index) const noexcept {
        return (index - 1) * item_size_;
    }
    [[nodiscard]] const std::byte* Items() const noexcept {
        return static_cast<const std::byte*>(buffer_.qcv_Get());
    }
    [[nodiscard]] std::uint32_t GrowthBytes(std::uint32_t items) const noexcept;
    // `n`, but no more than the items from `first` on.
    [[nodiscard]] std::uint32_t Count(std::uint32_t first, std::uint32_t n) const noexcept;
    [[nodiscard]] CT_Buffer HoldIfOwn(const void* item, bool grows) const noexcept;

    std::uint32_t item_size_;
    CT_Buffer buffer_;
};

#endif
