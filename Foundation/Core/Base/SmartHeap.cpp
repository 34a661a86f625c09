#include "Foundation/Core/Base/SmartHeap.h"

#include "Foundation/Core/Base/HeapObject.h"
#include "Foundation/Platform/Dialogs.h"
#include "Foundation/Platform/ThreadLocal.h"

namespace platform = zelkor::platform;

namespace {

// Whether the thread is telling the debugger. A sink that allocates comes back here, and must not
// be told again.
ZELKOR_THREAD_LOCAL bool telling = false;

struct Telling {
    Telling() { telling = true; }
    ~Telling() { telling = false; }
};

const char* MessageOf(unsigned int code) {
    return code == platform::kMemoryExhausted ? "Out of memory" : "";
}

}  // namespace

void zelkor::detail::ReportExhausted() {
    platform::ReportExhausted();
    throw CT_SmartHeapException(MessageOf(platform::kMemoryExhausted), platform::kMemoryExhausted);
}

void CT_SmartHeapErrorHandler::sv_Init() {
    platform::SetMemoryErrorHandler(b_OnError);
}

void CT_SmartHeapErrorHandler::sv_Exit() {
    platform::SetMemoryErrorHandler(nullptr);
}

bool CT_SmartHeapErrorHandler::b_OnError(const platform::MemoryError* error) {
    const char* const message = MessageOf(error->code);
    char16_t wide[32] = {};
    for (int i = 0; i < 31 && message[i] != '\0'; ++i) wide[i] = static_cast<char16_t>(message[i]);
    if (!telling) {
        const Telling scope;
        platform::WriteDebugOutput(wide);
    }
    throw CT_SmartHeapException(message, error->code);
}
