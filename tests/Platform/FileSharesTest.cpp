// Share modes and byte-range locks between handles, threads and processes.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "Foundation/Platform/Files.h"
#include "Foundation/Platform/LastError.h"
#include "Support/TempFolder.h"

namespace {

using namespace zelkor::platform;
using std::u16string;

// "RW3": reading and writing, sharing both; "-0" no access; D to delete.
HANDLE OpenAs(const u16string& name, const std::string& mode) {
    std::uint32_t access = 0;
    for (const char letter : mode) {
        if (letter == 'R') access |= kAccessRead;
        if (letter == 'W') access |= kAccessWrite;
        if (letter == 'D') access |= kAccessDelete;
    }
    const auto share = static_cast<std::uint32_t>(mode.back() - '0');
    return OpenFile(name.c_str(), access, share, kOpenExisting, kFileNormal);
}

// The error that a call left, 0 when it succeeded.
std::uint32_t After(bool done) {
    return done ? 0 : LastError();
}

struct FileSharesTest : testing::Test {
    const test::TempFolder folder;
    const u16string name = folder.Name(u"file");

    FileSharesTest() { folder.Write(u"file", "0123456789"); }
};

// Runs in a child process; its answer, 0 to 255.
int InChild(const std::function<int()>& work) {
    const pid_t child = fork();
    if (child == 0) _exit(work());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// The last error of a second opening, 0 when it succeeds.
int SecondOpen(const u16string& name, const std::string& mode) {
    const HANDLE second = OpenAs(name, mode);
    return static_cast<int>(After(second != INVALID_HANDLE_VALUE && CloseHandle(second)));
}

// From the recording: the first opening, then second ones that are refused (32) and that are not.
struct ShareCase {
    const char* first;
    const char* refused;
    const char* allowed;
};
constexpr ShareCase kShares[] = {
    {"-0", "", "-0 R0 R7 W5 RW1 D0"},
    {"R0", "R0 R2 R5 W5 W7 RW1 RW7 D0 D4", "-2 -3 -7"},
    {"R1", "R0 R2 W0 W1 W3 W7 RW3 D2 D7", "-4 R5"},
    {"R2", "R1 R4 R5 RW0 RW3 RW7 D3 D5", "-4 W1 W5"},
    {"R3", "R0 R4 R6 W0 W4 W6 D1 D3", "R3 R7 W3 W7 RW5"},
    {"R4", "R0 R4 R5 W2 W7 RW5 D2 D4 D6", "-5 D1"},
    {"R5", "R0 W0 W7 RW4 D2", "R5 D3"},
    {"R6", "R0 R6 W0 W6 RW7 D2", "W1 W3 W7 D1 D7"},
    {"R7", "R0 R2 R6 W2 W6 RW0 RW2 D0 D6", "R1 R3 W7 RW1 RW7 D3 D5"},
    {"W0", "R2 R6 W0 W7 RW0 D1 D5", "-0 -7"},
    {"W1", "R0 R5 W0 RW1 RW7 D0 D4", "-1 R3 R7"},
    {"W2", "R1 R7 W0 W4 RW1 RW7 D4 D6", "-5 W3 W7"},
    {"W3", "R0 W0 W4 RW0 RW1 D0 D7", "R2 R6 W2 W3 RW2 RW7"},
};

std::vector<std::string> Words(const char* text) {
    std::istringstream words(text);
    return {std::istream_iterator<std::string>(words), {}};
}

TEST_F(FileSharesTest, OpeningsExcludeEachOtherAsRecorded) {
    for (const ShareCase& row : kShares) {
        const HANDLE first = OpenAs(name, row.first);
        ASSERT_NE(first, INVALID_HANDLE_VALUE) << row.first;
        const auto as_recorded = [&] {
            for (const std::string& mode : Words(row.refused)) {
                EXPECT_EQ(SecondOpen(name, mode), 32) << row.first << " then " << mode;
            }
            for (const std::string& mode : Words(row.allowed)) {
                EXPECT_EQ(SecondOpen(name, mode), 0) << row.first << " then " << mode;
            }
            return HasFailure() ? 1 : 0;
        };
        as_recorded();
        EXPECT_EQ(InChild(as_recorded), 0) << row.first << ", between processes";
        EXPECT_TRUE(CloseHandle(first));
        EXPECT_EQ(SecondOpen(name, "RW0"), 0) << "closing releases all of it";
    }
}

TEST_F(FileSharesTest, NamesOfOpenFilesAreProtectedToo) {
    folder.Write(u"other", "other");
    const u16string other = folder.Name(u"other");
    const HANDLE open = OpenAs(name, "R3");
    EXPECT_EQ(After(RemoveFile(name.c_str())), kErrorSharingViolation);
    EXPECT_EQ(After(RenameFile(name.c_str(), folder.Name(u"x").c_str(), false, true)),
              kErrorSharingViolation);
    EXPECT_EQ(After(RenameFile(other.c_str(), name.c_str(), true, true)), kErrorAccessDenied);
    EXPECT_EQ(After(DuplicateFile(name.c_str(), folder.Name(u"x").c_str(), false)), 0u);
    EXPECT_EQ(After(SetAttributes(name.c_str(), kFileArchive)), 0u);
    EXPECT_TRUE(CloseHandle(open));

    const HANDLE exclusive = OpenAs(name, "W1");
    EXPECT_EQ(After(DuplicateFile(other.c_str(), name.c_str(), true)), kErrorSharingViolation);
    EXPECT_EQ(OpenFile(name.c_str(), kAccessWrite, 0, kCreateAlways, 0), INVALID_HANDLE_VALUE);
    EXPECT_EQ(LastError(), kErrorSharingViolation);
    EXPECT_TRUE(CloseHandle(exclusive));
    EXPECT_EQ(folder.Read(u"file"), "0123456789");
}

// The child's descriptors kept the marks, and its closing took those of the parent.
TEST_F(FileSharesTest, WhatAForkedChildInheritsIsItsParentsToHoldAndToRelease) {
    const HANDLE closed_by_child = OpenAs(name, "RW3"), mine = OpenAs(name, "R3");
    ASSERT_TRUE(LockFile(closed_by_child, 0, 1));
    EXPECT_EQ(InChild([&] { return CloseHandle(closed_by_child) ? 0 : 1; }), 0);
    EXPECT_EQ(SecondOpen(name, "R0"), 32);
    EXPECT_EQ(After(LockFile(mine, 0, 1)), kErrorLockViolation);
    int leave[2];
    ASSERT_EQ(pipe(leave), 0);
    const pid_t child = fork();
    if (child == 0) {
        close(leave[1]);
        char byte;
        _exit(static_cast<int>(read(leave[0], &byte, 1)));
    }
    EXPECT_TRUE(CloseHandle(closed_by_child));
    EXPECT_EQ(After(LockFile(mine, 0, 1)), 0u);
    EXPECT_TRUE(CloseHandle(mine));
    EXPECT_EQ(SecondOpen(name, "RW0"), 0);
    close(leave[0]);
    close(leave[1]);
    waitpid(child, nullptr, 0);
}

TEST_F(FileSharesTest, AForeignLockHoldsNobodyUpForMuchMoreThanTwoSeconds) {
    const int foreign = open(folder.Native(u"file").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(foreign, LOCK_EX), 0);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(SecondOpen(name, "R0"), 0);
    const std::chrono::duration<double> waited = std::chrono::steady_clock::now() - begin;
    EXPECT_GT(waited.count(), 1.9);
    EXPECT_LT(waited.count(), 2.9);  // 3.75 when sleeps were counted
    close(foreign);
}

TEST_F(FileSharesTest, OfManyThreadsExactlyOneHasTheFileToItself) {
    std::atomic<int> inside{0}, most{0}, opened{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 300; ++round) {
                const HANDLE file = OpenAs(name, "RW0");
                if (file == INVALID_HANDLE_VALUE) {
                    EXPECT_EQ(LastError(), kErrorSharingViolation);
                    continue;
                }
                const int now = inside.fetch_add(1) + 1;
                if (now > most.load()) most.store(now);
                opened.fetch_add(1);
                inside.fetch_sub(1);
                EXPECT_TRUE(CloseHandle(file));
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(most.load(), 1);
    EXPECT_GT(opened.load(), 0);
}

TEST_F(FileSharesTest, RemovingAndMakingAnewRaceWithoutHarm) {
    std::atomic<bool> stop{false};
    std::thread remover([&] {
        while (!stop.load()) RemoveFile(name.c_str());
    });
    for (int round = 0; round < 2000; ++round) {
        const HANDLE file =
            OpenFile(name.c_str(), kAccessRead | kAccessWrite, 0, kOpenAlways, kFileNormal);
        ASSERT_NE(file, INVALID_HANDLE_VALUE) << LastError();
        // While it is open its name stays.
        EXPECT_TRUE(folder.Has(u"file")) << round;
        EXPECT_TRUE(CloseHandle(file));
    }
    stop.store(true);
    remover.join();
}

TEST_F(FileSharesTest, LocksOfRangesAnswerAsRecorded) {
    const HANDLE a = OpenAs(name, "RW3"), b = OpenAs(name, "RW3"), none = OpenAs(name, "-3");
    EXPECT_EQ(After(LockFile(a, 2, 4)), 0u);
    EXPECT_EQ(After(LockFile(b, 5, 2)), kErrorLockViolation);
    EXPECT_EQ(After(LockFile(b, 6, 1)), 0u);
    EXPECT_EQ(After(LockFile(b, 0, 2)), 0u);
    EXPECT_EQ(After(LockFile(a, 3, 1)), kErrorLockViolation) << "inside its own";
    EXPECT_EQ(After(LockFile(b, 100, 10)), 0u) << "beyond the end";
    EXPECT_EQ(After(LockFile(b, 20, 0)), 0u);
    EXPECT_EQ(After(UnlockFile(b, 20, 0)), 0u);
    EXPECT_EQ(After(UnlockFile(a, 2, 2)), kErrorNotLocked) << "part of a range";
    EXPECT_EQ(After(UnlockFile(a, 2, 4)), 0u);
    EXPECT_EQ(After(LockFile(b, 2, 4)), 0u);
    EXPECT_EQ(After(LockFile(a, 8, 1) && LockFile(a, 9, 1)), 0u);
    EXPECT_EQ(After(UnlockFile(a, 8, 2)), kErrorNotLocked) << "two at once";
    EXPECT_EQ(After(LockFile(a, ~0ull, ~0ull)), kErrorInvalidParameter);
    EXPECT_EQ(After(LockFile(none, 50, 1)), kErrorAccessDenied);
    EXPECT_EQ(After(UnlockFile(INVALID_HANDLE_VALUE, 0, 1)), kErrorInvalidHandle);
    for (const HANDLE handle : {a, b, none}) EXPECT_TRUE(CloseHandle(handle));
}

// The last error of reading or writing one byte at a position.
std::uint32_t Touch(HANDLE file, std::int64_t at, bool write) {
    char byte = 'x';
    std::uint32_t done = 0;
    SetFilePosition(file, at, kSeekBegin, nullptr);
    return After(write ? WriteFile(file, &byte, 1, &done) : ReadFile(file, &byte, 1, &done));
}

TEST_F(FileSharesTest, ALockedRangeIsClosedToEveryOtherHandle) {
    for (const char* mode : {"RW3", "R3", "W3"}) {
        SCOPED_TRACE(mode);
        const HANDLE owner = OpenAs(name, mode), other = OpenAs(name, "RW3");
        ASSERT_TRUE(LockFile(owner, 4, 2));
        const auto expect_closed = [&](HANDLE file) {
            int wrong = 0;
            for (const int at : {3, 4, 5, 6, 13, 14, 15, 16}) {
                const bool closed = at % 10 == 4 || at % 10 == 5;
                wrong += Touch(file, at % 10, at > 10) != (closed ? kErrorLockViolation : 0);
            }
            return wrong;
        };
        EXPECT_EQ(expect_closed(other), 0);
        EXPECT_EQ(InChild([&] {
                      const HANDLE foreign = OpenAs(name, "RW3");
                      return expect_closed(foreign) + (LockFile(foreign, 5, 9) ? 100 : 0);
                  }),
                  0);
        if (mode[0] == 'R') {
            EXPECT_EQ(Touch(owner, 4, false), 0u);
        }
        EXPECT_TRUE(CloseHandle(owner));
        EXPECT_EQ(Touch(other, 4, false), 0u) << "closing releases the lock";
        EXPECT_TRUE(LockFile(other, 0, 10));
        EXPECT_TRUE(CloseHandle(other));
    }
}

TEST_F(FileSharesTest, ALockOfAnotherProcessEndsWithIt) {
    int ready[2], leave[2];
    ASSERT_EQ(pipe(ready) | pipe(leave), 0);
    const pid_t child = fork();
    if (child == 0) {
        close(leave[1]);
        char byte = LockFile(OpenAs(name, "RW3"), 0, 5) ? 'y' : 'n';
        if (write(ready[1], &byte, 1) == 1) _exit(static_cast<int>(read(leave[0], &byte, 1)));
        _exit(1);
    }
    char answer = 0;
    ASSERT_EQ(read(ready[0], &answer, 1), 1);
    EXPECT_EQ(answer, 'y');
    const HANDLE file = OpenAs(name, "RW3");
    EXPECT_EQ(Touch(file, 4, false), kErrorLockViolation);
    EXPECT_EQ(Touch(file, 5, true), 0u);
    for (const int end : {leave[0], leave[1], ready[0], ready[1]}) close(end);
    waitpid(child, nullptr, 0);
    EXPECT_EQ(Touch(file, 4, false), 0u);
    EXPECT_TRUE(CloseHandle(file));
}

}  // namespace
