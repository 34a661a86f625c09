#include "Foundation/Core/Container/CharTree.h"

#include <bit>
#include <cstring>
#include <utility>

#include "Foundation/Core/Buffer/BufferDetail.h"

namespace foundation::detail {

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

std::uint32_t CharTree::pso_FindBranch(const st_Node& node, char16_t character) const noexcept {
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

CharTree::st_Node* CharTree::Follow(const char16_t** key) noexcept {
    return const_cast<st_Node*>(std::as_const(*this).Follow(key));
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
        const std::size_t room = length - 1 + BlockSize(found->branch_count + std::size_t{1});
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
        const std::uint32_t larger = TakeBlock(size);
        std::memcpy(&nodes_[larger], &nodes_[node->branches], count * sizeof(st_Node));
        PutBlock(node->branches, count);
        node->branches = larger;
    }
    ++node->branch_count;
    st_Node& branch = nodes_[node->branches + count];
    branch = kRoot;
    branch.character = character;
    return &branch;
}

// Unlinks a child that heads a chain of only children, and frees the chain.
void CharTree::RemoveBranch(st_Node* node, std::uint32_t branch) noexcept {
    for (st_Node chain = nodes_[branch]; chain.branch_count != 0;) {
        const std::uint32_t block = chain.branches;
        chain = nodes_[block];
        PutBlock(block, 1);
    }
    const std::size_t left = --node->branch_count;
    nodes_[branch] = nodes_[node->branches + left];
    if (left == 0) {
        PutBlock(node->branches, 1);
        node->branches = kNowhere;
    } else if (std::has_single_bit(left)) {
        Halve(node, left);
    }
}

// Goes over to a block of half the size, so that the larger one can be used again as it is. Without
// room for that the block is cut in two.
void CharTree::Halve(st_Node* node, std::size_t size) noexcept {
    const std::uint32_t old = node->branches;
    if (unused_.first[Power(size)] == kNowhere && nodes_.Room() < size) {
        PutBlock(old + static_cast<std::uint32_t>(size), size);
        return;
    }
    node->branches = TakeBlock(size);
    std::memcpy(&nodes_[node->branches], &nodes_[old], size * sizeof(st_Node));
    PutBlock(old, 2 * size);
}

// An unused block of that size, else a new one. Requires room.
std::uint32_t CharTree::TakeBlock(std::size_t size) noexcept {
    std::uint32_t& first = unused_.first[Power(size)];
    if (first == kNowhere) return static_cast<std::uint32_t>(nodes_.Extend(size));
    return std::exchange(first, nodes_[first].branches);
}

void CharTree::PutBlock(std::uint32_t block, std::size_t size) noexcept {
    nodes_[block].branches = std::exchange(unused_.first[Power(size)], block);
}

}  // namespace foundation::detail
