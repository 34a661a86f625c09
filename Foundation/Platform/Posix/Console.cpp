#include "Foundation/Platform/Console.h"

#include <unistd.h>

#include <cstdio>

#include "Foundation/Platform/Nls/Utf.h"

namespace platform {

namespace {

std::FILE* FileOf(StandardStream stream) noexcept {
    return stream == StandardStream::kOutput ? stdout : stderr;
}

}  // namespace

bool IsTerminal(StandardStream stream) noexcept {
    return ::isatty(::fileno(FileOf(stream))) != 0;
}

void WriteBytes(StandardStream stream, const void* bytes, std::size_t count) noexcept {
    std::FILE* const file = FileOf(stream);
    std::fwrite(bytes, 1, count, file);
    std::fflush(file);
}

// Piece by piece, so that any length is served without memory.
void WriteText(StandardStream stream, std::u16string_view text) noexcept {
    std::FILE* const file = FileOf(stream);
    char bytes[512];
    while (!text.empty()) {
        const UtfProgress done = Utf16ToUtf8(text.data(), text.size(), bytes, sizeof bytes);
        std::fwrite(bytes, 1, done.written, file);
        text.remove_prefix(done.taken);
        if (done.taken == 0) {
            std::fputc('?', file);
            text.remove_prefix(1);
        }
    }
    std::fflush(file);
}

}  // namespace platform
