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

CT_Symbol* GiveByIterator(CT_SymbolTable& table, const CT_Symbol* wanted) {
    const std::unique_ptr<CT_Iterator<CT_Symbol*>> symbols(table.pco_GiveIterator());
    while (symbols->b_Next() != FALSE && symbols->o_Get() != wanted) {
    }
    return symbols->o_Remove();
}

TEST(SymbolTableTest, KeepsToTwoMapsThroughRandomChanges) {
    for (const BOOL case_sensitive : {FALSE, TRUE}) {
        std::mt19937 random(11);
        CT_SymbolTable table(case_sensitive);
        std::map<std::u16string, CT_Symbol*> names;
        std::map<std::uint32_t, CT_Symbol*> ids;
        std::uint32_t last = 0;
        for (int i = 0; i < 6000; ++i) {
            std::u16string name(random() % 4, u'\0'), key;
            for (char16_t& unit : name) {
                unit = u"aAäÄb"[random() % 5];
                key += unit == u'A' && case_sensitive == FALSE ? u'a' : unit;
            }
            auto id = static_cast<std::uint32_t>(random() % 100);
            CT_Symbol* const by_name = names.contains(key) ? names[key] : nullptr;
            CT_Symbol* const by_id = ids.contains(id) ? ids[id] : nullptr;
            ASSERT_EQ(table.pco_Get(name.c_str()), by_name);
            ASSERT_EQ(table.pco_Get(id), by_id);
            if (const unsigned way = random() % 8; way > 2) {
                CT_Symbol* const symbol = New(name.c_str(), id % 3 == 0 ? CT_Symbol::kNoId : id);
                if (id % 3 == 0) id = last + 1;
                last = std::max(last, id);
                ASSERT_EQ(table.b_Take(symbol), by_name != nullptr ? TRUE : FALSE);
                ASSERT_EQ(symbol->n4_GetId(), id);
                ASSERT_EQ(symbol->pcco_GetName()->qcuz_Get(), name);
                names[key] = ids[id] = symbol;
            } else {
                CT_Symbol* const wanted = way == 0 ? by_id : by_name;
                const Owned given(way == 0   ? table.pco_Give(id)
                                  : way == 1 ? table.pco_Give(name.c_str())
                                             : GiveByIterator(table, wanted));
                ASSERT_EQ(given.get(), wanted);
                const auto gone = [&](const auto& entry) { return entry.second == wanted; };
                std::erase_if(names, gone);
                std::erase_if(ids, gone);
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
    EXPECT_FALSE(table.b_Take(nullptr));
    EXPECT_EQ(CT_Symbol(static_cast<const CT_Symbol*>(nullptr)).n4_GetId(), CT_Symbol::kNoId);
    EXPECT_EQ(table.pco_Get(u"")->n4_GetId(), 2u);  // 1 is in use
    CT_ErrorManager::spco_Get()->v_SetError(7, u"before");
    table.b_Take(New(u"half", 5));  // by its name only
    EXPECT_TRUE(test::TakeError(7));
    EXPECT_EQ(table.pco_Get(5u), nullptr);
    EXPECT_EQ(table.pco_Get(u"HALF")->n4_GetId(), 5u);
}

TEST(SymbolTableTest, IteratorsCloneCompareAndGoWhereOthersAre) {
    CT_SymbolTable table, second;
    for (const char16_t* name : {u"a", u"b", u"c", u"d"}) table.b_Take(New(name));
    second.b_Take(New(u"else"));
    const std::unique_ptr<CT_SymbolTable::Iterator> first(table.pco_GiveIterator());
    const CT_HashTable<std::uint32_t, CT_Symbol*> numbers(&CT_VoidHashTable::sn_HashInteger,
                                                          &CT_VoidHashTable::si_CompareInteger);
    CT_HashIterator<std::uint32_t, CT_Symbol*> other(&numbers);
    EXPECT_TRUE(first->b_AtHome() && !first->b_AtEnd() && first->b_Next() && first->b_Next());
    const std::unique_ptr<CT_Iterator<CT_Symbol*>> clone(first->pco_Clone());
    EXPECT_TRUE(clone->b_IsEqual(first.get()) && first->b_IsEqual(clone.get()));
    EXPECT_FALSE(first->b_IsEqual(&other) || other.b_IsEqual(first.get()));
    EXPECT_EQ(first->o_GetKey(), first->o_Get()->pcco_GetName()->qcuz_Get());
    clone->v_Set();
    clone->v_Set(&other);  // of another kind: nothing changes
    EXPECT_TRUE(clone->b_AtHome() && !clone->b_IsEqual(first.get()));
    clone->v_Set(first.get());
    CT_Symbol* const current = first->o_Get();
    Owned removed(clone->o_Remove());  // a clone gives away as the original does
    EXPECT_EQ(removed.get(), current);
    EXPECT_EQ(table.pco_Get(removed->n4_GetId()), nullptr);
    EXPECT_TRUE(clone->n_GetCount() == 3 && !clone->b_AtEnd() && clone->b_Next());
    EXPECT_TRUE(!clone->b_Next() && clone->b_AtEnd() && clone->o_Remove() == nullptr);
    const std::unique_ptr<CT_SymbolTable::Iterator> there(second.pco_GiveIterator());
    there->b_Next();
    clone->v_Set(there.get());  // goes over to the other table, and gives away there
    removed.reset(clone->o_Remove());
    EXPECT_EQ(second.pco_Get(removed->n4_GetId()), nullptr);
    EXPECT_NE(table.pco_Get(removed->n4_GetId()), nullptr);
}

TEST(SymbolTableTest, StaysAsItWasWhenMemoryRunsOut) {
    const auto make = [] {
        auto table = std::make_unique<CT_SymbolTable>();
        for (const char16_t* name : {u"a", u"b", u"c", u"d", u"e", u"f"}) table->b_Take(New(name));
        return table;
    };
    const auto read = [](const auto& table) {
        std::u16string all;
        for (std::uint32_t id = 1; id < 20; ++id) {
            const CT_Symbol* const found = table->pco_Get(id);
            all += found == nullptr ? u"-" : found->pcco_GetName()->qcuz_Get();
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
