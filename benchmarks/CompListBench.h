// Word lists that are measured beside each other.
#ifndef BENCHMARKS_COMPLISTBENCH_H
#define BENCHMARKS_COMPLISTBENCH_H

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace bench {

// The same words in both encodings.
struct WordSet {
    std::vector<std::string> utf8;
    std::vector<std::u16string> utf16;
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
