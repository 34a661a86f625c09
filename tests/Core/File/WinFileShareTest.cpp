// Share modes, byte-range locks and sudden ends, between objects and processes.
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

#include "Core/File/FileFixture.h"

namespace {

// Runs the work in another place and returns its answer.
using Work = std::function<unsigned int()>;

unsigned int InObject(const Work& work) {
    return work();
}

unsigned int InProcess(const Work& work) {
    const pid_t child = fork();
    if (child == 0) _exit(static_cast<int>(work()));
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? static_cast<unsigned int>(WEXITSTATUS(status)) : 999;
}

constexpr auto kPlaces = {InObject, InProcess};

class WinFileShareTest : public test::FileTest {
protected:
    // Opens the file again, in another place, and answers the error of that and the work after it.
    unsigned int Second(unsigned int (*place)(const Work&), unsigned int access, unsigned int share,
                        const std::function<void(CT_WinFile&)>& work = {}) {
        return place([&] {
            const CT_UString name = Name(u"file");
            CT_WinFile file(&name, 0);
            Open(file, access, 1, share);
            if (work) work(file);
            return Taken();
        });
    }
    // Kills a child in the middle of its work, which it does over and over.
    static void KillDuring(const std::function<void()>& work, useconds_t after) {
        const pid_t child = fork();
        for (; child == 0;) work();
        usleep(after);
        kill(child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFSIGNALED(status));
    }
};

TEST_F(WinFileShareTest, SecondOpenMustFitTheFirst) {
    struct Case {
        unsigned int access, share, second_access, second_share, error;
    };
    const Case cases[] = {{1, 0, 1, 3, 32}, {1, 1, 1, 1, 0},  {1, 1, 2, 3, 32},
                          {1, 3, 2, 3, 0},  {1, 3, 2, 2, 32}, {2, 1, 1, 1, 32},
                          {2, 1, 1, 3, 0},  {3, 0, 1, 1, 32}, {0, 0, 3, 0, 0}};
    for (const auto& [access, share, second_access, second_share, error] : cases) {
        SCOPED_TRACE(::testing::Message() << access << share << second_access << second_share);
        const auto first = Opened("x", access, 1, share);
        for (const auto place : kPlaces) {
            EXPECT_EQ(Second(place, second_access, second_share), error);
        }
        first->vv_Close();
        EXPECT_EQ(Second(InProcess, 3, 0), 0u);
    }
}

TEST_F(WinFileShareTest, LockedRangesAreClosedToOthers) {
    const auto owner = Opened("0123456789", 3, 1, 3);
    owner->v_LockFile(4, 2);
    owner->v_LockFile(6, 2);
    const auto lock = [](unsigned int at) {
        return [at](CT_WinFile& file) { file.v_LockFile(at, 1); };
    };
    const auto read = [](int at) {
        return [at](CT_WinFile& file) {
            Seek(file, 0, at);
            Read(file, 1);
        };
    };
    for (const auto place : kPlaces) {
        EXPECT_EQ(Second(place, 3, 3, lock(5)), 33u);
        EXPECT_EQ(Second(place, 3, 3, read(5)), 33u);
        EXPECT_EQ(Second(place, 3, 3, lock(3)), 0u);
        EXPECT_EQ(Second(place, 3, 3, read(8)), 0u);
    }
    Seek(*owner, 0, 5);
    EXPECT_EQ(Read(*owner, 1), "5");
    EXPECT_CT_ERROR(33, owner->v_LockFile(5, 1));
    EXPECT_CT_ERROR(158, owner->v_UnlockFile(4, 4));  // two ranges are not one
    owner->v_UnlockFile(4, 2);
    EXPECT_EQ(Second(InObject, 3, 3, lock(5)), 0u);
    EXPECT_EQ(Second(InObject, 3, 3, lock(6)), 33u);
    owner->vv_Close();
    EXPECT_EQ(Second(InObject, 3, 3, lock(6)), 0u);
}

TEST_F(WinFileShareTest, KillLosesNothingAndFreesTheFiles) {
    const CT_UString a = Name(u"a"), b = Name(u"b"), target = Name(u"file");
    const std::string content(20000, 's');
    for (useconds_t after = 500; after < 8000; after += 500) {
        folder_.Remove(u"b");
        folder_.Write(u"a", content);
        KillDuring(
            [&] {
                CT_WinFile file(&a, 0);
                file.vv_Rename(&b);
                file.vv_Rename(&a);
            },
            after);
        EXPECT_NE(folder_.Has(u"a"), folder_.Has(u"b"));
        EXPECT_EQ(Get(folder_.Has(u"a") ? u"a" : u"b"), content);

        folder_.Write(u"a", content);
        folder_.Write(u"file", "begin");
        KillDuring(
            [&] {
                CT_WinFile file(&target, 0), source(&a, 0);
                file.v_Append(&source, 100);
            },
            after);
        const std::string left = Get(u"file");
        EXPECT_EQ(left, "begin" + std::string(left.size() - 5, 's'));
        EXPECT_EQ(Get(u"a"), content);
        EXPECT_EQ(Second(InObject, 3, 0), 0u);
    }
}

}  // namespace
