#include "Foundation/Core/CompList/Internal/CompListGrowing.h"

namespace zelkor::detail::complist {

namespace {

// A handle as far as the image can hold it.
constexpr std::uint32_t Cut(std::uint32_t handle, std::uint32_t width) noexcept {
    return width == 4 ? handle : handle & ((1U << (8 * width)) - 1);
}

}  // namespace

GrowingList::GrowingList(const Widths& widths, std::uint32_t behind)
    : widths_(widths), behind_(behind) {
    cells_.Reserve(64);
    cells_.Append({0, kLast, 0, 0});
}

// The run of the family that begins with this character.
std::uint32_t GrowingList::Child(std::uint32_t letter, std::uint32_t unit) const noexcept {
    if (Is(letter, kTabled)) return families_.Find(Step(letter, unit));
    std::uint32_t start = cells_[letter].chain;
    while (start != 0 && cells_[start].unit != unit) start = Joint(start).chain;
    return start;
}

template <typename Unit>
GrowingList::Place GrowingList::Descend(const Unit* key, Place from) const noexcept {
    for (;; ++from.matched) {
        const Unit unit = key[from.matched];
        if (unit == 0) return from;
        if (!Is(from.letter, kLast) && cells_[from.letter + 1].unit == unit) {
            ++from.letter;
            continue;
        }
        const std::uint32_t child = Child(from.letter, unit);
        if (child == 0) return from;
        from.letter = child;
    }
}

template <typename Unit>
Outcome GrowingList::Search(const Unit* key, bool exact) const noexcept {
    const Beginnings::Found found = beginnings_.Follow(key);
    if (found.missing != 0 && exact) return {kAbsent, 0};
    if (found.missing == Beginnings::kFirst) {
        return {kAbsent, beginnings_.ShortEnd(
                             key, [this](std::uint32_t letter) { return EndsBranch(letter); })};
    }
    const Place place = Descend(key, {found.place, found.length});
    if (key[place.matched] == 0) {
        return {Is(place.letter, kWord) ? cells_[place.letter].value : kAbsent, place.matched};
    }
    return {kAbsent, EndsBranch(place.letter) ? place.matched : 0};
}

template <typename Unit>
bool GrowingList::Add(const Unit* key, std::uint32_t handle) {
    const Beginnings::Found found = beginnings_.Follow(key);
    const Place place = Descend(key, {found.place, found.length});
    handle = Cut(handle, widths_.handle);
    if (key[place.matched] == 0) return MarkWord(place.letter, handle);
    const std::uint32_t first = AddRest(key + place.matched, place.letter, handle);
    if (first == 0) return false;
    if (place.letter == 0) jumps_ |= JumpBit(key[0]);
    if (place.matched < Beginnings::kBoth) AddBeginnings(key, place, found, first);
    return true;
}

void GrowingList::Reserve(std::size_t length) {
    cells_.Reserve(length + 1);
    beginnings_.Reserve();
    families_.Reserve(kChained + 1);  // one that becomes too large for its chain
    if (widths_.offset == 2) offsets_.Reserve();
}

// Makes known what a new word adds; its letters behind `place` are those from `first` on.
template <typename Unit>
void GrowingList::AddBeginnings(const Unit* key, Place place, const Beginnings::Found& found,
                                std::uint32_t first) noexcept {
    const auto letter_at = [&](std::uint32_t length) {
        return first + (length - 1 - place.matched);
    };
    Beginnings::Key units;
    while (units.Length() < Beginnings::kFirst && key[units.Length()] != 0) {
        units.Add(key[units.Length()]);
    }
    std::uint32_t first_letter = found.place;
    if (place.matched < units.Length()) {
        first_letter = letter_at(units.Length());
        beginnings_.AddFirst(units, first_letter);
    }
    if (units.Length() < Beginnings::kFirst) return;
    units.GoOnFrom(first_letter);
    while (units.Length() < Beginnings::kBoth && key[units.Length()] != 0) {
        units.Add(key[units.Length()]);
    }
    if (units.Length() == Beginnings::kBoth) {
        beginnings_.AddBoth(units, letter_at(Beginnings::kBoth));
    }
}

// The word is the beginning of others: a mark is inserted behind its last letter.
bool GrowingList::MarkWord(std::uint32_t letter, std::uint32_t handle) {
    const std::uint32_t bytes = widths_.Mark();
    if (Is(letter, kWord) || !Fits(bytes)) return false;
    if (widths_.offset == 2) {
        if (!DistancesAllow(letter, bytes)) return false;
        offsets_.Insert(letter, bytes);
    }
    cells_[letter].flags = static_cast<std::uint16_t>(cells_[letter].flags | kWord);
    cells_[letter].value = handle;
    stream_bytes_ += bytes;
    return true;
}

// The rest of a word becomes a new tail, or lengthens the one that ends at `parent`. Answers its
// first letter, 0 when it is refused.
template <typename Unit>
std::uint32_t GrowingList::AddRest(const Unit* rest, std::uint32_t parent, std::uint32_t handle) {
    std::size_t length = 0;
    for (; rest[length] != 0; ++length) {
        if (IsMarker(rest[length])) return 0;
    }
    const bool lengthens = EndsBranch(parent);
    const std::size_t bytes = length * sizeof(Unit) + widths_.Mark();
    const std::size_t all = lengthens ? bytes : bytes + widths_.Jump();
    if (!Fits(all)) return 0;
    Reserve(length);
    if (widths_.offset == 2) {
        const auto count = static_cast<std::uint32_t>(bytes);
        if (!(lengthens ? LengthenTail(parent, count) : AddTail(parent, count))) return 0;
    }
    if (lengthens && parent != 0 && parent + 1 == cells_.size()) {
        cells_[parent].flags = static_cast<std::uint16_t>(cells_[parent].flags & ~kLast);
        AppendLetter(rest[0]);
    } else {
        BeginRun(parent, rest[0]);
    }
    for (std::size_t i = 1; i < length; ++i) AppendLetter(rest[i]);
    EndRun(handle);
    stream_bytes_ += all;
    return static_cast<std::uint32_t>(cells_.size() - length);
}

void GrowingList::BeginRun(std::uint32_t parent, char16_t unit) noexcept {
    const auto start = static_cast<std::uint32_t>(cells_.size() + 1);
    const std::uint32_t oldest = cells_[parent].chain;
    std::uint16_t flags = parent == 0 ? kTop : 0;
    if (parent != 0 && EndsBranch(parent)) flags = kExtension;
    cells_.Append({0, flags, oldest == 0 ? start : 0, 0});
    AppendLetter(unit);
    if (oldest == 0) {
        cells_[parent].chain = start;
    } else {
        Joint(Joint(oldest).value).chain = start;
        Joint(oldest).value = start;
    }

    if (!Is(parent, kTabled)) {
        std::uint32_t size = 0;
        for (std::uint32_t run = cells_[parent].chain; run != 0; run = Joint(run).chain) ++size;
        if (size <= kChained) return;
        cells_[parent].flags = static_cast<std::uint16_t>(cells_[parent].flags | kTabled);
        for (std::uint32_t run = oldest; run != start; run = Joint(run).chain) {
            families_.Insert(Step(parent, cells_[run].unit), run);
        }
    }
    families_.Insert(Step(parent, unit), start);
}

void GrowingList::EndRun(std::uint32_t handle) noexcept {
    Cell& last = cells_[cells_.size() - 1];
    last.flags = static_cast<std::uint16_t>(last.flags | kWord | kLast);
    last.value = handle;
}

// Whether so many bytes can be inserted behind a letter in a stream that is long, or becomes so.
bool GrowingList::DistancesAllow(std::uint32_t letter, std::uint64_t bytes) {
    if (stream_bytes_ + bytes <= OffsetTable::kLargest) return true;
    if (!offsets_.IsMeasured()) MeasureDistances();
    return offsets_.CanInsert(letter, bytes);
}

bool GrowingList::LengthenTail(std::uint32_t parent, std::uint32_t bytes) {
    const auto start = static_cast<std::uint32_t>(cells_.size() + 1);
    if (parent == 0) {
        offsets_.AddTail(start, 0, bytes, 0);
        return true;
    }
    if (!DistancesAllow(parent, bytes)) return false;
    offsets_.Insert(parent, bytes);
    if (parent + 1 != cells_.size()) offsets_.AddExtension(start, parent);
    return true;
}

bool GrowingList::AddTail(std::uint32_t parent, std::uint32_t bytes) {
    const std::uint32_t source = SourceOf(parent);
    std::uint64_t distance = 0;
    if (stream_bytes_ + widths_.Jump() + bytes > OffsetTable::kLargest) {
        if (!offsets_.IsMeasured()) MeasureDistances();
        distance = widths_.Jump() + BytesBehind(source) +
                   offsets_.BytesBehindTail(offsets_.TailOf(source));
        if (distance > OffsetTable::kLargest || !offsets_.CanInsert(source, widths_.Jump())) {
            return false;
        }
    }
    offsets_.Insert(source, widths_.Jump());
    offsets_.AddTail(static_cast<std::uint32_t>(cells_.size() + 1), source, bytes,
                     static_cast<std::uint32_t>(distance));
    return true;
}

template bool GrowingList::Add(const std::uint8_t*, std::uint32_t);
template bool GrowingList::Add(const char16_t*, std::uint32_t);
template Outcome GrowingList::Search(const std::uint8_t*, bool) const noexcept;
template Outcome GrowingList::Search(const char16_t*, bool) const noexcept;

}  // namespace zelkor::detail::complist
