// Word lists that are measured beside each other.
#ifndef BENCHMARKS_COMPLISTBENCH_H
#define BENCHMARKS_COMPLISTBENCH_H

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

// Words behind each other in memory, each zero-terminated, so that reading them costs all
// dictionaries the same.
template <typename Unit>
class Packed {
public:
    void Append(std::basic_string_view<Unit> word) {
        starts_.push_back(text_.size());
        text_.append(word);
        text_.push_back(0);
    }
    std::size_t Size() const { return starts_.size(); }
    const Unit* At(std::size_t i) const { return text_.data() + starts_[i]; }
    std::basic_string_view<Unit> View(std::size_t i) const {
        const std::size_t end = i + 1 < starts_.size() ? starts_[i + 1] : text_.size();
        return {At(i), end - starts_[i] - 1};
    }

private:
    std::basic_string<Unit> text_;
    std::vector<std::size_t> starts_;
};

// The same words in both encodings.
struct WordSet {
    Packed<char> utf8;
    Packed<char16_t> utf16;

    std::size_t Size() const { return utf8.Size(); }
};

// One kind of dictionary. A word's handle is its place in the set.
class Dictionary {
public:
    virtual ~Dictionary() = default;
    // From words in memory, to what can be searched and stored.
    virtual void Build(const WordSet& words) = 0;
    // How many of the words are there.
    virtual std::size_t Find(const WordSet& words) const = 0;
    // Bytes of what can be stored, and of all that it holds in memory.
    virtual std::size_t StoredBytes() const = 0;
    virtual std::size_t Bytes() const = 0;
};

using MakeDictionary = std::unique_ptr<Dictionary> (*)();

// Registers a dictionary for all lists; a static object of this type does it.
struct DictionaryEntry {
    DictionaryEntry(const char* name, MakeDictionary make);
};

}  // namespace bench

#endif
