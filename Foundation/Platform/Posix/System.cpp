#include "Foundation/Platform/System.h"

#include <sys/resource.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Nls/CodePages.h"
#include "Foundation/Platform/Nls/Utf.h"

namespace platform {

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

// Calls `use` with each line of a small system file, without its line end, until it answers false.
template <typename Use>
void EachLine(const char* file_name, Use use) noexcept {
    std::FILE* const file = std::fopen(file_name, "re");
    if (file == nullptr) return;
    char line[512];
    while (std::fgets(line, sizeof line, file) != nullptr && use(line)) {
    }
    std::fclose(file);
}

// Other processors than x86 have no such number.
[[maybe_unused]] std::uint32_t ProcessorFamily() noexcept {
    std::uint32_t family = 0;
    EachLine("/proc/cpuinfo", [&family](const char* line) {
        return std::sscanf(line, "cpu family : %" SCNu32, &family) != 1;
    });
    return family;
}

// Bytes of one entry of the system's memory table, in which numbers are KiB.
struct MemoryTable {
    std::uint64_t total = 0, available = 0, swap_total = 0, swap_free = 0;
};

MemoryTable ReadMemoryTable() noexcept {
    MemoryTable table;
    const struct {
        const char* pattern;
        std::uint64_t* value;
    } fields[] = {{"MemTotal: %" SCNu64, &table.total},
                  {"MemAvailable: %" SCNu64, &table.available},
                  {"SwapTotal: %" SCNu64, &table.swap_total},
                  {"SwapFree: %" SCNu64, &table.swap_free}};
    EachLine("/proc/meminfo", [&fields](const char* line) {
        for (const auto& field : fields) {
            if (std::sscanf(line, field.pattern, field.value) == 1) *field.value *= 1024;
        }
        return true;
    });
    return table;
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
    std::uint64_t pages = 0;
    EachLine("/proc/self/statm",
             [&pages](const char* line) { return std::sscanf(line, "%" SCNu64, &pages) != 1; });
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
    const long count = sysconf(_SC_NPROCESSORS_ONLN);
    ProcessorInfo info{count > 0 ? static_cast<std::uint32_t>(count) : 0, false, 0, 0};
#if defined(__i386__) || defined(__x86_64__)
    info.x86 = true;
    info.level = ProcessorFamily();
    if (info.level >= 3 && info.level <= 5) info.type = info.level * 100 + 86;
#endif
    return info;
}

MemoryStatus QueryMemory() noexcept {
    if (given.memory != nullptr) return given.memory();
    const MemoryTable table = ReadMemoryTable();
    MemoryStatus status{};
    status.physical_total = table.total;
    status.physical_available = std::min(table.available, table.total);
    status.paging_total = table.total + table.swap_total;
    status.paging_available = status.physical_available + table.swap_free;
    status.virtual_total = AddressSpace();
    status.virtual_available =
        status.virtual_total - std::min(status.virtual_total, AddressSpaceUsed());
    if (table.total != 0) {
        status.load = static_cast<std::uint32_t>(100 * (table.total - status.physical_available) /
                                                 table.total);
    }
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
    if (index == kDbcsEnabled) {
        CodePageInfo page{};
        return GetCodePageInfo(0, &page) && page.lead_bytes[0] != 0 ? 1 : 0;
    }
    return index == kNetwork ? 1 : 0;
}

std::uint32_t CurrentProcessId() noexcept {
    return static_cast<std::uint32_t>(getpid());
}

}  // namespace platform
