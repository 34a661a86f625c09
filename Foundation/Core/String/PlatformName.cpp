#include "Foundation/Core/String/Internal/PlatformName.h"

#include "Foundation/Core/Base/OS.h"
#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Core/String/CString.h"

namespace zelkor::detail {

bool IsOlderFamily() {
    return CT_OS::seo_GetVersion() < CT_OS::WindowsNT;
}

void PassPlatform(CT_UString* text) {
    if (!IsOlderFamily()) return;
    const bool failed_before = ErrorIsSet();
    const CT_CString narrow(text, 0);
    text->v_Set(&narrow);
    if (!failed_before && ErrorIsSet()) ClearError();
}

PlatformName::PlatformName(const CT_UString* name)
    : text_(name == nullptr ? u"" : name->qcuz_Get()) {
    if (!IsOlderFamily()) return;
    passed_.v_Set(name);
    PassPlatform(&passed_);
    text_ = passed_.qcuz_Get();
}

}  // namespace zelkor::detail
