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
    std::atomic<unsigned int> touched;
    std::atomic<unsigned int> there;  // a record's reference; of a resource 1; 0: none
    std::atomic<unsigned int> seed;
    std::atomic<unsigned int> length;
};
struct Board {
    std::atomic<unsigned int> steps;
    Slot slots[kRecords + kResources];
};

unsigned int KeyOf(unsigned int slot) {
    return slot * 2654435761u;
}

void ChangeResource(Manager& manager, unsigned int key, unsigned int now, unsigned int then,
                    const std::string& bytes) {
    const CT_Buffer data = Data(bytes);
    if (now == 0) {
        manager.v_AddResource(key, &data);
    } else if (then == 0) {
        manager.v_DeleteResource(key);
    } else {
        manager.v_UpdateResource(key, &data);
    }
}

void Step(Manager& manager, Board& board, unsigned int number, std::mt19937& random) {
    Slot& slot = board.slots[number];
    slot.touched = 1;
    const auto seed = static_cast<unsigned int>(random());
    const auto length = static_cast<unsigned int>(random() % 400);
    const unsigned int then = slot.there != 0 && random() % 3 == 0 ? 0 : 1;
    if (number >= kRecords) {
        ChangeResource(manager, KeyOf(number), slot.there, then, Bytes(seed, length));
        slot.there = then;
    } else if (slot.there == 0) {
        slot.there = Add(manager, Bytes(seed, length));
    } else if (then == 0) {
        manager.v_DeleteRecord(slot.there);
        slot.there = 0;
    } else {
        Update(manager, slot.there, Bytes(seed, length));
    }
    slot.seed = seed;
    slot.length = length;
    ++board.steps;
}

// Every slot that is not touched is as the board says; `repair` knows where its records went.
void Verify(const Board& board, const CT_WinFile& file, const CT_RecordRepair* repair,
            unsigned int slots) {
    Manager manager(&file);
    manager.v_Open(Manager::kModeRead, Manager::kMapAlways);
    ASSERT_TRUE(NoError());
    for (unsigned int i = 2; i <= manager.n_GetResourceCount(); ++i) {
        ASSERT_LT(manager.n_GetResourceKeyAt(i - 1), manager.n_GetResourceKeyAt(i));
    }
    std::map<unsigned int, unsigned int> moved;
    for (unsigned int i = 1; repair != nullptr && i <= repair->n_GetMovedCount(); ++i) {
        moved[repair->so_GetMovedAt(i).old_reference] = repair->so_GetMovedAt(i).new_reference;
    }
    for (unsigned int i = 0; i < slots; ++i) {
        const Slot& slot = board.slots[i];
        if (slot.touched != 0) continue;
        SCOPED_TRACE(i);
        const std::string bytes = Bytes(slot.seed, slot.length);
        if (i >= kRecords) {
            EXPECT_EQ(manager.b_ResourceExists(KeyOf(i)) != 0, slot.there != 0);
            CT_Buffer out;
            if (slot.there != 0) manager.v_GetResource(KeyOf(i), &out);
            EXPECT_TRUE(slot.there == 0 || Text(out) == bytes);
        } else if (slot.there != 0) {
            const unsigned int reference =
                repair != nullptr ? moved[slot.there] : slot.there.load();
            EXPECT_TRUE(ReadsAs(Get(manager, reference), bytes, kHeader)) << slot.there;
        }
        ASSERT_TRUE(NoError());
    }
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

    void VerifyAndRepair() {
        Verify(board, name.file, nullptr, slots);
        CT_RecordRepair repair(&name.file);
        repair.b_Repair(&target.file);
        Verify(board, target.file, &repair, slots);
        EXPECT_EQ(Findings(target.file), "");
        for (unsigned int i = 1; i <= repair.n_GetLostCount(); ++i) {
            const auto lost = repair.so_GetLostAt(i);
            for (unsigned int k = 0; lost.copied == 0 && k < slots; ++k) {
                const Slot& slot = board.slots[k];
                const bool it = k < kRecords ? slot.there != 0 && slot.there == lost.reference
                                             : lost.reference == 0 && KeyOf(k) == lost.key;
                EXPECT_FALSE(it && slot.touched == 0) << "told as lost: " << k;
            }
        }
        // what was not stored may be anything now: the next writer starts without it
        std::map<unsigned int, unsigned int> moved;
        for (unsigned int i = 1; i <= repair.n_GetMovedCount(); ++i) {
            moved[repair.so_GetMovedAt(i).old_reference] = repair.so_GetMovedAt(i).new_reference;
        }
        Manager repaired(&target.file);
        repaired.v_Open(Manager::kModeReadWrite, Manager::kMapNever);
        for (unsigned int i = 0; i < slots; ++i) {
            Slot& slot = board.slots[i];
            if (slot.touched == 0) {
                if (i < kRecords) slot.there = moved[slot.there];
                continue;
            }
            slot.there = 0;
            if (i >= kRecords && repaired.b_ResourceExists(KeyOf(i)) != 0) {
                repaired.v_DeleteResource(KeyOf(i));
            }
        }
        repaired.v_Close(TRUE);
        EXPECT_TRUE(NoError());
        std::filesystem::rename(folder.Native(u"repaired.rec"), folder.Native(u"killed.rec"));
    }
};

TEST_P(RecordKillTest, AKilledProcessLosesNothingThatWasStored) {
    std::mt19937 random(slots);
    unsigned int steps = 0;
    for (unsigned int round = 0; round < kRounds && !HasFailure(); ++round) {
        SCOPED_TRACE(round);
        if (round % 50 == 0) Prepare(random);  // in between the repaired file goes on
        const unsigned int before = board.steps;
        const pid_t child = fork();
        if (child == 0) Work(round);
        usleep(static_cast<useconds_t>(200 + random() % 800));
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the child met an error";
        steps += board.steps - before;
        VerifyAndRepair();
    }
    EXPECT_GT(steps, 2 * kRounds);
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
