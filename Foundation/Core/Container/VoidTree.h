// CT_VoidTree: a tree of texts, one node a character, that keeps a copy of an item of one byte size
// with each.
//
// Units: item sizes are bytes. Keys are zero-terminated UTF-16 texts, compared unit by unit; null
// counts as the empty text, which is a key like any other. Items are copied byte for byte.
// Cost: an operation takes time in the key's length, times the children that it passes over at each
// node: they stand in the order of their creation and are looked through one by one. Keys may be of
// any length. Nodes and items come from two pools of the tree's own, which grow as it does, use
// again what removing leaves, and go when the last key goes.
// Errors: records none. Running out of memory throws CT_SmartHeapException and leaves the tree as
// it was.
// Threads: one object, one thread at a time for changes; any number of threads may search a tree
// that none of them changes. Debug printing is one at a time for all trees.
#ifndef FOUNDATION_CORE_CONTAINER_VOIDTREE_H
#define FOUNDATION_CORE_CONTAINER_VOIDTREE_H

#include <cstddef>
#include <cstdint>

#include "Foundation/Core/Container/CharTree.h"
#include "Foundation/Core/Container/PlainArray.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_UString;

class ZELKOR_API CT_VoidTree {
public:
    enum et_ElementSize : unsigned int { kOneByte = 1, kTwoBytes = 2, kFourBytes = 4 };
    // Is given a key and its item, for as long as the call; it must not change the tree.
    using DebugPrint = void (*)(void* key, void* item);

    explicit CT_VoidTree(unsigned int itemSize) noexcept;
    CT_VoidTree(const CT_VoidTree&) = delete;
    CT_VoidTree& operator=(const CT_VoidTree&) = delete;
    ~CT_VoidTree() = default;

    // Removes all keys. As making a tree does, it resets the debug routine of all trees.
    void v_Set() noexcept;

    // Keeps a copy of the item with the key; it takes the place of one that is there. The item must
    // not lie in this tree. A null item keeps nothing.
    void v_Add(const char16_t* key, const void* item);
    void v_Add(const CT_UString* key, const void* item);

    // Whether the key is there; its item is copied to `out`, which may be null. `out` stays as it
    // was when the key is absent.
    BOOL b_Search(const char16_t* key, void* out) const;
    BOOL b_Search(const CT_UString* key, void* out) const;

    // Whether the key was there and is gone now, with every node that only it needed, up to one
    // that leads to another key or holds an item. A key that comes back stands behind its siblings.
    BOOL b_Remove(const char16_t* key) noexcept;
    BOOL b_Remove(const CT_UString* key) noexcept;

    // Number of keys, known at any time.
    [[nodiscard]] unsigned int n_Entries() const noexcept { return tree_.Entries(); }

    // Calls the debug routine for every key of 1 to 255 characters, in the order of the tree: a key
    // before those that continue it, children as they stand. The size is ignored.
    void v_DebugPrint(et_ElementSize size = kTwoBytes) const;
    // Sets the debug routine of all trees; null is the default one, which writes "%s: %p\n" with
    // key and item to the output that all trees share.
    static void v_SetDebugPrint(DebugPrint routine) noexcept;
    // Sets that output up, as CT_TestOut::v_Set.
    static void v_SetDebugPrint(const char16_t* file, const char16_t* label,
                                unsigned int outputType);
    static void sv_DebugPrintDefault(void* key, void* item);

private:
    [[nodiscard]] std::byte* Item(std::uint32_t number) noexcept;
    [[nodiscard]] const std::byte* Item(std::uint32_t number) const noexcept;

    zelkor::detail::CharTree tree_;  // the payload is the item's number
    std::uint32_t item_size_;
    std::uint32_t unused_ = zelkor::detail::CharTree::kNone;  // item, holding the next one's
    zelkor::detail::PlainArray<std::byte> items_;
};

#endif
