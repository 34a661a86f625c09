#include "Foundation/Core/Container/Iterator.h"

#include "Foundation/Core/Container/Internal/ContainerDetail.h"

namespace zelkor::detail {

namespace {

constinit _SHI_Pool pool(64, 64);  // larger iterators come from the heap

}  // namespace

void* IteratorMemory::operator new(std::size_t size) {
    return NewObject(pool, size);
}

void IteratorMemory::operator delete(void* block, std::size_t size) noexcept {
    DeleteObject(pool, block, size);
}

_SHI_Pool* IteratorMemory::spso_GetMemPool() noexcept {
    return &pool;
}

}  // namespace zelkor::detail
