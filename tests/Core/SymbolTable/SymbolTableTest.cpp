#include "Foundation/Core/SymbolTable/SymbolTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>

#include "Foundation/Core/Error/ErrorManager.h"
#include "Support/Memory.h"

namespace {

std::set<const CT_Symbol*> alive;

// Tells when a symbol goes, and that none goes twice.
class Watched : public CT_Symbol {
public:
    Watched(const char16_t* name, std::uint32_t id) : CT_Symbol(name, id) { alive.insert(this); }
    ~Watched() override { EXPECT_EQ(alive.erase(this), 1u); }
};

CT_Symbol* New(const char16_t* name, std::uint32_t id = CT_Symbol::kNoId) {
    return new Watched(name, id);
}

using Owned = std::unique_ptr<CT_Symbol>;

TEST(SymbolTableTest, KeepsToTwoMapsThroughRandomChanges) {
    for (const BOOL case_sensitive : {FALSE, TRUE}) {
        std::mt19937 random(11);
        CT_SymbolTable table(case_sensitive);
        std::map<std::u16string, CT_Symbol*> names;
        std::map<std::uint32_t, CT_Symbol*> ids;
        std::uint32_t last = 0;
        const auto key = [&](std::u16string name) {
            if (case_sensitive == FALSE) {
                std::replace(name.begin(), name.end(), u'A', u'a');
            }
            return name;
        };
        const auto name_of = [](const CT_Symbol* symbol) {
            return std::u16string(symbol->pcco_GetName()->qcuz_Get());
        };
        const auto forget = [&](CT_Symbol* symbol) {
            std::erase_if(names, [&](const auto& entry) { return entry.second == symbol; });
            std::erase_if(ids, [&](const auto& entry) { return entry.second == symbol; });
        };
        for (int i = 0; i < 6000; ++i) {
            std::u16string name(random() % 4, u'\0');
            for (char16_t& unit : name) unit = u"aAäÄb"[random() % 5];
            auto id = static_cast<std::uint32_t>(random() % 100);
            const auto named = names.find(key(name));
            const auto numbered = ids.find(id);
            CT_Symbol* const by_name = named == names.end() ? nullptr : named->second;
            CT_Symbol* const by_id = numbered == ids.end() ? nullptr : numbered->second;
            ASSERT_EQ(table.pco_Get(name.c_str()), by_name);
            ASSERT_EQ(table.pco_Get(id), by_id);
            switch (random() % 8) {
                default: {
                    CT_Symbol* const symbol = New(name.c_str(), id % 3 == 0 ? ~0u : id);
                    if (id % 3 == 0) {
                        while (ids.contains(++last)) {
                        }
                        id = last;
                    }
                    last = std::max(last, id);
                    ASSERT_EQ(table.b_Take(symbol), by_name != nullptr ? TRUE : FALSE);
                    ASSERT_EQ(symbol->n4_GetId(), id);
                    ASSERT_EQ(name_of(symbol), name);
                    names[key(name)] = symbol;
                    ids[id] = symbol;
                    break;
                }
                case 0:
                    ASSERT_EQ(Owned(table.pco_Give(name.c_str())).get(), by_name);
                    forget(by_name);
                    break;
                case 1:
                    ASSERT_EQ(Owned(table.pco_Give(id)).get(), by_id);
                    forget(by_id);
                    break;
                case 2: {
                    const std::unique_ptr<CT_Iterator<CT_Symbol*>> symbols(
                        table.pco_GiveIterator());
                    while (symbols->b_Next() != FALSE && symbols->o_Get() != by_name) {
                    }
                    ASSERT_EQ(symbols->b_AtEnd(), by_name == nullptr ? TRUE : FALSE);
                    ASSERT_EQ(Owned(symbols->o_Remove()).get(), by_name);
                    forget(by_name);
                }
            }
            std::set<const CT_Symbol*> reachable;
            for (const auto& [ignored, symbol] : names) reachable.insert(symbol);
            for (const auto& [ignored, symbol] : ids) reachable.insert(symbol);
            ASSERT_EQ(alive, reachable) << i;
            ASSERT_EQ(table.n_GetCount(), names.size());
            if (i % 2000 != 0) continue;
            table.v_Set();
            names.clear();
            ids.clear();
            ASSERT_EQ(alive.size(), 0u);
        }
    }
    EXPECT_EQ(alive.size(), 0u);
}

TEST(SymbolTableTest, HandsOutIdentifiersThatAreFree) {
    CT_SymbolTable table;
    table.b_Take(New(u"a"));
    table.b_Take(New(u"b", 10));
    table.b_Take(New(u"c"));
    EXPECT_EQ(table.pco_Get(1u), table.pco_Get(u"A"));
    EXPECT_EQ(table.pco_Get(11u), table.pco_Get(u"C"));
    EXPECT_EQ(table.n4_GetNextId(), 12u);
    table.b_Take(New(u"last", 0xFFFFFFFE));
    table.b_Take(New(nullptr));
    EXPECT_EQ(table.pco_Get(u"")->n4_GetId(), 2u);  // 1 is in use
    CT_ErrorManager::spco_Get()->v_SetError(7, u"before");
    table.b_Take(New(u"half", 5));  // by its name only
    EXPECT_TRUE(test::TakeError(7));
    EXPECT_EQ(table.pco_Get(5u), nullptr);
    EXPECT_EQ(table.pco_Get(u"HALF")->n4_GetId(), 5u);
}

TEST(SymbolTableTest, IteratorsCloneCompareAndGoWhereOthersAre) {
    class OtherKind : public CT_HashIterator<std::uint32_t, CT_Symbol*> {
    public:
        using CT_HashIterator::CT_HashIterator;
    };
    CT_SymbolTable table;
    for (const char16_t* name : {u"a", u"b", u"c", u"d"}) table.b_Take(New(name));
    const std::unique_ptr<CT_SymbolTable::Iterator> first(table.pco_GiveIterator());
    const CT_HashTable<std::uint32_t, CT_Symbol*> numbers(&CT_VoidHashTable::sn_HashInteger,
                                                          &CT_VoidHashTable::si_CompareInteger);
    OtherKind other(&numbers);
    EXPECT_TRUE(first->b_AtHome() && !first->b_AtEnd() && first->b_Next() && first->b_Next());
    const std::unique_ptr<CT_Iterator<CT_Symbol*>> clone(first->pco_Clone());
    EXPECT_TRUE(clone->b_IsEqual(first.get()) && first->b_IsEqual(clone.get()));
    EXPECT_FALSE(first->b_IsEqual(&other) || other.b_IsEqual(first.get()));
    EXPECT_EQ(first->o_GetKey(), first->o_Get()->pcco_GetName()->qcuz_Get());
    clone->v_Set();
    clone->v_Set(&other);  // of another kind: nothing changes
    EXPECT_TRUE(clone->b_AtHome() && !clone->b_IsEqual(first.get()));
    clone->v_Set(first.get());
    CT_Symbol* const second = first->o_Get();
    const Owned removed(clone->o_Remove());  // a clone gives away as the original does
    EXPECT_EQ(removed.get(), second);
    EXPECT_EQ(table.pco_Get(removed->n4_GetId()), nullptr);
    EXPECT_TRUE(clone->n_GetCount() == 3 && !clone->b_AtEnd() && clone->b_Next());
    EXPECT_TRUE(!clone->b_Next() && clone->b_AtEnd() && clone->o_Remove() == nullptr);
}

TEST(SymbolTableTest, StaysAsItWasWhenMemoryRunsOut) {
    const auto make = [] {
        auto table = std::make_unique<CT_SymbolTable>();
        for (const char16_t* name : {u"a", u"b", u"c", u"d", u"e", u"f"}) table->b_Take(New(name));
        return table;
    };
    const auto read = [](const auto& table) {
        std::u16string all;
        for (std::uint32_t i = 0; i < 20; ++i) {
            const CT_Symbol* const found = table->pco_Get(i);
            if (found != nullptr) all += found->pcco_GetName()->qcuz_Get();
        }
        return std::make_tuple(all, table->n_GetCount(), table->pco_Get(u"C")->n4_GetId());
    };
    for (const std::uint32_t id : {CT_Symbol::kNoId, 2u}) {
        for (const char16_t* name : {u"new", u"c"}) {
            const auto take = [&](auto& table) {
                Owned symbol(New(name, id));
                try {
                    table->b_Take(symbol.get());
                } catch (...) {
                    EXPECT_EQ(symbol->n4_GetId(), id);  // it is still the caller's
                    throw;
                }
                symbol.release();
            };
            EXPECT_GT(test::ExpectUnchangedWithoutMemory(make, take, read), 0u);
        }
    }
}

}  // namespace
