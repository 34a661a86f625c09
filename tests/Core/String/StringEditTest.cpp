// Editing both kinds of strings: the same table for each, shared and not.
#include <functional>
#include <string>
#include <vector>

#include "Core/String/StringTexts.h"

namespace {

using test::kAll;

template <typename Kind>
struct Case {
    const char* before;
    std::function<void(typename Kind::String&)> edit;
    const char* after;
};

// Makes each edit on a text of its own and on a shared one, whose sharer must not change.
template <typename Kind>
void Run(const std::vector<Case<Kind>>& cases) {
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << '"' << c.before << "\" -> \"" << c.after << '"');
        for (const bool shared : {false, true}) {
            auto text = test::Make<Kind>(c.before);
            const auto sharer = shared ? text : test::Make<Kind>(c.before);
            c.edit(text);
            EXPECT_EQ(test::Ascii<Kind>(text), c.after) << "shared " << shared;
            EXPECT_EQ(test::Ascii<Kind>(sharer), c.before);
        }
    }
}

template <typename Kind>
class StringEditTest : public testing::Test {};
TYPED_TEST_SUITE(StringEditTest, test::BothKinds);

TYPED_TEST(StringEditTest, EditsGiveTheSameTextSharedOrNot) {
    using String = typename TypeParam::String;
    using Unit = typename TypeParam::Unit;
    const auto text = [](const char* ascii) { return TypeParam::Text(ascii); };
    const auto own = [](const String& s) { return TypeParam::Get(s); };
    const String xyz = test::Make<TypeParam>("xyz");
    Run<TypeParam>({
        {"", [](String& s) { s.v_Append(Unit{'a'}); }, "a"},
        {"ab", [](String& s) { s.v_Append(Unit{'c'}); }, "abc"},
        {"ab", [](String& s) { s.v_Append(Unit{0}); }, "ab"},
        {"ab", [&](String& s) { s.v_Append(text("cdef").c_str(), 2); }, "abcd"},
        {"ab", [](String& s) { s.v_Append(static_cast<const Unit*>(nullptr)); }, "ab"},
        {"ab", [&](String& s) { s.v_Append(own(s) + 1); }, "abb"},
        {"ab", [](String& s) { s.v_Append(&s); }, "abab"},
        {"ab", [](String& s) { s.v_Append(static_cast<const String*>(nullptr)); }, "ab"},

        {"hello", [&](String& s) { s.v_Insert(text("XY").c_str(), kAll, 0); }, "XYhello"},
        {"hello", [&](String& s) { s.v_Insert(text("XYZ").c_str(), 2, 5); }, "helloXY"},
        {"", [&](String& s) { s.v_Insert(text("XY").c_str(), kAll, 0); }, "XY"},
        {"hello", [&](String& s) { s.v_Insert(own(s), 3, 1); }, "hhelello"},
        {"hello", [&](String& s) { s.v_Insert(&xyz, 2, 1); }, "hxyello"},
        {"hello", [](String& s) { s.v_Insert(&s, kAll, 2); }, "hehellollo"},

        {"hello", [&](String& s) { s.v_Replace(text("XY").c_str(), 2, 1); }, "hXY"},
        {"hello", [&](String& s) { s.v_Replace(text("XYZXYZ").c_str(), kAll, 3); }, "helXYZXYZ"},
        {"hello", [&](String& s) { s.v_Replace(text("XY").c_str(), 0, 0); }, ""},
        {"hello", [&](String& s) { s.v_Replace(text("XY").c_str(), 0, 2); }, "he"},
        {"hello", [&](String& s) { s.v_Replace(own(s) + 1, kAll, 0); }, "ello"},
        {"hello", [&](String& s) { s.v_Replace(&xyz, 1, kAll, 2); }, "heyz"},
        {"hello", [](String& s) { s.v_Replace(&s, 0, kAll, 3); }, "helhello"},
        {"", [&](String& s) { s.v_Replace(&xyz, 0, 1, 0); }, "x"},

        {"hello", [](String& s) { s.vv_Replace(Unit{'-'}, 3, 4); }, "hell---"},
        {"hello", [](String& s) { s.vv_Replace(Unit{'-'}, kAll, 1); }, "h-----"},
        {"hello", [](String& s) { s.vv_Replace(Unit{'-'}, 2, 1); }, "h--"},
        {"", [](String& s) { s.vv_Replace(Unit{'-'}, 2, 0); }, "--"},

        {"hello", [](String& s) { s.vv_Remove(kAll, 2); }, "he"},
        {"hello", [](String& s) { s.vv_Remove(0, 1); }, "hello"},
        {"hello", [](String& s) { s.vv_Remove(2, 1); }, "hlo"},
        {"hello", [](String& s) { s.vv_Remove(9, 3); }, "hel"},
        {"", [](String& s) { s.vv_Remove(kAll, 0); }, ""},

        {"hello", [](String& s) { s.vv_SetAt(0, 2); }, "he"},
        {"hello", [](String& s) { s.v_SetAt(Unit{'X'}, 4); }, "hellX"},
        {"hello", [](String& s) { s.v_SetAt(Unit{'X'}, 5); }, "helloX"},
        {"hello", [](String& s) { s.v_SetAt(Unit{'X'}, 6); }, "hello"},
        {"hello", [](String& s) { s.v_SetAt(Unit{0}, 6); }, "hello"},
        {"", [](String& s) { s.v_SetAt(Unit{'X'}, 0); }, "X"},

        {"hello", [](String& s) { s.vv_SetSize(2, TRUE); }, "he"},
        {"hello", [](String& s) { s.vv_SetSize(20, TRUE); }, "hello"},
        {"hello", [](String& s) { s.vv_SetSize(10, FALSE); }, ""},
        {"hello", [](String& s) { s.vv_SetMinSize(3, FALSE); }, "hello"},
        {"hello", [](String& s) { s.vv_SetLength(3); }, "hel"},

        {"Hello, World", [](String& s) { s.vv_ToLower(); }, "hello, world"},
        {"Hello, World", [](String& s) { s.vv_ToUpper(); }, "HELLO, WORLD"},

        {" \t a b \r\n", [](String& s) { s.vv_StripLeft(); }, "a b \r\n"},
        {" \t a b \r\n", [](String& s) { s.vv_StripRight(); }, " \t a b"},
        {" \t a b \r\n", [](String& s) { s.vv_Strip(nullptr); }, "a b"},
        {" \t ", [](String& s) { s.vv_Strip(nullptr); }, ""},
        {"xxab yz", [&](String& s) { s.vv_Strip(&xyz); }, "ab "},
        {"aba", [](String& s) { s.vv_Strip(&s); }, ""},
    });
}

TYPED_TEST(StringEditTest, SetsOfEitherKindTranslateAndStrip) {
    using String = typename TypeParam::String;
    const CT_CString narrow_abc("abc"), narrow_x("x"), dash("-");
    const CT_UString wide_abc(u"abc"), wide_x(u"x"), wide_dash(u"-");
    Run<TypeParam>({
        {"aabbcd", [&](String& s) { s.vv_Translate(&narrow_abc, &narrow_x); }, "xxd"},
        {"aabbcd", [&](String& s) { s.vv_Translate(&wide_abc, &wide_x); }, "xxd"},
        {"aabbcd", [&](String& s) { s.vv_Translate(&wide_abc, &narrow_abc); }, "aabbcd"},
        {"aabbcd", [&](String& s) { s.vv_Translate(&wide_abc, nullptr); }, "d"},
        {"abc", [&](String& s) { s.vv_Translate(&s, &narrow_x); }, "x"},
        {"--a-b--", [&](String& s) { s.vv_Strip(&dash); }, "a-b"},
        {"--a-b--", [&](String& s) { s.vv_Strip(&wide_dash); }, "a-b"},
    });
}

TYPED_TEST(StringEditTest, AppendingCharactersDoublesAFullBlock) {
    using Unit = typename TypeParam::Unit;
    typename TypeParam::String text;
    const CT_Buffer& buffer = *text.pcco_GetBuffer();
    for (std::uint32_t length = 1; length < 3000; ++length) {
        const std::uint32_t before = buffer.n_GetMaximumSize();
        text.v_Append(static_cast<Unit>('a' + length % 26));
        CT_Buffer expected(0u);
        const std::uint32_t size = (length + 1) * sizeof(Unit);
        expected.v_SetSize(length == 1 ? sizeof(Unit) : 2 * size, FALSE);
        ASSERT_EQ(buffer.n_GetMaximumSize(), size > before ? expected.n_GetMaximumSize() : before);
        ASSERT_EQ(buffer.n_GetUsedSize(), size);
    }
    EXPECT_EQ(test::Ascii<TypeParam>(text).substr(0, 5), "bcdef");
    typename TypeParam::String tight;
    tight.vv_SetGrowth(1);
    tight.v_Append(Unit{'a'});
    EXPECT_EQ(tight.vn_GetMaximumLength(), 3u) << "the block of the terminator alone was full";
}

TYPED_TEST(StringEditTest, UpdateFindsTheEndOfWhatWasWrittenDirectly) {
    using Unit = typename TypeParam::Unit;
    typename TypeParam::String text;
    text.v_Set(40, FALSE);
    auto* const units = const_cast<Unit*>(TypeParam::Get(text));
    for (int i = 0; i < 30; ++i) units[i] = Unit{'w'};
    units[30] = 0;
    text.vv_Update();
    EXPECT_EQ(test::Ascii<TypeParam>(text), std::string(30, 'w'));
    units[3] = 0;
    const typename TypeParam::String sharer = text;
    text.vv_Update();
    EXPECT_EQ(test::Ascii<TypeParam>(text), "www");
    EXPECT_EQ(sharer.n_GetLength(), 30u);
}

// Arguments, widths and errors of formatting are the runtime's own tests; here is what becomes of
// the result.
TYPED_TEST(StringEditTest, AFormattedResultOfAnyLengthReplacesTheText) {
    using String = typename TypeParam::String;
    const auto text = [](const char* ascii) { return TypeParam::Text(ascii); };
    for (const int length : {1, 2047, 2048, 2049, 3000, 40000}) {
        String result = test::Make<TypeParam>("before");
        const String sharer = result;
        result.v_Format(text("%*d").c_str(), length, 7);
        EXPECT_EQ(test::Ascii<TypeParam>(result), std::string(std::size_t(length - 1), ' ') + '7');
        EXPECT_EQ(test::Ascii<TypeParam>(sharer), "before");
    }
    String result = test::Make<TypeParam>("x");
    const String format = test::Make<TypeParam>("%d:%s:%s");
    result.vv_Format(&format, 5, TypeParam::Get(result), TypeParam::Get(format));
    EXPECT_EQ(test::Ascii<TypeParam>(result), "5:x:%d:%s:%s");
    result.v_Format(text("%d").c_str(), 0);
    EXPECT_EQ(test::Ascii<TypeParam>(result), "0") << "a lone zero is a value, not a list";
    const String number = test::Make<TypeParam>("%u");
    result.vv_Format(&number, 0u);
    EXPECT_EQ(test::Ascii<TypeParam>(result), "0");
    result.v_Format(text("%s").c_str(), text("").c_str());
    EXPECT_EQ(test::Ascii<TypeParam>(result), "");
}

}  // namespace
