#include "Foundation/Platform/Console.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "Foundation/Platform/Text/Utf.h"

namespace zelkor::platform {

namespace {

std::FILE* FileOf(StandardStream stream) noexcept {
    return stream == StandardStream::kOutput ? stdout : stderr;
}

}  // namespace

bool IsTerminal(StandardStream stream) noexcept {
    return ::isatty(::fileno(FileOf(stream))) != 0;
}

// Past the program's own buffer, which goes first: a stream that the program uses for wide
// characters takes no bytes, and one that got bytes from here would take no wide characters.
void WriteBytes(StandardStream stream, const void* bytes, std::size_t count) noexcept {
    std::FILE* const file = FileOf(stream);
    std::fflush(file);
    const int descriptor = ::fileno(file);
    const char* next = static_cast<const char*>(bytes);
    while (count != 0) {
        const ssize_t written = ::write(descriptor, next, count);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return;
        next += written;
        count -= static_cast<std::size_t>(written);
    }
}

// Piece by piece, so that any length is served without memory.
void WriteText(StandardStream stream, std::u16string_view text) noexcept {
    char bytes[512];
    while (!text.empty()) {
        const UtfProgress done = Utf16ToUtf8(text.data(), text.size(), bytes, sizeof bytes);
        WriteBytes(stream, bytes, done.written);
        text.remove_prefix(done.taken);
        if (done.taken == 0) {
            WriteBytes(stream, "?", 1);
            text.remove_prefix(1);
        }
    }
}

}  // namespace zelkor::platform
