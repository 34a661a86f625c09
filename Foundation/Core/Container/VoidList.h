// CT_VoidList: a doubly linked list of items of one byte size, each in a node of its own.
//
// Units: sizes are bytes; indices count from 1, 0 means none. Items are copied byte for byte.
// A position is a pointer to a node of this list and stays valid until the node is removed or the
// list cleared; they are not checked. Null items and outputs, and null positions where they mean
// none, are passed over: nothing is inserted, copied or removed, found or equal.
// Errors: records none. Running out of memory throws CT_SmartHeapException and leaves the list as
// it was.
// Threads: one object, one thread.
#ifndef FOUNDATION_CORE_CONTAINER_VOIDLIST_H
#define FOUNDATION_CORE_CONTAINER_VOIDLIST_H

#include <cstddef>
#include <cstdint>

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

struct _SHI_Pool;

class ZELKOR_API CT_VoidList {
public:
    // A node; the item's bytes follow directly.
    struct st_Position {
        st_Position* next;      // null at the end
        st_Position* previous;  // null at the front
    };

    explicit CT_VoidList(std::uint32_t itemSize) noexcept : item_size_(itemSize) {}
    // Same item size, copies of all items in order.
    explicit CT_VoidList(const CT_VoidList* other);
    CT_VoidList(const CT_VoidList& other) : CT_VoidList(&other) {}
    // As v_Set(&other): the own item size stays.
    CT_VoidList& operator=(const CT_VoidList& other);
    ~CT_VoidList() { v_Set(); }

    static void* operator new(std::size_t size);
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* block, std::size_t size) noexcept;
    static void operator delete(void*, void*) noexcept {}
    [[nodiscard]] static _SHI_Pool* spso_GetMemPool() noexcept;

    // Removes all nodes.
    void v_Set() noexcept;
    // Replaces all items by copies of the other's; from itself nothing changes. Lists of different
    // item sizes exchange as many bytes as both have, the rest of a larger item is 0.
    void v_Set(const CT_VoidList* other);

    void v_InsertFirst(const void* item);
    void v_InsertLast(const void* item);
    // A null position appends at the end.
    void v_InsertBefore(const void* item, st_Position* position);
    // A null position puts the item at the front.
    void v_InsertAfter(const void* item, st_Position* position);

    // Copy the item to `out` unless that is null, then free the node; a null position means the
    // first one. Nothing happens in an empty list.
    void v_RemoveAt(void* out, st_Position* position) noexcept;
    void v_RemoveFirst(void* out) noexcept { v_RemoveAt(out, first_); }
    void v_RemoveLast(void* out) noexcept { v_RemoveAt(out, last_); }

    void v_GetAt(void* out, const st_Position* position) const noexcept;
    void v_SetAt(const void* item, st_Position* position) noexcept;

    [[nodiscard]] st_Position* pso_GetFirst() const noexcept { return first_; }
    [[nodiscard]] st_Position* pso_GetLast() const noexcept { return last_; }
    // Goes forward or, with negative steps, backward; past one end comes the other. Null from null.
    [[nodiscard]] st_Position* pso_Skip(st_Position* position, int steps) const noexcept;
    // The node at an index, from the nearer end; null when there is none.
    [[nodiscard]] st_Position* pso_GetPosition(std::uint32_t index) const noexcept;
    // The first node whose item is equal byte for byte, and its index through `index` unless that
    // is null; null and 0 when there is none.
    [[nodiscard]] st_Position* pso_Find(const void* item,
                                        std::uint32_t* index = nullptr) const noexcept;
    // TRUE when counts agree and every pair of items does, over this list's item size; a list of
    // smaller items is never equal.
    [[nodiscard]] BOOL b_IsEqual(const CT_VoidList* other) const noexcept;

    [[nodiscard]] std::uint32_t n_GetCount() const noexcept { return count_; }
    [[nodiscard]] std::uint32_t n_GetItemSize() const noexcept { return item_size_; }

private:
    [[nodiscard]] st_Position* NewNode() const;
    // A new node with the item before `next`, at the end when that is null.
    void Insert(const void* item, st_Position* next);
    // Links a node there.
    void Link(st_Position* node, st_Position* next) noexcept;

    std::uint32_t count_ = 0;
    std::uint32_t item_size_;
    st_Position* last_ = nullptr;
    st_Position* first_ = nullptr;
};

#endif
