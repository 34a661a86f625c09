#include "Foundation/Core/Container/VoidArray.h"

#include <algorithm>
#include <cstring>
#include <functional>

#include "Foundation/Core/Container/Internal/ContainerDetail.h"

using namespace zelkor::detail;

namespace {

constinit _SHI_Pool pool(sizeof(CT_VoidArray), 1024);

// The first of `count` items of the size of T that equals `item`, as a position.
template <typename T>
std::uint32_t FindAs(const std::byte* items, std::uint32_t count, const void* item) noexcept {
    T wanted;
    std::memcpy(&wanted, item, sizeof(T));
    for (std::uint32_t i = 0; i < count; ++i) {
        T value;
        std::memcpy(&value, items + std::size_t{i} * sizeof(T), sizeof(T));
        if (value == wanted) return i + 1;
    }
    return 0;
}

}  // namespace

CT_VoidArray::CT_VoidArray(std::uint32_t itemSize) : item_size_(std::max(itemSize, 1u)) {
    v_SetGrowth(kDefaultGrowth);
}

CT_VoidArray::CT_VoidArray(std::uint32_t itemSize, std::uint32_t growth, std::uint32_t capacity)
    : item_size_(std::max(itemSize, 1u)) {
    v_Set(growth, capacity, FALSE);
}

CT_VoidArray::CT_VoidArray(const CT_Buffer* buffer, std::uint32_t itemSize) noexcept
    : item_size_(std::max(itemSize, 1u)), buffer_(buffer) {}

CT_VoidArray::CT_VoidArray(const CT_VoidArray* other) noexcept
    : item_size_(other == nullptr ? 1 : other->item_size_),
      buffer_(other == nullptr ? nullptr : &other->buffer_) {}

CT_VoidArray& CT_VoidArray::operator=(const CT_VoidArray& other) noexcept {
    v_Set(&other);
    return *this;
}

void* CT_VoidArray::operator new(std::size_t size) {
    return NewObject(pool, size);
}

void CT_VoidArray::operator delete(void* block, std::size_t size) noexcept {
    DeleteObject(pool, block, size);
}

_SHI_Pool* CT_VoidArray::spso_GetMemPool() noexcept {
    return &pool;
}

void CT_VoidArray::v_Set(std::uint32_t growth, std::uint32_t capacity, BOOL keepStorage) {
    if (keepStorage != FALSE && capacity <= n_GetMaxItems()) {
        buffer_.v_SetUsedSize(0);
        v_SetGrowth(growth);
    } else {
        buffer_.v_Set(Bytes(capacity), GrowthBytes(growth), FALSE);
    }
}

void CT_VoidArray::v_Set(const CT_VoidArray* other) noexcept {
    buffer_.v_Set(other == nullptr ? nullptr : &other->buffer_);
}

void CT_VoidArray::v_Set(const CT_Buffer* buffer) noexcept {
    buffer_.v_Set(buffer);
}

void CT_VoidArray::v_SetGrowth(std::uint32_t growth) noexcept {
    buffer_.v_SetGrowth(GrowthBytes(growth));
}

void CT_VoidArray::v_SetSize(std::uint32_t capacity) {
    if (capacity == n_GetMaxItems()) return;
    const std::uint32_t used = buffer_.n_GetUsedSize();
    buffer_.v_SetSize(Bytes(capacity), TRUE);
    if (buffer_.n_GetUsedSize() < used) buffer_.v_SetUsedSize(Bytes(n_GetCount()));
}

void CT_VoidArray::v_GetAt(void* out, int index) const noexcept {
    if (out != nullptr)
        CopyItem(out, Items() + Offset(static_cast<std::uint32_t>(index)), item_size_);
}

void CT_VoidArray::v_SetAt(const void* item, int index) {
    if (item == nullptr) return;
    const CT_Buffer hold = HoldIfOwn(item, false);
    auto* const items = static_cast<std::byte*>(buffer_.qv_Get());
    CopyItem(items + Offset(static_cast<std::uint32_t>(index)), item, item_size_);
}

void CT_VoidArray::v_Insert(const void* item) {
    if (item == nullptr) return;
    CT_Buffer::st_BufferData* const header = BufferAccess::Header(buffer_);
    if (header != nullptr && header->maximum_size - header->used_size >= item_size_ &&
        header->used_size % item_size_ == 0 && buffer_.n_GetUseCount() == 1) {
        auto* const content = static_cast<std::byte*>(buffer_.qv_Get());
        CopyItem(content + header->used_size, item, item_size_);
        header->used_size += item_size_;
        return;
    }
    v_InsertAt(item, n_GetCount() + 1);
}

void CT_VoidArray::v_Insert(const void* item, std::uint32_t n) {
    if (n == 0 || item == nullptr) return;
    const std::uint32_t count = n_GetCount();
    const std::uint64_t wanted = std::uint64_t{count} + n;
    const bool grows = wanted > n_GetMaxItems();
    const CT_Buffer hold = HoldIfOwn(item, grows);
    if (grows) {
        buffer_.v_SetSize(Bytes(wanted), TRUE);
    }
    auto* out = static_cast<std::byte*>(buffer_.qv_Get()) + Bytes(count);
    for (std::uint32_t i = 0; i < n; ++i, out += item_size_) CopyItem(out, item, item_size_);
    buffer_.v_SetUsedSize(Bytes(wanted));
}

void CT_VoidArray::v_InsertAt(const void* item, std::uint32_t index) {
    if (item == nullptr) return;
    const std::uint32_t capacity = n_GetMaxItems();
    const bool grows = n_GetCount() == capacity;
    const CT_Buffer hold = HoldIfOwn(item, grows);
    if (grows) {
        buffer_.v_SetSize(Bytes(std::uint64_t{capacity} + std::max(n_GetGrowth(), 1u)), TRUE);
    }
    buffer_.v_Insert(item, item_size_, Offset(index));
}

void CT_VoidArray::v_RemoveAt(std::uint32_t index) {
    const bool inside = index != 0 && std::uint64_t{index} * item_size_ <= buffer_.n_GetUsedSize();
    if (inside) buffer_.v_Remove(item_size_, Offset(index));
}

void CT_VoidArray::v_Remove(std::uint32_t first, std::uint32_t last) {
    if (first == 0 || last < first) return;
    const std::uint32_t count = Count(first, last - first + 1);
    if (count != 0) buffer_.v_Remove(Bytes(count), Offset(first));
}

void CT_VoidArray::v_AtInsertCopy(std::uint32_t first, std::uint32_t n, std::uint32_t at) {
    const std::uint32_t count = Count(first, n);
    if (count != 0) buffer_.v_AtInsertCopy(Offset(first), Bytes(count), Offset(at));
}

void CT_VoidArray::v_AtInsertMove(std::uint32_t first, std::uint32_t n, std::uint32_t at) {
    const std::uint32_t count = Count(first, n);
    if (count == 0 || (at >= first && at - first <= count)) return;
    buffer_.v_AtInsertMove(Offset(first), Bytes(count), Offset(at));
}

void CT_VoidArray::v_AtInsertCopy(const CT_VoidArray* source, std::uint32_t first, std::uint32_t n,
                                  std::uint32_t at) {
    v_Insert(source, first, n, at);
}

void CT_VoidArray::v_AtInsertMove(CT_VoidArray* source, std::uint32_t first, std::uint32_t n,
                                  std::uint32_t at) {
    if (source == this) return v_AtInsertMove(first, n, at);
    const std::uint32_t count = source == nullptr ? 0 : source->Count(first, n);
    if (count == 0) return;
    buffer_.v_AtInsertMove(&source->buffer_, Offset(first), Bytes(count), Offset(at));
}

void CT_VoidArray::v_Replace(const CT_VoidArray* source, std::uint32_t first, std::uint32_t n,
                             std::uint32_t at) {
    const std::uint32_t count = source == nullptr ? 0 : source->Count(first, n);
    if (count == 0) return;
    buffer_.v_Replace(&source->buffer_, Offset(first), Bytes(count), Offset(at));
}

void CT_VoidArray::v_Insert(const CT_VoidArray* source, std::uint32_t first, std::uint32_t n,
                            std::uint32_t at) {
    const std::uint32_t count = source == nullptr ? 0 : source->Count(first, n);
    if (count == 0) return;
    buffer_.v_Insert(&source->buffer_, Offset(first), Bytes(count), Offset(at));
}

void CT_VoidArray::v_Append(const CT_VoidArray* source, std::uint32_t first, std::uint32_t n) {
    v_Insert(source, first, n, n_GetCount() + 1);
}

std::uint32_t CT_VoidArray::n_Find(const void* item) const noexcept {
    if (item == nullptr) return 0;
    const std::uint32_t count = n_GetCount();
    const std::byte* const items = Items();
    switch (item_size_) {
        case 1:
            return FindAs<std::uint8_t>(items, count, item);
        case 2:
            return FindAs<std::uint16_t>(items, count, item);
        case 4:
            return FindAs<std::uint32_t>(items, count, item);
        case 8:
            return FindAs<std::uint64_t>(items, count, item);
        default:
            break;
    }
    for (std::uint32_t index = 1; index <= count; ++index) {
        if (std::memcmp(items + Offset(index), item, item_size_) == 0) return index;
    }
    return 0;
}

BOOL CT_VoidArray::b_IsEqual(const CT_VoidArray* other) const noexcept {
    if (other == nullptr) return FALSE;
    const std::uint32_t count = n_GetCount();
    if (item_size_ != other->item_size_ || count != other->n_GetCount()) return FALSE;
    return count == 0 || std::memcmp(Items(), other->Items(), Bytes(count)) == 0;
}

std::uint32_t CT_VoidArray::Bytes(std::uint64_t items) const noexcept {
    return static_cast<std::uint32_t>(
        std::min<std::uint64_t>(items * item_size_, CT_Buffer::kToEnd));
}

// Bounded below the value that means "keep the growth".
std::uint32_t CT_VoidArray::GrowthBytes(std::uint32_t items) const noexcept {
    return std::min(Bytes(std::max(items, 1u)), CT_Buffer::kToEnd - 1);
}

std::uint32_t CT_VoidArray::Count(std::uint32_t first, std::uint32_t n) const noexcept {
    const std::uint32_t count = n_GetCount();
    return first == 0 || first > count ? 0 : std::min(n, count - first + 1);
}

// A share keeps an item of the own storage readable while the array moves to another block.
CT_Buffer CT_VoidArray::HoldIfOwn(const void* item, bool grows) const noexcept {
    if (!grows && buffer_.n_GetUseCount() == 1) return CT_Buffer();
    const std::byte* const items = Items();
    const auto* const address = static_cast<const std::byte*>(item);
    const std::less<> before;
    const bool own = items != nullptr && !before(address, items) &&
                     before(address, items + buffer_.n_GetMaximumSize());
    return own ? CT_Buffer(&buffer_) : CT_Buffer();
}
