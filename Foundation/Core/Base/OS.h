// CT_OS: the platform's generation, classified once at start-up.
//
// The library asks one question: a version below 7 is the older family, which sees 8-bit text.
// Errors: records none. Threads: written during start-up only, read by all without a lock.
#ifndef FOUNDATION_CORE_BASE_OS_H
#define FOUNDATION_CORE_BASE_OS_H

#include "Foundation/Core/Base/Init.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

namespace zelkor::detail {
// Test seam: classifies again what platform::QuerySystemVersion answers now.
ZELKOR_API void ClassifySystemAgain();
}  // namespace zelkor::detail

class ZELKOR_API CT_OS {
public:
    enum et_OS {
        NotClassified = 0,  // before start-up
        Win32s = 1,
        Windows95 = 2,
        Windows95OSR2 = 3,
        Windows98 = 4,  // and Me
        WindowsCE = 5,
        WindowsNT = 7,  // also everything later than 5.2
        Windows2000 = 8,
        WindowsXP = 9,
    };

    [[nodiscard]] static et_OS seo_GetVersion();
    [[nodiscard]] static unsigned int sn_GetOsVersionMajor();
    [[nodiscard]] static unsigned int sn_GetOsVersionMinor();
    // Cut to its low 16 bits on every family but NT.
    [[nodiscard]] static unsigned int sn_GetOsVersionBuild();
    // The platform's additional version text, at most 127 units; valid as long as the library.
    [[nodiscard]] static const char16_t* sqcuz_GetOsVersionString();

    [[nodiscard]] static BOOL sb_GetIsWindows32s();
    [[nodiscard]] static BOOL sb_GetIsWindows95();  // every platform of that family: 2, 3 and 4
    [[nodiscard]] static BOOL sb_GetIsWindows95OSR2();
    [[nodiscard]] static BOOL sb_GetIsWindows98();
    [[nodiscard]] static BOOL sb_GetIsWindowsMe();  // never: Me counts as 98
    [[nodiscard]] static BOOL sb_GetIsWindowsCE();
    [[nodiscard]] static BOOL sb_GetIsWindowsNT();  // 7, 8 and 9
    [[nodiscard]] static BOOL sb_GetIsWindows2K();
    [[nodiscard]] static BOOL sb_GetIsWindowsXP();

private:
    static void sv_Init();
    static CT_Init sco_Init;
    friend void zelkor::detail::ClassifySystemAgain();
};

#endif
