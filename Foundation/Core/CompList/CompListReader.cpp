#include "Foundation/Core/CompList/CompListReader.h"

#include <string_view>

#include "Foundation/Core/CompList/CompList.h"
#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Core/File/FileSystem.h"
#include "Foundation/Core/File/Stream.h"
#include "Foundation/Core/File/TextReader.h"
#include "Foundation/Core/File/WinFile.h"
#include "Foundation/Core/Language/Codepage.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Runtime.h"

namespace platform = zelkor::platform;

namespace detail = zelkor::detail;

namespace {

constexpr unsigned int kFileBufferSize = 16384;
constexpr std::u16string_view kScheme = u"file://";

// The file that a source names.
CT_UString FileName(const char16_t* source) {
    const bool has_scheme = platform::CompareNoCase(source, kScheme.data(), kScheme.size()) == 0;
    return CT_UString(has_scheme ? source + kScheme.size() : source);
}

}  // namespace

BOOL CT_CompListReader::b_ReadItems(CT_StreamTextReader* reader) {
    if (reader == nullptr || list_ == nullptr) return FALSE;
    CT_UString line;
    while (reader->b_ReadLine(line) != FALSE) {
        if (line.n_GetLength() == 0 || (comments_ != FALSE && line.u_GetAt(0) == u'#')) continue;
        list_->b_Add(&line, 0);
    }
    reader->v_Close();
    return TRUE;
}

BOOL CT_CompListReader::b_ReadItems(const char16_t* source) {
    if (detail::Failed() || list_ == nullptr || list_->n_GetElementSize() != CT_CompList::kTwoBytes)
        return FALSE;
    const CT_UString name = FileName(source == nullptr ? u"" : source);
    if (CT_FileSystem::sb_IsExistent(&name) == FALSE) return FALSE;
    const BOOL done = ReadFile(name);
    detail::ClearError();
    return done;
}

// May leave an error.
BOOL CT_CompListReader::ReadFile(const CT_UString& name) {
    CT_WinFile file(&name, kFileBufferSize);
    file.vv_Open(CT_File::kReadAccess, CT_File::kOpenExisting, CT_File::kShareRead,
                 CT_File::kAttributeNormal, 0);
    CT_FileStream stream(&file);
    CT_StreamTextReader reader(&stream, CT_Codepage(CT_Codepage::kUtf8), TRUE);
    return detail::Failed() ? FALSE : b_ReadItems(&reader);
}

BOOL CT_CompListReader::b_ReadItems(const CT_UString* source) {
    return b_ReadItems(source == nullptr ? u"" : source->qcuz_Get());
}
