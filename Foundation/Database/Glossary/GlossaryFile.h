// CT_GlossaryFile: a bilingual word list kept in a record file, to be searched again without being
// built again.
//
// The file is a record file without records; the list's two buffers and two packed lists are its
// resources, as docs/formats/glossary.md describes. Loading takes time linear in the file.
// Errors: FALSE and an error, with the file's name in its message if there is one
//   87                  an argument is null
//   31050               no record file, or one that holds no glossary, or a later kind of one
//   31005               damaged: the parts are not those that were stored, or do not fit together
//   the system's error  of opening, reading, writing
// Running out of memory throws CT_SmartHeapException. Threads: any; between processes the share
// mode of record files protects a file.
#ifndef FOUNDATION_DATABASE_GLOSSARY_GLOSSARYFILE_H
#define FOUNDATION_DATABASE_GLOSSARY_GLOSSARYFILE_H

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_BiLingualUWordList;

class ZELKOR_API CT_GlossaryFile {
public:
    // Writes a new file, beside an old one (`file`.new) whose place it takes when it is complete
    // and stored. On failure the old file stays as it was.
    static BOOL sb_Save(const CT_BiLingualUWordList* list, const char16_t* file);
    // Puts the file's pairs in place of the list's own. On failure the list stays as it was.
    static BOOL sb_Load(CT_BiLingualUWordList* list, const char16_t* file);
};

#endif
