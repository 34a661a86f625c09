// Facts about the machine: platform version, processors, memory, computer name, metrics.
//
// Threads: queries may be made from any thread; the test seams are set while nothing else runs.
#ifndef FOUNDATION_PLATFORM_SYSTEM_H
#define FOUNDATION_PLATFORM_SYSTEM_H

#include <cstdint>

#include "Foundation/Platform/Export.h"

namespace zelkor::platform {

// The family (2 is the NT line, 1 the older one that takes 8-bit text), the numbers, and the
// additional version text.
struct SystemVersion {
    std::uint32_t family = 2;
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t build = 0;
    char16_t text[128] = {};
};

// A POSIX system answers as family 2, version 10.0, with the release number of its kernel as build
// (6.1.25 is 60125) and the release text of the kernel. FALSE, with *version all zero, only when a
// failure is forced.
ZELKOR_API bool QuerySystemVersion(SystemVersion* version) noexcept;

struct ProcessorInfo {
    std::uint32_t
        count;  // those the process may run on (its affinity, a container's set); may be 0
    bool x86;   // in its 32-bit or its 64-bit form
    std::uint32_t level;  // family of the processor as it names itself: 3, 4, 5, 6, ...
    std::uint32_t type;   // 386, 486, 586; on others 0
};
[[nodiscard]] ZELKOR_API ProcessorInfo QueryProcessors() noexcept;

// Memory of the machine, whatever share of it a container may use.
struct MemoryStatus {
    std::uint32_t load;  // percent in use
    std::uint64_t physical_total, physical_available;
    std::uint64_t virtual_total, virtual_available;  // address space of the process
    std::uint64_t paging_total, paging_available;    // physical memory and swap together
};
// What a question needs, by its cost: one system call for all totals, a small file for each other.
enum : std::uint32_t {
    kMemoryTotals = 1,
    kMemoryAvailable = 2,  // physical, paging, and the load
    kMemoryAddresses = 4,  // virtual_available
    kMemoryWhole = 7,
};
// Members outside of `parts` may be 0.
[[nodiscard]] ZELKOR_API MemoryStatus QueryMemory(std::uint32_t parts = kMemoryWhole) noexcept;

// Writes the computer's name, zero-terminated: the first 15 characters of the host name up to its
// first dot. FALSE with the last error set when it does not fit (122) or cannot be had; the text is
// then empty.
ZELKOR_API bool ComputerName(char16_t* name, std::uint32_t capacity) noexcept;

// System metrics by their usual numbers: 18 height of the Kanji window, 42 double-byte support, 63
// network present (bit 0), 73 slow machine, 74 Hebrew and Arabic support. 42 and 74 follow the ANSI
// page; no machine is slow or has a Kanji window. 0 for all others.
[[nodiscard]] ZELKOR_API int SystemMetric(int index) noexcept;

[[nodiscard]] ZELKOR_API std::uint32_t CurrentProcessId() noexcept;

// Test seam: answers given in place of the machine's own. A null member asks the machine.
struct SystemAnswers {
    bool (*version)(SystemVersion* version) = nullptr;
    ProcessorInfo (*processors)() = nullptr;
    MemoryStatus (*memory)() = nullptr;
    bool (*computer_name)(char16_t* name, std::uint32_t capacity) = nullptr;
    int (*metric)(int index) = nullptr;
};
ZELKOR_API void SetSystemAnswers(const SystemAnswers& answers) noexcept;

}  // namespace zelkor::platform

#endif
