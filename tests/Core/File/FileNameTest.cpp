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
    // Of a name the path, the name, the extension, and all of it put together.
    for (const auto& row : test::Table(R"(C:\d\e.f.txt|C:\d|e.f|txt|C:\d\e.f.txt
a/b/c|a/b|c|-|a/b\c / C:\\a.b|C:|a|b|C:\a.b / \a.b|-|\a|b|\a.b / \\x|-|x|-|x
dir.ext\|dir.ext|-|-|dir.ext / .profile|-|-|profile|-before / name.|-|name|-|name)")) {
        SCOPED_TRACE(row[0]);
        CT_FileName name(test::Utf16(row[0]).c_str());
        EXPECT_EQ(Get(name, &CT_FileName::b_GetPath), row[1]);
        EXPECT_EQ(Get(name, &CT_FileName::b_GetPathEndedWithSlash), row[1] + "\\");
        EXPECT_EQ(Get(name, &CT_FileName::b_GetNameIgnoreExt), row[2]);
        EXPECT_EQ(Get(name, &CT_FileName::b_GetExt), row[3]);
        EXPECT_EQ(Get(name, &CT_FileName::b_GetFullName), row[4]);
        name.v_SetPath(u"C:\\temp\\\\");
        name.v_SetName(u"new.x");
        name.v_SetExt(u"tar.gz");
        EXPECT_EQ(Get(name, &CT_FileName::b_GetFullName), "C:\\temp\\new.tar.gz");
    }
}

}  // namespace
