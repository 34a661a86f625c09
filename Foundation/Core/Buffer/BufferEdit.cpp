#include <algorithm>
#include <array>
#include <cstring>

#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/Buffer/Internal/Blocks.h"

using namespace zelkor::detail;

void CT_Buffer::v_Replace(int byte, std::uint32_t count, std::uint32_t at) {
    const std::uint64_t end = count == kToEnd ? n_GetUsedSize() : std::uint64_t{at} + count;
    v_MakeRoom(end);
    if (end <= at) return;
    std::memset(data_ + at, byte, end - at);
    v_SetUsedBufferSize(std::max(n_GetUsedSize(), static_cast<std::uint32_t>(end)));
}

void CT_Buffer::v_Replace(const void* data, std::uint32_t length, std::uint32_t at) {
    if (data == nullptr) return;
    const std::uint64_t end = length == kToEnd ? n_GetUsedSize() : std::uint64_t{at} + length;
    const CT_Buffer hold = HoldIfOwn(data, end > n_GetMaximumSize());
    v_MakeRoom(end);
    if (end <= at) return;
    std::memmove(data_ + at, data, end - at);
    v_SetUsedBufferSize(std::max(n_GetUsedSize(), static_cast<std::uint32_t>(end)));
}

void CT_Buffer::v_Replace(const CT_Buffer* source, std::uint32_t from, std::uint32_t length,
                          std::uint32_t at) {
    if (source == nullptr || source->data_ == nullptr) return;
    v_Replace(source->data_ + from, source->CountFrom(from, length), at);
}

void CT_Buffer::v_Insert(int byte, std::uint32_t count, std::uint32_t at) {
    std::byte* const gap = OpenGap(count, at);
    if (count != 0) std::memset(gap, byte, count);
}

void CT_Buffer::v_Insert(const void* data, std::uint32_t length, std::uint32_t at) {
    if (data == nullptr) return;
    const CT_Buffer hold = HoldIfOwn(data, true);
    std::byte* const gap = OpenGap(length, at);
    if (length != 0) std::memcpy(gap, data, length);
}

void CT_Buffer::v_Insert(const CT_Buffer* source, std::uint32_t from, std::uint32_t length,
                         std::uint32_t at) {
    if (source == nullptr || source->data_ == nullptr) return;
    v_Insert(source->data_ + from, source->CountFrom(from, length), at);
}

void CT_Buffer::v_AtInsertCopy(const CT_Buffer* source, std::uint32_t from, std::uint32_t length,
                               std::uint32_t at) {
    v_Insert(source, from, length, at);
}

void CT_Buffer::v_Append(const void* data, std::uint32_t length) {
    v_Insert(data, length, n_GetUsedSize());
}

void CT_Buffer::v_Append(const CT_Buffer* source, std::uint32_t from, std::uint32_t length) {
    v_Insert(source, from, length, n_GetUsedSize());
}

void CT_Buffer::v_Remove(std::uint32_t count, std::uint32_t at) {
    if (count == 0 || data_ == nullptr) return;
    const std::uint32_t behind = n_GetUsedSize() - at;
    if (b_IsShared()) return v_CopyWithout(std::min(count, behind), at);
    const std::uint32_t moved = count < behind ? behind - count : 0;
    std::memmove(data_ + at, data_ + at + (behind - moved), moved);
    v_SetUsedBufferSize(at + moved);
}

void CT_Buffer::v_AtInsertCopy(std::uint32_t from, std::uint32_t length, std::uint32_t at) {
    const std::uint32_t used = n_GetUsedSize();
    const std::uint32_t count = CountFrom(from, length);
    const std::uint64_t size = std::uint64_t{used} + count;
    if (size <= n_GetMaximumSize()) {
        std::byte* const gap = OpenGap(count, at);
        const std::byte* const source = data_ + from + (at <= from ? count : 0);
        if (count != 0) std::memmove(gap, source, count);
        return;
    }
    std::byte* const fresh = NewBlock(CapacityOf(RoundUp(size + kHeaderSize, 32), size));
    std::memcpy(fresh, data_, at);
    std::memcpy(fresh + at, data_ + from, count);
    std::memcpy(fresh + at + count, data_ + at, used - at);
    v_TakeBlock(fresh);
    v_SetUsedBufferSize(static_cast<std::uint32_t>(size));
    growth_ = kDefaultGrowth;
}

void CT_Buffer::v_AtInsertMove(std::uint32_t from, std::uint32_t length, std::uint32_t at) {
    if (from == at) return;
    v_CopyWeWrite();
    const std::uint32_t count = CountFrom(from, length);
    const std::uint32_t used = n_GetUsedSize();
    std::array<std::byte, 32> local;
    std::byte* saved = nullptr;
    if (count <= n_GetMaximumSize() - used) {
        saved = data_ + used;
    } else if (count <= local.size()) {
        saved = local.data();
    }
    std::byte* const first = data_ + std::min(from, at);
    std::byte* const last = data_ + std::max(from + count, at);
    std::byte* const middle = data_ + (at < from ? from : from + count);
    if (saved == nullptr) {
        // Neither place holds the range: rotating needs none, and so cannot fail.
        std::rotate(first, middle, last);
    } else if (count != 0) {
        std::memcpy(saved, data_ + from, count);
        if (at < from) {
            std::memmove(first + count, first, from - at);
            std::memcpy(first, saved, count);
        } else {
            std::memmove(first, middle, static_cast<std::size_t>(last - middle));
            std::memcpy(last - count, saved, count);
        }
    }
}

void CT_Buffer::v_AtInsertMove(CT_Buffer* source, std::uint32_t from, std::uint32_t length,
                               std::uint32_t at) {
    if (source == nullptr) return;
    if (source == this) return v_AtInsertMove(from, length, at);
    // All memory is had before anything changes.
    if (length != 0) source->v_CopyWeWrite();
    v_Insert(source, from, length, at);
    source->v_Remove(length, from);
}

void CT_Buffer::v_AppendSlow(int byte) {
    std::byte* const gap = OpenGap(1, n_GetUsedSize());
    *gap = static_cast<std::byte>(byte);
}

void CT_Buffer::v_MakeRoom(std::uint64_t size) {
    if (size >= kToEnd) ReportExhausted();
    if (size > n_GetMaximumSize()) {
        v_SetSize(static_cast<std::uint32_t>(size), TRUE);
    } else {
        v_CopyWeWrite();
    }
}

std::byte* CT_Buffer::OpenGap(std::uint32_t length, std::uint32_t at) {
    const std::uint32_t used = n_GetUsedSize();
    v_MakeRoom(std::uint64_t{used} + length);
    if (data_ == nullptr) return nullptr;
    std::memmove(data_ + at + length, data_ + at, used - at);
    v_SetUsedBufferSize(used + length);
    return data_ + at;
}

std::uint32_t CT_Buffer::CountFrom(std::uint32_t from, std::uint32_t length) const noexcept {
    return length == kToEnd ? n_GetUsedSize() - from : length;
}
