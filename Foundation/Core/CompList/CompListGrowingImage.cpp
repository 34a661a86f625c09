// A growing list in the order of its image: measuring, writing and reading it.
#include "Foundation/Core/CompList/CompListGrowing.h"
#include "Foundation/Core/CompList/CompListParser.h"

namespace foundation::detail::complist {

// The letter behind which the marker of a new alternative is put: the last alternative so far.
std::uint32_t GrowingList::SourceOf(std::uint32_t parent) const noexcept {
    const std::uint32_t newest = cells_[parent].chain;
    return newest != 0 ? newest : parent + 1;
}

std::uint32_t GrowingList::NextAlternative(std::uint32_t letter, bool in_place) const noexcept {
    if (in_place) {
        const std::uint32_t newest = cells_[letter - 1].chain;
        return newest == 0 ? 0 : Oldest(newest);
    }
    const std::uint32_t newer = Joint(letter).first;
    return newer > letter ? newer : 0;  // the newest one's leads back to the oldest
}

template <typename Visit>
void GrowingList::ForEachTail(Visit visit) const {
    for (std::uint32_t start = 2; start < cells_.size(); start += 2) {
        if ((Joint(start).flags & kExtension) == 0) visit(start);
        while (!Is(start, kLast)) ++start;
    }
}

template <typename Visit>
void GrowingList::ForEachLetter(std::uint32_t letter, bool in_place, Visit visit) const {
    while (letter != 0) {
        visit(letter, NextAlternative(letter, in_place));
        in_place = !Is(letter, kLast);
        letter = Following(letter);
    }
}

// Bytes between a letter that has no marker and the end of its tail.
std::uint64_t GrowingList::BytesBehind(std::uint32_t letter) const noexcept {
    std::uint64_t bytes = Is(letter, kWord) ? widths_.Mark() : 0;
    ForEachLetter(Following(letter), !Is(letter, kLast),
                  [&](std::uint32_t other, std::uint32_t next) {
                      bytes += widths_.element;
                      if (next != 0) bytes += widths_.Jump();
                      if (Is(other, kWord)) bytes += widths_.Mark();
                  });
    return bytes;
}

void GrowingList::MeasureDistances() noexcept {
    std::uint32_t at = 0;
    std::uint32_t tail = 0;
    ForEachTail([&](std::uint32_t start) {
        // Until here a tail's distance is the position of the marker that leads to it.
        if (tail != 0) offsets_.Distance(tail) = at - offsets_.Distance(tail);
        ++tail;
        ForEachLetter(start, false, [&](std::uint32_t letter, std::uint32_t next) {
            at += widths_.element;
            if (next != 0) {
                offsets_.Distance(offsets_.TailOf(next)) = at;
                at += widths_.Jump();
            }
            if (Is(letter, kWord)) at += widths_.Mark();
        });
    });
    offsets_.SetMeasured();
}

std::byte* GrowingList::WriteTail(std::uint32_t start, std::byte* image, std::byte* to,
                                  PlainArray<std::uint32_t>& markers) const noexcept {
    const std::uint32_t element = widths_.element;
    ForEachLetter(start, false, [&](std::uint32_t letter, std::uint32_t next) {
        StoreNumber(to, cells_[letter].unit, element);
        to += element;
        if (next != 0) {
            markers[next / 2] = static_cast<std::uint32_t>(to - image);
            StoreNumber(to, kAlternative, element);
            to += widths_.Jump();
        }
        if (!Is(letter, kWord)) return;
        StoreNumber(to, Following(letter) == 0 ? kWordEnds : kGoesOn, element);
        StoreNumber(to + element, cells_[letter].first, widths_.handle);
        to += widths_.Mark();
    });
    return to;
}

void GrowingList::Write(std::byte* image) const {
    // Where the marker stands that leads to a tail, at half the tail's start: starts are at least
    // two cells apart.
    PlainArray<std::uint32_t> markers;
    markers.Reserve(cells_.size() / 2 + 1);
    std::byte* to = image + kFirstElement;
    for (std::uint32_t i = 0; i < 26; ++i) Store(image + kJumpsAt + 4 * i, std::uint32_t{0});
    ForEachTail([&](std::uint32_t start) {
        const auto at = static_cast<std::uint32_t>(to - image);
        if (start != 2) {
            const std::uint32_t marker = markers[start / 2];
            StoreNumber(image + marker + widths_.element, at - marker, widths_.offset);
        }
        const std::uint32_t unit = cells_[start].unit;
        if ((Joint(start).flags & kTop) != 0 && (jumps_ & JumpBit(unit)) != 0) {
            Store(image + kJumpsAt + 4 * (unit - 'a'), at);
        }
        to = WriteTail(start, image, to, markers);
    });
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
    void Prefix(std::uint64_t prefix) {
        list_.beginnings_.Reserve(1);
        list_.beginnings_.Insert(prefix, Latest());
    }
    void Word(std::uint32_t handle, bool last) noexcept {
        Cell& letter = list_.cells_[Latest()];
        letter.flags = static_cast<std::uint16_t>(letter.flags | kWord | (last ? kLast : 0));
        letter.first = handle;
    }
    void ShortEnd(std::uint64_t key) {
        list_.beginnings_.Reserve(1);
        list_.beginnings_.Insert(key, Latest());
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

}  // namespace foundation::detail::complist
