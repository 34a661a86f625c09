#include "Foundation/System/SysInfo/SysInfo.h"

#include <algorithm>

#include "Foundation/Core/Base/OS.h"
#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/System.h"

namespace platform = zelkor::platform;

namespace {

// System metrics by their numbers.
constexpr int kKanjiWindowHeight = 18;
constexpr int kDbcsEnabled = 42;
constexpr int kNetwork = 63;
constexpr int kSlowMachine = 73;
constexpr int kMidEastEnabled = 74;

constexpr std::uint32_t kComputerNameSize = 16;

BOOL Metric(int index) {
    return platform::SystemMetric(index) != 0 ? TRUE : FALSE;
}

unsigned int Cut(std::uint64_t bytes) {
    return static_cast<unsigned int>(std::min<std::uint64_t>(bytes, 0xFFFFFFFF));
}

CT_SysInfo::et_Processor ByLevel(std::uint32_t level) {
    constexpr std::uint32_t kFirst = 3;
    constexpr std::uint32_t kLast = 6;
    if (level < kFirst || level > kLast) return CT_SysInfo::OtherIntel;
    return static_cast<CT_SysInfo::et_Processor>(level - kFirst);
}

CT_SysInfo::et_Processor ByType(std::uint32_t type) {
    switch (type) {
        case 386:
            return CT_SysInfo::Intel386;
        case 486:
            return CT_SysInfo::Intel486;
        case 586:
            return CT_SysInfo::Pentium;
        default:
            return CT_SysInfo::OtherIntel;
    }
}

}  // namespace

unsigned int CT_SysInfo::sn_GetNumCPU() {
    return std::max(platform::QueryProcessors().count, 1u);
}

void CT_SysInfo::sv_GetComputerName(CT_UString* name) {
    if (name == nullptr) return;
    char16_t text[kComputerNameSize];
    if (platform::ComputerName(text, kComputerNameSize)) return name->v_Set(text);
    zelkor::detail::RecordSystemError();
    name->vv_Init();
}

CT_SysInfo::et_Processor CT_SysInfo::seo_GetProcessor() {
    const platform::ProcessorInfo info = platform::QueryProcessors();
    if (!info.x86) return NotIntel;
    return CT_OS::seo_GetVersion() >= CT_OS::WindowsNT ? ByLevel(info.level) : ByType(info.type);
}

BOOL CT_SysInfo::sb_GetDBCSEnabled() {
    return Metric(kDbcsEnabled);
}
BOOL CT_SysInfo::sb_GetMidEastEnabled() {
    return Metric(kMidEastEnabled);
}
BOOL CT_SysInfo::sb_GetNetworkAttached() {
    return Metric(kNetwork);
}
BOOL CT_SysInfo::sb_GetSlowMachine() {
    return Metric(kSlowMachine);
}
BOOL CT_SysInfo::sb_GetKanjiWindow() {
    return platform::SystemMetric(kKanjiWindowHeight) > 0 ? TRUE : FALSE;
}

unsigned int CT_SysInfo::sn_GetMemoryLoad() {
    return platform::QueryMemory(platform::kMemoryAvailable).load;
}
unsigned int CT_SysInfo::sn_GetPhysicalMemoryTotal() {
    return Cut(platform::QueryMemory(platform::kMemoryTotals).physical_total);
}
unsigned int CT_SysInfo::sn_GetPhysicalMemoryAvailable() {
    return Cut(platform::QueryMemory(platform::kMemoryAvailable).physical_available);
}
unsigned int CT_SysInfo::sn_GetVirtualMemoryTotal() {
    return Cut(platform::QueryMemory(platform::kMemoryTotals).virtual_total);
}
unsigned int CT_SysInfo::sn_GetVirtualMemoryAvailable() {
    return Cut(platform::QueryMemory(platform::kMemoryAddresses).virtual_available);
}
unsigned int CT_SysInfo::sn_GetPagingMemoryTotal() {
    return Cut(platform::QueryMemory(platform::kMemoryTotals).paging_total);
}
unsigned int CT_SysInfo::sn_GetPagingMemoryAvailable() {
    return Cut(platform::QueryMemory(platform::kMemoryAvailable).paging_available);
}

void CT_SysInfo::sv_GetMemoryInfo(unsigned int* load, unsigned int* physicalTotal,
                                  unsigned int* physicalAvailable, unsigned int* virtualTotal,
                                  unsigned int* virtualAvailable, unsigned int* pagingTotal,
                                  unsigned int* pagingAvailable) {
    const platform::MemoryStatus status = platform::QueryMemory();
    const auto give = [](unsigned int* out, std::uint64_t value) {
        if (out != nullptr) *out = Cut(value);
    };
    give(load, status.load);
    give(physicalTotal, status.physical_total);
    give(physicalAvailable, status.physical_available);
    give(virtualTotal, status.virtual_total);
    give(virtualAvailable, status.virtual_available);
    give(pagingTotal, status.paging_total);
    give(pagingAvailable, status.paging_available);
}
