// CT_Buffer: the shared, copy-on-write run of bytes under strings, arrays and streams.
//
// Units: sizes, lengths, counts and positions are 32-bit byte counts; positions start at 0. As a
// length or count 0xFFFFFFFF means "up to the end of the used bytes". Positions and ranges must lie
// within the used bytes; they are not checked. Sources may lie in the buffer's own block; null ones
// are empty. Of data given with a length nothing behind it is read.
// Errors: records none. Running out of memory, or asking for 4 GiB, throws CT_SmartHeapException
// and leaves every buffer as it was.
// Threads: buffers that share a block may live in different threads; one object, one thread.
#ifndef FOUNDATION_CORE_BUFFER_BUFFER_H
#define FOUNDATION_CORE_BUFFER_BUFFER_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

struct _SHI_Pool;

namespace zelkor::detail {
struct BufferAccess;
}

class ZELKOR_API CT_Buffer {
public:
    // The header directly before the content, in the same allocation.
    struct st_BufferData {
        std::atomic<std::uint32_t> use_count;
        std::uint32_t maximum_size;
        std::uint32_t used_size;
    };
    static constexpr std::uint32_t kDefaultGrowth = 32;
    static constexpr std::uint32_t kToEnd = 0xFFFFFFFF;     // as a length or count
    static constexpr std::uint32_t kNotFound = 0xFFFFFFFF;  // as a found position

    // A growth step is the rounding of small blocks in bytes; 0 counts as 1.
    CT_Buffer() noexcept = default;
    // Room for `size` bytes, none used; size 0 makes no block.
    explicit CT_Buffer(std::uint32_t size, std::uint32_t growth = kDefaultGrowth);
    CT_Buffer(const void* data, std::uint32_t size, std::uint32_t growth);
    // Shares the other's block and takes its growth; null makes an empty buffer.
    explicit CT_Buffer(const CT_Buffer* other) noexcept;
    CT_Buffer(const CT_Buffer& other) noexcept : CT_Buffer(&other) {}
    // Leaves the other without a block, its growth kept.
    CT_Buffer(CT_Buffer&& other) noexcept
        : growth_(other.growth_), data_(std::exchange(other.data_, nullptr)) {}
    ~CT_Buffer() { v_DecUseCount(); }
    CT_Buffer& operator=(const CT_Buffer& other) noexcept {
        v_Set(&other);
        return *this;
    }
    CT_Buffer& operator=(CT_Buffer&& other) noexcept;

    static void* operator new(std::size_t size);
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* block, std::size_t size) noexcept;
    static void operator delete(void*, void*) noexcept {}
    [[nodiscard]] static _SHI_Pool* spso_GetMemPool() noexcept;

    // The content, 16-byte aligned; null without a block. qv_Get takes a private copy first, and
    // its pointer is good for writing until the buffer is shared again.
    [[nodiscard]] const void* qcv_Get() const noexcept { return data_; }
    [[nodiscard]] void* qv_Get() {
        v_CopyWeWrite();
        return data_;
    }
    // Without a block: 0, 0 and 1.
    [[nodiscard]] std::uint32_t n_GetUsedSize() const noexcept {
        return data_ == nullptr ? 0 : pso_GetData()->used_size;
    }
    [[nodiscard]] std::uint32_t n_GetMaximumSize() const noexcept {
        return data_ == nullptr ? 0 : pso_GetData()->maximum_size;
    }
    [[nodiscard]] std::uint32_t n_GetUseCount() const noexcept {
        return data_ == nullptr ? 1 : pso_GetData()->use_count.load(std::memory_order_acquire);
    }
    [[nodiscard]] std::uint32_t n_GetGrowth() const noexcept { return growth_; }
    void v_SetGrowth(std::uint32_t growth) noexcept { growth_ = growth; }

    // Takes a private copy now, of the same capacity, if the block is shared.
    void v_CopyWeWrite() {
        if (b_IsShared()) v_CopyBeforeWrite();
    }

    // Gives the buffer the capacity that the growth policy has for `size`, also a smaller one.
    // With `keep` the content stays as far as it fits, else the used size becomes 0. Size 0
    // releases the block.
    void v_SetSize(std::uint32_t size, BOOL keep);
    // The same, but only when the capacity is below `size`.
    void v_SetMinSize(std::uint32_t size, BOOL keep);
    // Requires size <= n_GetMaximumSize(). Nothing happens without a block.
    void v_SetUsedSize(std::uint32_t size);
    // Empties the buffer and makes room for `size` bytes; growth 0xFFFFFFFF keeps the current one.
    // With `reuse` an unshared block that is large enough is kept, and one that is too small gives
    // way to the initial block for `size`.
    void v_Set(std::uint32_t size, std::uint32_t growth, BOOL reuse);

    // Shares the other's block and takes its growth; from itself nothing changes, null empties.
    void v_Set(const CT_Buffer* other) noexcept;
    void v_Replace(const CT_Buffer* other) noexcept { v_Set(other); }
    // Takes a fresh block with a copy of the data; growth 0xFFFFFFFF keeps the current one.
    void v_Set(const void* data, std::uint32_t size, std::uint32_t growth);

    // Overwrite from `at` on; the used size grows when the written bytes pass it. A byte is the low
    // 8 bits of the number.
    void v_Replace(int byte, std::uint32_t count, std::uint32_t at);
    void v_Replace(const void* data, std::uint32_t length, std::uint32_t at);
    void v_Replace(const CT_Buffer* source, std::uint32_t from, std::uint32_t length,
                   std::uint32_t at);

    // Insert before the byte at `at`. A byte count is taken as it is.
    void v_Insert(int byte, std::uint32_t count, std::uint32_t at);
    void v_Insert(const void* data, std::uint32_t length, std::uint32_t at);
    void v_Insert(const CT_Buffer* source, std::uint32_t from, std::uint32_t length,
                  std::uint32_t at);
    void v_AtInsertCopy(const CT_Buffer* source, std::uint32_t from, std::uint32_t length,
                        std::uint32_t at);

    void v_Append(int byte) {
        st_BufferData* header = pso_GetData();
        if (header == nullptr || header->used_size == header->maximum_size || b_IsShared()) {
            v_AppendSlow(byte);
            return;
        }
        data_[header->used_size++] = static_cast<std::byte>(byte);
    }
    void v_Append(const void* data, std::uint32_t length);
    void v_Append(const CT_Buffer* source, std::uint32_t from, std::uint32_t length);

    // Closes the gap over `count` removed bytes; 0xFFFFFFFF cuts at `at`, 0 does nothing at all. Of
    // a shared block only what stays is copied.
    void v_Remove(std::uint32_t count, std::uint32_t at);

    // Inserts a copy of the own bytes [from, from + length) before `at`. When the block must be
    // replaced for it the growth becomes 32.
    void v_AtInsertCopy(std::uint32_t from, std::uint32_t length, std::uint32_t at);
    // Moves the own bytes [from, from + length) before the byte that is at `at`; `at` must not lie
    // inside the range.
    void v_AtInsertMove(std::uint32_t from, std::uint32_t length, std::uint32_t at);
    // Moves bytes out of `source`; length 0xFFFFFFFF takes all from `from` on.
    void v_AtInsertMove(CT_Buffer* source, std::uint32_t from, std::uint32_t length,
                        std::uint32_t at);

    // Position of the first match at or after `from`, 0xFFFFFFFF when there is none. Length 0 looks
    // for data[0] alone.
    [[nodiscard]] std::uint32_t n_Find(int byte, std::uint32_t from) const noexcept;
    [[nodiscard]] std::uint32_t n_Find(const void* data, std::uint32_t length,
                                       std::uint32_t from) const noexcept;

    // TRUE when the content from `at` agrees with the data as far as both reach; so anything equals
    // an empty rest.
    [[nodiscard]] BOOL b_IsEqual(const void* data, std::uint32_t length,
                                 std::uint32_t at) const noexcept;
    [[nodiscard]] BOOL b_IsEqual(const CT_Buffer* source, std::uint32_t from, std::uint32_t length,
                                 std::uint32_t at) const noexcept;

private:
    friend struct zelkor::detail::BufferAccess;

    [[nodiscard]] st_BufferData* pso_GetData() const noexcept {
        return data_ == nullptr ? nullptr : reinterpret_cast<st_BufferData*>(data_) - 1;
    }
    // Acquire: what former sharers read of the block happened before this buffer writes to it.
    [[nodiscard]] bool b_IsShared() const noexcept {
        return data_ != nullptr && pso_GetData()->use_count.load(std::memory_order_acquire) != 1;
    }
    void v_IncUseCount() noexcept {
        if (data_ != nullptr) pso_GetData()->use_count.fetch_add(1, std::memory_order_relaxed);
    }
    void v_DecUseCount() noexcept {
        if (data_ == nullptr) return;
        if (pso_GetData()->use_count.fetch_sub(1, std::memory_order_acq_rel) == 1) v_DeleteData();
    }
    void v_DeleteData() noexcept;
    void v_Init(std::uint32_t size, std::uint32_t growth);
    void v_Init(const void* data, std::uint32_t size, std::uint32_t growth);
    void v_CopyBeforeWrite();
    void v_SetUsedBufferSize(std::uint32_t size) noexcept { pso_GetData()->used_size = size; }
    void v_AppendSlow(int byte);
    void v_CopyUsedTo(std::byte* fresh) const noexcept;
    void v_CopyWithout(std::uint32_t count, std::uint32_t at);
    void v_Resize(std::uint32_t capacity, BOOL keep);
    void v_Reallocate(std::uint32_t capacity);
    void v_TakeBlock(std::byte* data) noexcept;
    void v_MakeRoom(std::uint64_t size);
    [[nodiscard]] std::byte* OpenGap(std::uint32_t length, std::uint32_t at);
    [[nodiscard]] std::uint32_t CountFrom(std::uint32_t from, std::uint32_t length) const noexcept;
    // A share keeps data in the own block readable while an edit moves to another block.
    [[nodiscard]] CT_Buffer HoldIfOwn(const void* data, bool block_moves) const noexcept {
        const auto offset =
            reinterpret_cast<std::uintptr_t>(data) - reinterpret_cast<std::uintptr_t>(data_);
        if (offset >= n_GetMaximumSize()) return {};
        return block_moves || b_IsShared() ? CT_Buffer(this) : CT_Buffer();
    }

    std::uint32_t growth_ = kDefaultGrowth;
    std::byte* data_ = nullptr;
};

static_assert(sizeof(CT_Buffer::st_BufferData) == 12);

namespace zelkor::detail {

// What the strings' own paths use of a buffer.
struct BufferAccess {
    // Null without a block.
    [[nodiscard]] static CT_Buffer::st_BufferData* Header(const CT_Buffer& buffer) noexcept {
        return buffer.pso_GetData();
    }
    // The content for writing; the caller knows that the block is not shared.
    [[nodiscard]] static std::byte* Data(CT_Buffer& buffer) noexcept { return buffer.data_; }
    // Capacity for `size` bytes in an unshared block, content kept, growing when needed.
    static void MakeRoom(CT_Buffer& buffer, std::uint64_t size) { buffer.v_MakeRoom(size); }
    // A share of the buffer when the address lies in its block and the block is shared or moves.
    [[nodiscard]] static CT_Buffer HoldIfOwn(const CT_Buffer& buffer, const void* address,
                                             bool block_moves) noexcept {
        return buffer.HoldIfOwn(address, block_moves);
    }
};

}  // namespace zelkor::detail

#endif
