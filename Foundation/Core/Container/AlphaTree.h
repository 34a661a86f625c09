// CT_AlphaTree: a tree of texts, one node a character, with a 32-bit number for each.
//
// Units: keys are zero-terminated UTF-16 texts, compared unit by unit; null counts as the empty
// text, which is a key like any other. 0xFFFFFFFF is no value: it stands for an absent key.
// Cost: an operation takes time in the key's length, times the children that it passes over at each
// node: they stand in the order of their creation and are looked through one by one. Keys may be of
// any length. Nodes, of 12 bytes, come from a pool of the tree's own, which grows as it does, uses
// again what removing leaves, and goes when the last key goes.
// Errors: records none. Running out of memory throws CT_SmartHeapException and leaves the tree as
// it was.
// Threads: one object, one thread at a time for changes; any number of threads may search a tree
// that none of them changes.
#ifndef FOUNDATION_CORE_CONTAINER_ALPHATREE_H
#define FOUNDATION_CORE_CONTAINER_ALPHATREE_H

#include <cstddef>
#include <cstdint>

#include "Foundation/Core/Container/CharTree.h"
#include "Foundation/Core/TestOut/TestOut.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_UString;

class ZELKOR_API CT_AlphaTree {
public:
    enum et_ElementSize : unsigned int { kOneByte = 1, kTwoBytes = 2, kFourBytes = 4 };
    static constexpr std::uint32_t kNotFound = 0xFFFFFFFF;

    CT_AlphaTree() noexcept = default;
    CT_AlphaTree(const CT_AlphaTree&) = delete;
    CT_AlphaTree& operator=(const CT_AlphaTree&) = delete;
    ~CT_AlphaTree() = default;

    // Removes all keys. The output of v_DebugPrint stays as it is.
    void v_Set() noexcept;

    // Sets the value of a key, in place of one that it has. 0xFFFFFFFF removes the key.
    void v_Add(const char16_t* key, std::uint32_t value);
    void v_Add(const CT_UString* key, std::uint32_t value);

    // The key's value, 0xFFFFFFFF when it is absent.
    [[nodiscard]] std::uint32_t n_Search(const char16_t* key) const noexcept;
    [[nodiscard]] std::uint32_t n_Search(const CT_UString* key) const noexcept;

    // Whether the key was there and is gone now, with every node that only it needed, up to one
    // that leads to another key or holds a value. A key that comes back stands behind its siblings.
    BOOL b_Remove(const char16_t* key) noexcept;
    BOOL b_Remove(const CT_UString* key) noexcept;

    // Number of keys, known at any time.
    [[nodiscard]] unsigned int n_Entries() const noexcept { return tree_.Entries(); }

    // Writes "%s : %d\n" with key and value to the tree's own output, for every key of 1 to 255
    // characters, in the order of the tree: a key before those that continue it, children as they
    // stand. The size is ignored.
    void v_DebugPrint(et_ElementSize size = kTwoBytes);
    // Sets that output up, as CT_TestOut::v_Set; before, it is the standard output.
    void v_SetDebugPrint(const char16_t* file, const char16_t* label, unsigned int outputType);

    // Bytes of memory that the nodes take.
    [[nodiscard]] std::size_t Bytes() const noexcept { return tree_.Bytes(); }

private:
    zelkor::detail::CharTree tree_;
    CT_TestOut out_;
};

#endif
