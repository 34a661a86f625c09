#include "Foundation/Core/SymbolTable/BiLingualWordList.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/UString.h"
#include "Support/Memory.h"
#include "Support/Text.h"

namespace {

using Word = std::u16string;
using Pairs = std::vector<std::pair<Word, Word>>;

Pairs Contents(const CT_BiLingualUWordList& list) {
    Pairs pairs;
    CT_BiUWordListIterator iterator(&list);
    const char16_t* source = nullptr;
    const char16_t* target = nullptr;
    while (iterator.b_Next() != FALSE) {
        iterator.v_Get(&source, &target);
        pairs.emplace_back(source, target);
    }
    EXPECT_TRUE(iterator.b_AtEnd());
    EXPECT_EQ(pairs.size(), list.n_GetCount());
    return pairs;
}

std::string Found(const char16_t* word) {
    return word == nullptr ? "-" : test::Utf8(word);
}

CT_BiLingualUWordList Sample() {
    CT_BiLingualUWordList list;
    list.v_Insert(u"Haus", u"house");
    list.v_Insert(u"Baum", u"tree");
    list.v_Insert(u"Haus", u"home");
    return list;
}

// The parts of a list as they are stored.
struct Parts {
    std::vector<std::string> parts;

    explicit Parts(const CT_BiLingualWordListBasis& list) {
        for (const CT_Buffer* const part :
             {list.pcco_GetSourceBuffer(), list.pcco_GetTargetBuffer(),
              list.pcco_GetSourceIndex()->pcco_GetBuffer(),
              list.pcco_GetTargetIndex()->pcco_GetBuffer()}) {
            parts.emplace_back(static_cast<const char*>(part->qcv_Get()), part->n_GetUsedSize());
        }
    }
    BOOL Load(CT_BiLingualWordListBasis& list) const {
        std::vector<CT_Buffer> buffers;
        for (const std::string& part : parts) {
            buffers.emplace_back(part.data(), static_cast<std::uint32_t>(part.size()), 1);
        }
        return list.b_Set(&buffers[0], &buffers[1], &buffers[2], &buffers[3]);
    }
};

TEST(BiLingualWordListTest, FindsTheFirstPartnerOfEachWordAndKeepsEveryPair) {
    std::mt19937 random(7);
    CT_BiLingualUWordList list(TRUE), loaded;
    Pairs pairs;
    std::map<Word, Word> targets, sources;
    const auto word = [&random] {
        Word text(random() % 6, u'\0');
        for (char16_t& unit : text) unit = static_cast<char16_t>(u'ä' + random() % 5);
        return text;
    };
    for (int i = 0; i < 5000; ++i) {
        Word source = word(), target = word();
        list.v_Insert(source.c_str(), target.c_str());
        if (!source.empty()) targets.emplace(source, target);
        if (!target.empty()) sources.emplace(target, source);
        pairs.emplace_back(std::move(source), std::move(target));
    }
    const CT_BiLingualUWordList copy(&list);
    list.v_Insert(u"neu", u"new");
    ASSERT_TRUE(Parts(copy).Load(loaded));
    for (const auto* const each : {&copy, static_cast<const CT_BiLingualUWordList*>(&loaded)}) {
        ASSERT_EQ(Contents(*each), pairs);
        EXPECT_EQ(each->qcuz_FindSource(u"neu"), nullptr);
        for (int i = 0; i < 5000; ++i) {
            const Word wanted = word();
            const auto target = targets.find(wanted);
            const auto source = sources.find(wanted);
            ASSERT_EQ(Found(each->qcuz_FindSource(wanted.c_str())),
                      target == targets.end() ? "-" : test::Utf8(target->second));
            ASSERT_EQ(Found(each->qcuz_FindTarget(wanted.c_str())),
                      source == sources.end() ? "-" : test::Utf8(source->second));
        }
    }
    EXPECT_EQ(Found(list.qcuz_FindSource(u"neu")), "new");
}

TEST(BiLingualWordListTest, IteratesOverPairsInOrderAndTellsWhereItIs) {
    const CT_BiLingualUWordList list = Sample();
    CT_BiUWordListIterator iterator(&list), other(&iterator);
    EXPECT_TRUE(iterator.b_AtHome() && !iterator.b_AtEnd());
    EXPECT_TRUE(iterator.b_Next() && iterator.b_Next());
    CT_UString source, target;
    iterator.v_Get(&source, &target);
    EXPECT_EQ(Word(source.qcuz_Get()) + Word(target.qcuz_Get()), u"Baumtree");
    EXPECT_FALSE(iterator.b_IsEqual(&other));
    other.v_Set(&iterator);
    EXPECT_TRUE(iterator.b_IsEqual(&other));
    EXPECT_TRUE(iterator.b_Next() && iterator.b_AtEnd() && !iterator.b_Next());
    EXPECT_FALSE(iterator.b_AtHome());
    other.v_Set(&list);
    EXPECT_TRUE(other.b_AtHome());

    const CT_BiLingualUWordList empty;
    CT_BiUWordListIterator nothing(&empty);
    EXPECT_TRUE(nothing.b_AtHome() && nothing.b_AtEnd() && !nothing.b_Next());
    nothing.v_Get(&source, &target);
    EXPECT_EQ(source.n_GetLength() + target.n_GetLength(), 0u);
}

TEST(BiLingualWordListTest, AnswersNothingForWordsThatNoIndexTakes) {
    CT_BiLingualUWordList list = Sample();
    const CT_UString haus(u"Haus");
    EXPECT_EQ(Found(list.qcuz_FindSource(&haus)), "house");
    EXPECT_EQ(Found(list.qcuz_FindTarget(u"home")), "Haus");
    EXPECT_EQ(list.qcuz_FindSource(u"tree"), nullptr);
    for (const char16_t* odd : {u"", u"two\nlines", u"\x1A"}) {
        list.v_Insert(odd, u"odd");
        EXPECT_EQ(list.qcuz_FindSource(odd), nullptr);
    }
    list.v_Insert(static_cast<const char16_t*>(nullptr), list.qcuz_FindSource(u"Baum"));
    EXPECT_EQ(Contents(list).back(), (std::pair<Word, Word>(u"", u"tree")));
    list.v_Insert(list.qcuz_FindTarget(u"tree"), list.qcuz_FindSource(u"Haus"));  // its own words
    EXPECT_EQ(Contents(list).back(), (std::pair<Word, Word>(u"Baum", u"house")));
    list.v_Set();
    EXPECT_EQ(Contents(list), Pairs());
    EXPECT_EQ(list.qcuz_FindSource(u"Haus"), nullptr);

    CT_BiLingualCWordList narrow;
    const CT_CString baum("B\xE4ume");
    narrow.v_Insert("Haus", "house");
    narrow.v_Insert(&baum, &baum);
    EXPECT_STREQ(narrow.qccz_FindSource("Haus"), "house");
    EXPECT_STREQ(narrow.qccz_FindTarget(&baum), "B\xE4ume");
    EXPECT_EQ(narrow.qccz_FindTarget("Haus"), nullptr);
    CT_BiLingualCWordList again;
    EXPECT_TRUE(Parts(narrow).Load(again));
    EXPECT_STREQ(again.qccz_FindTarget("house"), "Haus");
    EXPECT_FALSE(Parts(narrow).Load(list));  // 8-bit words in a list of UTF-16 words
}

TEST(BiLingualWordListTest, WordsBeyondTheReachOfShortOffsetsAreNotFoundAndNothingElseSuffers) {
    CT_BiLingualUWordList shorts, longs(TRUE);
    std::mt19937 random(3);
    std::map<Word, Word> pairs;
    while (pairs.size() < 20000) {
        Word source(8, u'\0');
        for (char16_t& unit : source) unit = static_cast<char16_t>(u'a' + random() % 26);
        const Word target(source.rbegin(), source.rend());
        if (!pairs.emplace(source, target).second) continue;
        shorts.v_Insert(source.c_str(), target.c_str());
        longs.v_Insert(source.c_str(), target.c_str());
    }
    std::size_t found = 0;
    for (const auto& [source, target] : pairs) {
        ASSERT_EQ(Found(longs.qcuz_FindSource(source.c_str())), test::Utf8(target));
        const char16_t* const partner = shorts.qcuz_FindSource(source.c_str());
        found += partner != nullptr ? 1 : 0;
        if (partner != nullptr) {
            ASSERT_EQ(Word(partner), target);
        }
    }
    EXPECT_EQ(found, shorts.pcco_GetSourceIndex()->n_GetNrOfEntries());
    EXPECT_GT(found, 2000u);
    EXPECT_LT(found, 20000u);
    EXPECT_EQ(Contents(shorts), Contents(longs));
}

TEST(BiLingualWordListTest, DamagedPartsAreRefusedOrSearchedWithinThem) {
    const CT_BiLingualUWordList list = Sample();
    const Parts good(list);
    int refused = 0;
    const auto probe = [&](const Parts& bad) {
        CT_BiLingualUWordList loaded = Sample();
        if (bad.Load(loaded) == FALSE) {
            ++refused;
            EXPECT_EQ(Contents(loaded), Contents(list));  // as it was
            return;
        }
        for (const char16_t* word : {u"Haus", u"Baum", u"house", u"tree", u"home", u"H"}) {
            for (const char16_t* found :
                 {loaded.qcuz_FindSource(word), loaded.qcuz_FindTarget(word)}) {
                // Reads it to its end.
                EXPECT_TRUE(found == nullptr || Word(found).size() < 20);
            }
        }
        loaded.v_Insert(u"neu", u"new");
        EXPECT_EQ(Contents(loaded).size(), loaded.n_GetCount());
    };
    for (std::size_t part = 0; part < 4; ++part) {
        for (std::size_t at = 0; at < good.parts[part].size(); ++at) {
            SCOPED_TRACE(at);
            Parts bad = good;
            bad.parts[part].resize(at);
            probe(bad);
            for (const int value : {0, 1, 4, 10, 13, 25, 26, 97, 255}) {
                bad = good;
                bad.parts[part][at] = static_cast<char>(value);
                probe(bad);
            }
        }
    }
    EXPECT_GT(refused, 1000);
    CT_BiLingualUWordList loaded;
    EXPECT_TRUE(good.Load(loaded));
}

TEST(BiLingualWordListTest, StaysAsItWasWhenMemoryRunsOut) {
    const Word key(300, u'k');
    const auto read = [&](const CT_BiLingualUWordList& list) {
        return std::make_tuple(Contents(list), list.pcco_GetSourceIndex()->n_GetNrOfEntries(),
                               list.qcuz_FindTarget(key.c_str()) != nullptr);
    };
    const CT_BiLingualUWordList shared = Sample();
    const auto insert = [&](auto& list) { list.v_Insert(key.c_str(), key.c_str()); };
    const auto copied = [&] { return CT_BiLingualUWordList(&shared); };
    EXPECT_GT(test::ExpectUnchangedWithoutMemory(Sample, insert, read), 3u);
    EXPECT_GT(test::ExpectUnchangedWithoutMemory(copied, insert, read), 5u);
    EXPECT_GT(test::ExpectUnchangedWithoutMemory(
                  Sample, [](auto& list) { list.v_Set(); }, read),
              0u);
    EXPECT_GT(test::ExpectUnchangedWithoutMemory([] { return CT_BiLingualUWordList(); },
                                                 [](auto& list) {
                                                     const CT_BiLingualUWordList other = Sample();
                                                     list.v_Set(&other);
                                                 },
                                                 read),
              2u);
}

}  // namespace
