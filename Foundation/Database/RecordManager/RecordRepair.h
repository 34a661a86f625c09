// CT_RecordRepair: writes a new, compact record file from what can be read of another one.
//
// The other file is opened for reading and never changed, however damaged it is. Records go over in
// the order of their references and get new ones; a record without a body goes over with all of
// its record header size, and resources keep their keys. So do records that a killed process wrote
// behind the data end, and those that another one's damaged length has swallowed. What cannot be
// read in full is lost, and what the header counts and nobody found is missing. When blocks have
// two owners, as they may after a process was killed, both go over; what is shared goes over twice
// only up to the size of the damaged file.
//
// Units: positions count from 1.
// Errors: b_Repair records
//   87                  the target is null
//   31050               the header names no usable sizes, and none were set
//   the system's error  of opening the damaged file or of writing the new one; what there is of the
//                       new file stays, closed
// Threads: one object, one thread.
#ifndef FOUNDATION_DATABASE_RECORDMANAGER_RECORDREPAIR_H
#define FOUNDATION_DATABASE_RECORDMANAGER_RECORDREPAIR_H

#include <cstddef>

#include "Foundation/Core/File/WinFile.h"
#include "Foundation/Database/RecordManager/RecordCheck.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_RecordManager;

namespace zelkor::detail {
struct RecordBytes;
struct RepairReport;
struct RecordSurvey;
}  // namespace zelkor::detail

class ZELKOR_API CT_RecordRepair {
public:
    struct st_Moved {
        unsigned int old_reference;
        unsigned int new_reference;
    };
    struct st_Lost {
        // kBody, kResource, kDirectoryOrder: cannot be read; kOverlap: shares its blocks;
        // kRecordCount, kResourceCount: `count` that the header counts are missing;
        // kLeak: blocks that nothing owns, but hold something
        // kStamp: the header is lost, so that nobody knows what there was
        CT_RecordCheck::et_Finding kind;
        BOOL copied;             // not lost but doubtful: it went over, or may have been nothing
        unsigned int reference;  // of a record, or of the first such block; 0: a resource
        unsigned int key;        // of a resource
        unsigned int count;      // how many this stands for
    };

    // Takes the damaged file's name.
    explicit CT_RecordRepair(const CT_WinFile* file);
    ~CT_RecordRepair();
    CT_RecordRepair(const CT_RecordRepair&) = delete;
    CT_RecordRepair& operator=(const CT_RecordRepair&) = delete;

    static void* operator new(std::size_t size);
    static void operator delete(void* block);

    // For a file whose header is lost: the sizes that it was created with.
    void v_SetLayout(unsigned int record_header_size, unsigned int block_size,
                     unsigned int resource_max_count);

    // Creates or replaces the target; TRUE when nothing was lost or is doubtful: all that the
    // header counts went over, and nothing owns a block with something in it that did not.
    BOOL b_Repair(const CT_WinFile* target);

    [[nodiscard]] unsigned int n_GetMovedCount() const;
    [[nodiscard]] st_Moved so_GetMovedAt(unsigned int position) const;
    [[nodiscard]] unsigned int n_GetLostCount() const;
    [[nodiscard]] st_Lost so_GetLostAt(unsigned int position) const;

private:
    void CopyRecords(const zelkor::detail::RecordBytes& image,
                     const zelkor::detail::RecordSurvey& survey, CT_RecordManager& target);
    void CopyResources(const zelkor::detail::RecordBytes& image,
                       const zelkor::detail::RecordSurvey& survey, CT_RecordManager& target);
    void ListMissing(const zelkor::detail::RecordSurvey& survey);

    CT_WinFile file_;
    bool has_layout_ = false;
    unsigned int record_header_size_ = 0;
    unsigned int block_size_ = 0;
    unsigned int resource_max_count_ = 0;
    zelkor::detail::RepairReport* report_;
};

#endif
