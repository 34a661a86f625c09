#include "Foundation/Core/CompList/Internal/CompListIndex.h"

#include "Foundation/Core/CompList/Internal/CompListParser.h"

namespace zelkor::detail::complist {

// Names a branching point by the position of the alternative in place.
template <typename Unit>
class Index::Builder {
public:
    Builder(const View& image, Index& index) noexcept : image_(image), index_(index) {}

    bool BeginTail(std::uint32_t position, Unit unit, const Branch& branch) {
        latest_ = position;
        if (branch.rank == 0) return true;
        if (InFamily(branch.family, unit, position)) return false;
        if (branch.rank <= kNearby) return true;
        index_.far_.Reserve(1);
        index_.far_.Insert(Step(branch.family, unit), position);
        return true;
    }
    void Character(std::uint32_t position, Unit) noexcept { latest_ = position; }
    [[nodiscard]] static std::uint32_t FamilyBefore(std::uint32_t position) noexcept {
        return position;
    }
    std::uint32_t First(const Beginnings::Key& key) {
        index_.beginnings_.Reserve();
        index_.beginnings_.AddFirst(key, Behind());
        return Behind();
    }
    void Both(const Beginnings::Key& key) {
        index_.beginnings_.Reserve();
        index_.beginnings_.AddBoth(key, Behind());
    }
    void ShortEnd(const Beginnings::Key& key) { First(key); }
    static void Word(std::uint32_t, bool) noexcept {}

private:
    [[nodiscard]] std::uint32_t Behind() const noexcept {
        return latest_ + static_cast<std::uint32_t>(sizeof(Unit));
    }
    // Whether an alternative before the one at `position` has the same first character.
    [[nodiscard]] bool InFamily(std::uint32_t head, Unit unit,
                                std::uint32_t position) const noexcept {
        std::size_t at = head;
        for (std::uint32_t rank = 0; rank <= kNearby; ++rank) {
            if (at == position) return false;
            if (image_.ElementOf<Unit>(at) == unit) return true;
            at = image_.NextAlternative<Unit>(at);
        }
        return index_.far_.Find(Step(head, unit)) != 0;
    }

    const View& image_;
    Index& index_;
    std::uint32_t latest_ = 0;
};

bool Index::Build(const View& image) {
    if (image.widths.element == 1) {
        Builder<std::uint8_t> builder(image, *this);
        return Parser<std::uint8_t, Builder<std::uint8_t>>(image, builder).Run();
    }
    if (image.widths.element == 2) {
        Builder<char16_t> builder(image, *this);
        return Parser<char16_t, Builder<char16_t>>(image, builder).Run();
    }
    return false;
}

namespace {

// From the first character at `at`, which is not `wanted`, to the alternative that may be it: one
// that begins with `wanted`, or with a marker in a damaged image. 0 when there is none.
template <typename Unit>
std::size_t OtherAlternative(const View& image, std::size_t at, Unit wanted, const Index* index,
                             std::uint32_t& skipped) noexcept {
    const auto head = static_cast<std::uint32_t>(at);
    for (std::uint32_t rank = 1;; ++rank) {
        at = image.NextAlternative<Unit>(at);
        if (at == 0) return 0;
        if (rank > Index::kNearby && index != nullptr) return index->FarAlternative(head, wanted);
        const std::uint32_t unit = image.ElementOf<Unit>(at);
        if (unit == wanted || IsMarker(unit)) return at;
        ++skipped;
    }
}

}  // namespace

template <typename Unit>
Outcome WalkImage(const View& image, const Unit* key, const Index* index, bool exact,
                  std::uint32_t& skipped) noexcept {
    std::size_t at = kFirstElement;
    std::uint32_t matched = 0;
    if (HasJump(key[0])) {
        const std::uint32_t entry = image.JumpEntry(key[0]);
        if (entry != 0) at = entry;
        if (at < kFirstElement) return {kAbsent, 0};
    }
    if (index != nullptr) {
        const Beginnings& known = index->KnownBeginnings();
        const Beginnings::Found found = known.Follow(key);
        if (found.missing != 0 && exact) return {kAbsent, 0};
        if (found.missing == Beginnings::kFirst) {
            return {kAbsent, known.ShortEnd(key, [](std::uint32_t) { return true; })};
        }
        if (found.place != 0) {
            at = found.place;
            matched = found.length;
        }
    }
    for (;;) {
        std::uint32_t element = image.ElementOf<Unit>(at);
        const Unit wanted = key[matched];
        if (element == wanted && element > kHighestMarker) {
            at += sizeof(Unit);
            ++matched;
            continue;
        }
        if (wanted == 0) {
            if (element == kAlternative) {
                at += image.widths.Jump();
                element = image.ElementOf<Unit>(at);
            }
            const bool word = (element == kGoesOn || element == kWordEnds) && image.HasHandle(at);
            return {word ? image.Handle(at) : kAbsent, matched};
        }
        if (element == kAlternative) {
            at += image.widths.Jump();
        } else if (element == kGoesOn) {
            at += image.widths.Mark();
        } else if (element == kWordEnds || element == kEndOfStream) {
            return {kAbsent, element == kWordEnds ? matched : 0};
        } else if (element == wanted) {
            at += sizeof(Unit);
            ++matched;
        } else {
            at = OtherAlternative(image, at, wanted, index, skipped);
            if (at == 0) return {kAbsent, 0};
        }
    }
}

template Outcome WalkImage(const View&, const std::uint8_t*, const Index*, bool,
                           std::uint32_t&) noexcept;
template Outcome WalkImage(const View&, const char16_t*, const Index*, bool,
                           std::uint32_t&) noexcept;

}  // namespace zelkor::detail::complist
