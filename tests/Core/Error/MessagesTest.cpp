// CT_DatabaseError, CT_LoadString, and the error-location box: caption, text, cutting, its Abort.
#include <gtest/gtest.h>

#include <string>

#include "Foundation/Core/Error/DatabaseError.h"
#include "Foundation/Core/Error/ErrorManager.h"
#include "Foundation/Core/Message/LoadString.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Modules.h"
#include "Support/Dialogs.h"
#include "Support/Errors.h"
#include "Support/Platform.h"
#include "Support/Text.h"

namespace platform = zelkor::platform;

namespace {

CT_ErrorManager& Errors() {
    return *CT_ErrorManager::spco_Get();
}

// Codes with a file's name are seen in the messages of record files and glossaries.
TEST(DatabaseErrorTest, UnknownCodesHaveATextAndLongOnesAreCut) {
    char16_t area[255];
    CT_DatabaseError::sv_FormatError(area, 255, 0, u"a.dat");
    EXPECT_EQ(test::Utf8(area), "Unspecified Database Error");
    EXPECT_EQ(CT_DatabaseError::sqcuz_GetErrorMessage(31006), nullptr);
    CT_DatabaseError::sv_FormatError(area, 8, 31050, u"a.dat");
    EXPECT_EQ(test::Utf8(area), "Invalid");
}

TEST(LoadStringTest, LoadsAndFormatsTextsOfAModule) {
    const std::u16string longest(3000, u'x');
    const platform::StringResource texts[] = {
        {1, u"plain"}, {2, u"%s is %d"}, {3, longest.c_str()}, {1, u"shadowed"}};
    const HINSTANCE module = platform::ModuleOf(reinterpret_cast<const void*>(&test::Utf8));
    ASSERT_TRUE(platform::RegisterStringTable(module, texts));
    CT_UString text;
    char16_t area[6];
    for (const HINSTANCE owner : {module, HINSTANCE{}}) {  // null names the program too
        CT_LoadString::sv_LoadString(&text, owner, 1);
        EXPECT_EQ(test::Utf8(text.qcuz_Get()), "plain");
    }
    CT_LoadString::sv_LoadString(area, 4, module, 1);
    EXPECT_EQ(test::Utf8(area), "pla");
    CT_LoadString::sv_LoadStringVA(&text, module, 2, u"it", 5);
    EXPECT_EQ(test::Utf8(text.qcuz_Get()), "it is 5");
    CT_LoadString::sv_LoadStringVA(area, 6, module, 2, u"it", 5);
    EXPECT_EQ(test::Utf8(area), "it is");
    for (const unsigned int id : {3u, 4u}) {  // cut to the area; missing
        CT_LoadString::sv_LoadStringVA(&text, module, id);
        EXPECT_EQ(text.n_GetLength(), id == 3 ? 2047u : 0u);
        CT_LoadString::sv_LoadString(&text, module, id);
        EXPECT_EQ(text.n_GetLength(), id == 3 ? 2047u : 0u);
    }
    CT_LoadString::sv_LoadStringVA(area, 6, module, 4);
    EXPECT_EQ(test::Utf8(area), "");
    text.vv_Init();
    test::FailEachAllocation([module] {
        CT_UString own;
        CT_LoadString::sv_LoadStringVA(&own, module, 2, u"a rather longer text", 5);
    });
    platform::RegisterStringTable(module, {});
    CT_LoadString::sv_LoadString(&text, module, 1);
    EXPECT_EQ(text.n_GetLength(), 0u);
}

TEST(LoadStringTest, TheOlderFamilyHasEightBitTexts) {
    const std::u16string longest(3000, u'\u00FC');
    const platform::StringResource texts[] = {{1, u"gr\u00FCn \u4E00 %s"}, {2, longest.c_str()}};
    ASSERT_TRUE(platform::RegisterStringTable(nullptr, texts));
    const test::ForcedVersion older(1, 4, 10);
    CT_UString text;
    CT_LoadString::sv_LoadStringVA(&text, nullptr, 1, u"\u4E00");
    EXPECT_EQ(test::Utf8(text.qcuz_Get()), "gr\u00FCn ? \u4E00");
    CT_LoadString::sv_LoadString(&text, nullptr, 2);
    EXPECT_EQ(text.n_GetLength(), 2047u);
    Errors().v_SetError(5, nullptr, 60012, u"\u4E00");
    EXPECT_TRUE(test::TakeError(5, u"(5): Semantic error: \u4E00"));
    platform::RegisterStringTable(nullptr, {});
}

constexpr platform::StringResource kTexts[] = {{7, u"Titel"}};

class ErrorWindowTest : public testing::Test {
protected:
    void SetUp() override { platform::RegisterStringTable(module_, kTexts); }
    void TearDown() override {
        platform::RegisterStringTable(module_, {});
        Errors().v_ClearError();
    }

    HINSTANCE module_ = platform::ModuleOf(&kTexts);
    test::MessageBoxes boxes_;
};

TEST_F(ErrorWindowTest, ShowsMessageAndLocationsInnermostFirst) {
    EXPECT_EQ(Errors().i_ErrorLocationWindow(7, u"x", 0), 0);
    EXPECT_EQ(boxes_.count, 0);  // no error, no box
    Errors().v_SetError(9, module_, 8);
    EXPECT_EQ(Errors().i_ErrorLocationWindow(7, nullptr, 2), platform::kAnswerIgnore);
    EXPECT_EQ(boxes_.text, "(9): ");  // no locations: the message alone
    EXPECT_EQ(boxes_.caption, "Titel");
    EXPECT_EQ(boxes_.flags, 0x10002u);

    Errors().v_AddLocation("File/WinFile.cpp", 281);
    Errors().v_AddLocation("C:\\src\\a/b.cpp", 3);
    Errors().v_AddLocation("bare.cpp", 12);
    boxes_.answer = platform::kAnswerRetry;
    EXPECT_EQ(Errors().i_ErrorLocationWindow(7, u"Given", 0), platform::kAnswerRetry);
    EXPECT_EQ(boxes_.text,
              "(9): \n\nWinFile.cpp: line 281\na/b.cpp: line 3\n(unknown file): line 12");
    EXPECT_EQ(boxes_.caption, "Given");
    Errors().v_HoldError();  // a held error is shown too; an unknown title is empty
    Errors().i_ErrorLocationWindow(99, nullptr, 0);
    EXPECT_EQ(boxes_.caption, "");
    EXPECT_EQ(boxes_.text.size(), 5 + 2 + 21 + 1 + 15 + 1 + 23u);
}

TEST_F(ErrorWindowTest, CaptionAndTextShareOneArea) {
    Errors().v_SetMessageError(std::u16string(900, u'm').c_str());
    Errors().v_AddLocation("a/file.cpp", 1);
    for (const std::size_t caption : {0u, 105u, 500u, 1021u, 1023u, 2000u}) {
        SCOPED_TRACE(caption);
        Errors().i_ErrorLocationWindow(0, std::u16string(caption, u'c').c_str(), 0);
        const std::size_t kept = std::min<std::size_t>(caption, 1023);
        const std::size_t whole = 900 + 2 + 16;  // "file.cpp: line 1"
        EXPECT_EQ(boxes_.caption.size(), kept);
        EXPECT_EQ(boxes_.text.size(), std::min<std::size_t>(whole, kept >= 1022 ? 0 : 1022 - kept));
    }
}

TEST_F(ErrorWindowTest, NothingIsCutInsideASurrogatePair) {
    for (const std::size_t before : {1010u, 1011u, 1012u, 1018u, 1019u, 1020u, 1021u, 1022u}) {
        SCOPED_TRACE(before);
        const std::u16string text = std::u16string(before, u'x') + u"\U0001F600\U0001F600";
        const auto whole = [](std::u16string_view cut) {
            return cut.empty() || (cut.back() & 0xFC00) != 0xD800;
        };
        Errors().v_SetError(9, u"%s", text.c_str());
        EXPECT_TRUE(whole(Errors().qcuz_GetErrorMessage()));
        Errors().i_ErrorLocationWindow(0, text.c_str(), 0);
        EXPECT_EQ((boxes_.caption + boxes_.text).find("\\uD83D"), std::string::npos);
        Errors().v_ClearError();
        Errors().v_SetCOMError(static_cast<HRESULT>(0x80004005), text.c_str());
        EXPECT_TRUE(whole(Errors().qcuz_GetErrorMessage()));
        Errors().v_ClearError();
    }
}

TEST_F(ErrorWindowTest, TheOlderFamilySeesEightBitText) {
    const test::ForcedVersion older(1, 4, 10);
    Errors().v_SetMessageError(u"gr\u00FCn \u4E00");
    Errors().i_ErrorLocationWindow(0, u"\u4E8C!", 0);
    EXPECT_EQ(boxes_.text, "gr\u00FCn ?");
    EXPECT_EQ(boxes_.caption, "?!");
}

using ErrorWindowDeathTest = ErrorWindowTest;
TEST_F(ErrorWindowDeathTest, AbortEndsTheProcessAtOnce) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    Errors().v_SetError(9, u"fatal");
    boxes_.answer = platform::kAnswerAbort;
    EXPECT_EXIT(Errors().i_ErrorLocationWindow(0, u"x", 0), testing::KilledBySignal(6),
                "Aborted from an error box");
}

TEST(MessageBoxTest, WithoutAHandlerTheBoxIsPrintedAndIgnored) {
    const std::tuple<std::uint32_t, int, std::string> cases[] = {
        {0, platform::kAnswerOk, ""},
        {1, platform::kAnswerOk, "-> OK\n"},
        {0x10002, platform::kAnswerIgnore, "-> Ignore\n"},
        {3, platform::kAnswerCancel, "-> Cancel\n"},
        {4, platform::kAnswerNo, "-> No\n"},
        {6, platform::kAnswerContinue, "-> Continue\n"}};
    for (const auto& [flags, expected, note] : cases) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(platform::ShowMessageBox(u"gr\u00FCn\xD800", u"Frage", flags), expected);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "Frage: gr\u00FCn?\n" + note);
    }
}

}  // namespace
