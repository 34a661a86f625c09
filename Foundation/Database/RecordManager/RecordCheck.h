// CT_RecordCheck: looks at every structure of a record file and lists what is wrong with it.
//
// Reads the header, the free table with its overflow chain, the resource directory, and all blocks
// of the data area, and settles for each block who owns it. Works on files that no CT_RecordManager
// opens. The file is opened for reading, shared with readers, and never changed.
//
// Units: offsets and sizes are bytes; positions count from 1.
// Errors: b_Check records the system's error when the file cannot be opened or mapped. Damage is no
// error but a finding. Memory: one byte a block and at most kMaxFindings findings.
// Threads: one object, one thread.
#ifndef FOUNDATION_DATABASE_RECORDMANAGER_RECORDCHECK_H
#define FOUNDATION_DATABASE_RECORDMANAGER_RECORDCHECK_H

#include <cstddef>

#include "Foundation/Core/File/WinFile.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

namespace zelkor::detail {
struct RecordSurvey;
}

class ZELKOR_API CT_RecordCheck {
public:
    static constexpr unsigned int kMaxFindings = 10000;

    enum et_Finding : unsigned int {
        kText,            // the text at the start is another; harmless
        kShort,           // the file is shorter than its header
        kStamp,           // other: the byte-order stamp found
        kFormat,          // other: the format number found
        kLayout,          // block size, record header size or data end cannot be; other: that value
        kTruncated,       // the file ends `size` bytes before the data end
        kFreeCount,       // other: the count, above the capacity or beyond the file
        kResourceCount,   // other: the count, above the maximum or beyond the file
        kRecordCount,     // size: the header's count, other: that of the records that can be read
        kFreeEntry,       // a free-table entry with an impossible block; other: that block
        kFreeSize,        // a free block's size word is not the size that its entry or link needs
        kFreeTwice,       // a block is free twice, or the overflow chain runs in a circle
        kChainLink,       // other: an impossible link of the overflow chain
        kDirectoryOrder,  // a key that is not above the one before it; other: the key
        kResource,        // an impossible resource block; other: the key
        kBody,            // a head with an impossible body link or length; other: the link
        kUnfinished,      // a head that was never finished
        kHidden,          // a live head where a scan does not look
        kOverlap,         // the block belongs to two; other: where the second one starts
        kLeak,            // `size` bytes that nothing owns
        kBehindEnd,       // a live head behind the data end
    };
    struct st_Finding {
        et_Finding kind;
        unsigned int offset;  // where in the file
        unsigned int size;
        unsigned int other;
    };
    enum et_Owner : unsigned char {
        kNobody,
        kHeadOwner,
        kBodyOwner,
        kResourceOwner,
        kFreeOwner,
        kUnfinishedOwner,
    };
    static constexpr unsigned int kOwners = 6;

    // Takes the file's name.
    explicit CT_RecordCheck(const CT_WinFile* file);
    ~CT_RecordCheck();
    CT_RecordCheck(const CT_RecordCheck&) = delete;
    CT_RecordCheck& operator=(const CT_RecordCheck&) = delete;

    static void* operator new(std::size_t size);
    static void operator delete(void* block);

    // Checks the file now; TRUE when there is nothing to report. What the rest answers is what the
    // last check saw.
    BOOL b_Check();

    // All findings, and those that are kept.
    [[nodiscard]] unsigned int n_GetFindingCount() const;
    [[nodiscard]] unsigned int n_GetListedCount() const;
    [[nodiscard]] st_Finding so_GetFindingAt(unsigned int position) const;
    // "the block belongs to two owners", without numbers.
    [[nodiscard]] static const char* sqccz_GetText(et_Finding kind);

    // The data area as far as the file holds it: its blocks and who owns each, from reference
    // n_GetMinReference() on. 0 blocks when the header cannot be used.
    [[nodiscard]] unsigned int n_GetMinReference() const;
    [[nodiscard]] unsigned int n_GetBlockCount() const;
    [[nodiscard]] unsigned int n_GetBlockSize() const;
    [[nodiscard]] et_Owner eo_GetOwnerAt(unsigned int reference) const;
    [[nodiscard]] unsigned int n_GetBlockCount(et_Owner owner) const;
    // Separate runs of blocks of that owner.
    [[nodiscard]] unsigned int n_GetRunCount(et_Owner owner) const;

    [[nodiscard]] unsigned int n_GetRecordCount() const;  // that can be read
    // The reference of the next one of them behind that reference, from 0 on; 0 at the end. Unlike
    // an enumeration this never takes data that looks like a head for a record.
    [[nodiscard]] unsigned int n_GetNextReference(unsigned int reference) const;

private:
    CT_WinFile file_;
    zelkor::detail::RecordSurvey* survey_;
};

#endif
