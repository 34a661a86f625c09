// Text readers over any bytes in any encoding: reading ends, lines hold no line ends, and reading
// by characters gives the same text as reading by lines when no block failed.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/File/Stream.h"
#include "Foundation/Core/File/TextReader.h"
#include "Foundation/Core/String/UString.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    const auto encoding = static_cast<CT_Codepage::et_Codepage>(data[0] % 59);
    const BOOL sniff = data[1] & 1;
    // Repeating the text makes it cross the ends of blocks.
    const unsigned int copies =
        (data[1] & 2) != 0 ? 1 + 40000 / static_cast<unsigned int>(size) : 1;
    CT_Buffer buffer;
    for (unsigned int i = 0; i < copies; ++i) {
        buffer.v_Append(data + 2, static_cast<std::uint32_t>(size - 2));
    }
    CT_BufferStream stream(&buffer);
    std::size_t in_lines = 0;
    {
        CT_StreamTextReader reader(&stream, encoding, sniff);
        CT_UString line;
        while (reader.b_ReadLine(line)) {
            for (unsigned int i = 0; i < line.n_GetLength(); ++i) {
                Require(line.u_GetAt(i) != u'\r' && line.u_GetAt(i) != u'\n');
            }
            in_lines += line.n_GetLength();
            Require(in_lines <= buffer.n_GetUsedSize());
        }
    }
    std::size_t in_characters = 0;
    CT_StreamTextReader reader(&stream, encoding, sniff);
    char16_t character;
    while (reader.b_ReadChar(character)) {
        if (character != u'\r' && character != u'\n') ++in_characters;
    }
    Require(in_lines == in_characters);
    return 0;
}
