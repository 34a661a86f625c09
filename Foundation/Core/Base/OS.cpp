#include "Foundation/Core/Base/OS.h"

#include <algorithm>
#include <iterator>

#include "Foundation/Platform/System.h"

namespace platform = zelkor::platform;

namespace {

// What start-up found; all zero before.
struct State {
    CT_OS::et_OS version = CT_OS::NotClassified;
    platform::SystemVersion system{.family = 0};
};
constinit State state;

constexpr unsigned int kOldFamilies[] = {0, 1, 3};  // their build number is a 16-bit one

CT_OS::et_OS ClassifyNT(unsigned int major, unsigned int minor) {
    if (major != 5) return CT_OS::WindowsNT;
    return minor == 0 ? CT_OS::Windows2000 : CT_OS::WindowsXP;
}

CT_OS::et_OS Classify(const platform::SystemVersion& system) {
    switch (system.family) {
        case 0:
            return CT_OS::Win32s;
        case 1:
            if (system.minor != 0) return CT_OS::Windows98;
            return (system.build & 0xFFFF) == 1111 ? CT_OS::Windows95OSR2 : CT_OS::Windows95;
        case 2:
            return ClassifyNT(system.major, system.minor);
        case 3:
            return CT_OS::WindowsCE;
        default:
            return CT_OS::WindowsNT;
    }
}

bool IsOneOf(CT_OS::et_OS first, CT_OS::et_OS last) {
    return state.version >= first && state.version <= last;
}

}  // namespace

// A query that fails leaves the newest generation without numbers: the library then speaks UTF-16
// to the platform, which every system that can run it understands.
void CT_OS::sv_Init() {
    platform::SystemVersion system;
    if (!platform::QuerySystemVersion(&system)) system = platform::SystemVersion{};
    state.version = Classify(system);
    if (std::ranges::find(kOldFamilies, system.family) != std::end(kOldFamilies)) {
        system.build &= 0xFFFF;
    }
    system.text[std::size(system.text) - 1] = 0;
    state.system = system;
}

CT_OS::et_OS CT_OS::seo_GetVersion() {
    return state.version;
}
unsigned int CT_OS::sn_GetOsVersionMajor() {
    return state.system.major;
}
unsigned int CT_OS::sn_GetOsVersionMinor() {
    return state.system.minor;
}
unsigned int CT_OS::sn_GetOsVersionBuild() {
    return state.system.build;
}
const char16_t* CT_OS::sqcuz_GetOsVersionString() {
    return state.system.text;
}

BOOL CT_OS::sb_GetIsWindows32s() {
    return IsOneOf(Win32s, Win32s);
}
BOOL CT_OS::sb_GetIsWindows95() {
    return IsOneOf(Windows95, Windows98);
}
BOOL CT_OS::sb_GetIsWindows95OSR2() {
    return IsOneOf(Windows95OSR2, Windows95OSR2);
}
BOOL CT_OS::sb_GetIsWindows98() {
    return IsOneOf(Windows98, Windows98);
}
BOOL CT_OS::sb_GetIsWindowsMe() {
    return FALSE;
}
BOOL CT_OS::sb_GetIsWindowsCE() {
    return IsOneOf(WindowsCE, WindowsCE);
}
BOOL CT_OS::sb_GetIsWindowsNT() {
    return IsOneOf(WindowsNT, WindowsXP);
}
BOOL CT_OS::sb_GetIsWindows2K() {
    return IsOneOf(Windows2000, Windows2000);
}
BOOL CT_OS::sb_GetIsWindowsXP() {
    return IsOneOf(WindowsXP, WindowsXP);
}

void zelkor::detail::ClassifySystemAgain() {
    CT_OS::sv_Init();
}
