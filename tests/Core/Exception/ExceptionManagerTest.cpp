// Exceptions and the record of the places they pass: dump, box, threads, exhausted pools.
#include <gtest/gtest.h>

#include <algorithm>
#include <barrier>
#include <string>
#include <thread>
#include <vector>

#include "Foundation/Core/Exception/Exception.h"
#include "Foundation/Core/Exception/ExceptionManager.h"
#include "Foundation/Core/TestOut/TestOut.h"
#include "Foundation/Platform/Threads.h"
#include "Support/Dialogs.h"
#include "Support/Errors.h"
#include "Support/Platform.h"

namespace platform = zelkor::platform;

namespace {

CT_ExceptionManager& Manager() {
    return *CT_ExceptionManager::spco_Get();
}

std::string Dump(unsigned int thread = CT_ExceptionManager::kCallingThread) {
    const test::DebugOutput output;
    CT_TestOut out(u"stdout", nullptr, CT_TestOut::kToDebugger);
    Manager().v_Dump(&out, thread);
    return output.Whole();
}

std::string Thread(unsigned int id = platform::CurrentThreadId()) {
    return std::to_string(id);
}

TEST(ExceptionTest, CopiesShareTheTextAndOutliveWhatWasThrown) {
    CT_Exception copy(1);
    try {
        throw CT_Exception(22, u"No such locale");
    } catch (const CT_Exception& exception) {
        copy = exception;
        EXPECT_EQ(CT_Exception(copy).qcuz_GetText(), exception.qcuz_GetText());
    }
    EXPECT_EQ(test::Utf8(copy.qcuz_GetText()), "No such locale");
}

TEST(ExceptionManagerTest, TheDumpListsThePlacesNewestFirst) {
    Manager().v_AddLocation(u"early.cpp", 1);  // no exception yet
    Manager().v_AddLocation("early.cpp", 1);
    Manager().v_Clear();
    EXPECT_FALSE(Manager().b_InException());
    EXPECT_EQ(Manager().n_GetCurrentCode(), 0xFFFFFFFFu);
    EXPECT_EQ(Manager().qcuz_GetCurrentText(), nullptr);
    EXPECT_EQ(Dump(), "No exception for thread " + Thread() + ".\n");

    std::string file = "throw.cpp";
    Manager().v_AddLocation(file.c_str(), 12, 22, u"why");
    file = "gone";  // names are copied
    Manager().v_AddLocation(u"through.cpp", 30);
    Manager().v_AddLocation("gr\xFCn.cpp", 4000000000u);
    EXPECT_TRUE(Manager().b_InException());
    EXPECT_EQ(test::Utf8(Manager().qcuz_GetCurrentText()), "why");
    const std::string places =
        "\t(grün.cpp, 4000000000): code 22\n\t(through.cpp, 30): code 22\n"
        "\t(throw.cpp, 12): code 22\n";
    const std::string head = "Active exception for thread " + Thread() + " has code ";
    EXPECT_EQ(Dump(), head + "22.\n" + places);
    EXPECT_EQ(Dump(platform::CurrentThreadId()), Dump());

    // A second throw before v_Clear: the record has its code, older places keep theirs.
    Manager().v_AddLocation(u"again.cpp", 5, 0xFFFFFFFE, nullptr);
    EXPECT_EQ(Manager().n_GetCurrentCode(), 0xFFFFFFFEu);
    EXPECT_EQ(*Manager().qcuz_GetCurrentText(), 0);
    EXPECT_EQ(Dump(), head + "4294967294.\n\t(again.cpp, 5): code 4294967294\n" + places);
    Manager().v_Clear();
    EXPECT_FALSE(Manager().b_InException());
}

TEST(ExceptionManagerTest, TenThreadsHaveTheirOwnExceptionsAndAnEleventhNone) {
    std::barrier step(11);
    std::vector<std::thread> threads;
    std::vector<unsigned int> ids(10);
    for (unsigned int i = 0; i < 10; ++i) {
        threads.emplace_back([&, i] {
            ids[i] = platform::CurrentThreadId();
            step.arrive_and_wait();
            CT_TestOut out(u"stdout", nullptr, 0);
            for (unsigned int round = 0; round < 100; ++round) {  // all at the same time
                Manager().v_Clear();
                Manager().v_AddLocation("thread.cpp", i, 100 + i, u"text");
                Manager().v_Dump(&out, ids[round % 10]);
            }
            step.arrive_and_wait();  // all ten are recorded
            step.arrive_and_wait();  // the eleventh was refused
            if (i % 2 == 0) Manager().v_Clear();
            step.arrive_and_wait();  // half of them are free again
            step.arrive_and_wait();
            EXPECT_EQ(Manager().n_GetCurrentCode(), i % 2 == 0 ? 0xFFFFFFFFu : 100 + i);
            Manager().v_Clear();
        });
    }
    const auto add = [&] {
        Manager().v_AddLocation("eleventh.cpp", 1, 5, u"text");
        return Manager().b_InException();
    };
    step.arrive_and_wait();
    step.arrive_and_wait();
    EXPECT_FALSE(add());
    step.arrive_and_wait();
    step.arrive_and_wait();
    EXPECT_TRUE(add());
    EXPECT_EQ(Dump(ids[3]), "Active exception for thread " + Thread(ids[3]) +
                                " has code 103.\n\t(thread.cpp, 3): code 103\n");
    EXPECT_EQ(Dump(ids[4]), "No exception for thread " + Thread(ids[4]) + ".\n");
    step.arrive_and_wait();
    Manager().v_Clear();
    for (std::thread& thread : threads) thread.join();
}

TEST(ExceptionManagerTest, PlacesBeyondTheHundredthAndTextsWithoutMemoryAreDropped) {
    for (int round = 0; round < 2; ++round) {
        Manager().v_AddLocation("throw.cpp", 0, 7, u"why");
        for (unsigned int line = 1; line < 150; ++line) Manager().v_AddLocation(u"a.cpp", line);
        const std::string dump = Dump();
        EXPECT_EQ(std::count(dump.begin(), dump.end(), '\n'), 101);
        EXPECT_NE(dump.find(".\n\t(a.cpp, 99)"), dump.npos);
        Manager().v_Clear();
    }
    for (const std::uint64_t n : {1u, 2u}) {
        platform::FailAllocation(n);  // of the text, or of the file's name
        Manager().v_AddLocation(u"a.cpp", 1, 7, u"why");
        platform::FailAllocation(0);
        EXPECT_EQ(Manager().n_GetCurrentCode(), 7u);
        const bool has_name = Dump().find("(a.cpp, 1)") != std::string::npos;
        EXPECT_NE(has_name, *Manager().qcuz_GetCurrentText() != 0);
        Manager().v_Clear();
    }
}

TEST(ExceptionManagerTest, TheBoxShowsCodeTextAndPlaces) {
    test::MessageBoxes boxes(platform::kAnswerRetry);
    EXPECT_EQ(Manager().i_ExceptionLocationWindow(u"x", 0) + boxes.count, 0);  // no exception
    Manager().v_AddLocation("a.cpp", 1, 0xFFFFFFFF, nullptr);
    EXPECT_EQ(Manager().i_ExceptionLocationWindow(nullptr, 2), platform::kAnswerRetry);
    EXPECT_EQ(boxes.text, "Active exception -1\n\t(a.cpp, 1): code 4294967295");
    EXPECT_EQ(boxes.caption, "");
    EXPECT_EQ(boxes.flags, 0x10002u);
    Manager().v_AddLocation(u"b.cpp", 2, 22, u"gr\u00FCn \u4E00");
    const auto show = [] { Manager().i_ExceptionLocationWindow(u"\u4E8C: a title", 0); };
    EXPECT_GT(test::FailEachAllocation(show), 0u);
    const std::string places = "\n\t(b.cpp, 2): code 22\n\t(a.cpp, 1): code 4294967295";
    EXPECT_EQ(boxes.text, "Active exception 22: grün 一" + places);
    const test::ForcedVersion older(1, 4, 10);  // sees 8-bit text
    show();
    EXPECT_EQ(boxes.text, "Active exception 22: grün ?" + places);
    EXPECT_EQ(boxes.caption, "?: a title");
    boxes.answer = platform::kAnswerAbort;
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(show(), testing::KilledBySignal(6), "Aborted from an exception box");
    Manager().v_Clear();
}

}  // namespace
