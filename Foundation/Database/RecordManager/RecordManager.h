// CT_RecordManager: variable-length records and keyed resources in one file of fixed-size blocks.
//
// A record is addressed by its reference, the number of the block its head starts at; it stays
// valid until the record is deleted. A resource is addressed by a key of the caller's. The layout
// is in RecordFormat.h and docs/formats/record-file.md.
//
// Construct with the file's name, v_Create or v_Open, use, v_Flush as often as wanted, v_Close.
// Records and resources are written at once; header, free table and resource directory only by
// v_Flush and v_Close, in an order that loses nothing wherever a killed process stops. The
// destructor writes nothing.
//
// Units: sizes, lengths and offsets are bytes; a file stays below 4 GiB.
// Errors: an operation that fails, or that finds an error already set, returns 0 or nothing, leaves
// its output empty and adds its location to the error. Blocks that it took stay taken. A record or
// resource that was to be replaced or deleted is as it was, also when the system fails in the
// middle of a write: that is undone at once, or if that fails too before the next change and by
// v_Flush and v_Close, and reads do not see it.
//   31005  damaged: a size, link or count that cannot be, or the file is shorter than it says
//   31050  no record file (opening)        31051  the reference is not a live record's
//   31052  no room for another resource    31053  no such resource    31054  the resource exists
//   5      a change, and the file is not open for writing
//   223    the file would have 4 GiB or more
//   else   the system's error of reading, writing, mapping
// Damaged files are never written outside their data area; opening and closing one leaves it as it
// is. A file whose writer was killed holds what was last flushed; check it, and repair it, before
// more is added: its free space may lead into blocks that were used since, which adding tells with
// 31005 where it can. What such a file holds behind its data end is not written over: the first
// block that is taken from the end is one behind it. A file with a resource twice in its directory
// cannot be changed (31005).
// Threads: one object, one thread. Between processes the share mode protects a file: one writer, or
// any number of readers.
#ifndef FOUNDATION_DATABASE_RECORDMANAGER_RECORDMANAGER_H
#define FOUNDATION_DATABASE_RECORDMANAGER_RECORDMANAGER_H

#include <cstddef>
#include <cstdint>
#include <span>

#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/Container/VoidArray.h"
#include "Foundation/Core/Container/VoidSortedArray.h"
#include "Foundation/Core/File/WinFile.h"
#include "Foundation/Database/RecordManager/RecordFormat.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_TestOut;

class ZELKOR_API CT_RecordManager : public CT_WinFile {
public:
    // Both of the first two open for reading; b_IsCorrupt looks at the file only in the second.
    enum et_OpenMode : unsigned int { kModeRead, kModeReadAndCheck, kModeReadWrite };
    // Whether the file is mapped into memory; kMapSmall: when it is smaller than half of it.
    enum et_MappingMode : unsigned int { kMapNever, kMapAlways, kMapSmall };

    struct st_Resource {
        unsigned int key;
        unsigned int offset;
    };

    // Takes the other file's name and buffer size.
    explicit CT_RecordManager(const CT_WinFile* file);
    ~CT_RecordManager() override;

    static void* operator new(std::size_t size);
    static void operator delete(void* block);

    // Creates the file, or replaces it, open for writing and not mapped. Error 87, before the file
    // is touched: the block size is below 8, or the sizes leave no room below 4 GiB. On failure the
    // object is closed.
    void v_Create(unsigned int record_header_size, unsigned int block_size,
                  unsigned int resource_max_count);

    // Opens an existing file: mode 2 exclusively for reading and writing, others for reading,
    // shared with readers. Tables kept by v_Close(FALSE) are used again when the file's change
    // counters did not move. The text at the start is not looked at, sizes and offsets only when
    // they are used, so a damaged file may open. On failure the object is closed and the file as it
    // was: 31050 for a wrong stamp, a format number above 1 or a file shorter than its header,
    // 31005 when a table does not fit.
    void v_Open(et_OpenMode mode, et_MappingMode mapping);

    // Writes what changed of header and tables and has the system store everything.
    void v_Flush();

    // Writes what changed, cuts a mapped file at its data end, closes it; with `clear` forgets the
    // tables. A closed object only forgets. On failure the object stays open. A file keeps its
    // length when anything lies behind its data end, or when nothing was changed and CT_RecordCheck
    // would find something.
    void v_Close(BOOL clear);

    [[nodiscard]] unsigned int n_GetBlockSize() const {
        return Get(zelkor::record_format::kBlockSizeAt);
    }
    [[nodiscard]] unsigned int n_GetRecordHeaderSize() const {
        return Get(zelkor::record_format::kRecordHeaderSizeAt);
    }
    [[nodiscard]] unsigned int n_GetResourceMaxCount() const {
        return Get(zelkor::record_format::kResourceMaxCountAt);
    }
    [[nodiscard]] unsigned int n_GetResourceCount() const {
        return Get(zelkor::record_format::kResourceCountAt);
    }
    [[nodiscard]] unsigned int n_GetRecordCount() const {
        return Get(zelkor::record_format::kRecordCountAt);
    }
    [[nodiscard]] unsigned int n_GetSize() const {
        return Get(zelkor::record_format::kDataEndAt);
    }  // data end
    // The first block of the data area and the one behind the last; 0 for a block size of 0.
    [[nodiscard]] unsigned int n_GetMinReference() const;
    [[nodiscard]] unsigned int n_GetMaxReference() const;
    [[nodiscard]] const CT_WinFile* pcco_GetFile() const { return this; }

    // Records. The first record-header-size bytes of the data lie in the record's head, the rest in
    // its body. A record of no more than that has no body, and as its length is not stored it
    // reads back padded to the record header size, with whatever its block held there before.

    // The new record's reference. On failure the blocks taken so far stay taken.
    unsigned int n_AddRecord(const CT_Buffer* data);
    // The data. A body whose stored length (data length - record header size + 4) is `maximum` or
    // more makes the output empty, without an error; maximum 0 sets no limit.
    void v_GetRecord(unsigned int reference, CT_Buffer* out, unsigned int maximum);
    void v_UpdateRecord(unsigned int reference, const CT_Buffer* data);
    // Replaces the head's part only, with no more than record-header-size bytes of the data.
    void v_UpdateRecordHeader(unsigned int reference, const CT_Buffer* data);
    void v_DeleteRecord(unsigned int reference);

    // Enumeration: a cursor of 0 starts, the result is the next cursor and its record's reference
    // + 1; 0 ends. Records that cannot be read are passed over without an error. Heads of several
    // blocks are passed over whole: nothing inside a head is taken for a record.
    // The robust form looks at every block, also inside bodies and free space, and gives bodies of
    // 102400 bytes or more as empty records.
    unsigned int n_GetNextRecord(unsigned int cursor, CT_Buffer* out);
    unsigned int n_GetNextRecordRobust(unsigned int cursor, CT_Buffer* out);

    // Whether the records that can be read are not as many as the header says. Passes over whole
    // heads as the enumeration does. FALSE in mode 0 without a look. CT_RecordCheck tells more.
    [[nodiscard]] BOOL b_IsCorrupt();

    // Resources.
    void v_AddResource(unsigned int key, const CT_Buffer* data);
    void v_GetResource(unsigned int key, CT_Buffer* out);
    void v_UpdateResource(unsigned int key, const CT_Buffer* data);
    void v_DeleteResource(unsigned int key);
    // The key's position in the directory, from 1 in ascending order of keys; 0: absent.
    [[nodiscard]] BOOL b_ResourceExists(unsigned int key) const;
    // 0xFFFFFFFF for a position that is not in the directory.
    [[nodiscard]] unsigned int n_GetResourceKeyAt(unsigned int position) const;

    // Accepted and ignored.
    void v_PrintLists(const char* title, CT_TestOut* out);
    void v_PrintHeader(const char* title, CT_TestOut* out);
    void v_Print(const char* title, CT_TestOut* out);
    void v_ConsistencyReport(const char* title, CT_TestOut* out);

    // The order of the directory: 1, -1 or 0.
    static int si_Compare(const void* a, const void* b);

private:
    struct FreeEntry {
        std::uint32_t offset;
        std::uint32_t size;  // 0: the overflow chain starts at the offset
    };
    struct ChainBlock {
        std::uint32_t size;
        std::uint32_t link;
    };
    // A block that was given back, with the words that are still to be written there; offset 0:
    // none. A block of the chain has a link.
    struct Held {
        std::uint32_t offset;
        ChainBlock words;
        bool linked;
    };
    // A record's body; offset 0: it has none.
    struct Body {
        std::uint32_t offset;
        std::uint32_t length;
    };
    class Piece;   // some bytes of the file, as they were read in one go
    class Former;  // bytes of the file that are being written over
    class Giving;  // a block that is being given back
    struct Scan;

    // Header fields.
    [[nodiscard]] unsigned int Get(unsigned int field) const {
        return zelkor::record_format::LoadU32(header_.data() + field);
    }
    void Put(unsigned int field, unsigned int value) {
        zelkor::record_format::StoreU32(header_.data() + field, value);
    }
    void Add(unsigned int field, int amount) {
        Put(field, Get(field) + static_cast<unsigned int>(amount));
    }
    void HeaderChanged() { Add(zelkor::record_format::kHeaderCounterAt, 1); }

    // Opening and closing (RecordManager.cpp).
    void FillHeader(unsigned int record_header_size, unsigned int block_size,
                    unsigned int resource_max_count);
    bool ReadHeader();
    bool ReadTables();
    bool ReadFreeTable();
    bool ReadDirectory();
    bool KeepOneOfEach(std::span<st_Resource> resources);
    void ForgetTables();
    void CloseFailed(unsigned int length);
    void JudgeLayout();
    unsigned int LooseEnd();
    unsigned int LengthToKeep();

    // Writing back (RecordManagerStore.cpp).
    void v_WriteHeader();
    void WriteTogether(bool table, bool directory, unsigned int end);
    void WriteInSteps(bool table, bool directory);
    bool WriteDirectory(unsigned int stored);

    // Reading and writing (RecordManagerAccess.cpp).
    void v_Read(void* out, unsigned int offset, unsigned int count);
    void v_Read(CT_Buffer* out, unsigned int offset, unsigned int count);
    void v_ReadAppend(CT_Buffer* out, unsigned int offset, unsigned int count);
    unsigned int n_Read(unsigned int offset);
    void v_Write(unsigned int offset, const void* data, unsigned int count);
    void v_Write(unsigned int offset, unsigned int value);
    bool Store(unsigned int offset, const void* data, unsigned int count);
    void Mend(unsigned int offset, const void* data, unsigned int count, bool mark = false);
    void Mend(unsigned int offset, unsigned int word, bool mark = false);
    bool PayDebts();
    void ShowDebts(std::byte* out, unsigned int offset, unsigned int count) const;
    void WritePair(unsigned int offset, unsigned int first, unsigned int second);
    [[nodiscard]] unsigned int n_AlignBlockSize(unsigned int size) const;
    void v_SetError(unsigned int code, unsigned int line = __builtin_LINE());
    void SystemFailure(unsigned int error, unsigned int line = __builtin_LINE());
    [[nodiscard]] bool b_CanMap() const;
    // What the data area's end and the file allow tables to reach, before a mapping extended it.
    [[nodiscard]] unsigned int TablesEnd() const {
        return n_GetSize() < opened_size_ ? n_GetSize() : opened_size_;
    }
    [[nodiscard]] bool InsideData(std::uint64_t offset, std::uint64_t count) const {
        return offset + count <= n_GetSize();
    }
    // Whether a block of that size may start there: on a boundary, in the data area, whole.
    [[nodiscard]] bool IsBlock(std::uint64_t offset, std::uint64_t size) const {
        const bool boundary = block_mask_ != 0
                                  ? (offset & block_mask_) == 0
                                  : n_GetBlockSize() != 0 && offset % n_GetBlockSize() == 0;
        return boundary && offset >= data_start_ && InsideData(offset, size);
    }
    [[nodiscard]] std::uint64_t Round(std::uint64_t size) const {
        if (block_mask_ == 0) return zelkor::record_format::Round(size, n_GetBlockSize());
        return ((size == 0 ? 1 : size) + block_mask_) & ~std::uint64_t{block_mask_};
    }
    // Of an offset on a block boundary. Requires a block size.
    [[nodiscard]] unsigned int Reference(std::uint64_t offset) const {
        return static_cast<unsigned int>(block_mask_ != 0 ? offset >> block_shift_
                                                          : offset / n_GetBlockSize());
    }
    // The mapping's first byte, and how much of the data area lies in it; null when not mapped.
    [[nodiscard]] const std::byte* MappedBytes() const {
        return static_cast<const std::byte*>(pv_GetMapping());
    }
    [[nodiscard]] unsigned int Reach() const {
        return n_GetSize() < MappedSize() ? n_GetSize() : MappedSize();
    }
    void SeekTo(unsigned int offset);
    unsigned int ReadAt(void* out, unsigned int offset, unsigned int count);
    [[nodiscard]] const std::byte* AtHand(unsigned int offset, unsigned int count) const;
    bool ReadSome(void* out, unsigned int offset, unsigned int count, unsigned int required);
    bool Room(CT_Buffer* out, std::uint64_t size);
    bool MayChange();
    bool Given(const void* argument, unsigned int line = __builtin_LINE());

    // Space (RecordManagerSpace.cpp).
    unsigned int n_GetFreeBlock(unsigned int size);
    void v_PutFreeBlock(int kind, unsigned int offset, unsigned int size);
    bool GiveBack(unsigned int offset, unsigned int size);
    bool Settle();
    void Withdraw();
    [[nodiscard]] const FreeEntry* FreeEntries() const;
    [[nodiscard]] bool HasChain() const;
    unsigned int TakeEntry(unsigned int position, unsigned int need);
    [[nodiscard]] bool InTable(unsigned int offset) const;
    bool RemoveEntry(unsigned int position);
    unsigned int TakeFromChain(unsigned int need);
    unsigned int UnlinkFromChain(unsigned int previous, unsigned int offset,
                                 const ChainBlock& block, unsigned int need);
    unsigned int TakeAtEnd(unsigned int need);
    bool ReadChainBlock(unsigned int offset, ChainBlock* block);

    // Records (RecordManagerRecords.cpp).
    [[nodiscard]] bool InMapping(std::uint64_t head, Body* body) const;
    void CopyMapped(std::uint64_t head, const Body& body, CT_Buffer* out, unsigned int maximum);
    bool Locate(unsigned int reference, unsigned int* head, Body* body, Piece* piece);
    bool Load(Piece* piece, unsigned int offset, unsigned int count);
    bool v_CheckReference(std::uint64_t head, Piece* piece, unsigned int count);
    bool v_GetBody(unsigned int head, const Piece& piece, Body* body, Piece* more);
    bool CopyRecord(unsigned int head, const Piece& piece, const Piece& more, const Body& body,
                    CT_Buffer* out);
    bool CopyOut(const Piece& piece, unsigned int offset, unsigned int count, unsigned int required,
                 std::byte* to);
    [[nodiscard]] std::uint64_t BodyLength(const CT_Buffer& data) const;
    bool WriteRecord(unsigned int head, unsigned int body, const CT_Buffer& data, bool at_end);
    void WriteAtOnce(unsigned int head, unsigned int body, const CT_Buffer& data);
    void WriteHead(unsigned int head, unsigned int body, const CT_Buffer& data);
    void WriteCounted(unsigned int offset, const std::byte* data, unsigned int length,
                      bool whole = false);
    void WriteBody(unsigned int body, const CT_Buffer& data);
    bool WriteOver(unsigned int offset, unsigned int old, const std::byte* data,
                   unsigned int length);
    bool WriteTail(unsigned int offset, unsigned int old, const std::byte* data,
                   unsigned int length);
    bool Rewrite(unsigned int head, const Body& old, const CT_Buffer& data, const Piece& piece);
    void MoveBody(unsigned int head, const Body& old, const CT_Buffer& data, const Piece& piece);

    // Enumeration (RecordManagerScan.cpp).
    [[nodiscard]] std::uint64_t StartOf(unsigned int cursor);
    bool FindHead(Scan* scan);
    bool WordAt(unsigned int offset, unsigned int* word);
    bool FillWindow(unsigned int offset);
    unsigned int NextRecord(unsigned int cursor, CT_Buffer* out, bool robust);

    // Resources (RecordManagerResources.cpp).
    unsigned int n_FindResource(st_Resource* resource);
    bool ReadResourceLength(unsigned int offset, unsigned int* length);
    bool PutResource(unsigned int offset, const CT_Buffer& data);

    zelkor::record_format::HeaderImage header_{};
    et_OpenMode open_mode_ = kModeRead;
    CT_VoidArray free_table_;  // FreeEntry
    CT_VoidSortedArray directory_;
    unsigned int header_copy_ = 0;  // change counters when last in step with the file; 0: never
    unsigned int free_copy_ = 0;
    unsigned int resource_copy_ = 0;
    CT_Buffer scratch_;
    // What follows from the header's sizes:
    bool changeable_ = false;       // they allow changes
    std::uint64_t data_start_ = 0;  // D
    std::uint64_t head_size_ = 0;   // in whole blocks
    unsigned int block_mask_ = 0;   // block size - 1 for a power of two, else 0
    unsigned int block_shift_ = 0;
    unsigned int opened_size_ = 0;  // of the file when it was opened
    unsigned int loose_end_ = 0;    // where the bytes end that it then held behind its data end
    bool loose_end_known_ = false;
    bool changed_ = false;  // since it was opened
    Held held_{};
    // What mends a failed write and could not be written either: offset, count, bytes; and so on.
    CT_Buffer debts_;
    // No block that a walk along the overflow chain meets is larger; after a walk that did not see
    // the chain's end this holds only until a block leaves the chain.
    unsigned int chain_bound_ = 0xFFFFFFFF;
    bool chain_end_seen_ = false;
    // What the enumeration of an unmapped file read ahead; writing keeps it in step.
    CT_Buffer window_;
    unsigned int window_offset_ = 0;
};

#endif
