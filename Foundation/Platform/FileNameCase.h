// Upper case of a unit as file names are compared: one unit to one unit, in no language's order.
#ifndef FOUNDATION_PLATFORM_FILENAMECASE_H
#define FOUNDATION_PLATFORM_FILENAMECASE_H

#include "Foundation/Platform/Export.h"

namespace zelkor::platform {

// The simple upper-case mappings of UnicodeData of the scripts that have case in the basic plane:
// Latin, Greek, Cyrillic, Armenian and the full-width letters; all other units stay.
[[nodiscard]] ZELKOR_API char16_t FileNameUpper(char16_t unit) noexcept;

}  // namespace zelkor::platform

#endif
