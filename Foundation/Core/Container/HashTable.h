// CT_HashTable<Key, Data>: a CT_VoidHashTable with keys and data of one type each.
//
// Keys and data are copied byte for byte: numbers, pointers and plain structures. Pointers are not
// owned. Order, growth, failures and threads: as CT_VoidHashTable.
//
//     CT_HashTable<const char16_t*, int> ages(&CT_HashFunction::sn_HashCasePQCUZ,
//                                             &CT_Compare::si_CompareCasePQCUZ);
//     ages.b_Insert(u"Ada", 36);
#ifndef FOUNDATION_CORE_CONTAINER_HASHTABLE_H
#define FOUNDATION_CORE_CONTAINER_HASHTABLE_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "Foundation/Core/Container/VoidHashTable.h"

template <typename Key, typename Data>
class CT_HashTable {
    static_assert(std::is_trivially_copyable_v<Key> && std::is_trivially_copyable_v<Data>,
                  "keys and data are copied byte for byte");
    static_assert(alignof(Key) <= alignof(void*), "stored keys are aligned to a pointer");

public:
    static constexpr std::uint32_t kDefaultSize = 13;

    // Without either function the table takes no items. One whose parameters are not `const void*`
    // must be of CT_Compare.
    template <typename Item>
    CT_HashTable(CT_VoidHashTable::HashFunction hash, int (*compare)(Item*, Item*),
                 std::uint32_t tableSize = kDefaultSize)
        : table_(sizeof(Data), sizeof(Key), hash,
                 reinterpret_cast<CT_VoidHashTable::CompareFunction>(compare), tableSize) {}
    explicit CT_HashTable(const CT_HashTable* other)
        : table_(other == nullptr ? nullptr : &other->table_) {}

    static void* operator new(std::size_t size) { return CT_VoidHashTable::operator new(size); }
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* block, std::size_t size) noexcept {
        CT_VoidHashTable::operator delete(block, size);
    }
    static void operator delete(void*, void*) noexcept {}

    // Removes all items and makes that many slots.
    void v_Set(std::uint32_t tableSize) { table_.v_Set(tableSize); }
    // Replaces all items and slots by the other's; the own functions stay.
    void v_Set(const CT_HashTable* other) {
        table_.v_Set(other == nullptr ? nullptr : &other->table_);
    }

    // TRUE when the key was there: its data is overwritten, its stored key stays.
    BOOL b_Insert(const Key& key, const Data& data) { return table_.b_Insert(&key, &data); }
    // Whether the key is there. Unless null, `out` gets the data, or zeros when it is not.
    BOOL b_Get(const Key& key, Data* out) const {
        const CT_VoidHashTable::st_HashItem* const item = table_.Lookup(&key);
        if (out != nullptr && item != nullptr) {
            std::memcpy(static_cast<void*>(out), item->pcv_GetData(), sizeof(Data));
        } else if (out != nullptr) {
            std::memset(static_cast<void*>(out), 0, sizeof(Data));
        }
        return item == nullptr ? FALSE : TRUE;
    }
    // As b_Get, and the item is removed.
    BOOL b_Remove(const Key& key, Data* out) { return table_.b_Remove(&key, out); }
    void v_Resize(std::uint32_t tableSize) { table_.v_Resize(tableSize); }

    [[nodiscard]] std::uint32_t n_GetCount() const noexcept { return table_.n_GetCount(); }
    [[nodiscard]] std::uint32_t n_GetTableSize() const noexcept { return table_.n_GetTableSize(); }
    [[nodiscard]] std::uint32_t n_GetCollisions() const noexcept {
        return table_.n_GetCollisions();
    }
    // The untyped table beneath, for CT_VoidHashIterator.
    [[nodiscard]] const CT_VoidHashTable* pcco_GetTable() const noexcept { return &table_; }

private:
    CT_VoidHashTable table_;
};

#endif
