#include "Foundation/Core/Container/VoidArray.h"

#include <functional>
#include <set>
#include <string_view>
#include <vector>

#include "ContainerSupport.h"
#include "Foundation/Core/Container/Array.h"

template class CT_Array<double>;  // all of it compiles

namespace {

using test::Append;
using test::Ints;
using test::Own;
using testing::ElementsAre;
using testing::ElementsAreArray;

CT_VoidArray Make(std::initializer_list<int> items) {
    CT_VoidArray array(sizeof(int));
    Append(array, items);
    return array;
}

TEST(VoidArrayTest, GrowsByItsStepAsTheBufferRounds) {
    CT_VoidArray array(4);
    EXPECT_EQ(array.n_GetGrowth(), 8u);
    std::set<std::uint32_t> capacities;
    for (int i = 1; i <= 37; ++i) {
        array.v_Insert(&i);
        capacities.insert(array.n_GetMaxItems());
    }
    // Blocks are multiples of 32 bytes with 12 of header: 13, 21, ... items.
    EXPECT_THAT(capacities, ElementsAre(13, 21, 29, 37));
    EXPECT_EQ(test::Ints(array).back(), 37);

    CT_VoidArray reserved(8, 3, 5);
    EXPECT_EQ(reserved.n_GetGrowth(), 3u);
    EXPECT_EQ(reserved.n_GetMaxItems(), 7u);  // 3 steps of 24 bytes hold 12 + 40
    const int item = 7;
    array.v_Set(8, 0, FALSE);
    array.v_Insert(&item, 40);  // exactly 40 items, rounded up to a block of 192 bytes
    EXPECT_EQ(array.n_GetMaxItems(), 45u);
    array.v_SetGrowth(0);
    EXPECT_EQ(array.n_GetGrowth(), 1u);
}

TEST(VoidArrayTest, SettingsEmptyOrShrinkAndKeepStorageWhenAsked) {
    CT_VoidArray array = Make({1, 2, 3});
    array.v_Set(5, 13, TRUE);
    EXPECT_EQ(array.n_GetCount(), 0u);
    EXPECT_EQ(array.n_GetMaxItems(), 13u);
    EXPECT_EQ(array.n_GetGrowth(), 5u);
    array.v_Set(8, 20, TRUE);
    EXPECT_EQ(array.n_GetMaxItems(), 21u);
    array.v_Set(8, 0, FALSE);
    EXPECT_EQ(array.n_GetMaxItems(), 0u);

    CT_VoidArray first = Make({1, 2, 3});
    CT_VoidArray second(&first);
    first.v_Set(8, 0, TRUE);  // emptied in its own copy
    EXPECT_THAT(Ints(second), ElementsAre(1, 2, 3));

    CT_VoidArray bytes(1, 1, 0);
    for (char c = 'a'; c <= 'z'; ++c) bytes.v_Insert(&c);
    bytes.v_SetSize(3);  // keeps the leading items that fit
    EXPECT_EQ(bytes.n_GetCount(), 3u);
    EXPECT_EQ(bytes.n_Find("c"), 3u);

    CT_VoidArray records(24, 1, 0);  // a block of 48 bytes holds one of them and half of another
    const char record[24] = {};
    records.v_Insert(record, 5);
    records.v_SetSize(1);
    EXPECT_EQ(records.n_GetCount(), 1u);
    EXPECT_EQ(records.pcco_GetBuffer()->n_GetUsedSize(), 24u);
}

TEST(VoidArrayTest, NullArgumentsAnswerTheFailureValue) {
    const CT_VoidArray array = Make({1, 2, 3});
    EXPECT_EQ(array.n_Find(nullptr), 0u);
    EXPECT_FALSE(array.b_IsEqual(nullptr));
    array.v_GetAt(nullptr, 1);
    CT_VoidArray copy(&array);
    copy.v_Set(static_cast<const CT_VoidArray*>(nullptr));
    EXPECT_EQ(copy.n_GetCount(), 0u);
    EXPECT_EQ(CT_VoidArray(static_cast<const CT_VoidArray*>(nullptr)).n_GetCount(), 0u);
    EXPECT_EQ(CT_VoidArray(static_cast<const CT_Buffer*>(nullptr), 0).n_GetItemSize(), 1u);
    EXPECT_EQ(CT_VoidArray(0u).n_GetCount(), 0u);
}

TEST(VoidArrayTest, MovesThatChangeNothingKeepTheShare) {
    const CT_VoidArray array = Make({1, 2, 3, 4, 5});
    CT_VoidArray copy(&array);
    for (const std::uint32_t at : {2u, 3u, 4u, 5u}) copy.v_AtInsertMove(2, 3, at);
    for (const std::uint32_t at : {2u, 3u, 4u, 5u}) copy.v_AtInsertMove(&copy, 2, 3, at);
    EXPECT_EQ(copy.pcco_GetBuffer()->qcv_Get(), array.pcco_GetBuffer()->qcv_Get());
    EXPECT_THAT(Ints(copy), ElementsAre(1, 2, 3, 4, 5));
}

TEST(VoidArrayTest, EditsSharedAndUnsharedStorageAlike) {
    struct Case {
        std::function<void(CT_VoidArray&)> edit;
        std::vector<int> after;
    };
    constexpr std::uint32_t kRest = CT_VoidArray::kRest;
    const CT_VoidArray other = Make({7, 8, 9});
    const int item = 0;
    using A = CT_VoidArray;
    const Case cases[] = {
        {[&](A& a) { a.v_SetAt(&item, 5); }, {1, 2, 3, 4, 0}},
        {[&](A& a) { a.v_SetAt(Own(a, 1), 5); }, {1, 2, 3, 4, 1}},
        {[&](A& a) { a.v_Insert(&item); }, {1, 2, 3, 4, 5, 0}},
        {[&](A& a) { a.v_Insert(&item, 2); }, {1, 2, 3, 4, 5, 0, 0}},
        {[&](A& a) { a.v_Insert(&item, 0); }, {1, 2, 3, 4, 5}},
        {[](A& a) { a.v_Insert(Own(a, 2), 9); }, {1, 2, 3, 4, 5, 2, 2, 2, 2, 2, 2, 2, 2, 2}},
        {[&](A& a) { a.v_InsertAt(&item, 1); }, {0, 1, 2, 3, 4, 5}},
        {[&](A& a) { a.v_InsertAt(&item, 6); }, {1, 2, 3, 4, 5, 0}},
        {[](A& a) { a.v_InsertAt(Own(a, 3), 1); }, {3, 1, 2, 3, 4, 5}},
        {[](A& a) { a.v_RemoveAt(1); }, {2, 3, 4, 5}},
        {[](A& a) { a.v_Remove(2, 4); }, {1, 5}},
        {[](A& a) { a.v_Remove(3, 2); }, {1, 2, 3, 4, 5}},
        {[](A& a) { a.v_AtInsertCopy(1, 2, 6); }, {1, 2, 3, 4, 5, 1, 2}},
        {[](A& a) { a.v_AtInsertCopy(3, 3, 2); }, {1, 3, 4, 5, 2, 3, 4, 5}},
        {[](A& a) { a.v_AtInsertMove(2, 3, 1); }, {2, 3, 4, 1, 5}},
        {[](A& a) { a.v_AtInsertMove(1, 2, 6); }, {3, 4, 5, 1, 2}},
        {[&](A& a) { a.v_AtInsertCopy(&other, 2, 2, 1); }, {8, 9, 1, 2, 3, 4, 5}},
        {[&](A& a) { a.v_Replace(&other, 1, kRest, 4); }, {1, 2, 3, 7, 8, 9}},
        {[&](A& a) { a.v_Replace(&other, 2, 1, 1); }, {8, 2, 3, 4, 5}},
        {[](A& a) { a.v_Replace(&a, 1, 3, 2); }, {1, 1, 2, 3, 5}},
        {[&](A& a) { a.v_Insert(&other, 2, kRest, 3); }, {1, 2, 8, 9, 3, 4, 5}},
        {[&](A& a) { a.v_Insert(&other, 4, kRest, 3); }, {1, 2, 3, 4, 5}},
        {[](A& a) { a.v_Insert(&a, 4, kRest, 1); }, {4, 5, 1, 2, 3, 4, 5}},
        {[&](A& a) { a.v_Append(&other, 1, 2); }, {1, 2, 3, 4, 5, 7, 8}},
        {[](A& a) { a.v_Append(&a, 1, kRest); }, {1, 2, 3, 4, 5, 1, 2, 3, 4, 5}},
        {[](A& a) { a.v_AtInsertMove(&a, 4, 2, 1); }, {4, 5, 1, 2, 3}},
        // Ranges end at the last item.
        {[](A& a) { a.v_Remove(4, 99); }, {1, 2, 3}},
        {[](A& a) { a.v_Remove(0, 2), a.v_RemoveAt(0), a.v_RemoveAt(6); }, {1, 2, 3, 4, 5}},
        {[&](A& a) { a.v_Append(&other, 2, 99); }, {1, 2, 3, 4, 5, 8, 9}},
        {[&](A& a) { a.v_Replace(&other, 3, 2, 1); }, {9, 2, 3, 4, 5}},
        {[&](A& a) { a.v_Append(&other, 0, 1), a.v_Append(&other, 9, 1); }, {1, 2, 3, 4, 5}},
        {[](A& a) { a.v_AtInsertCopy(5, 99, 1); }, {5, 1, 2, 3, 4, 5}},
        {[](A& a) { a.v_AtInsertMove(5, 99, 1); }, {5, 1, 2, 3, 4}},
        // Null does nothing.
        {[](A& a) { a.v_SetAt(nullptr, 1), a.v_Insert(nullptr); }, {1, 2, 3, 4, 5}},
        {[](A& a) { a.v_Insert(nullptr, 2u), a.v_InsertAt(nullptr, 1); }, {1, 2, 3, 4, 5}},
        {[](A& a) { a.v_Insert(nullptr, 1, 2, 1), a.v_Append(nullptr, 1, 2); }, {1, 2, 3, 4, 5}},
        {[](A& a) { a.v_AtInsertCopy(nullptr, 1, 2, 1); }, {1, 2, 3, 4, 5}},
        {[](A& a) { a.v_AtInsertMove(nullptr, 1, 2, 1); }, {1, 2, 3, 4, 5}},
        {[](A& a) { a.v_Replace(nullptr, 1, 2, 1); }, {1, 2, 3, 4, 5}},
    };
    int number = 0;
    for (const auto& [edit, after] : cases) {
        SCOPED_TRACE(number++);
        for (const std::uint32_t capacity : {5u, 100u}) {
            CT_VoidArray array(4, 1, capacity);
            Append(array, {1, 2, 3, 4, 5});
            array.v_SetSize(capacity);
            const CT_VoidArray share(&array);
            edit(array);
            EXPECT_THAT(Ints(array), ElementsAreArray(after));
            EXPECT_THAT(Ints(share), ElementsAre(1, 2, 3, 4, 5));
        }
        CT_VoidArray alone = Make({1, 2, 3, 4, 5});
        edit(alone);
        EXPECT_THAT(Ints(alone), ElementsAreArray(after));
    }
}

TEST(VoidArrayTest, MovingTakesTheItemsOutOfTheSource) {
    CT_VoidArray target = Make({1, 2}), source = Make({7, 8, 9});
    target.v_AtInsertMove(&source, 1, 2, 2);
    EXPECT_THAT(Ints(target), ElementsAre(1, 7, 8, 2));
    EXPECT_THAT(Ints(source), ElementsAre(9));
    target.v_AtInsertMove(&source, 1, CT_VoidArray::kRest, 5);
    EXPECT_THAT(Ints(target), ElementsAre(1, 7, 8, 2, 9));
    EXPECT_THAT(Ints(source), ElementsAre());
}

TEST(VoidArrayTest, FindsAndComparesItemsOfEverySize) {
    for (const std::uint32_t size : {1u, 2u, 3u, 4u, 7u, 8u, 20u}) {
        SCOPED_TRACE(size);
        CT_VoidArray array(size);
        std::vector<char> item(size, 1);
        EXPECT_EQ(array.n_Find(item.data()), 0u);
        for (const char last : std::string_view("abbc")) {
            item.back() = last;
            array.v_Insert(item.data());
        }
        item.back() = 'b';
        EXPECT_EQ(array.n_Find(item.data()), 2u);
        item.back() = 'd';
        EXPECT_EQ(array.n_Find(item.data()), 0u);
        CT_VoidArray copy(size);
        copy.v_Append(&array, 1, CT_VoidArray::kRest);
        EXPECT_TRUE(array.b_IsEqual(&copy));
        copy.v_SetAt(item.data(), 4);
        EXPECT_FALSE(array.b_IsEqual(&copy));
        copy.v_RemoveAt(4);
        EXPECT_FALSE(array.b_IsEqual(&copy));
    }
    const CT_VoidArray shorts(2), ints(4);
    EXPECT_FALSE(shorts.b_IsEqual(&ints));
}

TEST(VoidArrayTest, WholeItemsCountInARaggedBuffer) {
    CT_Buffer buffer("aabbc", 5, 32);
    CT_VoidArray array(&buffer, 2);
    array.v_Insert("dd");
    EXPECT_EQ(array.n_GetCount(), 3u);
    EXPECT_EQ(array.n_Find("dd"), 3u);
    EXPECT_EQ(buffer.n_GetUsedSize(), 5u);
}

TEST(VoidArrayTest, StaysAsItWasWhenMemoryRunsOut) {
    const int item = 9;
    const std::function<void(CT_VoidArray&)> changes[] = {
        [&](CT_VoidArray& a) { a.v_Insert(&item); },
        [&](CT_VoidArray& a) { a.v_Insert(&item, 100); },
        [&](CT_VoidArray& a) { a.v_InsertAt(&item, 1); },
        [&](CT_VoidArray& a) { a.v_SetAt(&item, 1); },
        [&](CT_VoidArray& a) { a.v_Append(&a, 1, CT_VoidArray::kRest); },
        [&](CT_VoidArray& a) { a.v_Remove(1, 2); },
        [&](CT_VoidArray& a) { a.v_SetSize(500); },
        [&](CT_VoidArray& a) { a.v_Set(4, 500, TRUE); },
    };
    const CT_VoidArray origin = Make({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13});
    for (const auto& change : changes) {
        const auto copy = [&] { return CT_VoidArray(&origin); };
        EXPECT_GT(test::ExpectUnchangedWithoutMemory(copy, change, Ints), 0u);
    }
    CT_VoidArray array(&origin);
    EXPECT_THROW(array.v_Insert(&item, 0x40000000), CT_SmartHeapException);  // 4 GiB
    EXPECT_THROW(array.v_SetSize(0xFFFFFFFF), CT_SmartHeapException);
    EXPECT_TRUE(array.b_IsEqual(&origin));
}

TEST(ArrayTest, TypedItemsAndIteration) {
    struct Point {
        int x, y;
    };
    const Point points[] = {{0, 0}, {1, 2}, {3, 4}, {5, 6}};
    const CT_Buffer stored(points, sizeof points, 1);
    const CT_Array<Point> copy(&stored);
    int sum = 0;
    for (const Point& point : copy) sum += point.x;
    EXPECT_EQ(sum, 0 + 1 + 3 + 5);

    CT_ArrayIterator<Point> at(&copy);
    EXPECT_TRUE(at.b_AtHome() && at.b_Next() && at.b_Next());
    EXPECT_EQ(at.o_Get().x, 1);
    EXPECT_EQ(at.n_GetPosition(), 2u);
    const CT_ArrayIterator<Point> same(&at);
    EXPECT_TRUE(at.b_IsEqual(&same) && at.b_Next() && at.b_Next() && !at.b_AtEnd());
    EXPECT_FALSE(at.b_Next() || at.b_Next() || !at.b_AtEnd() || at.b_IsEqual(&same));
    const CT_Array<int*> none;
    EXPECT_FALSE(CT_ArrayIterator<int*>(&none).b_Next());
    for ([[maybe_unused]] int* item : none) ADD_FAILURE();
    CT_ArrayIterator<int*> nowhere(static_cast<const CT_Array<int*>*>(nullptr));
    EXPECT_FALSE(nowhere.b_Next() || !nowhere.b_AtEnd() || nowhere.b_IsEqual(nullptr));
    EXPECT_EQ(CT_Array<Point>(static_cast<const CT_Array<Point>*>(nullptr)).n_GetCount(), 0u);
}

}  // namespace
