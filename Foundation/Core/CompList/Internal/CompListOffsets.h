// The distances that a growing list with 2-byte offsets must keep below 65536. Every tail but the
// first is led to by one alternative marker; opening room between the marker and the tail makes
// their distance larger. Only the tails within 64 KiB behind the room can be concerned.
#ifndef FOUNDATION_CORE_COMPLIST_INTERNAL_COMPLISTOFFSETS_H
#define FOUNDATION_CORE_COMPLIST_INTERNAL_COMPLISTOFFSETS_H

#include <cstddef>
#include <cstdint>

#include "Foundation/Core/CompList/Internal/CompListStorage.h"

namespace zelkor::detail::complist {

class OffsetTable {
public:
    static constexpr std::uint32_t kLargest = 0xFFFF;

    // Runs and tails are told in the order of their beginnings. Both need room made before.
    void Reserve() {
        runs_.Reserve(1);
        tails_.Reserve(1);
    }
    // A tail of so many bytes, led to by the marker behind the letter `source`, so far away.
    void AddTail(std::uint32_t start, std::uint32_t source, std::uint32_t bytes,
                 std::uint32_t distance) noexcept;
    // A run that continues the tail of `parent`.
    void AddExtension(std::uint32_t start, std::uint32_t parent) noexcept;

    // Which tail a letter is in, from 0.
    [[nodiscard]] std::uint32_t TailOf(std::uint32_t letter) const noexcept;
    // Bytes from the end of a tail to the end of the stream; more than kLargest are not counted up.
    [[nodiscard]] std::uint32_t BytesBehindTail(std::uint32_t tail) const noexcept;

    // Whether all distances stay in bounds when so many bytes are inserted behind a letter and its
    // marker. The distances must have been measured.
    [[nodiscard]] bool CanInsert(std::uint32_t letter, std::uint64_t bytes) const noexcept;
    void Insert(std::uint32_t letter, std::uint32_t bytes) noexcept;

    // The distances are not kept while the whole stream is short; they are measured once, when it
    // grows past kLargest.
    [[nodiscard]] bool IsMeasured() const noexcept { return measured_; }
    void SetMeasured() noexcept { measured_ = true; }
    [[nodiscard]] std::uint32_t& Distance(std::uint32_t tail) noexcept {
        return tails_[tail].distance;
    }
    void SetBytes(std::uint32_t tail, std::uint32_t bytes) noexcept { tails_[tail].bytes = bytes; }

    [[nodiscard]] std::size_t Bytes() const noexcept { return runs_.Bytes() + tails_.Bytes(); }

private:
    struct Run {
        std::uint32_t start;
        std::uint32_t tail;
    };
    struct Tail {
        std::uint32_t bytes;
        std::uint32_t source;       // letter in front of the marker that leads here
        std::uint32_t source_tail;  // and its tail
        std::uint32_t distance;     // from that marker
    };

    // Calls visit(j) for each tail whose marker stands at or before `letter` and that begins
    // behind it, as long as it answers true.
    template <typename Visit>
    bool ForEachSpanning(std::uint32_t letter, Visit visit) const noexcept;

    PlainArray<Run> runs_;
    PlainArray<Tail> tails_;
    bool measured_ = false;
};

}  // namespace zelkor::detail::complist

#endif
