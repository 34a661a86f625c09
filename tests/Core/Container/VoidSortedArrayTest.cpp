#include "Foundation/Core/Container/VoidSortedArray.h"

#include <algorithm>
#include <functional>
#include <random>
#include <set>
#include <stdexcept>
#include <vector>

#include "ContainerSupport.h"

namespace {

using test::Append;
using test::Ints;
using testing::ElementsAre;

int CompareInts(const void* a, const void* b) {
    const int left = *static_cast<const int*>(a), right = *static_cast<const int*>(b);
    return (left > right) - (left < right);
}

// Items that are equal in the order yet can be told apart.
struct Tagged {
    int key;
    int tag;
    bool operator==(const Tagged&) const = default;
};

int CompareKeys(const void* a, const void* b) {
    return CompareInts(&static_cast<const Tagged*>(a)->key, &static_cast<const Tagged*>(b)->key);
}

// The sort in its plain form: the order it leaves equal items in is what counts.
void PlainSort(std::vector<Tagged>& items, std::size_t lo, std::size_t hi) {
    std::swap(items[lo], items[lo + (hi - lo) / 2]);
    std::size_t last = lo;
    for (std::size_t i = lo + 1; i <= hi; ++i) {
        if (CompareKeys(&items[lo], &items[i]) > 0) std::swap(items[++last], items[i]);
    }
    std::swap(items[lo], items[last]);
    if (last > lo + 1) PlainSort(items, lo, last - 1);
    if (last + 1 < hi) PlainSort(items, last + 1, hi);
}

std::vector<int> Items(const CT_VoidSortedArray& array) {
    return Ints(*array.pcco_GetArray());
}

CT_VoidSortedArray Sorted(std::initializer_list<int> items) {
    CT_VoidArray array(sizeof(int));
    Append(array, items);
    return CT_VoidSortedArray(&array, CompareInts);
}

TEST(VoidSortedArrayTest, LeavesEqualItemsInTheOrderOfThePlainSort) {
    std::mt19937 random(20240607);
    for (const int keys : {1, 2, 5, 40, 1'000'000}) {
        for (const std::size_t count : {2u, 3u, 4u, 7u, 100u, 1000u}) {
            SCOPED_TRACE(testing::Message() << keys << " keys, " << count << " items");
            std::vector<Tagged> items(count);
            CT_VoidArray array(sizeof(Tagged));
            int tag = 0;
            for (Tagged& item : items) {
                item = {std::uniform_int_distribution(1, keys)(random), tag++};
                array.v_Insert(&item);
            }
            const CT_VoidSortedArray sorted(&array, CompareKeys);
            EXPECT_EQ(array.n_Find(&items[0]), 1u) << "the source keeps its order";
            PlainSort(items, 0, count - 1);
            const auto* const found =
                static_cast<const Tagged*>(sorted.pcco_GetArray()->pcco_GetBuffer()->qcv_Get());
            EXPECT_TRUE(std::equal(items.begin(), items.end(), found));
        }
    }
}

TEST(VoidSortedArrayTest, EqualItemsSortInLinearTime) {
    const int item = 3;
    CT_VoidArray array(sizeof(int));
    array.v_Insert(&item, 300'000);
    static std::uint64_t comparisons;
    comparisons = 0;
    const CT_VoidSortedArray sorted(&array, [](const void* a, const void* b) {
        ++comparisons;
        return CompareInts(a, b);
    });
    EXPECT_EQ(sorted.n_GetCount(), 300'000u);
    EXPECT_LT(comparisons, 600'000u);
}

// Answers so that every pivot turns out to be among the largest (after McIlroy, A Killer Adversary
// for Quicksort, 1999), and watches how deep the stack gets.
struct Adversary {
    static constexpr int kOpen = -1'000'000'000;
    inline static std::vector<int> value;
    inline static int next = 0, candidate = 0;
    inline static std::set<std::uintptr_t> frames;

    static int Compare(const void* a, const void* b) {
        frames.insert(reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)));
        const int x = *static_cast<const int*>(a), y = *static_cast<const int*>(b);
        int& left = value[static_cast<std::size_t>(x)];
        int& right = value[static_cast<std::size_t>(y)];
        if (left == kOpen && right == kOpen) (x == candidate ? left : right) = -next++;
        if (left == kOpen || right == kOpen) candidate = left == kOpen ? x : y;
        return CompareInts(&left, &right);
    }
};

TEST(VoidSortedArrayTest, HostileOrdersDoNotDeepenTheStack) {
    constexpr int kCount = 5000;
    Adversary::value.assign(kCount, Adversary::kOpen);
    CT_VoidArray array(sizeof(int));
    for (int i = 0; i < kCount; ++i) array.v_Insert(&i);
    const CT_VoidSortedArray sorted(&array, Adversary::Compare);
    // One level per item would come to hundreds of kilobytes.
    EXPECT_LT(*Adversary::frames.rbegin() - *Adversary::frames.begin(), 32'768u);
    // A comparison without any sense still ends and keeps every item.
    const CT_VoidSortedArray senseless(&array, [](const void*, const void*) { return 1; });
    std::vector<int> items = Items(senseless);
    std::ranges::sort(items);
    EXPECT_EQ(items, Ints(array));
}

TEST(VoidSortedArrayTest, InsertsBeforeTheEqualItemThatTheSearchMeets) {
    CT_VoidSortedArray array(sizeof(Tagged), CompareKeys, 8, 0);
    for (const Tagged& item : {Tagged{1, 0}, {5, 0}, {5, 0}, {5, 0}, {5, 0}, {5, 1}}) {
        array.v_Insert(&item);
    }
    Tagged found{};
    array.v_GetAt(&found, 3);  // the middle of five items was the third
    EXPECT_EQ(found.tag, 1);
}

TEST(VoidSortedArrayTest, StaysSortedUnderEveryChange) {
    std::mt19937 random(1);
    CT_VoidSortedArray array(sizeof(int), CompareInts, 4, 0);
    std::vector<int> model;
    for (int step = 0; step < 2000; ++step) {
        const int item = std::uniform_int_distribution(0, 300)(random);
        const auto count = static_cast<std::uint32_t>(model.size());
        const auto index = static_cast<std::uint32_t>(count == 0 ? 0 : random() % count + 1);
        const unsigned change = random() % 4;
        if (change < 2 || index == 0) {
            array.v_Insert(&item);
            model.push_back(item);
        } else if (change == 2) {
            array.v_SetAt(&item, index);
            model[index - 1] = item;
        } else {
            int removed = -1;
            array.v_RemoveAt(&removed, index);
            EXPECT_EQ(removed, model[index - 1]);
            model.erase(model.begin() + (index - 1));
        }
        std::ranges::sort(model);
        ASSERT_EQ(Items(array), model);
        const std::uint32_t found = array.n_Find(&item);
        ASSERT_EQ(found != 0, std::ranges::binary_search(model, item));
        ASSERT_TRUE(found == 0 || model[found - 1] == item);
    }
}

TEST(VoidSortedArrayTest, OwnItemsAndSharesSurviveChanges) {
    CT_VoidSortedArray array = Sorted({3, 1, 2});
    const CT_VoidSortedArray share(&array);
    array.v_SetAt(test::Own(*array.pcco_GetArray(), 3), 1);
    EXPECT_THAT(Items(array), ElementsAre(2, 3, 3));
    array.v_SetAt(test::Own(*array.pcco_GetArray(), 1), 3);
    EXPECT_THAT(Items(array), ElementsAre(2, 2, 3));
    EXPECT_THAT(Items(share), ElementsAre(1, 2, 3));
    EXPECT_FALSE(array.b_IsEqual(&share));
    array.v_Set(&share);
    EXPECT_TRUE(array.b_IsEqual(&share));
    array.v_Set(array.pcco_GetArray());
    EXPECT_TRUE(array.b_IsEqual(&share));
    const CT_VoidSortedArray other(share.pcco_GetArray(), CompareKeys);
    EXPECT_FALSE(other.b_IsEqual(&share)) << "another comparison";
}

TEST(VoidSortedArrayTest, NullArgumentsAnswerTheFailureValue) {
    CT_VoidSortedArray array = Sorted({3, 1, 2});
    const CT_VoidSortedArray unordered(array.pcco_GetArray(), nullptr), same(&unordered);
    array.v_Insert(nullptr);
    array.v_SetAt(nullptr, 1);
    array.v_GetAt(nullptr, 1);
    EXPECT_EQ(array.n_Find(nullptr), 0u);
    EXPECT_FALSE(array.b_IsEqual(nullptr));
    EXPECT_THAT(Items(array), ElementsAre(1, 2, 3));
    EXPECT_EQ(unordered.n_Find(test::Own(*array.pcco_GetArray(), 1)), 0u);
    EXPECT_FALSE(unordered.b_IsEqual(&same)) << "nothing says so";
    array.v_Set(static_cast<const CT_VoidSortedArray*>(nullptr));
    EXPECT_THAT(Items(array), ElementsAre());
    EXPECT_EQ(CT_VoidSortedArray(static_cast<CT_VoidSortedArray*>(nullptr)).n_GetCount(), 0u);
}

TEST(VoidSortedArrayTest, StaysAsItWasWhenMemoryRunsOut) {
    const CT_VoidSortedArray origin = Sorted({2, 4, 6});
    CT_VoidArray unsorted(sizeof(int));
    Append(unsorted, {9, 8, 7});
    const int item = 3;
    const auto make = [&] { return CT_VoidSortedArray(&origin); };
    const std::function<void(CT_VoidSortedArray&)> changes[] = {
        [&](auto& array) { array.v_Insert(&item); }, [&](auto& array) { array.v_SetAt(&item, 3); },
        [&](auto& array) { array.v_Set(&unsorted); }};
    for (const auto& change : changes) {
        EXPECT_GT(test::ExpectUnchangedWithoutMemory(make, change, Items), 0u);
    }

    static bool fail;
    CT_VoidSortedArray moody(origin.pcco_GetArray(), [](const void* a, const void* b) {
        if (fail) throw std::runtime_error("no order");
        return CompareInts(a, b);
    });
    fail = true;
    EXPECT_THROW(moody.v_Insert(&item), std::runtime_error);
    EXPECT_THROW(moody.v_Set(&unsorted), std::runtime_error);
    fail = false;
    EXPECT_THAT(Items(moody), ElementsAre(2, 4, 6));
}

}  // namespace
