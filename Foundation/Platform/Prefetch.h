// A hint that memory is about to be read.
#ifndef FOUNDATION_PLATFORM_PREFETCH_H
#define FOUNDATION_PLATFORM_PREFETCH_H

namespace zelkor::platform {

// Starts bringing the cache line in. Any address will do; it is not read.
inline void Prefetch([[maybe_unused]] const void* address) noexcept {
#if defined(__GNUC__)
    __builtin_prefetch(address);
#endif
}

}  // namespace zelkor::platform

#endif
