// CT_CompListReader: fills a compressed list from a text with one word per line.
//
// Lines are taken as they are, without trimming; empty lines add nothing. Every word gets the
// handle 0, and a word that is there already keeps its own.
// Errors: a source that is missing or cannot be read is tolerated: nothing is read and no error is
// left behind. An error that is set already stays, with a location here, and nothing is read.
// Threads: one object, one thread.
#ifndef FOUNDATION_CORE_COMPLIST_COMPLISTREADER_H
#define FOUNDATION_CORE_COMPLIST_COMPLISTREADER_H

#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class CT_CompList;
class CT_StreamTextReader;
class CT_UString;

class ZELKOR_API CT_CompListReader {
public:
    // The list is borrowed. With `comments` lines that begin with '#' are left out.
    CT_CompListReader(CT_CompList* list, BOOL comments) : list_(list), comments_(comments) {}

    // Adds the lines up to the reader's end and closes the reader. FALSE only without a list or a
    // reader, which then stays as it is.
    BOOL b_ReadItems(CT_StreamTextReader* reader);

    // Reads a file by name, which may stand behind "file://" (in any case): UTF-8, or what its
    // byte-order mark says. Only for lists of element size 2. FALSE when nothing could be read.
    BOOL b_ReadItems(const char16_t* source);
    BOOL b_ReadItems(const CT_UString* source);

private:
    BOOL ReadFile(const CT_UString& name);

    CT_CompList* list_;
    BOOL comments_;
};

#endif
