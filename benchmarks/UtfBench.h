// Converters between UTF-8 and UTF-16 that are measured beside each other.
#ifndef BENCHMARKS_UTFBENCH_H
#define BENCHMARKS_UTFBENCH_H

#include <cstddef>

namespace bench {

// Both write to `out`, which has room for any result, and return what they wrote.
using Decoder = std::size_t (*)(const char* text, std::size_t length, char16_t* out);
using Encoder = std::size_t (*)(const char16_t* text, std::size_t length, char* out);

// Registers a converter for every language and size; a static object of this type does it. Our
// kernels may be held to a level meanwhile.
constexpr int kAnyLevel = 99;
struct DecoderEntry {
    DecoderEntry(const char* name, Decoder decode, int level = kAnyLevel);
};
struct EncoderEntry {
    EncoderEntry(const char* name, Encoder encode, int level = kAnyLevel);
};

}  // namespace bench

#endif
