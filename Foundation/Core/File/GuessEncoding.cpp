// CT_Codepage: the encoding of a file by its first bytes.
#include "Foundation/Core/Character/CharProperties.h"
#include "Foundation/Core/Error/Internal/Failure.h"
#include "Foundation/Core/File/WinFile.h"
#include "Foundation/Core/Language/Codepage.h"

namespace {

constexpr unsigned int kGuessedBytes = 100;
constexpr unsigned int kFileBufferSize = 16384;

// The first bytes of a file; 0 of them when it cannot be read. Leaves no error behind.
unsigned int ReadBeginning(const CT_UString* file_name, void* bytes) {
    CT_WinFile file(file_name, kFileBufferSize);
    unsigned int count = 0;
    file.vv_Open(CT_File::kReadAccess, CT_File::kOpenExisting, CT_File::kShareRead,
                 CT_File::kAttributeNormal, 0);
    if (file.b_IsOpen()) {
        count = file.vn_Read(bytes, kGuessedBytes);
        if (zelkor::detail::ErrorIsSet()) count = 0;
        file.vv_Close();
    }
    zelkor::detail::ClearError();
    return count;
}

}  // namespace

CT_Codepage CT_Codepage::sco_GuessEncoding(const CT_UString* file_name) {
    if (zelkor::detail::ErrorIsSet()) return kSystemAnsi;
    unsigned char bytes[kGuessedBytes];
    const unsigned int count = ReadBeginning(file_name, bytes);
    if (count < 3) return kSystemAnsi;
    if (bytes[0] == 0xEF && bytes[1] == 0xBB && bytes[2] == 0xBF) return kUtf8;
    return CT_CharProperties::sb_IsTextUnicode(bytes, count) ? kUtf16 : kSystemAnsi;
}
