#include "Foundation/Core/CompList/Internal/CompListOffsets.h"

#include <algorithm>

namespace zelkor::detail::complist {

void OffsetTable::AddTail(std::uint32_t start, std::uint32_t source, std::uint32_t bytes,
                          std::uint32_t distance) noexcept {
    const std::uint32_t source_tail = tails_.size() == 0 ? 0 : TailOf(source);
    runs_.Append({start, static_cast<std::uint32_t>(tails_.size())});
    tails_.Append({bytes, source, source_tail, distance});
}

void OffsetTable::AddExtension(std::uint32_t start, std::uint32_t parent) noexcept {
    const std::uint32_t tail = TailOf(parent);
    runs_.Append({start, tail});
}

std::uint32_t OffsetTable::TailOf(std::uint32_t letter) const noexcept {
    const Run* const end = runs_.data() + runs_.size();
    const Run* const behind =
        std::upper_bound(runs_.data(), end, letter,
                         [](std::uint32_t value, const Run& run) { return value < run.start; });
    return behind[-1].tail;
}

std::uint32_t OffsetTable::BytesBehindTail(std::uint32_t tail) const noexcept {
    std::uint32_t bytes = 0;
    for (std::size_t j = tail + std::size_t{1}; j < tails_.size() && bytes <= kLargest; ++j) {
        bytes += tails_[j].bytes;
    }
    return bytes;
}

template <typename Visit>
bool OffsetTable::ForEachSpanning(std::uint32_t letter, Visit visit) const noexcept {
    const std::uint32_t tail = TailOf(letter);
    std::uint32_t behind = 0;  // bytes from the end of that tail to the one looked at
    for (std::size_t j = tail + std::size_t{1}; j < tails_.size() && behind <= kLargest; ++j) {
        const Tail& other = tails_[j];
        const bool before =
            other.source_tail < tail || (other.source_tail == tail && other.source <= letter);
        if (before && !visit(j)) return false;
        behind += other.bytes;
    }
    return true;
}

bool OffsetTable::CanInsert(std::uint32_t letter, std::uint64_t bytes) const noexcept {
    return ForEachSpanning(letter,
                           [&](std::size_t j) { return tails_[j].distance + bytes <= kLargest; });
}

void OffsetTable::Insert(std::uint32_t letter, std::uint32_t bytes) noexcept {
    if (measured_) {
        ForEachSpanning(letter, [&](std::size_t j) {
            tails_[j].distance += bytes;
            return true;
        });
    }
    tails_[TailOf(letter)].bytes += bytes;
}

}  // namespace zelkor::detail::complist
