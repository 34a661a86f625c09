// What the tests of compressed lists share.
#ifndef TESTS_CORE_COMPLIST_COMPLISTSUPPORT_H
#define TESTS_CORE_COMPLIST_COMPLISTSUPPORT_H

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "Core/CompList/PlainCompList.h"
#include "Foundation/Core/CompList/CompList.h"

namespace test {

using Word = PlainCompList::Word;
using Bytes = std::vector<std::uint8_t>;

inline Bytes ImageOf(const CT_CompList& list) {
    const CT_Buffer* const buffer = list.pcco_GetBuffer();
    if (buffer == nullptr) return {};
    const auto* const bytes = static_cast<const std::uint8_t*>(buffer->qcv_Get());
    return {bytes, bytes + buffer->n_GetUsedSize()};
}

inline CT_CompList Adopted(const Bytes& image) {
    // Growth 1: the block ends with the image, so that a sanitizer sees a read behind it.
    const CT_Buffer buffer(image.data(), static_cast<std::uint32_t>(image.size()), 1);
    return CT_CompList(&buffer);
}

// Calls `probe` with the image cut at every length, and with every byte of it changed in turn.
template <typename Probe>
void Damage(const Bytes& good, Probe probe) {
    for (std::size_t at = 0; at < good.size(); ++at) {
        SCOPED_TRACE(at);
        probe(Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(at)));
        for (const std::uint8_t value : Bytes{0, 1, 2, 10, 13, 25, 26, 97, 255}) {
            Bytes image = good;
            image[at] = value;
            probe(image);
        }
    }
}

// Adds in the form that fits the list.
inline BOOL Add(CT_CompList& list, const Word& word, std::uint32_t handle) {
    if (list.n_GetElementSize() == 2) return list.b_Add(word.c_str(), handle);
    return list.b_Add(std::string(word.begin(), word.end()).c_str(), handle);
}

// Words over an alphabet: short ones, and ones that branch off or continue an earlier word.
class Words {
public:
    Words(unsigned seed, Word alphabet, unsigned longest)
        : random_(seed), alphabet_(std::move(alphabet)), longest_(longest) {}

    Word Next() {
        Word word;
        if (!earlier_.empty() && random_() % 3 != 0) {
            word = earlier_[random_() % earlier_.size()];
            word.resize(random_() % (word.size() + 1));
        }
        for (auto more = random_() % longest_; more > 0; --more) {
            word += alphabet_[random_() % alphabet_.size()];
        }
        earlier_.push_back(word);
        return word;
    }

private:
    std::mt19937 random_;
    Word alphabet_;
    unsigned longest_;
    std::vector<Word> earlier_;
};

struct Shape {
    unsigned element, handle;
    bool empty_string, long_offset;

    CT_CompList New() const {
        return CT_CompList(static_cast<CT_CompList::et_ElementSize>(element), handle,
                           empty_string ? TRUE : FALSE, long_offset ? TRUE : FALSE, 128, 0);
    }
    PlainCompList Plain() const { return {element, handle, empty_string, long_offset}; }
    PlainCompList Plain(Words& words, unsigned count) const {
        PlainCompList list = Plain();
        for (unsigned i = 0; i < count; ++i) list.Add(words.Next(), i);
        return list;
    }
};

}  // namespace test

#endif
