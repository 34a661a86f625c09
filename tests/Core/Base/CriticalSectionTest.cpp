// CT_CriticalSection between threads, and entered again by its holder.
#include "Foundation/Core/Base/CriticalSection.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

constinit CT_CriticalSection section;  // needs no start-up work

TEST(CriticalSectionTest, OneThreadAtATime) {
    int guarded = 0;
    const auto count = [&guarded] {
        for (int i = 0; i < 2000; ++i) {
            const CT_CriticalSectionMarker outer(section);
            const CT_CriticalSectionMarker inner(section);
            ++guarded;
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) threads.emplace_back(count);
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(guarded, 8000);
}

TEST(CriticalSectionTest, FreeOnlyAfterAsManyLeaves) {
    std::atomic<bool> entered{false};
    section.v_Enter();
    section.v_Enter();
    std::thread other([&entered] {
        const CT_CriticalSectionMarker marker(section);
        entered = true;
    });
    section.v_Leave();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(entered);
    section.v_Leave();
    other.join();
    EXPECT_TRUE(entered);
}

}  // namespace
