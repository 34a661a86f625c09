// Finding, comparing and matching in both kinds of strings.
#include <random>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "Core/String/StringTexts.h"
#include "Foundation/Core/Text/StringTools.h"
#include "Foundation/Platform/CodePages/CodePages.h"

namespace platform = zelkor::platform;

namespace {

using test::kAll, test::Sign;

template <typename Kind>
class StringSearchTest : public testing::Test {};
TYPED_TEST_SUITE(StringSearchTest, test::BothKinds);

TYPED_TEST(StringSearchTest, FindsCharactersAndTexts) {
    using Unit = typename TypeParam::Unit;
    const auto text = test::Make<TypeParam>("hello hello");
    static constexpr std::tuple<const char*, std::uint32_t, std::uint32_t> kCases[] = {
        {"hello", 0, 0}, {"hello", 1, 6}, {"hello", 7, kAll}, {"o", 0, 4},
        {"o", 5, 10},    {"x", 0, kAll},  {"", 3, 3},         {"hello hello!", 0, kAll}};
    for (const auto& [ascii, from, position] : kCases) {
        SCOPED_TRACE(ascii);
        const auto wanted = test::Make<TypeParam>(ascii);
        EXPECT_EQ(text.vn_Find(&wanted, from), position);
        EXPECT_EQ(text.n_Find(TypeParam::Get(wanted), from), position);
        if (wanted.n_GetLength() == 1) {
            EXPECT_EQ(text.vn_Find(TypeParam::At(wanted, 0), from), position);
        }
    }
    EXPECT_EQ(text.vn_Find(Unit{0}), kAll) << "the terminator is not part of the text";
    EXPECT_EQ(text.n_Find(nullptr), kAll);
}

TYPED_TEST(StringSearchTest, ComparesByCodeWithEitherKind) {
    struct Case {
        const char *left, *right;
        std::uint32_t length, at;
        int sign;
    };
    static constexpr char kSame[] = "a text of more units than are compared at once, fifty";
    static constexpr char kLonger[] = "a text of more units than are compared at once, fifty+";
    static constexpr Case kCases[] = {
        {"abc", "abc", kAll, 0, 0},    {"abc", "abd", kAll, 0, -1}, {"abc", "ab", kAll, 0, 1},
        {"ab", "abc", kAll, 0, -1},    {"", "", kAll, 0, 0},        {"", "a", kAll, 0, -1},
        {"a", "", kAll, 0, 1},         {"abc", "abd", 2, 0, 0},     {"abc", "ab", 3, 0, 1},
        {"abc", "xyz", 0, 0, 0},       {"xabc", "abc", kAll, 1, 0}, {"abc", "abc", kAll, 9, -1},
        {kSame, kLonger, kAll, 0, -1}, {kSame, kLonger, 53, 0, 0}};
    for (const Case& c : kCases) {
        SCOPED_TRACE(testing::Message() << c.left << " with " << c.right);
        const auto left = test::Make<TypeParam>(c.left);
        const CT_UString wide(test::Utf16(c.right).c_str());
        const CT_CString narrow(c.right);
        EXPECT_EQ(Sign(left.vi_Compare(&wide, 0, c.length, c.at)), c.sign);
        EXPECT_EQ(Sign(left.vi_Compare(&narrow, 0, c.length, c.at)), c.sign);
        EXPECT_EQ(Sign(left.vi_Compare(wide.qcuz_Get(), c.length, c.at)), c.sign);
        EXPECT_EQ(Sign(left.vi_Compare(narrow.qccz_Get(), c.length, c.at)), c.sign);
    }
    const auto text = test::Make<TypeParam>("lo");
    const CT_UString wide(u"hello");
    const CT_CString narrow("hello");
    EXPECT_EQ(text.vi_Compare(&wide, 3), 0);
    EXPECT_EQ(text.vi_Compare(&narrow, 3), 0);
    EXPECT_GT(text.vi_Compare(static_cast<const CT_String*>(nullptr)), 0);
}

// A text of its own length in a block of its own, so that a sanitizer sees what reads behind it.
template <typename Text>
std::vector<typename Text::value_type> Exact(const Text& text) {
    return {text.begin(), text.end()};
}

TYPED_TEST(StringSearchTest, ACountBoundsTheReadingOfATextWithoutAZero) {
    const auto text = test::Make<TypeParam>("hello");
    for (const auto& [ascii, sign] : {std::pair{"hel", 0}, {"hem", -1}, {"hek", 1}, {"b", 1}}) {
        SCOPED_TRACE(ascii);
        const std::string bytes(ascii);
        const auto narrow = Exact(bytes);
        const auto wide = Exact(test::Utf16(bytes));
        const auto length = static_cast<std::uint32_t>(bytes.size());
        EXPECT_EQ(Sign(text.vi_Compare(narrow.data(), length)), sign);
        EXPECT_EQ(Sign(text.vi_Compare(wide.data(), length)), sign);
        EXPECT_EQ(Sign(CT_StringTools::si_CompareStrings("xhello", narrow.data(), 1, length, 1)),
                  sign);
        EXPECT_EQ(Sign(CT_StringTools::si_CompareStrings(wide.data(), u"HELLO", 0, length)), -sign);
    }
    const auto last = Exact(std::u16string(u"A"));  // equal only without regard to case
    EXPECT_EQ(CT_StringTools::si_CompareStrings(last.data(), u"a", 0, 1), 0);
    // Of a string of the other kind as much is converted as the length asks for.
    const CT_CString long_text(std::string(100000, 'h').c_str());
    EXPECT_EQ(text.vi_Compare(&long_text, 5, 1), 0);
    EXPECT_EQ(Sign(text.vi_Compare(&long_text, 0, 2)), -1);
}

TEST(StringKindsTest, ACountOfCharactersMayTakeMoreBytes) {
    platform::SetSystemCodePages(932, 932);
    const auto bytes = Exact(std::string("\x83\x65x\x83\x65"));  // U+30C6 x U+30C6
    const CT_UString wide(u"\u30C6x\u30C7");
    EXPECT_EQ(wide.vi_Compare(bytes.data(), 2), 0);
    EXPECT_GT(wide.vi_Compare(bytes.data(), 3), 0);
    EXPECT_GT(CT_StringTools::si_CompareStrings("\x83\x66", bytes.data(), 1, 1, 0, 2), 0);
    platform::SetSystemCodePages(0, 0);
}

TEST(StringKindsTest, TheCountOfAStringOfTheOtherKindMayCutAPair) {
    const CT_UString wide(u"x\U0001F600");
    const CT_CString utf8("x\xF0\x9F\x98\x80", kAll, 65001);
    for (std::uint32_t length = 0; length < 7; ++length) {
        EXPECT_EQ(utf8.vi_Compare(&wide, 0, length), 0) << length;
        EXPECT_EQ(wide.vi_Compare(&utf8, 0, length), 0) << length;
    }
}

TEST(StringKindsTest, TextThatCannotBeConvertedIsEmpty) {
    const CT_CString unknown("abc", kAll, 99999);
    EXPECT_GT(unknown.vi_Compare(u"abc"), 0);
    EXPECT_GT(unknown.vi_Compare(u"abc", 3), 0);
    EXPECT_FALSE(test::NoError());
}

TEST(StringKindsTest, EachKindFindsTheOtherEqual) {
    for (const auto& [page, text] : {std::pair{1251u, u"\u041F"},
                                     {65001u, u"\u30C6\u00E4"},
                                     {1200u, u"\u20AC"},
                                     {0xFFFFFFFFu, u"\u00E4"}}) {
        SCOPED_TRACE(page);
        const CT_UString wide(text);
        CT_CString set(page), appended(page), of_wide(page);
        set.v_Set(text);
        appended.v_Append(text);
        of_wide.v_Append(&wide);
        for (const CT_CString* narrow : {&set, &appended, &of_wide}) {
            EXPECT_EQ(narrow->n_GetCodePage(), set.n_GetCodePage());
            EXPECT_EQ(narrow->vi_Compare(&wide), 0);
            EXPECT_EQ(wide.vi_Compare(narrow), 0);
            EXPECT_EQ(CT_UString(narrow).vi_Compare(&wide), 0) << "it can be read";
            CT_CString unset(*narrow);
            unset.v_SetCodePage(page);
            EXPECT_EQ(wide.vi_Compare(&unset), 0);
            EXPECT_EQ(unset.vi_Compare(&wide), 0);
        }
    }
    EXPECT_TRUE(test::NoError());
}

TEST(StringKindsTest, ComparisonTakesCodesAsUnsignedAndEndsAtAZero) {
    EXPECT_EQ(CT_CString("\xE4").vi_Compare("z"), 1);
    EXPECT_GT(CT_UString(u"\uFFFD").vi_Compare(u"a"), 0);
    EXPECT_EQ(CT_UString(u"\u00E4").vi_Compare("\xE4"), 0) << "8-bit text is code page 0";
    EXPECT_EQ(CT_CString("\xCF", kAll, 1251).vi_Compare(u"\u041F"), 0);
    CT_UString cut(u"abcd");
    cut.quz_Get()[2] = 0;
    EXPECT_EQ(cut.vi_Compare(u"ab"), 0);
    CT_UString other(u"abxyz");
    other.quz_Get()[2] = 0;
    EXPECT_EQ(cut.vi_Compare(&other), 0);
}

TYPED_TEST(StringSearchTest, KnowsItsBeginningAndEnd) {
    const auto text = test::Make<TypeParam>("hello");
    static constexpr std::tuple<const char*, bool, bool> kCases[] = {
        {"", true, true},      {"he", true, false},      {"lo", false, true},
        {"hello", true, true}, {"hello!", false, false}, {"HE", false, false}};
    for (const auto& [part, starts, ends] : kCases) {
        SCOPED_TRACE(part);
        EXPECT_EQ(text.b_StartsWith(TypeParam::Text(part).c_str()), starts ? TRUE : FALSE);
        EXPECT_EQ(text.b_EndsWith(TypeParam::Text(part).c_str()), ends ? TRUE : FALSE);
    }
    EXPECT_FALSE(text.b_StartsWith(nullptr));
    EXPECT_FALSE(text.b_EndsWith(nullptr));
}

// The slow and obvious matcher: the shortest run for each star first, then longer ones.
bool Matches(const char* text, const char* pattern) {
    if (*pattern == 0) return *text == 0;
    if (*pattern == '*') {
        return Matches(text, pattern + 1) || (*text != 0 && Matches(text + 1, pattern));
    }
    return *text != 0 && (*pattern == '?' || *pattern == *text) && Matches(text + 1, pattern + 1);
}

TYPED_TEST(StringSearchTest, WildcardsAgreeWithBacktrackingAndStayFast) {
    std::mt19937 random(3);
    const auto pick = [&random](const char* letters, std::size_t most) {
        std::string made(random() % (most + 1), ' ');
        for (char& c : made) c = letters[random() % 4];
        return made;
    };
    for (int i = 0; i < 20000; ++i) {
        const std::string text = pick("abab", 12);
        const std::string pattern = pick("ab*?", 8);
        const auto string = test::Make<TypeParam>(text);
        const auto wildcards = test::Make<TypeParam>(pattern);
        const bool expected = pattern.empty() || Matches(text.c_str(), pattern.c_str());
        ASSERT_EQ(string.vb_Match(&wildcards), expected ? TRUE : FALSE)
            << text << " against " << pattern;
        ASSERT_EQ(string.b_Match(TypeParam::Get(wildcards)), expected ? TRUE : FALSE);
    }
    EXPECT_TRUE(test::Make<TypeParam>("x").b_Match(nullptr));
    // Backtracking through every star would take longer than anyone waits.
    std::string hostile;
    for (int i = 0; i < 60; ++i) hostile += "*a";
    EXPECT_FALSE(test::Make<TypeParam>(std::string(2000, 'a'))
                     .b_Match(TypeParam::Text(hostile + "*b").c_str()));
}

}  // namespace
