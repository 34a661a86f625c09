// NodeArena: nodes of one size for one container, cut from chunks and reused through a free list.
//
// Making and freeing a node takes a few instructions; giving back all of them takes time by chunk,
// not by node. When the last node is freed all chunks but the first, small one go back to the heap.
// Running out of memory throws CT_SmartHeapException and changes nothing.
#ifndef FOUNDATION_CORE_CONTAINER_NODEARENA_H
#define FOUNDATION_CORE_CONTAINER_NODEARENA_H

#include <cstddef>
#include <new>
#include <utility>

#include "Foundation/Platform/Export.h"

namespace zelkor::detail {

class ZELKOR_API NodeArena {
public:
    explicit NodeArena(std::size_t node_size) noexcept;
    NodeArena(const NodeArena&) = delete;
    NodeArena& operator=(const NodeArena&) = delete;
    ~NodeArena() { Clear(); }

    // Aligned to a pointer.
    [[nodiscard]] void* Allocate() {
        if (free_ == nullptr && fresh_ == fresh_end_) AddChunk();
        ++live_;
        if (free_ != nullptr) return std::exchange(free_, free_->next);
        return std::exchange(fresh_, fresh_ + node_size_);
    }
    void Free(void* node) noexcept {
        if (--live_ == 0) return Reset();
        free_ = new (node) Link{free_};
    }
    // Frees all nodes and chunks.
    void Clear() noexcept;
    void Swap(NodeArena& other) noexcept;

private:
    struct Link {
        Link* next;
    };
    void AddChunk();
    // Makes the nodes of the latest chunk, `size` bytes of them, fresh.
    void UseChunk(std::size_t size) noexcept;
    // Empties the arena down to its first chunk.
    void Reset() noexcept;
    void FreeChunks(Link* kept) noexcept;

    std::size_t node_size_;
    std::size_t live_ = 0;
    Link* free_ = nullptr;
    std::byte* fresh_ = nullptr;  // nodes of the latest chunk that were never used
    std::byte* fresh_end_ = nullptr;
    Link* chunks_ = nullptr;      // the latest first
    std::size_t chunk_size_ = 0;  // bytes of nodes in the latest chunk
};

}  // namespace zelkor::detail

#endif
