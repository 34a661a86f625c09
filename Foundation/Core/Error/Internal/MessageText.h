// Texts in areas of a fixed size: what error messages, log messages and test output share.
#ifndef FOUNDATION_CORE_ERROR_INTERNAL_MESSAGETEXT_H
#define FOUNDATION_CORE_ERROR_INTERNAL_MESSAGETEXT_H

#include <cstdarg>
#include <cstddef>
#include <string_view>

#include "Foundation/Platform/Types.h"

namespace zelkor::detail {

// What `most` units hold of a text, never half of a surrogate pair at the end of a cut.
[[nodiscard]] std::u16string_view CutText(std::u16string_view text, std::size_t most) noexcept;

// Formats into `out`, cut to `size` units with the zero and never between surrogates; answers the
// length. A null format is an empty one; the size is at least 1.
std::size_t FormatCut(char16_t* out, std::size_t size, const char16_t* format, va_list arguments);

// Leaves of a text, in its own place, what the older family of platforms sees of it: a text that
// went through the default 8-bit code page. It is at most 2047 units long.
void PassNarrow(char16_t* text);

// A module's string resource, cut to `size` units with the zero, as the platform family sees it;
// empty when there is none. Size 0 writes nothing.
void LoadResource(char16_t* out, unsigned int size, HINSTANCE module, unsigned int id);

}  // namespace zelkor::detail

#endif
