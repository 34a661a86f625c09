// CT_LoadString: texts and formats from a module's string resources.
//
// A module's resources are those it registered with platform::RegisterStringTable; a null module is
// the program. A missing resource gives the empty text.
// Units: sizes are UTF-16 units with the terminating zero; what does not fit is cut, never between
// surrogates. Nothing is written to a null text or buffer. A text loaded
// into a string is cut to 2047 units, and so are a format and what is formatted into a string.
// The older family of platforms has only what the default 8-bit code page keeps of a text.
// Errors: records none; strings may throw CT_SmartHeapException. Threads: any.
#ifndef FOUNDATION_CORE_MESSAGE_LOADSTRING_H
#define FOUNDATION_CORE_MESSAGE_LOADSTRING_H

#include <cstdarg>

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_UString;

class ZELKOR_API CT_LoadString {
public:
    static void sv_LoadString(CT_UString* text, HINSTANCE module, unsigned int id);
    static void sv_LoadString(char16_t* buffer, unsigned int size, HINSTANCE module,
                              unsigned int id);

    // The resource as a format with the conventions of Platform/Runtime.h.
    static void sv_LoadStringVA(char16_t* buffer, unsigned int size, HINSTANCE module,
                                unsigned int id, ...);
    static void sv_LoadStringVA(CT_UString* text, HINSTANCE module, unsigned int id, ...);
    static void sv_LoadStringVaList(CT_UString* text, HINSTANCE module, unsigned int id,
                                    va_list arguments);
};

#endif
