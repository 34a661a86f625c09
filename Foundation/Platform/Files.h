// Files and folders: opening with share modes, reading and writing, byte-range locks, mappings, and
// the operations that take a name.
//
// Names: see Paths.h. A name that is null counts as empty, and an empty name is error 3.
// Units: bytes; positions and sizes are 64-bit, counts of one transfer 32-bit.
// Errors: an operation that fails answers false (INVALID_HANDLE_VALUE, null) and sets the thread's
// last error; one that succeeds leaves it alone, except OpenFile.
// Threads: any thread; a handle's position, locks and life belong to one thread at a time.
// Share modes and locks hold between handles, threads and processes that use this ground, on local
// file systems; other programs are not held back by them. They end when the process that opened the
// handle closes it, whatever a forked child holds still. They do not hold where a file system
// knows no open-file-description locks, nor for a file opened for writing that may not be read.
#ifndef FOUNDATION_PLATFORM_FILES_H
#define FOUNDATION_PLATFORM_FILES_H

#include <cstdint>
#include <span>

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

namespace zelkor::platform {

// Access.
inline constexpr std::uint32_t kAccessNone = 0;
inline constexpr std::uint32_t kAccessRead = 0x80000000;
inline constexpr std::uint32_t kAccessWrite = 0x40000000;
inline constexpr std::uint32_t kAccessDelete = 0x00010000;
// What others may do meanwhile.
inline constexpr std::uint32_t kShareNone = 0;
inline constexpr std::uint32_t kShareRead = 1;
inline constexpr std::uint32_t kShareWrite = 2;
inline constexpr std::uint32_t kShareDelete = 4;
// Disposition.
inline constexpr std::uint32_t kCreateNew = 1;
inline constexpr std::uint32_t kCreateAlways = 2;
inline constexpr std::uint32_t kOpenExisting = 3;
inline constexpr std::uint32_t kOpenAlways = 4;
inline constexpr std::uint32_t kTruncateExisting = 5;
// Attributes.
inline constexpr std::uint32_t kFileReadOnly = 0x1;
inline constexpr std::uint32_t kFileHidden = 0x2;
inline constexpr std::uint32_t kFileSystem = 0x4;
inline constexpr std::uint32_t kFileFolder = 0x10;
inline constexpr std::uint32_t kFileArchive = 0x20;
inline constexpr std::uint32_t kFileNormal = 0x80;
inline constexpr std::uint32_t kFileTemporary = 0x100;
inline constexpr std::uint32_t kFileCompressed = 0x800;
inline constexpr std::uint32_t kInvalidAttributes = 0xFFFFFFFF;
// Flags.
inline constexpr std::uint32_t kFlagWriteThrough = 0x80000000;
inline constexpr std::uint32_t kFlagOverlapped = 0x40000000;  // transfers fail with 87
inline constexpr std::uint32_t kFlagNoBuffering = 0x20000000;
inline constexpr std::uint32_t kFlagRandomAccess = 0x10000000;
inline constexpr std::uint32_t kFlagSequentialScan = 0x08000000;
inline constexpr std::uint32_t kFlagDeleteOnClose = 0x04000000;
inline constexpr std::uint32_t kFlagFolders = 0x02000000;  // folders may be opened
inline constexpr std::uint32_t kSeekBegin = 0;
inline constexpr std::uint32_t kSeekCurrent = 1;
inline constexpr std::uint32_t kSeekEnd = 2;

// ---- Handles ------------------------------------------------------------------------------------

// Opens or creates a file; the position is 0. The last error is then 0, or 183 when disposition 2
// or 4 met an existing file. A file that exists keeps its attributes; a new one gets those given
// and the archive bit. With kFlagDeleteOnClose the file goes when its last handle in this process
// is closed. Beside the file system's own:
//   2, 3   no such file, no such folder        5   read-only, a folder, or hidden or system when
//   32     another handle does not share this      disposition 2 comes without that attribute
//   80     disposition 1 and the name exists   87  a disposition outside 1 to 5
//   123    a separator behind a name that is no folder; a new name with a character
//          from "<>:\"|?*" or below 32; a text that is not well-formed
//   1224   it would be cut and has a view
[[nodiscard]] ZELKOR_API HANDLE OpenFile(const char16_t* name, std::uint32_t access,
                                         std::uint32_t share, std::uint32_t disposition,
                                         std::uint32_t flags_and_attributes) noexcept;

// Closes a handle of a file, a mapping or a thread and releases its locks; 6 when it is not open. A
// file whose last data could not be stored says so here once; closing it again then succeeds.
ZELKOR_API bool CloseHandle(HANDLE handle) noexcept;

// One transfer at the handle's position, which moves by the count transferred. Fewer bytes than
// asked for are read at the end of the file or from a pipe; a write is short only on failure, and
// *done tells how much was stored (112: the disk is full). 5 without that access; 33 when another
// handle has locked part of the range: nothing is transferred then.
ZELKOR_API bool ReadFile(HANDLE file, void* buffer, std::uint32_t count,
                         std::uint32_t* done) noexcept;
ZELKOR_API bool WriteFile(HANDLE file, const void* data, std::uint32_t count,
                          std::uint32_t* done) noexcept;

// Moves the position by a signed distance and stores the new one (`position` may be null). It may
// lie behind the end. 131 when it would be negative, 87 for another origin, 25 for another place in
// a pipe (whose end is where it stands); it stays then.
ZELKOR_API bool SetFilePosition(HANDLE file, std::int64_t distance, std::uint32_t origin,
                                std::uint64_t* position) noexcept;

// Ends the file at the position. 5 without write access, 1224 when it would cut a mapping.
ZELKOR_API bool SetEndOfFile(HANDLE file) noexcept;

// Has the system store what was written; 5 without write access.
ZELKOR_API bool FlushFile(HANDLE file) noexcept;

ZELKOR_API bool QueryFileSize(HANDLE file, std::uint64_t* size) noexcept;
ZELKOR_API bool QueryFileInformation(HANDLE file, BY_HANDLE_FILE_INFORMATION* information) noexcept;

// Locks [offset, offset + length) against reading, writing and locking through any other handle,
// without waiting: 33 when a byte of it is locked already, through this handle too. The range may
// lie behind the end. Unlocking names exactly a range that was locked (else 158). 5 without read
// or write access. Transfers of other users' processes are not held back, their locks are.
ZELKOR_API bool LockFile(HANDLE file, std::uint64_t offset, std::uint64_t length) noexcept;
ZELKOR_API bool UnlockFile(HANDLE file, std::uint64_t offset, std::uint64_t length) noexcept;

// Accepts the number of handles the program means to use and answers how many it may.
ZELKOR_API std::uint32_t SetHandleCount(std::uint32_t count) noexcept;

// ---- Mappings -----------------------------------------------------------------------------------

// A mapping of the file's first `size` bytes (0: the whole file), to read or to read and write; the
// latter extends a shorter file, with room on the disk for every byte (112 when there is none), so
// that storing through a view cannot run out of it. Null on failure:
//   5 the handle's access does not allow it   8 longer than the file, for reading
//   1006 the file is empty and `size` is 0
// A mapping outlives its file's handle, a view its mapping's.
[[nodiscard]] ZELKOR_API HANDLE CreateMapping(HANDLE file, bool writable,
                                              std::uint64_t size) noexcept;

// A view of the mapping's first `size` bytes (0: all). Null on failure (5: longer than the mapping,
// or to write and the mapping is not). The view ends with UnmapView, which takes its first byte
// (487: no view begins there).
[[nodiscard]] ZELKOR_API void* MapView(HANDLE mapping, bool writable, std::uint64_t size) noexcept;
ZELKOR_API bool UnmapView(void* view) noexcept;

// Makes a view to write, its mapping and its file that long, as CreateMapping does, and the view
// stays where it is. False, with all as before, when that cannot be done (8: no addresses left
// behind the view); mapping the file anew may succeed then.
[[nodiscard]] ZELKOR_API bool GrowView(HANDLE mapping, void* view, std::uint64_t size) noexcept;

// Has the system store the view's first `size` bytes (0: all).
ZELKOR_API bool FlushView(const void* view, std::uint64_t size) noexcept;

// ---- Names of files -----------------------------------------------------------------------------

// 2, 3: no such file or folder; 5: read-only or a folder; 32: a handle does not share deleting.
ZELKOR_API bool RemoveFile(const char16_t* name) noexcept;

// Renames a file or folder, also to another folder; `replace` allows an existing file as target
// (else 183), `copy` a file's way to another file system. A target is replaced in one step: whoever
// stops in between finds the old or the new content. Across file systems the source goes last.
ZELKOR_API bool RenameFile(const char16_t* from, const char16_t* to, bool replace,
                           bool copy) noexcept;

// Copies content, attributes and time of last change. 80 when the target exists and `replace` is
// false. A copy that fails half-way leaves no target behind, and an existing one as it was; but one
// that is a link or has several names, that others have open, that has an access list or whose
// folder may not be written, is written in place, and lost then.
ZELKOR_API bool DuplicateFile(const char16_t* from, const char16_t* to, bool replace) noexcept;

// The attribute word: a folder 0x10, a file at least 0x80 (normal) when no other bit is set. A file
// that was never given attributes has the archive bit. Read-only (files only) is kept in the
// permission bits; hidden, system, archive and temporary in an extended attribute: they are dropped
// where the file system has none. Other bits are ignored.
[[nodiscard]] ZELKOR_API std::uint32_t QueryAttributes(const char16_t* name) noexcept;
ZELKOR_API bool SetAttributes(const char16_t* name, std::uint32_t attributes) noexcept;

// What the C runtime's stat knows; times are seconds since 1970-01-01 UTC.
struct FileStatus {
    std::uint32_t mode;  // kModeFolder, ...; permissions of the owner 0x100 read, 0x80 write, 0x40
    std::uint32_t links;
    std::uint32_t device;
    std::uint64_t index;
    std::uint64_t size;
    std::int64_t access;
    std::int64_t modification;
    std::int64_t creation;  // of the last change of status where the system keeps no creation time
};
inline constexpr std::uint32_t kModeKind = 0xF000;
inline constexpr std::uint32_t kModePipe = 0x1000;
inline constexpr std::uint32_t kModeDevice = 0x2000;
inline constexpr std::uint32_t kModeFolder = 0x4000;
inline constexpr std::uint32_t kModeFile = 0x8000;

// 0, or the C runtime's error number (2: nothing of that name, 13: not allowed, ...); *status is
// then all zero. The last error is left alone. A folder may be named with a separator behind.
[[nodiscard]] ZELKOR_API int QueryStatus(const char16_t* name, FileStatus* status) noexcept;

// Whether something of that name exists; false also when it cannot be asked.
[[nodiscard]] ZELKOR_API bool Exists(const char16_t* name) noexcept;

// ---- Folders and temporary files ----------------------------------------------------------------
// Texts are written zero-terminated; the answer is their length without the zero, 0 on failure
// (122: it does not fit). A folder named for the caller is a full path with "\" and a drive.

ZELKOR_API bool CreateFolder(const char16_t* name) noexcept;  // 183: the name exists
ZELKOR_API bool RemoveFolder(const char16_t* name) noexcept;  // 145: not empty, 267: no folder

// The current folder belongs to the whole process. A name with a drive makes that the current
// drive (C at first); the current folder of any other drive is its root.
ZELKOR_API bool ChangeFolder(const char16_t* name) noexcept;
// `drive`: 0 is the current one, 1 is A; 15 for one above 26.
[[nodiscard]] ZELKOR_API std::uint32_t CurrentFolder(std::uint32_t drive,
                                                     std::span<char16_t> folder) noexcept;

// The folder for temporary files, with a separator at its end: $TMPDIR, or /tmp.
[[nodiscard]] ZELKOR_API std::uint32_t TemporaryFolder(std::span<char16_t> folder) noexcept;

// folder \ first three units of prefix, number in hexadecimal, ".tmp". With `unique` 0 finds a
// number that is free and makes the file, empty and for its owner only; otherwise only builds the
// name from the low 16 bits. Answers the number used, 0 on failure.
ZELKOR_API std::uint32_t CreateTemporaryFile(const char16_t* folder, const char16_t* prefix,
                                             std::uint32_t unique,
                                             std::span<char16_t> name) noexcept;

}  // namespace zelkor::platform

#endif
