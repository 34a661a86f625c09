// CT_Array<T>: a CT_VoidArray of items of one type, and CT_ArrayIterator<T>, which walks it.
//
// T is copied byte for byte: numbers, pointers and plain structures. Pointers are not owned: what
// they point to belongs to the caller. Units, sharing, null arguments, failures and threads: as
// CT_VoidArray;
// positions count from 1, 0 means none, an index of 0 or beyond the count must not be passed.
//
//     CT_Array<CT_UString*> names;
//     names.v_Insert(new CT_UString(u"first"));
//     for (CT_UString* name : names) delete name;
#ifndef FOUNDATION_CORE_CONTAINER_ARRAY_H
#define FOUNDATION_CORE_CONTAINER_ARRAY_H

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "Foundation/Core/Container/VoidArray.h"

template <typename T>
class CT_Array {
    static_assert(std::is_trivially_copyable_v<T>, "items are copied byte for byte");
    static_assert(alignof(T) <= 16, "storage is aligned to 16 bytes");

public:
    static constexpr std::uint32_t kRest = CT_VoidArray::kRest;  // as a count

    CT_Array() : array_(sizeof(T)) {}
    CT_Array(std::uint32_t growth, std::uint32_t capacity) : array_(sizeof(T), growth, capacity) {}
    // Shares the other's storage, as copying does.
    explicit CT_Array(const CT_Array* other) noexcept : array_(Bytes(other), sizeof(T)) {}
    // Shares the buffer's bytes as items.
    explicit CT_Array(const CT_Buffer* buffer) noexcept : array_(buffer, sizeof(T)) {}

    static void* operator new(std::size_t size) { return CT_VoidArray::operator new(size); }
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* block, std::size_t size) noexcept {
        CT_VoidArray::operator delete(block, size);
    }
    static void operator delete(void*, void*) noexcept {}

    // Empties the array. With `keepStorage` unshared storage of at least `capacity` items is kept.
    void v_Set(std::uint32_t growth, std::uint32_t capacity, BOOL keepStorage) {
        array_.v_Set(growth, capacity, keepStorage);
    }
    void v_Set(const CT_Array* other) noexcept { array_.v_Set(Untyped(other)); }
    void v_SetGrowth(std::uint32_t growth) noexcept { array_.v_SetGrowth(growth); }
    [[nodiscard]] std::uint32_t n_GetGrowth() const noexcept { return array_.n_GetGrowth(); }
    void v_SetSize(std::uint32_t capacity) { array_.v_SetSize(capacity); }
    [[nodiscard]] std::uint32_t n_GetCount() const noexcept { return array_.n_GetCount(); }
    [[nodiscard]] std::uint32_t n_GetMaxItems() const noexcept { return array_.n_GetMaxItems(); }
    [[nodiscard]] std::uint32_t n_GetItemSize() const noexcept { return sizeof(T); }
    [[nodiscard]] const CT_Buffer* pcco_GetBuffer() const noexcept {
        return array_.pcco_GetBuffer();
    }
    // The untyped array beneath, for operations that take any array.
    [[nodiscard]] const CT_VoidArray* pcco_GetArray() const noexcept { return &array_; }

    [[nodiscard]] T o_GetAt(std::uint32_t index) const noexcept { return begin()[index - 1]; }
    void v_GetAt(T* out, std::uint32_t index) const noexcept {
        if (out != nullptr) *out = o_GetAt(index);
    }
    void v_SetAt(const T& item, std::uint32_t index) {
        array_.v_SetAt(&item, static_cast<int>(index));
    }

    // Append one item, or `n` copies of it.
    void v_Insert(const T& item) { array_.v_Insert(&item); }
    void v_Insert(const T& item, std::uint32_t n) { array_.v_Insert(&item, n); }
    // Inserts before position `index`; count + 1 appends.
    void v_InsertAt(const T& item, std::uint32_t index) { array_.v_InsertAt(&item, index); }
    void v_RemoveAt(std::uint32_t index) { array_.v_RemoveAt(index); }
    void v_Remove(std::uint32_t first, std::uint32_t last) { array_.v_Remove(first, last); }

    void v_AtInsertCopy(std::uint32_t first, std::uint32_t n, std::uint32_t at) {
        array_.v_AtInsertCopy(first, n, at);
    }
    void v_AtInsertMove(std::uint32_t first, std::uint32_t n, std::uint32_t at) {
        array_.v_AtInsertMove(first, n, at);
    }
    void v_AtInsertCopy(const CT_Array* source, std::uint32_t first, std::uint32_t n,
                        std::uint32_t at) {
        array_.v_AtInsertCopy(Untyped(source), first, n, at);
    }
    void v_AtInsertMove(CT_Array* source, std::uint32_t first, std::uint32_t n, std::uint32_t at) {
        array_.v_AtInsertMove(source == nullptr ? nullptr : &source->array_, first, n, at);
    }
    void v_Replace(const CT_Array* source, std::uint32_t first, std::uint32_t n, std::uint32_t at) {
        array_.v_Replace(Untyped(source), first, n, at);
    }
    void v_Insert(const CT_Array* source, std::uint32_t first, std::uint32_t n, std::uint32_t at) {
        array_.v_Insert(Untyped(source), first, n, at);
    }
    void v_Append(const CT_Array* source, std::uint32_t first, std::uint32_t n) {
        array_.v_Append(Untyped(source), first, n);
    }

    // Position of the first equal item, byte for byte, else 0.
    [[nodiscard]] std::uint32_t n_Find(const T& item) const noexcept {
        return array_.n_Find(&item);
    }
    [[nodiscard]] BOOL b_IsEqual(const CT_Array* other) const noexcept {
        return array_.b_IsEqual(Untyped(other));
    }

    // For loops over all items; good until the array changes.
    [[nodiscard]] const T* begin() const noexcept {
        return static_cast<const T*>(array_.pcco_GetBuffer()->qcv_Get());
    }
    [[nodiscard]] const T* end() const noexcept { return begin() + n_GetCount(); }

private:
    [[nodiscard]] static const CT_VoidArray* Untyped(const CT_Array* array) noexcept {
        return array == nullptr ? nullptr : &array->array_;
    }
    [[nodiscard]] static const CT_Buffer* Bytes(const CT_Array* array) noexcept {
        return array == nullptr ? nullptr : array->pcco_GetBuffer();
    }

    CT_VoidArray array_;
};

// Walks an array from before its first item ("at home") to behind its last. It keeps a position,
// not a pointer: the array may change meanwhile, and must outlive the iterator.
template <typename T>
class CT_ArrayIterator {
public:
    explicit CT_ArrayIterator(const CT_Array<T>* array) noexcept : array_(array) {}
    explicit CT_ArrayIterator(const CT_ArrayIterator* other) noexcept { v_Set(other); }

    // Goes home; to another array; to the place of another iterator. Null is one without items.
    void v_Set() noexcept { position_ = 0; }
    void v_Set(const CT_Array<T>* array) noexcept {
        array_ = array;
        position_ = 0;
    }
    void v_Set(const CT_ArrayIterator* other) noexcept {
        *this =
            other == nullptr ? CT_ArrayIterator(static_cast<const CT_Array<T>*>(nullptr)) : *other;
    }

    // Steps to the next item; FALSE when there is none.
    BOOL b_Next() noexcept {
        if (position_ <= n_GetCount()) ++position_;
        return position_ <= n_GetCount();
    }
    [[nodiscard]] BOOL b_AtHome() const noexcept { return position_ == 0; }
    [[nodiscard]] BOOL b_AtEnd() const noexcept { return position_ > n_GetCount(); }
    // The current item; only after a step that answered TRUE.
    [[nodiscard]] T o_Get() const noexcept { return array_->o_GetAt(position_); }
    void v_Get(T* out) const noexcept {
        if (out != nullptr) *out = o_Get();
    }
    // Position of the current item, 0 at home.
    [[nodiscard]] std::uint32_t n_GetPosition() const noexcept { return position_; }
    [[nodiscard]] std::uint32_t n_GetCount() const noexcept {
        return array_ == nullptr ? 0 : array_->n_GetCount();
    }
    [[nodiscard]] BOOL b_IsEqual(const CT_ArrayIterator* other) const noexcept {
        return other != nullptr && array_ == other->array_ && position_ == other->position_;
    }

private:
    const CT_Array<T>* array_ = nullptr;
    std::uint32_t position_ = 0;
};

#endif
