#include "Foundation/Core/Container/CharTree.h"

#include <bit>
#include <cstring>
#include <utility>

#include "Foundation/Core/Base/HeapObject.h"
#include "Foundation/Platform/Scan.h"

namespace zelkor::detail {

namespace {

std::size_t Power(std::size_t size) noexcept {
    return static_cast<std::size_t>(std::countr_zero(size));
}

// Nodes that a block for so many children has.
std::size_t BlockSize(std::size_t children) noexcept {
    return std::bit_ceil(children);
}

const char16_t* Text(const char16_t* key) noexcept {
    return key == nullptr ? u"" : key;
}

}  // namespace

void CharTree::Clear() noexcept {
    root_ = kRoot;
    entries_ = 0;
    nodes_.Release();
    unused_ = Unused();
}

std::size_t CharTree::Units(std::size_t size) noexcept {
    constexpr std::size_t kNode = sizeof(st_Node);
    return size < kWide ? size : size + (size * sizeof(char16_t) + kNode - 1) / kNode;
}

std::uint32_t CharTree::pso_FindBranch(const st_Node& node, char16_t character) const noexcept {
    if (node.branch_count > kWide / 2) {
        const std::size_t size = BlockSize(node.branch_count);
        const auto* const characters =
            reinterpret_cast<const char16_t*>(&nodes_[node.branches + size]);
        const std::size_t hit = platform::FindUnit(characters, node.branch_count, character);
        return hit == platform::kNoHit ? kNowhere : node.branches + static_cast<std::uint32_t>(hit);
    }
    const st_Node* const all = nodes_.data();
    const std::uint32_t end = node.branches + node.branch_count;
    for (std::uint32_t branch = node.branches; branch != end; ++branch) {
        if (all[branch].character == character) return branch;
    }
    return kNowhere;
}

// The last node on the key's way; the key is left at the characters that lead on from there.
const CharTree::st_Node* CharTree::Follow(const char16_t** key) const noexcept {
    const st_Node* node = &root_;
    for (; **key != 0; ++*key) {
        const std::uint32_t branch = pso_FindBranch(*node, **key);
        if (branch == kNowhere) break;
        node = &nodes_[branch];
    }
    return node;
}

std::uint32_t CharTree::Find(const char16_t* key) const noexcept {
    const char16_t* rest = Text(key);
    const st_Node* const node = Follow(&rest);
    return *rest == 0 ? node->payload : kNone;
}

std::uint32_t& CharTree::Insert(const char16_t* key) {
    const char16_t* rest = Text(key);
    const st_Node* const found = Follow(&rest);
    if (*rest != 0) {
        std::size_t length = 0;
        while (rest[length] != 0) ++length;
        // The first character may need a block twice as large as the one that is full.
        const std::size_t room =
            length - 1 + Units(BlockSize(found->branch_count + std::size_t{1}));
        if (room > kNowhere - nodes_.size()) ReportExhausted();
        const std::size_t place =
            found == &root_ ? 0 : static_cast<std::size_t>(found - nodes_.data());
        nodes_.Reserve(room);
        st_Node* node = found == &root_ ? &root_ : &nodes_[place];
        for (; *rest != 0; ++rest) node = pso_AugmentBranches(node, *rest);
        ++entries_;
        return node->payload;
    }
    if (found->payload == kNone) ++entries_;
    return const_cast<st_Node*>(found)->payload;
}

std::uint32_t CharTree::Remove(const char16_t* key) noexcept {
    const char16_t* rest = Text(key);
    // The last node on the way that stays without the key, and the child that the way takes there.
    st_Node* staying = &root_;
    std::uint32_t leaving = kNowhere;
    st_Node* node = &root_;
    for (; *rest != 0; ++rest) {
        const std::uint32_t branch = pso_FindBranch(*node, *rest);
        if (branch == kNowhere) return kNone;
        if (node == &root_ || node->payload != kNone || node->branch_count > 1) {
            staying = node;
            leaving = branch;
        }
        node = &nodes_[branch];
    }
    const std::uint32_t payload = std::exchange(node->payload, kNone);
    if (payload == kNone) return kNone;
    if (--entries_ == 0) {
        Clear();
    } else if (node->branch_count == 0 && leaving != kNowhere) {
        RemoveBranch(staying, leaving);
    }
    return payload;
}

// A new last child. Requires room for a block of one more than there are.
CharTree::st_Node* CharTree::pso_AugmentBranches(st_Node* node, char16_t character) noexcept {
    const std::size_t count = node->branch_count;
    const std::size_t size = BlockSize(count + 1);
    if (count == 0) {
        node->branches = TakeBlock(size);
    } else if (size != BlockSize(count)) {
        MoveBranches(node, count, count, size);
    }
    ++node->branch_count;
    nodes_[node->branches + count] = kRoot;
    SetCharacter(node->branches, size, count, character);
    return &nodes_[node->branches + count];
}

// Takes the children to a block of another size.
void CharTree::MoveBranches(st_Node* node, std::size_t count, std::size_t old_size,
                            std::size_t size) noexcept {
    const std::uint32_t old = std::exchange(node->branches, TakeBlock(size));
    std::memcpy(&nodes_[node->branches], &nodes_[old], count * sizeof(st_Node));
    SetCharacters(node->branches, size, count);
    PutBlock(old, old_size);
}

void CharTree::SetCharacter(std::uint32_t block, std::size_t size, std::size_t place,
                            char16_t character) noexcept {
    nodes_[block + place].character = character;
    if (size < kWide) return;
    auto* const row = reinterpret_cast<std::byte*>(&nodes_[block + size]);
    std::memcpy(row + place * sizeof character, &character, sizeof character);
}

// The row behind a wide block, as its nodes say.
void CharTree::SetCharacters(std::uint32_t block, std::size_t size, std::size_t count) noexcept {
    if (size < kWide) return;
    for (std::size_t i = 0; i < count; ++i)
        SetCharacter(block, size, i, nodes_[block + i].character);
}

// Unlinks a child that heads a chain of only children, and frees the chain.
void CharTree::RemoveBranch(st_Node* node, std::uint32_t branch) noexcept {
    for (st_Node chain = nodes_[branch]; chain.branch_count != 0;) {
        const std::uint32_t block = chain.branches;
        chain = nodes_[block];
        PutBlock(block, 1);
    }
    const std::size_t left = --node->branch_count;
    const std::uint32_t place = branch - node->branches;
    nodes_[branch] = nodes_[node->branches + left];
    SetCharacter(node->branches, BlockSize(left + 1), place, nodes_[branch].character);
    if (left == 0) {
        PutBlock(node->branches, 1);
        node->branches = kNowhere;
    } else if (std::has_single_bit(left)) {
        Halve(node, left);
    }
}

// Goes over to a block of half the size, so that the larger one can be used again as it is. Without
// room for that the children stay, and a block that fits behind them is put by.
void CharTree::Halve(st_Node* node, std::size_t size) noexcept {
    if (unused_.first[Power(size)] != kNowhere || nodes_.Room() >= Units(size)) {
        MoveBranches(node, size, 2 * size, size);
        return;
    }
    SetCharacters(node->branches, size, size);
    PutBlock(node->branches + static_cast<std::uint32_t>(Units(size)),
             size < kWide ? size : size / 2);
}

// An unused block of that size, else a new one. Requires room.
std::uint32_t CharTree::TakeBlock(std::size_t size) noexcept {
    std::uint32_t& first = unused_.first[Power(size)];
    if (first == kNowhere) return static_cast<std::uint32_t>(nodes_.Extend(Units(size)));
    return std::exchange(first, nodes_[first].branches);
}

void CharTree::PutBlock(std::uint32_t block, std::size_t size) noexcept {
    nodes_[block].branches = std::exchange(unused_.first[Power(size)], block);
}

}  // namespace zelkor::detail
