// DllMain: the library's entry point for the loader's notifications. CT_BasisDLLMain: what the
// library knows about its own module.
//
// The values are written while the library is loaded, or by the sv_Set operations, and read without
// a lock. Before that the name is empty, the instance null, version and build are 0.
#ifndef FOUNDATION_MODULE_DLLMAIN_H
#define FOUNDATION_MODULE_DLLMAIN_H

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_ModuleVersion;
class CT_UString;

class ZELKOR_API CT_BasisDLLMain {
public:
    [[nodiscard]] static HINSTANCE sh_GetInstance();
    static void sv_SetInstance(HINSTANCE instance);
    // Full path of the library's file.
    [[nodiscard]] static const CT_UString* spcco_GetModuleName();
    // Sets the name, and with it build 615 and version 7. A null name is empty.
    static void sv_SetModuleName(const char16_t* name);
    [[nodiscard]] static unsigned int sn_GetVersion();
    [[nodiscard]] static unsigned int sn_GetBuild();
    // The attached version object and its product version. Nothing attaches one: both are null.
    [[nodiscard]] static const CT_ModuleVersion* spcco_GetVersion();
    [[nodiscard]] static const CT_UString* spcco_GetProductVersion();

    CT_BasisDLLMain() = delete;
    CT_BasisDLLMain& operator=(const CT_BasisDLLMain&) { return *this; }

private:
    static HINSTANCE sh_Instance;
    static CT_UString sco_ModuleName;
    static unsigned int sn_Version;
    static unsigned int sn_Build;
    static CT_ModuleVersion* spco_Version;
};

// Reasons of a notification.
inline constexpr unsigned int kProcessDetach = 0;
inline constexpr unsigned int kProcessAttach = 1;
inline constexpr unsigned int kThreadAttach = 2;
inline constexpr unsigned int kThreadDetach = 3;

// Attaching records the module's path, version and build, makes it the default source of message
// resources and allocates the thread slot of CT_Thread; FALSE when there is no slot, after two
// texts to the debugger output. Detaching frees the slot. All else does nothing and answers TRUE.
//
// The library calls it itself when it is loaded and unloaded. The loader of a POSIX system cannot
// be told to refuse a library, so an attach that answers FALSE ends the process there, through
// platform::EndProcess: a library that runs without its slot would fail later and elsewhere.
extern "C" ZELKOR_API BOOL DllMain(HINSTANCE instance, unsigned int reason, void* reserved);

#endif
