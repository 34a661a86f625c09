// What the tests of the arrays and lists share.
#ifndef TESTS_CORE_CONTAINER_CONTAINERSUPPORT_H
#define TESTS_CORE_CONTAINER_CONTAINERSUPPORT_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "Foundation/Core/Container/VoidArray.h"
#include "Support/Memory.h"

namespace test {

inline std::vector<int> Ints(const CT_VoidArray& array) {
    std::vector<int> items(array.n_GetCount());
    int index = 0;
    for (int& item : items) array.v_GetAt(&item, ++index);
    return items;
}

// The place of an item in the array's own storage, counted from 1.
inline const int* Own(const CT_VoidArray& array, std::size_t index) {
    return static_cast<const int*>(array.pcco_GetBuffer()->qcv_Get()) + index - 1;
}

inline void Append(CT_VoidArray& array, std::initializer_list<int> items) {
    for (const int item : items) array.v_Insert(&item);
}

}  // namespace test

#endif
