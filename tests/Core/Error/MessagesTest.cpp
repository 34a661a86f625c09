// CT_DatabaseError and CT_LoadString.
#include <gtest/gtest.h>

#include <string>

#include "Foundation/Core/Error/DatabaseError.h"
#include "Foundation/Core/Error/ErrorManager.h"
#include "Foundation/Core/Error/LoadString.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Platform/Modules.h"
#include "Support/Errors.h"
#include "Support/Platform.h"
#include "Support/Text.h"

namespace {

TEST(DatabaseErrorTest, FormatsTheMessageOfACode) {
    const std::pair<unsigned int, const char*> cases[] = {
        {31050, "Invalid RecordManager file format in a.dat"},
        {32014, "Feature space exceeded"},
        {0, "Unspecified Database Error"}};
    for (const auto& [code, text] : cases) {
        char16_t area[255];
        CT_DatabaseError::sv_FormatError(area, 255, code, u"a.dat");
        EXPECT_EQ(test::Utf8(area), text);
    }
    EXPECT_EQ(CT_DatabaseError::sqcuz_GetErrorMessage(31006), nullptr);
    char16_t small[8];
    CT_DatabaseError::sv_FormatError(small, 8, 31050, u"a.dat");
    EXPECT_EQ(test::Utf8(small), "Invalid");
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
    CT_ErrorManager::spco_Get()->v_SetError(5, nullptr, 60012, u"\u4E00");
    EXPECT_TRUE(test::TakeError(5, u"(5): Semantic error: \u4E00"));
    platform::RegisterStringTable(nullptr, {});
}

}  // namespace
