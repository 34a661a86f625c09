#include "Foundation/Core/File/TextWriter.h"

#include <algorithm>
#include <cstdarg>
#include <string>

#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/CodePages/CodePages.h"
#include "Foundation/Platform/LastError.h"

namespace platform = zelkor::platform;

using zelkor::detail::Failed;

namespace {

constexpr unsigned int kChunkUnits = 2048;
constexpr unsigned int kChunkBytes = 16384;
constexpr char16_t kLineEnd[] = u"\r\n";

bool IsHighSurrogate(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

// The number of units up to `most` that do not end between the halves of a surrogate pair.
unsigned int WholeCharacters(const char16_t* text, unsigned int most) {
    return most > 1 && IsHighSurrogate(text[most - 1]) ? most - 1 : most;
}

}  // namespace

void CT_TextWriter::v_WriteLine() {
    v_Write(kLineEnd[0]);
    v_Write(kLineEnd[1]);
}

void CT_TextWriter::v_WriteLine(const char16_t* text) {
    v_Write(text);
    v_WriteLine();
}

void CT_TextWriter::v_WriteLine(const CT_UString* text) {
    if (text != nullptr) v_WriteLine(*text);
}

void CT_TextWriter::v_WriteLine(const CT_UString& text) {
    v_Write(text);
    v_WriteLine();
}

void CT_TextWriter::v_Write(const CT_UString* text) {
    if (text != nullptr) v_Write(*text);
}

void CT_TextWriter::v_Write(const CT_UString& text) {
    v_Write(text.qcuz_Get());
}

void CT_TextWriter::v_WriteFormatted(const char16_t* format, ...) {
    CT_UString text;
    va_list arguments;
    va_start(arguments, format);
    text.v_Format(format, arguments);
    va_end(arguments);
    v_Write(&text);
}

void CT_TextWriter::v_WriteLineFormatted(const char16_t* format, ...) {
    CT_UString text;
    va_list arguments;
    va_start(arguments, format);
    text.v_Format(format, arguments);
    va_end(arguments);
    v_WriteLine(&text);
}

CT_StreamTextWriter::CT_StreamTextWriter(CT_Stream* stream, CT_Codepage::et_Codepage encoding)
    : stream_(stream), encoding_(encoding) {
    if (stream_ == nullptr) return;
    if (!stream_->b_IsOpen()) {
        stream_->v_Open(CT_Stream::kWrite);
        if (Failed()) return;
    }
    if (stream_->n_GetSize() == 0) v_WriteBOM();
}

CT_StreamTextWriter::~CT_StreamTextWriter() {
    if (stream_ != nullptr && stream_->b_IsOpen()) stream_->v_Close();
}

void CT_StreamTextWriter::v_Write(char16_t character) {
    if (MakeRoom()) characters_[count_++] = character;
}

void CT_StreamTextWriter::v_Write(const char16_t* text) {
    if (text != nullptr) Collect(text);
}

void CT_StreamTextWriter::v_Write(const CT_UString& text) {
    Collect({text.qcuz_Get(), text.n_GetLength()});
}

void CT_StreamTextWriter::v_Flush() {
    WriteUnits(count_);
}

void CT_StreamTextWriter::v_Close() {
    if (stream_ == nullptr) return;
    v_Flush();
    if (stream_->b_IsOpen()) stream_->v_Close();
    Failed();
    stream_ = nullptr;
}

void CT_StreamTextWriter::v_WriteBOM() {
    constexpr unsigned char kUtf16Mark[] = {0xFF, 0xFE};
    constexpr unsigned char kUtf8Mark[] = {0xEF, 0xBB, 0xBF};
    if (encoding_ == CT_Codepage::kUtf16) stream_->n_Write(kUtf16Mark, sizeof kUtf16Mark);
    if (encoding_ == CT_Codepage::kUtf8) stream_->n_Write(kUtf8Mark, sizeof kUtf8Mark);
    Failed();
}

void CT_StreamTextWriter::Collect(std::u16string_view text) {
    while (!text.empty() && MakeRoom()) {
        const auto piece = text.substr(0, kPendingUnits - count_);
        std::ranges::copy(piece, characters_.begin() + count_);
        count_ += static_cast<unsigned int>(piece.size());
        text.remove_prefix(piece.size());
    }
}

// Writes the first `count` pending units, when the stream is open. What was written is not pending
// any more, also when memory runs out in between.
void CT_StreamTextWriter::WriteUnits(unsigned int count) {
    if (count == 0 || stream_ == nullptr || !stream_->b_IsOpen()) return;
    struct Written {
        CT_StreamTextWriter& writer;
        unsigned int count = 0;
        ~Written() {
            const auto first = writer.characters_.begin();
            std::copy(first + count, first + writer.count_, first);
            writer.count_ -= count;
        }
    } written{*this};
    while (written.count < count) written.count += WriteChunk(written.count, count);
}

// Encodes and writes the next units of [first, last) and answers their number. A failing write
// takes them too.
unsigned int CT_StreamTextWriter::WriteChunk(unsigned int first, unsigned int last) {
    const char16_t* const text = characters_.data() + first;
    unsigned int units = std::min(kChunkUnits, last - first);
    if (first + units < last) units = WholeCharacters(text, units);
    unsigned int size = 2 * units;
    char bytes[kChunkBytes];
    if (encoding_ == CT_Codepage::kUtf16) {
        for (unsigned int i = 0; i < units; ++i) {
            bytes[2 * i] = static_cast<char>(text[i] & 0xFF);
            bytes[2 * i + 1] = static_cast<char>(text[i] >> 8);
        }
    } else {
        const unsigned int page = CT_Codepage(encoding_).n_Get();
        const unsigned int flags =
            platform::TakesTableFlags(page) ? platform::kNoBestFit | platform::kSeparateChars : 0;
        size = static_cast<unsigned int>(platform::WideCharToMultiByte(
            page, flags, text, static_cast<int>(units), bytes, kChunkBytes, nullptr, nullptr));
    }
    if (size == 0) {
        CT_UString encoding;
        encoding.v_Format(u"encoding %u", static_cast<unsigned int>(encoding_));
        zelkor::detail::RecordSystemError(encoding.qcuz_Get());
    }
    WriteBytes(reinterpret_cast<const unsigned char*>(bytes), size);
    return units;
}

// All of it, in however many writes the stream takes it.
void CT_StreamTextWriter::WriteBytes(const unsigned char* bytes, unsigned int count) {
    while (count > 0) {
        const unsigned int written = stream_->n_Write(bytes, count);
        if (Failed()) return;
        if (written == 0) {
            platform::SetLastError(platform::kErrorWriteFault);
            return zelkor::detail::RecordSystemError();
        }
        bytes += written;
        count -= written;
    }
}

// Whether one more unit fits, after writing when need be. The first half of a surrogate pair waits
// for its second.
bool CT_StreamTextWriter::MakeRoom() {
    if (count_ == kPendingUnits) WriteUnits(WholeCharacters(characters_.data(), count_));
    return count_ < kPendingUnits;
}

void CT_StringTextWriter::v_Write(char16_t character) {
    target_.v_Append(character);
}

void CT_StringTextWriter::v_Write(const char16_t* text) {
    target_.v_Append(text);
}

void CT_StringTextWriter::v_Write(const CT_UString& text) {
    target_.v_Append(&text);
}

CT_FileTextWriter::CT_FileTextWriter(CT_WinFile& file, CT_Codepage::et_Codepage encoding)
    : stream_(&file), writer_(std::make_unique<CT_StreamTextWriter>(&stream_, encoding)) {}

CT_FileTextWriter::~CT_FileTextWriter() = default;

void CT_FileTextWriter::v_WriteLine() {
    writer_->v_WriteLine();
}

void CT_FileTextWriter::v_WriteLine(const char16_t* text) {
    writer_->v_WriteLine(text);
}

void CT_FileTextWriter::v_WriteLine(const CT_UString* text) {
    writer_->v_WriteLine(text);
}

void CT_FileTextWriter::v_WriteLine(const CT_UString& text) {
    writer_->v_WriteLine(text);
}

void CT_FileTextWriter::v_Write(char16_t character) {
    writer_->v_Write(character);
}

void CT_FileTextWriter::v_Write(const char16_t* text) {
    writer_->v_Write(text);
}

void CT_FileTextWriter::v_Write(const CT_UString* text) {
    writer_->v_Write(text);
}

void CT_FileTextWriter::v_Write(const CT_UString& text) {
    writer_->v_Write(text);
}

void CT_FileTextWriter::v_Flush() {
    writer_->v_Flush();
}

void CT_FileTextWriter::v_Close() {
    writer_->v_Close();
}
