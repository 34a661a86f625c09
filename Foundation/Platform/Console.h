// The program's standard output and standard error, for texts that people read.
//
// Everything written is on its way when the call is back, behind what the program wrote itself, and
// whether or not it uses the stream for wide characters; failures are ignored. Threads: any; the
// calls of two threads may mix between pieces.
#ifndef FOUNDATION_PLATFORM_CONSOLE_H
#define FOUNDATION_PLATFORM_CONSOLE_H

#include <cstddef>
#include <string_view>

#include "Foundation/Platform/Export.h"

namespace zelkor::platform {

enum class StandardStream { kOutput, kError };

// Whether the stream goes to a terminal, not to a file or a pipe.
[[nodiscard]] ZELKOR_API bool IsTerminal(StandardStream stream) noexcept;

ZELKOR_API void WriteBytes(StandardStream stream, const void* bytes, std::size_t count) noexcept;

// The text in the terminal's encoding, which is UTF-8; an unpaired surrogate is a question mark.
ZELKOR_API void WriteText(StandardStream stream, std::u16string_view text) noexcept;

}  // namespace zelkor::platform

#endif
