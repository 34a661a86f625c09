#include "Foundation/Core/Buffer/Buffer.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "Foundation/Core/Base/SmartHeap.h"
#include "Foundation/Core/Buffer/Internal/Blocks.h"
#include "Foundation/Platform/Memory.h"
#include "Foundation/Platform/Scan.h"

namespace platform = zelkor::platform;

using namespace zelkor::detail;

namespace zelkor::detail {

std::byte* NewBlock(std::uint32_t capacity) {
    void* const block = platform::Allocate(kSlack + kHeaderSize + capacity);
    if (block == nullptr) ReportExhausted();
    std::byte* const data = static_cast<std::byte*>(block) + kSlack + kHeaderSize;
    new (data - kHeaderSize) CT_Buffer::st_BufferData{1, capacity, 0};
    return data;
}

std::uint32_t CapacityOf(std::uint64_t block, std::uint64_t size) {
    const std::uint64_t cut = std::min(block, kLargestBlock);
    if (cut < size + kHeaderSize) ReportExhausted();
    return static_cast<std::uint32_t>(cut - kHeaderSize);
}

}  // namespace zelkor::detail

namespace {

// Blocks of up to this capacity move faster by a copy to a fresh block than by reallocation.
constexpr std::uint32_t kCopied = 256;

constinit _SHI_Pool buffer_pool(sizeof(CT_Buffer), 1024);

std::uint64_t InitialBlock(std::uint64_t size, std::uint32_t growth) {
    // A step of a power of two, as nearly all are, spares the division.
    const std::uint64_t step = std::max(growth, 1u);
    if ((step & (step - 1)) == 0) return (size + kHeaderSize + step - 1) & ~(step - 1);
    return RoundUp(size + kHeaderSize, step);
}

// Small blocks follow the growth step, large ones a proportion that leaves the header out.
std::uint64_t GrownBlock(std::uint64_t size, std::uint32_t growth) {
    if (size < 1024) return InitialBlock(size, growth);
    if (size < 2048) return RoundUp(size * 5 / 4, 64);
    if (size < 4096) return RoundUp(size * 7 / 5, 64);
    return RoundUp(size * 3 / 2, 64);
}

std::byte* NewInitialBlock(std::uint32_t size, std::uint32_t growth) {
    return size == 0 ? nullptr : NewBlock(CapacityOf(InitialBlock(size, growth), size));
}

}  // namespace

CT_Buffer::CT_Buffer(std::uint32_t size, std::uint32_t growth) {
    v_Init(size, growth);
}

CT_Buffer::CT_Buffer(const void* data, std::uint32_t size, std::uint32_t growth) {
    v_Init(data, size, growth);
}

CT_Buffer::CT_Buffer(const CT_Buffer* other) noexcept {
    if (other == nullptr) return;
    growth_ = other->growth_;
    data_ = other->data_;
    v_IncUseCount();
}

CT_Buffer& CT_Buffer::operator=(CT_Buffer&& other) noexcept {
    if (this == &other) return *this;
    growth_ = other.growth_;
    v_TakeBlock(std::exchange(other.data_, nullptr));
    return *this;
}

void* CT_Buffer::operator new(std::size_t size) {
    return NewObject(buffer_pool, size);
}

void CT_Buffer::operator delete(void* block, std::size_t size) noexcept {
    DeleteObject(buffer_pool, block, size);
}

_SHI_Pool* CT_Buffer::spso_GetMemPool() noexcept {
    return &buffer_pool;
}

void CT_Buffer::v_SetSize(std::uint32_t size, BOOL keep) {
    if (size == 0) return v_TakeBlock(nullptr);
    const std::uint64_t block = GrownBlock(size, growth_);
    if (data_ == nullptr) {
        data_ = NewBlock(CapacityOf(block, size));
    } else if (block == n_GetMaximumSize() + kHeaderSize && !b_IsShared()) {
        if (keep == FALSE) v_SetUsedBufferSize(0);
    } else {
        v_Resize(CapacityOf(block, size), keep);
    }
}

void CT_Buffer::v_Resize(std::uint32_t capacity, BOOL keep) {
    const bool owned = data_ != nullptr && !b_IsShared();
    if (keep != FALSE && owned && n_GetMaximumSize() > kCopied) return v_Reallocate(capacity);
    std::byte* const fresh = NewBlock(capacity);
    if (keep != FALSE) v_CopyUsedTo(fresh);
    if (keep == FALSE || !owned) return v_TakeBlock(fresh);
    v_DeleteData();  // as a reallocation does it, without counting down
    data_ = fresh;
}

void CT_Buffer::v_SetMinSize(std::uint32_t size, BOOL keep) {
    if (n_GetMaximumSize() < size) v_SetSize(size, keep);
}

void CT_Buffer::v_SetUsedSize(std::uint32_t size) {
    if (data_ == nullptr) return;
    const std::uint32_t used = n_GetUsedSize();
    if (b_IsShared() && size < used) return v_CopyWithout(used - size, size);
    v_CopyWeWrite();
    v_SetUsedBufferSize(size);
}

void CT_Buffer::v_Set(std::uint32_t size, std::uint32_t growth, BOOL reuse) {
    const std::uint32_t step = growth == kToEnd ? growth_ : growth;
    const bool fits = size == 0 || InitialBlock(size, step) <= n_GetMaximumSize() + kHeaderSize;
    const bool kept = reuse != FALSE && data_ != nullptr && !b_IsShared() && fits;
    if (kept || (data_ == nullptr && size == 0)) {
        if (kept) v_SetUsedBufferSize(0);
    } else {
        v_TakeBlock(NewInitialBlock(size, step));
    }
    growth_ = step;
}

void CT_Buffer::v_Set(const CT_Buffer* other) noexcept {
    if (other == this) return;
    CT_Buffer shared(other);
    if (other == nullptr) shared.growth_ = growth_;
    *this = std::move(shared);
}

void CT_Buffer::v_Set(const void* data, std::uint32_t size, std::uint32_t growth) {
    // The new block is complete before the old one goes, which may hold the data.
    *this = CT_Buffer(data, size, growth == kToEnd ? growth_ : growth);
}

std::uint32_t CT_Buffer::n_Find(int byte, std::uint32_t from) const noexcept {
    const char wanted = static_cast<char>(byte);
    return n_Find(&wanted, 1, from);
}

std::uint32_t CT_Buffer::n_Find(const void* data, std::uint32_t length,
                                std::uint32_t from) const noexcept {
    const std::uint32_t used = n_GetUsedSize();
    if (from >= used || data == nullptr) return kNotFound;
    const std::size_t hit =
        platform::FindText(reinterpret_cast<const char*>(data_) + from, used - from,
                           static_cast<const char*>(data), std::max(length, 1u));
    return hit == platform::kNoHit ? kNotFound : from + static_cast<std::uint32_t>(hit);
}

BOOL CT_Buffer::b_IsEqual(const void* data, std::uint32_t length, std::uint32_t at) const noexcept {
    const std::uint32_t used = n_GetUsedSize();
    if (at >= used || length == 0) return TRUE;
    if (data == nullptr) return FALSE;
    return std::memcmp(data_ + at, data, std::min(length, used - at)) == 0;
}

BOOL CT_Buffer::b_IsEqual(const CT_Buffer* source, std::uint32_t from, std::uint32_t length,
                          std::uint32_t at) const noexcept {
    const std::uint32_t rest = source == nullptr ? 0 : source->n_GetUsedSize() - from;
    if (rest == 0) return TRUE;
    return b_IsEqual(source->data_ + from, length == kToEnd ? rest : length, at);
}

void CT_Buffer::v_DeleteData() noexcept {
    platform::Free(data_ - kHeaderSize - kSlack);
}

void CT_Buffer::v_Init(std::uint32_t size, std::uint32_t growth) {
    growth_ = growth;
    data_ = NewInitialBlock(size, growth);
}

void CT_Buffer::v_Init(const void* data, std::uint32_t size, std::uint32_t growth) {
    v_Init(size, growth);
    if (size == 0 || data == nullptr) return;
    std::memcpy(data_, data, size);
    v_SetUsedBufferSize(size);
}

void CT_Buffer::v_CopyBeforeWrite() {
    std::byte* const fresh = NewBlock(n_GetMaximumSize());
    v_CopyUsedTo(fresh);
    v_TakeBlock(fresh);
}

void CT_Buffer::v_CopyUsedTo(std::byte* fresh) const noexcept {
    if (data_ == nullptr) return;
    st_BufferData* const header = reinterpret_cast<st_BufferData*>(fresh) - 1;
    header->used_size = std::min(n_GetUsedSize(), header->maximum_size);
    std::memcpy(fresh, data_, header->used_size);
}

// A private copy of a shared block, of the same capacity, with a gap closed.
void CT_Buffer::v_CopyWithout(std::uint32_t count, std::uint32_t at) {
    std::byte* const fresh = NewBlock(n_GetMaximumSize());
    const std::uint32_t behind = n_GetUsedSize() - at - count;
    std::memcpy(fresh, data_, at);
    std::memcpy(fresh + at, data_ + at + count, behind);
    v_TakeBlock(fresh);
    v_SetUsedBufferSize(at + behind);
}

void CT_Buffer::v_Reallocate(std::uint32_t capacity) {
    const std::uint32_t used = std::min(n_GetUsedSize(), capacity);
    void* const block =
        platform::Reallocate(data_ - kHeaderSize - kSlack, kSlack + kHeaderSize + capacity);
    if (block == nullptr) ReportExhausted();
    data_ = static_cast<std::byte*>(block) + kSlack + kHeaderSize;
    new (data_ - kHeaderSize) st_BufferData{1, capacity, used};
}

void CT_Buffer::v_TakeBlock(std::byte* data) noexcept {
    v_DecUseCount();
    data_ = data;
}
