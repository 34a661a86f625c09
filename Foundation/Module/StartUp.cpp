// Everything that runs when the library is loaded and unloaded, in order: the objects of this file
// are constructed from top to bottom and destroyed from bottom to top. No other file of the library
// has static objects that need work at start-up.
#include "Foundation/Core/Base/Init.h"
#include "Foundation/Core/Base/OS.h"
#include "Foundation/Core/Base/SmartHeap.h"
#include "Foundation/Core/Error/ErrorManager.h"
#include "Foundation/Core/Exception/ExceptionManager.h"
#include "Foundation/Core/Language/LocaleInfo.h"
#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Module/DLLMain.h"
#include "Foundation/Module/Internal/StringTable.h"
#include "Foundation/Module/Internal/VersionResourceDetail.h"
#include "Foundation/Platform/Dialogs.h"
#include "Foundation/Platform/Locales/Locales.h"
#include "Foundation/Platform/Memory.h"
#include "Foundation/Platform/Modules.h"

namespace platform = zelkor::platform;

namespace {

// Last of all, the memory of the class pools goes back.
struct PoolMemory {
    ~PoolMemory() { platform::ReleasePools(); }
};
const PoolMemory pool_memory;

// The environment is read now, when no other thread can be changing it.
struct Environment {
    Environment() { platform::TakeEnvironment(); }
};
const Environment environment;

}  // namespace

// ---- Services ---------------------------------------------------------------------------------

CT_Init CT_ErrorManager::sco_Init(u"CT_ErrorManager", u"sv_Init", &CT_ErrorManager::sv_Init);
CT_Exit CT_ErrorManager::sco_Exit(u"CT_ErrorManager", u"sv_Exit", &CT_ErrorManager::sv_Exit);

CT_Init CT_ExceptionManager::sco_Init(u"CT_ExceptionManager", u"sv_Init",
                                      &CT_ExceptionManager::sv_Init);
CT_Exit CT_ExceptionManager::sco_Exit(u"CT_ExceptionManager", u"sv_Exit",
                                      &CT_ExceptionManager::sv_Exit);

CT_Init CT_SmartHeapErrorHandler::sco_Init(u"CT_SmartHeapErrorHandler", u"sv_Init",
                                           &CT_SmartHeapErrorHandler::sv_Init);
CT_Exit CT_SmartHeapErrorHandler::sco_Exit(u"CT_SmartHeapErrorHandler", u"sv_Exit",
                                           &CT_SmartHeapErrorHandler::sv_Exit);

CT_Init CT_OS::sco_Init(u"CT_OS", u"sv_Init", &CT_OS::sv_Init);

// ---- Registered types and their prototypes ----------------------------------------------------

CT_Type CT_String::sco_Type("CT_String", &CT_String::sco_Object, sizeof(CT_String));
CT_String CT_String::sco_Object(&CT_String::sco_Type);
CT_Type CT_CString::sco_Type("CT_CString", &CT_CString::sco_Object, sizeof(CT_CString));
CT_CString CT_CString::sco_Object(&CT_CString::sco_Type);
CT_Type CT_UString::sco_Type("CT_UString", &CT_UString::sco_Object, sizeof(CT_UString));
CT_UString CT_UString::sco_Object(&CT_UString::sco_Type);

// ---- Static objects of classes ------------------------------------------------------------------

CT_UString CT_BasisDLLMain::sco_ModuleName;

CT_Exit CT_LocaleInfo::sco_Exit(u"CT_LocaleInfo", u"sv_Exit", &CT_LocaleInfo::sv_Exit);

// ---- The entry point ----------------------------------------------------------------------------

namespace {

// Tells the entry point of the load and the unload.
class Loader {
public:
    Loader() : instance_(platform::ModuleOf(&pool_memory)) {
        platform::RegisterStringTable(instance_, zelkor::detail::kStringTable);
        platform::RegisterVersion(instance_, &zelkor::detail::kVersionResource);
        if (!DllMain(instance_, kProcessAttach, nullptr)) {
            platform::EndProcess("The library could not be loaded: no thread slot for CT_Thread.");
        }
    }
    // The string table stays: shut-down routines may record errors.
    ~Loader() { DllMain(instance_, kProcessDetach, nullptr); }
    Loader(const Loader&) = delete;
    Loader& operator=(const Loader&) = delete;

private:
    HINSTANCE instance_;
};
const Loader loader;

}  // namespace
