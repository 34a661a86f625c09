#include "Foundation/Core/File/FileName.h"

#include <gtest/gtest.h>

#include <string>

#include "Support/Text.h"

namespace {

// The text of a getter, behind "-" when it answers FALSE; from a string that held something.
std::string Get(const CT_FileName& name, BOOL (CT_FileName::*getter)(CT_UString*) const) {
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
        {u"C:\\docs\\rep.final.txt", "C:\\docs", "rep.final", "txt", "C:\\docs\\rep.final.txt"},
        {u"a/b/c", "a/b", "c", "-", "a/b\\c"},
        {u"C:\\\\a.b", "C:", "a", "b", "C:\\a.b"},
        {u"\\a.b", "-", "\\a", "b", "\\a.b"},
        {u"\\\\x", "-", "x", "-", "x"},
        {u"dir.ext\\", "dir.ext", "-", "-", "dir.ext"},
        {u".profile", "-", "-", "profile", "-before"},
        {u"name.", "-", "name", "-", "name"},
    };
    for (const Case& row : cases) {
        SCOPED_TRACE(test::Utf8(row.full));
        CT_FileName name(row.full);
        EXPECT_EQ(Get(name, &CT_FileName::b_GetPath), row.path);
        EXPECT_EQ(Get(name, &CT_FileName::b_GetPathEndedWithSlash), row.path + "\\");
        EXPECT_EQ(Get(name, &CT_FileName::b_GetNameIgnoreExt), row.name);
        EXPECT_EQ(Get(name, &CT_FileName::b_GetExt), row.extension);
        EXPECT_EQ(Get(name, &CT_FileName::b_GetFullName), row.together);
        name.v_SetPath(u"C:\\temp\\\\");
        name.v_SetName(u"new.x");
        name.v_SetExt(u"tar.gz");
        EXPECT_EQ(Get(name, &CT_FileName::b_GetFullName), "C:\\temp\\new.tar.gz");
    }
}

}  // namespace
