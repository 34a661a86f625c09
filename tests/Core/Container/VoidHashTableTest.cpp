#include "Foundation/Core/Container/VoidHashTable.h"

#include <algorithm>
#include <functional>

#include "Foundation/Core/Container/HashTable.h"
#include "HashSupport.h"

namespace {

using F = CT_HashFunction;
using C = CT_Compare;
using Table = CT_VoidHashTable;
using enum test::Form;
using test::Form;
using Item = std::pair<std::size_t, std::uint64_t>;  // key, by number, and data
using Chains = std::vector<std::vector<Item>>;

template <typename Function>
Table::CompareFunction Untyped(Function function) {
    return reinterpret_cast<Table::CompareFunction>(function);
}

class VoidHashTableTest : public testing::Test {
public:
    static void SetUpTestSuite() {
        // Of equal hashes, beyond the part of a text that the table compares at once.
        for (const std::string start : {"", "aaaaaaaaaaaaaaa"}) {
            for (const char* const end : {"ar", "bb"}) texts.emplace_back(start + end);
        }
        test::Random random;
        while (texts.size() < 150) {
            const std::string text = random.Text(random(2) == 0 ? 3 : 19);
            if (std::ranges::count(texts, text, &test::KeyText::bytes) == 0)
                texts.emplace_back(text);
        }
    }
    static void TearDownTestSuite() { texts.clear(); }

    static inline std::deque<test::KeyText> texts;  // all different
};
const std::deque<test::KeyText>& texts = VoidHashTableTest::texts;

// The functions of a table, the form of its keys, and what these mean.
struct Keys {
    Table::HashFunction hash;
    Table::CompareFunction compare;
    Form form;
    std::uint32_t size;
    bool hash_folds = false, compare_folds = false;
    std::size_t slots = 0xFFFFFFFF;  // more are not used

    const void* At(std::size_t key) const { return texts[key].Key(form); }
    std::size_t Slot(std::size_t key, std::size_t table_size) const {
        return texts[key].Hash(form, hash_folds) % std::min(table_size, slots);
    }
    bool Equal(std::size_t left, std::size_t right) const {
        return std::ranges::equal(texts[left].bytes, texts[right].bytes, [this](char x, char y) {
            return x == y || (compare_folds && (x ^ y) == ' ');
        });
    }
};

int CompareForeign(const void* a, const void* b) {
    return std::memcmp(a, b, 4);
}
unsigned int HashToThreeSlots(const void* key, unsigned int size) {
    return F::sn_HashPN4(key, std::min(size, 3u));
}

const Keys kAllKeys[] = {
    {&F::sn_HashPN4, Untyped(&C::si_ComparePN4), kNumber, 4},
    {&Table::sn_HashInteger, &Table::si_CompareInteger, kNumber, 4},
    {&F::sn_HashPN4, &CompareForeign, kNumber, 4},
    {&HashToThreeSlots, &Table::si_CompareInteger, kNumber, 4, false, false, 3},
    {&F::sn_HashCasePQCUZ, Untyped(&C::si_CompareCasePQCUZ), kUnitsAt, 8},
    {&F::sn_HashNoCasePQUZ, Untyped(&C::si_CompareNoCasePQUZ), kUnitsAt, 8, true, true},
    {&F::sn_HashCasePQUZ, Untyped(&C::si_CompareNoCasePQUZ), kUnitsAt, 8, false, true},
    {&F::sn_HashNoCasePQUZ, Untyped(&C::si_CompareCasePQUZ), kUnitsAt, 8, true, false},
    {&F::sn_HashCaseQCUZ, Untyped(&C::si_CompareCaseQCUZ), kUnits, 40},
    {&F::sn_HashCasePQCCZ, Untyped(&C::si_CompareCasePQCCZ), kBytesAt, 8},
    {&F::sn_HashCStringNoCasePPCO, Untyped(&C::si_CompareCStringNoCasePPCO), kCStringAt, 8, true,
     true},
    {&F::sn_HashUStringPPCCO, Untyped(&C::si_CompareUStringPPCCO), kUStringAt, 8},
    {&F::sn_HashStringPPCO, Untyped(&C::si_CompareStringPPCO), kStringAt, 8},
};

// The table as it is defined.
struct Model {
    std::size_t SlotOf(std::size_t key) const { return keys->Slot(key, chains.size()); }
    // The place in its chain.
    std::size_t Find(std::size_t key) const {
        const auto& chain = chains[SlotOf(key)];
        const auto equal = [&](const Item& item) { return keys->Equal(item.first, key); };
        return static_cast<std::size_t>(std::ranges::find_if(chain, equal) - chain.begin());
    }
    void Push(const Item& item) {
        auto& chain = chains[SlotOf(item.first)];
        collisions += !chain.empty();
        chain.insert(chain.begin(), item);
    }
    bool Insert(const Item& item) {
        auto& chain = chains[SlotOf(item.first)];
        const std::size_t at = Find(item.first);
        if (at < chain.size()) return chain[at].second = item.second, true;
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
            for (size *= 2; !IsPrime(size); ++size) {
            }
        }
        collisions = 0;
        for (const auto& chain : std::exchange(chains, Chains(size))) {
            for (const Item& item : chain) Push(item);
        }
    }
    Model Copy() const {
        Model copy{keys, Chains(chains.size())};
        for (const auto& chain : chains) {
            for (const Item& item : chain) copy.Insert(item);
        }
        return copy;
    }
    static bool IsPrime(std::size_t n) {
        std::size_t divisor = 2;
        while (divisor * divisor <= n && n % divisor != 0) ++divisor;
        return divisor * divisor > n;
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
            ASSERT_EQ(std::memcmp(stored->pcv_GetKey(), model.keys->At(key), model.keys->size), 0);
            stored = stored->pcso_GetFollowing();
            ++count;
        }
        ASSERT_EQ(stored, nullptr);
    }
    ASSERT_EQ(table.n_GetCount(), count);
    ASSERT_TRUE(!walk.b_Next() && walk.b_AtEnd());
}

// Walks over all items and removes about every third: by the iterator, or by its slot, which ends
// the walk.
void Thin(Table& table, Model& model, test::Random& random) {
    CT_VoidHashIterator walk(&table);
    walk.b_Next();
    for (std::uint32_t slot = 0; slot < model.chains.size(); ++slot) {
        const Table::st_HashItem* item = table.pso_GetAt(slot + 1);
        for (std::size_t at = 0; at < model.chains[slot].size();) {
            ASSERT_FALSE(walk.b_AtEnd());
            const auto [key, data] = model.chains[slot][at];
            const std::uint32_t choice = random(30);
            if (choice >= 10) {
                walk.b_Next();
                item = item->pcso_GetFollowing();
                ++at;
                continue;
            }
            model.RemoveAt(slot, at);
            if (choice == 0) return table.v_RemoveAt(slot + 1, item);
            item = item->pcso_GetFollowing();
            char out[40];
            const bool takes_key = choice % 2 == 0;
            takes_key ? walk.v_RemoveKey(out) : walk.v_Remove(out);
            ASSERT_EQ(takes_key ? std::memcmp(out, model.keys->At(key), model.keys->size)
                                : std::memcmp(out, &data, sizeof(data)),
                      0);
        }
    }
    ASSERT_TRUE(walk.b_AtEnd());
}

TEST_F(VoidHashTableTest, BehavesAsDefinedUnderRandomOperations) {
    for (const Keys& keys : kAllKeys) {
        test::Random random;
        SCOPED_TRACE(testing::Message() << &keys - kAllKeys << ", seed " << random.seed);
        Table table(8, keys.size, keys.hash, keys.compare, 13);
        Model model{&keys, Chains(13)};
        for (std::uint64_t step = 1; step <= 1200; ++step) {
            const std::size_t key = random(texts.size());
            const std::uint32_t choice = random(100), size = random(80);
            if (choice < 60) {
                ASSERT_EQ(table.b_Insert(keys.At(key), &step), model.Insert({key, step}));
            } else if (choice < 90) {
                const std::size_t slot = model.SlotOf(key), at = model.Find(key);
                const bool there = at < model.chains[slot].size(), removes = choice < 75;
                std::uint64_t out = 1;
                ASSERT_EQ(
                    removes ? table.b_Remove(keys.At(key), &out) : table.b_Get(keys.At(key), &out),
                    there);
                ASSERT_EQ(out, there ? model.chains[slot][at].second : 0);
                if (there && removes) model.RemoveAt(slot, at);
            } else if (choice < 94) {
                table.v_Resize(size);
                model.Resize(size);
            } else if (choice < 97) {
                ASSERT_NO_FATAL_FAILURE(Thin(table, model, random));
            } else {
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

TEST_F(VoidHashTableTest, KnowsTheNextPrime) {
    for (std::uint32_t n = 4, next = 0; n < 3000; ++n) {
        for (next = n; !Model::IsPrime(next); ++next) {
        }
        ASSERT_EQ(Table::n_GetNextPrim(n), next);
    }
    for (std::uint32_t n = 0; n < 4; ++n) EXPECT_EQ(Table::n_GetNextPrim(n), n);
    EXPECT_EQ(Table::n_GetNextPrim(4294967280u), 4294967291u);
    EXPECT_EQ(Table::n_GetNextPrim(4294967292u), 0u);
}

TEST_F(VoidHashTableTest, CopiesItemsOfEverySizeAndFillsWithZeros) {
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

TEST_F(VoidHashTableTest, HandlesLongChainsWithoutComparingAndReturnsMemory) {
    static int compared, hashed;
    const auto compare = [](const void* left, const void* right) {
        return ++compared, Table::si_CompareInteger(left, right);
    };
    const auto hash = [](const void*, unsigned int) { return ++hashed, 1u; };
    const std::int64_t before = platform::LiveBlocks();
    Table table(4, 4, hash, compare, 13);
    for (std::uint32_t i = 0; i < 1000; ++i) table.b_Insert(&i, &i);
    compared = hashed = 0;
    EXPECT_EQ(Table(&table).n_GetCount(), 1000u);
    EXPECT_EQ(hashed, 1000);
    CT_VoidHashIterator walk(&table);
    for (walk.b_Next(); !walk.b_AtEnd();) walk.v_Remove(nullptr);
    EXPECT_EQ(table.n_GetCount() + static_cast<std::uint32_t>(compared), 0u);
    EXPECT_EQ(platform::LiveBlocks() - before, 2);  // the slots, a chunk of nodes
}

TEST_F(VoidHashTableTest, StaysAsItWasWhenMemoryRunsOutOrAFunctionThrows) {
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

    const Table other = fill(&CT_HashFunction::sn_HashPN4);
    const std::function<void(Table&)> changes[] = {
        [&](Table& table) { table.b_Insert(&key, &key); },
        [&](Table& table) { table.v_Set(&other); }, [](Table& table) { table.v_Set(100u); },
        [](Table& table) { table.v_Resize(100); }};
    for (const auto& change : changes) {
        const auto make = [&] { return fill(&Table::sn_HashInteger); };
        EXPECT_GT(test::ExpectUnchangedWithoutMemory(make, change, read), 0u);
    }
    EXPECT_GT(test::FailEachAllocation([&] { delete new Table(&other); }), 2u);
}

TEST_F(VoidHashTableTest, ComparesTextsAsItsFunctionsSay) {
    CT_HashTable<const char16_t*, int> ages(&F::sn_HashNoCasePQCUZ, &C::si_CompareNoCasePQCUZ);
    EXPECT_FALSE(ages.b_Insert(u"Ada", 36));
    EXPECT_TRUE(ages.b_Insert(u"ADA", 37));
    int age = 0, none = 1;
    EXPECT_TRUE(ages.b_Get(u"ada", &age) && !ages.b_Get(u"Bob", &none) &&
                ages.b_Remove(u"aDA", nullptr));
    EXPECT_EQ(age + none, 37);

    // Both keys fall into slot 2 of 16, where a comparison that folds case meets them.
    CT_HashTable<const char16_t*, int> mixed(&F::sn_HashCasePQCUZ, &C::si_CompareNoCasePQCUZ, 16);
    EXPECT_FALSE(mixed.b_Insert(u"a", 1));
    EXPECT_TRUE(mixed.b_Insert(u"A", 2));

    // Of the same hash as the text looked for and shorter: no unit behind its end is read.
    const std::vector<char16_t> shorter{u'\u6782', u'\0'};
    CT_HashTable<const char16_t*, int> exact(&F::sn_HashCasePQCUZ, &C::si_CompareCasePQCUZ);
    EXPECT_FALSE(exact.b_Insert(shorter.data(), 1));
    EXPECT_EQ(F::sn_HashCaseQCUZ(shorter.data(), 4093), F::sn_HashCaseQCUZ(u"aar", 4093));
    EXPECT_FALSE(exact.b_Get(u"aar", &none));
}

}  // namespace
