#include "Foundation/Core/Container/VoidList.h"

#include <functional>
#include <limits>
#include <vector>

#include "ContainerSupport.h"

namespace {

using testing::ElementsAre;

// The items from front to back; the way back must give the same.
std::vector<int> Items(const CT_VoidList& list) {
    std::vector<int> items, back;
    int item = 0;
    for (auto* node = list.pso_GetFirst(); node != nullptr; node = node->next) {
        list.v_GetAt(&item, node);
        items.push_back(item);
    }
    for (auto* node = list.pso_GetLast(); node != nullptr; node = node->previous) {
        list.v_GetAt(&item, node);
        back.insert(back.begin(), item);
    }
    EXPECT_EQ(items, back);
    EXPECT_EQ(items.size(), list.n_GetCount());
    return items;
}

CT_VoidList Make(std::initializer_list<int> items) {
    CT_VoidList list(sizeof(int));
    for (const int item : items) list.v_InsertLast(&item);
    return list;
}

TEST(VoidListTest, InsertsAndRemovesAtEveryPlace) {
    CT_VoidList list(sizeof(int));
    const int one = 1, two = 2, three = 3, four = 4, five = 5;
    list.v_InsertBefore(&three, nullptr);
    EXPECT_EQ(list.pso_GetFirst(), list.pso_GetLast());
    list.v_InsertFirst(&one);
    list.v_InsertBefore(&two, list.pso_GetLast());
    list.v_InsertAfter(&four, list.pso_GetLast());
    list.v_InsertLast(&five);
    EXPECT_THAT(Items(list), ElementsAre(1, 2, 3, 4, 5));
    list.v_InsertAfter(&five, nullptr);
    list.v_InsertBefore(&one, nullptr);
    EXPECT_THAT(Items(list), ElementsAre(5, 1, 2, 3, 4, 5, 1));

    int out = 0;
    list.v_RemoveAt(&out, nullptr);
    EXPECT_EQ(out, 5);
    list.v_RemoveLast(&out);
    EXPECT_EQ(out, 1);
    list.v_RemoveAt(&out, list.pso_GetPosition(3));
    EXPECT_EQ(out, 3);
    list.v_RemoveFirst(nullptr);
    list.v_SetAt(&one, list.pso_GetFirst());
    EXPECT_THAT(Items(list), ElementsAre(1, 4, 5));
    list.v_Set();
    EXPECT_THAT(Items(list), ElementsAre());
    list.v_InsertAfter(&one, nullptr);
    EXPECT_EQ(list.pso_GetFirst(), list.pso_GetLast());
}

TEST(VoidListTest, SkippingWrapsRound) {
    const CT_VoidList list = Make({1, 2, 3, 4, 5});
    auto* const first = list.pso_GetFirst();
    auto* const last = list.pso_GetLast();
    EXPECT_EQ(list.pso_Skip(last, 1), first);
    EXPECT_EQ(list.pso_Skip(first, -1), last);
    EXPECT_EQ(list.pso_Skip(first, 0), first);
    EXPECT_EQ(list.pso_Skip(first, 14), last);
    EXPECT_EQ(list.pso_Skip(last, std::numeric_limits<int>::min()), list.pso_Skip(last, -3));
    for (std::uint32_t index = 1; index <= 5; ++index) {
        int item = 0;
        list.v_GetAt(&item, list.pso_GetPosition(index));
        EXPECT_EQ(item, static_cast<int>(index));
    }
}

TEST(VoidListTest, FindsAndCopies) {
    const CT_VoidList list = Make({7, 8, 7});
    std::uint32_t index = 99;
    const int eight = 8, nine = 9;
    EXPECT_EQ(list.pso_Find(&eight, &index), list.pso_GetFirst()->next);
    EXPECT_EQ(index, 2u);
    EXPECT_EQ(list.pso_Find(&nine, &index), nullptr);
    EXPECT_EQ(index, 0u);

    auto* const copy = new CT_VoidList(&list);
    EXPECT_TRUE(list.b_IsEqual(copy));
    copy->v_SetAt(&nine, copy->pso_GetLast());
    EXPECT_FALSE(list.b_IsEqual(copy));
    copy->v_RemoveLast(nullptr);
    EXPECT_FALSE(list.b_IsEqual(copy));
    copy->v_Set(copy);
    EXPECT_THAT(Items(*copy), ElementsAre(7, 8));
    delete copy;

    CT_VoidList bytes(1), longs(8);  // no byte of an item is read that is not there
    bytes.v_Set(&list);
    EXPECT_EQ(bytes.n_GetItemSize(), 1u);
    EXPECT_TRUE(bytes.b_IsEqual(&list) && !list.b_IsEqual(&bytes));
    longs.v_Set(&list);
    std::int64_t item = -1;
    longs.v_GetAt(&item, longs.pso_GetFirst());
    EXPECT_EQ(item, 7);
}

TEST(VoidListTest, NullArgumentsAnswerTheFailureValue) {
    CT_VoidList list = Make({1, 2}), empty(sizeof(int));
    std::uint32_t index = 9;
    for (const auto insert : {&CT_VoidList::v_InsertFirst, &CT_VoidList::v_InsertLast}) {
        (list.*insert)(nullptr);
    }
    list.v_InsertBefore(nullptr, list.pso_GetFirst());
    list.v_SetAt(nullptr, list.pso_GetFirst());
    list.v_SetAt(&index, nullptr);
    list.v_GetAt(nullptr, list.pso_GetFirst());
    list.v_GetAt(&index, nullptr);
    empty.v_RemoveFirst(&index);
    EXPECT_EQ(index, 9u);
    EXPECT_EQ(list.pso_Skip(nullptr, 1), nullptr);
    EXPECT_EQ(list.pso_Find(nullptr, &index), nullptr);
    EXPECT_EQ(index, 0u);
    for (const std::uint32_t none : {0u, 3u, 0xFFFFFFFFu}) {
        EXPECT_EQ(list.pso_GetPosition(none), nullptr);
    }
    EXPECT_FALSE(list.b_IsEqual(nullptr));
    EXPECT_THAT(Items(list), ElementsAre(1, 2));
    list.v_Set(nullptr);
    EXPECT_THAT(Items(list), ElementsAre());
    EXPECT_EQ(CT_VoidList(static_cast<const CT_VoidList*>(nullptr)).n_GetCount(), 0u);
}

TEST(VoidListTest, StaysAsItWasWhenMemoryRunsOut) {
    const CT_VoidList other = Make({7, 8, 9});
    const int item = 5;
    const auto make = [] { return Make({1, 2}); };
    const std::function<void(CT_VoidList&)> changes[] = {
        [&](auto& list) { list.v_InsertFirst(&item); }, [&](auto& list) { list.v_Set(&other); }};
    for (const auto& change : changes) {
        EXPECT_GT(test::ExpectUnchangedWithoutMemory(make, change, Items), 0u);
    }
}

}  // namespace
