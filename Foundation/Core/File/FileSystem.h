// CT_FileSystem: names and folders of the platform's file system, as static functions.
//
// Names: "\" and "/" both separate, a drive prefix "X:" names the root of the one tree. On the
// older platform family names pass through code page 0 on their way to the platform and back.
// A null name counts as an empty one; without a text to write to nothing happens.
// Errors: only sv_FullPath and sv_GetCurrentPath record one; all others tell of failure by their
// result alone (FALSE, 0, an empty or unchanged text) and leave no error behind.
// Threads: no locks; sv_FullPath, sv_GetCurrentPath and sb_ChangePath work with the current folder,
// which the whole process shares.
#ifndef FOUNDATION_CORE_FILE_FILESYSTEM_H
#define FOUNDATION_CORE_FILE_FILESYSTEM_H

#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Export.h"
#include "Foundation/Platform/Types.h"

class ZELKOR_API CT_FileSystem {
public:
    // What a name stands for. Times are seconds since 1970-01-01 UTC; one that does not fit is the
    // nearest that does. The size of a file of 4 GiB or more reads 0xFFFFFFFF.
    struct st_Stat {
        unsigned int n_Kind;  // 0: missing or unknown, 1: file, 2: folder, 3: pipe, 4: device
        unsigned int n_Size;  // bytes
        int i_Creation;       // of the file or of its last change of attributes
        int i_Access;
        int i_Modification;
    };

    // Takes a path apart: "C:", "\dir\" with its last separator, "name", ".ext" from the last
    // period on; a null output is skipped. And the inverse, which adds the colon, a separator
    // behind the directory and a period where missing. Outputs and inputs may be the same string.
    static void sv_SplitPath(const CT_UString* path, CT_UString* drive, CT_UString* directory,
                             CT_UString* name, CT_UString* extension);
    static void sv_MakePath(CT_UString* path, const CT_UString* drive, const CT_UString* directory,
                            const CT_UString* name, const CT_UString* extension);

    // Makes the path absolute, from the current folder on, with ".", ".." and doubled separators
    // resolved and every other name kept as it is. On failure (no current folder, or a result of
    // 260 units and more) the path stays as it was and the thread's error holds
    //   60012  "Semantic error: %s", filled with the path
    static void sv_FullPath(CT_UString* path);

    // Shortens a path for display to `maximum` characters if it can: leading folders behind the
    // drive and root give way to "...", "C:\aaa\bbb\ccc\file.txt" becomes "C:\...\ccc\file.txt".
    // The last folder and the name stay whole, so the result may be longer than asked for.
    static void sv_MakeDisplayString(CT_UString* path, unsigned int maximum);

    // The current folder of a drive: 0 is the current one, 1 is A, 2 is B and so on. On failure the
    // path is emptied and the thread's error holds
    //   the C runtime's error number  with message 60003
    static void sv_GetCurrentPath(CT_UString* path, unsigned int drive);

    [[nodiscard]] static BOOL sb_IsExistent(const CT_UString* path);
    [[nodiscard]] static BOOL sb_IsFolder(
        const CT_UString* path);  // also "C:" and "folder\", not ""
    [[nodiscard]] static BOOL sb_IsFile(const CT_UString* path);
    [[nodiscard]] static BOOL sb_IsPipe(const CT_UString* path);
    [[nodiscard]] static BOOL sb_IsDevice(const CT_UString* path);

    // All fields 0 when there is nothing of that name or it cannot be asked.
    [[nodiscard]] static st_Stat sso_GetStat(const CT_UString* path);
    [[nodiscard]] static unsigned int sn4_GetSize(const CT_UString* path);
    [[nodiscard]] static int si4_GetCreationDate(const CT_UString* path);
    [[nodiscard]] static int si4_GetModificationDate(const CT_UString* path);
    [[nodiscard]] static int si4_GetAccessDate(const CT_UString* path);

    // Changes the current folder, makes a folder (its parent must exist), removes an empty folder.
    static BOOL sb_ChangePath(const CT_UString* path);
    static BOOL sb_MakePath(const CT_UString* path);
    static BOOL sb_RemovePath(const CT_UString* path);

    // Makes an empty file in the temporary folder: up to three characters of `prefix`, a number in
    // hexadecimal, and `extension` (without a period; null: "tmp"). `path` becomes its full name,
    // empty when no file could be made. With an extension the file is made as .tmp and renamed;
    // when that fails `path` names the new name all the same and the .tmp file is left.
    // On the older family no file is made: `path` is a full name that nothing has yet.
    static void sv_CreateTempFile(CT_UString* path, const char16_t* prefix,
                                  const char16_t* extension);
};

#endif
