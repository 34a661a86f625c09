// Compressed lists as their users see them; the image byte by byte, and against the plain list.
#include "Foundation/Core/CompList/CompList.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "Core/CompList/CompListSupport.h"
#include "Foundation/Platform/Memory.h"
#include "Support/Errors.h"

namespace {

using test::Add;
using test::Adopted;
using test::Bytes;
using test::ImageOf;
using test::Shape;
using test::Word;
using test::Words;

Bytes StreamOf(const CT_CompList& list) {
    Bytes image = ImageOf(list);
    image.erase(image.begin(), image.begin() + 132);
    return image;
}

std::uint32_t Search(const CT_CompList& list, const Word& word, std::uint32_t* matched) {
    if (list.n_GetElementSize() == 2) return list.n_Search(word.c_str(), matched);
    return list.n_Search(std::string(word.begin(), word.end()).c_str(), matched);
}

TEST(CompListTest, InsertionGivesTheseStreams) {
    CT_CompList list(CT_CompList::kOneByte, 1, FALSE, FALSE, 0, 1252);
    EXPECT_TRUE(list.b_IsEmpty());
    EXPECT_EQ(list.n_GetEnd(), 133u);
    EXPECT_EQ(list.n_GetCodePage(), 1252u);
    EXPECT_EQ(list.pcco_GetBuffer()->n_GetGrowth(), 128u);

    EXPECT_TRUE(list.b_Add("ab", 7));
    EXPECT_EQ(StreamOf(list), (Bytes{'a', 'b', 26, 7, 25}));
    EXPECT_EQ(ImageOf(list)[16], 132);
    EXPECT_TRUE(list.b_Add("a", 5));
    EXPECT_EQ(StreamOf(list), (Bytes{'a', 10, 5, 'b', 26, 7, 25}));
    EXPECT_TRUE(list.b_Add("ac", 9));
    EXPECT_EQ(StreamOf(list), (Bytes{'a', 10, 5, 'b', 13, 5, 0, 26, 7, 'c', 26, 9, 25}));
    EXPECT_EQ(list.n_GetNrOfEntries(), 3u);
    EXPECT_TRUE(list.b_IsChanged());

    EXPECT_FALSE(list.b_Add("ab", 1));
    EXPECT_FALSE(list.b_Add("", 1));
    EXPECT_FALSE(list.b_Add(u"d", 1));
    EXPECT_EQ(list.n_GetNrOfEntries(), 3u);

    constexpr unsigned kNone = CT_CompList::kNotFound;
    const std::tuple<const char*, unsigned, unsigned> cases[] = {
        {"a", 5, 1},      {"ab", 7, 2},    {"ac", 9, 2}, {"abc", kNone, 2},
        {"ad", kNone, 0}, {"x", kNone, 0}, {"", 0, 0}};
    for (const auto& [key, handle, matched] : cases) {
        SCOPED_TRACE(key);
        unsigned got = 99;
        EXPECT_EQ(list.n_Search(key, &got), handle);
        EXPECT_EQ(got, matched);
        EXPECT_EQ(list.n_Search(key), handle);
    }
    EXPECT_EQ(list.n_Search(u"a"), CT_CompList::kNotFound);
}

TEST(CompListTest, GrowsToTheImageOfPlainInsertion) {
    Word wide;
    for (char16_t c = 0x20; c < 0x7F; ++c) wide += c;
    const std::pair<Word, unsigned> sets[] = {
        {u"ab", 6}, {u"abc", 12}, {Word{'z', 'a', 0xE9, 0x80}, 3}, {wide, 3}};
    unsigned seed = 1, added = 0;
    for (const unsigned element : {1u, 2u}) {
        for (const unsigned handle : {1u, 2u, 4u}) {
            for (const bool long_offset : {false, true}) {
                for (const auto& [alphabet, longest] : sets) {
                    const Shape shape{element, handle, (seed & 1) != 0, long_offset};
                    SCOPED_TRACE(::testing::Message() << "seed " << seed << " element " << element
                                                      << " handle " << handle);
                    CT_CompList list = shape.New();
                    test::PlainCompList plain = shape.Plain();
                    Words words(seed++, alphabet, longest);
                    for (unsigned i = 0; i < 2000; ++i) {
                        const Word word = words.Next();
                        const bool expected = plain.Add(word, i * 77);
                        ASSERT_EQ(Add(list, word, i * 77) != FALSE, expected);
                        added += expected ? 1 : 0;
                        // Sometimes as it stands, sometimes through a copy that starts anew.
                        ASSERT_TRUE(i % 64 != 0 || ImageOf(list) == plain.Image());
                        if (i % 256 == 0) list = Adopted(plain.Image());
                        const Word other = words.Next();
                        unsigned want = 0, got = 0;
                        ASSERT_EQ(Search(list, other, nullptr), plain.Search(other, want));
                        ASSERT_EQ(Search(list, other, &got), plain.Search(other, want));
                        ASSERT_EQ(got, want);
                    }
                    ASSERT_EQ(ImageOf(list), plain.Image());
                }
            }
        }
    }
    EXPECT_GT(added, 30000u);
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
        SCOPED_TRACE(seed);
        const Shape shape{set.element, set.handle, false, false};
        CT_CompList list = shape.New();
        test::PlainCompList plain = shape.Plain();
        Words words(++seed, set.alphabet, set.longest);
        unsigned refused = 0;
        for (unsigned i = 0; i < set.words; ++i) {
            const Word word = words.Next();
            unsigned matched = 0;
            const bool known = plain.Search(word, matched) != 0xFFFFFFFF;
            const bool expected = plain.Add(word, i);
            refused += !expected && !known ? 1 : 0;
            ASSERT_EQ(Add(list, word, i) != FALSE, expected) << i;
            ASSERT_TRUE(i % 1024 != 0 || ImageOf(list) == plain.Image()) << i;
            if (i % 1500 == 0) list = Adopted(plain.Image());
        }
        EXPECT_GE(refused, set.least_refused);
        EXPECT_GT(plain.Image().size(), 66000u);
        EXPECT_EQ(ImageOf(list), plain.Image());
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
}

TEST(CompListTest, KeepsTheEmptyWordInTheHeader) {
    CT_CompList list(CT_CompList::kTwoBytes, 1, TRUE, TRUE, 128, 0);
    EXPECT_EQ(list.n_Search(u""), CT_CompList::kNotFound);
    EXPECT_TRUE(list.b_Add(u"", 0x12345));
    EXPECT_EQ(list.n_Search(u""), 0x12345u);
    EXPECT_TRUE(list.b_Add(static_cast<const char16_t*>(nullptr), 3));
    EXPECT_EQ(Adopted(ImageOf(list)).n_Search(u""), 3u);
    EXPECT_EQ(list.n_GetNrOfEntries(), 2u);
    EXPECT_TRUE(list.b_IsEmpty());
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

TEST(CompListTest, SearchesAnIndexedImageAsThePlainOne) {
    Word latin;
    for (char16_t c = 'a'; c <= 'z'; ++c) latin += c;
    Word many = latin;
    for (char16_t c = 0x4E00; c < 0x5200; ++c) many += c;
    unsigned seed = 10;
    for (const unsigned element : {1u, 2u}) {
        const Shape shape{element, 4, false, true};
        test::PlainCompList plain = shape.Plain();
        Words words(++seed, element == 1 ? latin : many, 5);
        for (unsigned i = 0; i < 3000; ++i) plain.Add(words.Next(), i);
        const CT_CompList list = Adopted(plain.Image());
        EXPECT_EQ(list.MemoryBesideImage(), 0u);
        for (unsigned i = 0; i < 20000; ++i) {
            const Word word = words.Next();
            if (word.empty()) continue;
            unsigned want = 0, got = 0;
            const std::uint32_t handle = plain.Search(word, want);
            ASSERT_EQ(Search(list, word, nullptr), handle);
            ASSERT_EQ(Search(list, word, &got), handle);
            ASSERT_EQ(got, want);
        }
        EXPECT_GT(list.MemoryBesideImage(), 0u);
    }
}

TEST(CompListTest, DamagedImagesAreReadToAnEndAndNeverChanged) {
    const Shape shape{2, 1, true, false};
    test::PlainCompList plain = shape.Plain();
    Words words(5, u"abz", 4);
    std::vector<Word> keys;
    for (unsigned i = 0; i < 60; ++i) {
        keys.push_back(words.Next());
        plain.Add(keys.back(), i);
    }
    const auto probe = [&](const Bytes& image) {
        const Bytes exact(image);  // its own allocation: a sanitizer sees a read behind it
        CT_CompList list = Adopted(exact);
        for (const Word& key : keys) {
            unsigned matched = 0;
            (void)list.n_Search(key.c_str(), &matched);
            ASSERT_LE(matched, key.size());
        }
        if (list.b_Add(u"zzzzzzzz", 1) == FALSE) {
            ASSERT_EQ(ImageOf(list), exact);
        } else {
            ASSERT_TRUE(list.b_Search(u"zzzzzzzz"));
        }
    };
    test::Damage(plain.Image(), probe);
}

// The end of every test checks that nothing is kept.
TEST(CompListTest, ExhaustedMemoryLeavesTheListAsItWas) {
    test::PlainCompList plain = Shape{2, 4, false, false}.Plain();
    Words words(8, u"abcdefgh", 7);
    for (unsigned i = 0; i < 400; ++i) plain.Add(words.Next(), i);
    CT_CompList list = Adopted(plain.Image());
    for (unsigned i = 0; i < 200; ++i) {
        const Word word = words.Next();
        bool thrown = true;
        for (unsigned fail = 1; thrown; ++fail) {
            platform::FailAllocation(fail);
            try {
                list.b_Add(word.c_str(), i);
                thrown = false;
            } catch (const CT_SmartHeapException&) {
            }
            platform::FailAllocation(0);
            if (!thrown) plain.Add(word, i);
            ASSERT_EQ(ImageOf(list), plain.Image());
        }
    }
}

}  // namespace
