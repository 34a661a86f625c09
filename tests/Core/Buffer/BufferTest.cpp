// CT_Buffer: life, sharing, sizing, and what happens when memory runs out.
#include <array>
#include <memory>
#include <thread>
#include <tuple>
#include <vector>

#include "Core/Buffer/BufferTexts.h"
#include "Support/Memory.h"

namespace {

using test::Content;
using test::kAll;
using test::Make;

TEST(BufferTest, CapacityFollowsTheInitialBlockAndTheGrowthPolicy) {
    struct Case {
        std::uint32_t size, growth, initial, grown;
    };
    static constexpr Case kCases[] = {
        {1, 32, 20, 20},        {20, 32, 20, 20},       {21, 32, 52, 52},
        {100, 32, 116, 116},    {100, 1, 100, 100},     {100, 1000, 988, 988},
        {1000, 32, 1012, 1012}, {1023, 32, 1044, 1044}, {1024, 32, 1044, 1268},
        {2047, 32, 2068, 2548}, {2048, 32, 2068, 2868}, {3000, 32, 3028, 4212},
        {4095, 32, 4116, 5748}, {4096, 32, 4116, 6132}, {10000, 32, 10004, 15028}};
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.size);
        const CT_Buffer initial(c.size, c.growth);
        EXPECT_EQ(initial.n_GetMaximumSize(), c.initial);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(initial.qcv_Get()) % 16, 0u);
        CT_Buffer grown(0u, c.growth);
        grown.v_SetSize(c.size, TRUE);
        EXPECT_EQ(grown.n_GetMaximumSize(), c.grown);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(grown.qcv_Get()) % 16, 0u);
        const auto* header = static_cast<const CT_Buffer::st_BufferData*>(grown.qcv_Get()) - 1;
        EXPECT_EQ(header->maximum_size, c.grown);
    }
}

TEST(BufferTest, SetSizeKeepsOrDropsTheContentAndAlsoShrinks) {
    const std::string text(100, 't');
    struct Case {
        std::uint32_t size;
        BOOL keep;
        bool shared;
        std::uint32_t used, capacity;
    };
    static constexpr Case kCases[] = {{100, TRUE, false, 100, 116}, {100, FALSE, false, 0, 116},
                                      {10, TRUE, false, 20, 20},    {10, TRUE, true, 20, 20},
                                      {200, TRUE, true, 100, 212},  {100, TRUE, true, 100, 116},
                                      {200, FALSE, true, 0, 212},   {0, TRUE, true, 0, 0}};
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.size);
        CT_Buffer buffer = Make(text);
        const CT_Buffer sharer = c.shared ? buffer : Make(text);
        buffer.v_SetSize(c.size, c.keep);
        EXPECT_EQ(buffer.n_GetUsedSize(), c.used);
        EXPECT_EQ(buffer.n_GetMaximumSize(), c.capacity);
        EXPECT_EQ(buffer.n_GetUseCount(), 1u);
        EXPECT_EQ(Content(buffer), text.substr(0, c.used));
        EXPECT_EQ(Content(sharer), text);
    }
    CT_Buffer buffer = Make(text);
    buffer.v_SetMinSize(50, FALSE);
    EXPECT_EQ(buffer.n_GetUsedSize(), 100u);
}

TEST(BufferTest, EverySharerKeepsItsContentWhenAnotherWrites) {
    CT_Buffer first = Make("abc", 40);
    CT_Buffer second;
    second.v_Set(&first);
    CT_Buffer third;
    third = second;
    EXPECT_EQ(third.n_GetUseCount(), 3u);
    EXPECT_EQ(third.n_GetGrowth(), 40u);
    EXPECT_EQ(first.qcv_Get(), third.qcv_Get());

    static_cast<char*>(second.qv_Get())[0] = 'X';
    EXPECT_EQ(Content(first), "abc");
    EXPECT_EQ(Content(second), "Xbc");
    EXPECT_EQ(second.n_GetUseCount(), 1u);
    EXPECT_EQ(second.n_GetMaximumSize(), first.n_GetMaximumSize());

    first.v_Remove(0, 1);
    EXPECT_EQ(first.n_GetUseCount(), 2u) << "removing nothing keeps the share";
    third.v_SetUsedSize(1);
    EXPECT_EQ(Content(first), "abc");
    EXPECT_EQ(Content(third), "a");
    third = *&third;
    third.v_Replace(&third);
    EXPECT_EQ(Content(third), "a");
}

TEST(BufferTest, SetForReuseKeepsAnUnsharedBlockThatIsLargeEnough) {
    CT_Buffer buffer = Make(std::string(100, 'x'));
    const void* const block = buffer.qcv_Get();
    buffer.v_Set(0, kAll, TRUE);
    EXPECT_EQ(buffer.qcv_Get(), block);
    EXPECT_EQ(buffer.n_GetUsedSize(), 0u);
    EXPECT_EQ(buffer.n_GetGrowth(), 32u);
    buffer.v_Set(116, 64, TRUE);
    EXPECT_EQ(buffer.qcv_Get(), block) << "64-byte steps need no more than the 128-byte block";
    EXPECT_EQ(buffer.n_GetGrowth(), 64u);
    buffer.v_SetGrowth(4096);
    buffer.v_Set(0, kAll, TRUE);
    EXPECT_EQ(buffer.qcv_Get(), block) << "emptying keeps the memory whatever the step";
    buffer.v_Set(117, 64, TRUE);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 180u);

    buffer.v_Append("abc", 3);
    const CT_Buffer sharer(&buffer);
    buffer.v_Set(10, kAll, TRUE);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 52u);
    EXPECT_EQ(Content(sharer), "abc");
    buffer.v_Set(200, 16, FALSE);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 212u);
    buffer.v_Set("hello", 5, kAll);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 20u);
    EXPECT_EQ(buffer.n_GetGrowth(), 16u);
}

TEST(BufferTest, SharersInManyThreadsLiveAndDieIndependently) {
    for (int round = 0; round < 20; ++round) {
        auto original = std::make_unique<CT_Buffer>(Make("shared content"));
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([mine = *original, t]() mutable {
                for (int i = 0; i < 200; ++i) {
                    CT_Buffer copy(&mine);
                    copy.v_Append('a' + t);
                    ASSERT_EQ(Content(copy).size(), 15u);
                    ASSERT_EQ(Content(mine), "shared content");
                }
                static_cast<char*>(mine.qv_Get())[0] = 'S';
            });
        }
        original.reset();
        for (std::thread& thread : threads) thread.join();
    }
}

TEST(BufferTest, ExhaustedMemoryLeavesEveryBufferAsItWas) {
    using Edit = void (*)(CT_Buffer&, CT_Buffer&);
    const Edit edits[] = {
        [](CT_Buffer& b, CT_Buffer&) { b.v_SetSize(5000, TRUE); },
        [](CT_Buffer& b, CT_Buffer&) { b.v_SetSize(5000, FALSE); },
        [](CT_Buffer& b, CT_Buffer&) { b.v_Set(300, 8, TRUE); },
        [](CT_Buffer& b, CT_Buffer&) { b.v_Set("fresh", 5, 8); },
        [](CT_Buffer& b, CT_Buffer&) { b.v_Insert('x', 200, 3); },
        [](CT_Buffer& b, CT_Buffer& o) { b.v_Insert(&o, 0, kAll, 2); },
        [](CT_Buffer& b, CT_Buffer&) { b.v_Replace('x', 200, 3); },
        [](CT_Buffer& b, CT_Buffer&) { b.v_AtInsertCopy(0, 20, 10); },
        [](CT_Buffer& b, CT_Buffer&) { b.v_AtInsertMove(0, 20, 25); },
        [](CT_Buffer& b, CT_Buffer& o) { b.v_AtInsertMove(&o, 0, 20, 3); },
        [](CT_Buffer& b, CT_Buffer&) { b.v_Remove(2, 1); },
        [](CT_Buffer& b, CT_Buffer&) { b.v_Append('x'); },
        [](CT_Buffer& b, CT_Buffer&) { (void)b.qv_Get(); },
    };
    const std::string text = "abcdefghijklmnopqrstuvwxyz 0123456789 full block....";
    const auto read = [](const auto& buffers) {
        return std::tuple(Content(buffers[0]), Content(buffers[1]), buffers[0].n_GetGrowth(),
                          buffers[0].n_GetUseCount());
    };
    for (const bool shared : {false, true}) {
        for (const Edit& edit : edits) {
            SCOPED_TRACE(&edit - edits);
            const auto make = [&] {  // two buffers and a sharer of each
                std::array<CT_Buffer, 4> buffers{Make(text), Make(text), CT_Buffer(), CT_Buffer()};
                for (const std::size_t i : {0u, 1u}) {
                    if (shared) buffers[i + 2] = buffers[i];
                }
                return buffers;
            };
            const auto change = [&](auto& buffers) { edit(buffers[0], buffers[1]); };
            test::ExpectUnchangedWithoutMemory(make, change, read);
        }
    }
}

TEST(BufferTest, FourGigabytesAreRefusedNotWrappedAround) {
    CT_Buffer buffer = Make("abc");
    EXPECT_THROW(buffer.v_SetSize(0xFFFFFFF8, TRUE), CT_SmartHeapException);
    EXPECT_THROW(CT_Buffer(0xFFFFFFFE, 4096), CT_SmartHeapException);
    EXPECT_THROW(buffer.v_Insert('x', 0xFFFFFFFE, 3), CT_SmartHeapException);
    EXPECT_THROW(buffer.v_Replace('x', 0xFFFFFFFE, 3), CT_SmartHeapException);
    EXPECT_EQ(Content(buffer), "abc");
}

}  // namespace
