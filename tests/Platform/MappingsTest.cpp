// Mappings and views of files, against recorded answers of the platform.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "Foundation/Platform/Files.h"
#include "Foundation/Platform/LastError.h"
#include "Support/Faults.h"
#include "Support/TempFolder.h"

namespace {

using namespace zelkor::platform;
using std::u16string;

HANDLE Open(const u16string& name, std::uint32_t access, std::uint32_t share = kShareNone) {
    return OpenFile(name.c_str(), access, share, kOpenExisting, kFileNormal);
}
constexpr std::uint32_t kReadWrite = kAccessRead | kAccessWrite;

std::uint32_t EndAt(HANDLE file, std::int64_t size) {
    const bool done = SetFilePosition(file, size, kSeekBegin, nullptr) && SetEndOfFile(file);
    return done ? 0 : LastError();
}

struct MappingsTest : testing::Test {
    const test::TempFolder folder;
    const u16string name = folder.Name(u"file");

    MappingsTest() { folder.Write(u"file", "12345"); }
};

TEST_F(MappingsTest, CreatingOneAnswersAsRecorded) {
    struct Case {
        std::size_t file_size;
        std::uint32_t access;
        bool writable;
        std::uint64_t size;
        std::uint32_t error;
        std::uint64_t size_after;
    };
    const Case cases[] = {
        {0, kAccessRead, false, 0, 1006, 0},       {0, kAccessRead, false, 1, 8, 0},
        {0, kAccessRead, true, 0, 5, 0},           {5, kAccessRead, false, 1, 0, 5},
        {5, kAccessRead, false, 100, 8, 5},        {5, kAccessRead, true, 100, 5, 5},
        {5, kAccessWrite, false, 0, 5, 5},         {5, kAccessWrite, true, 1, 5, 5},
        {0, kReadWrite, true, 0, 1006, 0},         {0, kReadWrite, true, 4096, 0, 4096},
        {5, kReadWrite, false, 4096, 8, 5},        {5, kReadWrite, true, 1, 0, 5},
        {5, kReadWrite, true, 1048576, 0, 1048576}};
    for (const auto& [file_size, access, writable, size, error, size_after] : cases) {
        SCOPED_TRACE(std::to_string(file_size) + " " + std::to_string(size));
        folder.Write(u"file", std::string(file_size, 'x'));
        const HANDLE file = Open(name, access);
        const HANDLE mapping = CreateMapping(file, writable, size);
        EXPECT_EQ(mapping == nullptr ? LastError() : 0u, error);
        std::uint64_t now = 0;
        EXPECT_TRUE(QueryFileSize(file, &now));
        EXPECT_EQ(now, size_after);
        if (mapping != nullptr) {
            void* view = MapView(mapping, writable, 0);
            ASSERT_NE(view, nullptr);
            EXPECT_TRUE(FlushView(view, 0));
            EXPECT_TRUE(UnmapView(view));
            EXPECT_FALSE(UnmapView(view));
            EXPECT_EQ(LastError(), kErrorInvalidAddress);
            EXPECT_TRUE(CloseHandle(mapping));
        }
        EXPECT_TRUE(CloseHandle(file));
    }
}

TEST_F(MappingsTest, AViewIsTheFileAndOutlivesItsHandles) {
    const HANDLE file = Open(name, kReadWrite);
    const HANDLE mapping = CreateMapping(file, true, 8192);
    EXPECT_EQ(MapView(mapping, true, 8193), nullptr);
    EXPECT_EQ(LastError(), kErrorAccessDenied);
    char* view = static_cast<char*>(MapView(mapping, true, 0));
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(std::string(view, 6), std::string("12345\0", 6));
    EXPECT_TRUE(CloseHandle(mapping));
    EXPECT_TRUE(CloseHandle(file));

    std::memcpy(view + 5000, "stored", 6);
    // The closed handle's share mode no longer counts.
    const HANDLE again = Open(name, kReadWrite);
    ASSERT_NE(again, INVALID_HANDLE_VALUE);
    char bytes[6];
    std::uint32_t done = 0;
    EXPECT_TRUE(SetFilePosition(again, 5000, kSeekBegin, nullptr));
    EXPECT_TRUE(ReadFile(again, bytes, 6, &done));
    EXPECT_EQ(std::string(bytes, 6), "stored");
    EXPECT_TRUE(SetFilePosition(again, 0, kSeekBegin, nullptr));
    EXPECT_TRUE(WriteFile(again, "changed", 7, &done));
    EXPECT_EQ(std::string(view, 7), "changed");
    EXPECT_TRUE(CloseHandle(again));
    EXPECT_TRUE(UnmapView(view));
    EXPECT_EQ(folder.Read(u"file").size(), 8192u);

    const HANDLE reading = Open(name, kAccessRead);
    const HANDLE for_reading = CreateMapping(reading, false, 0);
    EXPECT_EQ(MapView(for_reading, true, 0), nullptr);
    EXPECT_EQ(LastError(), kErrorAccessDenied);
    EXPECT_TRUE(CloseHandle(for_reading) && CloseHandle(reading));
}

TEST_F(MappingsTest, AMappedFileIsNotCutUnderItsView) {
    const std::uint32_t share = kShareRead | kShareWrite;
    const HANDLE file = Open(name, kReadWrite, share);
    const HANDLE mapping = CreateMapping(file, true, 4096);
    void* view = MapView(mapping, true, 0);
    const HANDLE other = Open(name, kReadWrite, share);
    for (const HANDLE handle : {file, other}) {
        EXPECT_EQ(EndAt(handle, 5), kErrorUserMappedFile);
        EXPECT_EQ(EndAt(handle, 8192), 0u);
        EXPECT_EQ(EndAt(handle, 4096), 0u);
    }
    const pid_t child = fork();
    if (child == 0) {
        const HANDLE foreign = Open(name, kReadWrite, share);
        _exit(EndAt(foreign, 5) == kErrorUserMappedFile && EndAt(foreign, 4096) == 0 ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);

    EXPECT_TRUE(CloseHandle(mapping) && CloseHandle(file) && CloseHandle(other));
    EXPECT_EQ(OpenFile(name.c_str(), kReadWrite, 0, kCreateAlways, 0), INVALID_HANDLE_VALUE);
    EXPECT_EQ(LastError(), kErrorUserMappedFile);
    EXPECT_TRUE(UnmapView(view));
    // Of several mappings the file is held as long as the longest, and as one ends.
    const HANDLE a = Open(name, kReadWrite, share), b = Open(name, kReadWrite, share);
    const HANDLE of_a = CreateMapping(a, true, 4096), long_of_a = CreateMapping(a, true, 16384);
    EXPECT_TRUE(CloseHandle(long_of_a));
    EXPECT_EQ(EndAt(b, 8192), 0u);
    const HANDLE of_b = CreateMapping(b, true, 4096);
    EXPECT_TRUE(CloseHandle(of_a) && CloseHandle(of_b));
    EXPECT_EQ(EndAt(b, 5), 0u);
    EXPECT_EQ(EndAt(a, 5), 0u);
    EXPECT_TRUE(CloseHandle(a) && CloseHandle(b));
}

TEST_F(MappingsTest, AMappingThatFindsNoRoomFailsAndLeavesTheFileAsItWas) {
    const HANDLE file = Open(name, kReadWrite);
    {
        const test::SmallFiles full;
        EXPECT_EQ(CreateMapping(file, true, 1048576), nullptr);
        EXPECT_EQ(LastError(), kErrorFileTooLarge);
    }
    EXPECT_TRUE(CloseHandle(file));
    EXPECT_EQ(folder.Read(u"file"), "12345");
}

TEST_F(MappingsTest, AViewGrowsWhereItIsOrStaysAsItWas) {
    const HANDLE file = Open(name, kReadWrite);
    const HANDLE mapping = CreateMapping(file, true, 4096);
    char* const view = static_cast<char*>(MapView(mapping, true, 0));
    ASSERT_TRUE(GrowView(mapping, view, 3 << 20));
    view[(3 << 20) - 1] = 'e';
    EXPECT_EQ(std::string(view, 5), "12345");
    EXPECT_TRUE(FlushView(view, 0));
    const std::string grown = folder.Read(u"file");
    EXPECT_EQ(grown.size(), 3u << 20);
    EXPECT_EQ(grown.back(), 'e');
    EXPECT_EQ(EndAt(file, 4096), kErrorUserMappedFile);
    {
        const test::SmallFiles full;
        EXPECT_FALSE(GrowView(mapping, view, 4 << 20));
        EXPECT_EQ(LastError(), kErrorFileTooLarge);
    }
    EXPECT_FALSE(GrowView(mapping, view, std::uint64_t{1} << 40));
    EXPECT_FALSE(GrowView(mapping, view + 1, 4 << 20) || FlushView(view + 1, 0));
    EXPECT_EQ(LastError(), kErrorInvalidAddress);
    EXPECT_EQ(folder.Read(u"file").size(), 3u << 20);
    EXPECT_TRUE(UnmapView(view) && CloseHandle(mapping) && CloseHandle(file));
}

TEST_F(MappingsTest, HolesOfTheFileAreFilledBeforeAViewMayStoreThere) {
    const HANDLE file = Open(name, kReadWrite);
    const std::int64_t size = 4 << 20;
    EXPECT_EQ(EndAt(file, size), 0u);
    const HANDLE mapping = CreateMapping(file, true, 0);
    ASSERT_NE(mapping, nullptr);
    struct stat status;
    ASSERT_EQ(stat(folder.Native(u"file").c_str(), &status), 0);
    EXPECT_GE(status.st_blocks * 512, size);
    EXPECT_TRUE(CloseHandle(mapping) && CloseHandle(file));
}

}  // namespace
