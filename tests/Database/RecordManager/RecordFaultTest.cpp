// Failing calls, full disks and exhausted memory.
#include <map>

#include "RecordFiles.h"

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

}  // namespace
