// Both character trees beside maps that follow the same rules node by node.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "Foundation/Core/Container/AlphaTree.h"
#include "Foundation/Core/Container/VoidTree.h"
#include "Foundation/Core/String/UString.h"
#include "Support/Memory.h"
#include "Support/TempFolder.h"
#include "Support/Text.h"

namespace platform = zelkor::platform;

namespace {

using Printed = std::vector<std::pair<std::u16string, std::uint32_t>>;

Printed printed;

void Print(void* key, void* item) {
    std::uint32_t value = 0;
    std::memcpy(&value, item, sizeof value);
    printed.emplace_back(static_cast<char16_t*>(key), value);
}

Printed Contents(const CT_VoidTree& tree) {
    CT_VoidTree::v_SetDebugPrint(Print);
    tree.v_DebugPrint();
    return std::exchange(printed, {});
}

// Both trees, and what they hold: the keys with their values; of each node its branches in the
// order of their creation, where the last takes the place of one that goes.
struct Trees {
    CT_VoidTree items{sizeof(std::uint32_t)};
    CT_AlphaTree values;
    std::map<std::u16string, std::uint32_t> known;
    std::map<std::u16string, std::u16string> branches;

    void Add(const std::u16string& key, std::uint32_t value) {
        items.v_Add(key.c_str(), &value);
        values.v_Add(key.c_str(), value);
        known[key] = value;
        for (std::size_t i = 0; i < key.size(); ++i) {
            std::u16string& row = branches[key.substr(0, i)];
            if (row.find(key[i]) == row.npos) row += key[i];
        }
    }
    BOOL Remove(std::u16string key) {
        const BOOL there = known.erase(key) != 0 ? TRUE : FALSE;
        EXPECT_EQ(items.b_Remove(key.c_str()), there);
        EXPECT_EQ(values.b_Remove(key.c_str()), there);
        while (!key.empty() && there && !known.contains(key) && branches[key].empty()) {
            const char16_t last = key.back();
            key.pop_back();
            std::u16string& row = branches[key];
            row[row.find(last)] = row.back();
            row.pop_back();
        }
        return there;
    }
    void Print(Printed& out, const std::u16string& key = {}) {
        const bool prints = !key.empty() && key.size() <= 255;
        if (prints && known.contains(key)) out.emplace_back(key, known[key]);
        for (const char16_t branch : branches[key]) Print(out, key + branch);
    }
    void ExpectSame() {
        Printed all;
        Print(all);
        ASSERT_EQ(Contents(items), all);
        ASSERT_EQ(items.n_Entries(), known.size());
        ASSERT_EQ(values.n_Entries(), known.size());
        for (const auto& [key, value] : known) ASSERT_EQ(values.n_Search(key.c_str()), value);
    }
};

std::u16string Key(unsigned first, unsigned second) {
    return {static_cast<char16_t>(first + 1), static_cast<char16_t>(second + 1)};
}

// What a tree prints into a file.
template <typename Tree>
std::u16string Output(Tree& tree) {
    const test::TempFolder folder;
    tree.v_SetDebugPrint(folder.Name(u"out").c_str(), u"#", 1);
    tree.v_DebugPrint();
    tree.v_SetDebugPrint(u"stdout", nullptr, 1);
    const std::string bytes = folder.Read(u"out");
    std::u16string text(bytes.size() / 2, u'\0');
    std::memcpy(text.data(), bytes.data(), text.size() * 2);
    return text;
}

TEST(TreeTest, FollowTheirRulesThroughRandomChanges) {
    struct Shape {
        unsigned letters, length, operations;
    };
    int removed = 0;
    for (const auto [letters, length, operations] :
         {Shape{2, 6, 4000}, {5, 4, 4000}, {700, 2, 6000}, {40, 40, 2000}}) {
        SCOPED_TRACE(letters);
        std::mt19937 random(letters);
        Trees trees;
        std::vector<std::u16string> used;
        for (unsigned i = 0; i < operations; ++i) {
            std::u16string key(random() % (length + 1), u'\0');
            for (char16_t& unit : key) unit = static_cast<char16_t>(0xFFFF - random() % letters);
            if (!used.empty() && random() % 2 == 0) {  // a used key, or its beginning
                key = used[random() % used.size()];
                if (random() % 4 == 0) key.resize(random() % (key.size() + 1));
            }
            if (random() % operations > i) {  // grows at first, then goes down to nothing
                trees.Add(key, i);
                used.push_back(key);
            } else {
                removed += trees.Remove(key);
                ASSERT_EQ(trees.values.n_Search(key.c_str()), CT_AlphaTree::kNotFound);
                ASSERT_FALSE(trees.items.b_Search(key.c_str(), nullptr));
            }
            if (i % 53 == 0 || i + 1 == operations) trees.ExpectSame();
        }
    }
    EXPECT_GT(removed, 2000);
}

TEST(TreeTest, TakesTextsOfEveryKindAsKeysAndCopiesItemsWhole) {
    CT_AlphaTree values;
    CT_VoidTree items(3);
    const CT_UString empty, word(u"wort");
    values.v_Add(&empty, 7);
    values.v_Add(&word, 8);
    EXPECT_EQ(values.n_Search(static_cast<const char16_t*>(nullptr)), 7u);
    EXPECT_EQ(values.n_Search(u"wort"), 8u);
    values.v_Add(u"wort", CT_AlphaTree::kNotFound);  // no value: the key goes
    EXPECT_TRUE(values.n_Search(&word) == CT_AlphaTree::kNotFound && values.n_Entries() == 1);
    items.v_Add(&word, "abc");
    items.v_Add(&empty, "def");
    char out[] = "12345";
    EXPECT_TRUE(items.b_Search(u"wort", out + 1) && !items.b_Search(u"wor", out));
    EXPECT_STREQ(out, "1abc5");
    EXPECT_TRUE(items.b_Remove(&word) && items.b_Remove(&empty) && !items.b_Remove(&word));
}

TEST(TreeTest, DeepAndWideTreesTakeNoStackAndNoSquareOfTime) {
    std::u16string key(100000, u'x');
    CT_AlphaTree values;
    CT_VoidTree items(4);
    for (std::uint32_t i = 0; i < 10; ++i) {  // branches off along the way
        key[i * 9970] = u'y';
        values.v_Add(key.c_str(), i);
        items.v_Add(key.c_str(), &i);
    }
    EXPECT_EQ(values.n_Search(key.c_str()), 9u);
    EXPECT_EQ(Contents(items), Printed());  // nothing within the length that is printed
    EXPECT_TRUE(items.b_Remove(key.c_str()) && values.b_Remove(key.c_str()));
    EXPECT_EQ(values.n_Search(key.c_str()), CT_AlphaTree::kNotFound);
    EXPECT_EQ(values.n_Entries(), 9u);
    values.v_Set();
    for (unsigned unit = 0; unit < 0xFFFF; ++unit) values.v_Add(Key(unit, 0).c_str(), unit);
    EXPECT_EQ(values.n_Entries(), 0xFFFFu);  // as many branches as there can be
    EXPECT_EQ(values.n_Search(u"\uFFFF\1"), 0xFFFEu);
}

TEST(TreeTest, PrintsKeysOfUpTo255Characters) {
    const std::u16string longest(255, u'k');
    Trees trees;
    for (const auto& key : {std::u16string(), std::u16string(u"b"), longest, longest + u'k'}) {
        trees.Add(key, 7);
    }
    EXPECT_EQ(test::Utf8(Output(trees.values)),
              test::Utf8(u"\uFEFF#b : 7\n#" + longest + u" : 7\n"));
    EXPECT_EQ(Contents(trees.items), (Printed{{u"b", 7}, {longest, 7}}));
    const CT_VoidTree another(1);  // resets the routine of all trees
    const std::u16string text = Output(trees.items);
    EXPECT_EQ(text.substr(0, 5), u"\uFEFF#b: ");
    EXPECT_EQ(std::count(text.begin(), text.end(), u'\n'), 2);
    CT_VoidTree::v_SetDebugPrint(Print);
    trees.items.v_Set();  // does so too
    trees.items.v_Add(u"c", &text);
    EXPECT_TRUE(Output(trees.items).starts_with(u"\uFEFF#c: ") && printed.empty());
}

// Families of one branch more than a block has, and as many that took the blocks which those left;
// some key is as long as there is room for nodes.
TEST(TreeTest, BranchesCanLeaveWhereThePoolIsFull) {
    for (const unsigned most : {5U, 9U, 17U, 33U}) {
        for (unsigned length = 1; length < 20 * most; length += most / 2) {
            Trees trees;
            const auto fill = [&] {
                for (unsigned i = 0; i < 8 * most; ++i) {
                    const unsigned family = i / most, branch = i % most;
                    if (family < 4 || branch != 0) trees.Add(Key(family, branch), i);
                }
            };
            fill();
            trees.Add(std::u16string(length, u'k'), length);
            for (unsigned branch = 1; branch < most; ++branch) {
                for (unsigned family = 0; family < 8; ++family) trees.Remove(Key(family, branch));
                if (branch % 4 == 0) trees.ExpectSame();
            }
            fill();
            trees.ExpectSame();
        }
    }
}

TEST(TreeTest, UsesAgainWhatRemovingLeaves) {
    CT_VoidTree items(100);
    const char item[100] = {};
    items.v_Add(u"stays", item);
    items.v_Add(u"keeps nothing", nullptr);
    EXPECT_EQ(items.n_Entries(), 1u);
    std::uint64_t before = 0;
    for (unsigned i = 0; i < 10000; ++i) {
        if (i == 100) before = platform::AllocationCount();
        const std::u16string keys[] = {Key(i, 1) + u"bc", Key(i, 1), Key(i, 2)};
        for (const auto& key : keys) items.v_Add(key.c_str(), item);
        for (const auto& key : keys) items.b_Remove(key.c_str());
    }
    EXPECT_EQ(platform::AllocationCount(), before);
}

TEST(TreeTest, StaysAsItWasWhenMemoryRunsOut) {
    const std::vector<std::uint32_t> item(1000);
    const auto make = [&] {
        auto tree = std::make_unique<CT_VoidTree>(4000u);
        for (unsigned i = 0; i < 6; ++i) tree->v_Add(Key(i / 2, i).c_str(), item.data());
        return tree;
    };
    const auto read = [](const auto& tree) {
        return std::make_pair(Contents(*tree), tree->n_Entries());
    };
    const std::u16string key(20000, u'z');  // needs nodes, and room for its item
    const auto change = [&](auto& tree) { tree->v_Add(key.c_str(), item.data()); };
    EXPECT_EQ(test::ExpectUnchangedWithoutMemory(make, change, read), 2u);
}

}  // namespace
