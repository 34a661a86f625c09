// The library's own string resources, the formats of its errors.
#ifndef FOUNDATION_MODULE_INTERNAL_STRINGTABLE_H
#define FOUNDATION_MODULE_INTERNAL_STRINGTABLE_H

#include "Foundation/Platform/Modules.h"

namespace zelkor::detail {

inline constexpr platform::StringResource kStringTable[] = {
    {60000, u"Error Stack"},
    {60001, u"%s"},
    {60003, u"File \"%s\": %s returned error %u"},
    {60005, u"Database Error: %u"},
    {60006, u"Out of memory"},
    {60008, u"System error %u in \"%s\""},
    {60012, u"Semantic error: %s"},
    {60015, u"Matrix \"%s\": %s returned error %u"},
    {60016, u"Windows API call %s failed"},
    {60017, u"%s not supported"},
    {60021, u"Limits violated"},
    {65535, u"ASSERT (%s)"},
};

}  // namespace zelkor::detail

#endif
