// CT_TextReader: UTF-16 lines and characters out of encoded bytes. CT_StreamTextReader decodes a
// stream, CT_FileTextReader a file.
//
// Blocks of 16384 bytes are decoded at a time. A stream that hands out less at once (a pipe, a
// terminal) is read on until the block is full or the stream ends, so that the text is the same
// however its bytes arrive. Line ends are CR LF, LF CR, CR or LF.
// Errors: a stream that cannot be opened, or cannot be read while its byte-order mark is looked
// for, leaves the error set. A failed read later ends the text and leaves none: n_GetReadError
// tells it from the end. Text that cannot be decoded ends the block it is in (see b_ReadChar).
// Threads: no locks; one object, one thread.
#ifndef FOUNDATION_CORE_FILE_TEXTREADER_H
#define FOUNDATION_CORE_FILE_TEXTREADER_H

#include <array>
#include <cstddef>
#include <memory>

#include "Foundation/Core/Base/HeapObject.h"
#include "Foundation/Core/File/Stream.h"
#include "Foundation/Core/Language/Codepage.h"
#include "Foundation/Platform/CodePages/TextPieces.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_UString;

class ZELKOR_API CT_TextReader {
public:
    virtual ~CT_TextReader() = default;

    // The next line without its end. FALSE, with an empty line, at the end of the text; a last line
    // without an end is a line.
    virtual BOOL b_ReadLine(CT_UString& line) = 0;
    // The next character; FALSE, with 0, at the end of the text.
    virtual BOOL b_ReadChar(char16_t& character) = 0;
    virtual void v_Close() = 0;

protected:
    CT_TextReader() = default;
    CT_TextReader(const CT_TextReader&) = delete;
    CT_TextReader& operator=(const CT_TextReader&) = delete;
};

// About 32 KiB of decoded characters live in the object.
//
// How a block is decoded: UTF-16 is copied (an odd last byte is dropped). UTF-8 has U+FFFD in place
// of damaged pieces; on Windows XP it is strict as the tables of the other pages are. A strict
// block with invalid text is tried again without its last byte, then its last two, for a character
// cut at the end of a full block; when that does not help the block is empty, which ends the text
// for the call that met it. Where a full block ends, a cut UTF-8 character is read with the next
// block, and ISO-2022-JP, HZ and UTF-7 go on with what the text has switched on.
class ZELKOR_API CT_StreamTextReader : public CT_TextReader, public zelkor::detail::HeapObject {
public:
    static constexpr unsigned int kBlockSize = 16384;

    // A value of `sniff`: big-endian UTF-16 is text too, by its mark or as the encoding given.
    static constexpr BOOL kBothByteOrders = 2;

    // Opens a closed stream for reading. With `sniff` and at offset 0, a byte-order mark of UTF-8
    // or little-endian UTF-16 sets the encoding and is skipped; any other text is read in
    // `encoding`, where unknown and unset ones become the system's ANSI page. TRUE leaves FE FF to
    // the encoding given. A stream without a size is taken for a pipe: it is never positioned. The
    // stream is borrowed; a null one has no text.
    CT_StreamTextReader(CT_Stream* stream, CT_Codepage encoding, BOOL sniff);
    ~CT_StreamTextReader() override;  // closes the stream, whoever opened it

    BOOL b_ReadLine(CT_UString& line) override;
    // After a block that could not be decoded a later call reads on from the stream's offset.
    BOOL b_ReadChar(char16_t& character) override;
    // Closes the stream and forgets it; reading then answers FALSE.
    void v_Close() override;

    [[nodiscard]] CT_Codepage co_GetEncoding() const { return encoding_; }
    // Blocks whose conversion the platform refused for another reason than invalid text.
    [[nodiscard]] unsigned int n_GetErrors() const { return errors_; }
    // The number of the error that ended the text before its end; 0 when no read failed.
    [[nodiscard]] unsigned int n_GetReadError() const { return read_error_; }

private:
    struct Decoded {
        unsigned int units;      // 0 when nothing could be decoded
        unsigned int left_over;  // bytes at the end to be read again
    };

    [[nodiscard]] BOOL b_SniffEncoding(bool both_byte_orders);
    void v_ReadNextBlock();
    void v_Pushback();  // the character read last comes first on the next read
    [[nodiscard]] unsigned int FillUp(unsigned char* bytes, unsigned int count, unsigned int size);
    void KeepForNextBlock(const unsigned char* bytes, unsigned int count);
    [[nodiscard]] Decoded DecodeBlock(const unsigned char* bytes, unsigned int count);
    [[nodiscard]] Decoded DecodeStrictly(unsigned int page, unsigned int flags,
                                         const unsigned char* bytes, unsigned int count);
    [[nodiscard]] unsigned int Convert(unsigned int page, unsigned int flags,
                                       const unsigned char* bytes, unsigned int count);
    [[nodiscard]] bool HaveCharacters();
    void SkipSecondLineEnd(char16_t first);

    CT_Stream* stream_;
    CT_Codepage encoding_ = CT_Codepage::kUnknown;
    unsigned int stream_size_ = 0;
    unsigned int errors_ = 0;
    unsigned int read_error_ = 0;
    zelkor::platform::TextDecoder decoder_{0};
    bool by_pieces_ = false;      // decoder_ is in use
    unsigned char kept_[3] = {};  // bytes that come first in the next block
    unsigned int kept_count_ = 0;
    unsigned int position_ = 0;  // of the next character in the block
    unsigned int count_ = 0;     // characters in the block
    std::array<char16_t, kBlockSize> characters_;
};

// A reader on a caller's file, which is borrowed and closed with the reader.
class ZELKOR_API CT_FileTextReader : public CT_TextReader {
public:
    CT_FileTextReader(CT_WinFile& file, CT_Codepage encoding, BOOL sniff);
    ~CT_FileTextReader() override;

    BOOL b_ReadLine(CT_UString& line) override;
    BOOL b_ReadChar(char16_t& character) override;
    void v_Close() override;
    // As CT_StreamTextReader's.
    [[nodiscard]] unsigned int n_GetReadError() const { return reader_->n_GetReadError(); }

private:
    CT_FileStream stream_;
    std::unique_ptr<CT_StreamTextReader> reader_;
};

#endif
