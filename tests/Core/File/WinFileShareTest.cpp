// Share modes, byte-range locks and sudden ends, between objects; FileSharesTest has processes.
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <functional>

#include "Core/File/FileFixture.h"

namespace {

class WinFileShareTest : public test::FileTest {
protected:
    // Opens the file again, does the work, and answers the error.
    unsigned int Second(unsigned int access, unsigned int share,
                        const std::function<void(CT_WinFile&)>& work = {}) {
        CT_WinFile file(&name_, 0);
        Open(file, access, 1, share);
        if (work) work(file);
        return Taken();
    }
    // Kills a child in the middle of its work, which it does over and over.
    static void KillDuring(const std::function<void()>& work, useconds_t after) {
        const pid_t child = fork();
        while (child == 0) work();
        usleep(after);
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
    }
};

TEST_F(WinFileShareTest, SharesAndLockedRangesHoldAgainstOtherObjects) {
    for (const auto& [access, share, second_access, second_share, error] :
         {std::array<unsigned int, 5>{1, 1, 1, 1, 0}, {1, 3, 2, 2, 32}, {2, 1, 1, 3, 0}}) {
        const auto first = Opened("x", access, share);
        EXPECT_EQ(Second(second_access, second_share), error) << access;
    }
    const auto owner = Opened("0123456789", 3, 3);
    owner->v_LockFile(4, 2);
    const auto read = [](CT_WinFile& file) {
        Seek(file, 0, 5);
        Read(file, 1);
    };
    EXPECT_EQ(Second(3, 3, [](CT_WinFile& file) { file.v_LockFile(5, 1); }), 33u);
    EXPECT_EQ(Second(3, 3, read), 33u);
    EXPECT_CT_ERROR(158, owner->v_UnlockFile(4, 1));
    owner->v_UnlockFile(4, 2);
    EXPECT_EQ(Second(3, 3, read), 0u);
}

TEST_F(WinFileShareTest, KillLosesNothingAndFreesTheFiles) {
    const CT_UString a = Name(u"a"), b = Name(u"b");
    const std::string content(20000, 's');
    for (useconds_t after = 500; after < 8000; after += 500) {
        folder_.Remove(u"b");
        folder_.Write(u"a", content);
        const auto rename = [&] {
            CT_WinFile file(&a, 0);
            file.vv_Rename(&b);
            file.vv_Rename(&a);
        };
        KillDuring(rename, after);
        EXPECT_EQ((folder_.Has(u"a") ? Get(u"a") : "") + (folder_.Has(u"b") ? Get(u"b") : ""),
                  content);
        folder_.Write(u"a", content);
        folder_.Write(u"file", "begin");
        const auto append = [&] {
            CT_WinFile file(&name_, 0), source(&a, 0);
            file.v_Append(&source, 100);
        };
        KillDuring(append, after);
        const std::string left = Get(u"file");
        EXPECT_EQ(left, "begin" + std::string(left.size() - 5, 's'));
        EXPECT_EQ(Get(u"a"), content);
        EXPECT_EQ(Second(3, 0), 0u);
    }
}

}  // namespace
