#include "Foundation/Platform/System.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/sysinfo.h>
#include <sys/utsname.h>
#include <unistd.h>
#if defined(__i386__) || defined(__x86_64__)
#include <cpuid.h>
#endif

#include <algorithm>
#include <atomic>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "Foundation/Platform/CodePages/CodePages.h"
#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Text/Utf.h"

namespace zelkor::platform {

namespace {

constinit SystemAnswers given;

// Copies ASCII text, cut to fit with its zero.
void CopyAscii(std::string_view text, char16_t* out, std::size_t capacity) noexcept {
    const std::size_t length = std::min(text.size(), capacity - 1);
    std::transform(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length), out,
                   [](char byte) { return static_cast<char16_t>(byte & 0x7F); });
    out[length] = 0;
}

// "6.1.25-amd64" gives 60125: each number of the release has two digits, but for the first.
std::uint32_t ReleaseNumber(const char* release) noexcept {
    unsigned major = 0;
    unsigned minor = 0;
    unsigned patch = 0;
    std::sscanf(release, "%u.%u.%u", &major, &minor, &patch);
    return major * 10000 + std::min(minor, 99u) * 100 + std::min(patch, 99u);
}

// The first bytes of a small system file, zero-terminated; the empty text when it cannot be read.
template <std::size_t kSize>
const char* ReadStart(const char* file_name, char (&text)[kSize]) noexcept {
    const int file = open(file_name, O_RDONLY | O_CLOEXEC);
    const ssize_t length = file < 0 ? 0 : read(file, text, kSize - 1);
    if (file >= 0) close(file);
    text[length > 0 ? length : 0] = '\0';
    return text;
}

// Those of the process's first thread, whatever the calling one has chosen for itself.
std::uint32_t ProcessorCount() noexcept {
    cpu_set_t usable[8];  // 8192 processors
    if (sched_getaffinity(getpid(), sizeof usable, usable) == 0) {
        return static_cast<std::uint32_t>(CPU_COUNT_S(sizeof usable, usable));
    }
    const long online = sysconf(_SC_NPROCESSORS_ONLN);
    return online > 0 ? static_cast<std::uint32_t>(online) : 0;
}

#if defined(__i386__) || defined(__x86_64__)
// The family that the processor's first feature word names. It does not change while the process
// runs, and asking again would be slow on a virtual machine.
std::uint32_t ProcessorFamily() noexcept {
    static constinit std::atomic<std::uint32_t> known{0};
    std::uint32_t family = known.load(std::memory_order_relaxed);
    unsigned int word = 0, other[3];
    if (family != 0 || __get_cpuid(1, &word, &other[0], &other[1], &other[2]) == 0) return family;
    family = word >> 8 & 0xF;
    if (family == 0xF) family += word >> 20 & 0xFF;
    known.store(family, std::memory_order_relaxed);
    return family;
}
#endif

// Bytes that programs could still have without swapping; old kernels tell only what is free.
std::uint64_t AvailableMemory(const struct sysinfo& system) noexcept {
    char text[512];
    const char* const line = std::strstr(ReadStart("/proc/meminfo", text), "MemAvailable:");
    std::uint64_t kibibytes = 0;
    if (line != nullptr && std::sscanf(line, "MemAvailable: %" SCNu64, &kibibytes) == 1) {
        return kibibytes * 1024;
    }
    return (std::uint64_t{system.freeram} + system.bufferram) * system.mem_unit;
}

// Bytes of address space: the user half of the processor's, or the limit set for the process.
std::uint64_t AddressSpace() noexcept {
    const std::uint64_t whole =
        sizeof(void*) == 8 ? std::uint64_t{1} << 47 : std::uint64_t{3} << 30;
    rlimit limit{};
    if (getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) return whole;
    return std::min<std::uint64_t>(limit.rlim_cur, whole);
}

std::uint64_t AddressSpaceUsed() noexcept {
    char text[128];
    std::uint64_t pages = 0;
    std::sscanf(ReadStart("/proc/self/statm", text), "%" SCNu64, &pages);
    return pages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

}  // namespace

void SetSystemAnswers(const SystemAnswers& answers) noexcept {
    given = answers;
}

bool QuerySystemVersion(SystemVersion* version) noexcept {
    if (given.version != nullptr) return given.version(version);
    *version = SystemVersion{2, 10, 0, 0, {}};
    utsname system{};
    if (uname(&system) != 0) return true;
    version->build = ReleaseNumber(system.release);
    CopyAscii(system.release, version->text, std::size(version->text));
    return true;
}

ProcessorInfo QueryProcessors() noexcept {
    if (given.processors != nullptr) return given.processors();
    ProcessorInfo info{ProcessorCount(), false, 0, 0};
#if defined(__i386__) || defined(__x86_64__)
    info.x86 = true;
    info.level = ProcessorFamily();
    if (info.level >= 3 && info.level <= 5) info.type = info.level * 100 + 86;
#endif
    return info;
}

MemoryStatus QueryMemory(std::uint32_t parts) noexcept {
    if (given.memory != nullptr) return given.memory();
    MemoryStatus status{};
    status.virtual_total = AddressSpace();
    if ((parts & kMemoryAddresses) != 0) {
        status.virtual_available =
            status.virtual_total - std::min(status.virtual_total, AddressSpaceUsed());
    }
    struct sysinfo system;
    if ((parts & (kMemoryTotals | kMemoryAvailable)) == 0 || sysinfo(&system) != 0) return status;
    const std::uint64_t total = std::uint64_t{system.totalram} * system.mem_unit;
    status.physical_total = total;
    status.paging_total = total + std::uint64_t{system.totalswap} * system.mem_unit;
    if ((parts & kMemoryAvailable) == 0 || total == 0) return status;
    status.physical_available = std::min(AvailableMemory(system), total);
    status.paging_available =
        status.physical_available + std::uint64_t{system.freeswap} * system.mem_unit;
    status.load = static_cast<std::uint32_t>(100 * (total - status.physical_available) / total);
    return status;
}

bool ComputerName(char16_t* name, std::uint32_t capacity) noexcept {
    if (given.computer_name != nullptr) return given.computer_name(name, capacity);
    constexpr std::size_t kLongestName = 15;
    if (capacity != 0) *name = 0;
    char host[256] = {};
    if (gethostname(host, sizeof host - 1) != 0) {
        SetLastError(kErrorGenFailure);
        return false;
    }
    char16_t label[kLongestName];
    const std::size_t length =
        Utf8ToUtf16(host, std::strcspn(host, "."), label, kLongestName).written;
    if (length == 0 || length >= capacity) {
        SetLastError(length >= capacity ? kErrorInsufficientBuffer : kErrorGenFailure);
        return false;
    }
    std::copy_n(label, length, name);
    name[length] = 0;
    return true;
}

int SystemMetric(int index) noexcept {
    if (given.metric != nullptr) return given.metric(index);
    constexpr int kDbcsEnabled = 42;
    constexpr int kNetwork = 63;
    constexpr int kMidEastEnabled = 74;
    constexpr std::uint32_t kHebrewPage = 1255, kArabicPage = 1256;
    if (index == kDbcsEnabled) {
        CodePageInfo page{};
        return GetCodePageInfo(0, &page) && page.lead_bytes[0] != 0 ? 1 : 0;
    }
    if (index == kMidEastEnabled) {
        return AnsiCodePage() == kHebrewPage || AnsiCodePage() == kArabicPage ? 1 : 0;
    }
    return index == kNetwork ? 1 : 0;
}

std::uint32_t CurrentProcessId() noexcept {
    return static_cast<std::uint32_t>(getpid());
}

}  // namespace zelkor::platform
