// The form in which a compressed list grows: adding and searching take time in the word's length,
// and the image can be written from it, the very bytes that inserting into the image would give.
//
// The image of a list that grew is a row of tails in the order in which words began them: the
// characters that a word brought with it, its marks and its alternative markers among them.
// Inserting only ever lengthens tails or puts a new one at the end. So the letters of all tails
// stand here in one array in the order of their arrival and never move:
//
//   cell 0                the root, before all first characters
//   run                   a joint, then letters; the letter flagged kLast ends it
//   run ...
//
// The letter behind another one in its run continues it. All other continuations of a letter begin
// runs of their own, its family, chained from the oldest to the newest through their joints. When
// the last letter of a run is continued, the oldest of its family stays in its tail (an extension);
// every other run begins a tail. Families of more than kChained runs are found by a table.
// Beginnings tell which letters the first characters of words lead to.
#ifndef FOUNDATION_CORE_COMPLIST_INTERNAL_COMPLISTGROWING_H
#define FOUNDATION_CORE_COMPLIST_INTERNAL_COMPLISTGROWING_H

#include <cstddef>
#include <cstdint>

#include "Foundation/Core/CompList/Internal/CompListBeginnings.h"
#include "Foundation/Core/CompList/Internal/CompListImage.h"
#include "Foundation/Core/CompList/Internal/CompListOffsets.h"
#include "Foundation/Core/CompList/Internal/CompListStorage.h"

namespace zelkor::detail::complist {

class GrowingList {
public:
    // An empty list; the widths of the image that it will be written to, and how many bytes its
    // buffer will hold behind it.
    GrowingList(const Widths& widths, std::uint32_t behind);

    // Takes over an image; only for an empty list. False when the image does not hang together;
    // the list is then of no use.
    [[nodiscard]] bool Read(const View& image);

    // Adds a key that is not empty. False, and nothing changed, when it is there already, contains
    // a marker, or does not fit the image's offsets or size.
    template <typename Unit>
    bool Add(const Unit* key, std::uint32_t handle);

    // Makes room for a key of that length; may throw, and then nothing has changed.
    void Reserve(std::size_t length);

    // As WalkImage, for a key that is not empty.
    template <typename Unit>
    [[nodiscard]] Outcome Search(const Unit* key, bool exact) const noexcept;

    // Length of the image.
    [[nodiscard]] std::uint32_t End() const noexcept {
        return static_cast<std::uint32_t>(kFirstElement + stream_bytes_ + widths_.element);
    }
    // Writes the jump table and the element stream into an image of that length.
    void Write(std::byte* image) const;

    [[nodiscard]] std::size_t Bytes() const noexcept {
        return cells_.Bytes() + beginnings_.Bytes() + families_.Bytes() + offsets_.Bytes();
    }

private:
    template <typename Unit>
    class Reader;
    template <typename Unit>
    [[nodiscard]] bool ReadAs(const View& image);

    // Letters and joints are both cells, so that a joint lies beside the letter it belongs to.
    struct Cell {
        char16_t unit;        // letter: the character
        std::uint16_t flags;  // the constants below
        std::uint32_t value;  // letter: its handle when kWord
                              // joint of a family's oldest run: start of the newest
        std::uint32_t chain;  // letter: start of its family's oldest run, 0 without family
                              // joint: start of the next newer run, 0 in the newest
    };
    static constexpr std::uint16_t kWord = 1;       // letter: a word ends here
    static constexpr std::uint16_t kLast = 2;       // letter: its run ends here
    static constexpr std::uint16_t kTabled = 4;     // letter: its family is in the table
    static constexpr std::uint16_t kExtension = 8;  // joint: the run continues a tail
    static constexpr std::uint16_t kTop = 16;       // joint: of a first character's run
    static constexpr std::uint32_t kChained = 3;
    static constexpr std::uint64_t kLargestImage = 0xFFFFF000;

    [[nodiscard]] static std::uint32_t JumpBit(std::uint32_t unit) noexcept {
        return HasJump(unit) ? 1U << (unit - 'a') : 0;
    }

    // How far a key agrees with the list: its first `matched` characters lead to `letter`.
    struct Place {
        std::uint32_t letter;
        std::uint32_t matched;
    };

    [[nodiscard]] bool Is(std::uint32_t letter, std::uint16_t flag) const noexcept {
        return (cells_[letter].flags & flag) != 0;
    }
    [[nodiscard]] Cell& Joint(std::uint32_t start) noexcept { return cells_[start - 1]; }
    [[nodiscard]] const Cell& Joint(std::uint32_t start) const noexcept {
        return cells_[start - 1];
    }
    [[nodiscard]] bool EndsBranch(std::uint32_t letter) const noexcept {
        return Is(letter, kLast) && cells_[letter].chain == 0;
    }
    [[nodiscard]] bool Fits(std::uint64_t added) const noexcept {
        return std::uint64_t{End()} + behind_ + added <= kLargestImage;
    }

    [[nodiscard]] std::uint32_t Child(std::uint32_t letter, std::uint32_t unit) const noexcept;
    template <typename Unit>
    [[nodiscard]] Place Descend(const Unit* key, Place from) const noexcept;
    [[nodiscard]] bool MarkWord(std::uint32_t letter, std::uint32_t handle);
    template <typename Unit>
    [[nodiscard]] std::uint32_t AddRest(const Unit* rest, std::uint32_t parent,
                                        std::uint32_t handle);
    template <typename Unit>
    void AddBeginnings(const Unit* key, Place place, const Beginnings::Found& found,
                       std::uint32_t first) noexcept;
    void BeginRun(std::uint32_t parent, char16_t unit) noexcept;
    void AppendLetter(char16_t unit) noexcept { cells_.Append({unit, 0, 0, 0}); }
    void EndRun(std::uint32_t handle) noexcept;

    // 2-byte offsets: whether they allow an insertion, which they then know of.
    [[nodiscard]] bool DistancesAllow(std::uint32_t letter, std::uint64_t bytes);
    [[nodiscard]] bool LengthenTail(std::uint32_t parent, std::uint32_t bytes);
    [[nodiscard]] bool AddTail(std::uint32_t parent, std::uint32_t bytes);
    void MeasureDistances() noexcept;
    [[nodiscard]] std::uint64_t BytesBehind(std::uint32_t letter) const noexcept;

    // The order of the image. A letter's marker leads to the next alternative, if there is one: the
    // oldest of the family of the letter before it, or the one behind its own run.
    [[nodiscard]] std::uint32_t SourceOf(std::uint32_t parent) const noexcept;
    [[nodiscard]] std::uint32_t Following(std::uint32_t letter) const noexcept {
        return Is(letter, kLast) ? cells_[letter].chain : letter + 1;
    }
    [[nodiscard]] std::uint32_t NextAlternative(std::uint32_t letter) const noexcept {
        return cells_[letter - 1].chain;
    }
    [[nodiscard]] std::uint32_t LetterBytes(std::uint32_t letter) const noexcept {
        return widths_.element + (NextAlternative(letter) != 0 ? widths_.Jump() : 0) +
               (Is(letter, kWord) ? widths_.Mark() : 0);
    }
    // visit(start) for each tail.
    template <typename Visit>
    void ForEachTail(Visit visit) const;
    // visit(letter) for a letter and all that follow it in its tail.
    template <typename Visit>
    void ForEachLetter(std::uint32_t letter, Visit visit) const {
        for (; letter != 0; letter = Following(letter)) visit(letter);
    }
    [[nodiscard]] std::byte* WriteTail(std::uint32_t start, std::byte* image, std::byte* to,
                                       const PlainArray<std::uint32_t>& positions) const noexcept;

    Widths widths_;
    std::uint32_t behind_;
    std::uint64_t stream_bytes_ = 0;  // without the end marker
    std::uint32_t jumps_ = 0;         // bit per letter with an entry in the jump table
    PlainArray<Cell> cells_;
    Beginnings beginnings_;  // by their last letter
    PlaceTable families_;    // by Step
    OffsetTable offsets_;    // stays empty for lists with long offsets
};

}  // namespace zelkor::detail::complist

#endif
