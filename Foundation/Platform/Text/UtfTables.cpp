#include "Foundation/Platform/Text/Internal/UtfTables.h"

namespace zelkor::platform::detail {
namespace {

// Appends byte numbers to an operand that is zero-filling behind them.
struct ShuffleMaker {
    constexpr ShuffleMaker() { bytes.fill(0x80); }
    constexpr void Add(std::size_t first, std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            bytes[used++] = static_cast<std::uint8_t>(first + i);
        }
    }
    Shuffle bytes{};
    std::size_t used = 0;
};

constexpr bool Bit(std::size_t mask, std::size_t number) {
    return (mask >> number & 1) != 0;
}

constexpr ShuffleTable MakeKeepUnits() {
    ShuffleTable table{};
    for (std::size_t mask = 0; mask < table.size(); ++mask) {
        ShuffleMaker operand;
        for (std::size_t unit = 0; unit < 8; ++unit) {
            if (Bit(mask, unit)) operand.Add(2 * unit, 2);
        }
        table[mask] = operand.bytes;
    }
    return table;
}

constexpr ShuffleTable MakeJoinTwoBytes() {
    ShuffleTable table{};
    for (std::size_t mask = 0; mask < table.size(); ++mask) {
        ShuffleMaker operand;
        for (std::size_t unit = 0; unit < 8; ++unit) {
            operand.Add(2 * unit, Bit(mask, unit) ? 1 : 2);
        }
        table[mask] = operand.bytes;
    }
    return table;
}

constexpr ShuffleTable MakeJoinThreeBytes() {
    ShuffleTable table{};
    for (std::size_t mask = 0; mask < table.size(); ++mask) {
        ShuffleMaker operand;
        for (std::size_t unit = 0; unit < 4; ++unit) {
            const bool one = Bit(mask, 2 * unit);
            const bool at_most_two = Bit(mask, 2 * unit + 1);
            const std::size_t size = one ? 1 : at_most_two ? 2 : 3;
            operand.Add(4 * unit + 4 - size, size);
        }
        table[mask] = operand.bytes;
    }
    return table;
}

// Halves of bytes as sets: bit n stands for the half n.
struct PairRule {
    std::uint16_t first_high, first_low, second_high;
};
constexpr std::uint16_t kAny = 0xFFFF;
constexpr std::uint16_t kAsciiHalves = 0x00FF;
constexpr std::uint16_t kTrailHalves = 0x0F00;
constexpr std::uint16_t kLeadHalves = 0xF000;

// The rule's place is its bit; the last one must be the pair of trail bytes.
constexpr std::array<PairRule, 8> kRules{{
    {kLeadHalves, kAny, kAsciiHalves | kLeadHalves},  // a lead byte without trail
    {kAsciiHalves, kAny, kTrailHalves},               // a trail byte without lead
    {1 << 0xC, 0x0003, kTrailHalves},                 // C0, C1: overlong
    {1 << 0xE, 1 << 0x0, 0x0300},                     // E0 80 to E0 9F: overlong
    {1 << 0xE, 1 << 0xD, 0x0C00},                     // ED A0 to ED BF: surrogates
    {1 << 0xF, 0xFFE1, 1 << 0x8},                     // F0 80: overlong; F5 80 and above
    {1 << 0xF, 0xFFF0, 0x0E00},                       // F4 90 and above
    {kTrailHalves, kAny, kTrailHalves},
}};

constexpr Shuffle MakeHalves(std::uint16_t PairRule::*set) {
    Shuffle bits{};
    for (std::size_t half = 0; half < bits.size(); ++half) {
        for (std::size_t rule = 0; rule < kRules.size(); ++rule) {
            if (Bit(kRules[rule].*set, half)) {
                bits[half] = static_cast<std::uint8_t>(bits[half] | 1 << rule);
            }
        }
    }
    return bits;
}

}  // namespace

alignas(64) constinit const ShuffleTable kKeepUnits = MakeKeepUnits();
alignas(64) constinit const ShuffleTable kJoinTwoBytes = MakeJoinTwoBytes();
alignas(64) constinit const ShuffleTable kJoinThreeBytes = MakeJoinThreeBytes();
alignas(16) constinit const Shuffle kFirstHigh = MakeHalves(&PairRule::first_high);
alignas(16) constinit const Shuffle kFirstLow = MakeHalves(&PairRule::first_low);
alignas(16) constinit const Shuffle kSecondHigh = MakeHalves(&PairRule::second_high);

}  // namespace zelkor::platform::detail
