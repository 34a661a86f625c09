// Path routines against recorded answers of the platform, and the way to the system's names.
#include "Foundation/Platform/Paths.h"

#include <gtest/gtest.h>

#include <algorithm>
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
    for (const auto& row : test::Table(R"(|||| / a.b.c|||a.b|.c / ..|||.|.
C:/dir/a.txt|C:|/dir/|a|.txt / C:\dir.x\a|C:|\dir.x\|a| / C:\dir/sub\a.txt|C:|\dir/sub\|a|.txt
\\server\share||\\server\|share| / \\?\C:\dir\a.txt||\\?\C:\dir\|a|.txt
a:b:c|a:||b:c| / CC:\a||CC:\|a| / :a|||:a| / C:.txt|C:|||.txt)")) {
        SCOPED_TRACE(row[0]);
        const u16string path = test::Utf16(row[0]);
        const PathParts parts = SplitPath(path);
        EXPECT_EQ(test::Utf8(parts.drive), row[1]);
        EXPECT_EQ(test::Utf8(parts.directory), row[2]);
        EXPECT_EQ(test::Utf8(parts.name), row[3]);
        EXPECT_EQ(test::Utf8(parts.extension), row[4]);
    }
}

TEST(PathsTest, MakingAPathAddsOnlyWhatIsMissing) {
    for (const auto& row : test::Table(R"(C|dir|a|txt|C:dir\a.txt / C:\|dir|a|txt|C:dir\a.txt
|dir/|a|.txt|dir/a.txt / |dir/sub|a||dir/sub\a / |||txt|.txt / |d|||d\
C|d\\|\a|..b|C:d\\\a..b / :|d|a|b|::d\a.b / C||a|.|C:a.)")) {
        SCOPED_TRACE(row[4]);
        std::array<u16string, 5> field;
        std::ranges::transform(row, field.begin(), test::Utf16);
        const PathParts parts{field[0], field[1], field[2], field[3]};
        std::array<char16_t, 32> out;
        EXPECT_EQ(MakePath(out, parts), field[4].size());
        EXPECT_EQ(u16string_view(out.data()), field[4]);
        // One unit too small for the zero: only the length is told.
        out.fill(u'#');
        EXPECT_EQ(MakePath(std::span(out).first(field[4].size()), parts), field[4].size());
        EXPECT_EQ(out[field[4].size()], u'#');
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
    // "@" in front stands for the recording's C:\w.
    for (const auto& row : test::Table(R"(|@\x\y / .|@\x\y / ..\..|@ / a/b|@\x\y\a\b
a\b\..\..\c|@\x\y\c / a\\b|@\x\y\a\b / a . |@\x\y\a .  / a\|@\x\y\a\
a\b.\c|@\x\y\a\b.\c / ...|@\x\y\... / C:|@\x\y\ / C:a|@\x\y\a / C:..\x|@\x\x / c:\X|c:\X
C:\a\..\..\b|C:\b / C:\\a|C:\a / /a/b|C:\a\b / \|C:\ / D:|D:\ / //x/y/z|\\x\y\z
\\server\share\..\..\b|\\server\share\b / \\?\C:\a\..\b|\\?\C:\b
a\con|@\x\y\a\con / aux|@\x\y\aux / a*b?|@\x\y\a*b?)")) {
        SCOPED_TRACE(row[0]);
        const u16string path = test::Utf16(row[0]);
        u16string expected = test::Utf16(row[1]);
        if (expected.starts_with(u'@')) expected.replace(0, 1, base);
        std::array<char16_t, kMaxPath> out;
        ASSERT_EQ(FullPath(path.c_str(), out), expected.size());
        EXPECT_EQ(u16string_view(out.data()), expected);
        EXPECT_EQ(FullPath(path.c_str(), std::span(out).first(expected.size())), 0u);
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
          "\xF8\x88\x80\x80\x80", "a\x80\x62", "new\nline"}) {
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
