// CT_Iterator<T>: a walk over the values of some container, from before the first one ("at home")
// to behind the last; CT_HashIterator<Key, Data> is the one over a CT_HashTable.
//
//     std::unique_ptr<CT_Iterator<CT_Symbol*>> symbols(table.pco_GiveIterator());
//     while (symbols->b_Next()) Print(symbols->o_Get());
//
// The container is borrowed. What changes it other than through the iterator leaves the iterator's
// place undefined.
// Errors: records none. Iterators made with new or cloned come from a pool; running out of memory
// throws CT_SmartHeapException. Threads: one object, one thread.
#ifndef FOUNDATION_CORE_CONTAINER_ITERATOR_H
#define FOUNDATION_CORE_CONTAINER_ITERATOR_H

#include <cstddef>
#include <cstdint>

#include "Foundation/Core/Container/HashTable.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

struct _SHI_Pool;

namespace zelkor::detail {

// The memory of iterators of all types.
class ZELKOR_API IteratorMemory {
public:
    static void* operator new(std::size_t size);
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* block, std::size_t size) noexcept;
    static void operator delete(void*, void*) noexcept {}
    [[nodiscard]] static _SHI_Pool* spso_GetMemPool() noexcept;
};

}  // namespace zelkor::detail

template <typename T>
class CT_Iterator : public zelkor::detail::IteratorMemory {
public:
    virtual ~CT_Iterator() = default;

    // A new iterator at the same place; the caller owns it.
    [[nodiscard]] virtual CT_Iterator* pco_Clone() const = 0;
    // Goes to the place of another iterator, in that one's container; one of another kind changes
    // nothing.
    virtual void v_Set(const CT_Iterator* other) = 0;
    // Goes home.
    virtual void v_Set() = 0;
    // Same container and same place; FALSE when the other is of another kind.
    [[nodiscard]] virtual BOOL b_IsEqual(const CT_Iterator* other) const = 0;
    // Steps to the next value; FALSE when there is none.
    virtual BOOL b_Next() = 0;
    [[nodiscard]] virtual BOOL b_AtHome() const = 0;
    // Whether the walk is over: not at home and no current value.
    [[nodiscard]] virtual BOOL b_AtEnd() const = 0;
    // The current value; zero without one.
    [[nodiscard]] virtual T o_Get() const = 0;
    // Removes the current item and returns its value; the item that followed is current then. Zero,
    // and nothing is removed, without one.
    virtual T o_Remove() = 0;
    // Number of items in the container.
    [[nodiscard]] virtual std::uint32_t n_GetCount() const = 0;

protected:
    CT_Iterator() noexcept = default;
    CT_Iterator(const CT_Iterator&) noexcept = default;
    CT_Iterator& operator=(const CT_Iterator&) noexcept = default;
};

// The data of a hash table, slot by slot and each chain from its head.
template <typename Key, typename Data>
class CT_HashIterator : public CT_Iterator<Data> {
public:
    explicit CT_HashIterator(const CT_HashTable<Key, Data>* table) noexcept
        : iterator_(table == nullptr ? nullptr : table->pcco_GetTable()) {}

    [[nodiscard]] CT_HashIterator* pco_Clone() const override { return new CT_HashIterator(*this); }
    void v_Set(const CT_Iterator<Data>* other) override {
        const auto* const same = dynamic_cast<const CT_HashIterator*>(other);
        if (same != nullptr) iterator_.v_Set(&same->iterator_);
    }
    void v_Set() override { iterator_.v_Set(); }
    [[nodiscard]] BOOL b_IsEqual(const CT_Iterator<Data>* other) const override {
        const auto* const same = dynamic_cast<const CT_HashIterator*>(other);
        return same == nullptr ? FALSE : iterator_.b_IsEqual(&same->iterator_);
    }
    BOOL b_Next() override { return iterator_.b_Next(); }
    [[nodiscard]] BOOL b_AtHome() const override { return iterator_.b_AtHome(); }
    [[nodiscard]] BOOL b_AtEnd() const override { return iterator_.b_AtEnd(); }
    [[nodiscard]] Data o_Get() const override {
        Data data{};
        iterator_.v_Get(&data);
        return data;
    }
    Data o_Remove() override {
        Data data{};
        iterator_.v_Remove(&data);
        return data;
    }
    [[nodiscard]] std::uint32_t n_GetCount() const override { return iterator_.n_GetCount(); }

    // The current key; zero without one.
    [[nodiscard]] Key o_GetKey() const {
        Key key{};
        iterator_.v_GetKey(&key);
        return key;
    }

private:
    CT_VoidHashIterator iterator_;
};

#endif
