// CT_VoidHashTable: a hash table with chains, of keys and data of fixed byte sizes, and
// CT_VoidHashIterator, which walks it.
//
// Units: sizes are bytes; slots count from 1 to the table size. Keys and data are copied in and out
// byte for byte; what a pointer among them leads to belongs to the caller, and a text that a key
// points to must be there (not null) and not change meanwhile: the table keeps the hash of keys
// whose functions it knows.
// Order: slot by slot, each chain from its head; a new item goes to the head of its chain.
// Growth: an item that joins others in a chain counts as a collision. When an insertion brings the
// collisions above a quarter of the table size, the table grows to the next prime at or above twice
// its size.
// Errors: records none. Running out of memory, or an exception out of the hash or comparison
// function, passes through (CT_SmartHeapException) and leaves the table as it was.
// Threads: one object, one thread; any number of threads may look up in, iterate over and copy a
// table that none of them changes.
#ifndef FOUNDATION_CORE_CONTAINER_VOIDHASHTABLE_H
#define FOUNDATION_CORE_CONTAINER_VOIDHASHTABLE_H

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "Foundation/Core/Container/NodeArena.h"
#include "Foundation/Core/Container/Remainder.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

struct _SHI_Pool;

class ZELKOR_API CT_VoidHashTable {
public:
    // Answers the slot of a key, from 1 to the table size, which is at least 1. See
    // CT_HashFunction.
    using HashFunction = unsigned int (*)(const void* key, unsigned int tableSize);
    // Compares the key stored with the key looked for: 0 when they are equal. Neither function may
    // change the table that calls it; looking up in it is fine.
    using CompareFunction = int (*)(const void* stored, const void* wanted);

    // An item; the bytes of its key follow, then those of its data, without padding.
    struct st_HashItem {
        st_HashItem* following;  // null at the end of the chain
        std::uint32_t hash;      // the table's own
        std::uint32_t key_size;

        [[nodiscard]] const st_HashItem* pcso_GetFollowing() const noexcept { return following; }
        [[nodiscard]] const void* pcv_GetKey() const noexcept { return this + 1; }
        [[nodiscard]] const void* pcv_GetData() const noexcept {
            return reinterpret_cast<const std::byte*>(this + 1) + key_size;
        }
        // Fills an item that has room for the bytes; nothing follows it then.
        void v_Set(const void* key, std::uint32_t keySize, const void* data,
                   std::uint32_t dataSize) noexcept;
        void v_SetData(const void* data, std::uint32_t size) noexcept;
    };

    // Exactly `tableSize` slots. Without either function the table takes no items.
    CT_VoidHashTable(std::uint32_t dataSize, std::uint32_t keySize, HashFunction hash,
                     CompareFunction compare, std::uint32_t tableSize);
    // Same sizes, functions and slots; the other's items are inserted in their order, so that
    // chains stand in reverse. Null makes a table that takes no items.
    explicit CT_VoidHashTable(const CT_VoidHashTable* other);
    CT_VoidHashTable(const CT_VoidHashTable& other);
    // As v_Set(&other).
    CT_VoidHashTable& operator=(const CT_VoidHashTable& other);
    ~CT_VoidHashTable();

    static void* operator new(std::size_t size);
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* block, std::size_t size) noexcept;
    static void operator delete(void*, void*) noexcept {}
    [[nodiscard]] static _SHI_Pool* spso_GetMemPool() noexcept;

    // Removes all items and makes that many slots.
    void v_Set(std::uint32_t tableSize);
    // Replaces all items and slots as copying does; the own sizes and functions stay. From itself
    // nothing changes, null only empties. Tables of different sizes exchange as many bytes as both
    // have, the rest of a larger key or data is 0.
    void v_Set(const CT_VoidHashTable* other);

    // TRUE when the key was there: its data is overwritten, its stored key stays. A table of size 0
    // first gets 13 slots. A null key is never there; it, and null data, is not inserted.
    BOOL b_Insert(const void* key, const void* data);
    // Whether the key is there. Unless null, `out` gets the data, or zeros when it is not.
    BOOL b_Get(const void* key, void* out) const {
        return Give(key == nullptr ? nullptr : Lookup(key), out);
    }
    // As b_Get, and the item is removed. `key` may be the stored key itself.
    BOOL b_Remove(const void* key, void* out);
    // Removes an item of that slot's chain.
    void v_RemoveAt(std::uint32_t slot, const st_HashItem* item) noexcept;
    // Distributes the items anew over `tableSize` slots (0: as many as now), or over the next prime
    // at or above twice as many when the collisions are no less than a quarter of that.
    void v_Resize(std::uint32_t tableSize);

    // Head of a slot's chain, null when it is empty.
    [[nodiscard]] st_HashItem* pso_GetAt(std::uint32_t slot) const noexcept {
        return slot - 1 < slots_.Size() ? slots_[slot - 1] : nullptr;
    }
    [[nodiscard]] std::uint32_t n_GetCount() const noexcept { return count_; }
    [[nodiscard]] std::uint32_t n_GetTableSize() const noexcept { return slots_.Size(); }
    // Items that were put before others in their chains, less those of them that were removed from
    // behind another one.
    [[nodiscard]] std::uint32_t n_GetCollisions() const noexcept { return collisions_; }
    [[nodiscard]] std::uint32_t n_GetKeySize() const noexcept { return key_size_; }
    [[nodiscard]] std::uint32_t n_GetDataSize() const noexcept { return data_size_; }
    [[nodiscard]] HashFunction pf_GetHash() const noexcept { return hash_; }
    [[nodiscard]] CompareFunction pf_GetCompare() const noexcept { return compare_; }

    // Functions for keys of unsigned 32-bit numbers: value modulo size + 1; 1, -1 or 0.
    static unsigned int sn_HashInteger(const void* key, unsigned int tableSize);
    static int si_CompareInteger(const void* left, const void* right);
    // The first prime from `n` on; 0 to 3 answer themselves, and 0 stands for primes of 33 bits.
    [[nodiscard]] static std::uint32_t n_GetNextPrim(std::uint32_t n) noexcept;

private:
    friend class CT_VoidHashIterator;
    template <typename Key, typename Data>
    friend class CT_HashTable;

    // How keys are hashed and compared. Pairs of functions that are known to agree, so that equal
    // keys have equal hashes, are not asked again what the stored hashes tell.
    struct Rules {
        enum class Path : std::uint8_t { kForeign, kNumber, kUnitsAt, kKnown };
        Path path;
        bool filters;                            // keys of different hashes are different
        std::uint32_t (*hash)(const void* key);  // whatever the table size; null for kForeign
        CompareFunction compare;
        std::uint32_t slot_bits = 0xFFFFFFFF;  // of an item's hash, those that decide its slot
    };
    [[nodiscard]] static Rules RulesOf(HashFunction hash, CompareFunction compare) noexcept;

    // The heads of the chains. A byte for each tells, in so many kinds of hashes as it has bits,
    // which of them the chain may hold: most keys that are not there are missed without a look at
    // an item.
    class Slots {
    public:
        explicit Slots(std::uint32_t size);
        Slots(const Slots&) = delete;
        Slots& operator=(const Slots&) = delete;
        ~Slots();
        void Swap(Slots& other) noexcept;
        void Empty() noexcept;
        [[nodiscard]] std::uint32_t Size() const noexcept { return size_; }
        // From 0.
        [[nodiscard]] std::uint32_t IndexOf(std::uint32_t hash) const noexcept {
            return zelkor::detail::Remainder(hash, size_, reciprocal_);
        }
        [[nodiscard]] st_HashItem*& operator[](std::uint32_t index) const noexcept {
            return heads_[index];
        }
        [[nodiscard]] bool MayHold(std::uint32_t index, std::uint32_t hash) const noexcept {
            return (kinds_[index] >> KindOf(hash) & 1) != 0;
        }
        // Puts an item before the others of its chain; whether there are others.
        bool Push(std::uint32_t index, st_HashItem* item) noexcept;
        // For a chain that became empty. Where items remain, what went is noted until the next
        // rebuild.
        void Forget(st_HashItem** head) noexcept { kinds_[head - heads_] = 0; }
        // Has the items of a slot that lies ahead brought nearer.
        void PrefetchFrom(std::uint32_t index) const noexcept;

    private:
        [[nodiscard]] static std::uint32_t KindOf(std::uint32_t hash) noexcept {
            return hash * 0x9E3779B1u >> 29;  // 0 to 7, by bits that the slot hardly depends on
        }

        st_HashItem** heads_ = nullptr;
        std::uint8_t* kinds_ = nullptr;  // behind the heads, in the same block
        std::uint32_t size_ = 0;
        std::uint64_t reciprocal_ = 0;  // of the size
    };

    // Where a key is or would be.
    struct Place {
        std::uint32_t hash;  // for foreign functions the slot less 1
        st_HashItem** head;  // of its chain
        st_HashItem** link;  // to its item; null when there is none
    };
    [[nodiscard]] Place Find(const void* key) const;
    [[nodiscard]] Place FindHere(const void* key) const;  // the same, inline
    template <bool kFilters, typename Matches>
    [[nodiscard]] Place FindIn(std::uint32_t hash, Matches matches) const;
    [[nodiscard]] std::uint32_t IndexOf(std::uint32_t hash) const noexcept {
        return slots_.IndexOf(hash & rules_.slot_bits);
    }
    // The item of a key, or null; numbers are found here and now.
    [[nodiscard]] const st_HashItem* Lookup(const void* key) const {
        if (rules_.path != Rules::Path::kNumber || count_ == 0) return LookupOther(key);
        std::uint32_t number;
        std::memcpy(&number, key, sizeof(number));
        const std::uint32_t index = slots_.IndexOf(number);
        if (!slots_.MayHold(index, number)) return nullptr;
        const st_HashItem* item = slots_[index];
        while (item != nullptr && item->hash != number) item = item->following;
        return item;
    }
    [[nodiscard]] const st_HashItem* LookupOther(const void* key) const;
    // Unless null, `out` gets the item's data, or zeros when there is none; whether there is.
    BOOL Give(const st_HashItem* item, void* out) const noexcept;
    // Makes slots where there are none.
    void InsertFirst(const void* key, const void* data);
    // Adds an item whose key is not there, and grows.
    void Add(const void* key, std::uint32_t hash, const void* data);
    void InsertAll(const CT_VoidHashTable& other);
    // By b_Insert, as tables of different sizes or functions and those whose functions are not
    // known to agree need it.
    void InsertEach(const CT_VoidHashTable& other);
    void Exchange(CT_VoidHashTable& other) noexcept;
    void Rebuild(std::uint32_t tableSize);
    // Removes the item that `link`, the head of its chain or a link in it, leads to.
    void Unlink(st_HashItem** link, bool isHead) noexcept;
    void RemoveBehind(const st_HashItem* previous, std::uint32_t slot,
                      const st_HashItem* item) noexcept;

    std::uint32_t key_size_;
    std::uint32_t data_size_;
    std::uint32_t count_ = 0;
    std::uint32_t collisions_ = 0;
    HashFunction hash_;
    CompareFunction compare_;
    Rules rules_;
    Slots slots_;
    zelkor::detail::NodeArena items_;
};

// Walks a table from before its first item ("at home") to behind its last. The table must outlive
// it and, when items are removed through it, not be constant. Insertions, removals and resizes not
// made through it leave its place undefined. A null table has no items. Reading needs a current
// item, that is a step that answered TRUE; without one, zeros are copied out and nothing is
// removed.
class ZELKOR_API CT_VoidHashIterator {
public:
    explicit CT_VoidHashIterator(const CT_VoidHashTable* table) noexcept : table_(table) {}
    explicit CT_VoidHashIterator(const CT_VoidHashIterator* other) noexcept
        : CT_VoidHashIterator(
              other == nullptr ? CT_VoidHashIterator(static_cast<const CT_VoidHashTable*>(nullptr))
                               : *other) {}

    // Goes home; to another table; to the place of another iterator, null being one without items.
    void v_Set() noexcept { v_Set(table_); }
    void v_Set(const CT_VoidHashTable* table) noexcept { *this = CT_VoidHashIterator(table); }
    void v_Set(const CT_VoidHashIterator* other) noexcept { *this = CT_VoidHashIterator(other); }

    // Steps to the next item; FALSE when there is none.
    BOOL b_Next() noexcept;
    [[nodiscard]] BOOL b_AtHome() const noexcept { return at_home_; }
    [[nodiscard]] BOOL b_AtEnd() const noexcept {
        return at_home_ == FALSE && item_ == nullptr ? TRUE : FALSE;
    }
    [[nodiscard]] std::uint32_t n_GetCount() const noexcept {
        return table_ == nullptr ? 0 : table_->n_GetCount();
    }
    // Copy the current data or key out.
    void v_Get(void* out) const noexcept;
    void v_GetKey(void* out) const noexcept;
    // Copy the current data or key out unless `out` is null, step to the next item and remove the
    // one left: what followed it is current then.
    void v_Remove(void* out) noexcept;
    void v_RemoveKey(void* out) noexcept;
    // Same table and same place.
    [[nodiscard]] BOOL b_IsEqual(const CT_VoidHashIterator* other) const noexcept;

private:
    // Leaves the chain of the current slot for the next one that is not empty.
    void GoToSlotAfter() noexcept;
    void RemoveCurrent() noexcept;

    const CT_VoidHashTable* table_;
    const CT_VoidHashTable::st_HashItem* item_ = nullptr;
    std::uint32_t slot_ = 0;  // 0 before the first
    BOOL at_home_ = TRUE;
    // The item before the current one in its chain, so that removing does not walk the chain.
    const CT_VoidHashTable::st_HashItem* previous_ = nullptr;
};

#endif
