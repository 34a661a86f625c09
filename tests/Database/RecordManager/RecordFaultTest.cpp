// Failing calls, full disks and exhausted memory.
#include <array>
#include <iterator>
#include <map>
#include <sstream>
#include <tuple>

#include "RecordFiles.h"

namespace platform = zelkor::platform;

namespace {

using namespace test;

constexpr unsigned int kHeader = 16;

struct RecordFaultTest : testing::Test {
    TempFolder folder;
    Named name{folder, u"fault.rec"};
    std::map<unsigned int, std::string> flushed;
    CT_Buffer resource = Data("a resource");

    // A closed file with records that no scenario touches, and free blocks.
    void Prepare() {
        flushed.clear();
        Manager manager(&name.file);
        manager.v_Create(kHeader, 64, 4);
        for (unsigned int i = 0; i < 20; ++i) {
            const unsigned int reference = Add(manager, Bytes(i, i * 13));
            if (i % 3 == 0) {
                manager.v_DeleteRecord(reference);
            } else {
                flushed[reference] = Bytes(i, i * 13);
            }
        }
        manager.v_AddResource(1, &resource);
        manager.v_Close(TRUE);
    }

    void Scenario(Manager::et_MappingMode mapping) {
        Manager manager(&name.file);
        manager.v_Open(Manager::kModeReadWrite, mapping);
        const unsigned int one = Add(manager, Bytes(50, 5));
        const unsigned int two = Add(manager, Bytes(51, 500));
        Update(manager, two, Bytes(52, 700));
        manager.v_AddResource(2, &resource);
        manager.v_UpdateResource(2, &resource);
        manager.v_Flush();
        Update(manager, two, Bytes(53, 300));
        manager.v_DeleteRecord(one);
        CT_Buffer out;
        manager.n_GetNextRecord(0, &out);
        manager.v_DeleteResource(2);
        manager.v_Close(TRUE);
    }

    void VerifyFlushed(Manager& manager) {
        for (const auto& [reference, bytes] : flushed) {
            EXPECT_TRUE(ReadsAs(Get(manager, reference), bytes, kHeader)) << reference;
        }
        CT_Buffer out;
        manager.v_GetResource(1, &out);
        EXPECT_EQ(Text(out), Text(resource));
        EXPECT_TRUE(NoError());
    }

    // The file after a failure: opens, holds what it held, and takes more without harm to it.
    void VerifyFile() {
        ClearError();
        Manager manager(&name.file);
        manager.v_Open(Manager::kModeReadWrite, Manager::kMapNever);
        ASSERT_TRUE(NoError());
        VerifyFlushed(manager);
        for (unsigned int i = 0; i < 20; ++i) EXPECT_NE(Add(manager, Bytes(i, i * 31)), 0u);
        VerifyFlushed(manager);
        manager.v_Close(TRUE);
        EXPECT_TRUE(NoError());
    }
};

TEST_F(RecordFaultTest, EveryFailingCallLeavesWhatWasStored) {
    using platform::FileCall;
    for (const auto mapping : {Manager::kMapNever, Manager::kMapAlways}) {
        std::uint32_t failed = 0;
        for (const FileCall call :
             {FileCall::kOpen, FileCall::kRead, FileCall::kWrite, FileCall::kSeek,
              FileCall::kSetEnd, FileCall::kFlush, FileCall::kCreateMapping, FileCall::kMapView,
              FileCall::kClose}) {
            SCOPED_TRACE(static_cast<int>(call));
            Prepare();
            failed += FailEachFileCall(
                call, 31, [&] { Scenario(mapping); },
                [&](std::uint32_t n) {
                    SCOPED_TRACE(n);
                    EXPECT_FALSE(NoError()) << "the failure was not told";
                    VerifyFile();
                    Prepare();
                });
            ClearError();
        }
        EXPECT_GT(failed, mapping == Manager::kMapNever ? 60u : 6u);
    }
}

TEST_F(RecordFaultTest, AFullDiskLosesNothingThatWasStored) {
    for (std::uint32_t after = 0; after < 20; ++after) {
        for (const std::uint32_t limit : {0u, 5u, 70u}) {
            SCOPED_TRACE(testing::Message() << after << " " << limit);
            Prepare();
            {
                const FullDisk full(after, limit);
                Scenario(Manager::kMapNever);
            }
            VerifyFile();
        }
    }
}

// What a torn write left is undone or marked, and if that fails too, before the next change:
// nothing is lost with it or hidden behind it.
TEST_F(RecordFaultTest, ATornWriteHarmsNothing) {
    unsigned int told = 0;
    for (int action = 0; action < 6; ++action) {
        for (std::uint32_t n = 0; n < 4 * 3; ++n) {
            SCOPED_TRACE(testing::Message() << action << " " << n);
            Prepare();
            Manager manager(&name.file);
            manager.v_Open(Manager::kModeReadWrite, Manager::kMapNever);
            const unsigned int count = manager.n_GetRecordCount();
            const auto victim = std::prev(flushed.end());
            const CT_Buffer same = Data(Bytes(9, victim->second.size()));
            const CT_Buffer other = Data("another..!");
            {
                const FullDisk full(n / 3, std::array{1u, 5u, 30u}[n % 3]);
                if (action == 0) Add(manager, Bytes(3, 30));
                if (action == 1) manager.v_UpdateRecord(victim->first, &same);
                if (action == 2) manager.v_UpdateRecordHeader(victim->first, &same);
                if (action == 3) manager.v_DeleteRecord(victim->first);
                if (action == 4) manager.v_UpdateResource(1, &other);
                if (action == 5) manager.v_DeleteResource(1);
            }
            if (NoErrorIsSet()) continue;
            ++told;
            ClearError();
            if (manager.n_GetRecordCount() < count) flushed.erase(victim);  // but not its body
            for (const bool flush : {false, true}) {
                if (flush) manager.v_Flush();
                VerifyFlushed(manager);
                EXPECT_EQ(References(manager).size(), flushed.size());
                EXPECT_FALSE(manager.b_IsCorrupt());
            }
            manager.v_Close(TRUE);
            VerifyFile();
        }
    }
    EXPECT_GT(told, 20u);
}

TEST_F(RecordFaultTest, AMappingThatCannotGrowFailsTheAdditionAlone) {
    for (const bool full : {false, true}) {
        SCOPED_TRACE(full);
        Prepare();
        Manager manager(&name.file);
        manager.v_Open(Manager::kModeReadWrite, Manager::kMapAlways);
        platform::FailFileCall(platform::FileCall::kGrowView, 0, 8);  // then it is made anew
        if (full) platform::FailFileCall(platform::FileCall::kCreateMapping, 0, 112);
        const unsigned int large = Add(manager, Bytes(1, 3000000));
        platform::ClearFileFaults();
        EXPECT_TRUE(full ? TakeError(112) : NoError());
        EXPECT_EQ(large == 0, full);
        EXPECT_EQ(manager.b_GetMapping() == 0, full);
        VerifyFlushed(manager);
        EXPECT_NE(Add(manager, "another"), 0u);
        if (!full) {
            EXPECT_EQ(Get(manager, large), Bytes(1, 3000000));
        }
        manager.v_Close(TRUE);
        VerifyFile();
    }
}

// It was dropped without a word.
TEST_F(RecordFaultTest, AFailedFlushOfTheMappingIsTold) {
    Prepare();
    Manager manager(&name.file);
    manager.v_Open(Manager::kModeReadWrite, Manager::kMapAlways);
    platform::FailFileCall(platform::FileCall::kFlushView, 0, 1117);
    manager.v_Flush();
    EXPECT_TRUE(TakeError(1117));
    manager.v_Flush();
    manager.v_Close(TRUE);
    EXPECT_TRUE(NoError());
}

TEST_F(RecordFaultTest, AFailedAdditionIsNoRecordAndAllocationsMayFail) {
    Prepare();
    {
        Manager manager(&name.file);
        manager.v_Open(Manager::kModeReadWrite, Manager::kMapNever);
        const unsigned int count = manager.n_GetRecordCount();
        {
            const FileFault fault(platform::FileCall::kWrite, 0, 31);
            EXPECT_EQ(Add(manager, Bytes(1, 100000)), 0u);
        }
        ClearError();
        EXPECT_EQ(manager.n_GetRecordCount(), count);
        EXPECT_FALSE(manager.b_IsCorrupt());
        manager.v_Close(TRUE);
    }
    CT_RecordCheck check(&name.file);
    EXPECT_FALSE(check.b_Check());
    EXPECT_NE(Findings(name.file).find("never finished"), std::string::npos);
    Prepare();
    const std::string image = folder.Read(u"fault.rec");
    EXPECT_GT(FailEachAllocation([&] {
                  folder.Write(u"fault.rec", image);
                  Scenario(Manager::kMapNever);
              }),
              10u);
    const Named target(folder, u"repaired.rec");
    // a mapping that cannot be had for want of memory is an error, here made the exception again
    EXPECT_GT(FailEachAllocation([&] {
                  CT_RecordRepair repair(&name.file);
                  repair.b_Repair(&target.file);
                  if (NoErrorIsSet()) return;
                  ClearError();
                  throw CT_SmartHeapException("", platform::kMemoryExhausted);
              }),
              20u);
}

// A record or resource replaced by another length, in files with and without room: in place, short
// and long; into its own blocks; larger; a body lost or got.
struct Replacement {
    unsigned int from, to;
    bool resource;
};
constexpr Replacement kReplacements[] = {
    {100, 110, false}, {100000, 100010, false}, {1000, 300, false}, {100, 1000, false},
    {100, 110, true},  {100000, 100010, true},  {1000, 300, true},  {100, 1000, true},
    {100, 5, false},   {5, 100, false}};

struct RecordReplaceTest : testing::TestWithParam<std::tuple<Manager::et_MappingMode, bool>> {
    TempFolder folder{QuickFolder()};
    Named name{folder, u"replace.rec"};
    Manager manager{&name.file};
    unsigned int victim = 0;

    // What is to be replaced lies last in the file, or before another record. A crowded file has a
    // full table of single blocks, and behind it a chain with larger ones.
    void Prepare(const Replacement& one, bool last) {
        manager.v_Create(kHeader, 64, 4);
        std::vector<unsigned int> freed;
        if (std::get<1>(GetParam())) {
            for (unsigned int i = 0; i < 130; ++i) freed.push_back(Add(manager, "x"));
            freed.push_back(Add(manager, Bytes(1, 16 + 1200)));
            freed.push_back(Add(manager, "x"));
        }
        const CT_Buffer data = Data(Bytes(7, one.from));
        victim = manager.n_AddRecord(&data);
        manager.v_AddResource(9, &data);
        if (!last) Add(manager, Bytes(8, 100));
        for (const unsigned int reference : freed) manager.v_DeleteRecord(reference);
        manager.v_Close(TRUE);
        ASSERT_TRUE(NoError());
    }
    std::string Read(bool is_resource) {
        CT_Buffer out;
        is_resource ? manager.v_GetResource(9, &out) : manager.v_GetRecord(victim, &out, 0);
        EXPECT_TRUE(NoError());
        return Text(out);
    }
    void Replace(const Replacement& one) {
        const CT_Buffer data = Data(Bytes(6, one.to));
        one.resource ? manager.v_UpdateResource(9, &data) : manager.v_UpdateRecord(victim, &data);
    }
    // The old data or the new; the new when nothing was told. True: the new.
    bool Verify(const Replacement& one, bool told) {
        const std::string now = Read(one.resource);
        const unsigned int header = one.resource ? 0 : kHeader;
        const bool is_new = ReadsAs(now, Bytes(6, one.to), header);
        EXPECT_TRUE(is_new || (told && ReadsAs(now, Bytes(7, one.from), header)));
        return is_new;
    }
    void VerifyClosed(const Replacement& one, bool told) {
        const bool is_new = Verify(one, told);
        manager.v_Close(TRUE);
        EXPECT_TRUE(NoError());
        std::istringstream findings(Findings(name.file));
        for (std::string line; std::getline(findings, line);) {
            EXPECT_TRUE(told && line.ends_with("nothing owns")) << line;
        }
        manager.v_Open(Manager::kModeReadWrite, Manager::kMapNever);
        EXPECT_EQ(Verify(one, told), is_new);
        EXPECT_EQ(manager.n_GetRecordCount(), References(manager).size());
        manager.v_Close(TRUE);
    }
};

TEST_P(RecordReplaceTest, WhatFailsLeavesTheOldOrTheNew) {
    const auto [mapping, crowded] = GetParam();
    enum { kOnce, kFromThen, kShort };
    unsigned int failures = 0;
    for (const Replacement& one : kReplacements) {
        for (const int variant : {kOnce, kFromThen, kShort}) {
            for (std::uint32_t n = 0; !HasFailure(); ++n) {
                SCOPED_TRACE(testing::Message()
                             << one.from << " to " << one.to << ' ' << one.resource << ' '
                             << variant << " write " << n);
                Prepare(one, n % 2 == 0);
                manager.v_Open(Manager::kModeReadWrite, mapping);
                const auto call = platform::FileCall::kWrite;
                if (variant == kShort) {
                    platform::ShortenFileCall(call, n / 2, 5);
                } else {
                    platform::FailFileCall(call, n / 2, 112, variant == kFromThen);
                }
                Replace(one);
                const bool struck = platform::ClearFileFaults(call) > n / 2;
                const bool told = !NoErrorIsSet();
                ClearError();
                VerifyClosed(one, told);
                failures += told ? 1 : 0;
                if (!struck) break;
            }
        }
    }
    EXPECT_TRUE(failures > 60 || mapping != Manager::kMapNever) << failures;
}

// A data end close to 4 GiB: there is room only in what is free.
TEST_P(RecordReplaceTest, AFullFileKeepsWhatItHas) {
    const auto [mapping, crowded] = GetParam();
    if (mapping != Manager::kMapNever) return;  // it would take 4 GiB of memory
    for (const Replacement& one : kReplacements) {
        SCOPED_TRACE(testing::Message() << one.from << ' ' << one.to << one.resource);
        Prepare(one, false);
        std::string bytes = folder.Read(u"replace.rec");
        PutWord(bytes, 80, 0xFFFFFFC0);
        folder.Write(u"replace.rec", bytes);
        manager.v_Open(Manager::kModeReadWrite, mapping);
        Replace(one);
        const bool told = !NoErrorIsSet();
        // larger data fits into the chain; what becomes smaller fits into its own blocks, but not
        // where the full table makes those unreachable
        const bool fits = one.from / 100 == one.to / 100 || one.to < one.from || crowded;
        EXPECT_EQ(told, !fits) << CT_ErrorManager::spco_Get()->n_GetErrorCode();
        if (told) {
            EXPECT_TRUE(TakeError(223));
        }
        VerifyClosed(one, true);
    }
}

INSTANTIATE_TEST_SUITE_P(Files, RecordReplaceTest,
                         testing::Combine(testing::Values(Manager::kMapNever, Manager::kMapAlways),
                                          testing::Bool()));

// A read that fails is told, gives nothing and changes nothing.
TEST_F(RecordFaultTest, AFailedReadIsNoAnswer) {
    Prepare();
    const std::string before = folder.Read(u"fault.rec");
    const CT_Buffer data = Data(Bytes(1, 700));
    CT_Buffer out;
    for (const auto& [reference, bytes] : flushed) {
        for (int action = 0; action < 7; ++action) {
            for (std::uint32_t n = 0;; ++n) {
                SCOPED_TRACE(testing::Message() << reference << " " << action << " read " << n);
                Manager manager(&name.file);
                manager.v_Open(Manager::kModeReadWrite, Manager::kMapNever);
                out = data;
                unsigned int answer = 0;
                platform::FailFileCall(platform::FileCall::kRead, n, 31);
                if (action == 0) manager.v_GetRecord(reference, &out, 0);
                if (action == 1) manager.v_GetResource(1, &out);
                if (action == 2) manager.v_UpdateRecord(reference, &data);
                if (action == 3) manager.v_UpdateRecordHeader(reference, &data);
                if (action == 4) manager.v_DeleteRecord(reference);
                if (action == 5) manager.v_UpdateResource(1, &data);
                if (action == 6) answer = manager.n_GetNextRecord(0, nullptr);
                if (platform::ClearFileFaults(platform::FileCall::kRead) <= n) {
                    folder.Write(u"fault.rec", before);
                    break;
                }
                EXPECT_TRUE(TakeError(31));
                EXPECT_EQ(answer, 0u);
                EXPECT_EQ(out.n_GetUsedSize(), action < 2 ? 0u : 700u);
                EXPECT_TRUE(folder.Read(u"fault.rec") == before);
            }
        }
    }
}

// Whatever write of storing is the last one, the file's own free table is the old one, the new one
// or counted as empty.
TEST_F(RecordFaultTest, AStoredFreeTableIsWhole) {
    std::vector<unsigned int> references;
    {
        Manager manager(&name.file);
        manager.v_Create(kHeader, 64, 600);  // header and tables fill more than a page
        for (unsigned int i = 0; i < 100; ++i) references.push_back(Add(manager, "x"));
        for (unsigned int i = 0; i < 60; ++i) manager.v_DeleteRecord(references[i]);
        manager.v_AddResource(1, &resource);
        manager.v_Close(TRUE);
    }
    const std::string before = folder.Read(u"fault.rec");
    const auto table = [](const std::string& bytes) {
        return bytes.substr(256, std::size_t{WordAt(bytes, 52)} * 8);
    };
    std::string after;
    for (std::uint32_t n = 100; n-- > 0;) {  // the first round writes everything
        folder.Write(u"fault.rec", before);
        Manager manager(&name.file);
        manager.v_Open(Manager::kModeReadWrite, Manager::kMapNever);
        for (unsigned int i = 60; i < 90; ++i) manager.v_DeleteRecord(references[i]);
        for (unsigned int i = 0; i < 40; ++i) Add(manager, "y");
        manager.v_DeleteResource(1);
        {
            const FullDisk full(n);
            manager.v_Flush();
        }
        ClearError();
        const std::string now = folder.Read(u"fault.rec");
        if (after.empty()) after = now;
        const std::string stored = table(now);
        EXPECT_TRUE(stored.empty() || stored == table(before) || stored == table(after)) << n;
    }
    EXPECT_NE(table(before), table(after));
}

TEST_F(RecordFaultTest, NullArgumentsAreErrors) {
    Prepare();
    Manager manager(&name.file);
    manager.v_Open(Manager::kModeReadWrite, Manager::kMapNever);
    const unsigned int reference = flushed.begin()->first;
    EXPECT_CT_ERROR(87, manager.n_AddRecord(nullptr));
    EXPECT_CT_ERROR(87, manager.v_GetRecord(reference, nullptr, 0));
    EXPECT_CT_ERROR(87, manager.v_UpdateRecord(reference, nullptr));
    EXPECT_CT_ERROR(87, manager.v_UpdateRecordHeader(reference, nullptr));
    EXPECT_CT_ERROR(87, manager.v_AddResource(8, nullptr));
    EXPECT_CT_ERROR(87, manager.v_GetResource(1, nullptr));
    EXPECT_CT_ERROR(87, manager.v_UpdateResource(1, nullptr));
    EXPECT_EQ(Manager::si_Compare(nullptr, nullptr), 0);
    VerifyFlushed(manager);
    manager.v_Close(TRUE);
    CT_RecordRepair repair(&name.file);
    EXPECT_CT_ERROR(87, repair.b_Repair(nullptr));
    Manager nothing(nullptr);
    nothing.v_Open(Manager::kModeRead, Manager::kMapNever);
    EXPECT_FALSE(NoErrorIsSet());
    ClearError();
    CT_RecordCheck check(nullptr);
    EXPECT_FALSE(check.b_Check());
    CT_RecordRepair none(nullptr);
    EXPECT_FALSE(none.b_Repair(&name.file));
    ClearError();
    VerifyFile();
}

}  // namespace
