// marisa's trie, over UTF-8.
#include <marisa.h>

#include "benchmarks/CompListBench.h"

namespace bench {
namespace {

class Marisa : public Dictionary {
public:
    void Build(const WordSet& words) override {
        marisa::Keyset keys;
        for (std::size_t i = 0; i < words.Size(); ++i) {
            keys.push_back(words.utf8.At(i), words.utf8.View(i).size());
        }
        trie_.build(keys);
    }
    std::size_t Find(const WordSet& words) const override {
        marisa::Agent agent;
        std::size_t found = 0;
        for (std::size_t i = 0; i < words.Size(); ++i) {
            agent.set_query(words.utf8.At(i), words.utf8.View(i).size());
            found += trie_.lookup(agent) ? 1 : 0;
        }
        return found;
    }
    // Its keys have numbers of its own; a handle would take 4 bytes more.
    std::size_t StoredBytes() const override { return trie_.io_size() + 4 * trie_.size(); }
    std::size_t Bytes() const override { return trie_.total_size() + 4 * trie_.size(); }

private:
    marisa::Trie trie_;
};

const DictionaryEntry kMarisa("marisa", []() -> std::unique_ptr<Dictionary> {
    return std::make_unique<Marisa>();
});

}  // namespace
}  // namespace bench
