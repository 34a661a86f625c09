#include "Foundation/Core/Container/NodeArena.h"

#include <algorithm>

#include "Foundation/Core/Container/Internal/ContainerDetail.h"

namespace zelkor::detail {

namespace {

constexpr std::size_t kFirstNodes = 8;
constexpr std::size_t kLargestChunk = 64 * 1024;
constexpr std::size_t kChunkHeader = 16;

}  // namespace

NodeArena::NodeArena(std::size_t node_size) noexcept
    : node_size_((node_size + alignof(Link) - 1) / alignof(Link) * alignof(Link)) {}

void NodeArena::Clear() noexcept {
    FreeChunks(nullptr);
    chunk_size_ = 0;
}

void NodeArena::Reset() noexcept {
    Link* first = chunks_;
    while (first->next != nullptr) first = first->next;
    FreeChunks(first);
    UseChunk(kFirstNodes * node_size_);
}

void NodeArena::FreeChunks(Link* kept) noexcept {
    while (chunks_ != kept) platform::Free(std::exchange(chunks_, chunks_->next));
    live_ = 0;
    free_ = nullptr;
    fresh_ = fresh_end_ = nullptr;
}

void NodeArena::UseChunk(std::size_t size) noexcept {
    chunk_size_ = size;
    fresh_ = reinterpret_cast<std::byte*>(chunks_) + kChunkHeader;
    fresh_end_ = fresh_ + size;
}

void NodeArena::Swap(NodeArena& other) noexcept {
    std::swap(node_size_, other.node_size_);
    std::swap(live_, other.live_);
    std::swap(free_, other.free_);
    std::swap(fresh_, other.fresh_);
    std::swap(fresh_end_, other.fresh_end_);
    std::swap(chunks_, other.chunks_);
    std::swap(chunk_size_, other.chunk_size_);
}

void NodeArena::AddChunk() {
    // Twice as many nodes as in the chunk before, as long as that stays a size the heap keeps.
    const std::size_t most = std::max(kLargestChunk / node_size_, kFirstNodes);
    const std::size_t nodes =
        chunks_ == nullptr ? kFirstNodes : std::min(chunk_size_ / node_size_ * 2, most);
    void* const chunk = platform::Allocate(kChunkHeader + nodes * node_size_);
    if (chunk == nullptr) ReportExhausted();
    chunks_ = new (chunk) Link{chunks_};
    UseChunk(nodes * node_size_);
}

}  // namespace zelkor::detail
