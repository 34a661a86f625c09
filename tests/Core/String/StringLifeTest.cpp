// Making, assigning and sizing strings, and assignment across the two kinds.
#include <string>

#include "Core/String/StringTexts.h"
#include "Foundation/Core/String/UStringWrapper.h"

namespace {

using test::Ascii;
using test::kAll;

template <typename Kind>
class StringLifeTest : public testing::Test {};
TYPED_TEST_SUITE(StringLifeTest, test::BothKinds);

TYPED_TEST(StringLifeTest, ANewStringIsEmptyAndHasNoBlock) {
    const typename TypeParam::String text;
    EXPECT_EQ(text.vn_GetLength(), 0u);
    EXPECT_EQ(text.vn_GetMaximumLength(), 0u);
    EXPECT_EQ(Ascii<TypeParam>(text), "");
    EXPECT_EQ(TypeParam::At(text, 0), 0);
}

TYPED_TEST(StringLifeTest, AssignmentBringsTheBlockToThePolicySize) {
    using Unit = typename TypeParam::Unit;
    typename TypeParam::String text;
    const auto capacity = [&](std::uint32_t bytes) {
        CT_Buffer buffer;
        buffer.v_SetSize(bytes, FALSE);
        return static_cast<std::uint32_t>(buffer.n_GetMaximumSize() / sizeof(Unit) - 1);
    };
    for (const std::uint32_t length : {3u, 2000u, 9u, 40u, 1u}) {
        const std::string ascii(length, 'm');
        text.v_Set(TypeParam::Text(ascii).c_str());
        EXPECT_EQ(Ascii<TypeParam>(text), ascii);
        EXPECT_EQ(text.vn_GetMaximumLength(), capacity((length + 1) * sizeof(Unit)));
    }
    text.v_Set(TypeParam::Text("cut here").c_str(), 3);
    EXPECT_EQ(Ascii<TypeParam>(text), "cut");
    text.v_Set(TypeParam::Get(text) + 1, 2);
    EXPECT_EQ(Ascii<TypeParam>(text), "ut");
    text.v_Set(TypeParam::Text("").c_str());
    EXPECT_EQ(text.pcco_GetBuffer()->qcv_Get(), nullptr);
    text.v_Set(TypeParam::Text("again").c_str());
    text.v_Set(nullptr);
    EXPECT_EQ(text.pcco_GetBuffer()->qcv_Get(), nullptr);
}

TYPED_TEST(StringLifeTest, TheLiteralsNullptrAndZeroNeedNoCast) {
    using String = typename TypeParam::String;
    String text(nullptr), other(0);
    EXPECT_EQ(text.vi_Compare(nullptr), 0);
    text.v_Append(nullptr);
    text.v_Append('a');
    text.v_Append(0);
    text.v_Insert(nullptr, 0, 1);
    EXPECT_EQ(Ascii<TypeParam>(text), "a");
    EXPECT_GT(text.vi_Compare(nullptr), 0);
    EXPECT_EQ(text.vi_Compare(nullptr, 0), 0);
    for (const auto& empty : {+[](String& s) { s.v_Set(0); }, +[](String& s) { s.vv_Init(0); },
                              +[](String& s) { s.vv_Init(nullptr); }}) {
        other = text;
        empty(other);
        EXPECT_EQ(other.pcco_GetBuffer()->qcv_Get(), nullptr);
    }
    other.v_Set(20);
    EXPECT_GE(other.vn_GetMaximumLength(), 20u);
}

TYPED_TEST(StringLifeTest, CopiesShareUntilOneChanges) {
    using String = typename TypeParam::String;
    const String original = test::Make<TypeParam>("shared");
    String copy = original;
    String assigned;
    assigned = copy;
    String set;
    set.v_Set(&original);
    String from_buffer(original.pcco_GetBuffer());
    EXPECT_EQ(original.pcco_GetBuffer()->n_GetUseCount(), 5u);
    copy.v_CopyWeWrite();
    EXPECT_EQ(original.pcco_GetBuffer()->n_GetUseCount(), 4u);
    String moved = std::move(assigned);
    EXPECT_EQ(Ascii<TypeParam>(moved), "shared");
    EXPECT_EQ(original.pcco_GetBuffer()->n_GetUseCount(), 4u);
    set = *&set;
    set.v_Set(&set);
    EXPECT_EQ(Ascii<TypeParam>(set), "shared");
}

TYPED_TEST(StringLifeTest, EmptyingKeepsTheBlockOnlyWhereAsked) {
    using String = typename TypeParam::String;
    String text;
    text.v_Set(100, FALSE);
    text.v_Append(TypeParam::Text("something").c_str());
    const void* const block = text.pcco_GetBuffer()->qcv_Get();
    text.v_Set(50, TRUE);
    EXPECT_EQ(Ascii<TypeParam>(text), "");
    EXPECT_EQ(text.pcco_GetBuffer()->qcv_Get(), block);
    text.v_Set(500, TRUE);
    EXPECT_GE(text.vn_GetMaximumLength(), 500u);
    text.vv_SetLength(0);
    EXPECT_EQ(text.pcco_GetBuffer()->n_GetMaximumSize(), 20u);
    EXPECT_EQ(text.pcco_GetBuffer()->n_GetUsedSize(), sizeof(typename TypeParam::Unit));
    text.vv_SetSize(0, TRUE);
    EXPECT_EQ(text.pcco_GetBuffer()->qcv_Get(), nullptr);
    text.vv_SetGrowth(64);
    EXPECT_EQ(text.vn_GetGrowth(), 64u);
    EXPECT_EQ(text.pcco_GetBuffer()->n_GetGrowth(), 64u * sizeof(typename TypeParam::Unit));
}

TEST(StringKindsTest, AssignmentAcrossTheKindsConvertsByTheCodePage) {
    const CT_CString cyrillic("\xCF\xF0", kAll, 1251);
    CT_UString wide;
    wide = cyrillic;
    EXPECT_EQ(std::u16string(wide.qcuz_Get()), u"\u041F\u0440");
    EXPECT_EQ(std::u16string(CT_UString("\xCF\xF0", 1, 1251).qcuz_Get()), u"\u041F");
    wide.v_Append(&cyrillic);
    EXPECT_EQ(wide.n_GetLength(), 4u);

    CT_CString narrow(1251u);
    narrow = wide;
    EXPECT_STREQ(narrow.qccz_Get(), "\xCF\xF0\xCF\xF0");
    narrow.v_Append(u"\u042F");
    narrow.v_Append(&wide);
    EXPECT_STREQ(narrow.qccz_Get(), "\xCF\xF0\xCF\xF0\xDF\xCF\xF0\xCF\xF0");
    EXPECT_EQ(narrow.n_GetCodePage(), 1251u);
    EXPECT_EQ(CT_CString(&wide, 0xFFFFFFFF).n_GetCodePage(), 0u);

    CT_CString copy(1252u);
    copy.v_Set("abc");
    EXPECT_EQ(copy.n_GetCodePage(), 1252u) << "v_Set keeps the own page by default";
    copy.v_Set("abc", kAll, 1250);
    EXPECT_EQ(copy.n_GetCodePage(), 1250u);
    copy.v_Set(&cyrillic);
    EXPECT_EQ(copy.n_GetCodePage(), 1251u);
    EXPECT_EQ(copy.pcco_GetBuffer()->qcv_Get(), cyrillic.pcco_GetBuffer()->qcv_Get());

    CT_String* const any = &wide;
    any->v_Set(&cyrillic);
    EXPECT_EQ(wide.n_GetLength(), 2u);
    any->v_Set(nullptr);
    EXPECT_EQ(wide.pcco_GetBuffer()->qcv_Get(), nullptr);
}

TEST(StringKindsTest, WrappersOrderByCharacterCode) {
    const CT_UString texts[] = {CT_UString(u"Z"), CT_UString(u"a"), CT_UString(u"aa"),
                                CT_UString(u"b"), CT_UString(u"\uFF5E")};
    for (const CT_UString& a : texts) {
        for (const CT_UString& b : texts) {
            EXPECT_EQ(CT_UStringWrapper(&a) < CT_UStringWrapper(&b), &a < &b);
        }
    }
}

}  // namespace
