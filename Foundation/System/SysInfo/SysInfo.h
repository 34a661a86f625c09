// CT_SysInfo: processors, memory, computer name and a few system settings, each asked of the
// platform at the moment of the call.
//
// Units: bytes; an amount of 4 GiB or more reads as 0xFFFFFFFF.
// Errors: only sv_GetComputerName records one. Threads: any.
#ifndef FOUNDATION_SYSTEM_SYSINFO_SYSINFO_H
#define FOUNDATION_SYSTEM_SYSINFO_SYSINFO_H

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_UString;

class ZELKOR_API CT_SysInfo {
public:
    enum et_Processor {
        Intel386 = 0,
        Intel486 = 1,
        Pentium = 2,
        PentiumPro = 3,  // family 6; told apart on Windows NT only
        OtherIntel = 4,  // any other x86, also in its 64-bit form
        NotIntel = 5,
    };

    // Processors, as the scheduler counts them, that the process may run on: its affinity and the
    // set of its container count, a share of processor time does not. At least 1.
    [[nodiscard]] static unsigned int sn_GetNumCPU();
    // At most 15 characters of it. On failure records the system error and empties the text.
    static void sv_GetComputerName(CT_UString* name);
    [[nodiscard]] static et_Processor seo_GetProcessor();

    [[nodiscard]] static BOOL sb_GetDBCSEnabled();
    [[nodiscard]] static BOOL sb_GetMidEastEnabled();
    [[nodiscard]] static BOOL sb_GetNetworkAttached();
    [[nodiscard]] static BOOL sb_GetSlowMachine();
    [[nodiscard]] static BOOL sb_GetKanjiWindow();

    // Of the machine, whatever a container may use of it. "Virtual" is the address space of the
    // process, "paging" physical memory and swap together. Totals are cheap; what is available is
    // read from the system's tables each time.
    [[nodiscard]] static unsigned int sn_GetMemoryLoad();  // percent
    [[nodiscard]] static unsigned int sn_GetPhysicalMemoryTotal();
    [[nodiscard]] static unsigned int sn_GetPhysicalMemoryAvailable();
    [[nodiscard]] static unsigned int sn_GetVirtualMemoryTotal();
    [[nodiscard]] static unsigned int sn_GetVirtualMemoryAvailable();
    [[nodiscard]] static unsigned int sn_GetPagingMemoryTotal();
    [[nodiscard]] static unsigned int sn_GetPagingMemoryAvailable();
    // All seven of one query; null outputs are skipped.
    static void sv_GetMemoryInfo(unsigned int* load, unsigned int* physicalTotal,
                                 unsigned int* physicalAvailable, unsigned int* virtualTotal,
                                 unsigned int* virtualAvailable, unsigned int* pagingTotal,
                                 unsigned int* pagingAvailable);
};

#endif
