// CT_TextWriter: encoded bytes out of UTF-16 text. CT_StreamTextWriter encodes onto a stream,
// CT_FileTextWriter into a file, CT_StringTextWriter appends to a string.
//
// Line ends are CR LF. Texts are borrowed, and zero-terminated but for those in a CT_UString, which
// may hold zeros; a null text writes nothing.
// Errors: a stream that cannot be opened and failing writes leave the error set; a failing write
// does not stop the ones after it. An encoding that no code page serves, UTF-16 of the two values
// kUnicode and kUtf16BigEndian included, leaves the platform's 87 with the encoding's value when
// text in it is written. Threads: no locks; one object, one thread.
#ifndef FOUNDATION_CORE_FILE_TEXTWRITER_H
#define FOUNDATION_CORE_FILE_TEXTWRITER_H

#include <array>
#include <memory>
#include <string_view>

#include "Foundation/Core/Base/HeapObject.h"
#include "Foundation/Core/File/Stream.h"
#include "Foundation/Core/Language/Codepage.h"
#include "Foundation/Platform/Export.h"

class CT_UString;

class ZELKOR_API CT_TextWriter {
public:
    virtual ~CT_TextWriter() = default;

    // A text, then the line end. A null string writes not even the line end.
    virtual void v_WriteLine();
    virtual void v_WriteLine(const char16_t* text);
    virtual void v_WriteLine(const CT_UString* text);
    virtual void v_WriteLine(const CT_UString& text);
    virtual void v_Write(char16_t character) = 0;
    virtual void v_Write(const char16_t* text) = 0;
    virtual void v_Write(const CT_UString* text);
    virtual void v_Write(const CT_UString& text);
    virtual void v_Flush() = 0;
    virtual void v_Close() = 0;

    // As CT_UString::v_Format.
    void v_WriteFormatted(const char16_t* format, ...);
    void v_WriteLineFormatted(const char16_t* format, ...);

protected:
    CT_TextWriter() = default;
    CT_TextWriter(const CT_TextWriter&) = delete;
    CT_TextWriter& operator=(const CT_TextWriter&) = delete;
};

class ZELKOR_API CT_StreamTextWriter : public CT_TextWriter, public zelkor::detail::HeapObject {
public:
    static constexpr unsigned int kPendingUnits = 16384;

    // Opens a closed stream for writing. An empty stream gets the byte-order mark of UTF-16 or
    // UTF-8; one that holds data, or another encoding, gets none. Unknown and unset encodings are
    // written in the system's ANSI page. The stream is borrowed; text for a null one is dropped.
    CT_StreamTextWriter(CT_Stream* stream, CT_Codepage::et_Codepage encoding);
    ~CT_StreamTextWriter() override;  // closes the stream; pending text is lost

    using CT_TextWriter::v_Write;
    // Text is collected and encoded when 16384 units are pending, or by v_Flush and v_Close. What
    // comes while that many are pending and the stream is not open is dropped.
    void v_Write(char16_t character) override;
    void v_Write(const char16_t* text) override;
    void v_Write(const CT_UString& text) override;
    // A unit that the code page lacks becomes its default character. Without an open stream nothing
    // is written and the text stays pending.
    void v_Flush() override;
    void v_Close() override;

    [[nodiscard]] CT_Codepage::et_Codepage eo_GetEncoding() const { return encoding_; }

private:
    void v_WriteBOM();
    void Collect(std::u16string_view text);
    void WriteUnits(unsigned int count);
    void WriteBytes(const unsigned char* bytes, unsigned int count);
    unsigned int WriteChunk(unsigned int first, unsigned int last);
    [[nodiscard]] bool MakeRoom();

    CT_Stream* stream_;
    CT_Codepage::et_Codepage encoding_;
    unsigned int count_ = 0;
    std::array<char16_t, kPendingUnits> characters_;
};

// Appends to the string at once; flushing and closing do nothing. The string is borrowed.
class ZELKOR_API CT_StringTextWriter : public CT_TextWriter {
public:
    explicit CT_StringTextWriter(CT_UString& target) : target_(target) {}

    using CT_TextWriter::v_Write;
    void v_Write(char16_t character) override;
    void v_Write(const char16_t* text) override;
    void v_Write(const CT_UString& text) override;
    void v_Flush() override {}
    void v_Close() override {}

private:
    CT_UString& target_;
};

// A writer into a caller's file, which is borrowed and closed with the writer. As with the stream
// writer, text that was neither flushed nor closed is lost.
class ZELKOR_API CT_FileTextWriter : public CT_TextWriter {
public:
    CT_FileTextWriter(CT_WinFile& file, CT_Codepage::et_Codepage encoding);
    ~CT_FileTextWriter() override;

    void v_WriteLine() override;
    void v_WriteLine(const char16_t* text) override;
    void v_WriteLine(const CT_UString* text) override;
    void v_WriteLine(const CT_UString& text) override;
    void v_Write(char16_t character) override;
    void v_Write(const char16_t* text) override;
    void v_Write(const CT_UString* text) override;
    void v_Write(const CT_UString& text) override;
    void v_Flush() override;
    void v_Close() override;

private:
    CT_FileStream stream_;
    std::unique_ptr<CT_StreamTextWriter> writer_;
};

#endif
