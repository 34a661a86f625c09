// What the tests of the arrays and lists share.
#ifndef TESTS_CORE_CONTAINER_CONTAINERSUPPORT_H
#define TESTS_CORE_CONTAINER_CONTAINERSUPPORT_H

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

#include "Foundation/Core/Container/VoidArray.h"
#include "Foundation/Core/Frame/SmartHeap.h"
#include "Foundation/Platform/Memory.h"

namespace test {

inline std::vector<int> Ints(const CT_VoidArray& array) {
    std::vector<int> items(array.n_GetCount());
    for (std::size_t i = 0; i < items.size(); ++i)
        array.v_GetAt(&items[i], static_cast<int>(i + 1));
    return items;
}

inline void Append(CT_VoidArray& array, std::initializer_list<int> items) {
    for (const int item : items) array.v_Insert(&item);
}

// Fails the first, the second, ... allocation of `change(object)` until it succeeds; after every
// failure `read(object)` must answer as before. `make` makes the object anew each time.
template <typename Make, typename Change, typename Read>
void ExpectUnchangedWithoutMemory(Make make, Change change, Read read) {
    const auto blocks = platform::LiveBlocks();
    for (std::uint64_t failing = 1;; ++failing) {
        ASSERT_LT(failing, 100u);
        SCOPED_TRACE(failing);
        auto object = make();
        const auto before = read(object);
        platform::FailAllocation(failing);
        bool failed = false;
        try {
            change(object);
        } catch (const CT_SmartHeapException&) {
            failed = true;
        }
        platform::FailAllocation(0);
        if (!failed) {
            EXPECT_GT(failing, 1u) << "nothing was allocated";
            break;
        }
        EXPECT_EQ(read(object), before);
    }
    EXPECT_EQ(platform::LiveBlocks(), blocks);
}

}  // namespace test

#endif
