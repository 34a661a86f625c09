// What the sources of this folder share: 8-bit texts of code page 0.
#ifndef FOUNDATION_CORE_EXCEPTION_INTERNAL_EXCEPTIONDETAIL_H
#define FOUNDATION_CORE_EXCEPTION_INTERNAL_EXCEPTIONDETAIL_H

#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Core/String/UString.h"

namespace zelkor::detail {

// The text as UTF-16; empty when it is null or cannot be converted, which leaves no error behind.
[[nodiscard]] inline CT_UString WidenQuietly(const char* text) {
    const bool failed_before = ErrorIsSet();
    CT_UString wide(text);
    if (!failed_before && ErrorIsSet()) ClearError();
    return wide;
}

}  // namespace zelkor::detail

#endif
