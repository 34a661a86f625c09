// Wildcards by the published rules of the platform, and searches in real folders.
#include "Foundation/Platform/FindFiles.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "Foundation/Platform/FileNameCase.h"
#include "Foundation/Platform/Files.h"
#include "Foundation/Platform/LastError.h"
#include "Support/TempFolder.h"
#include "Support/Text.h"

namespace {

using namespace zelkor::platform;
using std::u16string;
using std::u16string_view;
using Names = std::vector<u16string_view>;

TEST(FindFilesTest, PatternsMatchByThePublishedRules) {
    static const Names kNames = {
        u"..x",      u".profile",         u"1",         u"12",
        u"123.4567", u"A1.txt",           u"README.md", u"a",
        u"a b.txt",  u"a.b.c.d",          u"ab.c",      u"abc",
        u"abc.TXT2", u"abc.txt",          u"ac",        u"axxc",
        u"noext",    u"page.htm",         u"page.html", u"two.tar.gz",
        u"x.y.z",    u"\u00E4\u00F6.txt",
    };
    Names all_but_profile = kNames;
    std::erase(all_but_profile, u".profile");
    struct Case {
        u16string_view pattern;
        Names found;
    };
    const Case kCases[] = {
        {u"*.", {u"1", u"12", u"a", u"abc", u"ac", u"axxc", u"noext"}},
        {u"??", {u"1", u"12", u"a", u"ac"}},
        {u"*.TXT", {u"A1.txt", u"a b.txt", u"abc.txt", u"\u00E4\u00F6.txt"}},
        {u"*.html", {u"page.html"}},
        {u"*.????", all_but_profile},
        {u"a??c", {u"axxc"}},
        {u"ABC.", {u"abc"}},
        {u"abc?", {u"abc"}},
        {u"*.*", kNames},
        {u"*. ", kNames},
        {u"*", kNames},
        {u"x.*.z", {u"x.y.z"}},
        {u".*", {u"..x", u".profile"}},
        {u"..*", {u"..x"}},
        {u"noext.*", {u"noext"}},
        {u"no*.", {u"noext"}},
        {u"*gz", {u"two.tar.gz"}},
        {u"\u00C4*", {u"\u00E4\u00F6.txt"}},
        {u"??.txt", {u"A1.txt", u"\u00E4\u00F6.txt"}},
        {u"a<c", {u"abc", u"ac", u"axxc"}},
        {u"\"*", {u"..x", u".profile"}},
        {u"a*b*c*", {u"a.b.c.d", u"ab.c", u"abc", u"abc.TXT2", u"abc.txt"}},
        {u"missing*", {}},
        {u"", {}},
    };
    for (const Case& row : kCases) {
        SCOPED_TRACE(test::Utf8(row.pattern));
        Names found;
        for (const u16string_view name : kNames) {
            if (MatchesPattern(name, row.pattern)) found.push_back(name);
        }
        EXPECT_EQ(found, row.found);
    }
}

TEST(FindFilesTest, AHostilePatternTakesTimeInProportion) {
    // Backtracking would take longer than the world lasts.
    const u16string name(255, u'a');
    u16string pattern;
    for (int i = 0; i < 120; ++i) pattern += u"*a";
    EXPECT_FALSE(MatchesPattern(name, pattern + u"b"));
    EXPECT_TRUE(MatchesPattern(name, pattern));
}

TEST(FindFilesTest, UpperCaseIsThatOfUnicodeInEachRun) {
    constexpr unsigned kPairs[][2] = {
        {u'z', u'Z'},     {u'{', u'{'},     {0x00B5, 0x00B5}, {0x00E4, 0x00C4}, {0x00F7, 0x00F7},
        {0x00FF, 0x0178}, {0x0131, 0x0131}, {0x0137, 0x0136}, {0x0138, 0x0138}, {0x017E, 0x017D},
        {0x018C, 0x018B}, {0x01C6, 0x01C4}, {0x01C8, 0x01C7}, {0x01CC, 0x01CA}, {0x01DD, 0x018E},
        {0x03C2, 0x03A3}, {0x03CE, 0x038F}, {0x0451, 0x0401}, {0x044F, 0x042F}, {0x0586, 0x0556},
        {0x1E9F, 0x1E9F}, {0x1EF3, 0x1EF2}, {0x1F7D, 0x1FFB}, {0xFF5A, 0xFF3A}, {0xFFFF, 0xFFFF},
    };
    for (const auto& [lower, upper] : kPairs) {
        const auto of = [](unsigned unit) -> unsigned {
            return FileNameUpper(static_cast<char16_t>(unit));
        };
        EXPECT_EQ(of(lower), upper) << std::hex << lower;
        EXPECT_EQ(of(upper), upper) << std::hex << upper;
    }
}

// Every name that a pattern finds, in order.
std::vector<u16string> Search(const u16string& pattern, std::vector<FoundFile>* files = nullptr) {
    std::vector<u16string> names;
    FoundFile found;
    const HANDLE search = FindFirst(pattern.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return names;
    do {
        names.emplace_back(found.name);
        if (files != nullptr) files->push_back(found);
    } while (FindNext(search, &found));
    EXPECT_EQ(LastError(), kErrorNoMoreFiles);
    EXPECT_TRUE(FindClose(search));
    EXPECT_FALSE(FindNext(search, &found));
    EXPECT_EQ(LastError(), kErrorInvalidHandle);
    EXPECT_FALSE(FindClose(search));
    return names;
}

TEST(FindFilesTest, ASearchDeliversNamesInOrderWithWhatIsKnownOfThem) {
    const test::TempFolder folder;
    folder.Write(u"b.txt", "12345");
    folder.Write(u"A.txt", "");
    folder.Write(u"c.doc", "1");
    folder.MakeFolder(u"sub");
    ASSERT_TRUE(SetAttributes(folder.Name(u"c.doc").c_str(), kFileHidden | kFileReadOnly));

    std::vector<FoundFile> files;
    EXPECT_EQ(Search(folder.Name(u"*"), &files),
              (std::vector<u16string>{u".", u"..", u"A.txt", u"b.txt", u"c.doc", u"sub"}));
    EXPECT_EQ(files[0].attributes, kFileFolder);
    EXPECT_EQ(files[3].attributes, kFileArchive);
    EXPECT_EQ(files[3].size, 5u);
    EXPECT_EQ(files[4].attributes, kFileHidden | kFileReadOnly);
    EXPECT_EQ(files[5].attributes, kFileFolder);
    // 2020-01-01 and 2100-01-01, in the high half of the count.
    EXPECT_GT(files[3].write.dwHighDateTime, 0x01D5C000u);
    EXPECT_LT(files[3].write.dwHighDateTime, 0x02300000u);
    EXPECT_EQ(Search(folder.Name(u"*.TXT")), (std::vector<u16string>{u"A.txt", u"b.txt"}));
    EXPECT_EQ(Search(folder.Name(u"B.TXT")), (std::vector<u16string>{u"b.txt"}));
}

TEST(FindFilesTest, ASearchThatCannotBeginSaysWhy) {
    const test::TempFolder folder;
    folder.Write(u"file", "");
    struct Case {
        u16string pattern;
        std::uint32_t error;
    };
    for (const Case& row : {Case{folder.Name(u"x*"), kErrorFileNotFound},
                            {folder.Name(u"no\\*"), kErrorPathNotFound},
                            {folder.Name(u"file\\*"), kErrorPathNotFound},
                            {u"", kErrorPathNotFound}}) {
        FoundFile found;
        EXPECT_EQ(FindFirst(row.pattern.c_str(), &found), INVALID_HANDLE_VALUE);
        EXPECT_EQ(LastError(), row.error) << test::Utf8(row.pattern);
    }
}

TEST(FindFilesTest, NamesThatNoPlatformWouldMakeAreFoundAndOpened) {
    const test::TempFolder folder;
    const std::vector<std::string> odd = {"\xFF\xC3", "a\\b", "x:y", "what?.txt", "\xED\xA0\x80"};
    for (const std::string& name : odd) std::ofstream(folder.Native() / name) << "content";
    const std::vector<u16string> found = Search(folder.Name(u"*"));
    ASSERT_EQ(found.size(), odd.size() + 2);
    for (const u16string& name : found) {
        if (name == u"." || name == u"..") continue;
        FileStatus status;
        EXPECT_EQ(QueryStatus(folder.Name(name).c_str(), &status), 0) << test::Utf8(name);
        EXPECT_EQ(status.size, 7u);
        EXPECT_TRUE(RemoveFile(folder.Name(name).c_str())) << test::Utf8(name);
    }
    EXPECT_EQ(folder.Names(), std::vector<std::string>{});
}

TEST(FindFilesTest, EntriesThatVanishAreLeftOut) {
    const test::TempFolder folder;
    for (const char16_t* name : {u"a", u"b", u"c"}) folder.Write(name, "");
    FoundFile found;
    const HANDLE search = FindFirst(folder.Name(u"?").c_str(), &found);
    ASSERT_NE(search, INVALID_HANDLE_VALUE);
    folder.Remove(u"b");
    while (FindNext(search, &found)) EXPECT_NE(u16string_view(found.name), u"b");
    EXPECT_TRUE(FindClose(search));
}

}  // namespace
