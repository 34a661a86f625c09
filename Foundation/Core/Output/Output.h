// CT_Output: an append-only sink for bytes, 8-bit text, UTF-16 text and formatted text. Into memory
// (CT_MemoryOutput), a file (CT_FileOutput) or a string (CT_StringOutput).
//
// Counts are bytes (characters of 8-bit text) or UTF-16 units; 0xFFFFFFFF means up to the
// terminating zero. Memory and files take 8-bit text as it is, whatever its code page, and UTF-16
// text as little-endian bytes. Null data or text is nothing. Errors: only a file's, with a location
// here; the output stays usable. Threads: no locks; one object, one thread.
#ifndef FOUNDATION_CORE_OUTPUT_OUTPUT_H
#define FOUNDATION_CORE_OUTPUT_OUTPUT_H

#include "Foundation/Core/Base/HeapObject.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_Buffer;
class CT_CString;
class CT_String;
class CT_UString;
class CT_WinFile;

class ZELKOR_API CT_Output {
public:
    virtual ~CT_Output() = default;

    virtual void vv_AppendV(const void* data, unsigned int count) = 0;
    virtual void vv_AppendC(const char* text, unsigned int count, unsigned int code_page) = 0;
    virtual void vv_AppendU(const char16_t* text, unsigned int count) = 0;
    // Bytes; characters for a string output.
    [[nodiscard]] virtual unsigned int vn_GetSize() const = 0;

    // As CT_CString::v_Format and CT_UString::v_Format.
    void v_Format(const char* format, ...);
    void v_Format(const char16_t* format, ...);

protected:
    CT_Output() = default;
    CT_Output(const CT_Output&) = delete;
    CT_Output& operator=(const CT_Output&) = delete;
};

class ZELKOR_API CT_MemoryOutput : public CT_Output, public zelkor::detail::HeapObject {
public:
    // An empty buffer, or one that shares the content of the given one.
    CT_MemoryOutput();
    explicit CT_MemoryOutput(const CT_Buffer* content);
    ~CT_MemoryOutput() override;
    void v_Set();
    void v_Set(const CT_Buffer* content);

    void vv_AppendV(const void* data, unsigned int count) override;
    void vv_AppendC(const char* text, unsigned int count, unsigned int code_page) override;
    void vv_AppendU(const char16_t* text, unsigned int count) override;
    [[nodiscard]] unsigned int vn_GetSize() const override;
    void v_AppendC(char character);

    // Null after pco_GiveMemory.
    [[nodiscard]] const CT_Buffer* pcco_GetMemory() const { return buffer_; }
    // The caller owns the buffer; the output is then empty, and the next append makes a new buffer.
    [[nodiscard]] CT_Buffer* pco_GiveMemory();

private:
    CT_Buffer& Buffer();

    CT_Buffer* buffer_;
};

class ZELKOR_API CT_FileOutput : public CT_Output, public zelkor::detail::HeapObject {
public:
    // Makes the file anew; nobody else may have it open.
    explicit CT_FileOutput(const CT_UString* name);
    // Appends to the caller's file, which is borrowed: an open one stays open in the end, a closed
    // one is made anew and closed in the end.
    explicit CT_FileOutput(CT_WinFile* file);
    ~CT_FileOutput() override;
    void v_Set(const CT_UString* name);
    void v_Set(CT_WinFile* file);

    // Without a file, and that is one over a null file too, they do nothing.
    void vv_AppendV(const void* data, unsigned int count) override;
    void vv_AppendC(const char* text, unsigned int count, unsigned int code_page) override;
    void vv_AppendU(const char16_t* text, unsigned int count) override;
    [[nodiscard]] unsigned int vn_GetSize() const override;

    // Closes the file and hands it over: the caller owns it unless it was the caller's already. The
    // output then has no file until v_Set.
    [[nodiscard]] CT_WinFile* pco_GiveFile();

private:
    void Attach(const CT_UString* name);
    void Attach(CT_WinFile* file);
    void Release();

    BOOL owns_file_ = FALSE;
    BOOL closes_file_ = FALSE;
    CT_WinFile* file_ = nullptr;
};

// Into the caller's string, which is borrowed. Text of the other kind is converted: 8-bit text with
// the code page given, UTF-16 text (always the whole zero-terminated one) with the string's. Raw
// bytes go in front of the terminator, and the text then ends at its first zero.
class ZELKOR_API CT_StringOutput : public CT_Output, public zelkor::detail::HeapObject {
public:
    explicit CT_StringOutput(CT_String& target);
    void v_Set(CT_String& target);

    void vv_AppendV(const void* data, unsigned int count) override;
    void vv_AppendC(const char* text, unsigned int count, unsigned int code_page) override;
    void vv_AppendU(const char16_t* text, unsigned int count) override;
    [[nodiscard]] unsigned int vn_GetSize() const override;

private:
    [[nodiscard]] CT_CString& Narrow();

    CT_String* target_ = nullptr;
    CT_UString* wide_ = nullptr;  // the target when it is a CT_UString
};

#endif
