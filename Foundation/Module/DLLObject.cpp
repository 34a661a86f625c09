#include "Foundation/Module/DLLObject.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "Foundation/Core/Error/Internal/MessageText.h"
#include "Foundation/Module/DLLMain.h"
#include "Foundation/Platform/Dialogs.h"
#include "Foundation/Platform/Modules.h"
#include "Foundation/Platform/Runtime.h"
#include "Foundation/Platform/System.h"
#include "Foundation/Platform/Threads.h"

namespace platform = zelkor::platform;

CT_DLLObject::CT_DLLObject(const char16_t* name, BOOL keepThreadNotifications)
    : keep_thread_notifications_(keepThreadNotifications) {
    const std::u16string_view text = name != nullptr ? name : u"";
    std::ranges::copy(zelkor::detail::CutText(text, kNameSize - 1), name_);
}

void CT_DLLObject::v_OnNotify(HINSTANCE instance, unsigned int reason) {
    switch (reason) {
        case kProcessAttach:
            if (!keep_thread_notifications_) platform::DisableThreadNotifications(instance);
            v_SetInstance(instance);
            return vv_AfterProcessAttach(instance);
        case kProcessDetach:
            return vv_AfterProcessDetach(instance);
        case kThreadAttach:
            return vv_AfterThreadAttach(instance);
        case kThreadDetach:
            return vv_AfterThreadDetach(instance);
        default:
            return;
    }
}

void CT_DLLObject::v_SetInstance(HINSTANCE instance) {
    instance_ = instance;
    platform::ModuleFileName(instance, path_, kPathSize);
}

void CT_DLLObject::v_PrintMessage(unsigned int reason) const {
    constexpr const char16_t* kReasons[] = {u"): Process Detach (pid ", u"): Process Attach (pid ",
                                            u"): Thread Attach (tid ", u"): Thread Detach (tid "};
    if (reason >= std::size(kReasons)) return;
    platform::WriteDebugOutput(u"*** ");
    if (name_[0] != 0) platform::WriteDebugOutput(name_);
    platform::WriteDebugOutput(u" (");
    platform::WriteDebugOutput(path_);
    platform::WriteDebugOutput(kReasons[reason]);
    char16_t id[16];
    platform::PrintText(
        id, std::size(id), u"0x%X)\n",
        reason <= kProcessAttach ? platform::CurrentProcessId() : platform::CurrentThreadId());
    platform::WriteDebugOutput(id);
}
