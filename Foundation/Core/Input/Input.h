// CT_Input: a forward-only source of bytes that hands out its data in blocks, for scanners that
// walk a whole document. Over memory (CT_MemoryInput), a file (CT_FileInput), a mapped file
// (CT_MappedFileInput); memory and mapping hand out pointers into themselves, without copying.
//
// Units: sizes, counts and offsets are unsigned 32-bit bytes. A null output or target answers FALSE
// and passes over nothing; null memory is empty.
// Errors: none but the file's, with a location here; the operation then answers FALSE.
// Threads: no locks; one object, one thread.
#ifndef FOUNDATION_CORE_INPUT_INPUT_H
#define FOUNDATION_CORE_INPUT_INPUT_H

#include "Foundation/Core/Base/HeapObject.h"
#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/File/WinFile.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_UString;

class ZELKOR_API CT_Input {
public:
    virtual ~CT_Input() = default;

    // Starts at the beginning, also again. A file that cannot be opened or mapped is left closed.
    virtual void vv_Open() = 0;
    virtual void vv_Close() = 0;
    [[nodiscard]] virtual unsigned int vn_GetSize() const = 0;
    [[nodiscard]] virtual unsigned int vn_GetOffset() const = 0;
    // No data left.
    [[nodiscard]] virtual BOOL vb_IsEmpty() const = 0;
    // Whether the first bytes look like UTF-16, as CT_CharProperties judges.
    [[nodiscard]] virtual BOOL vb_IsUnicode() = 0;
    [[nodiscard]] virtual BOOL vb_IsLikelyUnicode() { return vb_IsUnicode(); }
    // The next block of up to `maximum` bytes (without it: of the block size); FALSE at the end.
    // The data are borrowed: until the next call for a file, until it is closed for a mapped one.
    virtual BOOL vb_GetNextBuffer(unsigned int maximum, const unsigned char** data,
                                  unsigned int* count) = 0;
    virtual BOOL vb_GetNextBuffer(const unsigned char** data, unsigned int* count) = 0;
    // Copies the next bytes. FALSE at the end; files answer FALSE, too, when fewer than `count`
    // were left, and have copied those.
    virtual BOOL vb_CopyNextBuffer(unsigned char* target, unsigned int count) = 0;
    // Passes over bytes. Memory answers whether data is left; files answer FALSE only at the end.
    virtual BOOL vb_Skip(unsigned int count) = 0;

    // The largest block that one call hands out.
    [[nodiscard]] unsigned int n_GetBuffer() const { return block_size_; }
    void v_SetBuffer(unsigned int block_size) { block_size_ = block_size; }

protected:
    explicit CT_Input(unsigned int block_size) : block_size_(block_size) {}
    CT_Input(const CT_Input&) = delete;
    CT_Input& operator=(const CT_Input&) = delete;

private:
    unsigned int block_size_;
};

// Over the caller's memory, which stays borrowed. Copying or skipping more than is left moves the
// offset behind the end.
class ZELKOR_API CT_MemoryInput : public CT_Input, public zelkor::detail::HeapObject {
public:
    CT_MemoryInput(unsigned int block_size, const unsigned char* data, unsigned int length);
    void v_Set(unsigned int block_size, const unsigned char* data, unsigned int length);

    void vv_Open() override {}
    void vv_Close() override {}
    [[nodiscard]] unsigned int vn_GetSize() const override { return size_; }
    [[nodiscard]] unsigned int vn_GetOffset() const override { return offset_; }
    [[nodiscard]] BOOL vb_IsEmpty() const override { return offset_ >= size_; }
    [[nodiscard]] BOOL vb_IsUnicode() override;
    [[nodiscard]] BOOL vb_IsLikelyUnicode() override;
    BOOL vb_GetNextBuffer(unsigned int maximum, const unsigned char** data,
                          unsigned int* count) override;
    BOOL vb_GetNextBuffer(const unsigned char** data, unsigned int* count) override;
    BOOL vb_CopyNextBuffer(unsigned char* target, unsigned int count) override;
    BOOL vb_Skip(unsigned int count) override;

private:
    const unsigned char* data_;
    unsigned int size_;
    unsigned int offset_;
};

// Over a file that nobody else may have open, read block by block. A pipe has no size and hands out
// nothing here.
class ZELKOR_API CT_FileInput : public CT_Input, public zelkor::detail::HeapObject {
public:
    // Do not open the file; v_Set closes the one before.
    CT_FileInput(unsigned int block_size, const CT_UString* name);
    ~CT_FileInput() override;
    void v_Set(unsigned int block_size, const CT_UString* name);

    void vv_Open() override;
    void vv_Close() override;
    [[nodiscard]] unsigned int vn_GetSize() const override { return size_; }
    [[nodiscard]] unsigned int vn_GetOffset() const override { return offset_; }
    [[nodiscard]] BOOL vb_IsEmpty() const override { return offset_ >= size_; }
    // Right after opening: they read from the file's position and set it to 0.
    [[nodiscard]] BOOL vb_IsUnicode() override;
    [[nodiscard]] BOOL vb_IsLikelyUnicode() override;
    // A read that yields nothing closes the file.
    BOOL vb_GetNextBuffer(unsigned int maximum, const unsigned char** data,
                          unsigned int* count) override;
    BOOL vb_GetNextBuffer(const unsigned char** data, unsigned int* count) override;
    BOOL vb_CopyNextBuffer(unsigned char* target, unsigned int count) override;
    BOOL vb_Skip(unsigned int count) override;

    [[nodiscard]] const CT_WinFile* pcco_GetFile() const { return &file_; }
    [[nodiscard]] const CT_Buffer* pcco_GetBuffer() const { return &block_; }

private:
    BOOL Advance(unsigned int count);

    CT_WinFile file_;
    CT_Buffer block_;
    unsigned int size_ = 0;  // by name, taken when opened
    unsigned int offset_ = 0;
};

// Over a mapping of a file that nobody else may have open. An empty file cannot be mapped: opening
// it records the platform's error.
class ZELKOR_API CT_MappedFileInput : public CT_Input, public zelkor::detail::HeapObject {
public:
    // Do not open the file; v_Set closes the one before.
    CT_MappedFileInput(unsigned int block_size, const CT_UString* name);
    ~CT_MappedFileInput() override;
    void v_Set(unsigned int block_size, const CT_UString* name);

    void vv_Open() override;
    void vv_Close() override;
    [[nodiscard]] unsigned int vn_GetSize() const override { return size_; }
    [[nodiscard]] unsigned int vn_GetOffset() const override { return offset_; }
    [[nodiscard]] BOOL vb_IsEmpty() const override { return offset_ >= size_; }
    [[nodiscard]] BOOL vb_IsUnicode() override;
    [[nodiscard]] BOOL vb_IsLikelyUnicode() override;
    BOOL vb_GetNextBuffer(unsigned int maximum, const unsigned char** data,
                          unsigned int* count) override;
    BOOL vb_GetNextBuffer(const unsigned char** data, unsigned int* count) override;
    BOOL vb_CopyNextBuffer(unsigned char* target, unsigned int count) override;
    BOOL vb_Skip(unsigned int count) override;

    [[nodiscard]] const CT_WinFile* pcco_GetFile() const { return &file_; }

private:
    void Forget();

    CT_WinFile file_;
    const unsigned char* data_ = nullptr;
    unsigned int size_ = 0;
    unsigned int offset_ = 0;
};

#endif
