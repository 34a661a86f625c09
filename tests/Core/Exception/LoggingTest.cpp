// The assertion box, log facilities and the error broadcast.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <thread>
#include <vector>

#include "Foundation/Core/Exception/Assert.h"
#include "Foundation/Core/Exception/ErrorBroadcast.h"
#include "Foundation/Core/Exception/LogFacility.h"
#include "Foundation/Core/String/UString.h"
#include "Support/Dialogs.h"
#include "Support/Errors.h"

namespace platform = zelkor::platform;

namespace {

using platform::kAnswerAbort, platform::kAnswerIgnore, platform::kAnswerRetry, platform::kAnswerNo;

constexpr const char* kAdvice =
    ");\n\nClick Abort to stop, Retry to debug, or Ignore to continue.\n"
    "(Click Ignore to see what happens in a Release build.)";

TEST(AssertTest, TheBoxShowsLineFileAndExpression) {
    test::MessageBoxes boxes;
    for (const std::size_t length : {0u, 60u, 70u, 5000u}) {
        const std::string file(length, 'f');
        EXPECT_FALSE(CT_Assert::sb_ShowAssertMessage("*p != \xE9", file.c_str(), 12));
        EXPECT_EQ(boxes.text, "Line 12 in " + file + "\n\nASSERT(*p != é" + kAdvice);
    }
    EXPECT_EQ(boxes.caption, "Debug Assertion Failed!");
    EXPECT_EQ(boxes.flags, 0x10002u);
    const std::u16string longest(3000, u'e');
    platform::FailAllocation(1, true);  // without memory the beginning is shown
    EXPECT_FALSE(CT_Assert::sb_ShowAssertMessage(longest.c_str(), u"a.cpp", 2147483647));
    platform::FailAllocation(0);
    EXPECT_EQ(boxes.text.substr(0, 35), "Line 2147483647 in a.cpp\n\nASSERT(ee");
    EXPECT_EQ(boxes.text.size(), 255u);
    for (const auto& [answer, expected] :
         {std::pair{kAnswerRetry, TRUE}, {kAnswerIgnore, FALSE}, {kAnswerNo, FALSE}}) {
        boxes.answer = answer;
        EXPECT_EQ(CT_Assert::sb_ShowAssertMessage(u"x", nullptr, 1), expected);
    }
    boxes.answer = kAnswerAbort;
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(static_cast<void>(CT_Assert::sb_ShowAssertMessage("x", "y", 1)),
                testing::ExitedWithCode(3), "");
}

// Keeps what arrives in the abstract form; a null text reads as "(null)".
class Recorder : public CT_LogFacility {
public:
    using CT_LogFacility::vv_Log;
    void vv_Log(const char16_t* message, const char16_t* source, const char16_t* category,
                et_Severity severity, std::int32_t value) override {
        const auto text = [](const char16_t* units) {
            return units != nullptr ? test::Utf8(units) : "(null)";
        };
        heard = text(message) + "|" + text(source) + "|" + text(category) + "|" +
                std::to_string(severity) + "|" + std::to_string(value);
    }
    std::string heard;
};

constexpr auto kOdd = static_cast<CT_LogFacility::et_Severity>(77);

TEST(LogFacilityTest, EveryFormEndsInTheAbstractOne) {
    Recorder recorder;
    CT_LogFacility& log = recorder;
    const CT_UString message(u"m"), empty;
    log.vv_Log(&message, nullptr, &empty, kOdd, -5);
    EXPECT_EQ(recorder.heard, "m|(null)||77|-5");
    log.vv_Logf(u"\u4E00", nullptr, CT_LogFacility::Error, 1, u"%d %s %S", 7, u"wide", "narrow");
    EXPECT_EQ(recorder.heard, "7 wide narrow|一|(null)|2|1");
    log.vv_Logf(u"", u"", kOdd, 0, static_cast<const char16_t*>(nullptr));
    EXPECT_EQ(recorder.heard, "|||77|0");
    log.vv_Logf("\xE9", nullptr, kOdd, 2, "%d %s %S", 8, "narrow\xFC", u"wide");
    EXPECT_EQ(recorder.heard, "8 narrowü wide|é||77|2");
    for (const std::size_t length : {1022u, 1023u, 1024u, 3000u}) {
        const std::string cut(std::min<std::size_t>(length, 1023), 'x');
        log.vv_Logf(u"", u"", kOdd, 0, u"%s", std::u16string(length, u'x').c_str());
        EXPECT_EQ(recorder.heard, cut + "|||77|0");
        log.vv_Logf("", "", kOdd, 0, "%s", std::string(length, 'x').c_str());
        EXPECT_EQ(recorder.heard, cut + "|||77|0");
    }
    log.vv_Logf(u"", u"", kOdd, 0, u"%1022s\U0001F600", u"");  // no half pair at the cut
    EXPECT_EQ(recorder.heard, std::string(1022, ' ') + "|||77|0");
    EXPECT_GT(test::FailEachAllocation([&] { log.vv_Logf("source", "category", kOdd, 0, "text"); }),
              2u);
    const std::uint64_t before = platform::AllocationCount();
    CT_LogFacilityDummy dummy;  // converts and formats nothing either
    dummy.vv_Log(&message, &message, &message, kOdd, 1);
    dummy.vv_Log(u"m", u"s", u"c", kOdd, 1);
    dummy.vv_Logf("s", "c", kOdd, 1, "%s", "m");
    dummy.vv_Logf(u"s", u"c", kOdd, 1, u"%s", u"m");
    EXPECT_EQ(platform::AllocationCount(), before);
}

// Passes reports on, as an application's broadcaster does.
class Broadcaster : public CT_ErrorBroadcast {
public:
    void vv_Log(const char16_t* text) override {
        const CT_VoidArray facilities = co_GetLogFacilities();
        for (std::uint32_t i = 1; i <= facilities.n_GetCount(); ++i) {
            CT_LogFacility* facility = nullptr;
            facilities.v_GetAt(&facility, static_cast<int>(i));
            facility->vv_Log(text, nullptr, nullptr, kOdd, 0);
        }
    }
};

TEST(ErrorBroadcastTest, RegisteredFacilitiesHearInOrderWhileMoreAreAdded) {
    Broadcaster broadcaster;
    Recorder recorders[64];
    broadcaster.v_RegisterLogFacility(nullptr);  // is none
    std::thread adding([&] {
        for (Recorder& recorder : recorders) broadcaster.v_RegisterLogFacility(&recorder);
    });
    for (int i = 0; i < 50; ++i) broadcaster.vv_Log(u"early");
    adding.join();
    broadcaster.vv_Log(u"late");
    for (const Recorder& recorder : recorders) EXPECT_EQ(recorder.heard, "late|(null)|(null)|77|0");
}

TEST(ErrorBroadcastTest, ThreadsThatAskFirstGetTheSameOne) {
    test::KeepsMemory();
    EXPECT_GT(test::FailEachAllocation([] { const CT_ErrorBroadcast broadcast; }), 0u);
    std::vector<CT_ErrorBroadcast*> found(8);
    std::vector<std::thread> threads;
    for (CT_ErrorBroadcast*& one : found) {
        threads.emplace_back([&one] { one = CT_ErrorBroadcast::spco_GetErrorBroadcast(); });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(std::set(found.begin(), found.end()).size(), 1u);
    Recorder recorder;  // the class itself passes nothing on
    found[0]->v_RegisterLogFacility(&recorder);
    found[0]->vv_Log(u"text");
    found[0]->vv_Report("a.cpp", 1, 2, u"text");
    EXPECT_EQ(recorder.heard, "");
}

}  // namespace
