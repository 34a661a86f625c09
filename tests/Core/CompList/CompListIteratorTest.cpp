// Enumeration, in order and on damaged images; and lists that several threads read at once.
#include "Foundation/Core/CompList/CompListIterator.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "Core/CompList/CompListSupport.h"

namespace {

using namespace test;

using Entries = std::vector<std::pair<Word, unsigned>>;

Entries Enumerate(const CT_CompList& list) {
    Entries entries;
    unsigned handle = 0;
    if (list.n_GetElementSize() == 1) {
        CT_CCompListIterator iterator(&list);
        for (CT_CString word; iterator.b_GetNext(&word, &handle) != FALSE;) {
            Word wide;
            for (const char c : std::string(word.qccz_Get())) wide += static_cast<unsigned char>(c);
            entries.emplace_back(wide, handle);
        }
    } else {
        CT_UCompListIterator iterator(&list);
        for (CT_UString word; iterator.b_GetNext(&word, &handle) != FALSE;) {
            entries.emplace_back(word.qcuz_Get(), handle);
        }
    }
    return entries;
}

// The order by definition: entries are in the order they were added and agree before `depth`.
void AppendInOrder(const Entries& entries, std::size_t depth, Entries& out) {
    std::vector<std::pair<char16_t, Entries>> alternatives;
    for (const auto& entry : entries) {
        if (entry.first.size() == depth) {
            out.push_back(entry);
            continue;
        }
        const char16_t unit = entry.first[depth];
        auto it = alternatives.begin();
        while (it != alternatives.end() && it->first != unit) ++it;
        if (it == alternatives.end()) it = alternatives.insert(it, {unit, {}});
        it->second.push_back(entry);
    }
    for (auto it = alternatives.rbegin(); it != alternatives.rend(); ++it) {
        AppendInOrder(it->second, depth + 1, out);
    }
}

TEST(CompListIteratorTest, VisitsEveryWordOnceAlternativesFromTheLast) {
    unsigned seed = 100;
    for (const unsigned element : {1u, 2u}) {
        for (const Word& alphabet : {Word(u"a"), Word(u"abc"), Word{'x', 0xE4, 0xDF, 0xFE, 'b'}}) {
            SCOPED_TRACE(++seed);
            CT_CompList list = Shape{element, 4, true, true}.New();
            Words words(seed, alphabet, 8);
            Entries added;
            for (unsigned i = 0; i < 500; ++i) {
                const Word word = words.Next();
                if (Add(list, word, i) && !word.empty()) added.emplace_back(word, i);
            }
            Entries expected;
            AppendInOrder(added, 0, expected);
            EXPECT_EQ(Enumerate(list), expected);
            EXPECT_EQ(Enumerate(Adopted(ImageOf(list))), expected);
        }
    }
}

// The hex dump in the description of the format, read out of that page.
Bytes DocumentedImage() {
    std::ifstream page(COMPRESSED_LIST_PAGE);
    Bytes image;
    bool inside = false;
    for (std::string line; std::getline(page, line);) {
        if (line.rfind("```", 0) == 0) {
            inside = line == "```text";
        } else if (inside) {
            std::istringstream row(line.substr(4));
            for (unsigned byte; row >> std::hex >> byte;) {
                image.push_back(static_cast<std::uint8_t>(byte));
            }
        }
    }
    return image;
}

TEST(CompListIteratorTest, DecodesTheDocumentedImage) {
    const Bytes image = DocumentedImage();
    ASSERT_EQ(image.size(), 0xAAu);
    const CT_CompList list = Adopted(image);
    EXPECT_EQ(list.n_GetNrOfEntries(), 5u);
    EXPECT_EQ(list.n_GetCodePage(), 1252u);
    EXPECT_EQ(list.n_Search(u""), 1258u);
    EXPECT_EQ(Enumerate(list), (Entries{{u"\u00D6", 3}, {u"a", 5}, {u"ac", 9}, {u"ab", 7}}));

    CT_CompList made(CT_CompList::kTwoBytes, 2, TRUE, TRUE, 128, 1252);
    const Entries words{{u"ab", 7}, {u"a", 5}, {u"ac", 9}, {u"\u00D6", 3}, {u"", 1258}};
    for (const auto& [word, handle] : words) EXPECT_TRUE(made.b_Add(word.c_str(), handle));
    EXPECT_EQ(ImageOf(made), image);
}

TEST(CompListIteratorTest, StartsAnewOnAnotherListAndNeedsNoHandle) {
    CT_CompList list(CT_CompList::kOneByte, 1, FALSE, FALSE, 0, 1252);
    const CT_CompList empty(&list);
    list.b_Add("a\xE4", 7);
    list.b_Add("b", 5);
    CT_CCompListIterator iterator(&list);
    CT_UString wide;
    EXPECT_TRUE(iterator.b_GetNext(&wide, nullptr));
    iterator.vv_Set(&list);
    CT_CString word;
    unsigned handle = 0;
    EXPECT_TRUE(iterator.b_GetNext(&word, &handle));
    EXPECT_STREQ(word.qccz_Get(), "b");
    EXPECT_EQ(word.n_GetCodePage(), 1252u);
    EXPECT_TRUE(iterator.b_GetNext(&wide, &handle));  // converted from the list's code page
    EXPECT_EQ(Word(wide.qcuz_Get()), u"a\u00E4");
    EXPECT_EQ(handle, 7u);
    EXPECT_FALSE(iterator.b_GetNext(&wide, &handle));
    EXPECT_FALSE(iterator.b_GetNext(&wide, &handle));
    EXPECT_EQ(Word(wide.qcuz_Get()), u"a\u00E4");
    iterator.vv_Set(&empty);
    EXPECT_FALSE(iterator.b_GetNext(&word, &handle));
    iterator.vv_Set(nullptr);
    EXPECT_FALSE(iterator.b_GetNext(&word, &handle));
}

// An image of one-byte elements and handles and two-byte distances around a stream.
Bytes Around(const Bytes& stream, std::uint8_t entries) {
    Bytes image = PlainCompList(1, 1, false, false).Image();
    image.resize(132);
    image.insert(image.end(), stream.begin(), stream.end());
    for (unsigned i = 0; i < 4; ++i) {
        image[4 + i] = static_cast<std::uint8_t>(image.size() >> (8 * i));
    }
    image[120] = entries;
    return image;
}

Bytes With(Bytes image, std::size_t at, std::uint8_t value) {
    image[at] = value;
    return image;
}

TEST(CompListIteratorTest, TellsSoundImagesFromForgedOnes) {
    const Bytes good = Around({'a', 13, 6, 0, 'b', 26, 1, 'c', 26, 2, 25}, 2);
    Bytes longer = good;
    longer.push_back(99);
    const Bytes joining{'a', 13, 9, 0, 'b', 13, 5, 0, 'c', 26, 1, 'd', 26, 2, 25};
    const struct {
        const char* what;
        Bytes image;
        bool sound;
    } cases[] = {
        {"as written", good, true},
        {"no words", Around({25}, 0), true},
        {"four-byte elements, no words", PlainCompList(4, 1, false, false).Image(), true},
        {"bytes behind the end", longer, true},
        {"the empty word, twice", With(With(good, 127, 1), 120, 4), true},
        {"jump entry", With(good, 16, 132), true},
        {"jump entry of a letter that is not there", With(good, 40, 132), false},
        {"jump entry to another letter", With(good, 16 + 8, 132), false},
        {"fewer entries than words", With(good, 120, 1), false},
        {"more entries than words", With(good, 120, 3), false},
        {"the empty word is not counted", With(With(good, 127, 1), 12, 0), false},
        {"network byte order", With(good, 124, 1), false},
        {"stamp", With(good, 0, 1), false},
        {"handle size", With(good, 126, 3), false},
        {"end behind the buffer", With(good, 4, 200), false},
        {"no end marker", Around({'a', 26, 1}, 1), false},
        {"words behind the end marker", Around({'a', 26, 1, 25, 'b', 26, 2, 25}, 2), false},
        {"a handle is cut", Around({'a', 26}, 1), false},
        {"a distance is cut", Around({'a', 13, 1}, 1), false},
        {"a path without a word", Around({'a', 25}, 0), false},
        {"nothing behind a word that goes on", Around({'a', 10, 1, 25}, 1), false},
        {"a mark first", Around({26, 1, 25}, 1), false},
        {"a zero character", Around({'a', 0, 26, 1, 25}, 1), false},
        {"two marks", Around({'a', 10, 1, 26, 2, 25}, 2), false},
        {"the same character twice", With(good, 139, 'a'), false},
        {"a distance into a word", With(good, 134, 4), false},
        {"a distance to the end marker", With(good, 134, 9), false},
        {"a distance to itself", With(good, 134, 0), false},
        {"a distance behind the image", With(good, 134, 40), false},
        {"nothing leads to a tail", Around({'a', 26, 1, 'b', 26, 2, 25}, 2), false},
        {"two markers lead to one tail", Around(joining, 2), false},
    };
    for (const auto& [what, image, sound] : cases) {
        SCOPED_TRACE(what);
        EXPECT_EQ(Adopted(image).b_IsSound() != FALSE, sound);
    }
    EXPECT_FALSE(CT_CompList(static_cast<const CT_Buffer*>(nullptr)).b_IsSound());
    EXPECT_FALSE(Adopted(With(good, 4, 200)).b_Add("d", 1));
}

TEST(CompListIteratorTest, DamagedImagesAreReadToAnEndAndNeverChanged) {
    const auto test_words = [] { return Words(5, u"abz", 4); };
    Words words = test_words();
    const Bytes good = Shape{2, 1, false, false}.Plain(words, 60).Image();
    Damage(good, [&](const Bytes& image) {
        CT_CompList list = Adopted(image);
        const Entries entries = Enumerate(list);
        ASSERT_LE(entries.size(), image.size());
        const bool sound = list.b_IsSound() != FALSE;
        if (sound) {
            ASSERT_EQ(entries.size(), list.n_GetNrOfEntries());
            for (const auto& [word, handle] : entries) {
                ASSERT_EQ(list.n_Search(word.c_str()), handle);
            }
        }
        Words keys = test_words();
        for (unsigned i = 0; i < 60; ++i) {
            const Word key = keys.Next();
            unsigned matched = 0;
            (void)list.n_Search(key.c_str(), &matched);
            ASSERT_LE(matched, key.size());
        }
        const bool added = list.b_Add(u"zzzzzzzz", 1) != FALSE;
        ASSERT_TRUE(added ? list.b_Search(u"zzzzzzzz") != FALSE : ImageOf(list) == image);
        ASSERT_TRUE(!sound || (added && list.b_IsSound() != FALSE));
    });
}

// Each marker leads right behind itself, so that every path forks and joins again: without a bound
// a list of this size has 2^200 words.
TEST(CompListIteratorTest, EndsOnAnImageWhosePathsJoin) {
    Bytes stream;
    for (int i = 0; i < 200; ++i) stream.insert(stream.end(), {'a', 13, 3, 0});
    stream.insert(stream.end(), {'a', 26, 1, 25});
    const Bytes image = Around(stream, 1);
    EXPECT_LE(Enumerate(Adopted(image)).size(), image.size());
}

// a, aa, aaa, ... with an alternative at each: words of ten million characters in all, which are
// not copied for a caller who looks at one after the other.
TEST(CompListIteratorTest, WordsThatContinueOneAnotherShareOneBlock) {
    constexpr unsigned kDepth = 3000;
    CT_CompList list = Shape{2, 4, false, true}.New();
    Word path;
    for (unsigned i = 0; i < kDepth; ++i) {
        path += u'a';
        ASSERT_TRUE(list.b_Add(path.c_str(), i) && list.b_Add((path + u'b').c_str(), i));
    }
    CT_UCompListIterator iterator(&list);
    CT_UString word;
    unsigned handle = 0, words = 0, blocks = 0;
    for (const void* block = nullptr; iterator.b_GetNext(&word, &handle) != FALSE; ++words) {
        ASSERT_EQ(word.n_GetLength(),
                  handle + (word.u_GetAt(word.n_GetLength() - 1) == u'b' ? 2 : 1));
        blocks += word.qcuz_Get() != block ? 1 : 0;
        block = word.qcuz_Get();
    }
    EXPECT_EQ(words, 2 * kDepth);
    EXPECT_LT(blocks, 100u);
    iterator.vv_Set(&list);
    for (words = 0; iterator.b_GetNext(nullptr, &handle) != FALSE;) ++words;
    EXPECT_EQ(words, 2 * kDepth);
}

// A list that grew, whose image is still to be written, and one that will get its index.
TEST(CompListThreadTest, ManyReadersShareOneList) {
    CT_CompList grown = Shape{2, 4, false, true}.New();
    Words words(9, u"abcdefghijklmnop", 6);
    std::vector<Word> added;
    for (unsigned i = 0; i < 4000; ++i) {
        const Word word = words.Next();
        if (grown.b_Add(word.c_str(), i) != FALSE) added.push_back(word);
    }
    const CT_CompList adopted = Adopted(ImageOf(CT_CompList(&grown)));
    grown.b_Add(u"more", 1);
    added.emplace_back(u"more");
    std::vector<std::thread> readers;
    for (int i = 0; i < 4; ++i) {
        readers.emplace_back([&] {
            for (int round = 0; round < 5; ++round) {
                for (const Word& word : added) {
                    EXPECT_TRUE(grown.b_Search(word.c_str()));
                    EXPECT_EQ(adopted.b_Search(word.c_str()), word == u"more" ? FALSE : TRUE);
                }
                EXPECT_EQ(Enumerate(grown).size(), added.size());
                EXPECT_EQ(ImageOf(CT_CompList(&grown)).size(), grown.n_GetEnd());
            }
        });
    }
    for (std::thread& reader : readers) reader.join();
    EXPECT_GT(adopted.MemoryBesideImage(), 0u);
}

}  // namespace
