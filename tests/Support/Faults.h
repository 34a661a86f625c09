// Forced failures of the system's file calls, for the length of a scope or call by call.
#ifndef TESTS_SUPPORT_FAULTS_H
#define TESTS_SUPPORT_FAULTS_H

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <cstdint>

#include "Foundation/Platform/Faults.h"

namespace test {

// Lets `after` calls pass and fails the next one with a Win32 number; at the end of the scope every
// fault of the thread is gone.
class FileFault {
public:
    FileFault(zelkor::platform::FileCall call, std::uint32_t after, std::uint32_t error,
              bool sticky = false) {
        zelkor::platform::FailFileCall(call, after, error, sticky);
    }
    ~FileFault() { zelkor::platform::ClearFileFaults(); }
    FileFault(const FileFault&) = delete;
    FileFault& operator=(const FileFault&) = delete;
};

// The disk takes `after` more writes and `limit` bytes of the next one, then no more.
class FullDisk {
public:
    explicit FullDisk(std::uint32_t after = 0, std::uint32_t limit = 0) {
        zelkor::platform::FillDisk(after, limit);
    }
    ~FullDisk() { zelkor::platform::ClearFileFaults(); }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
};

// The process may make files of 64 KiB at most (223), which stands for a disk with no more room.
class SmallFiles {
public:
    SmallFiles() : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &before_), 0);
        const rlimit limit{65536, before_.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~SmallFiles() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }
    SmallFiles(const SmallFiles&) = delete;
    SmallFiles& operator=(const SmallFiles&) = delete;

private:
    void (*handler_)(int);
    rlimit before_{};
};

// Runs an operation again and again, failing its first call of that kind, then its second, and so
// on until it makes no more of them; `check(n)` follows each run in which the n-th call (from 0)
// failed. Returns how many runs that were.
template <typename Operation, typename Check>
std::uint32_t FailEachFileCall(zelkor::platform::FileCall call, std::uint32_t error,
                               Operation operation, Check check) {
    for (std::uint32_t n = 0; n < 100000; ++n) {
        zelkor::platform::FailFileCall(call, n, error);
        operation();
        if (zelkor::platform::ClearFileFaults(call) <= n) return n;
        check(n);
        if (testing::Test::HasFailure()) return n;
    }
    ADD_FAILURE() << "no end of calls";
    return 0;
}

}  // namespace test

#endif
