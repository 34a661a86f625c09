// A growing list in the order of its image: measuring, writing and reading it.
#include "Foundation/Core/CompList/Internal/CompListGrowing.h"
#include "Foundation/Core/CompList/Internal/CompListParser.h"

namespace zelkor::detail::complist {

// The letter behind which the marker of a new alternative is put: the last alternative so far.
std::uint32_t GrowingList::SourceOf(std::uint32_t parent) const noexcept {
    const std::uint32_t oldest = cells_[parent].chain;
    return oldest != 0 ? Joint(oldest).value : parent + 1;
}

template <typename Visit>
void GrowingList::ForEachTail(Visit visit) const {
    for (std::uint32_t start = 2; start < cells_.size(); start += 2) {
        if ((Joint(start).flags & kExtension) == 0) visit(start);
        while (!Is(start, kLast)) ++start;
    }
}

// Bytes between a letter that has no marker and the end of its tail.
std::uint64_t GrowingList::BytesBehind(std::uint32_t letter) const noexcept {
    std::uint64_t bytes = Is(letter, kWord) ? widths_.Mark() : 0;
    ForEachLetter(Following(letter), [&](std::uint32_t other) { bytes += LetterBytes(other); });
    return bytes;
}

void GrowingList::MeasureDistances() noexcept {
    std::uint32_t at = 0;
    std::uint32_t tail = 0;
    ForEachTail([&](std::uint32_t start) {
        // Until here a tail's distance is the position of the marker that leads to it.
        if (tail != 0) offsets_.Distance(tail) = at - offsets_.Distance(tail);
        ++tail;
        ForEachLetter(start, [&](std::uint32_t letter) {
            const std::uint32_t next = NextAlternative(letter);
            if (next != 0) offsets_.Distance(offsets_.TailOf(next)) = at + widths_.element;
            at += LetterBytes(letter);
        });
    });
    offsets_.SetMeasured();
}

std::byte* GrowingList::WriteTail(std::uint32_t start, std::byte* image, std::byte* to,
                                  const PlainArray<std::uint32_t>& positions) const noexcept {
    const std::uint32_t element = widths_.element;
    ForEachLetter(start, [&](std::uint32_t letter) {
        StoreNumber(to, cells_[letter].unit, element);
        to += element;
        const std::uint32_t next = NextAlternative(letter);
        if (next != 0) {
            const auto marker = static_cast<std::uint32_t>(to - image);
            StoreNumber(to, kAlternative, element);
            StoreNumber(to + element, positions[next / 2] - marker, widths_.offset);
            to += widths_.Jump();
        }
        if (!Is(letter, kWord)) return;
        StoreNumber(to, Following(letter) == 0 ? kWordEnds : kGoesOn, element);
        StoreNumber(to + element, cells_[letter].value, widths_.handle);
        to += widths_.Mark();
    });
    return to;
}

void GrowingList::Write(std::byte* image) const {
    // Where the tails begin, at half their starts, which are at least two cells apart.
    PlainArray<std::uint32_t> positions;
    positions.Reserve(cells_.size() / 2 + 1);
    std::uint32_t at = kFirstElement;
    for (std::uint32_t i = 0; i < 26; ++i) Store(image + kJumpsAt + 4 * i, std::uint32_t{0});
    ForEachTail([&](std::uint32_t start) {
        positions[start / 2] = at;
        const std::uint32_t unit = cells_[start].unit;
        if ((Joint(start).flags & kTop) != 0 && (jumps_ & JumpBit(unit)) != 0) {
            Store(image + kJumpsAt + 4 * (unit - 'a'), at);
        }
        ForEachLetter(start, [&](std::uint32_t letter) { at += LetterBytes(letter); });
    });
    std::byte* to = image + kFirstElement;
    ForEachTail([&](std::uint32_t start) { to = WriteTail(start, image, to, positions); });
    StoreNumber(to, kEndOfStream, widths_.element);
}

// Names a branching point by its letter.
template <typename Unit>
class GrowingList::Reader {
public:
    explicit Reader(GrowingList& list) noexcept : list_(list) {}

    bool BeginTail(std::uint32_t position, Unit unit, const Branch& branch) {
        const std::uint32_t parent = branch.family;
        if (branch.rank != 0) {
            const bool in_place = !list_.Is(parent, kLast) && list_.cells_[parent + 1].unit == unit;
            if (in_place || list_.Child(parent, unit) != 0) return false;
        }
        list_.cells_.Reserve(2);
        list_.families_.Reserve(kChained + 1);
        if (list_.widths_.offset == 2) {
            EndTail(position);
            list_.offsets_.Reserve();
            list_.offsets_.AddTail(static_cast<std::uint32_t>(list_.cells_.size() + 1),
                                   branch.rank == 0 ? 0 : list_.SourceOf(parent), 0, 0);
        }
        list_.BeginRun(parent, unit);
        return true;
    }
    void Character(std::uint32_t, Unit unit) {
        list_.cells_.Reserve(1);
        list_.AppendLetter(unit);
    }
    [[nodiscard]] std::uint32_t FamilyBefore(std::uint32_t) const noexcept { return Latest(); }
    std::uint32_t First(const Beginnings::Key& key) {
        list_.beginnings_.Reserve();
        list_.beginnings_.AddFirst(key, Latest());
        return Latest();
    }
    void Both(const Beginnings::Key& key) {
        list_.beginnings_.Reserve();
        list_.beginnings_.AddBoth(key, Latest());
    }
    void ShortEnd(const Beginnings::Key& key) { First(key); }
    void Word(std::uint32_t handle, bool last) noexcept {
        Cell& letter = list_.cells_[Latest()];
        letter.flags = static_cast<std::uint16_t>(letter.flags | kWord | (last ? kLast : 0));
        letter.value = handle;
    }
    // The tail being read ends before this position.
    void EndTail(std::uint32_t position) noexcept {
        if (list_.cells_.size() > 1) {
            list_.offsets_.SetBytes(list_.offsets_.TailOf(Latest()), position - tail_position_);
        }
        tail_position_ = position;
    }

private:
    [[nodiscard]] std::uint32_t Latest() const noexcept {
        return static_cast<std::uint32_t>(list_.cells_.size() - 1);
    }

    GrowingList& list_;
    std::uint32_t tail_position_ = 0;
};

template <typename Unit>
bool GrowingList::ReadAs(const View& image) {
    Reader<Unit> reader(*this);
    if (!Parser<Unit, Reader<Unit>>(image, reader).Run()) return false;
    const auto end = static_cast<std::uint32_t>(image.limit - sizeof(Unit));
    if (widths_.offset == 2) reader.EndTail(end);
    stream_bytes_ = end - kFirstElement;
    for (std::uint32_t letter = 'a'; letter <= 'z'; ++letter) {
        if (image.JumpEntry(letter) != 0) jumps_ |= JumpBit(letter);
    }
    return true;
}

bool GrowingList::Read(const View& image) {
    if (widths_.element == 1) return ReadAs<std::uint8_t>(image);
    return widths_.element == 2 && ReadAs<char16_t>(image);
}

}  // namespace zelkor::detail::complist
