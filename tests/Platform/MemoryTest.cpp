// The memory manager: pools under many threads, the handler's retry loop, forced failures, counts.
#include "Foundation/Platform/Memory.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <thread>
#include <vector>

namespace platform = zelkor::platform;

namespace {

constinit _SHI_Pool small_pool(24, 16);
constinit _SHI_Pool shared_pool(40, 64);

int handler_calls = 0;
int handler_successes = 0;
bool CountingHandler(const platform::MemoryError* error) {
    EXPECT_EQ(error->code, platform::kMemoryExhausted);
    return ++handler_calls <= handler_successes;
}

// Puts the counting handler in place of the library's own.
class MemoryTest : public testing::Test {
protected:
    void SetUp() override {
        handler_calls = handler_successes = 0;
        before_ = platform::SetMemoryErrorHandler(CountingHandler);
    }
    void TearDown() override {
        platform::FailAllocation(0);
        platform::SetMemoryErrorHandler(before_);
    }

private:
    platform::MemoryErrorHandler before_ = nullptr;
};

TEST_F(MemoryTest, PoolBlocksAreDistinctAlignedAndReused) {
    std::set<void*> blocks;
    for (int i = 0; i < 500; ++i) {  // several slabs and hand-overs
        void* const block = platform::AllocateBlock(&small_pool);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 16, 0u);
        std::memset(block, 0xA5, 24);
        EXPECT_TRUE(blocks.insert(block).second);
    }
    for (void* block : blocks) platform::FreeBlock(&small_pool, block);
    platform::FreeBlock(&small_pool, nullptr);
#if !defined(__SANITIZE_ADDRESS__)
    std::vector<void*> again(blocks.size());
    const std::size_t total = small_pool.total_count;
    for (void*& block : again) block = platform::AllocateBlock(&small_pool);
    EXPECT_EQ(small_pool.total_count, total);
    for (void* block : again) platform::FreeBlock(&small_pool, block);
#endif
}

TEST_F(MemoryTest, ThreadsMayFreeEachOthersBlocksAndEndWithFullCaches) {
    constexpr int kThreads = 8;
    constexpr int kRounds = 400;
    const std::int64_t live = platform::LiveBlocks();
    std::vector<std::vector<unsigned char*>> handed(kThreads);
    const auto run = [&handed](int self) {
        for (int i = 0; i < kRounds; ++i) {
            auto* const block = static_cast<unsigned char*>(platform::AllocateBlock(&shared_pool));
            std::memset(block, self, 40);
            handed[static_cast<std::size_t>(self)].push_back(block);
        }
    };
    const auto take = [&handed](int self) {
        const int other = (self + 1) % kThreads;
        for (auto* const block : handed[static_cast<std::size_t>(other)]) {
            for (int i = 8; i < 40; ++i) ASSERT_EQ(block[i], other);
            platform::FreeBlock(&shared_pool, block);
        }
    };
    for (int phase = 0; phase < 2; ++phase) {
        std::vector<std::thread> threads;
        for (int i = 0; i < kThreads; ++i) {
            phase == 0 ? threads.emplace_back(run, i) : threads.emplace_back(take, i);
        }
        for (auto& thread : threads) thread.join();
        EXPECT_EQ(platform::LiveBlocks() - live, phase == 0 ? kThreads * kRounds : 0);
    }
#if !defined(__SANITIZE_ADDRESS__)
    // What the ended threads had cached is back in the pool: no block was lost on the way.
    EXPECT_EQ(shared_pool.free_count + shared_pool.fresh_count, shared_pool.total_count);
#endif
}

TEST_F(MemoryTest, TheHandlerIsAskedUntilItGivesUpOrTheRequestSucceeds) {
    using Request = void* (*)();
    const Request requests[] = {[] { return platform::Allocate(1); },
                                [] { return platform::AllocateZeroed(0); },
                                [] { return platform::Reallocate(nullptr, 5); }};
    for (const Request request : requests) {
        for (const int successes : {0, 3}) {
            handler_calls = 0;
            handler_successes = successes;
            platform::FailAllocation(1, true);  // every try fails
            EXPECT_EQ(request(), nullptr);
            EXPECT_EQ(handler_calls, successes + 1);
        }
        handler_calls = 0;
        handler_successes = 1;
        platform::FailAllocation(1);  // the second try succeeds
        void* const block = request();
        EXPECT_NE(block, nullptr);
        EXPECT_EQ(handler_calls, 1);
        platform::Free(block);
    }
    platform::FailAllocation(1);
    handler_calls = handler_successes = 0;
    EXPECT_EQ(platform::AllocateBlock(&small_pool), nullptr);
    EXPECT_EQ(platform::Allocate(static_cast<std::size_t>(-1)), nullptr);  // rounding cannot wrap
}

TEST_F(MemoryTest, FailedReallocationKeepsTheBlock) {
    const std::int64_t live = platform::LiveBlocks();
    auto* const block = static_cast<char*>(platform::Allocate(4));
    std::memcpy(block, "abc", 4);
    platform::FailAllocation(1);
    EXPECT_EQ(platform::Reallocate(block, 4000), nullptr);
    EXPECT_STREQ(block, "abc");
    auto* const larger = static_cast<char*>(platform::Reallocate(block, 4000));
    EXPECT_STREQ(larger, "abc");
    EXPECT_EQ(platform::LiveBlocks(), live + 1);
    platform::Free(larger);
    EXPECT_EQ(platform::LiveBlocks(), live);
}

}  // namespace
