// CT_DatabaseError: the messages of the record manager's and the database codes.
// Errors: records none. Threads: any. Sizes are UTF-16 units.
#ifndef FOUNDATION_CORE_ERROR_DATABASEERROR_H
#define FOUNDATION_CORE_ERROR_DATABASEERROR_H

#include "Foundation/Platform/Export.h"

class ZELKOR_API CT_DatabaseError {
public:
    // The format of a code, where %s takes the file name; null for an unknown code.
    [[nodiscard]] static const char16_t* sqcuz_GetErrorMessage(unsigned int code,
                                                               unsigned int unused = 0);
    // Formats it, or "Unspecified Database Error", into at most `size` units with the zero.
    static void sv_FormatError(char16_t* buffer, unsigned int size, unsigned int code, ...);
};

#endif
