#include "Foundation/Core/CompList/Internal/CompListCheck.h"

#include <algorithm>
#include <bitset>
#include <cstddef>
#include <vector>

#include "Foundation/Platform/Memory.h"

namespace zelkor::detail::complist {

namespace {

// A sound stream is a row of tails: characters with their marks up to the first kWordEnds. Each
// alternative marker leads to the beginning of a later tail, and each tail but the first is led to
// by one marker. So every path through the stream is a path through a tree, and no two share a
// byte.
template <typename Unit>
class Checker {
public:
    explicit Checker(const View& image) : image_(image), led_to_(image.limit - kFirstElement) {}

    [[nodiscard]] std::optional<std::uint32_t> CountWords() {
        if (!TailsAreRight() || !BranchesAreRight() || !JumpsAreRight()) return std::nullopt;
        return words_;
    }

private:
    [[nodiscard]] std::uint32_t At(std::size_t at) const noexcept {
        return image_.ElementOf<Unit>(at);
    }

    [[nodiscard]] bool TailsAreRight() {
        std::size_t at = kFirstElement;
        while (At(at) != kEndOfStream) {
            if (at != kFirstElement) {
                if (!led_to_[at - kFirstElement]) return false;
                --open_;
            }
            at = BehindTail(at);
            if (at == 0) return false;
        }
        return open_ == 0 && at + sizeof(Unit) == image_.limit;
    }

    // The position behind the tail at `at`, 0 when it is damaged.
    [[nodiscard]] std::size_t BehindTail(std::size_t at) {
        for (;;) {
            const std::uint32_t unit = At(at);
            if (unit == 0 || IsMarker(unit)) return 0;
            at += sizeof(Unit);
            if (At(at) == kAlternative) {
                if (!LeadTo(image_.Target(at))) return 0;
                at += image_.widths.Jump();
            }
            const std::uint32_t mark = At(at);
            if (mark != kGoesOn && mark != kWordEnds) continue;
            if (!image_.HasHandle(at)) return 0;
            ++words_;
            at += image_.widths.Mark();
            if (mark == kWordEnds) return at;
        }
    }

    [[nodiscard]] bool LeadTo(std::size_t target) {
        if (target == 0 || led_to_[target - kFirstElement]) return false;
        led_to_[target - kFirstElement] = true;
        ++open_;
        return true;
    }

    // Of streams whose tails are right: whether no branching point has the same character twice.
    [[nodiscard]] bool BranchesAreRight() {
        bool in_place = true;  // the next character begins no tail that a marker leads to
        for (std::size_t at = kFirstElement; At(at) != kEndOfStream;) {
            const std::uint32_t element = At(at);
            if (element == kAlternative) {
                at += image_.widths.Jump();
            } else if (element == kGoesOn || element == kWordEnds) {
                at += image_.widths.Mark();
                in_place = element == kGoesOn;
            } else {
                if (in_place && !AlternativesDiffer(at)) return false;
                in_place = true;
                at += sizeof(Unit);
            }
        }
        return true;
    }

    [[nodiscard]] bool AlternativesDiffer(std::size_t head) {
        std::size_t at = image_.NextAlternative<Unit>(head);
        if (at == 0) return true;
        seen_.set(At(head));
        for (; at != 0 && !seen_[At(at)]; at = image_.NextAlternative<Unit>(at)) seen_.set(At(at));
        const bool differ = at == 0;
        for (at = head; at != 0; at = image_.NextAlternative<Unit>(at)) seen_.reset(At(at));
        return differ;
    }

    // An entry is empty, or leads to the alternative of its letter.
    [[nodiscard]] bool JumpsAreRight() const noexcept {
        std::uint32_t tops[26] = {};
        for (std::size_t at = kFirstElement; at != 0; at = image_.NextAlternative<Unit>(at)) {
            if (HasJump(At(at))) tops[At(at) - 'a'] = static_cast<std::uint32_t>(at);
        }
        for (std::uint32_t letter = 'a'; letter <= 'z'; ++letter) {
            const std::uint32_t entry = image_.JumpEntry(letter);
            if (entry != 0 && entry != tops[letter - 'a']) return false;
        }
        return true;
    }

    const View& image_;
    std::vector<bool, platform::Allocator<bool>> led_to_;  // by distance from the first element
    std::size_t open_ = 0;                                 // tails that were led to, not reached
    std::uint32_t words_ = 0;
    std::bitset<std::size_t{1} << (8 * sizeof(Unit))> seen_;
};

}  // namespace

std::optional<std::uint32_t> CountSoundWords(const View& image) {
    if (image.limit < kFirstElement + image.widths.element) return std::nullopt;
    if (image.widths.element == 1) return Checker<std::uint8_t>(image).CountWords();
    if (image.widths.element == 2) return Checker<char16_t>(image).CountWords();
    const bool empty = image.limit == kFirstElement + image.widths.element &&
                       image.Element(kFirstElement) == kEndOfStream &&
                       std::all_of(image.bytes + kJumpsAt, image.bytes + kEntriesAt,
                                   [](std::byte byte) { return byte == std::byte{0}; });
    return empty ? std::optional<std::uint32_t>(0) : std::nullopt;
}

}  // namespace zelkor::detail::complist
