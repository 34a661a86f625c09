// The character tree, and the standard library's tree.
#include <map>

#include "Foundation/Core/Container/AlphaTree.h"
#include "benchmarks/CompListBench.h"

namespace bench {
namespace {

class Tree : public Dictionary {
public:
    void Build(const WordSet& words) override {
        std::uint32_t handle = 0;
        for (std::size_t i = 0; i < words.Size(); ++i) tree_.v_Add(words.utf16.At(i), handle++);
    }
    std::size_t Find(const WordSet& words) const override {
        std::size_t found = 0;
        for (std::size_t i = 0; i < words.Size(); ++i) {
            found += tree_.n_Search(words.utf16.At(i)) != CT_AlphaTree::kNotFound ? 1 : 0;
        }
        return found;
    }
    std::size_t StoredBytes() const override { return 0; }
    std::size_t Bytes() const override { return tree_.Bytes(); }

private:
    CT_AlphaTree tree_;
};

class Map : public Dictionary {
public:
    void Build(const WordSet& words) override {
        std::uint32_t handle = 0;
        for (std::size_t i = 0; i < words.Size(); ++i) {
            map_.emplace(words.utf16.View(i), handle++);
        }
    }
    std::size_t Find(const WordSet& words) const override {
        std::size_t found = 0;
        for (std::size_t i = 0; i < words.Size(); ++i) found += map_.count(words.utf16.View(i));
        return found;
    }
    std::size_t StoredBytes() const override { return 0; }
    // The nodes with the tree's four fields and the heap's 8 bytes, and the longer texts.
    std::size_t Bytes() const override {
        std::size_t bytes = 0;
        for (const auto& [word, handle] : map_) {
            bytes += sizeof(std::pair<const std::u16string, std::uint32_t>) + 40;
            if (word.size() > 7) bytes += (2 * word.size() + 2 + 8 + 15) / 16 * 16;
        }
        return bytes;
    }

private:
    std::map<std::u16string, std::uint32_t, std::less<>> map_;
};

const DictionaryEntry kTree("alphatree", []() -> std::unique_ptr<Dictionary> {
    return std::make_unique<Tree>();
});
const DictionaryEntry kMap("map",
                           []() -> std::unique_ptr<Dictionary> { return std::make_unique<Map>(); });

}  // namespace
}  // namespace bench
