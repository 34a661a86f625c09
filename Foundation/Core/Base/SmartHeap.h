// CT_SmartHeapException: what exhausted memory throws, from any operation that allocates.
// CT_SmartHeapErrorHandler: the library's handler with the memory manager, installed at start-up.
#ifndef FOUNDATION_CORE_BASE_SMARTHEAP_H
#define FOUNDATION_CORE_BASE_SMARTHEAP_H

#include "Foundation/Core/Base/Init.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Memory.h"

class ZELKOR_API CT_SmartHeapException {
public:
    // The message is borrowed: a string literal in practice.
    CT_SmartHeapException(const char* message, unsigned int code)
        : message_(message), code_(code) {}

    [[nodiscard]] const char* qccz_GetMessage() const { return message_; }
    // platform::kMemoryExhausted when memory ran out.
    [[nodiscard]] unsigned int n_GetCode() const { return code_; }

private:
    const char* message_;
    unsigned int code_;
};

class ZELKOR_API CT_SmartHeapErrorHandler {
public:
    CT_SmartHeapErrorHandler() = delete;

private:
    static void sv_Init();
    static void sv_Exit();
    static CT_Init sco_Init;
    static CT_Exit sco_Exit;

    // Writes the message to the debugger output and throws; never returns. A sink that runs out of
    // memory itself gets the exception, not the message again.
    static bool b_OnError(const zelkor::platform::MemoryError* error);
};

#endif
