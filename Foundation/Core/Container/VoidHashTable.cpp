#include "Foundation/Core/Container/VoidHashTable.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "Foundation/Core/Container/HashFunction.h"
#include "Foundation/Core/Container/Internal/ContainerDetail.h"
#include "Foundation/Core/Container/Internal/HashDetail.h"
#include "Foundation/Platform/Prefetch.h"

namespace platform = zelkor::platform;

using namespace zelkor::detail;

namespace {

constexpr std::uint32_t kSizeInsteadOfNone = 13;
constexpr std::uint32_t kMostToDouble = 0xFFFFFFFB / 2;  // the largest prime of 32 bits

constinit _SHI_Pool pool(sizeof(CT_VoidHashTable), 128);

}  // namespace

void CT_VoidHashTable::st_HashItem::v_Set(const void* key, std::uint32_t keySize, const void* data,
                                          std::uint32_t dataSize) noexcept {
    following = nullptr;
    key_size = keySize;
    CopyItem(this + 1, key, keySize);
    v_SetData(data, dataSize);
}

void CT_VoidHashTable::st_HashItem::v_SetData(const void* data, std::uint32_t size) noexcept {
    CopyItem(const_cast<void*>(pcv_GetData()), data, size);
}

CT_VoidHashTable::CT_VoidHashTable(std::uint32_t dataSize, std::uint32_t keySize, HashFunction hash,
                                   CompareFunction compare, std::uint32_t tableSize)
    : key_size_(keySize),
      data_size_(dataSize),
      hash_(hash),
      compare_(compare),
      rules_(RulesOf(hash, compare)),
      slots_(tableSize),
      items_(sizeof(st_HashItem) + std::size_t{keySize} + dataSize) {}

CT_VoidHashTable::CT_VoidHashTable(const CT_VoidHashTable& other)
    : CT_VoidHashTable(other.data_size_, other.key_size_, other.hash_, other.compare_,
                       other.n_GetTableSize()) {
    InsertAll(other);
}

CT_VoidHashTable::CT_VoidHashTable(const CT_VoidHashTable* other)
    : CT_VoidHashTable(other == nullptr ? CT_VoidHashTable(0, 0, nullptr, nullptr, 0) : *other) {}

CT_VoidHashTable& CT_VoidHashTable::operator=(const CT_VoidHashTable& other) {
    v_Set(&other);
    return *this;
}

CT_VoidHashTable::~CT_VoidHashTable() = default;

void* CT_VoidHashTable::operator new(std::size_t size) {
    return NewObject(pool, size);
}

void CT_VoidHashTable::operator delete(void* block, std::size_t size) noexcept {
    DeleteObject(pool, block, size);
}

_SHI_Pool* CT_VoidHashTable::spso_GetMemPool() noexcept {
    return &pool;
}

void CT_VoidHashTable::v_Set(std::uint32_t tableSize) {
    if (tableSize == n_GetTableSize()) {
        slots_.Empty();
    } else {
        Slots fresh(tableSize);
        slots_.Swap(fresh);
    }
    items_.Clear();
    count_ = 0;
    collisions_ = 0;
}

void CT_VoidHashTable::v_Set(const CT_VoidHashTable* other) {
    if (other == this) return;
    if (other == nullptr) return v_Set(n_GetTableSize());
    CT_VoidHashTable copy(data_size_, key_size_, hash_, compare_, other->n_GetTableSize());
    copy.InsertAll(*other);
    Exchange(copy);
}

BOOL CT_VoidHashTable::b_Insert(const void* key, const void* data) {
    if (key == nullptr || (data == nullptr && data_size_ != 0)) return FALSE;
    if (hash_ == nullptr || compare_ == nullptr) return FALSE;
    if (n_GetTableSize() == 0) {
        InsertFirst(key, data);
        return FALSE;
    }
    const Place place = Find(key);
    if (place.link == nullptr) {
        Add(key, place.hash, data);
        return FALSE;
    }
    (*place.link)->v_SetData(data, data_size_);
    return TRUE;
}

BOOL CT_VoidHashTable::b_Remove(const void* key, void* out) {
    if (count_ == 0 || key == nullptr) return Give(nullptr, out);
    const Place place = Find(key);
    const BOOL found = Give(place.link == nullptr ? nullptr : *place.link, out);
    if (found != FALSE) Unlink(place.link, place.link == place.head);
    return found;
}

void CT_VoidHashTable::v_RemoveAt(std::uint32_t slot, const st_HashItem* item) noexcept {
    if (pso_GetAt(slot) != nullptr) RemoveBehind(nullptr, slot, item);
}

void CT_VoidHashTable::v_Resize(std::uint32_t tableSize) {
    if (tableSize == 0) tableSize = n_GetTableSize();
    if (collisions_ >= tableSize / 4) {
        if (tableSize > kMostToDouble) ReportExhausted();
        tableSize = n_GetNextPrim(2 * tableSize);
    }
    Rebuild(tableSize);
}

unsigned int CT_VoidHashTable::sn_HashInteger(const void* key, unsigned int tableSize) {
    return CT_HashFunction::sn_HashPN4(key, tableSize);
}

int CT_VoidHashTable::si_CompareInteger(const void* left, const void* right) {
    const auto a = ValueAt<std::uint32_t>(left);
    const auto b = ValueAt<std::uint32_t>(right);
    return a > b ? 1 : a < b ? -1 : 0;
}

std::uint32_t CT_VoidHashTable::n_GetNextPrim(std::uint32_t n) noexcept {
    const auto is_prime = [](std::uint32_t value) {
        if (value % 2 == 0) return value <= 2;
        const auto root = static_cast<std::uint32_t>(std::sqrt(static_cast<double>(value)));
        for (std::uint32_t divisor = 3; divisor <= root; divisor += 2) {
            if (value % divisor == 0) return false;
        }
        return true;
    };
    while (!is_prime(n)) ++n;
    return n;
}

void CT_VoidHashTable::InsertFirst(const void* key, const void* data) {
    CT_VoidHashTable table(data_size_, key_size_, hash_, compare_, kSizeInsteadOfNone);
    table.b_Insert(key, data);
    Exchange(table);
}

void CT_VoidHashTable::Add(const void* key, std::uint32_t hash, const void* data) {
    auto* const item = static_cast<st_HashItem*>(items_.Allocate());
    item->v_Set(key, key_size_, data, data_size_);
    item->hash = hash;
    const std::uint32_t index = IndexOf(hash);
    const bool collides = slots_.Push(index, item);
    ++count_;
    collisions_ += collides;
    if (collisions_ <= n_GetTableSize() / 4) return;
    try {
        v_Resize(0);
    } catch (...) {
        Unlink(&slots_[index], true);
        collisions_ -= collides;
        throw;
    }
}

void CT_VoidHashTable::InsertAll(const CT_VoidHashTable& other) {
    if (key_size_ != other.key_size_ || data_size_ != other.data_size_ || hash_ != other.hash_ ||
        compare_ != other.compare_ || !rules_.filters) {
        return InsertEach(other);
    }
    // Keys that differ there differ here, so none is looked for: that keeps long chains linear.
    for (std::uint32_t slot = 0; slot < other.slots_.Size(); ++slot) {
        other.slots_.PrefetchFrom(slot);
        for (const st_HashItem* item = other.slots_[slot]; item != nullptr;
             item = item->following) {
            Add(item->pcv_GetKey(), item->hash, item->pcv_GetData());
        }
    }
}

void CT_VoidHashTable::InsertEach(const CT_VoidHashTable& other) {
    using Bytes = std::vector<std::byte, platform::Allocator<std::byte>>;
    Bytes key(std::size_t{key_size_} + 1), data(std::size_t{data_size_} + 1);
    for (std::uint32_t slot = 0; slot < other.slots_.Size(); ++slot) {
        for (const st_HashItem* item = other.slots_[slot]; item != nullptr;
             item = item->following) {
            CopyItem(key.data(), item->pcv_GetKey(), std::min(key_size_, other.key_size_));
            CopyItem(data.data(), item->pcv_GetData(), std::min(data_size_, other.data_size_));
            b_Insert(key.data(), data.data());
        }
    }
}

void CT_VoidHashTable::Exchange(CT_VoidHashTable& other) noexcept {
    std::swap(count_, other.count_);
    std::swap(collisions_, other.collisions_);
    slots_.Swap(other.slots_);
    items_.Swap(other.items_);
}

void CT_VoidHashTable::Rebuild(std::uint32_t tableSize) {
    Slots fresh(tableSize);
    if (rules_.path == Rules::Path::kForeign) {
        // All before the first item moves: the function may throw.
        for (std::uint32_t slot = 0; slot < slots_.Size(); ++slot) {
            for (st_HashItem* item = slots_[slot]; item != nullptr; item = item->following) {
                item->hash = hash_(item->pcv_GetKey(), tableSize) - 1;
            }
        }
    }
    collisions_ = 0;
    for (std::uint32_t slot = 0; slot < slots_.Size(); ++slot) {
        slots_.PrefetchFrom(slot);
        st_HashItem* following = nullptr;
        for (st_HashItem* item = slots_[slot]; item != nullptr; item = following) {
            following = item->following;
            collisions_ += fresh.Push(fresh.IndexOf(item->hash & rules_.slot_bits), item);
        }
    }
    slots_.Swap(fresh);
}

BOOL CT_VoidHashTable::Give(const st_HashItem* item, void* out) const noexcept {
    if (item == nullptr) {
        if (out != nullptr) ClearItem(out, data_size_);
        return FALSE;
    }
    if (out != nullptr) CopyItem(out, item->pcv_GetData(), data_size_);
    return TRUE;
}

void CT_VoidHashTable::Unlink(st_HashItem** link, bool isHead) noexcept {
    st_HashItem* const item = *link;
    *link = item->following;
    if (!isHead) {
        --collisions_;
    } else if (*link == nullptr) {
        slots_.Forget(link);
    }
    --count_;
    items_.Free(item);
}

void CT_VoidHashTable::RemoveBehind(const st_HashItem* previous, std::uint32_t slot,
                                    const st_HashItem* item) noexcept {
    st_HashItem** const head = &slots_[slot - 1];
    st_HashItem** link =
        previous == nullptr ? head : &const_cast<st_HashItem*>(previous)->following;
    if (*link != item) {
        for (link = head; *link != nullptr && *link != item;) link = &(*link)->following;
    }
    if (*link != nullptr) Unlink(link, link == head);
}

CT_VoidHashTable::Slots::Slots(std::uint32_t size) : size_(size) {
    if (size == 0) return;
    void* const block = platform::AllocateZeroed(std::size_t{size} * (sizeof(*heads_) + 1));
    if (block == nullptr) ReportExhausted();
    heads_ = static_cast<st_HashItem**>(block);
    kinds_ = reinterpret_cast<std::uint8_t*>(heads_ + size);
    reciprocal_ = Reciprocal(size);
}

CT_VoidHashTable::Slots::~Slots() {
    platform::Free(heads_);
}

void CT_VoidHashTable::Slots::Swap(Slots& other) noexcept {
    std::swap(heads_, other.heads_);
    std::swap(kinds_, other.kinds_);
    std::swap(size_, other.size_);
    std::swap(reciprocal_, other.reciprocal_);
}

void CT_VoidHashTable::Slots::Empty() noexcept {
    std::fill_n(heads_, size_, nullptr);
    std::fill_n(kinds_, size_, std::uint8_t{0});
}

bool CT_VoidHashTable::Slots::Push(std::uint32_t index, st_HashItem* item) noexcept {
    st_HashItem* const following = std::exchange(heads_[index], item);
    item->following = following;
    kinds_[index] = static_cast<std::uint8_t>(kinds_[index] | 1u << KindOf(item->hash));
    return following != nullptr;
}

void CT_VoidHashTable::Slots::PrefetchFrom(std::uint32_t index) const noexcept {
    constexpr std::uint32_t kAhead = 8;
    if (size_ - index > kAhead) platform::Prefetch(heads_[index + kAhead]);
}
