// Both character trees beside a plain one that follows the same rules node by node.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
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

namespace {

using Printed = std::vector<std::pair<std::u16string, std::uint32_t>>;

// Children in the order of their creation; the last takes the place of one that goes.
struct Plain {
    char16_t character = 0;
    std::optional<std::uint32_t> value;
    std::vector<Plain> branches;

    Plain* At(const char16_t* key, bool make) {
        if (*key == 0) return this;
        auto branch = std::ranges::find(branches, *key, &Plain::character);
        if (branch == branches.end()) {
            if (!make) return nullptr;
            branch = branches.insert(branch, {*key, {}, {}});
        }
        return branch->At(key + 1, make);
    }
    void Prune(const char16_t* key) {
        const auto branch = std::ranges::find(branches, *key, &Plain::character);
        if (*key == 0 || branch == branches.end()) return;
        branch->Prune(key + 1);
        if (branch->value || !branch->branches.empty()) return;
        std::swap(*branch, branches.back());
        branches.pop_back();
    }
    void Print(Printed& out, const std::u16string& key = {}) const {
        if (!key.empty() && value) out.emplace_back(key, *value);
        for (const Plain& branch : branches) branch.Print(out, key + branch.character);
    }
};

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

TEST(TreeTest, FollowsThePlainTreeThroughRandomChanges) {
    struct Shape {
        unsigned letters, length, operations;
    };
    unsigned removed = 0;
    for (const auto [letters, length, operations] :
         {Shape{2, 6, 4000}, {5, 4, 4000}, {700, 2, 6000}, {40, 40, 2000}}) {
        SCOPED_TRACE(letters);
        std::mt19937 random(letters);
        CT_VoidTree items(sizeof(std::uint32_t));
        CT_AlphaTree values;
        Plain plain;
        std::vector<std::u16string> known;
        for (unsigned i = 0; i < operations; ++i) {
            std::u16string key(random() % (length + 1), u'\0');
            for (char16_t& unit : key) unit = static_cast<char16_t>(0xFFFF - random() % letters);
            if (!known.empty() && random() % 2 == 0) {  // a known key, or its beginning
                key = known[random() % known.size()];
                if (random() % 4 == 0) key.resize(random() % (key.size() + 1));
            }
            if (random() % operations > i) {  // grows at first, then goes down to nothing
                items.v_Add(key.c_str(), &i);
                values.v_Add(key.c_str(), i);
                plain.At(key.c_str(), true)->value = i;
                known.push_back(key);
            } else {
                Plain* const place = plain.At(key.c_str(), false);
                const BOOL there = place != nullptr && place->value ? TRUE : FALSE;
                if (there != FALSE) place->value.reset();
                plain.Prune(key.c_str());
                removed += static_cast<unsigned>(there);
                ASSERT_EQ(items.b_Remove(key.c_str()), there);
                ASSERT_EQ(values.b_Remove(key.c_str()), there);
            }
            const Plain* const place = plain.At(key.c_str(), false);
            std::uint32_t found = CT_AlphaTree::kNotFound;
            const BOOL there = items.b_Search(key.c_str(), &found);
            ASSERT_EQ(there, place != nullptr && place->value ? TRUE : FALSE);
            ASSERT_TRUE(there == FALSE || found == *place->value);
            ASSERT_EQ(values.n_Search(key.c_str()), found);
            if (i % 97 != 0 && i + 1 != operations) continue;
            Printed all;
            plain.Print(all);
            ASSERT_EQ(Contents(items), all);
            ASSERT_EQ(items.n_Entries(), all.size() + (plain.value ? 1 : 0));
            ASSERT_EQ(values.n_Entries(), items.n_Entries());
        }
    }
    EXPECT_GT(removed, 2000u);
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
    EXPECT_EQ(values.n_Search(&word), CT_AlphaTree::kNotFound);
    EXPECT_EQ(values.n_Entries(), 1u);

    items.v_Add(&word, "abc");
    items.v_Add(&empty, "def");
    char out[] = "12345";
    EXPECT_TRUE(items.b_Search(u"wort", out + 1) && items.b_Search(&empty, nullptr));
    EXPECT_FALSE(items.b_Search(u"wor", out));
    EXPECT_STREQ(out, "1abc5");
    EXPECT_TRUE(items.b_Remove(&word) && items.b_Remove(&empty) && !items.b_Remove(&word));
}

TEST(TreeTest, DeepAndWideTreesTakeNoStackAndNoSquareOfTime) {
    constexpr std::size_t kDepth = 100000;
    std::u16string key(kDepth, u'x');
    CT_AlphaTree values;
    CT_VoidTree items(8);
    const std::uint64_t item = 1;
    for (std::uint32_t i = 0; i < 10; ++i) {  // branches off along the way
        key[i * 9970] = u'y';
        values.v_Add(key.c_str(), i);
        items.v_Add(key.c_str(), &item);
    }
    EXPECT_EQ(values.n_Search(key.c_str()), 9u);
    EXPECT_EQ(Contents(items), Printed());  // nothing within the length that is printed
    EXPECT_TRUE(items.b_Remove(key.c_str()) && values.b_Remove(key.c_str()));
    EXPECT_EQ(values.n_Search(key.c_str()), CT_AlphaTree::kNotFound);
    EXPECT_EQ(values.n_Entries(), 9u);
    values.v_Set();
    for (std::uint32_t unit = 1; unit <= 0xFFFF; ++unit) {  // as many branches as there can be
        const char16_t wide[] = {static_cast<char16_t>(unit), 0};
        values.v_Add(wide, unit);
    }
    EXPECT_EQ(values.n_Entries(), 0xFFFFu);
    EXPECT_EQ(values.n_Search(u"\uFFFF"), 0xFFFFu);
}

TEST(TreeTest, PrintsKeysOfUpTo255Characters) {
    const std::u16string longest(255, u'k'), longer(256, u'k');
    CT_AlphaTree values;
    CT_VoidTree items(4);
    const std::uint32_t numbers[] = {1, 2, 3, 4};
    const char16_t* const keys[] = {u"", u"b", longest.c_str(), longer.c_str()};
    for (std::size_t i = 0; i < 4; ++i) {
        values.v_Add(keys[i], numbers[i]);
        items.v_Add(keys[i], &numbers[i]);
    }
    EXPECT_EQ(test::Utf8(Output(values)), test::Utf8(u"\uFEFF#b : 2\n#" + longest + u" : 3\n"));
    EXPECT_EQ(Contents(items), (Printed{{u"b", 2}, {longest, 3}}));
    const CT_VoidTree another(1);  // resets the routine of all trees
    const std::u16string text = Output(items);
    EXPECT_EQ(text.substr(0, 5), u"\uFEFF#b: ");
    EXPECT_EQ(std::count(text.begin(), text.end(), u'\n'), 2);
}

// Families of one branch more than a block has, and as many that took the blocks which those left;
// a long key takes what room there is.
TEST(TreeTest, BranchesCanLeaveWhereThePoolIsFull) {
    for (const char16_t most : u"\5\11\21\41") {
        if (most == 0) break;
        const auto fill = [most](CT_AlphaTree& tree, std::size_t length) {
            for (char16_t family = 1; family <= 8; ++family) {
                for (char16_t branch = 1; branch <= most - (family > 4 ? 1 : 0); ++branch) {
                    const char16_t key[] = {family, branch, 0};
                    tree.v_Add(key, branch);
                }
            }
            std::u16string key;
            const std::size_t bytes = tree.Bytes();
            for (; key.size() < length && tree.Bytes() == bytes; key += u'k') {
                tree.v_Add(key.c_str(), 1);
            }
            return key.size();
        };
        CT_AlphaTree overfull, tree;
        const std::size_t length = fill(overfull, 100000) - 1;
        fill(tree, length);
        for (char16_t branch = 1; branch < most; ++branch) {
            for (char16_t family = 1; family <= 8; ++family) {
                const char16_t key[] = {family, branch, 0};
                ASSERT_TRUE(tree.b_Remove(key));
            }
            for (char16_t left = most; --left > branch;) {
                const char16_t key[] = {static_cast<char16_t>(left % 8 + 1), left, 0};
                ASSERT_EQ(tree.n_Search(key), left);
            }
        }
        EXPECT_EQ(tree.n_Entries(), 4 + length);
    }
}

TEST(TreeTest, UsesAgainWhatRemovingLeaves) {
    CT_VoidTree items(100);
    const char item[100] = {};
    const auto round = [&](char16_t first) {
        const std::u16string keys[] = {{first, u'a', u'b', u'c'}, {first, u'a'}, {first, u'x'}};
        for (const auto& key : keys) items.v_Add(key.c_str(), item);
        for (const auto& key : keys) items.b_Remove(key.c_str());
    };
    items.v_Add(u"stays", item);
    for (char16_t unit = 1; unit < 100; ++unit) round(unit);
    const std::uint64_t before = platform::AllocationCount();
    for (char16_t unit = 100; unit < 10000; ++unit) round(unit);
    EXPECT_EQ(platform::AllocationCount(), before);
}

TEST(TreeTest, StaysAsItWasWhenMemoryRunsOut) {
    const std::vector<std::uint32_t> item(1000);
    const auto make = [&] {
        auto tree = std::make_unique<CT_VoidTree>(4000u);
        for (const char16_t* word : {u"", u"ab", u"abc", u"b", u"c", u"d"}) {
            tree->v_Add(word, item.data());
        }
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
