#include "Foundation/Core/File/FileSystem.h"

#include <sys/stat.h>

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <tuple>

#include "Core/File/FileFixture.h"
#include "Foundation/Core/File/FindFile.h"
#include "Support/Platform.h"

namespace {

using test::Utf8;

std::string Text(const CT_UString& text) {
    return Utf8(text.qcuz_Get());
}

class FileSystemTest : public test::FileTest {};

TEST_F(FileSystemTest, SplitsIntoTheStringsItReadsAndBuildsFromThem) {
    CT_UString path(u"C:\\dir/sub\\name.x.y"), name;
    CT_FileSystem::sv_SplitPath(&path, nullptr, &path, &name, nullptr);
    EXPECT_EQ(Text(path) + "," + Text(name), "\\dir/sub\\,name.x");
    const CT_UString drive(u"C"), extension(u"y");
    CT_FileSystem::sv_MakePath(&path, &drive, &path, &name, &extension);
    EXPECT_EQ(Text(path), "C:\\dir/sub\\name.x.y");
    CT_FileSystem::sv_MakePath(&path, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(Text(path), "");
}

TEST_F(FileSystemTest, ShortensPathsForDisplay) {
    const char16_t* const file = u"C:\\aaa\\bbb\\ccc\\file.txt";
    const std::tuple<const char16_t*, unsigned int, const char*> cases[] = {
        {file, 20, "C:\\...\\ccc\\file.txt"},
        {file, 23, "C:\\aaa\\bbb\\ccc\\file.txt"},
        {file, 1, "C:\\...\\file.txt"},
        {u"/aaa/bbb/ccc/file.txt", 20, "/.../ccc/file.txt"},
        {u"aaa/bbb\\ccc/d\\e", 9, "...\\e"},  // backslashes first
        {u"aaa\\bbb/ccccccccc/d", 12, ".../d"},
        {u"no-separators-at-all", 5, "no-separators-at-all"},
    };
    for (const auto& [wide, maximum, shown] : cases) {
        CT_UString path(wide);
        CT_FileSystem::sv_MakeDisplayString(&path, maximum);
        EXPECT_EQ(Text(path), shown) << Utf8(wide) << " to " << maximum;
    }
}

TEST_F(FileSystemTest, TellsKindsSizesAndTimes) {
    folder_.Write(u"file", "12345");
    folder_.MakeFolder(u"folder");
    ASSERT_EQ(mkfifo(folder_.Native(u"pipe").c_str(), 0600), 0);
    const std::pair<CT_UString, unsigned int> cases[] = {
        {Name(u"file"), 1},     {Name(u"folder/"), 2},         {CT_UString(u"C:\\"), 2},
        {CT_UString(u"C:"), 2}, {Name(u"missing"), 0},         {CT_UString(u""), 0},
        {Name(u"pipe"), 3},     {CT_UString(u"/dev/null"), 4},
    };
    for (const auto& [name, kind] : cases) {
        SCOPED_TRACE(Text(name));
        EXPECT_EQ(CT_FileSystem::sb_IsExistent(&name), kind != 0);
        EXPECT_EQ(CT_FileSystem::sb_IsFile(&name), kind == 1);
        EXPECT_EQ(CT_FileSystem::sb_IsFolder(&name), kind == 2);
        EXPECT_EQ(CT_FileSystem::sb_IsPipe(&name), kind == 3);
        EXPECT_EQ(CT_FileSystem::sb_IsDevice(&name), kind == 4);
    }
    const CT_UString& file = cases[0].first;
    const CT_FileSystem::st_Stat stat = CT_FileSystem::sso_GetStat(&file);
    EXPECT_EQ(stat.n_Size, 5u);
    for (const int time : {stat.i_Creation, stat.i_Access, stat.i_Modification}) {
        EXPECT_LE(std::abs(time - std::time(nullptr)), 5);
    }
    std::filesystem::resize_file(folder_.Native(u"file"), 5ull << 30);
    EXPECT_EQ(CT_FileSystem::sn4_GetSize(&file), 0xFFFFFFFFu);  // not 1 GiB
}

TEST_F(FileSystemTest, FullPathsBeginInTheCurrentFolder) {
    const std::filesystem::path before = std::filesystem::current_path();
    const CT_UString folder = Name(u"new");
    EXPECT_TRUE(CT_FileSystem::sb_MakePath(&folder) && CT_FileSystem::sb_ChangePath(&folder));
    CT_UString path, relative(u"a/../b");
    CT_FileSystem::sv_GetCurrentPath(&path, 0);
    CT_FileSystem::sv_FullPath(&relative);
    std::filesystem::current_path(before);
    EXPECT_EQ(Text(path), Text(folder));
    EXPECT_EQ(Text(relative), Text(folder) + "\\b");
    EXPECT_TRUE(CT_FileSystem::sb_RemovePath(&folder));
    EXPECT_FALSE(CT_FileSystem::sb_ChangePath(&folder));

    EXPECT_CT_MESSAGE(13, u"(13): File \"\": tgetdcwd returned error 13",
                      CT_FileSystem::sv_GetCurrentPath(&path, 99));
    EXPECT_EQ(Text(path), "");
    const std::u16string longer(300, u'x');
    path.v_Set(longer.c_str());
    EXPECT_CT_MESSAGE(60012, u"(60012): Semantic error: " + longer,
                      CT_FileSystem::sv_FullPath(&path));
    EXPECT_EQ(Text(path), Utf8(longer));
}

// Bytes that are not UTF-8, in a folder's and in a file's name, through every operation.
TEST_F(FileSystemTest, NamesThatAreNotUtf8GoThroughEveryOperation) {
    const std::filesystem::path native = folder_.Native() / "d\xFF:";
    std::filesystem::create_directory(native);
    std::ofstream(native / "\xE4\xB8x") << "12345";
    const CT_UString all = Name(u"d\xDCFF:\\*"), other = Name(u"d\xDCFF:\\\xDC80");
    CT_FindFile search(&all, 0, 0x10, TRUE);
    CT_UString name, drive, directory, leaf, extension, made;
    ASSERT_TRUE(search.b_FindFirst(&name, nullptr));
    CT_FileSystem::sv_SplitPath(&name, &drive, &directory, &leaf, &extension);
    CT_FileSystem::sv_MakePath(&made, &drive, &directory, &leaf, &extension);
    CT_FileSystem::sv_FullPath(&made);
    EXPECT_EQ(made.vi_Compare(&name), 0);
    CT_WinFile file(&made, 0);
    Open(file, 1, 1);
    EXPECT_EQ(Read(file, 9), "12345");
    file.vv_Close();
    file.v_CopyFile(&other);
    file.vv_Remove();
    file.vv_Set(&other, 0);
    file.vv_Rename(&name);
    file.v_SetAttributes(0x1);
    EXPECT_EQ(file.n_GetAttributes() & 0x1u, 0x1u);
    EXPECT_TRUE(std::filesystem::exists(native / "\xE4\xB8x"));
    EXPECT_EQ(CT_FileSystem::sn4_GetSize(&name), 5u);
    EXPECT_TRUE(CT_FileSystem::sb_MakePath(&other) && CT_FileSystem::sb_RemovePath(&other));
    EXPECT_EQ(setenv("TMPDIR", native.c_str(), 1), 0);
    CT_FileSystem::sv_CreateTempFile(&made, u"t", u"x");
    unsetenv("TMPDIR");
    EXPECT_TRUE(CT_FileSystem::sb_IsFile(&made)) << Text(made);
    EXPECT_TRUE(test::NoError());
}

TEST_F(FileSystemTest, MakesTemporaryFilesAndOnTheOlderFamilyNames) {
    CT_UString first, second;
    CT_FileSystem::sv_CreateTempFile(&first, u"zeltest", nullptr);
    CT_FileSystem::sv_CreateTempFile(&second, nullptr, u"xml");
    EXPECT_TRUE(first.b_EndsWith(u".tmp") && first.n_Find(u"\\zel") != CT_UString::kNotFound);
    EXPECT_TRUE(second.b_EndsWith(u".xml"));
    for (const CT_UString* name : {&first, &second}) {
        EXPECT_TRUE(CT_FileSystem::sb_IsFile(name)) << Text(*name);
        CT_WinFile(name, 0).vv_Remove();
    }
    const test::ForcedVersion older(1, 4, 10);
    CT_FileSystem::sv_CreateTempFile(&first, u"zeltest", nullptr);
    EXPECT_TRUE(first.b_EndsWith(u".tmp") && first.n_Find(u"\\zeltest") != CT_UString::kNotFound);
    EXPECT_FALSE(CT_FileSystem::sb_IsExistent(&first));
}

TEST_F(FileSystemTest, OlderFamilySeesCodePageText) {
    const CT_UString latin = Name(u"f\u00FCr"), other = Name(u"\u65E5"), all = Name(u"*");
    folder_.Write(u"f\u00FCr", "1");
    folder_.Write(u"\u65E5", "22");
    EXPECT_EQ(CT_FileSystem::sn4_GetSize(&other), 2u);
    const test::ForcedVersion older(1, 4, 10);
    EXPECT_EQ(CT_FileSystem::sn4_GetSize(&latin), 1u);
    CT_WinFile file(&other, 0);
    EXPECT_FALSE(file.b_IsExistent());
    EXPECT_CT_ERROR(123, Open(file, 2, 2));  // "?" is no name
    CT_UString name(u"\u65E5f\u00FCr.x");
    CT_FileSystem::sv_SplitPath(&name, nullptr, nullptr, &name, nullptr);
    EXPECT_EQ(Text(name), "?f\u00FCr");
    CT_FindFile search(&all, 0, 0x10, FALSE);
    EXPECT_TRUE(search.b_FindFirst(&name, nullptr) && search.b_FindNext(&name, nullptr));
    EXPECT_EQ(Text(name), "?");
}

TEST_F(FileSystemTest, FindsByPatternAndAttributesAgainAndAgain) {
    folder_.MakeFolder(u"d.txt");
    for (const char16_t* name : {u"a.txt", u"b.TXT", u"c.xml"}) folder_.Write(name, "");
    const CT_UString hidden = Name(u"c.xml");
    CT_WinFile(&hidden, 0).v_SetAttributes(0x2);
    struct Case {
        const char16_t* pattern;
        unsigned int required, excluded;
        BOOL full;
        std::string found;
    };
    const Case cases[] = {
        {u"*", 0, 0, FALSE, "./ ../ a.txt b.TXT c.xml d.txt/ "},
        {u"*", 0x12, 0, FALSE, "./ ../ c.xml d.txt/ "},
        {u"*.txt", 0, 0x12, FALSE, "a.txt b.TXT "},
        {u"c*", 0, 0, TRUE, Text(hidden) + " "},
        {u"missing/*", 0, 0, FALSE, ""},
    };
    CT_FindFile search(&hidden, 0, 0, FALSE);
    for (const Case& row : cases) {
        const CT_UString pattern = Name(row.pattern);
        search.v_Set(&pattern, row.required, row.excluded, row.full);
        EXPECT_FALSE(search.b_FindNext(nullptr, nullptr));  // nothing is begun
        for (int round = 0; round < 2; ++round) {
            CT_UString name;
            unsigned int attributes = 0;
            std::string all;
            for (BOOL more = search.b_FindFirst(&name, &attributes); more;
                 more = search.b_FindNext(&name, &attributes)) {
                all += Text(name) + (attributes & 0x10 ? "/ " : " ");
            }
            EXPECT_EQ(all, row.found) << Utf8(row.pattern);
        }
        EXPECT_EQ(search.b_FindFirst(nullptr, nullptr), !row.found.empty());  // left open
    }
}

}  // namespace
