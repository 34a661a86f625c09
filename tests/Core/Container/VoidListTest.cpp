#include "Foundation/Core/Container/VoidList.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <random>
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

TEST(VoidListTest, KeepsToAVectorThroughRandomChanges) {
    std::mt19937 random(3);
    CT_VoidList list(sizeof(int));
    std::vector<int> model;
    for (int step = 0; step < 4000; ++step) {
        const std::size_t count = model.size(), at = count == 0 ? 0 : random() % count;
        auto* const node = list.pso_GetPosition(static_cast<std::uint32_t>(at + 1));
        const auto place = model.begin() + static_cast<std::ptrdiff_t>(at);
        const int item = static_cast<int>(random() % 20), change = static_cast<int>(random() % 12);
        if (change == 0 || count == 0) {
            list.v_InsertFirst(&item), model.insert(model.begin(), item);
        } else if (change == 1) {
            list.v_InsertLast(&item), model.push_back(item);
        } else if (change == 2) {
            list.v_InsertBefore(&item, node), model.insert(place, item);
        } else if (change == 3) {
            list.v_InsertAfter(&item, node), model.insert(place + 1, item);
        } else if (change == 4) {
            list.v_InsertBefore(&item, nullptr), model.push_back(item);
        } else if (change == 5) {
            list.v_InsertAfter(&item, nullptr), model.insert(model.begin(), item);
        } else if (change == 6) {
            list.v_SetAt(&item, node), *place = item;
        } else if (change < 11) {
            const bool last = change == 8, first = change == 9 || change == 10;
            const int wanted = last ? model.back() : first ? model.front() : *place;
            int out = -1;
            if (change == 7) list.v_RemoveAt(&out, node), model.erase(place);
            if (last) list.v_RemoveLast(&out), model.pop_back();
            if (change == 9) list.v_RemoveFirst(&out);
            if (change == 10) list.v_RemoveAt(&out, nullptr);  // the first
            if (first) model.erase(model.begin());
            ASSERT_EQ(out, wanted);
        } else if (step % 50 == 0) {
            list.v_Set(), model.clear();
        }
        ASSERT_EQ(Items(list), model);
        std::uint32_t index = 99;
        const auto found = std::ranges::find(model, item);
        auto* const met = list.pso_Find(&item, &index);
        ASSERT_EQ(index, found == model.end() ? 0 : found - model.begin() + 1);
        ASSERT_EQ(met, list.pso_GetPosition(index));
        if (model.empty()) continue;
        const int steps = item - 10, size = static_cast<int>(model.size());
        int skipped = -1;
        list.v_GetAt(&skipped, list.pso_Skip(list.pso_GetFirst(), steps));
        ASSERT_EQ(skipped, model[static_cast<std::size_t>((steps % size + size) % size)]);
    }
}

TEST(VoidListTest, CopiesAndCompares) {
    const CT_VoidList list = Make({7, 8, 7});
    auto* const last = list.pso_GetLast();
    EXPECT_EQ(list.pso_Skip(last, std::numeric_limits<int>::min()), list.pso_Skip(last, -2));
    const int nine = 9;
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
