// CT_Buffer: editing, searching and comparing, beside a std::string.
#include <functional>
#include <random>

#include "Core/Buffer/BufferTexts.h"

namespace {

using test::Content;
using test::kAll;
using test::Make;

// Part of a text, with the count that names it to the buffer: at its end also "all".
struct Piece {
    Piece(const std::string& whole, std::mt19937& random)
        : from(static_cast<std::uint32_t>(random() % (whole.size() + 1))),
          n(static_cast<std::uint32_t>(random() % (whole.size() - from + 1))),
          text(whole.substr(from, n)) {
        if (from + n == whole.size() && random() % 2 == 0) count = kAll;
    }
    std::uint32_t from, n, count = n;
    std::string text;
};
constexpr std::size_t kEdits = 16;

// One random edit of a random buffer, which may be full; it and its source may share their blocks.
void EditOnce(std::mt19937& random, std::size_t edit) {
    const auto text = [&random] {
        std::string letters(random() % (random() % 4 == 0 ? 900 : 90), ' ');
        for (char& letter : letters) letter = static_cast<char>('a' + random() % 4);
        return letters;
    };
    const std::string before = text(), other = text();
    CT_Buffer buffer = Make(before, random() % 2 == 0 ? 1 : 64), source = Make(other);
    CT_Buffer &b = buffer, &s = source;
    const CT_Buffer sharer = random() % 2 == 0 ? buffer : CT_Buffer();
    const CT_Buffer source_sharer = random() % 2 == 0 ? source : CT_Buffer();
    const Piece own(before, random), its(other, random);
    const char* const data = static_cast<const char*>(buffer.qcv_Get()) + own.from;
    auto at = static_cast<std::uint32_t>(random() % (before.size() + 1));
    if (at > own.from && at < own.from + own.n) at = own.from;  // no place to move to
    std::string after = before, left = other;
    const std::string filling(own.n, 'y'), to_end(before.size() - at, 'y');
    const auto overwrite = [&](const std::string& with) {
        after.replace(at, std::min(with.size(), after.size() - at), with);
    };
    const std::function<void()> edits[kEdits] = {
        [&] { b.v_Replace('y', own.n, at), overwrite(filling); },
        [&] { b.v_Replace('y', kAll, at), overwrite(to_end); },
        [&] { b.v_Replace(data, own.n, at), overwrite(own.text); },
        [&] { b.v_Replace(&b, own.from, own.count, at), overwrite(own.text); },
        [&] { b.v_Replace(&s, its.from, its.count, at), overwrite(its.text); },
        [&] { b.v_Insert('y', own.n, at), after.insert(at, filling); },
        [&] { b.v_Insert(data, own.n, at), after.insert(at, own.text); },
        [&] { b.v_Insert(&s, its.from, its.count, at), after.insert(at, its.text); },
        [&] { b.v_AtInsertCopy(&s, its.from, its.count, at), after.insert(at, its.text); },
        [&] { b.v_AtInsertCopy(own.from, own.count, at), after.insert(at, own.text); },
        [&] { b.v_Append(data, own.n), after += own.text; },
        [&] { b.v_Append(&b, own.from, own.count), after += own.text; },
        [&] { b.v_Append('y'), after += 'y'; },
        [&] { b.v_Remove(own.count, own.from), after.erase(own.from, own.n); },
        [&] {
            b.v_AtInsertMove(&s, its.from, its.count, at);
            after.insert(at, its.text), left.erase(its.from, its.n);
        },
        [&] {
            b.v_AtInsertMove(own.from, own.count, at);
            after.erase(own.from, own.n).insert(at > own.from ? at - own.n : at, own.text);
        },
    };
    edits[edit]();
    ASSERT_EQ(Content(buffer), after);
    ASSERT_EQ(Content(source), left);
    ASSERT_EQ(Content(sharer), sharer.qcv_Get() == nullptr ? "" : before);
    ASSERT_EQ(Content(source_sharer), source_sharer.qcv_Get() == nullptr ? "" : other);

    const std::string wanted = its.text.substr(0, 4);
    const auto length = static_cast<std::uint32_t>(wanted.size());
    at = static_cast<std::uint32_t>(random() % (after.size() + 1));
    if (length != 0) {
        const std::size_t hit = after.find(wanted, at);
        ASSERT_EQ(buffer.n_Find(wanted.data(), length, at), hit == after.npos ? kAll : hit);
    }
    const bool equal = after.compare(at, length, wanted, 0, after.size() - at) == 0;
    ASSERT_EQ(buffer.b_IsEqual(wanted.data(), length, at), equal);
    const CT_Buffer same = Make("+" + wanted);
    ASSERT_EQ(buffer.b_IsEqual(&same, 1, kAll, at), equal);
}

TEST(BufferEditTest, EditsSearchesAndComparisonsAgreeWithAString) {
    std::mt19937 random(7);
    for (std::size_t i = 0; i < 1000 * kEdits && !HasFatalFailure(); ++i) {
        SCOPED_TRACE(i % kEdits);
        EditOnce(random, i % kEdits);
    }
}

TEST(BufferEditTest, InsertingAnOwnCopyResetsTheGrowthOnlyWhenTheBlockIsReplaced) {
    CT_Buffer roomy(100, 50), full(8, 20);
    for (CT_Buffer* const buffer : {&roomy, &full}) {
        buffer->v_Append("abcdefgh", 8);
        buffer->v_AtInsertCopy(0, 2, 4);
    }
    EXPECT_EQ(roomy.n_GetGrowth(), 50u);
    EXPECT_EQ(full.n_GetGrowth(), 32u);
    EXPECT_EQ(full.n_GetMaximumSize(), 20u);
}

TEST(BufferEditTest, SearchesEndWithTheUsedPart) {
    CT_Buffer buffer = Make("abcdcd");
    EXPECT_EQ(buffer.n_Find("cd", 0, 3), 4u) << "length 0 looks for the first byte";
    EXPECT_EQ(buffer.n_Find('d', 4), 5u);
    buffer.v_SetUsedSize(3);
    EXPECT_EQ(buffer.n_Find('d', 0), kAll);
    EXPECT_EQ(CT_Buffer().n_Find('d', 0), kAll);
}

}  // namespace
