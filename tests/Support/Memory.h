// Operations that run out of memory and must leave their object as it was.
#ifndef TESTS_SUPPORT_MEMORY_H
#define TESTS_SUPPORT_MEMORY_H

#include "Support/Errors.h"

namespace test {

// Fails the first, the second, ... allocation of `change(object)` until it succeeds; after every
// failure `read(object)` must answer as before. `make` makes the object anew each time. Returns how
// many allocations failed.
template <typename Make, typename Change, typename Read>
std::uint64_t ExpectUnchangedWithoutMemory(Make make, Change change, Read read) {
    for (std::uint64_t n = 1; n < 500; ++n) {
        SCOPED_TRACE(n);
        auto object = make();
        const auto before = read(object);
        zelkor::platform::FailAllocation(n);
        bool failed = false;
        try {
            change(object);
        } catch (const CT_SmartHeapException&) {
            failed = true;
        }
        zelkor::platform::FailAllocation(0);
        if (!failed) return n - 1;
        EXPECT_EQ(read(object), before);
    }
    ADD_FAILURE() << "no end of allocations";
    return 0;
}

}  // namespace test

#endif
