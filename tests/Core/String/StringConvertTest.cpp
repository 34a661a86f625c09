// CT_StringConvert: arguments, flags, replacements and recorded failures. The tables themselves are
// tested with the ground's code pages.
#include "Foundation/Core/String/StringConvert.h"

#include <string>

#include "Core/String/StringTexts.h"

namespace {

using test::kAll;

std::u16string Text(const CT_UString& text) {
    return {text.qcuz_Get(), text.n_GetLength()};
}

std::string Text(const CT_CString& text) {
    return {text.qccz_Get(), text.n_GetLength()};
}

// Whether the thread has this error, recorded by the conversion; it is cleared.
testing::AssertionResult TakeConversionError(unsigned int code) {
    return test::TakeError(code, {}, "String/StringConvert.cpp");
}

TEST(StringConvertTest, DecodesByThePageAndLength) {
    struct Case {
        std::string text;
        std::uint32_t length, page;
        std::u16string wide;
    };
    const std::string long_text(5000, '\xE4');
    const Case cases[] = {
        {"abc", 2, 0, u"ab"},
        {"\xE4", kAll, 0, u"\u00E4"},
        {"\xE4\xF6", kAll, 1251, u"\u0434\u0446"},
        {"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", kAll, 65001, u"\u00E4\u20AC\U0001F600"},
        {"+AOQ-", kAll, 65000, u"\u00E4"},
        {std::string("a\0b", 3), 3, 1252, std::u16string(u"a\0b", 3)},
        {std::string(1, '\0'), 1, 1252, u"?"},
        {std::string(2, '\0'), 2, 1252, std::u16string(2, u'\0')},
        {long_text, kAll, 1252, std::u16string(5000, u'\u00E4')},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(test::Utf8(c.wide).substr(0, 20));
        CT_UString out(u"before");
        EXPECT_EQ(CT_StringConvert::si_MultiToWide(&out, c.text.c_str(), c.length, c.page),
                  static_cast<int>(c.wide.size()));
        EXPECT_EQ(Text(out), c.wide);
        const CT_UString assigned(c.wide.c_str(), static_cast<std::uint32_t>(c.wide.size()));
        EXPECT_EQ(out.vn_GetMaximumLength(), assigned.vn_GetMaximumLength());
        if (c.length == kAll) {
            const CT_CString narrow(c.text.c_str(), kAll, c.page);
            CT_StringConvert::si_MultiToWide(&out, &narrow);
            EXPECT_EQ(Text(out), c.wide);
        }
    }
}

TEST(StringConvertTest, EncodesByThePageAndTellsOfDefaults) {
    struct Case {
        std::u16string text;
        std::uint32_t length, page;
        const char* default_character;
        std::string narrow;
        std::uint32_t result_page;
        int used_default;
    };
    const Case cases[] = {
        {u"abc", 2, 0, nullptr, "ab", 0, FALSE},
        {u"\u00E4\u20AC", kAll, 1200, nullptr, "\xE4\x80", 1252, FALSE},
        {u"a\u3042b", kAll, 1252, nullptr, "a?b", 1252, TRUE},
        {u"a\u3042b", kAll, 1252, "#", "a#b", 1252, TRUE},
        {std::u16string(4000, u'\u0434'), kAll, 1251, nullptr, std::string(4000, '\xE4'), 1251,
         FALSE},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(test::Utf8(c.text).substr(0, 20));
        CT_CString out("before", kAll, 437);
        BOOL used_default = 7;
        EXPECT_EQ(CT_StringConvert::si_WideToMulti(&out, c.text.c_str(), c.length, c.page,
                                                   c.default_character, &used_default),
                  static_cast<int>(c.narrow.size()));
        EXPECT_EQ(Text(out), c.narrow);
        EXPECT_EQ(out.n_GetCodePage(), c.result_page);
        EXPECT_EQ(used_default, c.used_default);
        const CT_CString assigned(c.narrow.c_str(), kAll);
        EXPECT_EQ(out.vn_GetMaximumLength(), assigned.vn_GetMaximumLength());
    }
    CT_CString out;
    const CT_UString euro(u"\u20AC\U0001F600");
    EXPECT_EQ(CT_StringConvert::si_WideToMulti(&out, &euro, 65001), 7);
    EXPECT_EQ(Text(out), "\xE2\x82\xAC\xF0\x9F\x98\x80");
    const std::u16string many(3000, u'\u20AC');
    EXPECT_EQ(CT_StringConvert::si_WideToMulti(&out, many.c_str(), kAll, 65001), 9000);
    EXPECT_EQ(Text(out).substr(8994), "\xE2\x82\xAC\xE2\x82\xAC");
}

TEST(StringConvertTest, EmptyTextsEmptyTheTargetWithoutAnError) {
    CT_UString wide;
    wide.v_Set(100, FALSE);
    wide.v_Append(u"before");
    const void* const block = wide.pcco_GetBuffer()->qcv_Get();
    EXPECT_EQ(CT_StringConvert::si_MultiToWide(&wide, "", kAll, 1252), 0);
    EXPECT_EQ(Text(wide), u"");
    EXPECT_EQ(wide.pcco_GetBuffer()->qcv_Get(), block) << "the memory is kept";
    wide.v_Append(u"before");
    EXPECT_EQ(CT_StringConvert::si_MultiToWide(&wide, nullptr), 0);
    EXPECT_EQ(Text(wide), u"");
    CT_CString narrow("before", kAll, 437);
    BOOL used_default = TRUE;
    EXPECT_EQ(CT_StringConvert::si_WideToMulti(&narrow, u"abc", 0, 1200, nullptr, &used_default),
              0);
    EXPECT_EQ(Text(narrow), "");
    EXPECT_EQ(narrow.n_GetCodePage(), 1252u);
    EXPECT_EQ(used_default, FALSE);
    EXPECT_TRUE(test::NoError());
}

TEST(StringConvertTest, FailuresAreRecordedWithTheirPlaceAndEmptyTheTarget) {
    const std::string long_text(3000, 'x');
    for (const char* text : {"abc", long_text.c_str()}) {
        CT_UString wide(u"before");
        EXPECT_EQ(CT_StringConvert::si_MultiToWide(&wide, text, kAll, 4711), 0);
        EXPECT_TRUE(TakeConversionError(87));
        EXPECT_EQ(Text(wide), u"");
        CT_CString narrow("before");
        const std::u16string source = test::Utf16(text);
        EXPECT_EQ(CT_StringConvert::si_WideToMulti(&narrow, source.c_str(), kAll, 4711), 0);
        EXPECT_TRUE(TakeConversionError(87));
        EXPECT_EQ(Text(narrow), "");
        EXPECT_EQ(narrow.n_GetCodePage(), 4711u);
        BOOL used_default = FALSE;
        EXPECT_EQ(CT_StringConvert::si_WideToMulti(&narrow, source.c_str(), kAll, 65001, nullptr,
                                                   &used_default),
                  0);
        EXPECT_TRUE(TakeConversionError(87)) << "UTF-8 has no default character";
    }
    for (const char* text : {"+", "+A", "+AG"}) {  // once code 0
        CT_UString wide(u"before");
        EXPECT_EQ(CT_StringConvert::si_MultiToWide(&wide, text, kAll, 65000), 0);
        EXPECT_TRUE(TakeConversionError(1113)) << text;
    }
    EXPECT_EQ(CT_StringConvert::si_MultiToWide(nullptr, "abc", kAll, 1252), 0);
    EXPECT_EQ(CT_StringConvert::si_WideToMulti(nullptr, u"abc", kAll, 1252), 0);
    CT_CString symbols;
    EXPECT_EQ(CT_StringConvert::si_WideToMulti(&symbols, u"\u3042", kAll, 42), 0);
    EXPECT_TRUE(TakeConversionError(1113));
    EXPECT_EQ(CT_UString("abc", kAll, 4711).n_GetLength(), 0u);
    EXPECT_TRUE(test::TakeError(87));
}

}  // namespace
