// One pass over an element stream that proves it to be one that insertion can have written, and
// tells a sink about its branches on the way.
//
// Such a stream is a row of tails. A tail is the characters that a word brought with it, up to the
// first kWordEnds; every tail but the first is led to by exactly one alternative marker before it.
// All that this accepts can therefore be searched, indexed and added to without further checks.
#ifndef FOUNDATION_CORE_COMPLIST_INTERNAL_COMPLISTPARSER_H
#define FOUNDATION_CORE_COMPLIST_INTERNAL_COMPLISTPARSER_H

#include <algorithm>
#include <vector>

#include "Foundation/Core/CompList/Internal/CompListBeginnings.h"
#include "Foundation/Core/CompList/Internal/CompListImage.h"
#include "Foundation/Platform/Memory.h"

namespace zelkor::detail::complist {

// An alternative whose tail is still to come.
struct Branch {
    std::uint32_t target;  // position of the tail
    std::uint32_t family;  // the sink's name for the branching point
    std::uint32_t rank;    // 1 for the first alternative behind the one in place
    Beginnings::Key key;   // the characters before the tail, at most kBoth
};

// A sink has
//   bool BeginTail(position, unit, branch)   first character of a tail; false: refuse the stream
//   void Character(position, unit)           any other character
//   uint32_t FamilyBefore(position)          names the branching point before the character there
//   uint32_t First(key)                      the latest character completes kFirst; their place
//   void Both(key)                           or kBoth
//   void Word(handle, last)                  a word ends behind the latest character
//   void ShortEnd(key)                       and with it a branch, before kFirst characters
template <typename Unit, typename Sink>
class Parser {
public:
    Parser(const View& image, Sink& sink) noexcept : image_(image), sink_(sink) {}

    // May throw for lack of memory.
    [[nodiscard]] bool Run() {
        std::size_t at = kFirstElement;
        if (at + sizeof(Unit) > image_.limit) return false;
        for (bool first = true; At(at) != kEndOfStream; first = false) {
            Branch branch{kFirstElement, sink_.FamilyBefore(kFirstElement), 0, {}};
            if (!first && !TakeBranch(at, branch)) return false;
            at = Tail(at, branch);
            if (at == 0) return false;
        }
        return branches_.empty() && at + sizeof(Unit) == image_.limit && JumpsAreRight();
    }

private:
    struct Later {
        bool operator()(const Branch& a, const Branch& b) const noexcept {
            return a.target > b.target;
        }
    };

    [[nodiscard]] std::uint32_t At(std::size_t at) const noexcept {
        return image_.ElementOf<Unit>(at);
    }

    // The open branch that leads to the tail at `at`.
    bool TakeBranch(std::size_t at, Branch& branch) {
        if (branches_.empty() || branches_.front().target != at) return false;
        std::pop_heap(branches_.begin(), branches_.end(), Later());
        branch = branches_.back();
        branches_.pop_back();
        return true;
    }

    // Reads one tail and answers the position behind it, 0 when it is damaged.
    std::size_t Tail(std::size_t at, const Branch& branch) {
        Beginnings::Key key = branch.key;
        for (bool first = true;; first = false) {
            const std::uint32_t unit = At(at);
            if (unit == 0 || IsMarker(unit)) return 0;
            const auto position = static_cast<std::uint32_t>(at);
            Branch next = branch;
            if (first) {
                if (key.Length() == 0) NoteTop(unit, position);
                if (!sink_.BeginTail(position, static_cast<Unit>(unit), branch)) return 0;
            } else {
                next = {0, sink_.FamilyBefore(position), 0, key};
                sink_.Character(position, static_cast<Unit>(unit));
            }
            at += sizeof(Unit);
            if (At(at) == kAlternative) {
                if (!Open(next, image_.Target(at))) return 0;
                at += image_.widths.Jump();
            }
            if (key.Length() < Beginnings::kBoth) Lengthen(key, unit);
            const std::uint32_t mark = At(at);
            if (mark != kGoesOn && mark != kWordEnds) continue;
            if (!image_.HasHandle(at)) return 0;
            sink_.Word(image_.Handle(at), mark == kWordEnds);
            at += image_.widths.Mark();
            if (mark == kGoesOn) continue;
            if (key.Length() < Beginnings::kFirst) sink_.ShortEnd(key);
            return at;
        }
    }

    void Lengthen(Beginnings::Key& key, std::uint32_t unit) {
        key.Add(unit);
        if (key.Length() == Beginnings::kFirst) key.GoOnFrom(sink_.First(key));
        if (key.Length() == Beginnings::kBoth) sink_.Both(key);
    }

    bool Open(Branch& next, std::size_t target) {
        if (target == 0) return false;
        next.target = static_cast<std::uint32_t>(target);
        ++next.rank;
        branches_.push_back(next);
        std::push_heap(branches_.begin(), branches_.end(), Later());
        return true;
    }

    void NoteTop(std::uint32_t unit, std::uint32_t position) noexcept {
        if (HasJump(unit)) tops_[unit - 'a'] = position;
    }
    // An entry is empty, or leads to the alternative of its letter.
    [[nodiscard]] bool JumpsAreRight() const noexcept {
        for (std::uint32_t letter = 'a'; letter <= 'z'; ++letter) {
            const std::uint32_t entry = image_.JumpEntry(letter);
            if (entry != 0 && entry != tops_[letter - 'a']) return false;
        }
        return true;
    }

    const View& image_;
    Sink& sink_;
    std::vector<Branch, platform::Allocator<Branch>> branches_;  // a heap, the next target in front
    std::uint32_t tops_[26] = {};
};

}  // namespace zelkor::detail::complist

#endif
