// Compressed lists as their users see them; the image byte by byte, and against the plain list.
#include "Foundation/Core/CompList/CompList.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "Core/CompList/CompListSupport.h"
#include "Support/Memory.h"

namespace platform = zelkor::platform;

namespace {

using namespace test;

// Whether a word is found alike with and without the count of matched characters.
bool SearchesAlike(const CT_CompList& list, const PlainCompList& plain, const Word& word) {
    const std::string narrow(word.begin(), word.end());
    const auto search = [&](unsigned* matched) {
        return list.n_GetElementSize() == 2 ? list.n_Search(word.c_str(), matched)
                                            : list.n_Search(narrow.c_str(), matched);
    };
    unsigned want = 0, got = 0;
    const std::uint32_t handle = plain.Search(word, want);
    return search(nullptr) == handle && search(&got) == handle && got == want;
}

// Adds words to a list and to its plain twin, which must agree all the way. Answers how many were
// refused though they were new.
unsigned GrowBoth(const Shape& shape, Words words, unsigned count, unsigned often,
                  std::size_t least_size) {
    CT_CompList list = shape.New();
    PlainCompList plain = shape.Plain();
    unsigned refused = 0, matched = 0;
    for (unsigned i = 0; i < count && !::testing::Test::HasFailure(); ++i) {
        const Word word = words.Next();
        const bool known = plain.Search(word, matched) != CT_CompList::kNotFound;
        const bool expected = plain.Add(word, i * 77);
        refused += !expected && !known ? 1 : 0;
        EXPECT_EQ(Add(list, word, i * 77) != FALSE, expected) << i;
        // Sometimes as it stands, sometimes through a copy that starts anew.
        EXPECT_TRUE(i % often != 0 || ImageOf(list) == plain.Image()) << i;
        if (i % (4 * often) == 0) list = Adopted(plain.Image());
        EXPECT_TRUE(SearchesAlike(list, plain, words.Next())) << i;
    }
    EXPECT_EQ(ImageOf(list), plain.Image());
    EXPECT_GT(plain.Image().size(), least_size);
    return refused;
}

TEST(CompListTest, GrowsToTheImageOfPlainInsertion) {
    Word wide;
    for (char16_t c = 0x20; c < 0x7F; ++c) wide += c;
    const std::pair<Word, unsigned> sets[] = {
        {u"ab", 6}, {u"abc", 12}, {Word{'z', 'a', 0xE9, 0x80}, 3}, {wide, 3}};
    unsigned seed = 1;
    for (unsigned form = 0; form < 12; ++form) {
        for (const auto& [alphabet, longest] : sets) {
            const Shape shape{1 + form / 6, 1u << form % 3, (seed & 1) != 0, form / 3 % 2 != 0};
            SCOPED_TRACE(::testing::Message() << "form " << form << " seed " << seed);
            GrowBoth(shape, Words(seed++, alphabet, longest), 2000, 64, 400);
        }
    }
}

// Lists that come to the end of 2-byte offsets in different ways.
TEST(CompListTest, RefusesExactlyTheWordsWhoseOffsetsOverflow) {
    struct Case {
        unsigned element, handle;
        Word alphabet;
        unsigned longest, words, least_refused;
    };
    Word many;
    for (char16_t c = 0x100; c < 0x2000; ++c) many += c;
    const Case cases[] = {
        {2, 4, u"abcdefgh", 10, 7000, 100},  // branches of all lengths
        {1, 1, u"abcdefghijkl", 14, 8000, 100},
        {2, 4, u"ab", 300, 1500, 100},  // few, long tails
        {2, 2, many, 3, 11000, 0},      // first characters only: grows on behind the 64 KiB
    };
    unsigned seed = 0;
    for (const Case& set : cases) {
        SCOPED_TRACE(++seed);
        const Words words(seed, set.alphabet, set.longest);
        EXPECT_GE(GrowBoth({set.element, set.handle, false, false}, words, set.words, 400, 66000),
                  set.least_refused);
    }
}

TEST(CompListTest, RefusesWordsWithMarkersAndLeavesTheImageAlone) {
    CT_CompList list(CT_CompList::kTwoBytes, 4, FALSE, TRUE, 128, 0);
    list.b_Add(u"ab", 1);
    const Bytes before = ImageOf(list);
    for (const char16_t marker : Word{10, 13, 25, 26}) {
        for (const Word& word :
             {Word{marker}, Word{'a', marker}, Word{'a', 'b', marker}, Word{'x', marker, 'y'}}) {
            EXPECT_FALSE(list.b_Add(word.c_str(), 2));
            EXPECT_FALSE(list.b_Search(word.c_str()));
        }
    }
    EXPECT_EQ(ImageOf(list), before);
    EXPECT_EQ(list.n_GetNrOfEntries(), 1u);

    Bytes endless = before;
    endless[endless.size() - 2] = 'x';
    CT_CompList damaged = Adopted(endless);
    EXPECT_FALSE(damaged.b_Add(u"c", 2));
    const std::uint64_t allocations = platform::AllocationCount();
    EXPECT_FALSE(damaged.b_Add(u"d", 2));  // is not tried again
    EXPECT_EQ(platform::AllocationCount(), allocations);
}

TEST(CompListTest, TakesNullForTheEmptyWordAndNoWordsOfTheOtherWidth) {
    CT_CompList list(CT_CompList::kTwoBytes, 1, TRUE, TRUE, 0, 0);
    EXPECT_EQ(list.pcco_GetBuffer()->n_GetGrowth(), 128u);  // where none is given
    EXPECT_TRUE(list.b_Add(static_cast<const char16_t*>(nullptr), 3));
    EXPECT_EQ(list.n_Search(u""), 3u);
    EXPECT_TRUE(list.b_IsEmpty());
    EXPECT_TRUE(list.b_Add(u"a", 1));
    EXPECT_FALSE(list.b_Add("b", 1) || list.b_Search("a") || list.b_IsEmpty());
}

TEST(CompListTest, CopiesShareTheImageUntilOneGrows) {
    CT_CompList list(CT_CompList::kTwoBytes, 4, FALSE, TRUE, 512, 0);
    list.b_Add(u"word", 1);
    CT_CompList copy(&list);
    EXPECT_EQ(copy.pcco_GetBuffer()->qcv_Get(), list.pcco_GetBuffer()->qcv_Get());
    EXPECT_EQ(copy.pcco_GetBuffer()->n_GetGrowth(), 512u);
    EXPECT_TRUE(copy.b_IsChanged());
    EXPECT_TRUE(copy.b_Add(u"words", 2));
    EXPECT_FALSE(list.b_Search(u"words"));
    EXPECT_TRUE(copy.b_Search(u"words"));
    list.v_Set(list.pcco_GetBuffer());
    EXPECT_FALSE(list.b_IsChanged());
    EXPECT_TRUE(list.b_Search(u"word"));
    EXPECT_EQ(CT_CompList(static_cast<const CT_Buffer*>(nullptr)).pcco_GetBuffer(), nullptr);
}

TEST(CompListTest, KeepsTheBytesBehindAnImage) {
    Words words(3, u"abcd", 6);
    PlainCompList plain = Shape{2, 2, false, false}.Plain(words, 50);
    const std::string behind("what else the buffer holds");
    Bytes image = plain.Image();
    image.insert(image.end(), behind.begin(), behind.end());
    CT_CompList list = Adopted(image);
    for (unsigned i = 0; i < 50; ++i) {
        const Word word = words.Next();
        EXPECT_EQ(list.b_Add(word.c_str(), i) != FALSE, plain.Add(word, i));
        image = plain.Image();
        image.insert(image.end(), behind.begin(), behind.end());
        ASSERT_EQ(ImageOf(i % 2 == 0 ? list : CT_CompList(&list)), image);
    }
    EXPECT_EQ(list.n_GetEnd() + behind.size(), image.size());
}

TEST(CompListTest, SearchesAnIndexedImageAsThePlainOne) {
    Word latin;
    for (char16_t c = 'a'; c <= 'z'; ++c) latin += c;
    Word many = latin;
    for (char16_t c = 0x4E00; c < 0x5200; ++c) many += c;
    unsigned seed = 10;
    for (const unsigned element : {1u, 2u}) {
        const Shape shape{element, 4, false, true};
        Words words(++seed, element == 1 ? latin : many, 5);
        const PlainCompList plain = shape.Plain(words, 3000);
        const CT_CompList list = Adopted(plain.Image());
        EXPECT_EQ(list.MemoryBesideImage(), 0u);
        for (unsigned i = 0; i < 20000; ++i) {
            const Word word = words.Next();
            if (word.empty()) continue;
            ASSERT_TRUE(SearchesAlike(list, plain, word));
        }
        EXPECT_GT(list.MemoryBesideImage(), 0u);
    }
}

// The end of every test checks that nothing is kept.
TEST(CompListTest, ExhaustedMemoryLeavesTheListAsItWas) {
    Words words(8, u"abcdefgh", 7);
    PlainCompList plain = Shape{2, 4, false, false}.Plain(words, 400);
    CT_CompList list = Adopted(plain.Image());
    for (unsigned i = 0; i < 200; ++i) {
        const Word word = words.Next();
        ExpectUnchangedWithoutMemory([&] { return &list; },
                                     [&](CT_CompList* it) { it->b_Add(word.c_str(), i); },
                                     [](const CT_CompList* it) { return ImageOf(*it); });
        plain.Add(word, i);
        ASSERT_EQ(ImageOf(list), plain.Image());
    }
}

}  // namespace
