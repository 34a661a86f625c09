// HeapObject: makes instances of a class come from the memory manager's heap instead of the
// process-wide operator new. PoolObject: makes them come from the pool that the class hands out as
// its spso_GetMemPool(); those of a derived class that is larger come from the heap. Add no fields.
// Exhausted memory throws CT_SmartHeapException, whatever handler the memory manager has.
#ifndef FOUNDATION_CORE_BASE_HEAPOBJECT_H
#define FOUNDATION_CORE_BASE_HEAPOBJECT_H

#include <cstddef>

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Memory.h"

namespace zelkor::detail {

// Has the memory manager's handler hear of exhausted memory, and throws when that does not.
[[noreturn]] ZELKOR_API void ReportExhausted();

// A class's operator new and delete: a block of its pool, or of the heap for an object of a derived
// class that is larger.
[[nodiscard]] inline void* NewObject(_SHI_Pool& pool, std::size_t size) {
    void* const block =
        size <= pool.size ? platform::AllocateBlock(&pool) : platform::Allocate(size);
    if (block == nullptr) ReportExhausted();
    return block;
}
inline void DeleteObject(_SHI_Pool& pool, void* block, std::size_t size) noexcept {
    size <= pool.size ? platform::FreeBlock(&pool, block) : platform::Free(block);
}

struct HeapObject {
    static void* operator new(std::size_t size) {
        void* const block = platform::Allocate(size);
        if (block == nullptr) ReportExhausted();
        return block;
    }
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* block) noexcept { platform::Free(block); }
};

template <typename Class>
struct PoolObject {
    static void* operator new(std::size_t size) {
        return NewObject(*Class::spso_GetMemPool(), size);
    }
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* block, std::size_t size) noexcept {
        DeleteObject(*Class::spso_GetMemPool(), block, size);
    }
    static void operator delete(void*, void*) noexcept {}
};

}  // namespace zelkor::detail

#endif
