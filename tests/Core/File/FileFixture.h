// What the file tests share: a temporary folder, files opened in it, and error numbers as answers.
#ifndef TESTS_CORE_FILE_FILEFIXTURE_H
#define TESTS_CORE_FILE_FILEFIXTURE_H

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "Foundation/Core/Error/ErrorManager.h"
#include "Foundation/Core/File/WinFile.h"
#include "Foundation/Platform/Faults.h"
#include "Support/Errors.h"
#include "Support/TempFolder.h"
#include "Support/Text.h"

namespace test {

class FileTest : public ::testing::Test {
protected:
    ~FileTest() override { zelkor::platform::ClearFileFaults(); }

    static std::string Content(const CT_Buffer& buffer) {
        return {static_cast<const char*>(buffer.qcv_Get()), buffer.n_GetUsedSize()};
    }
    CT_UString Name(std::u16string_view leaf) const {
        return CT_UString(folder_.Name(leaf).c_str());
    }
    std::string Get(std::u16string_view leaf) const {
        return folder_.Has(leaf) ? folder_.Read(leaf) : "(missing)";
    }
    static void Open(CT_WinFile& file, unsigned int access, unsigned int mode,
                     unsigned int share = 0) {
        file.vv_Open(static_cast<CT_File::et_Access>(access), static_cast<CT_File::et_Open>(mode),
                     static_cast<CT_File::et_Share>(share), 0x01, 0);
    }
    // A file "file" with this content, opened.
    std::unique_ptr<CT_WinFile> Opened(std::string_view content, unsigned int access,
                                       unsigned int share = 0) const {
        folder_.Write(u"file", content);
        auto file = std::make_unique<CT_WinFile>(&name_, 16384);
        Open(*file, access, 1, share);
        return file;
    }
    static std::string Read(CT_WinFile& file, unsigned int count) {
        std::string bytes(count, '\0');
        bytes.resize(file.vn_Read(bytes.data(), count));
        return bytes;
    }
    static void Seek(CT_WinFile& file, unsigned int origin, int distance) {
        file.vv_SetOffset(static_cast<CT_File::et_Origin>(origin), distance);
    }
    // The number of the thread's error, which is cleared; 0 without one.
    static unsigned int Taken() {
        CT_ErrorManager* const errors = CT_ErrorManager::spco_Get();
        const unsigned int code = errors->b_IsSetError() ? errors->n_GetErrorCode() : 0;
        errors->v_ClearError();
        return code;
    }

    const TempFolder folder_;
    const CT_UString name_ = Name(u"file");
    CT_WinFile file_{&name_, 16384};  // not opened
};

}  // namespace test

#endif
