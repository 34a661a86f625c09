// CT_File: a named file; the abstract base of CT_WinFile.
//
// It keeps the name with its four parts, how the file was opened, and builds line-wise reading and
// writing on a few virtual byte operations.
// Units: offsets, sizes and counts are unsigned 32-bit bytes; 16-bit text is little-endian UTF-16.
// A null buffer, line or other file is answered with 0 and leaves no error.
// Errors: an operation that fails, or that finds the thread's error set after a step, adds its
// location to the error and returns at once, 0 or FALSE where it has a result.
// Threads: no locks; one object, one thread.
#ifndef FOUNDATION_CORE_FILE_FILE_H
#define FOUNDATION_CORE_FILE_FILE_H

#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_CString;

class ZELKOR_API CT_File {
public:
    enum et_Access : unsigned int { kNoAccess, kReadAccess, kWriteAccess, kReadWriteAccess };
    enum et_Open : unsigned int {
        kOpenExisting = 1,
        kCreateAlways = 2,  // replaces an existing file
        kAppend = 3,        // opens or creates, and stands at the end
    };
    // What others may do meanwhile.
    enum et_Share : unsigned int { kShareNone, kShareRead, kShareWrite, kShareReadWrite };
    enum et_Origin : unsigned int { kFromStart, kFromCurrent, kFromEnd };
    enum et_FileAccess : unsigned int { kNoTransfer, kReadTransfer, kWriteTransfer };

    // Bits of the attributes and of the flags that vv_Open takes.
    enum : unsigned int {
        kAttributeNormal = 0x01,
        kAttributeArchive = 0x02,
        kAttributeCompressed = 0x04,
        kAttributeHidden = 0x08,
        kAttributeReadOnly = 0x10,
        kAttributeSystem = 0x20,
        kAttributeDirectory = 0x40,
        kAttributeTemporary = 0x80,
    };
    enum : unsigned int {
        kFlagWriteThrough = 0x01,
        kFlagOverlapped = 0x02,
        kFlagNoBuffering = 0x04,
        kFlagRandomAccess = 0x08,
        kFlagSequentialScan = 0x10,
        kFlagDeleteOnClose = 0x20,
    };

    // A new file is closed. The buffer size is rounded up to a multiple of 1024; without one it is
    // 0. Of another file only the name and the buffer size are taken.
    CT_File();
    CT_File(const CT_UString* name, unsigned int buffer_size);
    explicit CT_File(const CT_File* other);
    CT_File(const CT_File&) = delete;
    CT_File& operator=(const CT_File&) = delete;
    virtual ~CT_File();

    // Start anew with another file's name and buffer size, with a name, or with nothing: name,
    // read-ahead and open state of before are forgotten. vv_Set() keeps the buffer size.
    virtual void vv_Set(const CT_File* other);
    virtual void vv_Set(const CT_UString* name, unsigned int buffer_size);
    virtual void vv_Set();

    virtual void vv_Open(et_Access access, et_Open mode, et_Share share, unsigned int attributes,
                         unsigned int flags) = 0;
    virtual void vv_Close() = 0;
    virtual void vv_Flush() = 0;
    virtual void vv_Remove() = 0;
    virtual void vv_Rename(const CT_UString* new_name) = 0;
    virtual unsigned int vn_Read(void* buffer, unsigned int count) = 0;
    virtual unsigned int vn_Write(const void* data, unsigned int count) = 0;
    virtual unsigned int vn_GetSize() const = 0;
    virtual unsigned int vn_GetOffset() const = 0;
    virtual void vv_SetOffset(et_Origin origin, int distance) = 0;
    virtual BOOL vb_IsEof() const = 0;

    [[nodiscard]] const CT_UString* pcco_GetFullName() const { return &full_name_; }
    [[nodiscard]] const CT_UString* pcco_GetDrive() const { return &drive_; }
    [[nodiscard]] const CT_UString* pcco_GetDirectory() const { return &directory_; }
    [[nodiscard]] const CT_UString* pcco_GetName() const { return &name_; }
    [[nodiscard]] const CT_UString* pcco_GetExtension() const { return &extension_; }

    // The first stores a name and splits it; the others store one part and rebuild the full name.
    void v_SetFullName(const CT_UString* name);
    void v_SetDrive(const CT_UString* drive);
    void v_SetDirectory(const CT_UString* directory);
    void v_SetName(const CT_UString* name);
    void v_SetExtension(const CT_UString* extension);

    // Makes the full name absolute; on failure (60012, see CT_FileSystem) it stays as it was.
    void v_FullPath();

    [[nodiscard]] BOOL b_IsOpen() const { return open_; }
    [[nodiscard]] unsigned int n_GetBufferSize() const { return buffer_size_; }
    [[nodiscard]] et_Access ec_GetOpenAccess() const { return open_access_; }
    [[nodiscard]] et_Open ec_GetOpenModi() const { return open_mode_; }
    [[nodiscard]] et_Share ec_GetOpenShare() const { return open_share_; }
    [[nodiscard]] unsigned int n_GetOpenAttribut() const { return open_attributes_; }
    [[nodiscard]] unsigned int n_GetOpenFlag() const { return open_flags_; }

    // Whether something of this name exists, open or not.
    [[nodiscard]] BOOL b_IsExistent() const;

    // Reads up to `count` bytes as the buffer's new content and answers how many came; for a count
    // of 0 the buffer stays as it is. On failure the buffer is empty.
    unsigned int n_Read(CT_Buffer* buffer, unsigned int count);

    // Writes the buffer's first `count` bytes (0xFFFFFFFF: all used ones) and answers how many were
    // written; 87 when the buffer has not that much room.
    unsigned int n_Write(const CT_Buffer* buffer, unsigned int count);

    // Reads the line at the offset, without its line end (LF or CR LF), and leaves the offset just
    // behind the line feed. Answers the bytes of the line as read plus one unit for the line feed
    // (so a CR LF counts as one unit): length + 1, for UTF-16 2 * length + 2, without the 1 or the
    // 2 for a last line that has no line feed, and 0 at the end. The line is then stripped of the
    // characters of `strip` at both ends, if given. A CR that ends a block of 256 bytes (512 for
    // UTF-16) and the last one of the file are taken for part of a line end too.
    // At offset 0 the UTF-16 form skips the byte-order mark FF FE. A block is read until it is full
    // or the file ends, also from a pipe; but a pipe cannot be positioned behind a line (25), its
    // lines are read sequentially.
    unsigned int n_ReadLineC(CT_CString* line, const CT_CString* strip);
    unsigned int n_ReadLineU(CT_UString* line, const CT_UString* strip);

    // The same through a read-ahead block of 4096 bytes (UTF-16: 8192) that the object keeps: the
    // offset stands at the end of the last block, and a last line without a line feed answers 0
    // although `line` holds it. Not to be mixed with other reads and seeks, which may lose part of
    // the block; only vv_Set drops it.
    unsigned int n_ReadLineCSequential(CT_CString* line, const CT_CString* strip);
    unsigned int n_ReadLineUSequential(CT_UString* line, const CT_UString* strip);

    // Writes the text of a line (null: none), then CR LF if asked for.
    void v_WriteLineC(const CT_CString* line, BOOL new_line);
    void v_WriteLineU(const CT_UString* line, BOOL new_line);

    // Whether up to 100 bytes from the offset on look like UTF-16, strictly or by likelihood; the
    // offset is then 0. A file of odd size, or of less than 2 bytes, is not read and is not.
    [[nodiscard]] BOOL b_IsUnicode();
    [[nodiscard]] BOOL b_IsLikelyUnicode();

protected:
    void v_SetOpen(BOOL open) { open_ = open; }

    // Turns to reading or writing: a change of direction first re-positions the file to its own
    // offset. When that fails the direction stays and the error is set.
    void v_SetAccess(et_FileAccess access);

    // What vv_Open and vv_Close record: the five parameters as given with the open flag; or all of
    // them 0, and the direction too.
    void StoreOpenState(et_Access access, et_Open mode, et_Share share, unsigned int attributes,
                        unsigned int flags);
    void ClearOpenState();

    // Makes the next transfer re-position the file to its offset.
    void ForgetDirection() { direction_ = kNoTransfer; }

private:
    template <typename Text>
    unsigned int ReadLine(Text& line);
    template <typename Text>
    unsigned int ReadLineAhead(Text& line);
    template <typename Text>
    void WriteLine(const Text* line, bool new_line);
    unsigned int FillLineBuffer(unsigned int size, bool skips_mark);
    bool BeginsLike(BOOL (*test)(const void* bytes, unsigned int count));
    void SplitFullName();
    void RebuildFullName();

    CT_UString full_name_;
    CT_Buffer line_buffer_;
    unsigned int read_ahead_ = 0;  // next unread element of line_buffer_; 0: read a block first
    CT_UString drive_;
    CT_UString directory_;
    CT_UString name_;
    CT_UString extension_;
    unsigned int buffer_size_ = 0;
    et_FileAccess direction_ = kNoTransfer;
    BOOL open_ = FALSE;
    et_Access open_access_ = kNoAccess;
    et_Open open_mode_ = et_Open{};
    et_Share open_share_ = kShareNone;
    unsigned int open_attributes_ = 0;
    unsigned int open_flags_ = 0;
};

#endif
