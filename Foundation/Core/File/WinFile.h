// CT_WinFile: a file of the platform, with its own offset, byte-range locks and a growable mapping.
//
// Units: offsets, sizes and counts are unsigned 32-bit bytes. A file of 4 GiB or more cannot be
// opened, and no operation makes a file that large.
// Errors: a failed platform call records the platform's error with the full name as its context,
//   "(2): The system cannot find the file specified. [name]", for renaming and copying with both
//   names, "[from : to]"; then as for CT_File. Beside the platform's own numbers
//   87   an argument of vv_Open is none of its enumeration's values
//   223  the file has 4 GiB or more, or would have; a pipe hands out more
// Threads: no locks; one object, one thread. Between objects, threads and processes the share mode
// and v_LockFile rule who may do what.
#ifndef FOUNDATION_CORE_FILE_WINFILE_H
#define FOUNDATION_CORE_FILE_WINFILE_H

#include <cstddef>
#include <cstdint>

#include "Foundation/Core/File/File.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/FileStatus.h"
#include "Foundation/Platform/Types.h"

struct _SHI_Pool;

class ZELKOR_API CT_WinFile : public CT_File {
public:
    CT_WinFile();
    CT_WinFile(const CT_UString* name, unsigned int buffer_size);
    explicit CT_WinFile(const CT_File* other);
    ~CT_WinFile() override;  // closes an open file

    static void* operator new(std::size_t size);
    static void operator delete(void* block, std::size_t size);
    static _SHI_Pool* spso_GetMemPool();

    // Close an open file first; an error of closing is set but does not stop them.
    void vv_Set(const CT_File* other) override;
    void vv_Set(const CT_UString* name, unsigned int buffer_size) override;
    void vv_Set() override;

    // Opens or creates the file, which must be closed. The offset is 0, in mode 3 the file's size.
    // In mode 3 a first attempt that fails is repeated once in the same way; the error is the
    // second's. When the end cannot be found the handle is released again. On failure the object
    // stays closed.
    void vv_Open(et_Access access, et_Open mode, et_Share share, unsigned int attributes,
                 unsigned int flags) override;

    // Closes the mapping without cutting the file, then the handle. On failure the object counts as
    // open still. What v_FlushMap could not store, and vv_Flush did not tell of, is recorded here
    // once the file is closed.
    void vv_Close() override;
    // Also tells of what v_FlushMap could not store.
    void vv_Flush() override;

    // By name, whether or not the object is open (the object stays as it is).
    void vv_Remove() override;

    // By name, to another folder or volume too, never onto an existing file. The object is then
    // closed, with the new name and buffer size 16384.
    void vv_Rename(const CT_UString* new_name) override;

    // Through the view if there is one: a read ends at its end, a write grows it. Otherwise one
    // call of the platform; fewer bytes than asked for are no error.
    unsigned int vn_Read(void* buffer, unsigned int count) override;
    unsigned int vn_Write(const void* data, unsigned int count) override;

    // The size that the file system tells for the name, open or not; 0 when there is no such file.
    unsigned int vn_GetSize() const override;
    unsigned int vn_GetOffset() const override;

    // The offset becomes the position that the platform's file pointer then has. Distances reach
    // 2 GiB; one from the current offset counts from the offset while a view is mapped too. On
    // failure, and that is a position of 4 GiB - 1 and more too, the offset stays.
    void vv_SetOffset(et_Origin origin, int distance) override;
    BOOL vb_IsEof() const override;

    // Null when closed, INVALID_HANDLE_VALUE after a failed open.
    [[nodiscard]] HANDLE h_GetHandle() const { return handle_; }
    [[nodiscard]] BOOL b_GetMapping() const { return view_ != nullptr ? TRUE : FALSE; }
    [[nodiscard]] void* pv_GetMapping() const { return view_; }

    // Locks a range against all other handles without waiting, and releases exactly such a range.
    void v_LockFile(unsigned int offset, unsigned int length);
    void v_UnlockFile(unsigned int offset, unsigned int length);

    // Maps the file, which must not be mapped: the whole file when it is open for reading only or
    // `minimum_size` is 0xFFFFFFFF; else whole MiB that hold the file and `minimum_size`, and the
    // file itself grows to that. An empty file that is to be mapped as it is fails with 1006. On
    // failure the file is not mapped.
    void v_CreateMap(unsigned int minimum_size);

    // Ends the mapping. Unless `new_length` is 0 or the file is open for reading only, cuts (or
    // extends) the file to `new_length` and leaves the offset there.
    void v_CloseMap(unsigned int new_length);
    // Records no error: a failure is kept for vv_Flush and vv_Close.
    void v_FlushMap();

    // Ends the file at the platform's file pointer.
    void v_SetEndOfFile();

    // The platform's attribute word of the named file; 0xFFFFFFFF on failure.
    void v_SetAttributes(unsigned int attributes);
    [[nodiscard]] unsigned int n_GetAttributes();

    // Appends the other file in blocks of `block_size` bytes (0 appends nothing). Both must be
    // closed and are closed again; on failure both are left as they stand, perhaps open. A file
    // cannot be appended to itself (32).
    void v_Append(const CT_WinFile* source, unsigned int block_size);

    // Replaces an existing target.
    void v_CopyFile(const CT_UString* target) const;

    // What the C runtime knows of the name (on failure: its error number, with message 60003), and
    // the platform of the open handle.
    void v_GetFileInformation(struct _stat* information) const;
    void v_GetFileInfo(BY_HANDLE_FILE_INFORMATION* information);

    static void sv_SetHandleCount(unsigned int count);

protected:
    // Bytes behind pv_GetMapping(); 0 when not mapped.
    [[nodiscard]] unsigned int MappedSize() const { return mapped_size_; }

    // Records what v_FlushMap could not store, once.
    void TellFlushFailure();

private:
    void Fail(const char* file = __builtin_FILE(), unsigned int line = __builtin_LINE()) const;
    // With an error of the library's own; answers 0.
    unsigned int Refuse(unsigned int error, const char* file = __builtin_FILE(),
                        unsigned int line = __builtin_LINE()) const;
    void FailBetween(const CT_UString* target, const char* file = __builtin_FILE(),
                     unsigned int line = __builtin_LINE()) const;
    void CloseForReset();
    bool MoveTo(unsigned int position);
    bool MakeMapping(std::uint64_t size);
    bool GrowMapping(unsigned int minimum_size);
    void AppendAll(CT_WinFile& source, unsigned int block_size);
    unsigned int n_ReadMap(void* buffer, unsigned int count);
    unsigned int n_WriteMap(const void* data, unsigned int count);

    HANDLE handle_ = nullptr;
    unsigned int offset_ = 0;
    HANDLE mapping_ = nullptr;
    void* view_ = nullptr;
    unsigned int mapped_size_ = 0;
    unsigned int flush_error_ = 0;  // of v_FlushMap, not told yet
};

#endif
