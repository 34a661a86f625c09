#include "Foundation/Core/File/FileName.h"

#include <gtest/gtest.h>

#include <string>

#include "Support/Text.h"

namespace {

using Getter = BOOL (CT_FileName::*)(CT_UString*) const;

// The text of a getter, behind "-" when it answers FALSE; from a string that held something.
std::string Get(const CT_FileName& name, Getter getter) {
    CT_UString out(u"before");
    const BOOL found = (name.*getter)(&out);
    return std::string(found ? "" : "-").append(test::Utf8(out.qcuz_Get()));
}

TEST(FileNameTest, TakesNamesApartAndPutsThemTogether) {
    struct Case {
        const char16_t* full;
        std::string path, name, extension, together;
    };
    const Case cases[] = {
        {u"C:\\docs\\report.final.txt", "C:\\docs", "report.final", "txt",
         "C:\\docs\\report.final.txt"},
        {u"a/b/c", "a/b", "c", "-", "a/b\\c"},
        {u"a/b\\c.d", "a/b", "c", "d", "a/b\\c.d"},
        {u"C:\\\\a.b", "C:", "a", "b", "C:\\a.b"},
        {u"\\a.b", "-", "\\a", "b", "\\a.b"},
        {u"\\\\x", "-", "x", "-", "x"},
        {u"/", "-", "/", "-", "/"},
        {u"dir.ext\\", "dir.ext", "-", "-", "dir.ext"},
        {u"dir\\.profile", "dir", "-", "profile", "dir"},
        {u".profile", "-", "-", "profile", "-before"},
        {u"name.", "-", "name", "-", "name"},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(test::Utf8(row.full));
        const CT_UString full(row.full);
        const CT_FileName name(&full);
        EXPECT_EQ(Get(name, &CT_FileName::b_GetPath), row.path);
        EXPECT_EQ(Get(name, &CT_FileName::b_GetPathEndedWithSlash), row.path + "\\");
        EXPECT_EQ(Get(name, &CT_FileName::b_GetNameIgnoreExt), row.name);
        EXPECT_EQ(Get(name, &CT_FileName::b_GetExt), row.extension);
        EXPECT_EQ(Get(name, &CT_FileName::b_GetFullName), row.together);
    }
}

TEST(FileNameTest, PartsAreSetOneByOne) {
    CT_FileName name(u"C:\\a\\b.c");
    name.v_SetPath(u"C:\\temp\\\\");
    name.v_SetExt(u"tar.gz");
    EXPECT_EQ(Get(name, &CT_FileName::b_GetFullName), "C:\\temp\\b.tar.gz");
    name.v_SetName(u"new");
    name.v_SetPath(u"//\\");
    EXPECT_EQ(Get(name, &CT_FileName::b_GetFullName), "new");
    const CT_FileName copy(&name);
    CT_UString whole(u"x\\y.z");  // the getter's string may be the one that was parsed
    name.v_Set(&whole);
    name.b_GetFullName(&whole);
    name.v_Set(&whole);
    EXPECT_EQ(Get(name, &CT_FileName::b_GetFullName), "x\\y.z");
    EXPECT_EQ(Get(copy, &CT_FileName::b_GetName), "new");
}

}  // namespace
