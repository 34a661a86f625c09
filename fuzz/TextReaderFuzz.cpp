// Text readers over any bytes in any encoding: reading ends, lines hold no line ends, the text is
// the same by lines, by characters and however few bytes the stream hands out at once, and where
// the encoding tolerates anything it is the same on both sides of a block's end.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/File/Stream.h"
#include "Foundation/Core/File/TextReader.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/CodePages/CodePages.h"

namespace platform = zelkor::platform;

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

// A buffer that hands out at most `most` bytes at once, with or without a size.
class PieceStream : public CT_BufferStream {
public:
    PieceStream(CT_Buffer* buffer, unsigned int most, bool pipe)
        : CT_BufferStream(buffer), most_(most), pipe_(pipe) {}
    unsigned int n_Read(unsigned char* target, unsigned int count) override {
        return CT_BufferStream::n_Read(target, std::min(count, most_));
    }
    unsigned int n_GetSize() const override { return pipe_ ? 0 : CT_BufferStream::n_GetSize(); }
    void v_SetOffset(unsigned int offset) override {
        if (!pipe_) CT_BufferStream::v_SetOffset(offset);
    }

private:
    unsigned int most_;
    bool pipe_;
};

// All lines, each with a line feed behind it.
std::u16string Lines(CT_Stream& stream, CT_Codepage encoding, BOOL sniff) {
    CT_StreamTextReader reader(&stream, encoding, sniff);
    std::u16string lines;
    CT_UString line;
    while (reader.b_ReadLine(line)) {
        const std::u16string_view text(line.qcuz_Get(), line.n_GetLength());
        Require(text.find_first_of(u"\r\n") == text.npos);
        lines.append(text) += u'\n';
    }
    return lines;
}

std::u16string Lines(CT_Buffer& bytes, CT_Codepage encoding, BOOL sniff) {
    CT_BufferStream stream(&bytes);
    return Lines(stream, encoding, sniff);
}

std::size_t CountOfCharacters(CT_Buffer& bytes, CT_Codepage encoding, BOOL sniff) {
    CT_BufferStream stream(&bytes);
    CT_StreamTextReader reader(&stream, encoding, sniff);
    std::size_t count = 0;
    char16_t character;
    while (reader.b_ReadChar(character)) count += character != u'\r' && character != u'\n';
    return count;
}

// The text behind so much filling that a block ends `before` bytes into it.
void RequireSameAcrossBlocks(std::string_view text, std::u16string_view lines, CT_Codepage encoding,
                             unsigned int before) {
    const unsigned int filling = (CT_StreamTextReader::kBlockSize - before) & ~1u;
    std::string filled(filling, 'x');
    filled += text;
    CT_Buffer buffer(filled.data(), static_cast<std::uint32_t>(filled.size()), 32);
    const std::u16string all = Lines(buffer, encoding, FALSE);
    const bool wide = encoding.eo_Get() == CT_Codepage::kUtf16;
    const std::size_t skipped = wide ? filling / 2 : filling;
    Require(all.size() >= skipped);
    std::u16string_view rest(all);
    rest.remove_prefix(skipped);
    // Filling with nothing behind it is a line all the same.
    Require(rest == lines || (lines.empty() && rest == u"\n"));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3 || size > 512) return 0;
    const CT_Codepage encoding(static_cast<CT_Codepage::et_Codepage>(data[0] % 59));
    const BOOL sniff = data[1] % 3;
    const unsigned int number = data[2];
    const std::string_view text(reinterpret_cast<const char*>(data) + 3, size - 3);
    CT_Buffer buffer(text.data(), static_cast<std::uint32_t>(text.size()), 32);
    const std::u16string lines = Lines(buffer, encoding, sniff);
    const auto feeds = static_cast<std::size_t>(std::ranges::count(lines, u'\n'));
    Require(lines.size() - feeds <= text.size());
    Require(lines.size() - feeds == CountOfCharacters(buffer, encoding, sniff));
    PieceStream pieces(&buffer, 1 + number % 7, (number & 0x80) != 0);
    Require(Lines(pieces, encoding, sniff) == lines);
    const unsigned int page = encoding.n_Get();
    const bool tolerant = encoding.eo_Get() == CT_Codepage::kUtf16 ||
                          (!platform::TakesTableFlags(page) && platform::IsValidCodePage(page));
    if (sniff == FALSE && (number & 0x40) != 0 && tolerant) {
        RequireSameAcrossBlocks(text, lines, encoding, number & 0x3F);
    }
    return 0;
}
