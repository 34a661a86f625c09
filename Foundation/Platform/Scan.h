// Scans over runs of bytes and UTF-16 units, sixteen bytes at a time where the processor has the
// means: finding a unit or a text, and how far two texts agree.
//
// Lengths and results are units. Nothing here allocates, fails or reads outside the given lengths.
// Threads: any.
#ifndef FOUNDATION_PLATFORM_SCAN_H
#define FOUNDATION_PLATFORM_SCAN_H

#include <cstddef>

#include "Foundation/Platform/Export.h"

namespace zelkor::platform {

inline constexpr std::size_t kNoHit = static_cast<std::size_t>(-1);

// Index of the first unit equal to `wanted`, kNoHit when there is none.
[[nodiscard]] ZELKOR_API std::size_t FindUnit(const char* text, std::size_t length,
                                              char wanted) noexcept;
[[nodiscard]] ZELKOR_API std::size_t FindUnit(const char16_t* text, std::size_t length,
                                              char16_t wanted) noexcept;

// Index of the first occurrence of wanted[0, wanted_length), kNoHit when there is none; an empty
// one is found at 0. Linear in both lengths, whatever the texts.
[[nodiscard]] ZELKOR_API std::size_t FindText(const char* text, std::size_t length,
                                              const char* wanted,
                                              std::size_t wanted_length) noexcept;
[[nodiscard]] ZELKOR_API std::size_t FindText(const char16_t* text, std::size_t length,
                                              const char16_t* wanted,
                                              std::size_t wanted_length) noexcept;

// Index of the first place, at most `length`, where the two differ or where both are zero.
[[nodiscard]] ZELKOR_API std::size_t CommonLength(const char* left, const char* right,
                                                  std::size_t length) noexcept;
[[nodiscard]] ZELKOR_API std::size_t CommonLength(const char16_t* left, const char16_t* right,
                                                  std::size_t length) noexcept;

}  // namespace zelkor::platform

#endif
