// CT_Stream: a positioned byte channel for reading or writing, over a file (CT_FileStream) or over
// a buffer (CT_BufferStream). The text readers and writers work on it.
//
// Units: offsets, sizes and counts are unsigned 32-bit bytes.
// Errors: as the file's, with a location here; beside them
//   60003  a file stream is opened in a mode that is neither reading nor writing
//   60006  a buffer stream is positioned behind the buffer's used bytes
// Ownership: files and buffers are borrowed and must outlive their stream. A stream over a null one
// stays closed and transfers nothing, as a transfer from or to nowhere does.
// Threads: no locks; one object, one thread.
#ifndef FOUNDATION_CORE_FILE_STREAM_H
#define FOUNDATION_CORE_FILE_STREAM_H

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_Buffer;
class CT_WinFile;

class ZELKOR_API CT_Stream {
public:
    enum et_Mode : unsigned int { kClosed, kRead, kWrite };

    virtual ~CT_Stream() = default;

    virtual void v_Open(et_Mode mode) = 0;
    [[nodiscard]] virtual BOOL b_IsOpen() const = 0;
    [[nodiscard]] virtual et_Mode eo_GetMode() const { return mode_; }
    virtual void v_Close() = 0;
    // Always from the beginning. On failure the offset stays.
    virtual void v_SetOffset(unsigned int offset) = 0;
    [[nodiscard]] virtual unsigned int n_GetOffset() const = 0;
    [[nodiscard]] virtual unsigned int n_GetSize() const = 0;
    [[nodiscard]] virtual BOOL b_IsEof() const = 0;
    // Answer the bytes transferred; fewer than asked for at the end, 0 on failure.
    virtual unsigned int n_Read(unsigned char* target, unsigned int count) = 0;
    virtual unsigned int n_Write(const unsigned char* data, unsigned int count) = 0;

protected:
    CT_Stream() = default;
    CT_Stream(const CT_Stream&) = delete;
    CT_Stream& operator=(const CT_Stream&) = delete;

    et_Mode mode_ = kClosed;
};

class ZELKOR_API CT_FileStream : public CT_Stream {
public:
    explicit CT_FileStream(CT_WinFile* file) : file_(file) {}
    ~CT_FileStream() override;  // closes an open file

    // Reading opens an existing file, writing makes a new one; others may read meanwhile. A file
    // that is open already is used as it is.
    void v_Open(et_Mode mode) override;
    [[nodiscard]] BOOL b_IsOpen() const override;
    // Told by the file's open access, also when the caller opened it: kWrite when it can be
    // written, kRead when it can only be read.
    [[nodiscard]] et_Mode eo_GetMode() const override;
    void v_Close() override;
    void v_SetOffset(unsigned int offset) override;
    [[nodiscard]] unsigned int n_GetOffset() const override;
    [[nodiscard]] unsigned int n_GetSize() const override;
    [[nodiscard]] BOOL b_IsEof() const override;
    unsigned int n_Read(unsigned char* target, unsigned int count) override;
    unsigned int n_Write(const unsigned char* data, unsigned int count) override;

private:
    CT_WinFile* file_;
};

class ZELKOR_API CT_BufferStream : public CT_Stream {
public:
    explicit CT_BufferStream(CT_Buffer* buffer) : buffer_(buffer) {}

    // Both set the offset to 0; the content stays.
    void v_Open(et_Mode mode) override;
    void v_Close() override;
    [[nodiscard]] BOOL b_IsOpen() const override;
    void v_SetOffset(unsigned int offset) override;
    [[nodiscard]] unsigned int n_GetOffset() const override;
    [[nodiscard]] unsigned int n_GetSize() const override;
    [[nodiscard]] BOOL b_IsEof() const override;
    unsigned int n_Read(unsigned char* target, unsigned int count) override;
    // Overwrites from the offset on and extends the buffer as needed.
    unsigned int n_Write(const unsigned char* data, unsigned int count) override;

private:
    CT_Buffer* buffer_;
    unsigned int offset_ = 0;
};

#endif
