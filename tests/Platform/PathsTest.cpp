// Path routines against recorded answers of the platform, and the way to the system's names.
#include "Foundation/Platform/Paths.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>

#include "Foundation/Platform/Files.h"
#include "Foundation/Platform/LastError.h"
#include "Support/TempFolder.h"
#include "Support/Text.h"

namespace {

using namespace zelkor::platform;
using std::u16string;
using std::u16string_view;

TEST(PathsTest, SplittingFollowsTheRecordedRuntime) {
    struct Case {
        u16string_view path, drive, directory, name, extension;
    };
    for (const Case& row : {
             Case{u"", u"", u"", u"", u""},
             {u"a.b.c", u"", u"", u"a.b", u".c"},
             {u"..", u"", u"", u".", u"."},
             {u"C:/dir/a.txt", u"C:", u"/dir/", u"a", u".txt"},
             {u"C:\\dir.x\\a", u"C:", u"\\dir.x\\", u"a", u""},
             {u"C:\\dir/sub\\a.txt", u"C:", u"\\dir/sub\\", u"a", u".txt"},
             {u"\\\\server\\share", u"", u"\\\\server\\", u"share", u""},
             {u"\\\\?\\C:\\dir\\a.txt", u"", u"\\\\?\\C:\\dir\\", u"a", u".txt"},
             {u"a:b:c", u"a:", u"", u"b:c", u""},
             {u"CC:\\a", u"", u"CC:\\", u"a", u""},
             {u":a", u"", u"", u":a", u""},
             {u"C:.txt", u"C:", u"", u"", u".txt"},
         }) {
        SCOPED_TRACE(test::Utf8(row.path));
        const PathParts parts = SplitPath(row.path);
        EXPECT_EQ(parts.drive, row.drive);
        EXPECT_EQ(parts.directory, row.directory);
        EXPECT_EQ(parts.name, row.name);
        EXPECT_EQ(parts.extension, row.extension);
    }
}

TEST(PathsTest, MakingAPathAddsOnlyWhatIsMissing) {
    struct Case {
        PathParts parts;
        u16string_view path;
    };
    for (const Case& row : {
             Case{{u"C", u"dir", u"a", u"txt"}, u"C:dir\\a.txt"},
             {{u"C:\\", u"dir", u"a", u"txt"}, u"C:dir\\a.txt"},
             {{u"", u"dir/", u"a", u".txt"}, u"dir/a.txt"},
             {{u"", u"dir/sub", u"a", u""}, u"dir/sub\\a"},
             {{u"", u"", u"", u"txt"}, u".txt"},
             {{u"", u"d", u"", u""}, u"d\\"},
             {{u"C", u"d\\\\", u"\\a", u"..b"}, u"C:d\\\\\\a..b"},
             {{u":", u"d", u"a", u"b"}, u"::d\\a.b"},
             {{u"C", u"", u"a", u"."}, u"C:a."},
         }) {
        SCOPED_TRACE(test::Utf8(row.path));
        std::array<char16_t, 32> out;
        EXPECT_EQ(MakePath(out, row.parts), row.path.size());
        EXPECT_EQ(u16string_view(out.data()), row.path);
        // One unit too small for the zero: only the length is told.
        out.fill(u'#');
        EXPECT_EQ(MakePath(std::span(out).first(row.path.size()), row.parts), row.path.size());
        EXPECT_EQ(out[row.path.size()], u'#');
    }
}

// The current folder for the length of a scope.
class InFolder {
public:
    explicit InFolder(const u16string& folder) {
        EXPECT_NE(CurrentFolder(0, before_), 0u);
        EXPECT_TRUE(ChangeFolder(folder.c_str()));
    }
    ~InFolder() { ChangeFolder(before_.data()); }

private:
    std::array<char16_t, 1024> before_;
};

// As recorded, but names of devices and periods at the end were those of other files here.
TEST(PathsTest, FullPathsFollowTheRecordedRuntime) {
    const test::TempFolder folder;
    folder.MakeFolder(u"w\\x\\y");
    const u16string base = folder.Name(u"w");
    const InFolder in(base + u"\\x\\y");
    struct Case {
        u16string_view path, full;  // "@" in front stands for the recording's C:\w
    };
    for (const Case& row : {
             Case{u"", u"@\\x\\y"},
             {u".", u"@\\x\\y"},
             {u"..\\..", u"@"},
             {u"a/b", u"@\\x\\y\\a\\b"},
             {u"a\\b\\..\\..\\c", u"@\\x\\y\\c"},
             {u"a\\\\b", u"@\\x\\y\\a\\b"},
             {u"a\\", u"@\\x\\y\\a\\"},
             {u"a . ", u"@\\x\\y\\a . "},
             {u"a\\b.\\c", u"@\\x\\y\\a\\b.\\c"},
             {u"...", u"@\\x\\y\\..."},
             {u"C:", u"@\\x\\y\\"},
             {u"C:a", u"@\\x\\y\\a"},
             {u"C:..\\x", u"@\\x\\x"},
             {u"c:\\X", u"c:\\X"},
             {u"C:\\a\\..\\..\\b", u"C:\\b"},
             {u"C:\\\\a", u"C:\\a"},
             {u"/a/b", u"C:\\a\\b"},
             {u"\\", u"C:\\"},
             {u"D:", u"D:\\"},
             {u"\\\\server\\share\\..\\..\\b", u"\\\\server\\share\\b"},
             {u"\\\\?\\C:\\a\\..\\b", u"\\\\?\\C:\\b"},
             {u"//x/y/z", u"\\\\x\\y\\z"},
             {u"a\\con", u"@\\x\\y\\a\\con"},
             {u"aux", u"@\\x\\y\\aux"},
             {u"a*b?", u"@\\x\\y\\a*b?"},
         }) {
        SCOPED_TRACE(test::Utf8(row.path));
        u16string expected(row.full);
        if (expected.starts_with(u'@')) expected.replace(0, 1, base);
        std::array<char16_t, kMaxPath> out;
        ASSERT_EQ(FullPath(u16string(row.path).c_str(), out), expected.size());
        EXPECT_EQ(u16string_view(out.data()), expected);
        EXPECT_EQ(FullPath(u16string(row.path).c_str(), std::span(out).first(expected.size())), 0u);
        EXPECT_EQ(LastError(), kErrorFilenameExceedsRange);
    }
    std::array<char16_t, kMaxPath> out;
    for (const std::size_t length : {300u, 5000u, 20000u}) {
        EXPECT_EQ(FullPath(u16string(length, u'x').c_str(), out), 0u) << length;
    }
}

TEST(PathsTest, NamesReachTheSystemByOneRule) {
    struct Case {
        const char16_t* path;
        std::string_view native;
    };
    for (const Case& row : {
             Case{u"C:\\a/b\\c", "/a/b/c"},
             {u"z:\\a", "/a"},
             {u"C:", "."},
             {u"C:a", "a"},
             {u"D:a", "/a"},
             {u"D:", "/"},
             {u"1:\\a", "1:/a"},
             {u"\\\\?\\C:\\a", "/a"},
             {u"\\\\.\\NUL", "/dev/null"},
             {u"\\\\.\\con", "/dev/tty"},
             {u"\\\\.\\nul.txt", "nul.txt"},
             {u"\u00E4\u4E2D\U0001F600", "\xC3\xA4\xE4\xB8\xAD\xF0\x9F\x98\x80"},
             {u"a\xDCFF\xF05C", "a\xFF\\"},
         }) {
        std::array<char, 64> out;
        EXPECT_EQ(NativePath(row.path, out), row.native.size()) << row.native;
        EXPECT_EQ(std::string_view(out.data()), row.native);
        EXPECT_EQ(NativePath(row.path, std::span(out).first(row.native.size())), 0u);
        EXPECT_EQ(LastError(), kErrorPathNotFound);
    }
    std::array<char, 64> out;
    for (const char16_t* none : {u"a\xD800", u"a\xD800z", u"\xDC00", u"\xDC7F"}) {
        EXPECT_EQ(NativePath(none, out), 0u);
        EXPECT_EQ(LastError(), kErrorInvalidName);
    }
}

TEST(PathsTest, EveryNameOfTheSystemComesBackUnchanged) {
    for (const std::string_view native :
         {"plain", "\xC3\xA4\xE4\xB8\xAD", "\xF0\x9F\x98\x80", "back\\slash", "\xFF\xFE", "\xC3",
          "\xC3z", "\xE4\xB8", "\xED\xA0\x80", "\xC0\x80", "\xF4\x90\x80\x80",
          "\xF8\x88\x80\x80\x80",
          "a\x80"
          "b",
          "new\nline"}) {
        std::array<char16_t, 64> text;
        std::array<char, 64> back;
        ASSERT_NE(PathFromNative(std::string(native).c_str(), text), 0u);
        ASSERT_NE(NativePath(text.data(), back), 0u) << native;
        EXPECT_EQ(std::string_view(back.data()), native);
    }
    std::array<char16_t, 64> text;
    EXPECT_EQ(PathFromNative("/usr/lib", text), 10u);
    EXPECT_EQ(u16string_view(text.data()), u"C:\\usr\\lib");
}

}  // namespace
