// CT_ErrorManager: records, messages, locations, parking, message functions, threads.
#include "Foundation/Core/Error/ErrorManager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <barrier>
#include <functional>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/ErrorInfo.h"
#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Modules.h"
#include "Foundation/Platform/Runtime.h"
#include "Foundation/Platform/Threads.h"
#include "Support/Errors.h"
#include "Support/Text.h"

namespace platform = zelkor::platform;

namespace {

constexpr platform::StringResource kTexts[] = {{7, u"Seven %s of %u"}, {8, u""}};

CT_ErrorManager& Errors() {
    return *CT_ErrorManager::spco_Get();
}

// Gives the test program a string table.
class ErrorManagerTest : public testing::Test {
protected:
    ErrorManagerTest() { platform::RegisterStringTable(module_, kTexts); }
    ~ErrorManagerTest() override { platform::RegisterStringTable(module_, {}); }

    HINSTANCE module_ = platform::ModuleOf(&kTexts);
};

TEST_F(ErrorManagerTest, MessagesHaveTheCodeInFrontAndTheTextBehind) {
    const std::u16string longest(1500, u'x');
    const std::tuple<std::function<void()>, unsigned int, std::u16string> cases[] = {
        {[] { Errors().v_SetError(12, u"%s has %d", u"file", -3); }, 12, u"(12): file has -3"},
        {[this] { Errors().v_SetError(13, module_, 7, u"cups", 9u); }, 13,
         u"(13): Seven cups of 9"},
        {[this] { Errors().v_SetError(14, module_, 99); }, 14, u"(14): "},  // no such text
        {[] { Errors().v_SetError(15, nullptr, 60006); }, 15, u"(15): Out of memory"},
        {[] { Errors().v_SetError(0x80000000, u""); }, 0x80000000, u"(-2147483648): "},
        {[] { Errors().v_SetMessageError(u"only %s", u"this"); }, 0, u"only this"},
        {[] { Errors().v_SetMessageError(static_cast<const char16_t*>(nullptr)); }, 0, u""},
        {[] { Errors().v_SetMessageError(u"%d", 0); }, 0, u"0"},
        {[&] { Errors().v_SetError(16, u"%s", longest.c_str()); }, 16,
         u"(16): " + longest.substr(0, 1017)},
        {[&] { Errors().v_SetMessageError(longest.c_str()); }, 0, longest.substr(0, 1023)},
    };
    for (const auto& [record, code, message] : cases) {
        record();
        EXPECT_TRUE(test::TakeError(code, message)) << test::Utf8(message);
    }
}

TEST_F(ErrorManagerTest, TheFirstErrorWinsAndLocationsAddUp) {
    Errors().v_AddLocation("before.cpp", 1);  // no record: nothing to add to
    Errors().v_SetError(1, module_, 7, u"a", 1u);
    Errors().v_AddLocation("inner.cpp", 10);
    Errors().v_SetError(2, u"second");
    platform::SetLastError(5);
    Errors().v_SetSystemError();
    EXPECT_EQ(platform::LastError(), 5u);  // nothing was recorded, so it stays
    Errors().v_AddLocation("outer.cpp", 20);

    EXPECT_EQ(Errors().n_GetErrorCode(), 1u);
    EXPECT_EQ(Errors().n_GetFormatID(), 7u);
    Errors().v_SetIgnoreError(TRUE);  // not set, but readable
    EXPECT_FALSE(Errors().b_IsSetError());
    EXPECT_EQ(Errors().n_GetErrorCode(), 1u);
    Errors().v_SetIgnoreError(FALSE);
    CT_UString message;
    Errors().v_GetErrorMessage(message);
    EXPECT_EQ(test::Utf8(message.qcuz_Get()), "(1): Seven a of 1");
    ASSERT_EQ(Errors().n_GetLocationCount(), 2u);
    EXPECT_STREQ(Errors().qccz_GetLocationFileAt(1), "inner.cpp");
    EXPECT_EQ(Errors().n_GetLocationLineAt(2), 20u);
    EXPECT_EQ(Errors().qccz_GetLocationFileAt(0), nullptr);
    EXPECT_EQ(Errors().n_GetLocationLineAt(3), 0u);

    EXPECT_TRUE(test::TakeError(1, u"(1): Seven a of 1", "inner.cpp"));
    EXPECT_EQ(Errors().n_GetErrorCode(), 0u);
    EXPECT_EQ(Errors().n_GetLocationCount(), 0u);
    EXPECT_EQ(test::Utf8(Errors().qcuz_GetErrorMessage()), "");
}

TEST_F(ErrorManagerTest, SystemErrorsTakeTheSystemsTextAndResetTheNumber) {
    const std::u16string longest(2000, u'y'), begin = u"(5): Access is denied. [";
    const std::tuple<std::uint32_t, const char16_t*, std::u16string> cases[] = {
        {5, longest.c_str(), begin + longest.substr(0, 1022 - begin.size()) + u"]"},
        {5, nullptr, u"(5): Access is denied."},
        {2, u"C:\\a.txt", u"(2): The system cannot find the file specified. [C:\\a.txt]"},
        {0x1FFFFFFF, nullptr, u""},  // the system has no text
        {0x1FFFFFFF, u"x", u" [x]"},
    };
    for (const auto& [number, context, message] : cases) {
        SCOPED_TRACE(number);
        platform::SetLastError(number);
        if (context == nullptr) Errors().v_SetSystemError();
        if (context != nullptr) Errors().v_SetSystemError(u"%s", context);
        EXPECT_TRUE(test::TakeError(number, message));
        EXPECT_EQ(platform::LastError(), 0u);
    }
}

// Every line break of a system text is folded to one blank, and none is left at the end.
TEST_F(ErrorManagerTest, SystemTextsLoseTheirLineBreaks) {
    int folded = 0;
    for (std::uint32_t number = 1; number < 16000; ++number) {
        const std::u16string_view text = platform::SystemText(number);
        if (text.empty()) continue;
        const auto breaks = text.substr(0, text.find_last_not_of(u"\r\n")).find(u"\r\n");
        platform::SetLastError(number);
        Errors().v_SetSystemError();
        const std::u16string_view message = Errors().qcuz_GetErrorMessage();
        ASSERT_EQ(message.find_first_of(u"\r\n"), message.npos) << number;
        if (breaks != text.npos) {
            ++folded;
            EXPECT_TRUE(message.find(text.substr(0, breaks)) != message.npos) << number;
            EXPECT_EQ(message.find(u"  "), message.npos) << number;
        }
        Errors().v_ClearError();
    }
    EXPECT_GT(folded, 0);
}

TEST_F(ErrorManagerTest, AHeldErrorComesBackUnlessAnotherTakesItsPlace) {
    for (const bool another : {false, true}) {
        Errors().v_SetError(1, u"kept");
        Errors().v_AddLocation("a/kept.cpp", 5);
        Errors().v_HoldError();
        EXPECT_FALSE(Errors().b_IsSetError());
        EXPECT_TRUE(Errors().b_IsHoldError());
        EXPECT_EQ(Errors().n_GetErrorCode(), 1u);  // readable while it is held
        Errors().v_AddLocation("a/lost.cpp", 6);   // only active records take locations
        EXPECT_EQ(Errors().n_GetLocationCount(), 1u);
        if (another) Errors().v_SetError(2, u"new");
        EXPECT_EQ(Errors().b_IsHoldError(), !another);
        Errors().v_UnHoldError();
        EXPECT_TRUE(test::TakeError(another ? 2 : 1));
    }
    Errors().v_SetError(1, u"x");
    Errors().v_HoldError();
    Errors().v_ClearError();
    EXPECT_FALSE(Errors().b_IsHoldError());
}

TEST_F(ErrorManagerTest, LocationsBeyondThePoolAreDropped) {
    for (const unsigned int count : {130u, 1u}) {  // clearing gives them back
        Errors().v_SetError(1, u"deep");
        for (unsigned int i = 1; i <= count; ++i) Errors().v_AddLocation("deep.cpp", i);
        const unsigned int kept = std::min(count, 100u);
        EXPECT_EQ(Errors().n_GetLocationCount(), kept);
        EXPECT_EQ(Errors().n_GetLocationLineAt(kept), kept);
        Errors().v_ClearError();
    }
}

unsigned int seen_format = 0;
int WriteMapped(char16_t* output, unsigned int size, unsigned int code, unsigned int formatID,
                va_list arguments) {
    seen_format = formatID;
    const int number = va_arg(arguments, int);
    platform::PrintText(output, size / sizeof(char16_t), u"mapped %d %d", code, number);
    return 1;
}
int Decline(char16_t* output, unsigned int, unsigned int, unsigned int, va_list arguments) {
    output[0] = u'?';
    static_cast<void>(va_arg(arguments, int));
    return 0;
}

TEST_F(ErrorManagerTest, MessageFunctionsServeTheirThreadTheLatestFirst) {
    const unsigned int self = platform::CurrentThreadId();
    const auto expect = [](const char16_t* message) {
        Errors().v_SetError(4, u"plain %d", 40);
        EXPECT_TRUE(test::TakeError(4, message));
    };
    Errors().v_SetMapFunction(WriteMapped, self + 1);  // another thread's
    expect(u"(4): plain 40");
    Errors().v_SetMapFunction(WriteMapped, self);
    expect(u"(4): mapped 4 40");
    EXPECT_EQ(seen_format, 4u);  // formats given as text: the code
    Errors().v_SetError(5, module_, 8, 50);
    EXPECT_TRUE(test::TakeError(5, u"(5): mapped 5 50"));
    EXPECT_EQ(seen_format, 8u);
    Errors().v_SetMapFunction(Decline, self);
    expect(u"(4): plain 40");
    Errors().v_RemoveMapFunction(self);  // takes Decline away
    expect(u"(4): mapped 4 40");

    for (const unsigned int key : {self, self + 1, self}) Errors().v_RemoveMapFunction(key);
    EXPECT_EQ(test::FailEachAllocation([self] {
                  Errors().v_SetMapFunction(Decline, self);
                  Errors().v_RemoveMapFunction(self);
              }),
              1u);
}

TEST_F(ErrorManagerTest, ComponentErrorsUseTheErrorObjectOrTheTable) {
    const auto no_table = static_cast<HRESULT>(0x80040E37);
    const std::tuple<const char16_t*, unsigned int, const char16_t*> cases[] = {
        {u"100% wrong", 0x80040E37, u"(-2147217865): Open: 100% wrong"},
        {u"(31050): Invalid: x", 31050, u"(31050): Open:  Invalid: x"},
        {u"(-5) no colon", 0xFFFFFFFB, u"(-5): Open: (-5) no colon"},
        {u"(5x): y", 0x80040E37, u"(-2147217865): Open: (5x): y"},
        {u"()", 0x80040E37, u"(-2147217865): Open: ()"},
        {u"(", 0x80040E37, u"(-2147217865): Open: ("},
        {nullptr, 0x80040E37,
         u"(-2147217865): Open: DB_E_NOTABLE (The specified table does not exist)"},
    };
    for (const auto& [object, code, message] : cases) {
        SCOPED_TRACE(test::Utf8(message));
        platform::SetErrorInfo(object);
        Errors().v_SetCOMError(no_table, u"Open: ");
        EXPECT_TRUE(test::TakeError(code, message));
        EXPECT_EQ(platform::TakeErrorInfo(), nullptr);
    }
    platform::SetErrorInfo(u"unused");
    Errors().v_SetCOMError(0, u"x");
    EXPECT_TRUE(test::NoError());
    EXPECT_EQ(platform::TakeErrorInfo(), nullptr);  // taken for a success too
}

TEST_F(ErrorManagerTest, DescriptionsOfHResults) {
    const std::pair<std::uint32_t, const char16_t*> cases[] = {
        {0x80030003, u"STG_E_PATHNOTFOUND (The path %1 could not be found.)"},
        {0x8004D019, u"XACT_E_ABORTED"},
        {0x00040EC0, u"DB_S_BUFFERTOOSMALL"},    // the first value of the table
        {0x80070005, u"Access is denied.\r\n"},  // only the system's: as it is
        {0x9FFFFFFF, u"[No error description found.]"},
    };
    CT_UString text;
    for (const auto& [hresult, expected] : cases) {
        CT_ErrorManager::sv_GetHRESULTDescription(static_cast<HRESULT>(hresult), text);
        EXPECT_EQ(test::Utf8(text.qcuz_Get()), test::Utf8(expected));
    }

    platform::SetErrorInfo(u"object");
    CT_ErrorManager::sv_GetCOMErrorDescription(static_cast<HRESULT>(0x80040E37), text);
    EXPECT_EQ(test::Utf8(text.qcuz_Get()), "object");
    CT_ErrorManager::sv_GetCOMErrorDescription(0, text);
    EXPECT_EQ(text.n_GetLength(), 0u);
    text.vv_Init();
    test::FailEachAllocation([] {
        CT_UString own;
        platform::SetErrorInfo(u"a longer description of an object");
        CT_ErrorManager::sv_GetCOMErrorDescription(static_cast<HRESULT>(0x80040E37), own);
    });
}

// More threads than there are records report at once; each finds its own error and no other.
TEST_F(ErrorManagerTest, EachThreadHasItsOwnErrorEvenBeyondThePool) {
    test::KeepsMemory();  // the block of further records stays
    constexpr unsigned int kThreads = 45;
    std::barrier all_set(kThreads);
    const auto run = [&](unsigned int self) {
        for (unsigned int round = 0; round < 3; ++round) {
            Errors().v_SetError(self, u"thread %u", self);
            Errors().v_AddLocation("t/thread.cpp", self);
            Errors().v_AddLocation("t/outer.cpp", round);
            all_set.arrive_and_wait();
            EXPECT_EQ(Errors().n_GetLocationCount(), 2u);  // 90 of 100 fit
            EXPECT_EQ(Errors().n_GetLocationLineAt(1), self);
            all_set.arrive_and_wait();
            if (self % 2 == 0) Errors().v_HoldError();
            if (self % 4 == 0) Errors().v_UnHoldError();
            const std::string number = std::to_string(self);
            EXPECT_EQ(test::Utf8(Errors().qcuz_GetErrorMessage()),
                      "(" + number + "): thread " + number);
            Errors().v_ClearError();
            EXPECT_FALSE(Errors().b_IsSetError() || Errors().b_IsHoldError());
            all_set.arrive_and_wait();
        }
    };
    std::vector<std::thread> threads;
    for (unsigned int i = 0; i < kThreads; ++i) threads.emplace_back(run, i + 1);
    for (auto& thread : threads) thread.join();
}

// Runs in a process of its own, where the pool is as it was made: the 21st record has no memory.
TEST(ErrorManagerDeathTest, WithoutMemoryForFurtherRecordsAReportIsDropped) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(
        {
            for (int i = 0; i < 20; ++i) {
                std::thread([] { Errors().v_SetError(1, u"never cleared"); }).join();
            }
            platform::FailAllocation(1, true);
            Errors().v_SetError(2, u"dropped");
            Errors().v_AddLocation("a/b.cpp", 1);
            const bool dropped = !Errors().b_IsSetError() && Errors().n_GetErrorCode() == 0;
            platform::FailAllocation(0);
            Errors().v_SetError(3, u"kept");
            std::_Exit(dropped && Errors().n_GetErrorCode() == 3 ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

}  // namespace
