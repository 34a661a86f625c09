#include "Foundation/Module/DLLMain.h"

#include "Foundation/Core/Error/ErrorManager.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Core/Version/ModuleVersion.h"
#include "Foundation/Platform/Dialogs.h"
#include "Foundation/Platform/Modules.h"
#include "Foundation/System/Thread/Thread.h"

namespace platform = zelkor::platform;

namespace {

constexpr unsigned int kVersion = 7;
constexpr unsigned int kBuild = 615;
constexpr std::uint32_t kPathCapacity = 4096;

BOOL AttachProcess(HINSTANCE instance) {
    char16_t path[kPathCapacity];
    platform::ModuleFileName(instance, path, kPathCapacity);
    CT_BasisDLLMain::sv_SetModuleName(path);
    CT_BasisDLLMain::sv_SetInstance(instance);
    CT_ErrorManager::sv_SetInstance(instance);
    if (CT_Thread::sb_AllocTlsSlot()) return TRUE;
    platform::WriteDebugOutput(CT_BasisDLLMain::spcco_GetModuleName()->qcuz_Get());
    platform::WriteDebugOutput(u": Could not allocate TLS slot for CT_Thread * \n");
    return FALSE;
}

}  // namespace

constinit HINSTANCE CT_BasisDLLMain::sh_Instance = nullptr;
constinit unsigned int CT_BasisDLLMain::sn_Version = 0;
constinit unsigned int CT_BasisDLLMain::sn_Build = 0;
constinit CT_ModuleVersion* CT_BasisDLLMain::spco_Version = nullptr;

HINSTANCE CT_BasisDLLMain::sh_GetInstance() {
    return sh_Instance;
}

void CT_BasisDLLMain::sv_SetInstance(HINSTANCE instance) {
    sh_Instance = instance;
}

const CT_UString* CT_BasisDLLMain::spcco_GetModuleName() {
    return &sco_ModuleName;
}

void CT_BasisDLLMain::sv_SetModuleName(const char16_t* name) {
    sco_ModuleName.v_Set(name);
    sn_Build = kBuild;
    sn_Version = kVersion;
}

unsigned int CT_BasisDLLMain::sn_GetVersion() {
    return sn_Version;
}

unsigned int CT_BasisDLLMain::sn_GetBuild() {
    return sn_Build;
}

const CT_ModuleVersion* CT_BasisDLLMain::spcco_GetVersion() {
    return spco_Version;
}

const CT_UString* CT_BasisDLLMain::spcco_GetProductVersion() {
    return spco_Version != nullptr ? spco_Version->pcco_GetProductVersion() : nullptr;
}

BOOL DllMain(HINSTANCE instance, unsigned int reason, void* /*reserved*/) {
    if (reason == kProcessAttach) return AttachProcess(instance);
    if (reason == kProcessDetach) CT_Thread::sv_FreeTlsSlot();
    return TRUE;
}
