// The plain compressed list: the image as a vector of bytes, each word inserted right into it. Slow
// and obvious; what the library's list is compared with.
#ifndef TESTS_CORE_COMPLIST_PLAINCOMPLIST_H
#define TESTS_CORE_COMPLIST_PLAINCOMPLIST_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace test {

class PlainCompList {
public:
    // A word as element values, without the terminating zero.
    using Word = std::u16string;

    PlainCompList(unsigned element_size, unsigned handle_size, bool empty_string, bool long_offset)
        : element_(element_size),
          handle_(handle_size),
          offset_(long_offset ? 4 : 2),
          image_(132 + element_size, 0) {
        SetNumber(0, 4, 19970101);
        SetNumber(4, 4, 132 + element_size);
        SetNumber(12, 4, 0xFFFFFFFF);
        SetNumber(125, 1, element_size);
        SetNumber(126, 1, handle_size);
        SetNumber(127, 2, (empty_string ? 1 : 0) | (long_offset ? 2 : 0) | 0x100);
        SetNumber(132, 1, 25);
    }

    bool Add(const Word& word, std::uint32_t handle) {
        if (word.empty() && (image_[127] & 1) == 0) return false;
        if (word.find_first_of(Word{10, 13, 25, 26}) != Word::npos) return false;
        const PlainCompList before = *this;
        if (word.empty()) SetNumber(12, 4, handle);
        if (!word.empty() && !Insert(word, handle)) {
            *this = before;
            return false;
        }
        SetNumber(120, 4, Number(120, 4) + 1);
        return true;
    }

    // The handle or 0xFFFFFFFF; `matched` as the library's search gives it.
    std::uint32_t Search(const Word& word, std::uint32_t& matched) const {
        matched = 0;
        if (word.empty()) return (image_[127] & 1) != 0 ? Number(12, 4) : 0;
        const Stop stop = Walk(word);
        if (stop.kind != Stop::kNoAlternative && stop.kind != Stop::kStreamEnd) {
            matched = static_cast<std::uint32_t>(stop.matched);
        }
        return stop.kind == Stop::kFound ? Number(stop.at + element_, handle_) : 0xFFFFFFFF;
    }

    const std::vector<std::uint8_t>& Image() const { return image_; }

private:
    struct Stop {
        enum Kind { kFound, kBeginning, kBranchEnd, kStreamEnd, kNoAlternative } kind;
        std::size_t at;  // of the mark, of the end, or behind the mismatching character
        std::size_t matched;
    };

    std::uint32_t Number(std::size_t at, unsigned width) const {
        std::uint32_t value = 0;
        for (unsigned i = 0; i < width; ++i) value |= std::uint32_t{image_[at + i]} << (8 * i);
        return value;
    }

    void SetNumber(std::size_t at, unsigned width, std::uint32_t value) {
        for (unsigned i = 0; i < width; ++i) {
            image_[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
        }
    }

    Stop Walk(const Word& word) const {
        std::size_t at = 132, i = 0;
        if (word[0] >= 'a' && word[0] <= 'z') {
            const std::size_t jump = Number(16 + 4 * (word[0] - 'a'), 4);
            if (jump != 0) at = jump;
        }
        for (;;) {
            std::uint32_t element = Number(at, element_);
            if (i == word.size()) {
                if (element == 13) at += element_ + offset_;
                element = Number(at, element_);
                return {element == 10 || element == 26 ? Stop::kFound : Stop::kBeginning, at, i};
            }
            const bool marker = element == 10 || element == 13 || element == 25 || element == 26;
            if (element == word[i] && !marker) {
                at += element_;
                ++i;
            } else if (element == 10) {
                at += element_ + handle_;
            } else if (element == 13) {
                at += element_ + offset_;
            } else if (marker) {
                return {element == 26 ? Stop::kBranchEnd : Stop::kStreamEnd, at, i};
            } else {
                at += element_;
                if (Number(at, element_) != 13) return {Stop::kNoAlternative, at, i};
                at += Number(at + element_, offset_);
            }
        }
    }

    // Opens room and moves the targets of all markers before it that lie at or behind it.
    void Open(std::size_t at, std::size_t count) {
        for (std::size_t p = 132; p < at;) {
            const std::uint32_t element = Number(p, element_);
            if (element == 13) {
                const std::size_t distance = Number(p + element_, offset_);
                if (p + distance >= at) SetOffset(p + element_, distance + count);
                p += element_ + offset_;
            } else {
                p += element_ + (element == 10 || element == 26 ? handle_ : 0);
            }
        }
        for (std::size_t jump = 16; jump < 120; jump += 4) {
            const std::uint32_t target = Number(jump, 4);
            if (target >= at) SetNumber(jump, 4, static_cast<std::uint32_t>(target + count));
        }
        image_.insert(image_.begin() + static_cast<std::ptrdiff_t>(at), count, 0);
        SetNumber(4, 4, static_cast<std::uint32_t>(image_.size()));
    }

    // False for a word that is there, or whose insertion makes an offset too large.
    bool Insert(const Word& word, std::uint32_t handle) {
        const Stop stop = Walk(word);
        if (stop.kind == Stop::kFound) return false;
        if (stop.kind == Stop::kBeginning) {
            Open(stop.at, element_ + handle_);
            SetNumber(stop.at, element_, 10);
            SetNumber(stop.at + element_, handle_, handle);
            return !overflow_;
        }
        std::size_t rest = stop.at;
        if (stop.kind == Stop::kBranchEnd) {
            SetNumber(stop.at, element_, 10);
            rest += element_ + handle_;
        } else if (stop.kind == Stop::kNoAlternative) {
            Open(stop.at, element_ + offset_);
            rest = image_.size() - element_;
        }
        Open(rest, (word.size() - stop.matched + 1) * element_ + handle_);
        std::size_t at = rest;
        for (const char16_t unit : word.substr(stop.matched) + u'\x1A') {
            SetNumber(at, element_, unit);
            at += element_;
        }
        SetNumber(at, handle_, handle);
        if (stop.kind == Stop::kNoAlternative) {
            SetNumber(stop.at, element_, 13);
            SetOffset(stop.at + element_, rest - stop.at);
        }
        if (stop.matched == 0 && word[0] >= 'a' && word[0] <= 'z') {
            SetNumber(16 + 4 * (word[0] - 'a'), 4, static_cast<std::uint32_t>(rest));
        }
        return !overflow_;
    }

    void SetOffset(std::size_t at, std::size_t distance) {
        if (offset_ == 2 && distance > 0xFFFF) overflow_ = true;
        SetNumber(at, offset_, static_cast<std::uint32_t>(distance));
    }

    unsigned element_, handle_, offset_;
    bool overflow_ = false;
    std::vector<std::uint8_t> image_;
};

}  // namespace test

#endif
