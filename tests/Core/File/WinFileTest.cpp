#include "Foundation/Core/File/WinFile.h"

#include <cstdlib>
#include <ctime>
#include <tuple>

#include "Core/File/FileFixture.h"
#include "Foundation/Platform/LastError.h"

namespace platform = zelkor::platform;

namespace {

using test::Utf8;

constexpr unsigned int kMiB = 0x100000;

class WinFileTest : public test::FileTest {};

TEST_F(WinFileTest, NamePartsFollowEachOther) {
    CT_UString name(u"C:\\dir\\a.b"), part(u"new.c");
    CT_WinFile file(&name, 1);
    file.v_SetName(&part);
    file.v_SetDirectory(file.pcco_GetDrive());
    EXPECT_EQ(Utf8(file.pcco_GetFullName()->qcuz_Get()), "C:C:\\new.c.b");
    EXPECT_EQ(file.n_GetBufferSize(), 1024u);
    file.vv_Set(file.pcco_GetName(), 1025);  // a part of its own
    file.vv_Set(&file);
    file.v_FullPath();
    EXPECT_EQ(Utf8(file.pcco_GetName()->qcuz_Get()), "new");
    EXPECT_EQ(file.pcco_GetDrive()->n_GetLength(), 2u);
    EXPECT_EQ(file.n_GetBufferSize(), 2048u);
}

TEST_F(WinFileTest, ModesOfOpening) {
    struct Case {
        const char* content;  // null: no such file
        unsigned int access, mode, share, error, offset;
        const char* after;
    };
    const Case cases[] = {
        {"0123456789", 1, 1, 0, 0, 0, "0123456789"},
        {nullptr, 1, 1, 0, 2, 0, "(missing)"},
        {"0123456789", 2, 2, 0, 0, 0, ""},
        {"0123456789", 2, 3, 0, 0, 10, "0123456789"},
        {nullptr, 3, 3, 0, 0, 0, ""},
        {"x", 4, 1, 0, 87, 0, "x"},
        {"x", 2, 4, 0, 87, 0, "x"},
        {"x", 1, 1, 4, 87, 0, "x"},
    };
    Open(file_, 1, 1);
    EXPECT_TRUE(test::TakeError(
        2, u"(2): The system cannot find the file specified. [" + folder_.Name(u"file") + u"]",
        "File/WinFile.cpp"));
    for (const Case& row : cases) {
        SCOPED_TRACE(::testing::Message() << row.access << row.mode << row.share);
        folder_.Remove(u"file");
        if (row.content != nullptr) folder_.Write(u"file", row.content);
        CT_WinFile file(&name_, 16384);
        platform::SetLastError(77);
        Open(file, row.access, row.mode, row.share);
        EXPECT_EQ(Taken(), row.error);
        EXPECT_EQ(platform::LastError(), 0u);
        EXPECT_EQ(file.b_IsOpen(), row.error == 0);
        EXPECT_EQ(file.h_GetHandle() == INVALID_HANDLE_VALUE, row.error != 0);
        EXPECT_EQ(file.vn_GetOffset(), row.offset);
        EXPECT_EQ(Get(u"file"), row.after);
    }
}

TEST_F(WinFileTest, ChangingDirectionReturnsToTheOffset) {
    const auto file = Opened("0123456789", 3);
    platform::FailFileCall(platform::FileCall::kSeek, 0, 0, true);  // counts them
    EXPECT_EQ(file->vn_Read(nullptr, 0) + file->vn_Write(nullptr, 0), 0u);
    EXPECT_EQ(Read(*file, 2), "01");
    EXPECT_EQ(Read(*file, 2), "23");
    EXPECT_EQ(file->vn_Write("ab", 2), 2u);
    CT_Buffer buffer("before", 6, 32);
    const CT_Buffer shared(&buffer);
    EXPECT_FALSE(file->vb_IsEof());
    EXPECT_EQ(file->n_Read(&buffer, 100), 4u);
    EXPECT_EQ(platform::ClearFileFaults(platform::FileCall::kSeek), 3u);
    EXPECT_TRUE(file->vb_IsEof() && buffer.n_GetUsedSize() == 4);
    EXPECT_EQ(file->n_Write(&buffer, 3) + file->n_Write(&shared, 0xFFFFFFFF), 9u);
    EXPECT_EQ(Get(u"file"), "0123ab6789678before");
    Seek(*file, 2, -4);
    EXPECT_CT_ERROR(131, Seek(*file, 1, -20));
    EXPECT_CT_ERROR(131, Seek(*file, 0, -1));
    EXPECT_CT_ERROR(87, Seek(*file, 3, 0));
    EXPECT_EQ(Read(*file, 9), "fore");
}

TEST_F(WinFileTest, MappingGrowsInWholeMebibytesAndIsCutBack) {
    auto file = Opened(std::string(100, 'x'), 3);
    file->v_CreateMap(0xFFFFF);
    EXPECT_EQ(file->vn_GetSize(), kMiB);
    file->v_CloseMap(100);
    EXPECT_FALSE(file->b_GetMapping());
    EXPECT_EQ(file->vn_GetSize(), 100u);
    EXPECT_EQ(file->vn_GetOffset(), 100u);

    file->v_CreateMap(0);
    Seek(*file, 0, static_cast<int>(kMiB) - 2);
    EXPECT_EQ(file->vn_Write("abcd", 4), 4u);
    EXPECT_EQ(file->vn_GetSize(), 2 * kMiB);
    Seek(*file, 1, -4);  // from the offset, though mapped transfers leave the file pointer
    EXPECT_EQ(Read(*file, 4), "abcd");
    Seek(*file, 0, static_cast<int>(2 * kMiB) - 1);
    EXPECT_EQ(Read(*file, 10).size(), 1u);
    EXPECT_EQ(Read(*file, 10).size(), 0u);
    file->v_CloseMap(0);
    Seek(*file, 0, static_cast<int>(kMiB));
    file->v_CreateMap(0xFFFFFFFF);
    EXPECT_EQ(file->vn_Write("CD", 2), 2u);
    file->v_FlushMap();
    file->v_CloseMap(0);
    EXPECT_EQ(file->vn_Write("!", 1), 1u);  // goes on where the mapped transfer ended
    file->v_CreateMap(0);
    file.reset();  // ends the mapping without cutting
    EXPECT_EQ(Get(u"file").substr(kMiB - 2, 5), "abCD!");
    EXPECT_EQ(Get(u"file").size(), 2 * kMiB);
}

TEST_F(WinFileTest, MappingForReadingIsTheFileAsItIs) {
    auto file = Opened("0123456789", 1);
    file->v_CreateMap(5000);
    EXPECT_CT_ERROR(5, file->vn_Write("x", 1));
    EXPECT_EQ(Read(*file, 20), "0123456789");
    file->v_CloseMap(3);  // must not cut
    EXPECT_EQ(Get(u"file"), "0123456789");
    using Case = std::tuple<const char*, unsigned int, unsigned int, unsigned int>;
    const Case cases[] = {
        {"", 1, 0, 1006}, {"", 3, 0xFFFFFFFF, 1006}, {"x", 2, 1, 5}, {"x", 3, 0xFFF00001, 223}};
    for (const auto& [content, access, minimum, error] : cases) {
        file.reset();
        file = Opened(content, access);
        EXPECT_CT_ERROR(error, file->v_CreateMap(minimum));
        EXPECT_FALSE(file->b_GetMapping());
        EXPECT_EQ(Get(u"file"), content);
    }
}

TEST_F(WinFileTest, RefusesFilesOfFourGiB) {
    constexpr std::uint64_t k4GiB = std::uint64_t{1} << 32;
    folder_.Write(u"file", "");
    struct _stat information;
    std::filesystem::resize_file(folder_.Native(u"file"), k4GiB);
    EXPECT_CT_ERROR(223, Open(file_, 3, 1));
    EXPECT_CT_ERROR(27, file_.v_GetFileInformation(&information));
    std::filesystem::resize_file(folder_.Native(u"file"), k4GiB - 3);
    Open(file_, 3, 3);
    EXPECT_EQ(file_.vn_GetOffset(), 0xFFFFFFFDu);
    EXPECT_CT_ERROR(223, file_.vn_Write("ab", 2));  // no position is as large as its end
    EXPECT_EQ(file_.vn_Write("a", 1), 1u);
    EXPECT_EQ(Read(file_, 5), "");  // so far out a change of direction takes several moves
    EXPECT_CT_ERROR(223, Seek(file_, 1, 1));
    EXPECT_EQ(file_.vn_GetOffset(), 0xFFFFFFFEu);
    EXPECT_CT_ERROR(223, file_.v_CreateMap(1));
    EXPECT_EQ(std::filesystem::file_size(folder_.Native(u"file")), k4GiB - 2);
}

TEST_F(WinFileTest, RenamesRemovesAndCopiesByName) {
    folder_.Write(u"file", "content");
    folder_.Write(u"copy", "longer than the content");
    const CT_UString copy = Name(u"copy"), renamed = Name(u"renamed");
    CT_WinFile file(&name_, 1024);
    EXPECT_CT_MESSAGE(183,
                      u"(183): Cannot create a file when that file already exists. [" +
                          folder_.Name(u"file") + u" : " + folder_.Name(u"copy") + u"]",
                      file.vv_Rename(&copy));
    file.v_CopyFile(&copy);
    file.vv_Rename(&renamed);
    EXPECT_EQ(Get(u"copy") + Get(u"renamed") + Get(u"file"), "contentcontent(missing)");
    EXPECT_EQ(file.pcco_GetFullName()->vi_Compare(&renamed), 0);
    EXPECT_EQ(file.n_GetBufferSize(), 16384u);
    file.vv_Remove();
    EXPECT_EQ(Get(u"renamed"), "(missing)");
    EXPECT_CT_ERROR(2, file.vv_Remove());
    EXPECT_CT_ERROR(2, file.v_CopyFile(&copy));
}

TEST_F(WinFileTest, NullArgumentsAnswerTheFailureValue) {
    const auto file = Opened("text", 3);
    CT_Buffer* const no_buffer = nullptr;
    const CT_WinFile* const no_file = nullptr;
    const CT_UString* const no_text = nullptr;
    EXPECT_EQ(file->n_Read(no_buffer, 1) + file->n_Write(no_buffer, 1), 0u);
    EXPECT_EQ(file->n_ReadLineC(nullptr, nullptr) + file->n_ReadLineU(nullptr, nullptr), 0u);
    EXPECT_EQ(file->n_ReadLineCSequential(nullptr, nullptr), 0u);
    file->v_WriteLineU(nullptr, FALSE);
    EXPECT_TRUE(test::NoError());
    const CT_Buffer small("x", 1, 32);
    EXPECT_CT_ERROR(87, file->n_Write(&small, 0xFFFFFFFE));  // read behind the buffer
    EXPECT_CT_ERROR(87, file->vn_Read(nullptr, 1));
    EXPECT_CT_ERROR(87, file->vn_Write(nullptr, 1));
    EXPECT_CT_ERROR(87, file->v_GetFileInfo(nullptr));
    EXPECT_CT_ERROR(22, file->v_GetFileInformation(nullptr));
    file->vv_Close();
    EXPECT_CT_ERROR(87, file->v_Append(nullptr, 1));
    EXPECT_CT_ERROR(3, file->v_CopyFile(nullptr));
    EXPECT_CT_ERROR(3, file->vv_Rename(nullptr));
    EXPECT_EQ(Get(u"file"), "text");
    CT_WinFile nameless(no_file);
    nameless.vv_Set(no_file);
    nameless.vv_Set(no_text, 1);
    EXPECT_CT_ERROR(3, Open(nameless, 1, 1));
}

TEST_F(WinFileTest, AttributesAndInformation) {
    file_.vv_Open(CT_File::kWriteAccess, CT_File::kCreateAlways, CT_File::kShareRead, 0x09, 0x38);
    EXPECT_EQ(file_.n_GetAttributes() & 0x2u, 0x2u);  // hidden
    EXPECT_EQ(file_.n_GetOpenAttribut() << 8 | file_.n_GetOpenFlag(), 0x0938u);
    file_.vn_Write("12345", 5);
    file_.vv_Flush();
    Seek(file_, 0, 4);
    file_.v_SetEndOfFile();
    BY_HANDLE_FILE_INFORMATION by_handle{};
    struct _stat information {};
    file_.v_GetFileInfo(&by_handle);
    file_.v_GetFileInformation(&information);
    EXPECT_EQ(by_handle.nFileSizeLow + information.st_size, 8u);
    EXPECT_EQ(information.st_mode & 0xF000, 0x8000);
    EXPECT_LE(std::abs(information.st_atime - std::time(nullptr)), 5);
    file_.vv_Close();
    EXPECT_EQ(file_.n_GetOpenAttribut() | file_.n_GetOpenFlag(), 0u);
    EXPECT_CT_ERROR(6, file_.vv_Close());
    EXPECT_EQ(file_.n_GetAttributes(), 0xFFFFFFFFu);  // it was deleted on closing
    EXPECT_EQ(Taken(), 2u);
    EXPECT_CT_MESSAGE(2, u"(2): File \"" + folder_.Name(u"file") + u"\": _wstat returned error 2",
                      file_.v_GetFileInformation(&information));
}

}  // namespace
