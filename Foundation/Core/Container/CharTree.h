// The tree beneath CT_VoidTree and CT_AlphaTree: one node a character, each with a 32-bit payload.
//
// The children of a node stand side by side in the order of their creation, in a block with room
// for a power of two of them; the last one takes the place of one that goes. A wide block has all
// characters in a row behind its nodes too, where they are looked for. All blocks lie in one
// array, the tree's own pool: a block is named by the place of its first node. Unused blocks are
// chained by size through their first nodes.
// Nothing here calls itself, so only memory bounds the length of a key.
#ifndef FOUNDATION_CORE_CONTAINER_CHARTREE_H
#define FOUNDATION_CORE_CONTAINER_CHARTREE_H

#include <array>
#include <cstddef>
#include <cstdint>

#include "Foundation/Core/Container/PlainArray.h"

namespace zelkor::detail {

class CharTree {
public:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;   // payload: no key ends here
    static constexpr std::size_t kLongestVisited = 255;  // characters

    // Frees everything.
    void Clear() noexcept;

    [[nodiscard]] std::uint32_t Entries() const noexcept { return entries_; }
    [[nodiscard]] std::size_t Bytes() const noexcept { return nodes_.Bytes(); }

    // The key's payload, kNone when it is not there. Null counts as the empty key here and below.
    [[nodiscard]] std::uint32_t Find(const char16_t* key) const noexcept;

    // The payload of a key, kNone of a new one; the caller sets it before the tree is used again.
    // Throws when memory runs out; nothing has changed then.
    [[nodiscard]] std::uint32_t& Insert(const char16_t* key);

    // Removes a key and the nodes that only it needed, also right below a node with a payload.
    // Answers its payload, kNone when it was not there.
    std::uint32_t Remove(const char16_t* key) noexcept;

    // visit(key, payload) for every key of 1 to kLongestVisited characters, depth first, children
    // in the order in which they stand.
    template <typename Visit>
    void ForEach(Visit visit) const;

private:
    struct st_Node {
        char16_t character;
        std::uint16_t branch_count;
        std::uint32_t payload;
        std::uint32_t branches;  // the children's block; of an unused block the next one
    };
    static constexpr std::uint32_t kNowhere = 0xFFFFFFFF;  // no block
    static constexpr std::size_t kSizes = 17;              // blocks of 1, 2, 4, ... 65536 nodes
    static constexpr std::size_t kWide = 16;               // nodes of the smallest wide block
    static constexpr st_Node kRoot{0xFFFF, 0, kNone, kNowhere};

    struct Unused {
        std::array<std::uint32_t, kSizes> first;
        Unused() noexcept { first.fill(kNowhere); }
    };

    [[nodiscard]] std::uint32_t pso_FindBranch(const st_Node& node,
                                               char16_t character) const noexcept;
    st_Node* pso_AugmentBranches(st_Node* node, char16_t character) noexcept;
    void RemoveBranch(st_Node* node, std::uint32_t branch) noexcept;
    void MoveBranches(st_Node* node, std::size_t count, std::size_t old_size,
                      std::size_t size) noexcept;
    void Halve(st_Node* node, std::size_t size) noexcept;
    void SetCharacter(std::uint32_t block, std::size_t size, std::size_t place,
                      char16_t character) noexcept;
    void SetCharacters(std::uint32_t block, std::size_t size, std::size_t count) noexcept;
    [[nodiscard]] const st_Node* Follow(const char16_t** key) const noexcept;
    // What a block of so many nodes takes of the pool, in nodes.
    [[nodiscard]] static std::size_t Units(std::size_t size) noexcept;
    [[nodiscard]] std::uint32_t TakeBlock(std::size_t size) noexcept;
    void PutBlock(std::uint32_t block, std::size_t size) noexcept;

    st_Node root_ = kRoot;
    std::uint32_t entries_ = 0;
    PlainArray<st_Node> nodes_;
    Unused unused_;  // blocks by their size's power of two
};

template <typename Visit>
void CharTree::ForEach(Visit visit) const {
    struct Level {
        std::uint32_t next;
        std::uint32_t end;
    };
    std::array<char16_t, kLongestVisited + 1> key{};
    std::array<Level, kLongestVisited> levels;
    const auto enter = [&levels](std::size_t length, const st_Node& node) {
        levels[length] = {node.branches, node.branches + node.branch_count};
    };
    enter(0, root_);
    for (std::size_t length = 0;;) {
        if (levels[length].next == levels[length].end) {
            if (length-- == 0) return;
            continue;
        }
        const st_Node& node = nodes_[levels[length].next++];
        key[length] = node.character;
        key[length + 1] = 0;
        if (node.payload != kNone) visit(key.data(), node.payload);
        if (length + 1 < kLongestVisited) enter(++length, node);
    }
}

}  // namespace zelkor::detail

#endif
