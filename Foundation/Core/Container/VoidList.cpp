#include "Foundation/Core/Container/VoidList.h"

#include <algorithm>
#include <utility>

#include "Foundation/Core/Container/Internal/ContainerDetail.h"

namespace platform = zelkor::platform;

using namespace zelkor::detail;

namespace {

constinit _SHI_Pool pool(sizeof(CT_VoidList), 512);

std::byte* Item(CT_VoidList::st_Position* node) noexcept {
    return reinterpret_cast<std::byte*>(node + 1);
}
const std::byte* Item(const CT_VoidList::st_Position* node) noexcept {
    return reinterpret_cast<const std::byte*>(node + 1);
}

}  // namespace

CT_VoidList::CT_VoidList(const CT_VoidList* other)
    : CT_VoidList(other == nullptr ? 0 : other->item_size_) {
    v_Set(other);
}

CT_VoidList& CT_VoidList::operator=(const CT_VoidList& other) {
    v_Set(&other);
    return *this;
}

void* CT_VoidList::operator new(std::size_t size) {
    return NewObject(pool, size);
}

void CT_VoidList::operator delete(void* block, std::size_t size) noexcept {
    DeleteObject(pool, block, size);
}

_SHI_Pool* CT_VoidList::spso_GetMemPool() noexcept {
    return &pool;
}

void CT_VoidList::v_Set() noexcept {
    while (first_ != nullptr) v_RemoveFirst(nullptr);
}

void CT_VoidList::v_Set(const CT_VoidList* other) {
    if (other == this) return;
    if (other == nullptr) return v_Set();
    CT_VoidList copy(item_size_);  // complete before the old nodes go
    const std::uint32_t shared = std::min(item_size_, other->item_size_);
    for (const st_Position* from = other->first_; from != nullptr; from = from->next) {
        st_Position* const node = NewNode();
        std::memcpy(Item(node), Item(from), shared);
        std::memset(Item(node) + shared, 0, item_size_ - shared);
        copy.Link(node, nullptr);
    }
    std::swap(count_, copy.count_);
    std::swap(first_, copy.first_);
    std::swap(last_, copy.last_);
}

void CT_VoidList::v_InsertFirst(const void* item) {
    Insert(item, first_);
}

void CT_VoidList::v_InsertLast(const void* item) {
    Insert(item, nullptr);
}

void CT_VoidList::v_InsertBefore(const void* item, st_Position* position) {
    Insert(item, position);
}

void CT_VoidList::v_InsertAfter(const void* item, st_Position* position) {
    Insert(item, position == nullptr ? first_ : position->next);
}

void CT_VoidList::v_RemoveAt(void* out, st_Position* position) noexcept {
    st_Position* const node = position == nullptr ? first_ : position;
    if (node == nullptr) return;
    v_GetAt(out, node);
    (node->previous == nullptr ? first_ : node->previous->next) = node->next;
    (node->next == nullptr ? last_ : node->next->previous) = node->previous;
    --count_;
    platform::Free(node);
}

void CT_VoidList::v_GetAt(void* out, const st_Position* position) const noexcept {
    if (out != nullptr && position != nullptr) CopyItem(out, Item(position), item_size_);
}

void CT_VoidList::v_SetAt(const void* item, st_Position* position) noexcept {
    if (item != nullptr && position != nullptr) CopyItem(Item(position), item, item_size_);
}

CT_VoidList::st_Position* CT_VoidList::pso_Skip(st_Position* position, int steps) const noexcept {
    if (count_ == 0 || position == nullptr) return nullptr;
    // Whole rounds lead back to where they began.
    std::int64_t left = std::int64_t{steps} % count_;
    for (; left > 0; --left) position = position->next == nullptr ? first_ : position->next;
    for (; left < 0; ++left) position = position->previous == nullptr ? last_ : position->previous;
    return position;
}

CT_VoidList::st_Position* CT_VoidList::pso_GetPosition(std::uint32_t index) const noexcept {
    if (index == 0 || index > count_) return nullptr;
    if (index > count_ / 2) return pso_Skip(last_, static_cast<int>(index - count_));
    return pso_Skip(first_, static_cast<int>(index - 1));
}

CT_VoidList::st_Position* CT_VoidList::pso_Find(const void* item,
                                                std::uint32_t* index) const noexcept {
    std::uint32_t at = 1;
    for (st_Position* node = item == nullptr ? nullptr : first_; node != nullptr;
         node = node->next, ++at) {
        if (std::memcmp(Item(node), item, item_size_) != 0) continue;
        if (index != nullptr) *index = at;
        return node;
    }
    if (index != nullptr) *index = 0;
    return nullptr;
}

BOOL CT_VoidList::b_IsEqual(const CT_VoidList* other) const noexcept {
    if (other == nullptr || count_ != other->count_ || item_size_ > other->item_size_) return FALSE;
    const st_Position* theirs = other->first_;
    for (const st_Position* node = first_; node != nullptr; node = node->next) {
        if (std::memcmp(Item(node), Item(theirs), item_size_) != 0) return FALSE;
        theirs = theirs->next;
    }
    return TRUE;
}

CT_VoidList::st_Position* CT_VoidList::NewNode() const {
    void* const block = platform::Allocate(sizeof(st_Position) + item_size_);
    if (block == nullptr) ReportExhausted();
    return new (block) st_Position{nullptr, nullptr};
}

void CT_VoidList::Insert(const void* item, st_Position* next) {
    if (item == nullptr) return;
    st_Position* const node = NewNode();
    CopyItem(Item(node), item, item_size_);
    Link(node, next);
}

void CT_VoidList::Link(st_Position* node, st_Position* next) noexcept {
    node->next = next;
    node->previous = next == nullptr ? last_ : next->previous;
    (node->previous == nullptr ? first_ : node->previous->next) = node;
    (next == nullptr ? last_ : next->previous) = node;
    ++count_;
}
