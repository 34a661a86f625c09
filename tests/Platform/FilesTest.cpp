// Opening, transfers, attributes and names of files, against recorded answers of the platform.
#include "Foundation/Platform/Files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstring>
#include <sstream>
#include <string>
#include <thread>

#include "Foundation/Platform/LastError.h"
#include "Support/Faults.h"
#include "Support/TempFolder.h"
#include "Support/Text.h"

namespace {

using namespace zelkor::platform;
using std::u16string;

HANDLE Open(const u16string& name, std::uint32_t access, std::uint32_t disposition,
            std::uint32_t flags = kFileNormal) {
    return OpenFile(name.c_str(), access, kShareNone, disposition, flags);
}

std::uint32_t Access(const std::string& letters) {
    std::uint32_t access = 0;
    if (letters.find('R') != letters.npos) access |= kAccessRead;
    if (letters.find('W') != letters.npos) access |= kAccessWrite;
    return access;
}

std::string ReadAll(HANDLE file) {
    char bytes[64];
    std::uint32_t done = 0;
    EXPECT_TRUE(ReadFile(file, bytes, sizeof bytes, &done));
    return {bytes, done};
}

bool Write(HANDLE file, std::string_view bytes) {
    std::uint32_t done = 0;
    return WriteFile(file, bytes.data(), static_cast<std::uint32_t>(bytes.size()), &done);
}

struct FilesTest : testing::Test {
    const test::TempFolder folder;
    const u16string name = folder.Name(u"file");

    // Makes what a line of the dispositions names.
    void Prepare(const std::string& target) const;
};

// Each line: target, access, disposition, flags and attributes; then the last error, and what is
// there afterwards: size and attributes. "183" opens the file that exists.
constexpr const char* kDispositions = R"(
missing none 1 80        0 0 20
missing R 2 2            0 0 22
missing R 5 80           2 -1 -
missing RW 4 2000000     0 0 20
missing W 6 80           87 -1 -
file none 1 80           80 5 20
file R 2 80              183 0 20
file W 4 2               183 5 20
file R 5 80              0 0 20
folder none 2 80         5 0 10
folder R 3 2000000       0 0 10
folder W 4 2000000       183 0 10
folder W 5 2000000       80 0 10
read-only none 4 80      183 5 21
read-only R 3 1          0 5 21
read-only R 5 80         5 5 21
read-only W 1 80         80 5 21
read-only RW 4 2         5 5 21
read-only R 3 4000080    5 5 21
hidden R 2 2             183 0 22
hidden R 5 80            0 0 22
system W 2 2             5 5 24
system RW 4 1            183 5 24
no/name R 3 80           3 -1 -
no/name W 2 80           3 -1 -
folder\ R 3 2000000      0 0 10
folder\ R 3 80           5 0 10
folder\ W 1 80           80 0 10
file\ R 1 1              80 -1 -
file\ W 4 2              123 -1 -
missing\ W 2 80          123 -1 -
a>b W 2 80               123 -1 -
a>b R 3 80               123 -1 -
)";

void FilesTest::Prepare(const std::string& target) const {
    for (const std::string& old : folder.Names()) folder.Remove(test::Utf16(old));
    if (target.starts_with("folder")) return folder.MakeFolder(u"folder");
    std::uint32_t attributes = kFileArchive;
    if (target == "read-only") attributes |= kFileReadOnly;
    if (target == "hidden") attributes |= kFileHidden;
    if (target == "system") attributes |= kFileSystem;
    if (attributes == kFileArchive && !target.starts_with("file")) return;
    const u16string made = test::Utf16(target.substr(0, target.find('\\')));
    folder.Write(made, "12345");
    ASSERT_TRUE(SetAttributes(folder.Name(made).c_str(), attributes));
}

TEST_F(FilesTest, DispositionsAnswerAsRecorded) {
    std::istringstream lines(kDispositions);
    std::string target, access, attributes;
    std::uint32_t disposition = 0, flags = 0, error = 0;
    long size = 0;
    while (lines >> target >> access >> disposition >> std::hex >> flags >> std::dec >> error >>
           size >> attributes) {
        SCOPED_TRACE(target + " " + access + " " + std::to_string(disposition));
        Prepare(target);
        const u16string path = folder.Name(test::Utf16(target));
        SetLastError(77);
        const HANDLE file = Open(path, Access(access), disposition, flags);
        EXPECT_EQ(LastError(), error);
        EXPECT_EQ(file != INVALID_HANDLE_VALUE, error == 0 || error == kErrorAlreadyExists);
        if (file != INVALID_HANDLE_VALUE) {
            EXPECT_TRUE(CloseHandle(file));
        }
        std::ostringstream word;
        word << std::hex << QueryAttributes(path.c_str());
        EXPECT_EQ(word.str(), attributes == "-" ? "ffffffff" : attributes);
        FileStatus status;
        if (QueryStatus(path.c_str(), &status) == 0 && status.mode & kModeFile) {
            EXPECT_EQ(status.size, static_cast<std::uint64_t>(size));
        }
    }
}

// The last part of a name was not the only one to be judged.
TEST_F(FilesTest, BelowAnExistingFolderOfAnyNameThingsAreCreated) {
    for (const char* odd : {"a:b", "<>|\"?*", "tab\there"}) {
        const test::TempFolder inside(std::filesystem::temp_directory_path());
        std::filesystem::create_directory(inside.Native() / odd);
        const u16string path = inside.Name(test::Utf16(odd)) + u"\\";
        const HANDLE file = Open(path + u"new", kAccessWrite, kCreateNew);
        EXPECT_TRUE(CloseHandle(file)) << odd;
        EXPECT_TRUE(DuplicateFile((path + u"new").c_str(), (path + u"copy").c_str(), false));
        EXPECT_TRUE(RenameFile((path + u"copy").c_str(), (path + u"moved").c_str(), false, true));
        EXPECT_TRUE(CreateFolder((path + u"folder\\").c_str()));
        std::array<char16_t, 260> made;
        EXPECT_NE(CreateTemporaryFile(path.c_str(), u"t", 0, made), 0u) << odd;
        EXPECT_EQ(Open(path + u"x:y", kAccessWrite, kCreateNew), INVALID_HANDLE_VALUE);
        EXPECT_EQ(LastError(), kErrorInvalidName);
        EXPECT_EQ(Open(path + u"none", kAccessRead, kOpenExisting), INVALID_HANDLE_VALUE);
        EXPECT_EQ(LastError(), kErrorFileNotFound);
    }
}

TEST_F(FilesTest, ALinkThatLeadsNowhereHasItsTargetCreated) {
    std::filesystem::create_symlink("target", folder.Native(u"link"));
    const u16string link = folder.Name(u"link");
    EXPECT_EQ(Open(link, kAccessWrite, kOpenExisting), INVALID_HANDLE_VALUE);
    EXPECT_EQ(LastError(), kErrorFileNotFound);
    EXPECT_EQ(Open(link, kAccessWrite, kCreateNew), INVALID_HANDLE_VALUE);
    EXPECT_EQ(LastError(), kErrorFileExists);
    for (const std::uint32_t disposition : {kCreateAlways, kOpenAlways}) {
        const HANDLE file = Open(link, kAccessWrite, disposition);
        EXPECT_EQ(LastError(), 0u);
        EXPECT_TRUE(Write(file, "text"));
        EXPECT_TRUE(CloseHandle(file));
        EXPECT_EQ(folder.Read(u"target"), "text");
        folder.Remove(u"target");
    }
}

TEST_F(FilesTest, APipeIsNotPositioned) {
    ASSERT_EQ(mkfifo(folder.Native(u"file").c_str(), 0600), 0);
    const HANDLE file = Open(name, kAccessRead | kAccessWrite, kOpenExisting);
    std::uint64_t position = 9;
    EXPECT_TRUE(Write(file, "12345"));
    EXPECT_TRUE(SetFilePosition(file, 0, kSeekEnd, &position));
    EXPECT_EQ(position, 5u);
    EXPECT_FALSE(SetFilePosition(file, 0, kSeekBegin, nullptr));
    EXPECT_EQ(LastError(), 25u);
    EXPECT_EQ(ReadAll(file), "12345");
    EXPECT_TRUE(CloseHandle(file));
}

// A time of birth must not move with the last change of status.
TEST_F(FilesTest, TheTimeOfBirthStays) {
    folder.Write(u"file", "");
    const HANDLE file = Open(name, kAccessRead, kOpenExisting);
    BY_HANDLE_FILE_INFORMATION before, after;
    ASSERT_TRUE(QueryFileInformation(file, &before));
    usleep(20'000);
    ASSERT_EQ(chmod(folder.Native(u"file").c_str(), 0640), 0);
    ASSERT_TRUE(QueryFileInformation(file, &after));
    struct statx known;
    ASSERT_EQ(statx(AT_FDCWD, folder.Native(u"file").c_str(), 0, STATX_BTIME, &known), 0);
    const bool kept = (known.stx_mask & STATX_BTIME) != 0;
    EXPECT_EQ(before.ftCreationTime.dwLowDateTime == after.ftCreationTime.dwLowDateTime, kept);
    EXPECT_TRUE(CloseHandle(file));
}

TEST_F(FilesTest, TransfersMoveThePositionAndRespectTheAccess) {
    folder.Write(u"file", "0123456789");
    const HANDLE file = Open(name, kAccessRead | kAccessWrite, kOpenExisting);
    struct Seek {
        std::int64_t distance;
        std::uint32_t origin, error;
        std::uint64_t position;  // afterwards
    };
    for (const auto [distance, origin, error, position] : {Seek{5, kSeekBegin, 0, 5},
                                                           {-5, kSeekCurrent, 0, 0},
                                                           {-6, kSeekCurrent, 131, 0},
                                                           {0, kSeekEnd, 0, 10},
                                                           {-11, kSeekEnd, 131, 10},
                                                           {0, 4, 87, 10},
                                                           {INT64_MAX, kSeekCurrent, 87, 10},
                                                           {1LL << 32, kSeekBegin, 0, 1ULL << 32},
                                                           {8, kSeekBegin, 0, 8}}) {
        SetLastError(0);
        EXPECT_EQ(SetFilePosition(file, distance, origin, nullptr), error == 0);
        EXPECT_EQ(LastError(), error);
        std::uint64_t now = 0;
        EXPECT_TRUE(SetFilePosition(file, 0, kSeekCurrent, &now));
        EXPECT_EQ(now, position);
    }
    EXPECT_EQ(ReadAll(file), "89");
    EXPECT_EQ(ReadAll(file), "");
    EXPECT_TRUE(SetFilePosition(file, 12, kSeekBegin, nullptr));
    EXPECT_TRUE(Write(file, "ab"));
    EXPECT_TRUE(SetFilePosition(file, -1, kSeekCurrent, nullptr));
    EXPECT_TRUE(SetEndOfFile(file));
    EXPECT_TRUE(FlushFile(file));
    EXPECT_TRUE(CloseHandle(file));
    EXPECT_EQ(folder.Read(u"file"), std::string("0123456789\0\0a", 13));

    std::uint32_t done = 0;
    const HANDLE reading = Open(name, kAccessRead, kOpenExisting);
    EXPECT_FALSE(Write(reading, "x") || SetEndOfFile(reading) || FlushFile(reading));
    EXPECT_EQ(LastError(), kErrorAccessDenied);
    EXPECT_TRUE(CloseHandle(reading));
    const HANDLE writing = Open(name, kAccessWrite, kOpenExisting);
    EXPECT_FALSE(ReadFile(writing, &done, 1, &done));
    EXPECT_EQ(LastError(), kErrorAccessDenied);
    EXPECT_TRUE(CloseHandle(writing));
}

TEST_F(FilesTest, AHandleUsedTooLateIsInvalid) {
    folder.Write(u"file", "content");
    const HANDLE old = Open(name, kAccessRead, kOpenExisting);
    ASSERT_TRUE(CloseHandle(old));
    // Takes the same place in the table.
    const HANDLE fresh = Open(name, kAccessRead, kOpenExisting);
    EXPECT_NE(old, fresh);
    std::uint32_t done = 0;
    for (const HANDLE handle : {old, HANDLE{nullptr}, INVALID_HANDLE_VALUE, HANDLE(&done)}) {
        SetLastError(0);
        EXPECT_FALSE(ReadFile(handle, &done, 1, &done));
        EXPECT_EQ(LastError(), kErrorInvalidHandle);
        EXPECT_FALSE(SetFilePosition(handle, 0, kSeekBegin, nullptr));
        EXPECT_FALSE(CloseHandle(handle));
        EXPECT_EQ(LastError(), kErrorInvalidHandle);
    }
    EXPECT_TRUE(CloseHandle(fresh));
}

TEST_F(FilesTest, ManyHandlesAreOpenAtOnce) {
    folder.Write(u"file", "content");
    SetHandleCount(2000);
    std::vector<HANDLE> handles;
    for (int i = 0; i < 1500; ++i) {
        handles.push_back(OpenFile(name.c_str(), kAccessRead, kShareRead, kOpenExisting, 0));
        ASSERT_NE(handles.back(), INVALID_HANDLE_VALUE) << i << ", error " << LastError();
    }
    EXPECT_EQ(ReadAll(handles.back()), "content");
    for (const HANDLE handle : handles) EXPECT_TRUE(CloseHandle(handle));
}

TEST_F(FilesTest, AFileBeyondFourGibibytesIsMeasuredAndReached) {
    const HANDLE file = Open(folder.Name(u"large"), kAccessRead | kAccessWrite, kCreateNew);
    const std::int64_t end = (std::int64_t{1} << 32) + 10;
    ASSERT_TRUE(SetFilePosition(file, end, kSeekBegin, nullptr));
    if (!SetEndOfFile(file)) GTEST_SKIP() << "no files of this size here";
    std::uint64_t size = 0;
    EXPECT_TRUE(QueryFileSize(file, &size));
    EXPECT_EQ(size, static_cast<std::uint64_t>(end));
    EXPECT_TRUE(SetFilePosition(file, -3, kSeekEnd, nullptr));
    EXPECT_TRUE(Write(file, "xyz"));
    BY_HANDLE_FILE_INFORMATION information;
    EXPECT_TRUE(QueryFileInformation(file, &information));
    EXPECT_EQ(information.nFileSizeHigh, 1u);
    EXPECT_EQ(information.nFileSizeLow, 10u);
    EXPECT_EQ(information.nNumberOfLinks, 1u);
    EXPECT_EQ(information.dwFileAttributes, kFileArchive);
    EXPECT_TRUE(CloseHandle(file));
    FileStatus status;
    EXPECT_EQ(QueryStatus(folder.Name(u"large").c_str(), &status), 0);
    EXPECT_EQ(status.size, static_cast<std::uint64_t>(end));
}

TEST_F(FilesTest, DeleteOnCloseTakesTheFileAlongWithItsLastHandle) {
    const std::uint32_t all = kShareRead | kShareWrite | kShareDelete;
    const HANDLE first =
        OpenFile(name.c_str(), kAccessWrite, all, kCreateNew, kFileNormal | kFlagDeleteOnClose);
    EXPECT_EQ(OpenFile(name.c_str(), kAccessRead, 3, kOpenExisting, 0), INVALID_HANDLE_VALUE);
    EXPECT_EQ(LastError(), kErrorSharingViolation);
    const HANDLE second = OpenFile(name.c_str(), kAccessRead, all, kOpenExisting, 0);
    EXPECT_TRUE(CloseHandle(first));
    EXPECT_TRUE(folder.Has(u"file"));
    EXPECT_EQ(OpenFile(name.c_str(), kAccessRead, all, kOpenExisting, 0), INVALID_HANDLE_VALUE);
    EXPECT_EQ(LastError(), kErrorAccessDenied);
    EXPECT_TRUE(CloseHandle(second));
    EXPECT_FALSE(folder.Has(u"file"));

    // Removed by name while a handle shares that.
    folder.Write(u"file", "content");
    const HANDLE open = OpenFile(name.c_str(), kAccessRead, all, kOpenExisting, 0);
    EXPECT_TRUE(RemoveFile(name.c_str()));
    EXPECT_EQ(ReadAll(open), "content");
    EXPECT_EQ(OpenFile(name.c_str(), kAccessRead, all, kOpenExisting, 0), INVALID_HANDLE_VALUE);
    EXPECT_EQ(LastError(), kErrorAccessDenied);
    EXPECT_TRUE(CloseHandle(open));
    EXPECT_FALSE(folder.Has(u"file"));
}

TEST_F(FilesTest, AttributesSurviveAndFollowTheirFile) {
    folder.Write(u"file", "");
    EXPECT_EQ(QueryAttributes(name.c_str()), kFileArchive);
    for (const std::uint32_t word : {0x80u, 0x01u, 0x20u, 0x27u, 0x06u, 0x100u, 0x20u}) {
        ASSERT_TRUE(SetAttributes(name.c_str(), word));
        EXPECT_EQ(QueryAttributes(name.c_str()), word);
    }
    EXPECT_TRUE(SetAttributes(name.c_str(), kFileHidden | kFileReadOnly));
    EXPECT_TRUE(DuplicateFile(name.c_str(), folder.Name(u"copy").c_str(), false));
    EXPECT_EQ(QueryAttributes(folder.Name(u"copy").c_str()), kFileHidden | kFileReadOnly);
    EXPECT_EQ(QueryAttributes(folder.Name(u"none").c_str()), kInvalidAttributes);
    EXPECT_EQ(LastError(), kErrorFileNotFound);
}

TEST_F(FilesTest, NamesAreRemovedMovedAndCopiedAsRecorded) {
    const auto at = [this](const char16_t* file) { return folder.Name(file); };
    folder.MakeFolder(u"folder");
    for (const char16_t* file : {u"a", u"b", u"folder\\c", u"locked"}) folder.Write(file, "data");
    ASSERT_TRUE(SetAttributes(at(u"locked").c_str(), kFileReadOnly));
    const auto move = [&](const char16_t* from, const char16_t* to, bool replace) {
        return RenameFile(at(from).c_str(), *to ? at(to).c_str() : to, replace, true);
    };
    const auto copy = [&](const char16_t* from, const char16_t* to, bool replace) {
        return DuplicateFile(at(from).c_str(), at(to).c_str(), replace);
    };
    const auto after = [](bool done) { return done ? 0u : LastError(); };
    struct Case {
        const char* what;
        std::uint32_t error, expected;
    };
    for (const auto& [what, error, expected] : std::vector<Case>{
             {"move onto a file", after(move(u"a", u"b", false)), 183},
             {"move onto a file, replacing", after(move(u"a", u"b", true)), 0},
             {"move a missing file", after(move(u"a", u"x", false)), 2},
             {"move into a missing folder", after(move(u"b", u"no\\b", false)), 3},
             {"move to an empty name", after(move(u"b", u"", false)), 3},
             {"move onto itself", after(move(u"b", u"b", false)), 0},
             {"move onto a folder", after(move(u"b", u"folder", true)), 5},
             {"move onto a read-only file", after(move(u"b", u"locked", true)), 5},
             {"move to a name that cannot be", after(move(u"b", u"b|c", false)), 123},
             {"move a folder", after(move(u"folder", u"moved", false)), 0},
             {"copy onto a file", after(copy(u"b", u"moved\\c", false)), 80},
             {"copy onto a file, replacing", after(copy(u"b", u"moved\\c", true)), 0},
             {"copy onto a folder", after(copy(u"b", u"moved", true)), 5},
             {"copy onto itself", after(copy(u"b", u"b", true)), 32},
             {"copy into a missing folder", after(copy(u"b", u"no\\b", true)), 3},
             {"copy onto a read-only file", after(copy(u"b", u"locked", true)), 5},
             {"copy a missing file", after(copy(u"a", u"x", true)), 2},
             {"remove a read-only file", after(RemoveFile(at(u"locked").c_str())), 5},
             {"remove a missing file", after(RemoveFile(at(u"a").c_str())), 2},
             {"remove in a missing folder", after(RemoveFile(at(u"no\\a").c_str())), 3},
             {"remove a folder", after(RemoveFile(at(u"moved").c_str())), 5},
             {"remove an empty name", after(RemoveFile(u"")), 3},
             {"make a folder over a file", after(CreateFolder(at(u"b").c_str())), 183},
             {"make below a missing folder", after(CreateFolder(at(u"no\\x").c_str())), 3},
             {"make with a separator", after(CreateFolder(at(u"new\\").c_str())), 0},
             {"make an empty name", after(CreateFolder(u"")), 3},
             {"remove a full folder", after(RemoveFolder(at(u"moved").c_str())), 145},
             {"remove an empty folder", after(RemoveFolder(at(u"new").c_str())), 0},
             {"remove a file as a folder", after(RemoveFolder(at(u"b").c_str())), 267},
             {"change to a missing folder", after(ChangeFolder(at(u"no").c_str())), 2},
             {"change to a file", after(ChangeFolder(at(u"b").c_str())), 267},
         }) {
        EXPECT_EQ(error, expected) << what;
    }
    EXPECT_EQ(folder.Names(), (std::vector<std::string>{"b", "locked", "moved"}));
    EXPECT_EQ(folder.Read(u"moved\\c"), "data");
}

TEST_F(FilesTest, ACopyKeepsContentAndTimeAndLeavesNothingHalfDone) {
    std::string content;
    for (int i = 0; i < 300000; ++i) content += static_cast<char>(i * 7);
    folder.Write(u"from", content);
    SetLastError(77);
    ASSERT_TRUE(DuplicateFile(folder.Name(u"from").c_str(), folder.Name(u"to").c_str(), true));
    EXPECT_EQ(LastError(), 77u) << "success leaves it alone";
    EXPECT_EQ(folder.Read(u"to"), content);
    FileStatus from, to;
    EXPECT_EQ(QueryStatus(folder.Name(u"from").c_str(), &from), 0);
    EXPECT_EQ(QueryStatus(folder.Name(u"to").c_str(), &to), 0);
    EXPECT_EQ(from.modification, to.modification);

    folder.Write(u"to", "old");
    std::filesystem::create_symlink("linked", folder.Native(u"link"));
    folder.Write(u"linked", "old");
    {
        const test::SmallFiles full;
        EXPECT_FALSE(DuplicateFile(folder.Name(u"from").c_str(), folder.Name(u"to").c_str(), true));
        EXPECT_EQ(LastError(), kErrorFileTooLarge);
    }
    EXPECT_EQ(folder.Read(u"to"), "old");
    EXPECT_EQ(folder.Names(), (std::vector<std::string>{"from", "link", "linked", "to"}));
    for (const char16_t* target : {u"to", u"link"}) {
        EXPECT_TRUE(DuplicateFile(folder.Name(u"from").c_str(), folder.Name(target).c_str(), true));
    }
    EXPECT_TRUE(folder.Read(u"to") == content && folder.Read(u"linked") == content);

    // Across file systems, when there is a second one to write to.
    const u16string far = u"/dev/shm/zelkor-test-" + test::Utf16(std::to_string(getpid()));
    if (!RenameFile(folder.Name(u"from").c_str(), far.c_str(), false, false)) {
        EXPECT_EQ(LastError(), kErrorNotSameDevice);
        EXPECT_TRUE(RenameFile(folder.Name(u"from").c_str(), far.c_str(), false, true));
        EXPECT_FALSE(folder.Has(u"from"));
        EXPECT_FALSE(RenameFile(folder.Name(u"to").c_str(), far.c_str(), false, true));
        EXPECT_EQ(LastError(), kErrorAlreadyExists);
        EXPECT_TRUE(RenameFile(far.c_str(), folder.Name(u"back").c_str(), false, true));
        EXPECT_EQ(folder.Read(u"back"), content);
    } else {
        EXPECT_TRUE(RemoveFile(far.c_str()));
    }
}

TEST_F(FilesTest, TemporaryFilesAreNewEmptyAndNamedByRule) {
    std::array<char16_t, 260> made;
    struct Case {
        const char16_t* prefix;
        std::uint32_t unique;
        const char16_t* name;
    };
    for (const auto& [prefix, unique, expected] : {Case{u"a", 0x1A2B, u"a1a2b.tmp"},
                                                   {u"abcdef", 0x1A2B, u"abc1a2b.tmp"},
                                                   {u"a.b", 0xFF0007, u"a.b7.tmp"}}) {
        EXPECT_EQ(CreateTemporaryFile(folder.Path().c_str(), prefix, unique, made),
                  unique & 0xFFFF);
        EXPECT_EQ(u16string(made.data()), folder.Name(expected));
    }
    EXPECT_TRUE(folder.Names().empty());
    for (int i = 0; i < 50; ++i) {
        const std::uint32_t number = CreateTemporaryFile(folder.Path().c_str(), u"abcd", 0, made);
        ASSERT_NE(number, 0u);
        EXPECT_EQ(std::u16string_view(made.data()).size(), folder.Path().size() + 12);
    }
    EXPECT_EQ(folder.Names().size(), 50u);
    EXPECT_EQ(CreateTemporaryFile(folder.Name(u"no").c_str(), u"a", 0, made), 0u);
    EXPECT_EQ(LastError(), kErrorDirectory);
    EXPECT_EQ(CreateTemporaryFile(folder.Path().c_str(), u"a", 0, std::span(made).first(20)), 0u);
    EXPECT_NE(TemporaryFolder(made), 0u);
    EXPECT_TRUE(u16string(made.data()).ends_with(u'\\'));
}

TEST_F(FilesTest, ForcedFailuresStrikeTheCallTheyNameAndNoOther) {
    const HANDLE file = Open(name, kAccessRead | kAccessWrite, kCreateNew);
    const auto write_twice = [file] {
        for (const char* bytes : {"ab", "cd"}) Write(file, bytes);
    };
    const auto check = [](std::uint32_t) { EXPECT_EQ(LastError(), 29u); };
    EXPECT_EQ(test::FailEachFileCall(FileCall::kWrite, kErrorWriteFault, write_twice, check), 2u);
    EXPECT_TRUE(SetFilePosition(file, 0, kSeekBegin, nullptr) && SetEndOfFile(file));
    std::uint32_t done = 0;
    {
        const test::FullDisk full(1, 2);
        EXPECT_TRUE(Write(file, "1234"));
        EXPECT_FALSE(WriteFile(file, "5678", 4, &done));
        EXPECT_EQ(done, 2u);
        EXPECT_EQ(LastError(), kErrorDiskFull);
        EXPECT_FALSE(WriteFile(file, "9", 1, &done));
        EXPECT_EQ(done, 0u);
    }
    {
        ShortenFileCall(FileCall::kRead, 0, 3);
        EXPECT_TRUE(SetFilePosition(file, 0, kSeekBegin, nullptr));
        EXPECT_EQ(ReadAll(file), "123");
        EXPECT_EQ(ReadAll(file), "456");
        std::thread other([&] { EXPECT_TRUE(Write(file, "7")); });
        other.join();
    }
    {
        const test::FileFault fault(FileCall::kClose, 0, kErrorGenFailure);
        EXPECT_FALSE(CloseHandle(file));
        EXPECT_EQ(LastError(), kErrorGenFailure);
    }
    EXPECT_TRUE(CloseHandle(file));
    EXPECT_EQ(folder.Read(u"file"), "1234567");
}

TEST_F(FilesTest, AFullDeviceIsReported) {
    if (access("/dev/full", W_OK) != 0) GTEST_SKIP() << "no device that is always full";
    const HANDLE file = Open(u"/dev/full", kAccessWrite, kOpenExisting);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    EXPECT_FALSE(Write(file, "x"));
    EXPECT_EQ(LastError(), kErrorDiskFull);
    EXPECT_TRUE(CloseHandle(file));
}

std::atomic<int> signals{0};

TEST_F(FilesTest, ASignalDoesNotCutAReadShort) {
    const std::string pipe = folder.Native(u"pipe").native();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    FileStatus status;
    EXPECT_EQ(QueryStatus(folder.Name(u"pipe").c_str(), &status), 0);
    EXPECT_EQ(status.mode & kModeKind, kModePipe);

    struct sigaction action = {}, before;
    action.sa_handler = [](int) { signals.fetch_add(1); };  // without SA_RESTART
    ASSERT_EQ(sigaction(SIGUSR1, &action, &before), 0);
    const pthread_t reader = pthread_self();
    std::atomic<bool> read{false};
    std::thread writer([&] {
        const HANDLE end = Open(folder.Name(u"pipe"), kAccessWrite, kOpenExisting);
        while (signals.load() < 3) {
            pthread_kill(reader, SIGUSR1);
            usleep(2000);
        }
        EXPECT_TRUE(Write(end, "through"));
        while (!read.load()) usleep(1000);
        EXPECT_TRUE(CloseHandle(end));
    });
    const HANDLE pipe_end = Open(folder.Name(u"pipe"), kAccessRead, kOpenExisting);
    EXPECT_EQ(ReadAll(pipe_end), "through");
    read.store(true);
    writer.join();
    EXPECT_TRUE(CloseHandle(pipe_end));
    sigaction(SIGUSR1, &before, nullptr);
}

TEST_F(FilesTest, AProcessKilledWhileReplacingLeavesOldOrNewContent) {
    const std::string old_content(20000, 'o'), new_content(20000, 'n');
    for (int round = 0; round < 10; ++round) {
        folder.Write(u"target", old_content);
        const pid_t child = fork();
        if (child == 0) {
            for (;;) {
                for (const std::string& content : {new_content, old_content}) {
                    const HANDLE file = Open(folder.Name(u"next"), kAccessWrite, kCreateAlways);
                    Write(file, content);
                    CloseHandle(file);
                    RenameFile(folder.Name(u"next").c_str(), folder.Name(u"target").c_str(), true,
                               true);
                }
            }
        }
        usleep(static_cast<useconds_t>(2000 + 1700 * round));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const std::string content = folder.Read(u"target");
        EXPECT_TRUE(content == old_content || content == new_content) << content.size();
    }
}

}  // namespace
