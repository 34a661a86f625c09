// CT_FindFile: the entries of a folder whose names match a pattern, filtered by their attributes.
//
// Attributes are the C runtime's bits: read-only 0x01, hidden 0x02, system 0x04, folder 0x10,
// archive 0x20. "." and ".." are entries like any other.
// Errors: records none; a search that cannot start finds nothing.
// Threads: one object, one thread.
#ifndef FOUNDATION_CORE_FILE_FINDFILE_H
#define FOUNDATION_CORE_FILE_FINDFILE_H

#include <cstddef>
#include <cstdint>

#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/FindFiles.h"
#include "Foundation/Platform/Types.h"

class ZELKOR_API CT_FindFile {
public:
    // An entry passes when it has at least one attribute of `required` (0: any entry) and none of
    // `excluded`. With `full_names` names come with the drive and folder of the pattern in front.
    CT_FindFile(const CT_UString* pattern, unsigned int required, unsigned int excluded,
                BOOL full_names);
    CT_FindFile(const CT_FindFile&) = delete;
    CT_FindFile& operator=(const CT_FindFile&) = delete;
    ~CT_FindFile();  // ends a search that is under way

    static void* operator new(std::size_t size);
    static void operator delete(void* block);

    // Ends a search that is under way and takes a new pattern.
    void v_Set(const CT_UString* pattern, unsigned int required, unsigned int excluded,
               BOOL full_names);

    // The first entry (again, from a fresh search) and the one after. Without one the outputs stay
    // as they were and the answer is FALSE. A null output is skipped.
    BOOL b_FindFirst(CT_UString* name, unsigned int* attributes);
    BOOL b_FindNext(CT_UString* name, unsigned int* attributes);

private:
    [[nodiscard]] unsigned int Attributes() const;  // none for a file without any
    [[nodiscard]] BOOL b_TestAttribut() const;
    void v_MakeName(CT_UString* name) const;
    void Deliver(CT_UString* name, unsigned int* attributes) const;
    void EndSearch();

    zelkor::platform::FoundFile found_{};
    HANDLE search_ = INVALID_HANDLE_VALUE;
    CT_UString prefix_;
    CT_UString pattern_;
    unsigned int required_ = 0;
    unsigned int excluded_ = 0;
    BOOL full_names_ = FALSE;
};

#endif
