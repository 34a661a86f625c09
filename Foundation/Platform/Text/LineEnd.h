// Where a line of UTF-16 text ends: a block scan for carriage returns and line feeds.
#ifndef FOUNDATION_PLATFORM_TEXT_LINEEND_H
#define FOUNDATION_PLATFORM_TEXT_LINEEND_H

#include <cstddef>

#include "Foundation/Platform/Export.h"

namespace zelkor::platform {

// Index of the first CR or LF, `length` when there is none. Reads nothing behind the text.
[[nodiscard]] ZELKOR_API std::size_t FindLineEnd(const char16_t* text, std::size_t length) noexcept;

}  // namespace zelkor::platform

#endif
