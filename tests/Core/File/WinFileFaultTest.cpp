// What failing calls of the system, full disks and exhausted memory leave behind.
#include "Core/File/FileFixture.h"
#include "Foundation/Platform/Files.h"

namespace platform = zelkor::platform;

namespace {

using platform::FileCall;

class WinFileFaultTest : public test::FileTest {
protected:
    WinFileFaultTest() {
        folder_.Write(u"file", "0123456789");
        folder_.Write(u"source", "abcdefgh");
    }
    const CT_UString source_name_ = Name(u"source");
};

TEST_F(WinFileFaultTest, OffsetAndFilePointerStillAgreeAfterFailures) {
    Open(file_, 3, 1);
    EXPECT_EQ(Read(file_, 2), "01");
    for (const auto call : {FileCall::kRead, FileCall::kWrite, FileCall::kSeek}) {
        platform::FailFileCall(call, 0, 29);
        EXPECT_CT_ERROR(29,
                        call == FileCall::kRead ? Read(file_, 2).size() : file_.vn_Write("ab", 2));
        EXPECT_EQ(file_.vn_GetOffset(), 2u);
    }
    EXPECT_EQ(Read(file_, 2), "23");
    platform::FillDisk(0, 1);
    EXPECT_CT_ERROR(112, file_.vn_Write("ab", 2));
    platform::ClearFileFaults();
    EXPECT_EQ(file_.vn_Write("AB", 2), 2u);  // what the failed one stored is overwritten
    EXPECT_EQ(Get(u"file"), "0123AB6789");
    platform::FailFileCall(FileCall::kLock, 0, 33);
    file_.v_LockFile(0, 1);
    file_.v_UnlockFile(5, 5);       // 158, but the first error wins
    EXPECT_EQ(Read(file_, 4), "");  // and stops what follows
    EXPECT_EQ(Taken(), 33u);
}

TEST_F(WinFileFaultTest, FailedClosingLeavesItOpenAndFailedResetReleasesIt) {
    Open(file_, 3, 1);
    platform::FailFileCall(FileCall::kClose, 0, 29);
    EXPECT_CT_ERROR(29, file_.vv_Close());
    EXPECT_TRUE(file_.b_IsOpen());
    platform::FailFileCall(FileCall::kClose, 0, 29);
    EXPECT_CT_ERROR(29, file_.vv_Set(&name_, 0));
    EXPECT_EQ(file_.h_GetHandle(), nullptr);
    for (const auto call : {FileCall::kOpen, FileCall::kSeek, FileCall::kSize}) {
        platform::FailFileCall(call, 0, 25);
        Open(file_, 2, 3);  // the second attempt succeeds
        file_.vv_Close();
        platform::FailFileCall(call, 0, 25, true);
        EXPECT_CT_ERROR(25, Open(file_, 2, 3));
        platform::ClearFileFaults();
    }
    Open(file_, 3, 1, 0);  // no handle is left behind
    EXPECT_TRUE(file_.b_IsOpen());
}

TEST_F(WinFileFaultTest, FailedMappingsLeaveNone) {
    Open(file_, 3, 1);
    for (const auto call : {FileCall::kCreateMapping, FileCall::kMapView}) {
        platform::FailFileCall(call, 0, 8);
        EXPECT_CT_ERROR(8, file_.v_CreateMap(20));
        EXPECT_FALSE(file_.b_GetMapping());
        file_.v_CreateMap(20);
        Seek(file_, 0, 0xFFFFF);
        platform::FailFileCall(FileCall::kGrowView, 0, 8);  // so that it is to be made anew
        platform::FailFileCall(call, 0, 112);
        EXPECT_CT_ERROR(112, file_.vn_Write("ab", 2));
        EXPECT_FALSE(file_.b_GetMapping());
        EXPECT_EQ(file_.vn_GetOffset(), 0xFFFFFu);
        file_.v_CreateMap(20);
        void* const view = file_.pv_GetMapping();
        platform::FailFileCall(FileCall::kUnmapView, 0, 487);
        EXPECT_CT_ERROR(487, file_.v_CloseMap(10));
        EXPECT_FALSE(file_.b_GetMapping());
        EXPECT_EQ(file_.vn_GetOffset(), 10u);  // it went on, though a view forbids to cut
        platform::UnmapView(view);
    }
}

TEST_F(WinFileFaultTest, AFailedFlushOfAViewIsToldByFlushingOrClosing) {
    for (const bool flushes : {true, false}) {
        Open(file_, 3, 1);
        file_.v_CreateMap(20);
        platform::FailFileCall(FileCall::kFlushView, 0, 1117);
        file_.v_FlushMap();
        EXPECT_TRUE(test::NoError());
        file_.v_CloseMap(10);
        EXPECT_TRUE(test::NoError());
        if (flushes) {
            EXPECT_CT_ERROR(1117, file_.vv_Flush());
            file_.vv_Close();
        } else {
            EXPECT_CT_ERROR(1117, file_.vv_Close());
        }
        EXPECT_FALSE(file_.b_IsOpen());
        EXPECT_TRUE(test::NoError());
    }
}

TEST_F(WinFileFaultTest, AppendingLosesNothingToShortTransfersAndBlocksOfAnySize) {
    std::string expected = "0123456789";
    CT_WinFile source(&source_name_, 0);
    for (const unsigned int block : {1u, 5u, 8u, 100u}) {
        for (const auto call : {FileCall::kRead, FileCall::kWrite}) {
            platform::ShortenFileCall(call, 0, 3, true);
            file_.v_Append(&source, block);
            EXPECT_EQ(Get(u"file"), expected += "abcdefgh");
            EXPECT_FALSE(source.b_IsOpen() || file_.b_IsOpen());
            platform::ClearFileFaults();
        }
    }
    CT_WinFile same(&name_, 0);
    EXPECT_CT_ERROR(32, file_.v_Append(&file_, 5));
    EXPECT_CT_ERROR(32, file_.v_Append(&same, 5));
    EXPECT_EQ(Get(u"file"), expected);
    same.vv_Set();
    platform::ShortenFileCall(FileCall::kWrite, 0, 0, true);
    EXPECT_CT_ERROR(29, file_.v_Append(&source, 5));
}

TEST_F(WinFileFaultTest, EveryFailingCallOfAppendIsReportedAndKeepsWhatWasThere) {
    const std::string whole = "0123456789abcdefgh";
    for (std::uint32_t kind = 0; kind < platform::kFileCalls; ++kind) {
        const auto call = static_cast<FileCall>(kind);
        bool struck = true;
        for (std::uint32_t after = 0; struck; ++after) {
            CT_WinFile source(&source_name_, 0), target(&name_, 0);
            folder_.Write(u"file", "0123456789");
            platform::FailFileCall(call, after, 1117, true);
            target.v_Append(&source, 3);
            struck = platform::ClearFileFaults(call) > after;
            EXPECT_EQ(Taken(), struck ? 1117u : 0u) << kind << " " << after;
            const std::string left = Get(u"file");
            EXPECT_TRUE(struck ? left.size() >= 10 && whole.starts_with(left) : left == whole);
        }
    }
}

TEST_F(WinFileFaultTest, ExhaustedMemoryLeaksNothing) {
    const CT_UString copy = Name(u"copy");
    const std::uint64_t failed = test::FailEachAllocation([&] {
        CT_WinFile source(&source_name_, 0);
        const std::unique_ptr<CT_File> target(new CT_WinFile);
        target->vv_Set(&name_, 0);
        static_cast<CT_WinFile&>(*target).v_Append(&source, 5);
        Open(source, 1, 1);
        CT_UString line;
        source.n_ReadLineUSequential(&line, nullptr);
        source.vv_Close();
        source.v_CopyFile(&copy);
    });
    EXPECT_GT(failed, 5u);
    Open(file_, 3, 1);
    EXPECT_TRUE(file_.b_IsOpen());
}

}  // namespace
