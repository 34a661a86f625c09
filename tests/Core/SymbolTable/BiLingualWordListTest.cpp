#include "Foundation/Core/SymbolTable/BiLingualWordList.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/UString.h"
#include "Support/Memory.h"

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
    EXPECT_EQ(pairs.size(), list.n_GetCount());
    return pairs;
}

CT_BiLingualUWordList Sample() {
    CT_BiLingualUWordList list;
    list.v_Insert(u"Haus", u"house");
    list.v_Insert(u"Baum", u"tree");
    list.v_Insert(u"Haus", u"home");
    return list;
}

// A list as it is stored.
std::vector<std::string> Parts(const CT_BiLingualWordListBasis& list) {
    std::vector<std::string> parts;
    for (const CT_Buffer* const part : {list.pcco_GetSourceBuffer(), list.pcco_GetTargetBuffer(),
                                        list.pcco_GetSourceIndex()->pcco_GetBuffer(),
                                        list.pcco_GetTargetIndex()->pcco_GetBuffer()}) {
        parts.emplace_back(static_cast<const char*>(part->qcv_Get()), part->n_GetUsedSize());
    }
    return parts;
}

BOOL Load(CT_BiLingualWordListBasis& list, const std::vector<std::string>& parts) {
    std::vector<CT_Buffer> buffers;
    for (const std::string& part : parts) {
        buffers.emplace_back(part.data(), static_cast<std::uint32_t>(part.size()), 1);
    }
    return list.b_Set(&buffers[0], &buffers[1], &buffers[2], &buffers[3]);
}

// With 2-byte offsets many of so many words are not found, but what is found is right.
TEST(BiLingualWordListTest, FindsTheFirstPartnerOfEachWordAndKeepsEveryPair) {
    for (const BOOL long_offsets : {TRUE, FALSE}) {
        std::mt19937 random(7);
        CT_BiLingualUWordList list(long_offsets), loaded;
        Pairs pairs;
        std::map<Word, Word> targets, sources;
        const auto word = [&random] {
            Word text(random() % 7, u'\0');
            for (char16_t& unit : text) unit = static_cast<char16_t>(u'ä' + random() % 7);
            return text;
        };
        for (int i = 0; i < 20000; ++i) {
            const auto& [source, target] = pairs.emplace_back(word(), word());
            const BOOL found = list.b_Insert(source.c_str(), target.c_str());
            ASSERT_EQ(found != FALSE, list.qcuz_FindSource(source.c_str()) != nullptr &&
                                          list.qcuz_FindTarget(target.c_str()) != nullptr);
            if (!source.empty()) targets.emplace(source, target);
            if (!target.empty()) sources.emplace(target, source);
        }
        const CT_BiLingualUWordList copy(&list);
        list.v_Insert(u"neu", u"new");
        ASSERT_TRUE(Load(loaded, Parts(copy)));
        for (const CT_BiLingualUWordList* const each :
             {&copy, static_cast<const CT_BiLingualUWordList*>(&loaded)}) {
            ASSERT_EQ(Contents(*each), pairs);
            EXPECT_EQ(each->qcuz_FindSource(u"neu"), nullptr);
            std::size_t forth = 0, back = 0;
            const auto count = [](const char16_t* found, const Word& partner) {
                EXPECT_TRUE(found == nullptr || found == partner);
                return found == nullptr ? 0U : 1U;
            };
            for (const auto& [source, target] : targets) {
                forth += count(each->qcuz_FindSource(source.c_str()), target);
            }
            for (const auto& [target, source] : sources) {
                back += count(each->qcuz_FindTarget(target.c_str()), source);
            }
            EXPECT_EQ(forth, each->pcco_GetSourceIndex()->n_GetNrOfEntries());
            EXPECT_EQ(back, each->pcco_GetTargetIndex()->n_GetNrOfEntries());
            EXPECT_EQ(forth == targets.size() && back == sources.size(), long_offsets == TRUE);
            EXPECT_GT(forth, 3000u);
        }
    }
}

TEST(BiLingualWordListTest, IteratorsTellWhereTheyAre) {
    const CT_BiLingualUWordList list = Sample(), empty;
    CT_BiUWordListIterator iterator(&list), other(&iterator), nothing(&empty);
    EXPECT_TRUE(iterator.b_AtHome() && !iterator.b_AtEnd() && iterator.b_Next());
    EXPECT_TRUE(iterator.b_Next() && !iterator.b_IsEqual(&other));
    other.v_Set(&iterator);
    EXPECT_TRUE(iterator.b_IsEqual(&other));
    EXPECT_TRUE(iterator.b_Next() && iterator.b_AtEnd() && !iterator.b_Next());
    CT_UString source, target;
    iterator.v_Get(&source, &target);
    EXPECT_EQ(Word(source.qcuz_Get()) + target.qcuz_Get(), u"Haushome");
    EXPECT_TRUE(nothing.b_AtHome() && nothing.b_AtEnd() && !nothing.b_Next());
    nothing.v_Get(&source, &target);
    EXPECT_EQ(source.n_GetLength() + target.n_GetLength(), 0u);
    CT_BiUWordListIterator nowhere(static_cast<const CT_BiLingualUWordList*>(nullptr));
    nowhere.v_Get(nullptr, &target);
    EXPECT_FALSE(nowhere.b_Next() || nowhere.b_IsEqual(nullptr) || !nowhere.b_AtEnd());
    nowhere.v_Set(static_cast<const CT_BiUWordListIterator*>(nullptr));
    EXPECT_TRUE(nowhere.b_AtHome());
}

TEST(BiLingualWordListTest, AnswersNothingForWordsThatNoIndexTakes) {
    CT_BiLingualUWordList list = Sample();
    for (const char16_t* odd : {u"", u"two\nlines", u"\x1A"}) {
        EXPECT_FALSE(list.b_Insert(odd, u"odd"));
        EXPECT_EQ(list.qcuz_FindSource(odd), nullptr);
    }
    EXPECT_EQ(list.qcuz_FindSource(u"tree"), nullptr);
    list.v_Insert(list.qcuz_FindTarget(u"tree"), list.qcuz_FindSource(u"Haus"));  // its own words
    list.v_Insert(nullptr, list.qcuz_FindSource(u"Baum"));
    const Pairs all = Contents(list);
    EXPECT_EQ(Pairs(all.end() - 2, all.end()), (Pairs{{u"Baum", u"house"}, {u"", u"tree"}}));
    list.v_Set(static_cast<const CT_BiLingualUWordList*>(nullptr));
    EXPECT_TRUE(Contents(list).empty() && list.qcuz_FindSource(u"Haus") == nullptr);
}

TEST(BiLingualWordListTest, KeepsWordsOfBytesAsWell) {
    CT_BiLingualCWordList narrow, again;
    const CT_CString trees("B\xE4ume");
    narrow.v_Insert("Haus", "house");
    narrow.v_Insert(&trees, &trees);
    EXPECT_TRUE(Load(again, Parts(narrow)));
    EXPECT_STREQ(again.qccz_FindSource(&trees), "B\xE4ume");
    EXPECT_STREQ(again.qccz_FindTarget("house"), "Haus");
    EXPECT_EQ(again.qccz_FindTarget("Haus"), nullptr);
    CT_BiLingualUWordList wide;
    EXPECT_FALSE(Load(wide, Parts(narrow)));
    EXPECT_FALSE(wide.b_Set(nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(CT_BiLingualCWordList(static_cast<CT_BiLingualCWordList*>(nullptr)).n_GetCount(), 0u);
}

TEST(BiLingualWordListTest, DamagedPartsAreRefusedOrSearchedWithinThem) {
    const Pairs contents = Contents(Sample());
    const std::vector<std::string> good = Parts(Sample());
    constexpr std::string_view kValues("\0\1\4\x0A\x0D\x19\x1A\x61\xFF", 9);
    int refused = 0;
    for (std::size_t part = 0; part < 4; ++part) {
        for (std::size_t i = 0; i < 10 * good[part].size(); ++i) {
            SCOPED_TRACE(i);
            std::vector<std::string> bad = good;
            if (i % 10 == 9) {
                bad[part].resize(i / 10);
            } else {
                bad[part][i / 10] = kValues[i % 10];
            }
            CT_BiLingualUWordList loaded = Sample();
            if (Load(loaded, bad) == FALSE) {
                ++refused;
                EXPECT_EQ(Contents(loaded), contents);
                continue;
            }
            for (const char16_t* word : {u"Haus", u"Baum", u"house", u"tree", u"home", u"H"}) {
                for (const char16_t* found :
                     {loaded.qcuz_FindSource(word), loaded.qcuz_FindTarget(word)}) {
                    EXPECT_TRUE(found == nullptr || Word(found).size() < 20);  // to its end
                }
            }
            loaded.v_Insert(u"neu", u"new");
            EXPECT_EQ(Contents(loaded).size(), loaded.n_GetCount());
        }
    }
    EXPECT_GT(refused, 1000);
}

TEST(BiLingualWordListTest, StaysAsItWasWhenMemoryRunsOut) {
    const Word key(300, u'k');
    const CT_BiLingualUWordList shared = Sample();
    const auto read = [&](const CT_BiLingualUWordList& list) {
        return std::make_tuple(Contents(list), list.pcco_GetSourceIndex()->n_GetNrOfEntries(),
                               list.qcuz_FindTarget(key.c_str()) != nullptr);
    };
    const auto copy = [&] { return CT_BiLingualUWordList(&shared); };
    const auto insert = [&](auto& list) { list.v_Insert(key.c_str(), key.c_str()); };
    const auto clear = [](auto& list) { list.v_Set(); };
    const auto assign = [](auto& list) {
        CT_BiLingualUWordList other;
        other.v_Insert(u"neu", u"new");
        list.v_Set(&other);
    };
    EXPECT_GT(test::ExpectUnchangedWithoutMemory(Sample, insert, read), 3u);
    EXPECT_GT(test::ExpectUnchangedWithoutMemory(copy, insert, read), 5u);
    EXPECT_GT(test::ExpectUnchangedWithoutMemory(Sample, clear, read), 0u);
    EXPECT_GT(test::ExpectUnchangedWithoutMemory(copy, assign, read), 2u);
}

}  // namespace
