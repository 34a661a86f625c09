// CT_Buffer: editing, searching and comparing, table by table.
#include <functional>
#include <random>
#include <tuple>

#include "Core/Buffer/BufferTexts.h"

namespace {

using test::Content;
using test::kAll;
using test::Make;

const char* Own(const CT_Buffer& buffer) {
    return static_cast<const char*>(buffer.qcv_Get());
}

TEST(BufferEditTest, EditsGiveTheSameContentSharedOrNotFittingOrNot) {
    struct Case {
        const char* before;
        std::function<void(CT_Buffer&)> edit;
        const char* after;
    };
    const CT_Buffer xyz = Make("xyz");
    const Case cases[] = {
        {"abc", [](CT_Buffer& b) { b.v_Replace('y', kAll, 1); }, "ayy"},
        {"abc", [](CT_Buffer& b) { b.v_Replace('y', 2, 2); }, "abyy"},
        {"abc", [](CT_Buffer& b) { b.v_Replace('y', 0, 2); }, "abc"},
        {"abc", [](CT_Buffer& b) { b.v_Replace("XY", 2, 0); }, "XYc"},
        {"abc", [](CT_Buffer& b) { b.v_Replace("XYZ", kAll, 1); }, "aXY"},
        {"abcd", [](CT_Buffer& b) { b.v_Replace(Own(b), 3, 1); }, "aabc"},
        {"abcd", [](CT_Buffer& b) { b.v_Replace(&b, 0, kAll, 2); }, "ababcd"},
        {"abc", [&](CT_Buffer& b) { b.v_Replace(&xyz, 1, kAll, 3); }, "abcyz"},
        {"ab", [](CT_Buffer& b) { b.v_Insert('x', 2, 0); }, "xxab"},
        {"ab", [](CT_Buffer& b) { b.v_Insert("XY", 2, 1); }, "aXYb"},
        {"abcd", [](CT_Buffer& b) { b.v_Insert(Own(b), 3, 1); }, "aabcbcd"},
        {"ab", [&](CT_Buffer& b) { b.v_Insert(&xyz, 1, kAll, 2); }, "abyz"},
        {"ab", [&](CT_Buffer& b) { b.v_AtInsertCopy(&xyz, 0, 2, 1); }, "axyb"},
        {"ab", [](CT_Buffer& b) { b.v_Append("cd", 2); }, "abcd"},
        {"ab", [](CT_Buffer& b) { b.v_Append('c'); }, "abc"},
        {"ab", [](CT_Buffer& b) { b.v_Append(&b, 0, kAll); }, "abab"},
        {"abcdef", [](CT_Buffer& b) { b.v_Remove(kAll, 3); }, "abc"},
        {"abcdef", [](CT_Buffer& b) { b.v_Remove(2, 1); }, "adef"},
        {"abcdef", [](CT_Buffer& b) { b.v_Remove(9, 4); }, "abcd"},
        {"abcdef", [](CT_Buffer& b) { b.v_AtInsertMove(0, 2, 5); }, "cdeabf"},
        {"abcdef", [](CT_Buffer& b) { b.v_AtInsertMove(4, 2, 1); }, "aefbcd"},
        {"abcdef", [](CT_Buffer& b) { b.v_AtInsertMove(2, 2, 2); }, "abcdef"},
        {"abcdef", [](CT_Buffer& b) { b.v_AtInsertCopy(0, 2, 4); }, "abcdabef"},
        {"abcdef", [](CT_Buffer& b) { b.v_AtInsertCopy(4, 2, 1); }, "aefbcdef"},
        {"abcdef", [](CT_Buffer& b) { b.v_AtInsertCopy(1, 4, 3); }, "abcbcdedef"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.before << " -> " << c.after);
        for (const bool shared : {false, true}) {
            for (const bool full : {false, true}) {
                CT_Buffer buffer = Make(c.before);
                if (full) {
                    buffer.v_SetGrowth(1);
                    buffer.v_SetSize(buffer.n_GetUsedSize(), TRUE);
                }
                const CT_Buffer sharer = shared ? buffer : Make(c.before);
                c.edit(buffer);
                EXPECT_EQ(Content(buffer), c.after) << "shared " << shared << ", full " << full;
                EXPECT_EQ(Content(sharer), c.before);
            }
        }
    }
}

TEST(BufferEditTest, InsertingAnOwnCopyResetsTheGrowthOnlyWhenTheBlockIsReplaced) {
    CT_Buffer roomy(100, 50);
    roomy.v_Append("abcdef", 6);
    roomy.v_AtInsertCopy(0, 2, 4);
    EXPECT_EQ(roomy.n_GetGrowth(), 50u);

    CT_Buffer full(8, 20);
    full.v_Append("abcdefgh", 8);
    full.v_AtInsertCopy(0, 2, 4);
    EXPECT_EQ(Content(full), "abcdabefgh");
    EXPECT_EQ(full.n_GetGrowth(), 32u);
    EXPECT_EQ(full.n_GetMaximumSize(), 20u);
}

TEST(BufferEditTest, MovingBetweenBuffersTakesTheBytesOutOfTheSource) {
    struct Case {
        std::uint32_t from, length, at;
        const char *target, *source;
    };
    for (const Case& c : {Case{1, 2, 1, "aYZb", "XW"}, {2, kAll, 2, "abZW", "XY"}}) {
        CT_Buffer target = Make("ab");
        CT_Buffer source = Make("XYZW");
        target.v_AtInsertMove(&source, c.from, c.length, c.at);
        EXPECT_EQ(Content(target), c.target);
        EXPECT_EQ(Content(source), c.source);
    }
    CT_Buffer self = Make("abcdef");
    self.v_AtInsertMove(&self, 0, 2, 6);
    EXPECT_EQ(Content(self), "cdefab");
}

// Moves against a plain reference, through all three places that the range is saved in.
TEST(BufferEditTest, MovesAgreeWithAReferenceAtAnySize) {
    std::mt19937 engine(7);
    const auto random = [&engine] { return static_cast<std::uint32_t>(engine()); };
    for (int i = 0; i < 2000; ++i) {
        std::string text(random() % 200 + 1, ' ');
        for (char& c : text) c = static_cast<char>('a' + random() % 26);
        const auto size = static_cast<std::uint32_t>(text.size());
        const std::uint32_t from = random() % size, length = random() % (size - from + 1);
        std::uint32_t at = random() % (size + 1);
        if (at > from && at < from + length) at = from;
        CT_Buffer buffer(size, random() % 2 == 0 ? 1 : 128);
        buffer.v_Append(text.data(), size);
        buffer.v_AtInsertMove(from, length, at);
        const std::string moved = text.substr(from, length);
        text.erase(from, length);
        text.insert(at > from ? at - length : at, moved);
        ASSERT_EQ(Content(buffer), text);
    }
}

TEST(BufferEditTest, FindsBytesWithinTheUsedPart) {
    CT_Buffer buffer = Make("abcdcd");
    static constexpr std::tuple<std::string_view, std::uint32_t, std::uint32_t> kCases[] = {
        {"cd", 0, 2},     {"cd", 3, 4},   {"cd", 5, kAll},     {"de", 0, kAll},
        {"abcdcd", 0, 0}, {"d", 6, kAll}, {"abcdcdx", 0, kAll}};
    for (const auto& [wanted, from, position] : kCases) {
        SCOPED_TRACE(testing::Message() << wanted << " from " << from);
        const auto length = static_cast<std::uint32_t>(wanted.size());
        EXPECT_EQ(buffer.n_Find(wanted.data(), length, from), position);
    }
    EXPECT_EQ(buffer.n_Find("cd", 0, 3), 4u) << "length 0 looks for the first byte";
    EXPECT_EQ(buffer.n_Find('d', 4), 5u);
    EXPECT_EQ(CT_Buffer().n_Find('d', 0), kAll);
    buffer.v_SetUsedSize(3);
    EXPECT_EQ(buffer.n_Find('d', 0), kAll);
}

TEST(BufferEditTest, EqualityReachesAsFarAsBothDo) {
    const CT_Buffer ab = Make("ab");
    EXPECT_TRUE(ab.b_IsEqual("abcd", 4, 0));
    EXPECT_FALSE(ab.b_IsEqual("ax", 2, 0));
    EXPECT_TRUE(ab.b_IsEqual("ax", 1, 0));
    EXPECT_TRUE(ab.b_IsEqual("xy", 2, 2));
    EXPECT_TRUE(CT_Buffer().b_IsEqual("anything", 8, 0));
    const CT_Buffer xbc = Make("xbc");
    EXPECT_TRUE(ab.b_IsEqual(&xbc, 1, kAll, 1));
    EXPECT_TRUE(ab.b_IsEqual(&xbc, 3, kAll, 0));
    EXPECT_FALSE(ab.b_IsEqual(&xbc, 0, kAll, 0));
}

}  // namespace
