// Arrays of plain items inside the library, which grow in place where the heap can.
#ifndef FOUNDATION_CORE_CONTAINER_PLAINARRAY_H
#define FOUNDATION_CORE_CONTAINER_PLAINARRAY_H

#include <algorithm>
#include <cstddef>
#include <type_traits>

#include "Foundation/Core/Base/HeapObject.h"

namespace zelkor::detail {

// Items without constructors, from the memory manager.
template <typename T>
class PlainArray {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    PlainArray() noexcept = default;
    PlainArray(const PlainArray&) = delete;
    PlainArray& operator=(const PlainArray&) = delete;
    ~PlainArray() { platform::Free(items_); }

    [[nodiscard]] T* data() noexcept { return items_; }
    [[nodiscard]] const T* data() const noexcept { return items_; }
    [[nodiscard]] std::size_t size() const noexcept { return size_; }
    [[nodiscard]] T& operator[](std::size_t i) noexcept { return items_[i]; }
    [[nodiscard]] const T& operator[](std::size_t i) const noexcept { return items_[i]; }
    [[nodiscard]] T* begin() noexcept { return items_; }
    [[nodiscard]] T* end() noexcept { return items_ + size_; }
    [[nodiscard]] std::size_t Bytes() const noexcept { return capacity_ * sizeof(T); }

    // Makes room for `more` items; may throw, and then nothing has changed.
    void Reserve(std::size_t more) {
        if (capacity_ - size_ < more) Grow(std::max(size_ + more, capacity_ + capacity_ / 2));
    }
    [[nodiscard]] std::size_t Room() const noexcept { return capacity_ - size_; }
    // Requires room.
    void Append(const T& item) noexcept { items_[size_++] = item; }
    void RemoveLast() noexcept { --size_; }
    // So many items more, whose content is up to the caller; requires room. Answers the place of
    // the first.
    std::size_t Extend(std::size_t count) noexcept { return (size_ += count) - count; }
    // Gives all memory back.
    void Release() noexcept {
        platform::Free(items_);
        items_ = nullptr;
        size_ = capacity_ = 0;
    }

private:
    void Grow(std::size_t capacity) {
        void* block = platform::Reallocate(items_, capacity * sizeof(T));
        if (block == nullptr) ReportExhausted();
        items_ = static_cast<T*>(block);
        capacity_ = capacity;
    }

    T* items_ = nullptr;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

}  // namespace zelkor::detail

#endif
