// Byte-shuffle and validation tables of the vector kernels, 12.1 KB, made while compiling.
#ifndef FOUNDATION_PLATFORM_TEXT_INTERNAL_UTFTABLES_H
#define FOUNDATION_PLATFORM_TEXT_INTERNAL_UTFTABLES_H

#include <array>
#include <cstddef>
#include <cstdint>

namespace zelkor::platform::detail {

// The operand of one 16-byte shuffle; 0x80 and above gives 0.
using Shuffle = std::array<std::uint8_t, 16>;
using ShuffleTable = std::array<Shuffle, 256>;

// Moves to the front those of eight units whose bit is set.
extern const ShuffleTable kKeepUnits;

// Eight units below 0x800, each as two bytes: keeps the first byte of the units whose bit is set
// (ASCII) and both of the others.
extern const ShuffleTable kJoinTwoBytes;

// Four characters of four bytes, the last of which counts in any case: bit 2k of the index says
// that character k is one byte long, bit 2k + 1 that it is at most two, neither that it is three.
extern const ShuffleTable kJoinThreeBytes;

// Two adjacent bytes are ill formed in a way of their own when the three entries, by the high half
// of the first, the low half of the first and the high half of the second, share a bit. The top bit
// says that both are trail bytes, which is right or wrong by what stands before them. After Keiser
// and Lemire 2020, "Validating UTF-8 in less than one instruction per byte".
extern const Shuffle kFirstHigh;
extern const Shuffle kFirstLow;
extern const Shuffle kSecondHigh;

}  // namespace zelkor::platform::detail

#endif
