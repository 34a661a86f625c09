#include "Foundation/Core/Container/VoidHashTable.h"

#include <algorithm>
#include <array>
#include <functional>

#include "Foundation/Core/Container/HashTable.h"
#include "HashSupport.h"

namespace platform = zelkor::platform;

namespace {

using namespace test::hash;
using Item = std::pair<std::size_t, std::uint64_t>;  // key, by number, and data
using Chains = std::vector<std::vector<Item>>;

// All different.
std::deque<KeyText> MakeTexts(Random& random) {
    std::deque<KeyText> texts;
    // Of equal hashes, beyond the part of a text that the table compares at once.
    for (const char* const text : {"ar", "bb", "aaaaaaaaaaaaaaaar", "aaaaaaaaaaaaaaabb"})
        texts.emplace_back(text);
    while (texts.size() < 150) {
        const std::string text = random.Text(random(2) == 0 ? 3 : 19);
        if (std::ranges::count(texts, text, &KeyText::text) == 0) texts.emplace_back(text);
    }
    return texts;
}

// The functions of a table, the form of its keys, and what these mean.
struct Keys {
    Table::HashFunction hash;
    Table::CompareFunction compare;
    Form form;
    bool hash_folds, compare_folds;
    const std::deque<KeyText>& texts;

    std::uint32_t Size() const {
        return form == kInt ? 4 : form == kText ? 20 : form == kWide ? 40 : sizeof(void*);
    }
    const void* At(std::size_t key) const { return texts[key].Key(form); }
    std::size_t Slot(std::size_t key, std::size_t table_size) const {
        return texts[key].Hash(form, hash_folds) % table_size;
    }
    bool Equal(std::size_t left, std::size_t right) const {
        const bool folds = compare_folds && form != kInt;
        return std::ranges::equal(texts[left].text, texts[right].text, [folds](char x, char y) {
            return x == y || (folds && (x ^ y) == ' ');
        });
    }
};

int CompareForeign(const void* a, const void* b) {
    return std::memcmp(a, b, 4);
}
unsigned int HashForeign(const void* key, unsigned int size) {
    return F::sn_HashCasePQCUZ(key, size);
}

// All pairs of functions for each form, whether they agree or not, and functions of a caller's own.
std::vector<Keys> AllKeys(const std::deque<KeyText>& texts) {
    const auto folding = kFunctions[kWideAt].compares[1];
    std::vector<Keys> all{{&F::sn_HashPN4, &CompareForeign, kInt, false, false, texts},
                          {&HashForeign, folding, kWideAt, false, true, texts}};
    for (const Form form : {kText, kTextAt, kCStrAt, kWide, kWideAt, kUStrAt, kStrAt, kInt}) {
        for (const bool hash_folds : {false, true}) {
            for (const bool folds : {false, true}) {
                const Functions& functions = kFunctions[form];
                all.push_back({functions.hashes[hash_folds][folds], functions.compares[folds], form,
                               hash_folds, folds, texts});
            }
        }
    }
    return all;
}

// The table as it is defined.
struct Model {
    std::vector<Item>& ChainOf(std::size_t key) { return chains[keys->Slot(key, chains.size())]; }
    // The place in its chain.
    std::size_t Find(std::size_t key) {
        const auto equal = [&](const Item& item) { return keys->Equal(item.first, key); };
        return static_cast<std::size_t>(std::ranges::find_if(ChainOf(key), equal) -
                                        ChainOf(key).begin());
    }
    void Push(const Item& item) {
        collisions += !ChainOf(item.first).empty();
        ChainOf(item.first).insert(ChainOf(item.first).begin(), item);
    }
    bool Insert(const Item& item) {
        auto& chain = ChainOf(item.first);
        const std::size_t at = Find(item.first);
        if (at < chain.size()) return chain[at].second = item.second, true;
        Push(item);
        if (collisions > chains.size() / 4) Resize(0);
        return false;
    }
    void RemoveAt(std::vector<Item>& chain, std::size_t at) {
        collisions -= at != 0;
        chain.erase(chain.begin() + static_cast<std::ptrdiff_t>(at));
    }
    void Resize(std::size_t size) {
        if (size == 0) size = chains.size();
        const bool doubles = std::exchange(collisions, 0) >= size / 4;
        if (doubles) size = Table::n_GetNextPrim(static_cast<std::uint32_t>(2 * size));
        for (const auto& chain : std::exchange(chains, Chains(size)))
            std::ranges::for_each(chain, [this](const Item& item) { Push(item); });
    }
    Model Copy() const {
        Model copy{keys, Chains(chains.size())};
        for (const auto& chain : chains)
            std::ranges::for_each(chain, [&](const Item& item) { copy.Insert(item); });
        return copy;
    }

    const Keys* keys;
    Chains chains;
    std::size_t collisions = 0;
};

void ExpectSame(const Table& table, const Model& model) {
    ASSERT_EQ(table.n_GetTableSize(), model.chains.size());
    ASSERT_EQ(table.n_GetCollisions(), model.collisions);
    std::uint32_t count = 0;
    CT_VoidHashIterator walk(&table);
    for (unsigned int slot = 1; slot <= model.chains.size(); ++slot) {
        const Table::st_HashItem* stored = table.pso_GetAt(slot);
        for (const auto& [key, data] : model.chains[slot - 1]) {
            std::uint64_t walked = 0;
            ASSERT_TRUE(stored != nullptr && walk.b_Next());
            walk.v_Get(&walked);
            ASSERT_EQ(walked, data);
            ASSERT_EQ(std::memcmp(stored->pcv_GetKey(), model.keys->At(key), model.keys->Size()),
                      0);
            stored = stored->pcso_GetFollowing();
            ++count;
        }
        ASSERT_EQ(stored, nullptr);
    }
    ASSERT_EQ(table.n_GetCount(), count);
    ASSERT_TRUE(!walk.b_Next() && walk.b_AtEnd());
}

// Walks over all items and removes about every third.
void Thin(Table& table, Model& model, Random& random) {
    CT_VoidHashIterator walk(&table);
    walk.b_Next();
    for (auto& chain : model.chains) {
        for (std::size_t at = 0; at < chain.size();) {
            ASSERT_FALSE(walk.b_AtEnd());
            const auto [key, data] = chain[at];
            const std::uint32_t choice = random(6);
            if (choice > 1) {
                walk.b_Next();
                ++at;
                continue;
            }
            char out[40];
            choice == 0 ? walk.v_RemoveKey(out) : walk.v_Remove(out);
            ASSERT_EQ(choice == 0 ? std::memcmp(out, model.keys->At(key), model.keys->Size())
                                  : std::memcmp(out, &data, sizeof(data)),
                      0);
            model.RemoveAt(chain, at);
        }
    }
    ASSERT_TRUE(walk.b_AtEnd());
}

TEST(VoidHashTableTest, BehavesAsDefinedUnderRandomOperations) {
    Random random;
    const std::deque<KeyText> texts = MakeTexts(random);
    for (const Keys& keys : AllKeys(texts)) {
        SCOPED_TRACE(testing::Message() << "form " << keys.form << keys.hash_folds
                                        << keys.compare_folds << ", seed " << random.seed);
        Table table(8, keys.Size(), keys.hash, keys.compare, 13);
        Model model{&keys, Chains(13)};
        for (std::uint64_t step = 1; step <= 600; ++step) {
            const std::size_t key = random(texts.size()), at = model.Find(key);
            auto& chain = model.ChainOf(key);
            const bool there = at < chain.size();
            const std::uint32_t choice = random(100), size = random(80);
            if (choice < 60) {
                ASSERT_EQ(table.b_Insert(keys.At(key), &step), model.Insert({key, step}));
            } else if (choice < 90) {
                std::uint64_t out = 1;
                ASSERT_EQ(choice < 75 ? table.b_Remove(keys.At(key), &out)
                                      : table.b_Get(keys.At(key), &out),
                          there);
                ASSERT_EQ(out, there ? chain[at].second : 0);
                if (there && choice < 75) model.RemoveAt(chain, at);
            } else if (choice < 93) {
                table.v_Resize(size);
                model.Resize(size);
            } else if (choice < 95 && there) {
                const auto slot = static_cast<std::uint32_t>(&chain - &model.chains[0] + 1);
                const Table::st_HashItem* item = table.pso_GetAt(slot);
                for (std::size_t i = 0; i < at; ++i) item = item->pcso_GetFollowing();
                table.v_RemoveAt(slot, item);
                model.RemoveAt(chain, at);
            } else if (choice < 97) {
                ASSERT_NO_FATAL_FAILURE(Thin(table, model, random));
            } else {
                table.v_Resize(size / 4);  // so small that copies grow
                model.Resize(size / 4);
                const Table copy(&table);
                model = model.Copy();
                ASSERT_NO_FATAL_FAILURE(ExpectSame(copy, model));
                table.v_Set(&copy);
                model = model.Copy();
            }
            ASSERT_NO_FATAL_FAILURE(ExpectSame(table, model)) << "step " << step;
        }
        table.v_Set(5u);
        ASSERT_NO_FATAL_FAILURE(ExpectSame(table, Model{&keys, Chains(5)}));
    }
}

TEST(VoidHashTableTest, KnowsTheNextPrime) {
    for (std::uint32_t n = 4, next = 4; n < 3000; ++n, next = std::max(n, next)) {
        for (std::uint32_t divisor = 2; divisor < next;)
            next % divisor == 0 ? ++next, divisor = 2 : ++divisor;
        ASSERT_EQ(Table::n_GetNextPrim(n), next);
    }
    for (const auto [n, next] :
         {std::array{0u, 0u}, {1, 1}, {2, 2}, {3, 3}, {4294967280, 4294967291}, {4294967292, 0}})
        EXPECT_EQ(Table::n_GetNextPrim(n), next);
}

TEST(VoidHashTableTest, CopiesItemsOfEverySizeAndFillsWithZeros) {
    const std::uint64_t key = 5, other = 6;
    for (const std::uint32_t size : {0u, 1u, 2u, 3u, 4u, 8u, 12u, 16u, 17u, 40u}) {
        SCOPED_TRACE(size);
        const std::string first(size, 'x'), second(size, 'y'), zeros(size, '\0');
        Table table(size, 4, &Table::sn_HashInteger, &Table::si_CompareInteger, 0);
        EXPECT_FALSE(table.b_Get(&key, nullptr) || table.b_Remove(&key, nullptr));
        EXPECT_FALSE(table.b_Insert(&key, first.data()));
        EXPECT_TRUE(table.b_Insert(&key, second.data()));
        std::string out(size, 'z'), none(size, 'z');
        EXPECT_TRUE(table.b_Get(&key, out.data()) && table.b_Get(&key, nullptr));
        EXPECT_FALSE(table.b_Get(&other, none.data()));
        EXPECT_EQ(out + none, second + zeros);
        Table narrow(2, 8, &Table::sn_HashInteger, &Table::si_CompareInteger, 3);
        narrow.v_Set(&table);
        char data[2];
        EXPECT_TRUE(narrow.b_Get(&key, data));
        EXPECT_EQ(std::string(data, 2), (second + std::string(2, '\0')).substr(0, 2));

        CT_VoidHashIterator walk(&table);
        EXPECT_TRUE(walk.b_AtHome() && !walk.b_AtEnd() && walk.b_Next() && !walk.b_AtHome());
        const CT_VoidHashIterator same(&walk);
        EXPECT_TRUE(same.b_IsEqual(&walk));
        walk.v_Remove(out.data());
        walk.v_Remove(none.assign(size, 'z').data());
        EXPECT_EQ(out + none, second + zeros);
        EXPECT_TRUE(walk.b_AtEnd() && !walk.b_Next() && !walk.b_IsEqual(&same));
    }
}

TEST(VoidHashTableTest, HandlesLongChainsAndReturnsMemory) {
    const std::int64_t before = platform::LiveBlocks();
    Table table(
        4, 4, [](const void*, unsigned int) { return 1u; }, &Table::si_CompareInteger, 13);
    for (std::uint32_t i = 0; i < 1000; ++i) table.b_Insert(&i, &i);
    CT_VoidHashIterator walk(&table);
    for (walk.b_Next(); !walk.b_AtEnd();) walk.v_Remove(nullptr);
    EXPECT_EQ(table.n_GetCount(), 0u);
    EXPECT_EQ(platform::LiveBlocks() - before, 2);  // the slots, a chunk of nodes
}

TEST(VoidHashTableTest, NullArgumentsAnswerTheFailureValue) {
    const std::uint32_t number = 7;
    Table table(4, 4, &F::sn_HashPN4, &Table::si_CompareInteger, 13);
    EXPECT_FALSE(table.b_Insert(nullptr, &number) || table.b_Insert(&number, nullptr));
    EXPECT_FALSE(table.b_Insert(&number, &number));
    std::uint32_t out = 9;
    EXPECT_FALSE(table.b_Get(nullptr, &out) || table.b_Remove(nullptr, &out));
    EXPECT_EQ(out, 0u);
    for (const std::uint32_t slot : {0u, 1u, 14u, 0xFFFFFFFFu}) {
        EXPECT_EQ(table.pso_GetAt(slot), nullptr);
        table.v_RemoveAt(slot, table.pso_GetAt(8));
    }
    EXPECT_EQ(table.n_GetCount(), 1u);
    CT_VoidHashIterator nowhere(static_cast<const Table*>(nullptr));
    nowhere.v_Remove(&out);
    nowhere.v_GetKey(&out);
    EXPECT_FALSE(nowhere.b_Next() || nowhere.n_GetCount() != 0 || nowhere.b_IsEqual(nullptr));
    CT_VoidHashIterator walk(&table);
    walk.v_Set(static_cast<const CT_VoidHashIterator*>(nullptr));
    EXPECT_TRUE(walk.b_IsEqual(&nowhere));
    table.v_Set(static_cast<const Table*>(nullptr));
    EXPECT_EQ(table.n_GetCount(), 0u);

    const Table none(static_cast<const Table*>(nullptr));
    for (Table* const useless : {new Table(&none), new Table(4, 4, nullptr, nullptr, 13),
                                 new Table(4, 4, &F::sn_HashPN4, nullptr, 13)}) {
        EXPECT_FALSE(useless->b_Insert(&number, &number) || useless->b_Get(&number, &out));
        useless->v_Resize(40);
        EXPECT_EQ(useless->n_GetCount(), 0u);
        delete useless;
    }
    const void* const no_text = nullptr;
    for (const Form form : {kText, kTextAt, kCStrAt, kWideAt, kUStr, kUStrAt, kStrAt, kInt}) {
        for (const auto hash : {kFunctions[form].hashes[0][0], kFunctions[form].hashes[1][1]}) {
            EXPECT_EQ(hash(nullptr, 13), 1u);
            EXPECT_EQ(hash(form % 2 == 1 ? &no_text : nullptr, 13), 1u);
            EXPECT_EQ(hash(nullptr, 0), 0u);
        }
    }
}

TEST(VoidHashTableTest, StaysAsItWasWhenMemoryRunsOutOrAFunctionThrows) {
    // Three collisions of 13 slots: one more makes the table grow.
    const auto fill = [](Table::HashFunction function) {
        Table table(4, 4, function, &Table::si_CompareInteger, 13);
        for (const std::uint32_t number : {0u, 1u, 2u, 14u, 27u, 40u})
            table.b_Insert(&number, &number);
        return table;
    };
    const auto read = [](const Table& table) {
        std::vector<std::uint32_t> all{table.n_GetTableSize(), table.n_GetCollisions(),
                                       table.n_GetCount(), 0};
        for (CT_VoidHashIterator walk(&table); walk.b_Next(); all.push_back(0))
            walk.v_Get(&all.back());
        return all;
    };
    const std::uint32_t key = 13;
    Table throwing = fill([](const void* wanted, unsigned int size) {
        if (size > 13) throw CT_SmartHeapException("", platform::kMemoryExhausted);
        return Table::sn_HashInteger(wanted, size);
    });
    const auto before = read(throwing);
    EXPECT_THROW(throwing.b_Insert(&key, &key), CT_SmartHeapException);
    EXPECT_THROW(throwing.v_Resize(40), CT_SmartHeapException);
    EXPECT_EQ(read(throwing), before);

    const Table other = fill(&F::sn_HashPN4);
    const std::function<void(Table&)> changes[] = {
        [&](Table& table) { table.b_Insert(&key, &key); },
        [&](Table& table) { table.v_Set(&other); }, [](Table& table) { table.v_Set(100u); },
        [](Table& table) { table.v_Resize(100); }};
    for (const auto& change : changes) {
        const auto make = [&] { return fill(&Table::sn_HashInteger); };
        EXPECT_GT(test::ExpectUnchangedWithoutMemory(make, change, read), 0u);
    }
    const auto make_empty = [] {
        return Table(4, 4, &F::sn_HashPN4, &Table::si_CompareInteger, 0);
    };
    EXPECT_GT(test::ExpectUnchangedWithoutMemory(make_empty, changes[0], read), 0u);
    EXPECT_GT(test::FailEachAllocation([&] { delete new Table(&other); }), 2u);
}

TEST(VoidHashTableTest, ComparesTextsAsItsFunctionsSay) {
    // Of the same hash as the text looked for and shorter: no unit behind its end is read.
    const std::vector<char16_t> shorter{u'\u6782', u'\0'};
    CT_HashTable<const char16_t*, int> exact(&F::sn_HashCasePQCUZ, &C::si_CompareCasePQCUZ);
    int age = 0, none = 1;
    EXPECT_FALSE(exact.b_Insert(shorter.data(), 36) || exact.b_Get(u"aar", &none));
    EXPECT_TRUE(exact.b_Insert(u"\u6782", 37) && exact.b_Remove(u"\u6782", &age));
    EXPECT_EQ(age + none, 37);
    EXPECT_EQ(F::sn_HashCaseQCUZ(shorter.data(), 4093), F::sn_HashCaseQCUZ(u"aar", 4093));

    // Equal texts in different slots, of which a copy, as it grows to 17 slots, keeps one.
    CT_HashTable<const char16_t*, int> mixed(&HashForeign, &C::si_CompareNoCasePQCUZ, 101);
    for (const char16_t* const text : {u"b", u"i", u"p", u"aa", u"AA"})
        EXPECT_FALSE(mixed.b_Insert(text, 0));
    mixed.v_Resize(7);
    EXPECT_EQ(decltype(mixed)(&mixed).n_GetCount(), 4u);
}

}  // namespace
