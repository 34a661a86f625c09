// CT_Assert: the box that a failed assertion of an application shows.
#ifndef FOUNDATION_CORE_EXCEPTION_ASSERT_H
#define FOUNDATION_CORE_EXCEPTION_ASSERT_H

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class ZELKOR_API CT_Assert {
public:
    // Shows expression, file and line with the buttons Abort, Retry and Ignore. Abort ends the
    // process at once with exit code 3. TRUE for Retry: the caller should break into the debugger;
    // FALSE for Ignore, and for any other answer of a box that could not be shown.
    // Without memory for a long text the box shows its beginning. 8-bit texts are taken as code
    // page 0; converting them may throw CT_SmartHeapException. Null texts are empty.
    // Errors: leaves the thread's error as it was. Threads: any.
    [[nodiscard]] static BOOL sb_ShowAssertMessage(const char16_t* expression, const char16_t* file,
                                                   unsigned int line);
    [[nodiscard]] static BOOL sb_ShowAssertMessage(const char* expression, const char* file,
                                                   unsigned int line);

    CT_Assert() = delete;
};

#endif
