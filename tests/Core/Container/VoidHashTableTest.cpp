#include "Foundation/Core/Container/VoidHashTable.h"

#include <algorithm>
#include <functional>

#include "Foundation/Core/Container/HashTable.h"
#include "HashSupport.h"

namespace {

using F = CT_HashFunction;
using C = CT_Compare;
using Table = CT_VoidHashTable;
using Item = std::pair<std::size_t, std::uint64_t>;  // key, by number, and data
using Chains = std::vector<std::vector<Item>>;

template <typename Function>
Table::CompareFunction Untyped(Function function) {
    return reinterpret_cast<Table::CompareFunction>(function);
}

class VoidHashTableTest : public testing::Test {
public:
    static void SetUpTestSuite() {
        test::Random random;
        while (texts.size() < 150) {
            const std::string text = random.Text(9);
            if (std::ranges::count(texts, text, &test::KeyText::bytes) == 0)
                texts.emplace_back(text);
        }
    }
    static void TearDownTestSuite() { texts.clear(); }

    static inline std::deque<test::KeyText> texts;  // all different
};
const std::deque<test::KeyText>& texts = VoidHashTableTest::texts;

// Keys of one form, the functions of the table, and what these mean.
struct Keys {
    const char* name;
    Table::HashFunction hash;
    Table::CompareFunction compare;
    test::Form form;
    bool hash_folds = false, compare_folds = false;
    std::uint32_t size = sizeof(void*);
    unsigned int slots = 0xFFFFFFFF;  // more are not used

    const void* At(std::size_t key) const { return texts[key].Key(form); }
    std::size_t Slot(std::size_t key, std::size_t table_size) const {
        return texts[key].Hash(form, hash_folds) % std::min<std::size_t>(table_size, slots);
    }
    bool Equal(std::size_t left, std::size_t right) const {
        const std::string &a = texts[left].bytes, &b = texts[right].bytes;
        return std::ranges::equal(
            a, b, [this](char x, char y) { return x == y || (compare_folds && (x ^ y) == ' '); });
    }
};

const Keys kAllKeys[] = {
    {"numbers", &F::sn_HashPN4, Untyped(&C::si_ComparePN4), test::kNumber, false, false, 4},
    {"integers", &Table::sn_HashInteger, &Table::si_CompareInteger, test::kNumber, false, false, 4},
    {"foreign comparison", &F::sn_HashPN4,
     [](const void* a, const void* b) { return std::memcmp(a, b, 4); }, test::kNumber, false, false,
     4},
    {"foreign hash, three slots",
     [](const void* key, unsigned int size) {
         return *static_cast<const std::uint32_t*>(key) % std::min(size, 3u) + 1;
     },
     &Table::si_CompareInteger, test::kNumber, false, false, 4, 3},
    {"units", &F::sn_HashCasePQCUZ, Untyped(&C::si_CompareCasePQCUZ), test::kUnitsAt},
    {"no case", &F::sn_HashNoCasePQUZ, Untyped(&C::si_CompareNoCasePQUZ), test::kUnitsAt, true,
     true},
    {"exact hash", &F::sn_HashCasePQUZ, Untyped(&C::si_CompareNoCasePQUZ), test::kUnitsAt, false,
     true},
    {"exact comparison", &F::sn_HashNoCasePQUZ, Untyped(&C::si_CompareCasePQUZ), test::kUnitsAt,
     true, false},
    {"in place", &F::sn_HashCaseQCUZ, Untyped(&C::si_CompareCaseQCUZ), test::kUnits, false, false,
     20},
    {"bytes", &F::sn_HashCasePQCCZ, Untyped(&C::si_CompareCasePQCCZ), test::kBytesAt},
    {"CT_CString", &F::sn_HashCStringNoCasePPCO, Untyped(&C::si_CompareCStringNoCasePPCO),
     test::kCStringAt, true, true},
    {"CT_UString", &F::sn_HashUStringPPCCO, Untyped(&C::si_CompareUStringPPCCO), test::kUStringAt},
    {"CT_String", &F::sn_HashStringPPCO, Untyped(&C::si_CompareStringPPCO), test::kStringAt},
};

// The table as it is defined.
struct Model {
    Model(const Keys& of, std::size_t size) : keys(&of), chains(size) {}

    std::pair<std::size_t, std::size_t> Find(std::size_t key) const {
        const std::size_t slot = keys->Slot(key, chains.size());
        const auto found = std::ranges::find_if(
            chains[slot], [&](const Item& item) { return keys->Equal(item.first, key); });
        return {slot, static_cast<std::size_t>(found - chains[slot].begin())};
    }
    bool Has(std::size_t key) const {
        const auto [slot, at] = Find(key);
        return at < chains[slot].size();
    }
    void Push(const Item& item) {
        auto& chain = chains[keys->Slot(item.first, chains.size())];
        collisions += !chain.empty();
        chain.insert(chain.begin(), item);
    }
    bool Insert(const Item& item) {
        const auto [slot, at] = Find(item.first);
        if (at < chains[slot].size()) {
            chains[slot][at].second = item.second;
            return true;
        }
        Push(item);
        if (collisions > chains.size() / 4) Resize(0);
        return false;
    }
    void RemoveAt(std::size_t slot, std::size_t at) {
        collisions -= at != 0;
        chains[slot].erase(chains[slot].begin() + static_cast<std::ptrdiff_t>(at));
    }
    void Resize(std::size_t size) {
        if (size == 0) size = chains.size();
        if (collisions >= size / 4) {
            size *= 2;
            while (!std::ranges::none_of(
                std::vector{2, 3, 5, 7, 11, 13, 17, 19, 23, 29, 31, 37, 41, 43, 47},
                [&](std::size_t d) { return d * d <= size && size % d == 0; }))
                ++size;
        }
        collisions = 0;
        for (const auto& chain : std::exchange(chains, Chains(size))) {
            for (const Item& item : chain) Push(item);
        }
    }
    Model Copy() const {
        Model copy(*keys, chains.size());
        for (const auto& chain : chains) {
            for (const Item& item : chain) copy.Insert(item);
        }
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
            ASSERT_EQ(std::memcmp(stored->pcv_GetData(), &data, 8), 0);
            ASSERT_EQ(std::memcmp(stored->pcv_GetKey(), model.keys->At(key), model.keys->size), 0);
            stored = stored->pcso_GetFollowing();
            ++count;
        }
        ASSERT_EQ(stored, nullptr);
    }
    ASSERT_EQ(table.n_GetCount(), count);
    ASSERT_FALSE(walk.b_Next());
    ASSERT_TRUE(walk.b_AtEnd());
}

// Walks over all items and removes about every third through the iterator.
void Thin(Table& table, Model& model, test::Random& random) {
    CT_VoidHashIterator walk(&table);
    bool more = walk.b_Next();
    for (std::size_t slot = 0; slot < model.chains.size(); ++slot) {
        for (std::size_t at = 0; at < model.chains[slot].size();) {
            ASSERT_TRUE(more && !walk.b_AtEnd());
            const auto [key, data] = model.chains[slot][at];
            if (random(3) != 0) {
                more = walk.b_Next();
                ++at;
                continue;
            }
            char out[32];
            random(2) == 0 ? walk.v_Remove(out) : walk.v_RemoveKey(out);
            ASSERT_TRUE(std::memcmp(out, &data, 8) == 0 ||
                        std::memcmp(out, model.keys->At(key), model.keys->size) == 0);
            model.RemoveAt(slot, at);
            more = !walk.b_AtEnd();
        }
    }
    ASSERT_TRUE(walk.b_AtEnd());
}

TEST_F(VoidHashTableTest, BehavesAsDefinedUnderRandomOperations) {
    for (const Keys& keys : kAllKeys) {
        SCOPED_TRACE(keys.name);
        test::Random random;
        Table table(8, keys.size, keys.hash, keys.compare, 13);
        Model model(keys, 13);
        for (std::uint64_t step = 1; step <= 1200; ++step) {
            const std::size_t key = random(texts.size());
            std::uint64_t out = 1;
            const unsigned int choice = random(100);
            if (choice < 60) {
                ASSERT_EQ(table.b_Insert(keys.At(key), &step), model.Insert({key, step}));
            } else if (choice < 90) {
                const auto [slot, at] = model.Find(key);
                const bool there = model.Has(key);
                const std::uint64_t data = there ? model.chains[slot][at].second : 0;
                ASSERT_EQ(table.b_Get(keys.At(key), &out), there);
                ASSERT_EQ(out, data);
                if (choice < 75) {
                    ASSERT_EQ(table.b_Remove(keys.At(key), &(out = 1)), there);
                    ASSERT_EQ(out, data);
                    if (there) model.RemoveAt(slot, at);
                }
            } else if (choice < 94) {
                const unsigned int size = random(80);
                table.v_Resize(size);
                model.Resize(size);
            } else if (choice < 96) {
                ASSERT_NO_FATAL_FAILURE(Thin(table, model, random));
            } else if (choice < 98) {
                const Table copy(&table);
                const Model model_copy = model.Copy();
                ASSERT_NO_FATAL_FAILURE(ExpectSame(copy, model_copy));
                table.v_Set(&copy);
                model = model_copy.Copy();
            } else if (model.Has(key)) {
                const auto [slot, at] = model.Find(key);
                const Table::st_HashItem* item =
                    table.pso_GetAt(static_cast<std::uint32_t>(slot) + 1);
                for (std::size_t i = 0; i < at; ++i) item = item->pcso_GetFollowing();
                table.v_RemoveAt(static_cast<std::uint32_t>(slot) + 1, item);
                model.RemoveAt(slot, at);
            }
            ASSERT_NO_FATAL_FAILURE(ExpectSame(table, model)) << "step " << step;
        }
        table.v_Set(5u);
        ASSERT_NO_FATAL_FAILURE(ExpectSame(table, Model(keys, 5)));
    }
}

TEST_F(VoidHashTableTest, GrowsToTheNextPrimeWhenCollisionsExceedAQuarter) {
    Table table(4, 4, &Table::sn_HashInteger, &Table::si_CompareInteger, 13);
    for (std::uint32_t i = 0; i < 5; ++i) {
        EXPECT_EQ(table.n_GetTableSize(), 13u);
        const std::uint32_t key = 13 * i;
        table.b_Insert(&key, &i);
    }
    EXPECT_EQ(table.n_GetTableSize(), 29u);
    EXPECT_EQ(table.n_GetCollisions(), 0u);
    for (const auto& [n, prime] : {std::pair{0u, 0u},
                                   {1, 1},
                                   {2, 2},
                                   {3, 3},
                                   {4, 5},
                                   {9, 11},
                                   {25, 29},
                                   {26, 29},
                                   {4294967292u, 0},
                                   {4294967280u, 4294967291u}}) {
        EXPECT_EQ(Table::n_GetNextPrim(n), prime);
    }
}

TEST_F(VoidHashTableTest, CopiesItemsOfEverySizeAndFillsWithZeros) {
    for (const std::uint32_t size : {0u, 1u, 2u, 3u, 4u, 8u, 12u, 16u, 17u, 40u}) {
        SCOPED_TRACE(size);
        Table table(size, 4, &Table::sn_HashInteger, &Table::si_CompareInteger, 3);
        const std::string first(size, 'x'), second(size, 'y'), zeros(size, '\0');
        const std::uint32_t key = 5, other = 6;
        EXPECT_FALSE(table.b_Insert(&key, first.data()));
        EXPECT_TRUE(table.b_Insert(&key, second.data()));
        EXPECT_EQ(table.n_GetCount(), 1u);
        std::string out(size, 'z');
        EXPECT_TRUE(table.b_Get(&key, out.data()) && table.b_Get(&key, nullptr));
        EXPECT_EQ(out, second);
        EXPECT_FALSE(table.b_Get(&other, out.data()));
        EXPECT_EQ(out, zeros);
        CT_VoidHashIterator walk(&table);
        EXPECT_TRUE(walk.b_AtHome() && !walk.b_AtEnd() && walk.b_Next() && !walk.b_AtHome());
        const CT_VoidHashIterator same(&walk);
        EXPECT_TRUE(same.b_IsEqual(&walk));
        EXPECT_TRUE(table.b_Remove(&key, nullptr));
        out.assign(size, 'z');
        EXPECT_FALSE(table.b_Remove(&key, out.data()));
        EXPECT_EQ(out, zeros);
        walk.v_Set();
        EXPECT_TRUE(!walk.b_Next() && walk.b_AtEnd() && !walk.b_IsEqual(&same));
        walk.v_Remove(out.data());
        EXPECT_EQ(out, zeros);

        Table converted(2, 8, &Table::sn_HashInteger, &Table::si_CompareInteger, 3);
        table.b_Insert(&key, first.data());
        converted.v_Set(&table);
        const std::uint64_t wide_key = 5;
        char data[2];
        EXPECT_TRUE(converted.b_Get(&wide_key, data));
        EXPECT_EQ(std::string(data, 2), (first + zeros + std::string(2, '\0')).substr(0, 2));
        converted.v_Set(0u);
        EXPECT_FALSE(converted.b_Get(&wide_key, data) || converted.b_Remove(&wide_key, data));
        EXPECT_EQ(std::string(data, 2), std::string(2, '\0'));
        EXPECT_FALSE(converted.b_Insert(&wide_key, data));
        EXPECT_TRUE(converted.b_Get(&wide_key, nullptr));
    }
}

TEST_F(VoidHashTableTest, HandlesLongChainsWithoutComparingAndReturnsMemory) {
    static int compared, hashed;
    const auto compare = [](const void* left, const void* right) {
        ++compared;
        return Table::si_CompareInteger(left, right);
    };
    const auto hash = [](const void*, unsigned int) { return ++hashed, 1u; };
    const std::int64_t before = platform::LiveBlocks();
    Table table(4, 4, hash, compare, 13);
    for (std::uint32_t i = 0; i < 1000; ++i) table.b_Insert(&i, &i);
    compared = hashed = 0;
    Table copy(&table);
    EXPECT_EQ(compared, 0);
    EXPECT_EQ(hashed, 1000);
    CT_VoidHashIterator walk(&copy);
    walk.b_Next();
    while (!walk.b_AtEnd()) walk.v_Remove(nullptr);
    EXPECT_EQ(copy.n_GetCount(), 0u);
    EXPECT_EQ(compared, 0);
    copy.v_Set(0u);
    for (std::uint32_t i = 0; i < 1000; ++i) table.b_Remove(&i, nullptr);
    EXPECT_EQ(platform::LiveBlocks() - before, 2);  // the slots and one chunk of nodes
}

TEST_F(VoidHashTableTest, StaysAsItWasWhenMemoryRunsOutOrAFunctionThrows) {
    static unsigned int throws_above;  // the table size from which on hashing fails
    const auto hash = [](const void* key, unsigned int size) {
        if (size >= throws_above) throw CT_SmartHeapException("", platform::kMemoryExhausted);
        return Table::sn_HashInteger(key, size);
    };
    throws_above = 20;
    const std::uint32_t key = 13;
    const auto fill = [](Table::HashFunction function, std::uint32_t count) {
        Table table(4, 4, function, &Table::si_CompareInteger, 13);
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::uint32_t number = i < 10 ? i : 13 * (i - 9) + 1;
            table.b_Insert(&number, &i);
        }
        return table;
    };
    const auto read = [](const Table& table) {
        std::vector<std::uint32_t> all{table.n_GetTableSize(), table.n_GetCollisions(),
                                       table.n_GetCount()};
        std::uint32_t data = 0;
        for (CT_VoidHashIterator walk(&table); walk.b_Next();) {
            walk.v_Get(&data);
            all.push_back(data);
        }
        return all;
    };
    Table throwing = fill(hash, 13);
    const auto before = read(throwing);
    EXPECT_EQ(throwing.n_GetCollisions(), 3u);
    EXPECT_THROW(throwing.b_Insert(&key, &key), CT_SmartHeapException);
    EXPECT_THROW(throwing.v_Resize(40), CT_SmartHeapException);
    EXPECT_EQ(read(throwing), before);

    const Table other = fill(&Table::sn_HashInteger, 12);
    const auto make = [&] { return fill(&Table::sn_HashInteger, 13); };
    const std::function<void(Table&)> changes[] = {
        [&](Table& table) { table.b_Insert(&key, &key); },
        [&](Table& table) { table.v_Set(&other); },
        [](Table& table) { table.v_Set(100u); },
        [](Table& table) { table.v_Resize(100); },
    };
    for (const auto& change : changes)
        EXPECT_GT(test::ExpectUnchangedWithoutMemory(make, change, read), 0u);
    EXPECT_GT(test::FailEachAllocation([&] { delete new Table(&other); }), 2u);
}

TEST_F(VoidHashTableTest, TypedTablesTakeKeysAndDataByValue) {
    CT_HashTable<const char16_t*, int> ages(&F::sn_HashNoCasePQCUZ, &C::si_CompareNoCasePQCUZ);
    EXPECT_FALSE(ages.b_Insert(u"Ada", 36));
    EXPECT_TRUE(ages.b_Insert(u"ADA", 37));
    int age = 0;
    EXPECT_TRUE(ages.b_Get(u"ada", &age));
    EXPECT_EQ(age, 37);
    CT_HashTable<const char16_t*, int> copy(&ages);
    EXPECT_TRUE(ages.b_Remove(u"aDA", nullptr));
    EXPECT_EQ(copy.n_GetCount() - ages.n_GetCount(), 1u);
}

}  // namespace
