// Processes that are killed while they write: what was stored before is there.
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <map>
#include <random>

#include "RecordFiles.h"

namespace {

using namespace test;

constexpr unsigned int kHeader = 16;
constexpr unsigned int kRecords = 64;
constexpr unsigned int kResources = 900;  // their directory takes two pages

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr unsigned int kRounds = 60;  // forking takes long there
#else
constexpr unsigned int kRounds = 1000;
#endif

// What the writer tells through shared memory. A slot that is not touched is as it was stored.
struct Slot {
    std::atomic<unsigned int> touched, seed, length;
    std::atomic<unsigned int> there;  // a record's reference; of a resource 1; 0: none
};
struct Board {
    std::atomic<unsigned int> steps;
    Slot slots[kRecords + kResources];
};

unsigned int KeyOf(unsigned int slot) {
    return slot * 2654435761u;
}

void Step(Manager& manager, Board& board, unsigned int number, std::mt19937& random) {
    Slot& slot = board.slots[number];
    slot.touched = 1;
    const auto seed = static_cast<unsigned int>(random());
    const auto length = static_cast<unsigned int>(random() % 400);
    const bool resource = number >= kRecords;
    const CT_Buffer data = Data(Bytes(seed, length));
    if (slot.there == 0) {
        if (resource) manager.v_AddResource(KeyOf(number), &data);
        slot.there = resource ? 1 : manager.n_AddRecord(&data);
    } else if (random() % 3 == 0) {
        resource ? manager.v_DeleteResource(KeyOf(number)) : manager.v_DeleteRecord(slot.there);
        slot.there = 0;
    } else if (resource) {
        manager.v_UpdateResource(KeyOf(number), &data);
    } else {
        manager.v_UpdateRecord(slot.there, &data);
    }
    slot.seed = seed;
    slot.length = length;
    ++board.steps;
}

// Every slot that is not touched is as the board says.
void Verify(const Board& board, const CT_WinFile& file, unsigned int slots) {
    Manager manager(&file);
    manager.v_Open(Manager::kModeRead, Manager::kMapAlways);
    ASSERT_TRUE(NoError());
    for (unsigned int i = 2; i <= manager.n_GetResourceCount(); ++i) {
        ASSERT_LT(manager.n_GetResourceKeyAt(i - 1), manager.n_GetResourceKeyAt(i));
    }
    CT_Buffer out;
    for (unsigned int i = 0; i < slots; ++i) {
        const Slot& slot = board.slots[i];
        if (slot.touched != 0) continue;
        const std::string bytes = slot.there != 0 ? Bytes(slot.seed, slot.length) : "";
        if (i >= kRecords) {
            ASSERT_EQ(manager.b_ResourceExists(KeyOf(i)) != 0, slot.there != 0) << i;
            if (slot.there != 0) manager.v_GetResource(KeyOf(i), &out);
            ASSERT_TRUE(slot.there == 0 || Text(out) == bytes) << i;
        } else if (slot.there != 0) {
            ASSERT_TRUE(ReadsAs(Get(manager, slot.there), bytes, kHeader)) << i;
        }
    }
    ASSERT_TRUE(NoError());
    manager.v_Close(TRUE);
}

struct Setting {
    Manager::et_MappingMode mapping;
    unsigned int slots;  // so many of the board are used
};

struct RecordKillTest : testing::TestWithParam<Setting> {
    TempFolder folder{QuickFolder()};
    Named name{folder, u"killed.rec"};
    Named target{folder, u"repaired.rec"};
    void* shared =
        mmap(nullptr, sizeof(Board), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    Board& board = *static_cast<Board*>(shared);
    unsigned int slots = GetParam().slots;

    ~RecordKillTest() override { munmap(shared, sizeof(Board)); }

    // A file in which two slots of three are filled.
    void Prepare(std::mt19937& random) {
        new (shared) Board{};
        Manager manager(&name.file);
        manager.v_Create(kHeader, 64, slots > kRecords ? slots - kRecords : 0);
        for (unsigned int i = 0; i < slots; ++i) {
            if (i % 3 != 0) Step(manager, board, i, random);
        }
        manager.v_Close(TRUE);
        for (Slot& slot : board.slots) slot.touched = 0;
    }

    // Works on the file until it is killed.
    [[noreturn]] void Work(unsigned int seed) {
        std::mt19937 random(seed);
        Manager manager(&name.file);
        manager.v_Open(Manager::kModeReadWrite, GetParam().mapping);
        for (;;) {
            Step(manager, board, static_cast<unsigned int>(random() % slots), random);
            if (random() % 8 == 0) {
                if (random() % 2 == 0) {
                    manager.v_Flush();
                } else {
                    manager.v_Close(random() % 2 == 0 ? TRUE : FALSE);
                    manager.v_Open(Manager::kModeReadWrite, GetParam().mapping);
                }
                for (unsigned int i = 0; i < slots; ++i) board.slots[i].touched = 0;
            }
            if (!NoError()) _exit(1);
        }
    }

    // Until so many steps were taken, or for ten seconds: slow machines need a while to fork.
    void AwaitSteps(unsigned int count) const {
        for (int i = 0; i < 200'000 && board.steps < count; ++i) usleep(50);
    }

    // What was not stored may be anything: the next writer starts without it, in the repaired file.
    void VerifyAndRepair() {
        Verify(board, name.file, slots);
        CT_RecordRepair repair(&name.file);
        repair.b_Repair(&target.file);
        for (unsigned int i = 1; i <= repair.n_GetLostCount(); ++i) {
            const auto lost = repair.so_GetLostAt(i);
            for (unsigned int k = 0; lost.copied == 0 && k < slots; ++k) {
                const Slot& slot = board.slots[k];
                const bool it = k < kRecords ? slot.there != 0 && slot.there == lost.reference
                                             : lost.reference == 0 && KeyOf(k) == lost.key;
                EXPECT_FALSE(it && slot.touched == 0) << "told as lost: " << k;
            }
        }
        std::map<unsigned int, unsigned int> moved;
        for (unsigned int i = 1; i <= repair.n_GetMovedCount(); ++i) {
            moved[repair.so_GetMovedAt(i).old_reference] = repair.so_GetMovedAt(i).new_reference;
        }
        for (unsigned int i = 0; i < kRecords; ++i) {
            const unsigned int there =
                board.slots[i].touched == 0 ? board.slots[i].there.load() : 0;
            board.slots[i].there = there != 0 ? moved.at(there) : 0;
        }
        Verify(board, target.file, slots);
        EXPECT_EQ(Findings(target.file), "");
        Manager repaired(&target.file);
        repaired.v_Open(Manager::kModeReadWrite, Manager::kMapNever);
        for (unsigned int i = kRecords; i < slots; ++i) {
            if (board.slots[i].touched == 0) continue;
            board.slots[i].there = 0;
            if (repaired.b_ResourceExists(KeyOf(i)) != 0) repaired.v_DeleteResource(KeyOf(i));
        }
        repaired.v_Close(TRUE);
        EXPECT_TRUE(NoError());
        std::filesystem::rename(folder.Native(u"repaired.rec"), folder.Native(u"killed.rec"));
    }
};

TEST_P(RecordKillTest, AKilledProcessLosesNothingThatWasStored) {
    std::mt19937 random(slots);
    unsigned int steps = 0;
    const unsigned int rounds = slots > kRecords ? kRounds / 2 : kRounds;  // these take longer
    for (unsigned int round = 0; round < rounds && !HasFailure(); ++round) {
        SCOPED_TRACE(round);
        if (round % 50 == 0) Prepare(random);  // in between the repaired file goes on
        const unsigned int before = board.steps;
        const pid_t child = fork();
        if (child == 0) Work(round);
        if (round % 4 != 0) AwaitSteps(before + 3);  // else it may still be opening the file
        usleep(static_cast<useconds_t>(random() % 800));
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the child met an error";
        steps += board.steps - before;
        VerifyAndRepair();
    }
    EXPECT_GT(steps, 2 * rounds);
}

// The same at every single write of storing, by a disk that takes no more. (In a mapping there are
// no writes.)
struct RecordStoreTest : RecordKillTest {};

TEST_P(RecordStoreTest, EveryWriteMayBeTheLast) {
    unsigned int writes = 0;
    for (unsigned int seed = 0; seed < 25; ++seed) {
        bool stored = false;
        for (unsigned int after = 0; !stored && !HasFailure(); ++after, ++writes) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " after " << after);
            std::mt19937 random(seed);
            Prepare(random);
            {
                Manager manager(&name.file);
                manager.v_Open(Manager::kModeReadWrite, Manager::kMapNever);
                for (unsigned int i = 0; i <= seed * 4; ++i) {
                    Step(manager, board, static_cast<unsigned int>(random() % slots), random);
                }
                ASSERT_TRUE(NoError());
                const FullDisk full(after);
                manager.v_Flush();
                stored = NoError();
                ClearError();
            }
            VerifyAndRepair();
        }
    }
    EXPECT_GT(writes, slots > kRecords ? 150u : 49u);
}

INSTANTIATE_TEST_SUITE_P(Settings, RecordStoreTest,
                         testing::Values(Setting{Manager::kMapNever, kRecords},
                                         Setting{Manager::kMapNever, kRecords + kResources}));
INSTANTIATE_TEST_SUITE_P(Settings, RecordKillTest,
                         testing::Values(Setting{Manager::kMapNever, kRecords},
                                         Setting{Manager::kMapAlways, kRecords},
                                         Setting{Manager::kMapNever, kRecords + kResources},
                                         Setting{Manager::kMapAlways, kRecords + kResources}));

}  // namespace
