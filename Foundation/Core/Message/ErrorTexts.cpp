// CT_ErrorManager: messages and descriptions that fill a string.
#include "Foundation/Core/Error/ErrorManager.h"
#include "Foundation/Core/Error/Internal/HResult.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/ErrorInfo.h"
#include "Foundation/Platform/Memory.h"

namespace platform = zelkor::platform;

void CT_ErrorManager::v_GetErrorMessage(CT_UString& message) const {
    message.v_Set(qcuz_GetErrorMessage());
}

void CT_ErrorManager::sv_GetHRESULTDescription(HRESULT hresult, CT_UString& description) {
    char16_t area[1024];
    zelkor::detail::DescribeHResult(hresult, area);
    description.v_Set(area);
}

void CT_ErrorManager::sv_GetCOMErrorDescription(HRESULT hresult, CT_UString& description) {
    description.vv_Init();
    if (hresult >= 0) return;
    char16_t* const object = platform::TakeErrorInfo();
    if (object == nullptr) return sv_GetHRESULTDescription(hresult, description);
    try {
        description.v_Set(object);
    } catch (...) {
        platform::Free(object);
        throw;
    }
    platform::Free(object);
}
