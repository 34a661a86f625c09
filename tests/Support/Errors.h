// Errors and memory in tests.
//
// Including this header also has every test of the program checked at its end: a test that leaves
// an error in its thread, or blocks of the memory manager allocated, fails.
#ifndef TESTS_SUPPORT_ERRORS_H
#define TESTS_SUPPORT_ERRORS_H

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string_view>

#include "Foundation/Core/Base/SmartHeap.h"
#include "Foundation/Platform/Memory.h"

namespace test {

// Whether the thread has exactly this error, which is cleared. The message, when given, is compared
// whole; so is the file of the innermost location ("File/WinFile.cpp").
testing::AssertionResult TakeError(unsigned int code,
                                   std::optional<std::u16string_view> message = {},
                                   std::optional<std::string_view> file = {});

// Whether the thread has no error. One that it has is shown, with its locations, and cleared.
testing::AssertionResult NoError();

// For a test that fills a cache which the library keeps: its blocks are not checked.
void KeepsMemory();

// Runs an operation again and again, failing its first allocation, then its second, and so on until
// none fails. Each failure must arrive as CT_SmartHeapException, and no run may keep blocks or
// leave an error. Returns how many allocations failed; an operation must not need over a million.
template <typename Operation>
std::uint64_t FailEachAllocation(Operation operation) {
    for (std::uint64_t n = 1; n <= 1000000; ++n) {
        const std::int64_t live = zelkor::platform::LiveBlocks();
        bool failed = false;
        zelkor::platform::FailAllocation(n);
        try {
            operation();
        } catch (const CT_SmartHeapException& exception) {
            failed = true;
            EXPECT_EQ(exception.n_GetCode(), zelkor::platform::kMemoryExhausted);
        }
        zelkor::platform::FailAllocation(0);
        EXPECT_EQ(zelkor::platform::LiveBlocks(), live) << "after failing allocation " << n;
        EXPECT_TRUE(NoError()) << "after failing allocation " << n;
        if (!failed || testing::Test::HasFailure()) return n - 1;
    }
    ADD_FAILURE() << "no end of allocations";
    return 0;
}

// Starts the checks at the end of each test; only once, however often it is called.
bool CheckEachTest();
inline const bool checks_each_test = CheckEachTest();

}  // namespace test

// Runs the expression and expects it to leave an error with that code, which is then cleared. The
// second form compares the whole message too.
#define EXPECT_CT_ERROR(code, ...)                                      \
    do {                                                                \
        EXPECT_TRUE(test::NoError()) << "before " #__VA_ARGS__;         \
        static_cast<void>(__VA_ARGS__);                                 \
        EXPECT_TRUE(test::TakeError(code)) << "after " << #__VA_ARGS__; \
    } while (false)
#define EXPECT_CT_MESSAGE(code, message, ...)                                    \
    do {                                                                         \
        EXPECT_TRUE(test::NoError()) << "before " #__VA_ARGS__;                  \
        static_cast<void>(__VA_ARGS__);                                          \
        EXPECT_TRUE(test::TakeError(code, message)) << "after " << #__VA_ARGS__; \
    } while (false)

#endif
