// Threads of the process: their numbers and the slots in which each keeps a pointer of its own.
#ifndef FOUNDATION_PLATFORM_THREADS_H
#define FOUNDATION_PLATFORM_THREADS_H

#include <cstdint>

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

namespace zelkor::platform {

// Number of the calling thread: unique among the running threads, never 0.
[[nodiscard]] ZELKOR_API std::uint32_t CurrentThreadId() noexcept;

// A handle of the calling thread that other threads can use, and that lasts until CloseHandle, also
// beyond the thread's end. Null with the last error 4 when there is none left.
[[nodiscard]] ZELKOR_API HANDLE OpenCurrentThread() noexcept;

// A slot holds one pointer for each thread, null at first. kNoThreadSlot with the last error set
// when there is none left.
inline constexpr std::uint32_t kNoThreadSlot = 0xFFFFFFFF;
[[nodiscard]] ZELKOR_API std::uint32_t AllocateThreadSlot() noexcept;
ZELKOR_API void FreeThreadSlot(std::uint32_t slot) noexcept;
[[nodiscard]] ZELKOR_API void* ThreadSlot(std::uint32_t slot) noexcept;
ZELKOR_API bool SetThreadSlot(std::uint32_t slot, void* value) noexcept;

// Test seam: while set, AllocateThreadSlot finds no slot.
ZELKOR_API void FailThreadSlots(bool fail) noexcept;

}  // namespace zelkor::platform

#endif
