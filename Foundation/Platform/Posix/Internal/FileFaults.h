// The test seam of Faults.h, as the services of this backend ask it.
#ifndef FOUNDATION_PLATFORM_POSIX_INTERNAL_FILEFAULTS_H
#define FOUNDATION_PLATFORM_POSIX_INTERNAL_FILEFAULTS_H

#include <atomic>
#include <cstdint>

#include "Foundation/Platform/Faults.h"

namespace zelkor::platform::posix {

// Threads that have faults set.
extern std::atomic<int> faulty_threads;

// Counts a call and tells whether it is to fail; the last error is then set. A transfer is cut to
// *limit, and fails behind it when *full is set.
bool StrikesNow(FileCall call) noexcept;
void LimitNow(FileCall call, std::uint32_t* limit, bool* full) noexcept;

inline bool Strikes(FileCall call) noexcept {
    return faulty_threads.load(std::memory_order_relaxed) != 0 && StrikesNow(call);
}
inline void Limit(FileCall call, std::uint32_t* limit, bool* full) noexcept {
    if (faulty_threads.load(std::memory_order_relaxed) != 0) LimitNow(call, limit, full);
}

}  // namespace zelkor::platform::posix

#endif
