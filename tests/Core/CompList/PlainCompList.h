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
    PlainCompList(unsigned element_size, unsigned handle_size, bool empty_string, bool long_offset,
                  unsigned code_page = 0);

    // A word as element values, without the terminating zero.
    using Word = std::u16string;

    bool Add(const Word& word, std::uint32_t handle);
    // The handle or 0xFFFFFFFF; `matched` as the library's search gives it.
    std::uint32_t Search(const Word& word, std::uint32_t& matched) const;

    const std::vector<std::uint8_t>& Image() const { return image_; }

private:
    struct Stop {
        enum Kind { kFound, kBeginning, kBranchEnd, kStreamEnd, kNoAlternative } kind;
        std::size_t at;  // of the mark, of the end, or behind the mismatching character
        std::size_t matched;
    };
    Stop Walk(const Word& word) const;
    std::uint32_t Number(std::size_t at, unsigned width) const;
    void SetNumber(std::size_t at, unsigned width, std::uint32_t value);
    std::uint32_t Element(std::size_t at) const { return Number(at, element_); }
    void Open(std::size_t at, std::size_t count);
    void WriteRest(std::size_t at, const Word& word, std::size_t from, std::uint32_t handle);
    void SetJump(char16_t first, std::size_t at);

    unsigned element_;
    unsigned handle_;
    unsigned offset_;
    bool overflow_ = false;
    std::vector<std::uint8_t> image_;
};

}  // namespace test

#endif
