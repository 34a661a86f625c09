// HeapObject: makes instances of a class come from the memory manager's heap instead of the
// process-wide operator new. PoolObject: makes them come from the pool that the class hands out as
// its spso_GetMemPool(); those of a derived class that is larger come from the heap. Add no fields.
#ifndef FOUNDATION_CORE_BASE_HEAPOBJECT_H
#define FOUNDATION_CORE_BASE_HEAPOBJECT_H

#include <cstddef>

#include "Foundation/Platform/Memory.h"

namespace zelkor::detail {

struct HeapObject {
    // Exhausted memory throws CT_SmartHeapException.
    static void* operator new(std::size_t size) { return platform::Allocate(size); }
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* block) noexcept { platform::Free(block); }
};

template <typename Class>
struct PoolObject {
    // Exhausted memory throws CT_SmartHeapException.
    static void* operator new(std::size_t size) {
        _SHI_Pool* const pool = Class::spso_GetMemPool();
        return size <= pool->size ? platform::AllocateBlock(pool) : platform::Allocate(size);
    }
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* block, std::size_t size) noexcept {
        _SHI_Pool* const pool = Class::spso_GetMemPool();
        size <= pool->size ? platform::FreeBlock(pool, block) : platform::Free(block);
    }
    static void operator delete(void*, void*) noexcept {}
};

}  // namespace zelkor::detail

#endif
