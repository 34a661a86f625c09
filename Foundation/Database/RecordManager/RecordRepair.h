// CT_RecordRepair: writes a new, compact record file from what can be read of another one.
//
// The other file is opened for reading and never changed, however damaged it is. Records go over in
// the order of their references and get new ones; a record without a body goes over with all of
// its record header size, and resources keep their keys. What cannot be read in full is lost. When
// two records share a body, as they may after a process was killed, both go over; what is shared
// goes over twice only up to the size of the damaged file.
//
// Units: positions count from 1.
// Errors: b_Repair records
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

namespace foundation::detail {
class RecordImage;
struct RepairReport;
struct RecordSurvey;
}  // namespace foundation::detail

class FOUNDATION_API CT_RecordRepair {
public:
    struct st_Moved {
        unsigned int old_reference;
        unsigned int new_reference;
    };
    struct st_Lost {
        CT_RecordCheck::et_Finding kind;  // kBody, kOverlap, kResource or kDirectoryOrder
        BOOL copied;                      // not lost but doubtful: its body is another's as well
        unsigned int reference;           // of a record; 0: a resource
        unsigned int key;                 // of a resource
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

    // Creates or replaces the target; TRUE when nothing was lost or is doubtful.
    BOOL b_Repair(const CT_WinFile* target);

    [[nodiscard]] unsigned int n_GetMovedCount() const;
    [[nodiscard]] st_Moved so_GetMovedAt(unsigned int position) const;
    [[nodiscard]] unsigned int n_GetLostCount() const;
    [[nodiscard]] st_Lost so_GetLostAt(unsigned int position) const;

private:
    void CopyRecords(const foundation::detail::RecordImage& image,
                     const foundation::detail::RecordSurvey& survey, CT_RecordManager& target);
    void CopyResources(const foundation::detail::RecordImage& image,
                       const foundation::detail::RecordSurvey& survey, CT_RecordManager& target);

    CT_WinFile file_;
    bool has_layout_ = false;
    unsigned int record_header_size_ = 0;
    unsigned int block_size_ = 0;
    unsigned int resource_max_count_ = 0;
    foundation::detail::RepairReport* report_;
};

#endif
