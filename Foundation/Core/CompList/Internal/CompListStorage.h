// The memory of a growing list and of an index: plain arrays, and the hash table of places.
#ifndef FOUNDATION_CORE_COMPLIST_INTERNAL_COMPLISTSTORAGE_H
#define FOUNDATION_CORE_COMPLIST_INTERNAL_COMPLISTSTORAGE_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "Foundation/Core/Container/PlainArray.h"
#include "Foundation/Platform/Memory.h"

namespace zelkor::detail::complist {

// From 64-bit keys to 32-bit places that are not 0, for thousands to millions of them: open
// addressing with linear probing and multiplicative hashing, half to three quarters full.
class PlaceTable {
public:
    PlaceTable() noexcept = default;
    PlaceTable(const PlaceTable&) = delete;
    PlaceTable& operator=(const PlaceTable&) = delete;
    ~PlaceTable() { platform::Free(entries_); }

    // 0 when the key is not there.
    [[nodiscard]] std::uint32_t Find(std::uint64_t key) const noexcept {
        if (entries_ == nullptr) return 0;
        for (std::size_t i = Slot(key);; i = Next(i)) {
            const Entry& entry = entries_[i];
            if (entry.place == 0 || entry.Key() == key) return entry.place;
        }
    }
    // Makes room for `more` keys; may throw, and then nothing has changed.
    void Reserve(std::size_t more) {
        if (count_ + more > capacity_ / 4 * 3) Grow(count_ + more);
    }
    // Requires room, and a key that is not there.
    void Insert(std::uint64_t key, std::uint32_t place) noexcept {
        std::size_t i = Slot(key);
        while (entries_[i].place != 0) i = Next(i);
        entries_[i] = {static_cast<std::uint32_t>(key), static_cast<std::uint32_t>(key >> 32),
                       place};
        ++count_;
    }
    [[nodiscard]] std::size_t Bytes() const noexcept { return capacity_ * sizeof(Entry); }

private:
    struct Entry {
        std::uint32_t low;
        std::uint32_t high;
        std::uint32_t place;

        [[nodiscard]] std::uint64_t Key() const noexcept {
            return static_cast<std::uint64_t>(high) << 32 | low;
        }
    };

    // The high half of the second product depends on all bits of the key; it is scaled to the
    // capacity, which is below 2^32.
    [[nodiscard]] std::size_t Slot(std::uint64_t key) const noexcept {
        constexpr std::uint64_t kGolden = 0x9E3779B97F4A7C15;
        key *= kGolden;
        key ^= key >> 32;
        return static_cast<std::size_t>(((key * kGolden) >> 32) * capacity_ >> 32);
    }
    [[nodiscard]] std::size_t Next(std::size_t i) const noexcept {
        return i + 1 == capacity_ ? 0 : i + 1;
    }

    void Grow(std::size_t count) {
        PlaceTable larger;
        larger.capacity_ = std::max<std::size_t>(capacity_ + capacity_ / 2, 32);
        while (count > larger.capacity_ / 4 * 3) larger.capacity_ *= 2;
        larger.entries_ =
            static_cast<Entry*>(platform::AllocateZeroed(larger.capacity_ * sizeof(Entry)));
        if (larger.entries_ == nullptr) ReportExhausted();
        for (std::size_t i = 0; i < capacity_; ++i) {
            if (entries_[i].place != 0) larger.Insert(entries_[i].Key(), entries_[i].place);
        }
        std::swap(entries_, larger.entries_);
        capacity_ = larger.capacity_;
    }

    Entry* entries_ = nullptr;
    std::size_t capacity_ = 0;
    std::size_t count_ = 0;
};

}  // namespace zelkor::detail::complist

#endif
