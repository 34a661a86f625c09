// HeapObject: makes instances of a class come from the memory manager's heap instead of the
// process-wide operator new. Adds no fields.
#ifndef FOUNDATION_CORE_FRAME_HEAPOBJECT_H
#define FOUNDATION_CORE_FRAME_HEAPOBJECT_H

#include <cstddef>

#include "Foundation/Platform/Memory.h"

namespace foundation::detail {

struct HeapObject {
    // Exhausted memory throws CT_SmartHeapException.
    static void* operator new(std::size_t size) { return platform::Allocate(size); }
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* block) noexcept { platform::Free(block); }
};

}  // namespace foundation::detail

#endif
